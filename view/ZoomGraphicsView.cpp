// SPDX-License-Identifier: MIT
// The view of the live image, with animated zoom about the mouse position.
#include "view/ZoomGraphicsView.h"

#include "view/ZoomArithmetic.h"

#include <QTimeLine>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr int animationMs = 350;
constexpr int tickMs = 20;

// The axis with the larger movement; a plain wheel has only one.
int wheelDelta(const QWheelEvent &event)
{
    const QPoint angle = event.angleDelta();
    return std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
}

} // namespace

ZoomGraphicsView::ZoomGraphicsView(QWidget *parent) : QGraphicsView(parent)
{
    // scalingTime() keeps the anchor in place itself: Qt does so only while it can scroll the
    // image.
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setResizeAnchor(QGraphicsView::NoAnchor);
}

void ZoomGraphicsView::ZoomInOut(int delta) { startZoom(geometry().center(), delta); }

void ZoomGraphicsView::fitScene()
{
    if (currentFit() == m_fit)
        return;
    fitInView(scene()->sceneRect(), Qt::KeepAspectRatio);
    m_fit = currentFit();
}

ZoomGraphicsView::Fit ZoomGraphicsView::currentFit() const
{
    return {viewport()->size(), scene()->sceneRect(), transform()};
}

void ZoomGraphicsView::wheelEvent(QWheelEvent *event)
{
    startZoom(event->position().toPoint(), wheelDelta(*event));
}

void ZoomGraphicsView::startZoom(const QPoint &anchor, int delta)
{
    if (m_pFitView != nullptr)
        *m_pFitView = false;
    m_anchor = anchor;
    numScheduledScalings = addedScalings(numScheduledScalings, zoomSteps(delta));

    auto *animation = new QTimeLine(animationMs, this);
    animation->setUpdateInterval(tickMs);
    connect(animation, SIGNAL(valueChanged(qreal)), this, SLOT(scalingTime(qreal)));
    connect(animation, SIGNAL(finished()), this, SLOT(animFinshed()));
    animation->start();
}

void ZoomGraphicsView::scalingTime(qreal)
{
    const qreal factor = tickFactor(numScheduledScalings);
    if (!isUsefulZoom(transform().m11(), factor))
        return;
    const QPointF before = mapToScene(m_anchor);
    scale(factor, factor);
    const QPointF after = mapToScene(m_anchor);
    translate(after.x() - before.x(), after.y() - before.y());
}

void ZoomGraphicsView::animFinshed()
{
    numScheduledScalings = scalingsAfterAnimation(numScheduledScalings);
    // Delete at once, without deleteLater(): the time line emits this signal last, and Qt permits a
    // slot to delete the sender.
    delete qobject_cast<QTimeLine *>(sender());
}
