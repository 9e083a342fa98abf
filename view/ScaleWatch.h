// SPDX-License-Identifier: MIT
// Reports changes of the scale at which a view displays its scene.
#pragma once

#include <QObject>

class QGraphicsView;

/// Detects every change of the scale, whatever its cause, because the view repaints after each. GUI
/// thread.
class ScaleWatch : public QObject {
    Q_OBJECT

public:
    /// @param view parent and owner
    explicit ScaleWatch(QGraphicsView *view);

signals:
    /// Emitted during a paint event: connect slots that paint with a queued connection.
    /// @param scale pixels of the view for one of the scene
    void sigScaleChanged(qreal scale);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QGraphicsView *m_pView; // the parent
    qreal m_scale = 0;      ///< the last one reported; 0 before the first
};
