// SPDX-License-Identifier: MIT
// The picture of a whole sensor with the newest frame at its place, and the buffers that frames
// come in.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <vector>

/// Used by one thread at a time. The frame that is painted may be of any size: what lies outside of
/// the buffers or of the sensor is left out.
class SensorCanvas {
public:
    /// Makes buffers and a white canvas for the sensor in `size`, unless they are of that size
    /// already. A sensor of no or of absurd size, or one that memory is short for, leaves the
    /// canvas empty.
    /// @return true if the canvas is new and not empty
    bool fitTo(const OSizeInfo &size);
    /// True if there is nothing to draw on.
    bool isEmpty() const { return m_canvas.isNull(); }

    /// The record for the next grab. Its `rgb` holds maxWidth x maxHeight x 3 bytes, its `raw`
    /// maxWidth x maxHeight x 2; both stay owned by the canvas.
    OImageFrame *frame();

    /// Paints what a grab put into `rgb` (3 bytes a pixel) on white, at the offset in `size`.
    void paintRgb(const OSizeInfo &size);
    /// The same for 8-bit grey in `raw`.
    void paintGrey(const OSizeInfo &size);
    /// The same for 16-bit words in `raw` with `bits` significant bits.
    void paintWords(const OSizeInfo &size, int bits);

    /// A copy that later painting does not touch.
    QImage picture() const { return m_canvas.copy(); }

private:
    void clear();
    int rowsIn(std::size_t capacity, std::size_t bytesPerRow) const;
    void paint(const OSizeInfo &size, const std::uint8_t *pixels, std::size_t capacity, int depth);

    std::vector<std::uint8_t> m_raw;
    std::vector<std::uint8_t> m_rgb; // also the 8-bit form of words
    QImage m_canvas;
    OImageFrame m_frame{};
};
