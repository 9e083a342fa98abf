// SPDX-License-Identifier: MIT
// Sensor noise: precomputed random numbers, weighted for each pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalis::simulated {

/// Standard deviations are in units of 1/8 grey level.
constexpr double kSigmaSteps = 8;

/// Types for samples of 8 and of 12 bits.
template <class Sample> struct NoiseTypes;
/// 8 bits.
template <> struct NoiseTypes<std::uint8_t> {
    using Sigma = std::uint8_t; ///< range up to kSigmaMaximum
    using Random = std::int8_t; ///< an unscaled random number
    static constexpr int kMaximum = 255;
    static constexpr int kSigmaMaximum = 255;
    static constexpr int kShift = 8;
};
/// 12 bits in 16.
template <> struct NoiseTypes<std::uint16_t> {
    using Sigma = std::int16_t;  ///< range up to kSigmaMaximum
    using Random = std::int16_t; ///< an unscaled random number
    static constexpr int kMaximum = 4095;
    static constexpr int kSigmaMaximum = 8191;
    static constexpr int kShift = 16;
};

/// Normally distributed numbers, shared by all cameras and computed on first use. The standard
/// deviation is 2^kShift / kSigmaSteps; values out of the type's range are clamped.
template <class Sample> const std::vector<typename NoiseTypes<Sample>::Random> &randomNumbers();

/// Selects offsets into randomNumbers(), a different one for each row.
class NoiseOffsets {
public:
    /// Returns an offset that at least `count` numbers follow. `count` must be less than half of
    /// all numbers.
    std::size_t next(std::size_t count);

private:
    std::uint32_t state_ = 2463534242u;
};

/// Adds noise to `count` samples: base + random x sigma, clamped to 0 and the largest sample.
void addNoise(const std::uint8_t *base, const std::uint8_t *sigma, const std::int8_t *random,
              std::uint8_t *out, std::size_t count);
void addNoise(const std::uint16_t *base, const std::int16_t *sigma, const std::int16_t *random,
              std::uint16_t *out, std::size_t count);

} // namespace orvalis::simulated
