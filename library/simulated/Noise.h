// SPDX-License-Identifier: MIT
// Sensor noise: ready-made random numbers, weighted pixel by pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalis::simulated {

/// Standard deviations are given in steps of 1/8 of a grey value.
constexpr double kSigmaSteps = 8;

/// Types that go with samples of 8 and of 12 bits.
template <class Sample> struct NoiseTypes;
/// 8 bits.
template <> struct NoiseTypes<std::uint8_t> {
    using Sigma = std::uint8_t; ///< holds kSigmaMaximum
    using Random = std::int8_t; ///< a random number before it is scaled
    static constexpr int kMaximum = 255;
    static constexpr int kSigmaMaximum = 255;
    static constexpr int kShift = 8;
};
/// 12 bits in 16.
template <> struct NoiseTypes<std::uint16_t> {
    using Sigma = std::int16_t;  ///< holds kSigmaMaximum
    using Random = std::int16_t; ///< a random number before it is scaled
    static constexpr int kMaximum = 4095;
    static constexpr int kSigmaMaximum = 8191;
    static constexpr int kShift = 16;
};

/// Normally distributed numbers, shared by all cameras; made when they are first needed.
/// The standard deviation is 2^kShift / kSigmaSteps, values beyond the type are cut.
template <class Sample> const std::vector<typename NoiseTypes<Sample>::Random> &randomNumbers();

/// Where in randomNumbers() the noise of a row of pictures begins: a different place for each row.
class NoiseOffsets {
public:
    /// An offset so that `count` numbers follow. `count` is less than half of all numbers.
    std::size_t next(std::size_t count);

private:
    std::uint32_t state_ = 2463534242u;
};

/// `count` samples with noise: base + random x sigma, kept between 0 and the largest sample.
void addNoise(const std::uint8_t *base, const std::uint8_t *sigma, const std::int8_t *random,
              std::uint8_t *out, std::size_t count);
void addNoise(const std::uint16_t *base, const std::int16_t *sigma, const std::int16_t *random,
              std::uint16_t *out, std::size_t count);

} // namespace orvalis::simulated
