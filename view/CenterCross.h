// SPDX-License-Identifier: MIT
// The cross through the centre of the displayed image.
#pragma once

#include <QColor>
#include <QPixmap>

/// Painted into the image itself, so that it scales with the image; files never contain it.
struct CenterCross {
    int width = 2; ///< pixels of the image
    QColor color = Qt::red;

    /// A copy of `pixmap` with the cross; `pixmap` itself if there is no memory for a copy.
    QPixmap paintedOn(const QPixmap &pixmap) const;

    bool operator==(const CenterCross &other) const
    {
        return width == other.width && color == other.color;
    }
};
