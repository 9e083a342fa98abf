// SPDX-License-Identifier: MIT
// The view of the live picture, with animated zoom about the mouse.
#pragma once

#include <QGraphicsView>

/// Wheel and zoom actions scale in small steps over 350 ms. GUI thread.
class ZoomGraphicsView : public QGraphicsView {
    Q_OBJECT

public:
    explicit ZoomGraphicsView(QWidget *parent);

    /// @param flag cleared whenever the user zooms here; not owned, may be null
    void setFitFlag(bool *flag) { m_pFitView = flag; }

    /// Zooms about the view's centre.
    /// @param delta wheel units: 120 is one step in, -120 one step out
    void ZoomInOut(int delta);

    /// Shows the whole scene as large as the view permits. Nothing is drawn anew if it is shown so
    /// already.
    void fitScene();

protected:
    void wheelEvent(QWheelEvent *event) override;

private slots:
    void scalingTime(qreal value);
    void animFinshed(); // the spelling is part of the interface

private:
    void startZoom(const QPoint &anchor, int delta);

    /// What fitScene() started from and what came out.
    struct Fit {
        QSize view;
        QRectF scene;
        QTransform transform;
        bool operator==(const Fit &other) const
        {
            return view == other.view && scene == other.scene && transform == other.transform;
        }
    };
    Fit presentFit() const;

    Fit m_fit;
    bool *m_pFitView = nullptr;
    double numScheduledScalings = 0.0; ///< pending steps: positive in, negative out
    QPoint m_anchor;                   ///< viewport point that stays still
};
