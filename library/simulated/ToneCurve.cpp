// SPDX-License-Identifier: MIT
// The response of the simulated sensors.
#include "library/simulated/ToneCurve.h"

#include "library/simulated/Noise.h"
#include "library/simulated/Scene.h"

#include <algorithm>
#include <cmath>

namespace orvalis::simulated {
namespace {

constexpr double kFullWell = 10000; ///< electrons of full scale at 0 dB
constexpr double kReadNoise = 9;    ///< electrons
constexpr double kWhiteLevel = 0.85;
constexpr double kRed = 0.299, kGreen = 0.587, kBlue = 0.114;

double kneeCurve(double x, const std::array<double, 4> &p)
{
    if (x < p[0])
        return x / p[0] * p[1];
    if (x < p[2])
        return p[1] + (x - p[0]) / (p[2] - p[0]) * (p[3] - p[1]);
    return p[3] + (x - p[2]) / (1 - p[2]) * (1 - p[3]);
}

double tone(double light, const SensorSettings &s)
{
    double y = std::min(1.0, light + s.black);
    y = std::pow(y, s.gamma);
    if (s.knee)
        y = kneeCurve(y, s.kneePoints);
    y += s.shadowLift * y * (1 - y) * (1 - y);
    return std::clamp((y - 0.5) * s.contrast + 0.5, 0.0, 1.0);
}

/// Shot noise and read-out noise as fractions of full scale.
double noiseAt(double light, const SensorSettings &s)
{
    const double shot = light * s.gain / kFullWell;
    const double readOut = kReadNoise * s.gain / kFullWell;
    return std::sqrt(shot + readOut * readOut) * s.noise;
}

using Matrix = std::array<std::array<double, 3>, 3>;

Matrix multiply(const Matrix &a, const Matrix &b)
{
    Matrix product{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            for (std::size_t k = 0; k < 3; ++k)
                product[i][j] += a[i][k] * b[k][j];
    return product;
}

/// Rotates and scales the plane of colour differences; luminance stays unchanged.
Matrix colorPlane(double hue, double saturation)
{
    constexpr Matrix kToDifferences{{{kRed, kGreen, kBlue},
                                     {-kRed / 1.772, -kGreen / 1.772, (1 - kBlue) / 1.772},
                                     {(1 - kRed) / 1.402, -kGreen / 1.402, -kBlue / 1.402}}};
    constexpr Matrix kToColors{
        {{1, 0, 1.402}, {1, -1.772 * kBlue / kGreen, -1.402 * kRed / kGreen}, {1, 1.772, 0}}};
    const double c = saturation * std::cos(hue), s = saturation * std::sin(hue);
    const Matrix turn{{{1, 0, 0}, {0, c, -s}, {0, s, c}}};
    return multiply(kToColors, multiply(turn, kToDifferences));
}

} // namespace

ToneCurve makeStraightCurve(int maximum)
{
    ToneCurve curve;
    curve.sigma.assign(kLightSteps, 0);
    curve.value.resize(kLightSteps);
    for (std::uint32_t light = 0; light < kLightSteps; ++light)
        curve.value[light] =
            static_cast<std::uint16_t>(std::lround(double(light) * maximum / (kLightSteps - 1)));
    return curve;
}

ToneCurve makeToneCurve(const SensorSettings &settings, int maximum, int sigmaMaximum)
{
    std::vector<double> tones(kLightSteps);
    for (std::uint32_t i = 0; i < kLightSteps; ++i)
        tones[i] = tone(i / double(kLightSteps - 1), settings);
    ToneCurve curve{.value = std::vector<std::uint16_t>(kLightSteps),
                    .sigma = std::vector<std::uint16_t>(kLightSteps)};
    constexpr std::uint32_t kReach = 32; // the slope is measured over this many steps on each side
    for (std::uint32_t i = 0; i < kLightSteps; ++i) {
        const std::uint32_t low = i < kReach ? 0 : i - kReach;
        const std::uint32_t high = std::min(i + kReach, kLightSteps - 1);
        const double slope = (tones[high] - tones[low]) * (kLightSteps - 1) / (high - low);
        const double sigma = noiseAt(i / double(kLightSteps - 1), settings) * std::abs(slope) *
                             maximum * kSigmaSteps;
        curve.value[i] = static_cast<std::uint16_t>(std::lround(tones[i] * maximum));
        curve.sigma[i] =
            static_cast<std::uint16_t>(std::min<long>(std::lround(sigma), sigmaMaximum));
    }
    return curve;
}

std::array<double, 3> sensorResponse(std::uint32_t illuminant)
{
    constexpr double kLights[3][3] = {{1, 1, 1}, {1.5, 1, 0.55}, {0.8, 1, 1.3}};
    const auto &light = kLights[std::min<std::uint32_t>(illuminant, 2)];
    return {light[0] / kNeutralRatio[0], light[1] / kNeutralRatio[1], light[2] / kNeutralRatio[2]};
}

ColorMatrix makeColorMatrix(const SensorSettings &settings, double exposureDefault)
{
    const double scale = settings.exposure / exposureDefault * settings.gain * kWhiteLevel *
                         (kLightSteps - 1) / kWhite;
    const auto response = sensorResponse(settings.illuminant);
    const Matrix plane = colorPlane(settings.hue, settings.saturation);
    ColorMatrix matrix{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            matrix[i][j] =
                static_cast<float>(plane[i][j] * scale * response[j] * settings.ratio[j]);
    return matrix;
}

std::array<float, 3> brightnessRow(const ColorMatrix &matrix)
{
    std::array<float, 3> row{};
    for (std::size_t j = 0; j < 3; ++j)
        row[j] =
            static_cast<float>(kRed * matrix[0][j] + kGreen * matrix[1][j] + kBlue * matrix[2][j]);
    return row;
}

} // namespace orvalis::simulated
