// SPDX-License-Identifier: MIT
// Byte order of the pixels of old GigE Vision cameras.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Glib.h"

namespace orvalis {

/// Pixels of 16 bits are little-endian, but some GigE Vision cameras of the standard's first
/// version send them the other way round. The device mode register says only which order registers
/// have: nearly every camera sets its bit, most of them with little-endian pixels. So a camera of
/// that version with that bit is looked at: the right order is the one with which bits that the
/// format does not use are 0, or else with which neighbours are much more alike. As long as a
/// picture says neither, nothing is changed. Used by the caller that has claimed the camera's
/// stream.
class PixelOrder {
public:
    /// Of any camera. Reads two registers of a GigE Vision camera.
    explicit PixelOrder(ArvDevice *device);
    /// For a camera that may send them so, or not.
    explicit PixelOrder(bool mayBeBig) : mayBeBig_(mayBeBig) {}

    /// Gives to the image memory with its pixels in little-endian order, if they are not.
    void correct(RawImage &image);

private:
    enum class Order { Unknown, Little, Big };

    bool mayBeBig_ = false;
    Order order_ = Order::Unknown;
};

} // namespace orvalis
