// SPDX-License-Identifier: MIT
// Reports changes of the scale at which a view displays its scene.
#include "view/ScaleWatch.h"

#include <QEvent>
#include <QGraphicsView>

#include <utility>

ScaleWatch::ScaleWatch(QGraphicsView *view) : QObject(view), m_pView(view)
{
    view->viewport()->installEventFilter(this);
}

bool ScaleWatch::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        const qreal scale = m_pView->transform().m11();
        if (!qFuzzyCompare(std::exchange(m_scale, scale), scale))
            emit sigScaleChanged(scale);
    }
    return QObject::eventFilter(watched, event);
}
