// SPDX-License-Identifier: MIT
// Converts frames to images for the screen and reuses their memory.
#pragma once

#include <QImage>

#include <array>

/// Converts frames to images for the screen without allocating memory for each: mapping new pages
/// for a large image takes longer than its conversion. Use it from one thread; any thread may use
/// the images.
class ScreenImages {
public:
    /// Converts `image`, of Format_RGB888 or Format_Grayscale8, to Format_RGB32; null if memory
    /// runs out. The pixels stay unchanged while the result or a pixmap of it is held.
    QImage imageOf(const QImage &image);

private:
    QImage &unusedImage();

    /// One is displayed, one is queued for the GUI, one is being filled. If the window lags behind
    /// and holds more, the memory of the additional images is not reused.
    std::array<QImage, 3> m_images;
    unsigned m_oldest = 0; ///< next to replace when all are held
};
