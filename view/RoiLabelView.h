// SPDX-License-Identifier: MIT
// A label on which the user draws a rectangle with the mouse.
#pragma once

#include <QLabel>
#include <QPoint>

class QRubberBand;

/// Represents the whole area of a sensor. Any mouse button draws.
class RoiLabelView : public QLabel {
    Q_OBJECT

public:
    explicit RoiLabelView(QWidget *parent = nullptr);

signals:
    /// The user drew a rectangle from `start`, where a button was pressed, to `end`, where it was
    /// released. Label coordinates, not normalised: `end` may lie left of or above `start`, and
    /// outside the label.
    void sigCurrentPoint(QPoint start, QPoint end);

public slots:
    /// Hides the rubber band.
    void slotHideRubberBand();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QRubberBand *m_pRubberBand; // owned by this label as its child
    QPoint m_origin;
};
