// SPDX-License-Identifier: MIT
// Notices at which scale a view shows its scene.
#pragma once

#include <QObject>

class QGraphicsView;

/// Tells when the scale of a view has changed, whoever changed it: the view is painted anew then.
/// GUI thread.
class ScaleWatch : public QObject {
    Q_OBJECT

public:
    /// @param view parent and owner
    explicit ScaleWatch(QGraphicsView *view);

signals:
    /// Comes from inside of a paint event: connect it queued to whatever paints.
    /// @param scale pixels of the view for one of the scene
    void sigScaleChanged(qreal scale);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QGraphicsView *m_pView; // the parent
    qreal m_scale = 0;      ///< the last one told; 0: none yet
};
