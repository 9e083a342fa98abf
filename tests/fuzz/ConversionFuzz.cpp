// SPDX-License-Identifier: MIT
// Fuzzes unpackers and colour conversions: every format, any size, buffers a few bytes too short or
// too long. Compares results with the definition of each packing.
#include "library/convert/Convert.h"
#include "tests/fuzz/Formats.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/library/convert/Encode.h"
#include "tests/support/ByteTape.h"

#include <algorithm>

namespace {

using converttest::Exact;
using orvalis::ImageView;
using orvalis::PixelFormat;
using orvalis::PixelKind;
using orvalis::PixelPacking;
using Bytes = Exact<std::uint8_t>;

std::uint16_t bitsAt(const std::uint8_t *data, std::size_t position, unsigned count)
{
    unsigned value = 0;
    for (unsigned i = 0; i < count; ++i, ++position)
        value |= (data[position / 8] >> position % 8 & 1U) << i;
    return static_cast<std::uint16_t>(value);
}

/// Sample `i` of a packed image; GigE Vision pairs store a sample's bits in separate bytes.
std::uint16_t packedSample(const ImageView &image, std::size_t i)
{
    const PixelFormat &format = *image.format;
    if (format.packing == PixelPacking::LsbPacked)
        return bitsAt(image.data, i * format.depth, format.depth);
    const unsigned low = format.depth - 8;
    const std::size_t pair = i / 2 * 24;
    const bool second = i % 2 != 0;
    return static_cast<std::uint16_t>(bitsAt(image.data, pair + (second ? 16 : 0), 8) << low |
                                      bitsAt(image.data, pair + (second ? 12 : 8), low));
}

void checkUnpacked(const ImageView &image, std::size_t pixels, bool fits)
{
    const std::size_t samples = pixels * samplesPerPixel(*image.format);
    Exact<std::uint16_t> words(samples);
    const bool expected = fits && orvalis::isPacked(*image.format);
    FUZZ_CHECK(orvalis::unpackToWords(image, words.data()) == expected);
    for (std::size_t i = 0; expected && i < samples; ++i)
        FUZZ_CHECK(words[i] == packedSample(image, i));
}

std::uint8_t greySample(const ImageView &image, std::size_t i)
{
    if (image.format->packing == PixelPacking::Bytes)
        return image.data[i];
    const unsigned word = bitsAt(image.data, i * 16, 16);
    return static_cast<std::uint8_t>(std::min(word >> (image.format->depth - 8), 255U));
}

void checkGrey(const ImageView &image, std::size_t pixels, bool fits)
{
    Bytes grey(pixels);
    const bool expected =
        fits && !orvalis::isPacked(*image.format) && !image.format->hasDirectColor();
    FUZZ_CHECK(orvalis::toGray8(image, grey.data()) == expected);
    for (std::size_t i = 0; expected && i < pixels; ++i)
        FUZZ_CHECK(grey[i] == greySample(image, i));
}

/// Four pixels of YUV 4:1:1 take six bytes: rows of an odd width would end within one.
bool endsWithinAByte(const ImageView &image)
{
    return image.format->isYuv() && image.format->bitsPerPixel == 12 && image.width % 2 != 0;
}

void checkBrightness(const ImageView &image, std::size_t pixels, bool fits)
{
    Bytes grey(pixels);
    const bool expected = fits && !orvalis::isPacked(*image.format) && !endsWithinAByte(image);
    FUZZ_CHECK(orvalis::toBrightness8(image, grey.data()) == expected);
    for (std::size_t i = 0; expected && i < pixels; ++i) {
        if (!image.format->hasDirectColor())
            FUZZ_CHECK(grey[i] == greySample(image, i));
        else if (image.format->coding != orvalis::YuvCoding::FullBt601)
            continue;
        else if (image.format->kind == PixelKind::Yuyv)
            FUZZ_CHECK(grey[i] == image.data[2 * i]);
        else if (image.format->kind == PixelKind::Uyvy)
            FUZZ_CHECK(grey[i] == image.data[2 * i + 1]);
    }
}

/// Colour of a mosaic at a pixel: 0 red, 1 green, 2 blue.
std::size_t mosaicColour(PixelKind order, std::size_t x, std::size_t y)
{
    const bool greenFirst = order == PixelKind::BayerGR || order == PixelKind::BayerGB;
    if (((x + y) % 2 == 0) == greenFirst)
        return 1;
    const bool redFirst = order == PixelKind::BayerGR || order == PixelKind::BayerRG;
    return (y % 2 == 0) == redFirst ? 0 : 2;
}

/// Checks the colours of a pixel that need no interpolation.
void checkColour(const ImageView &image, const Bytes &rgb, std::size_t i)
{
    const PixelFormat &format = *image.format;
    const std::size_t pixels = rgb.size() / 3;
    if (format.isBayer()) {
        const std::size_t own = mosaicColour(format.kind, i % image.width, i / image.width);
        FUZZ_CHECK(rgb[i * 3 + own] == greySample(image, i));
        return;
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const std::uint8_t got = rgb[i * 3 + channel];
        if (format.isMono())
            FUZZ_CHECK(got == greySample(image, i));
        else if (format.kind == PixelKind::Rgb)
            FUZZ_CHECK(got == greySample(image, i * 3 + channel));
        else if (format.kind == PixelKind::Bgr)
            FUZZ_CHECK(got == greySample(image, i * 3 + 2 - channel));
        else if (format.kind == PixelKind::Rgba)
            FUZZ_CHECK(got == greySample(image, i * 4 + channel));
        else if (format.kind == PixelKind::Bgra)
            FUZZ_CHECK(got == greySample(image, i * 4 + 2 - channel));
        else if (format.kind == PixelKind::RgbPlanar)
            FUZZ_CHECK(got == image.data[channel * pixels + i]);
    }
}

void checkRgb(const ImageView &image, std::size_t pixels, bool fits)
{
    Bytes rgb(pixels * 3);
    Bytes scratch(pixels);
    const bool expected = fits && !orvalis::isPacked(*image.format) && !endsWithinAByte(image);
    std::uint8_t *needed =
        image.format->depth > 8 && !image.format->hasDirectColor() ? scratch.data() : nullptr;
    FUZZ_CHECK(orvalis::toRgb8(image, rgb.data(), needed) == expected);
    for (std::size_t i = 0; expected && i < pixels; ++i)
        checkColour(image, rgb, i);
}

/// `size` bytes that repeat the pattern.
Bytes filled(std::size_t size, const std::vector<std::uint8_t> &pattern)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size && !pattern.empty(); ++i)
        bytes.data()[i] = pattern[i % pattern.size()];
    return bytes;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const auto formats = fuzz::allFormats();
    viewertest::ByteTape tape(data, size);
    const PixelFormat &format = *formats[tape.below(static_cast<std::uint32_t>(formats.size()))];
    // One side may be long: images of several thousand pixels are processed in stripes.
    const std::uint32_t width =
        tape.below(16) == 0 ? tape.number<std::uint16_t>() % 12000 : tape.below(64);
    const std::uint32_t height = tape.below(width > 64 ? 4 : 64);
    const int slack = tape.below(4) == 0 ? tape.number<std::int8_t>() : 0;
    const std::size_t needed = orvalis::imageBytes(format, width, height);
    const bool isShort = slack < 0 && static_cast<std::size_t>(-slack) > needed;
    const Bytes memory =
        filled(isShort ? 0 : needed + static_cast<std::size_t>(slack), tape.rest());

    const ImageView image{&format, memory.data(), memory.size(), width, height};
    const std::size_t pixels = std::size_t{width} * height;
    const bool fits = pixels > 0 && memory.size() >= needed;
    checkUnpacked(image, pixels, fits);
    checkGrey(image, pixels, fits);
    checkBrightness(image, pixels, fits);
    checkRgb(image, pixels, fits);
    return 0;
}
