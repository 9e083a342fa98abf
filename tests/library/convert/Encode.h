// SPDX-License-Identifier: MIT
// Reference encoder: packs samples bit by bit.
#pragma once

#include "library/convert/Convert.h"

#include <memory>
#include <vector>

namespace converttest {

using orvalis::PixelFormat;
using orvalis::PixelPacking;

/// Memory of exactly the requested size, so that AddressSanitizer detects any access beyond it.
template <typename T> class Exact {
public:
    explicit Exact(std::size_t count) : data_(new T[count]()), count_(count) {}
    explicit Exact(const std::vector<T> &values) : Exact(values.size())
    {
        std::copy(values.begin(), values.end(), data_.get());
    }
    T *data() { return data_.get(); }
    const T *data() const { return data_.get(); }
    std::size_t size() const { return count_; }
    T operator[](std::size_t i) const { return data_[i]; }
    std::vector<T> values() const { return {data_.get(), data_.get() + count_}; }

private:
    std::unique_ptr<T[]> data_;
    std::size_t count_;
};

inline void putBits(std::vector<std::uint8_t> &bytes, std::size_t position, unsigned value,
                    unsigned count)
{
    for (unsigned i = 0; i < count; ++i, ++position) {
        if ((value >> i & 1U) != 0) {
            bytes.at(position / 8) =
                static_cast<std::uint8_t>(bytes[position / 8] | 1U << (position % 8));
        }
    }
}

inline std::vector<std::uint8_t> encodeGigePacked(const std::vector<unsigned> &samples,
                                                  unsigned depth)
{
    const unsigned low = depth - 8;
    std::vector<std::uint8_t> bytes((samples.size() * 12 + 7) / 8);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::size_t pair = i / 2 * 24;
        putBits(bytes, pair + (i % 2 == 0 ? 0 : 16), samples[i] >> low, 8);
        putBits(bytes, pair + (i % 2 == 0 ? 8 : 12), samples[i] & ((1U << low) - 1), low);
    }
    return bytes;
}

/// The samples as a camera would send them in `format`.
inline std::vector<std::uint8_t> encode(const PixelFormat &format,
                                        const std::vector<unsigned> &samples)
{
    if (format.packing == PixelPacking::GigePacked) {
        return encodeGigePacked(samples, format.depth);
    }
    const std::size_t stride = format.packing == PixelPacking::Words ? 16 : format.depth;
    std::vector<std::uint8_t> bytes((samples.size() * stride + 7) / 8);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        putBits(bytes, i * stride, samples[i], format.depth);
    }
    return bytes;
}

/// Samples that use every bit of the depth and differ from their neighbours.
inline std::vector<unsigned> testSamples(std::size_t count, unsigned depth)
{
    std::vector<unsigned> samples(count);
    unsigned state = 12345;
    for (unsigned &sample : samples) {
        state = state * 1664525U + 1013904223U;
        sample = (state >> 8) & ((1U << depth) - 1);
    }
    if (!samples.empty()) {
        samples.back() = (1U << depth) - 1;
    }
    return samples;
}

inline orvalis::ImageView view(const PixelFormat &format, const Exact<std::uint8_t> &bytes,
                               std::uint32_t width, std::uint32_t height)
{
    return {&format, bytes.data(), bytes.size(), width, height};
}

} // namespace converttest
