// SPDX-License-Identifier: MIT
// Reads the frame number that the simulated cameras draw into their frames.
#pragma once

#include <QByteArray>
#include <QImage>

/// The 8-bit grey pixels of an image, without row padding.
inline QByteArray grayPixels(const QImage &picture)
{
    const QImage gray = picture.convertToFormat(QImage::Format_Grayscale8);
    QByteArray pixels;
    for (int y = 0; y < gray.height(); ++y)
        pixels.append(reinterpret_cast<const char *>(gray.constScanLine(y)), gray.width());
    return pixels;
}

/// The number in the upper left corner (node "FrameNumberOverlay"): 32 squares of 8 x 8 pixels side
/// by side, lowest bit first, white for 1. `pixels` is 8-bit grey without row padding.
inline quint32 frameNumber(const QByteArray &pixels, int width)
{
    quint32 number = 0;
    for (int bit = 0; bit < 32; ++bit) {
        const int middle = 4 * width + bit * 8 + 4;
        if (middle < pixels.size())
            number |= (static_cast<uchar>(pixels.at(middle)) > 127 ? 1U : 0U) << bit;
    }
    return number;
}
