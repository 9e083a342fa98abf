// SPDX-License-Identifier: MIT
// The view of the live image, with animated zoom about the mouse position.
#pragma once

#include <QGraphicsView>

/// Wheel and zoom actions scale in small steps over 350 ms. GUI thread.
class ZoomGraphicsView : public QGraphicsView {
    Q_OBJECT

public:
    explicit ZoomGraphicsView(QWidget *parent);

    /// @param flag cleared when the user zooms in this view; not owned, may be null
    void setFitFlag(bool *flag) { m_pFitView = flag; }

    /// Zooms about the view's centre.
    /// @param delta wheel units: 120 is one step in, -120 one step out
    void ZoomInOut(int delta);

    /// Scales the whole scene to the size of the view. Does not repaint if it fits already.
    void fitScene();

protected:
    void wheelEvent(QWheelEvent *event) override;

private slots:
    void scalingTime(qreal value);
    void animFinshed(); // Deliberate: the spelling is part of the interface

private:
    void startZoom(const QPoint &anchor, int delta);

    /// Input and result of fitScene().
    struct Fit {
        QSize view;
        QRectF scene;
        QTransform transform;
        bool operator==(const Fit &other) const
        {
            return view == other.view && scene == other.scene && transform == other.transform;
        }
    };
    Fit currentFit() const;

    Fit m_fit;
    bool *m_pFitView = nullptr;
    double numScheduledScalings = 0.0; ///< pending steps: positive in, negative out
    QPoint m_anchor;                   ///< viewport point that stays in place
};
