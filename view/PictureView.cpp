// SPDX-License-Identifier: MIT
// What the image view displays: one image in a scene, overlays above it, and a tool for the mouse.
#include "view/PictureView.h"

#include "view/ZoomGraphicsView.h"

#include <QGraphicsPixmapItem>
#include <QGraphicsScene>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

void PictureView::attach(ZoomGraphicsView *view)
{
    m_view = view;
    m_view->viewport()->installEventFilter(this);
}

void PictureView::renewScene(QObject *owner)
{
    removeImage();
    m_item = new QGraphicsPixmapItem;
    auto *scene = new QGraphicsScene(owner);
    m_view->setScene(scene);
    scene->addItem(m_item);
    for (QGraphicsItem *overlay : m_overlays)
        scene->addItem(overlay); // removes it from the previous scene
    m_view->setAlignment(Qt::AlignCenter);
    m_view->setDragMode(QGraphicsView::ScrollHandDrag);
}

void PictureView::removeImage()
{
    m_displayed = {};
    m_hasFrame = false;
    if (m_item == nullptr)
        return;
    m_view->scene()->removeItem(m_item);
    m_view->resetTransform();
    delete m_item;
    m_item = nullptr;
}

bool PictureView::showFrame(const QPixmap &pixmap, const std::optional<CenterCross> &cross)
{
    const Displayed frame{pixmap.cacheKey(), cross};
    if (!(frame == m_displayed)) {
        m_displayed = frame;
        m_item->setPixmap(cross ? cross->paintedOn(pixmap) : pixmap);
    }
    if (m_fit)
        m_view->fitScene();
    return !std::exchange(m_hasFrame, true);
}

void PictureView::addOverlay(QGraphicsItem *overlay)
{
    m_overlays.push_back(overlay);
    m_view->scene()->addItem(overlay);
}

void PictureView::removeOverlay(QGraphicsItem *overlay)
{
    m_overlays.erase(std::remove(m_overlays.begin(), m_overlays.end(), overlay), m_overlays.end());
    delete overlay; // also removes it from its scene
}

bool PictureView::eventFilter(QObject *viewport, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick: {
        if (m_tool == nullptr)
            break;
        const auto &mouse = *static_cast<QMouseEvent *>(event);
        const QTransform toImage = m_view->viewportTransform().inverted();
        return m_tool->mouseEvent(mouse, toImage.map(mouse.localPos()));
    }
    default:
        break;
    }
    return QObject::eventFilter(viewport, event);
}
