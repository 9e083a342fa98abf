// SPDX-License-Identifier: MIT
// What the image view displays: one image in a scene, overlays above it, and a tool for the mouse.
#pragma once

#include "view/CenterCross.h"

#include <QObject>
#include <QPointF>

#include <optional>
#include <vector>

class QGraphicsItem;
class QGraphicsPixmapItem;
class QMouseEvent;
class ZoomGraphicsView;

/// Uses the mouse over the image, for example to draw a rectangle.
class ImageTool {
public:
    virtual ~ImageTool() = default;
    /// A press, move, release or double-click over the view.
    /// @param at pixels of the image; may lie outside it
    /// @return true if the tool uses the event; the view then does not drag the image
    virtual bool mouseEvent(const QMouseEvent &event, QPointF at) = 0;
};

/// Independent of cameras. GUI thread.
class PictureView : public QObject {
public:
    /// @param view displays everything; not owned. Call it once, before anything else.
    void attach(ZoomGraphicsView *view);

    /// A new scene with an empty image. Overlays move to it, and the scale becomes 1.
    /// @param owner of the scene; the previous scene stays with its owner
    void renewScene(QObject *owner);

    /// Displays an image of the camera, fitted if fit() is set. An image that is already displayed
    /// is not painted again.
    /// @param cross painted into the displayed image
    /// @return true for the first image of a scene
    bool showFrame(const QPixmap &pixmap, const std::optional<CenterCross> &cross);
    /// True from the first frame of a scene on.
    bool hasFrame() const { return m_hasFrame; }

    /// The item with the displayed image; null before the first renewScene().
    QGraphicsPixmapItem *const &item() const { return m_item; }
    /// Whether every frame is fitted to the window.
    bool &fit() { return m_fit; }

    /// Displays `overlay` above the image, in pixels of the image, in every later scene too. The
    /// scene owns it.
    void addOverlay(QGraphicsItem *overlay);
    /// Deletes an overlay.
    void removeOverlay(QGraphicsItem *overlay);

    /// @param tool receives mouse events from now on; null for none. Not owned.
    void setTool(ImageTool *tool) { m_tool = tool; }

protected:
    bool eventFilter(QObject *viewport, QEvent *event) override;

private:
    void removeImage();

    /// What the item displays.
    struct Displayed {
        qint64 frame = 0; ///< cache key of the pixmap without cross
        std::optional<CenterCross> cross;
        bool operator==(const Displayed &other) const
        {
            return frame == other.frame && cross == other.cross;
        }
    };

    ZoomGraphicsView *m_view = nullptr;
    QGraphicsPixmapItem *m_item = nullptr; ///< owned by the scene
    std::vector<QGraphicsItem *> m_overlays;
    ImageTool *m_tool = nullptr;
    Displayed m_displayed;
    bool m_hasFrame = false;
    bool m_fit = false;
};
