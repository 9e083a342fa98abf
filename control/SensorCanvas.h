// SPDX-License-Identifier: MIT
// An image of the whole sensor with the newest frame at its position, and the buffers for grabs.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <vector>

/// Use it from one thread at a time. The painted frame may have any size: parts outside the buffers
/// or the sensor are not painted.
class SensorCanvas {
public:
    /// Allocates buffers and a white canvas for the sensor in `size`, unless they have that size
    /// already. The canvas is empty if the size is zero or implausible, or if memory runs out.
    /// @return true if the canvas is new and not empty
    bool fitTo(const OSizeInfo &size);
    /// True if there is nothing to draw on.
    bool isEmpty() const { return m_canvas.isNull(); }

    /// The record for the next grab. Its `rgb` holds maxWidth x maxHeight x 3 bytes, its `raw`
    /// maxWidth x maxHeight x 2; the canvas owns both.
    OImageFrame *frame();

    /// Paints the grabbed `rgb` (3 bytes a pixel) on white, at the offset in `size`.
    void paintRgb(const OSizeInfo &size);
    /// The same for 8-bit grey in `raw`.
    void paintGrey(const OSizeInfo &size);
    /// The same for 16-bit words in `raw` with `bits` significant bits.
    void paintWords(const OSizeInfo &size, int bits);

    /// A deep copy of the canvas.
    QImage image() const { return m_canvas.copy(); }

private:
    void clear();
    int rowsIn(std::size_t capacity, std::size_t bytesPerRow) const;
    void paint(const OSizeInfo &size, const std::uint8_t *pixels, std::size_t capacity, int depth);

    std::vector<std::uint8_t> m_raw;
    std::vector<std::uint8_t> m_rgb; // also the 8-bit form of words
    QImage m_canvas;
    OImageFrame m_frame{};
};
