// SPDX-License-Identifier: MIT
// Converts a grabbed image into the caller's memory.
#include "library/core/GrabConversion.h"

#include "library/convert/Convert.h"

#include <cstring>

namespace orvalis {

namespace {

/// A grabbed image in an unpacked format, and the memory for unpacking.
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
    const PixelFormat *unpacked = unpackedFormat(*image.format);
    if (!unpacked)
        return ORVALIS_ERROR_NOT_SUPPORTED;
    const std::size_t size = imageBytes(*unpacked, image.width, image.height);
    auto *words = reinterpret_cast<std::uint16_t *>(out.words.reserve(size));
    if (!unpackToWords(out.view, words))
        return ORVALIS_ERROR_NOT_SUPPORTED;
    out.view.format = unpacked;
    out.view.data = reinterpret_cast<const std::uint8_t *>(words);
    out.view.size = size;
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

/// Bits of a pixel that a raw grab writes: callers read 12-bit formats as words.
unsigned rawBits(const PixelFormat &format) { return format.depth == 12 ? 16 : 8; }

/// Copies the samples if a pixel is one sample of that size, otherwise writes luminance.
bool writeRaw(const ImageView &view, std::uint8_t *out)
{
    const unsigned bits = rawBits(*view.format);
    if (view.format->bitsPerPixel == bits) {
        std::memcpy(out, view.data, std::size_t{view.width} * view.height * (bits / 8));
        return true;
    }
    return bits == 8 ? toBrightness8(view, out)
                     : toBrightnessWords(view, reinterpret_cast<std::uint16_t *>(out));
}

} // namespace

OResult writeGrabbedRgb(const GrabbedImage &image, std::size_t maxPixels, OImageFrame &frame)
{
    Unpacked unpacked;
    if (const OResult result = unpack(image, maxPixels, unpacked); result != ORVALIS_OK)
        return result;
    const ImageView &view = unpacked.view;
    Buffer scratch;
    const bool deepGray = view.format->depth > 8 && !view.format->hasDirectColor();
    std::uint8_t *gray =
        deepGray ? scratch.reserve(std::size_t{view.width} * view.height) : nullptr;
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
    if (!writeRaw(view, frame.raw))
        return ORVALIS_ERROR_NOT_SUPPORTED;
    setSizes(frame, view, rawBits(*view.format));
    return ORVALIS_OK;
}

} // namespace orvalis
