// SPDX-License-Identifier: MIT
// Pictures for the screen, made in memory that is used again.
#pragma once

#include <QImage>

#include <array>

/// Turns frames into images for the screen without new memory for each: fresh pages for a large
/// picture take longer than its conversion. Belongs to one thread; the images may go to any.
class ScreenImages {
public:
    /// `image`, which is of Format_RGB888 or Format_Grayscale8, in Format_RGB32; null without
    /// memory. It keeps its pixels for as long as it or a pixmap of it is held, whatever is made
    /// after it.
    QImage imageOf(const QImage &image);

private:
    QImage &unusedImage();

    /// One is on show, one on its way to the GUI, one is being made. A window that comes late holds
    /// more, and then the memory of those is not used again.
    std::array<QImage, 3> m_images;
    unsigned m_oldest = 0; ///< where to begin anew when all are held
};
