// SPDX-License-Identifier: MIT
// Unpacks samples to 16-bit words, and extracts the upper 8 bits of words.
#include "library/convert/Image.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <bit>
#include <cstring>

namespace orvalis {
namespace {

static_assert(std::endian::native == std::endian::little, "samples are little-endian on the wire");

// Each of these reads the bytes of four pixels as one little-endian number and spreads them over
// four 16-bit words with a few masks and shifts, which the compiler vectorises.
struct Lsb10 {
    static constexpr std::size_t bytes = 5;
    static std::uint64_t spread(std::uint64_t x)
    {
        return (x & 0x3FF) | (x & 0xFFC00) << 6 | (x & 0x3FF00000) << 12 | (x & 0xFFC0000000) << 18;
    }
};

struct Lsb12 {
    static constexpr std::size_t bytes = 6;
    static std::uint64_t spread(std::uint64_t x)
    {
        return (x & 0xFFF) | (x & 0xFFF000) << 4 | (x & 0xFFF000000) << 8 |
               (x & 0xFFF000000000) << 12;
    }
};

struct Lsb14 {
    static constexpr std::size_t bytes = 7;
    static std::uint64_t spread(std::uint64_t x)
    {
        return (x & 0x3FFF) | (x & 0xFFFC000) << 2 | (x & 0x3FFF0000000) << 4 |
               (x & 0xFFFC0000000000) << 6;
    }
};

struct Gige10 {
    static constexpr std::size_t bytes = 6;
    static std::uint64_t spread(std::uint64_t x)
    {
        x = (x & 0xFFFFFF) | (x & 0xFFFFFF000000) << 8;
        return (x & 0x000000FF000000FF) << 2 | ((x & 0x0000030000000300) >> 8) |
               (x & 0x00FF000000FF0000) << 2 | (x & 0x0000300000003000) << 4;
    }
};

struct Gige12 {
    static constexpr std::size_t bytes = 6;
    static std::uint64_t spread(std::uint64_t x)
    {
        x = (x & 0xFFFFFF) | (x & 0xFFFFFF000000) << 8;
        return (x & 0x000000FF000000FF) << 4 | ((x & 0x00000F0000000F00) >> 8) |
               (x & 0x00FFF00000FFF000) << 4;
    }
};

template <typename Packing>
void unpackGroups(const std::uint8_t *in, std::size_t groups, std::uint16_t *out)
{
    for (std::size_t i = 0; i < groups; ++i) {
        std::uint64_t x = 0;
        std::memcpy(&x, in + i * Packing::bytes, Packing::bytes);
        x = Packing::spread(x);
        std::memcpy(out + i * 4, &x, sizeof x);
    }
}

/// Like unpackGroups(), but each read takes 8 bytes, which the caller must guarantee.
template <typename Packing>
void unpackGroupsWide(const std::uint8_t *in, std::size_t groups, std::uint16_t *out)
{
    for (std::size_t i = 0; i < groups; ++i) {
        std::uint64_t x = 0;
        std::memcpy(&x, in + i * Packing::bytes, sizeof x);
        x = Packing::spread(x);
        std::memcpy(out + i * 4, &x, sizeof x);
    }
}

/// A part of an image for one thread.
struct Stripe {
    std::size_t first;
    std::size_t count;
};

/// Pixels of a stripe: large enough that small images do not pay for threads.
constexpr std::size_t stripePixels = 32768;

int stripes(std::size_t pixels)
{
    return static_cast<int>((pixels + stripePixels - 1) / stripePixels);
}

Stripe stripeOf(const cv::Range &range, std::size_t pixels)
{
    const std::size_t first = static_cast<std::size_t>(range.start) * stripePixels;
    const std::size_t end = static_cast<std::size_t>(range.end) * stripePixels;
    return {first, std::min(pixels, end) - first};
}

template <typename Packing>
void unpackAll(const std::uint8_t *in, std::size_t size, std::size_t pixels, std::uint16_t *out)
{
    const std::size_t groups = pixels / 4;
    const std::size_t wide = groups > 2 ? groups - 2 : 0;
    cv::parallel_for_(
        cv::Range(0, stripes(wide * 4)),
        [&](const cv::Range &range) {
            const Stripe stripe = stripeOf(range, wide * 4);
            unpackGroupsWide<Packing>(in + stripe.first / 4 * Packing::bytes, stripe.count / 4,
                                      out + stripe.first);
        },
        static_cast<double>(wide) / stripePixels);
    unpackGroups<Packing>(in + wide * Packing::bytes, groups - wide, out + wide * 4);

    if (const std::size_t rest = pixels % 4; rest > 0) {
        const std::size_t offset = groups * Packing::bytes;
        std::uint64_t x = 0;
        std::memcpy(&x, in + offset, std::min(size - offset, Packing::bytes));
        x = Packing::spread(x);
        std::memcpy(out + groups * 4, &x, rest * sizeof(std::uint16_t));
    }
}

/// Writes the upper 8 bits to `out`. Some cameras leave noise above the significant bits: saturate
/// to white instead of wrapping around. The shift is a constant because the compiler widens words
/// for variable shifts.
template <unsigned shift>
void shiftDown(const std::uint8_t *__restrict in, std::size_t count, std::uint8_t *__restrict out)
{
    for (std::size_t i = 0; i < count; ++i) {
        std::uint16_t word = 0;
        std::memcpy(&word, in + i * sizeof word, sizeof word);
        word = static_cast<std::uint16_t>(word >> shift);
        out[i] = static_cast<std::uint8_t>(word > 255 ? 255 : word);
    }
}

/// Selects shiftDown() for samples of `depth` bits: 10, 12, 14 or 16.
auto shiftFrom(unsigned depth)
{
    switch (depth) {
    case 10:
        return shiftDown<2>;
    case 12:
        return shiftDown<4>;
    case 14:
        return shiftDown<6>;
    default:
        return shiftDown<8>;
    }
}

auto unpackerOf(const PixelFormat &format)
{
    if (format.packing == PixelPacking::GigePacked)
        return format.depth == 10 ? unpackAll<Gige10> : unpackAll<Gige12>;
    switch (format.depth) {
    case 10:
        return unpackAll<Lsb10>;
    case 12:
        return unpackAll<Lsb12>;
    default:
        return unpackAll<Lsb14>;
    }
}

} // namespace

void upperEight(unsigned depth, const std::uint8_t *words, std::size_t count, std::uint8_t *out)
{
    shiftFrom(depth)(words, count, out);
}

bool unpackToWords(const ImageView &image, std::uint16_t *out)
{
    if (out == nullptr || !fits(image) || !isPacked(*image.format))
        return false;
    unpackerOf (*image.format)(image.data, imageBytes(*image.format, image.width, image.height),
                               pixelCount(image) * samplesPerPixel(*image.format), out);
    return true;
}

bool toGray8(const ImageView &image, std::uint8_t *out)
{
    if (out == nullptr || !fits(image) || image.format->hasDirectColor() || isPacked(*image.format))
        return false;
    const std::size_t pixels = pixelCount(image);
    if (image.format->packing == PixelPacking::Bytes) {
        std::memcpy(out, image.data, pixels);
        return true;
    }
    cv::parallel_for_(
        cv::Range(0, stripes(pixels)),
        [&](const cv::Range &range) {
            const Stripe stripe = stripeOf(range, pixels);
            upperEight(image.format->depth, image.data + stripe.first * sizeof(std::uint16_t),
                       stripe.count, out + stripe.first);
        },
        static_cast<double>(pixels) / (16 * stripePixels));
    return true;
}

} // namespace orvalis
