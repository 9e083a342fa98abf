// SPDX-License-Identifier: MIT
// Random numbers, and the vectorised loops that weight them.
#include "library/simulated/Noise.h"

#include "library/simulated/Vectorised.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace orvalis::simulated {
namespace {

constexpr std::size_t kNumbers = std::size_t(1) << 17;

template <class Sample> auto makeNumbers()
{
    using Types = NoiseTypes<Sample>;
    using Limits = std::numeric_limits<typename Types::Random>;
    std::mt19937 engine(20260101);
    std::normal_distribution<double> normal(0.0, std::pow(2.0, Types::kShift) / kSigmaSteps);
    std::vector<typename Types::Random> numbers(kNumbers);
    for (auto &number : numbers)
        number = static_cast<typename Types::Random>(
            std::clamp<double>(std::round(normal(engine)), -Limits::max(), Limits::max()));
    return numbers;
}

template <int kMaximum> int clampSample(int value)
{
    value = value < 0 ? 0 : value;
    return value > kMaximum ? kMaximum : value;
}

} // namespace

template <class Sample> const std::vector<typename NoiseTypes<Sample>::Random> &randomNumbers()
{
    static const auto kAll = makeNumbers<Sample>();
    return kAll;
}
template const std::vector<std::int8_t> &randomNumbers<std::uint8_t>();
template const std::vector<std::int16_t> &randomNumbers<std::uint16_t>();

std::size_t NoiseOffsets::next(std::size_t count)
{
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_ % (kNumbers - count);
}

ORVALIS_VECTORISED
void addNoise(const std::uint8_t *__restrict base, const std::uint8_t *__restrict sigma,
              const std::int8_t *__restrict random, std::uint8_t *__restrict out, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        // fits: 127 * 255 + 128 < 2^15
        const auto weighted = static_cast<std::int16_t>(random[i] * sigma[i] + 128);
        const auto value = static_cast<std::int16_t>(base[i] + (weighted >> 8));
        out[i] = static_cast<std::uint8_t>(clampSample<255>(value));
    }
}

ORVALIS_VECTORISED
void addNoise(const std::uint16_t *__restrict base, const std::int16_t *__restrict sigma,
              const std::int16_t *__restrict random, std::uint16_t *__restrict out,
              std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto weighted = static_cast<std::int16_t>((random[i] * sigma[i]) >> 16);
        const auto value = static_cast<std::int16_t>(static_cast<std::int16_t>(base[i]) + weighted);
        out[i] = static_cast<std::uint16_t>(clampSample<4095>(value));
    }
}

} // namespace orvalis::simulated
