// SPDX-License-Identifier: MIT
// From a grabbed image to the pixels that a grab writes into memory of its caller.
#include "library/core/GrabConversion.h"

#include "library/convert/Convert.h"

#include <cstring>

namespace orvalis {

namespace {

/// A grabbed image in a format that is not packed, and the memory that this may take.
struct Unpacked {
    ImageView view;
    Buffer words;
};

OResult unpack(const GrabbedImage &image, std::size_t maxPixels, Unpacked &out)
{
    if (!image.format)
        return ORVALIS_ERROR_NOT_SUPPORTED;
    const std::size_t needed = imageBytes(*image.format, image.width, image.height);
    if (!image.data || needed == 0 || needed > image.size)
        return ORVALIS_ERROR_DEVICE;
    const std::size_t pixels = std::size_t{image.width} * image.height;
    if (pixels > maxPixels)
        return ORVALIS_ERROR_DEVICE;
    out.view = {image.format, image.data, image.size, image.width, image.height};
    if (!isPacked(*image.format))
        return ORVALIS_OK;
    auto *words = reinterpret_cast<std::uint16_t *>(out.words.reserve(pixels * 2));
    if (!unpackToWords(out.view, words))
        return ORVALIS_ERROR_NOT_SUPPORTED;
    out.view.format = unpackedFormat(*image.format);
    out.view.data = reinterpret_cast<const std::uint8_t *>(words);
    out.view.size = pixels * 2;
    return ORVALIS_OK;
}

void setSizes(OImageFrame &frame, const ImageView &view, unsigned bitsPerPixel)
{
    frame.width = view.width;
    frame.height = view.height;
    frame.bitsPerPixel = bitsPerPixel;
    frame.rawSize =
        static_cast<std::uint32_t>(std::size_t{view.width} * view.height * (bitsPerPixel / 8));
}

/// Bits a pixel that a raw grab writes as they are; 0 where it writes brightness instead.
unsigned plainBits(const PixelFormat &format)
{
    if (format.bitsPerPixel == 8)
        return 8;
    return format.depth == 12 && format.bitsPerPixel == 16 ? 16 : 0;
}

} // namespace

OResult writeGrabbedRgb(const GrabbedImage &image, std::size_t maxPixels, OImageFrame &frame)
{
    Unpacked unpacked;
    if (const OResult result = unpack(image, maxPixels, unpacked); result != ORVALIS_OK)
        return result;
    const ImageView &view = unpacked.view;
    Buffer scratch;
    std::uint8_t *gray =
        view.format->depth > 8 ? scratch.reserve(std::size_t{view.width} * view.height) : nullptr;
    if (!toRgb8(view, frame.rgb, gray))
        return ORVALIS_ERROR_NOT_SUPPORTED;
    setSizes(frame, view, 24);
    return ORVALIS_OK;
}

OResult writeGrabbedRaw(const GrabbedImage &image, std::size_t maxPixels, OImageFrame &frame)
{
    Unpacked unpacked;
    if (const OResult result = unpack(image, maxPixels, unpacked); result != ORVALIS_OK)
        return result;
    const ImageView &view = unpacked.view;
    const unsigned bits = plainBits(*view.format);
    if (bits != 0)
        std::memcpy(frame.raw, view.data, std::size_t{view.width} * view.height * (bits / 8));
    else if (!toBrightness8(view, frame.raw))
        return ORVALIS_ERROR_NOT_SUPPORTED;
    setSizes(frame, view, bits != 0 ? bits : 8);
    return ORVALIS_OK;
}

} // namespace orvalis
