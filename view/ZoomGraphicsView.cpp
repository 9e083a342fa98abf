// SPDX-License-Identifier: MIT
// The view of the live picture, with animated zoom about the mouse.
#include "view/ZoomGraphicsView.h"

#include "view/ZoomArithmetic.h"

#include <QTimeLine>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr int animationMs = 350;
constexpr int tickMs = 20;

// The axis that moved more; the event of a plain wheel has only one.
int wheelDelta(const QWheelEvent &event)
{
    const QPoint angle = event.angleDelta();
    return std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
}

} // namespace

ZoomGraphicsView::ZoomGraphicsView(QWidget *parent) : QGraphicsView(parent)
{
    // The anchor is kept by hand, so that it also holds where the picture could not be scrolled.
    setTransformationAnchor(QGraphicsView::NoAnchor);
    setResizeAnchor(QGraphicsView::NoAnchor);
}

void ZoomGraphicsView::ZoomInOut(int delta) { startZoom(geometry().center(), delta); }

void ZoomGraphicsView::fitScene()
{
    if (presentFit() == m_fit)
        return;
    fitInView(scene()->sceneRect(), Qt::KeepAspectRatio);
    m_fit = presentFit();
}

ZoomGraphicsView::Fit ZoomGraphicsView::presentFit() const
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
    // At once, not later: the signal is the last thing that a time line does, and the emission
    // itself allows for a sender that is gone when its slot returns.
    delete qobject_cast<QTimeLine *>(sender());
}
