// SPDX-License-Identifier: MIT
// Converts a camera image to the planes of a frame record.
#include "library/core/Frame.h"

#include "library/convert/Convert.h"

#include <cstring>
#include <limits>

namespace orvalis {

namespace {

/// A view of the image; `format` is null if it cannot be delivered.
ImageView viewOf(const RawImage &image)
{
    ImageView view{findPixelFormat(image.pixelFormat), image.data, image.size, image.width,
                   image.height};
    if (!view.format || !image.data)
        return {};
    const std::size_t needed = imageBytes(*view.format, image.width, image.height);
    if (needed == 0 || needed > image.size)
        view.format = nullptr;
    return view;
}

bool fillRaw(Frame &frame, const RawImage &image, const ImageView &view)
{
    frame.format = unpackedFormat(*view.format);
    if (!frame.format)
        return false;
    const std::size_t size = imageBytes(*frame.format, view.width, view.height);
    if (size == 0 || size > std::numeric_limits<std::uint32_t>::max())
        return false;
    frame.record.rawSize = static_cast<std::uint32_t>(size);
    if (isPacked(*view.format)) {
        frame.record.raw = frame.raw.reserve(size);
        return unpackToWords(view, reinterpret_cast<std::uint16_t *>(frame.record.raw));
    }
    if (image.owner) {
        frame.source = image;
        // The interface does not permit writing to the plane.
        frame.record.raw = const_cast<std::uint8_t *>(image.data);
        return true;
    }
    frame.record.raw = frame.raw.reserve(size);
    std::memcpy(frame.record.raw, image.data, size);
    return true;
}

bool fillPlanes(Frame &frame, bool bayerConversion)
{
    const PixelFormat &format = *frame.format;
    const ImageView view{&format, frame.record.raw, frame.record.rawSize, frame.record.width,
                         frame.record.height};
    const std::size_t pixels = std::size_t{view.width} * view.height;
    const bool deepGray = format.depth > 8 && !format.hasDirectColor();
    std::uint8_t *gray = deepGray ? frame.mono8.reserve(pixels) : nullptr;
    if (format.hasDirectColor() || (format.isBayer() && bayerConversion)) {
        frame.record.rgb = frame.rgb.reserve(pixels * 3);
        if (!toRgb8(view, frame.record.rgb, gray)) // the grey plane serves as scratch memory first
            return false;
    }
    if (gray) {
        frame.record.mono8 = gray;
        return toGray8(view, gray);
    }
    return true;
}

} // namespace

bool fillFrame(Frame &frame, const RawImage &image, bool bayerConversion)
{
    frame.source = {};
    frame.record = {};
    const ImageView view = viewOf(image);
    if (!view.format)
        return false;
    frame.record.width = view.width;
    frame.record.height = view.height;
    if (!fillRaw(frame, image, view))
        return false;
    frame.record.bitsPerPixel = frame.format->bitsPerPixel;
    return fillPlanes(frame, bayerConversion);
}

} // namespace orvalis
