// SPDX-License-Identifier: MIT
// Reads the frame number that the simulated cameras write into their pictures.
#pragma once

#include <QByteArray>

/// The number in the picture's upper left corner (node "FrameNumberOverlay"): 32 squares of 8 x 8
/// pixels side by side, lowest bit first, white for 1. `pixels` is 8-bit grey without row padding.
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
