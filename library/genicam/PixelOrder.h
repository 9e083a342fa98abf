// SPDX-License-Identifier: MIT
// Detects and corrects the byte order of pixels.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Glib.h"

namespace orvalis {

/// 16-bit pixels are little-endian, but some cameras of GigE Vision 1 send them big-endian. The
/// device mode register states only the byte order of registers: nearly every camera sets its bit,
/// most of them with little-endian pixels. So images of cameras of that version with that bit set
/// are examined: the correct order is the one in which the unused bits of the format are 0, or else
/// the one in which neighbouring pixels are much more similar. Nothing is swapped until an image is
/// conclusive. Used by the streaming thread.
class PixelOrder {
public:
    /// For any camera. Reads two registers of a GigE Vision camera.
    explicit PixelOrder(ArvDevice *device);
    /// `mayBeBig`: the camera may send big-endian pixels.
    explicit PixelOrder(bool mayBeBig) : mayBeBig_(mayBeBig) {}

    /// Replaces the image's memory by a little-endian copy if its pixels are big-endian.
    void correct(RawImage &image);

private:
    enum class Order { Unknown, Little, Big };

    bool mayBeBig_ = false;
    Order order_ = Order::Unknown;
};

} // namespace orvalis
