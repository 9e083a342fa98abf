// SPDX-License-Identifier: MIT
// Renders the scenes of the simulated cameras.
#include "library/simulated/Scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvalis::simulated {
namespace {

using Color = std::array<float, 3>;
using std::numbers::pi;

std::uint16_t toLight(double value)
{
    return static_cast<std::uint16_t>(std::clamp(value * kWhite, 0.0, 65535.0));
}

/// Paints into the planes of a scene, in coordinates from 0 to 1.
class Painter {
public:
    explicit Painter(const CameraModel &model)
        : width_(model.width), height_(model.height), color_(model.color)
    {
        planes_.resize(color_ ? 3 : 1);
        for (Plane &plane : planes_) {
            plane.width = width_;
            plane.values.resize(std::size_t(width_) * height_);
        }
    }

    std::uint32_t width() const { return width_; }
    std::uint32_t height() const { return height_; }
    double aspect() const { return double(width_) / height_; }
    std::vector<Plane> take() { return std::move(planes_); }

    void set(std::uint32_t x, std::uint32_t y, const Color &light)
    {
        const std::size_t i = std::size_t(y) * width_ + x;
        if (color_)
            for (std::size_t c = 0; c < 3; ++c)
                planes_[c].values[i] = toLight(light[c]);
        else
            planes_[0].values[i] = toLight(0.299 * light[0] + 0.587 * light[1] + 0.114 * light[2]);
    }

    /// Calls `light(u, v)` for each pixel of a rectangle and paints what it returns.
    template <class Light> void fill(double u0, double v0, double u1, double v1, Light light)
    {
        const auto x1 = std::min(width_, static_cast<std::uint32_t>(u1 * width_));
        const auto y1 = std::min(height_, static_cast<std::uint32_t>(v1 * height_));
        for (auto y = static_cast<std::uint32_t>(v0 * height_); y < y1; ++y)
            for (auto x = static_cast<std::uint32_t>(u0 * width_); x < x1; ++x)
                set(x, y, light((x + 0.5) / width_, (y + 0.5) / height_));
    }

private:
    std::uint32_t width_;
    std::uint32_t height_;
    bool color_;
    std::vector<Plane> planes_;
};

Color gray(double value)
{
    const auto v = static_cast<float>(value);
    return {v, v, v};
}

/// The colour of a hue in degrees, with light between `low` and `high`.
Color fromHue(double degrees, double low, double high)
{
    Color color;
    for (std::size_t c = 0; c < 3; ++c) {
        const double k = std::fmod(degrees / 60.0 + 6.0 - 2.0 * double(c), 6.0);
        const double share = std::clamp(std::abs(k - 3.0) - 1.0, 0.0, 1.0);
        color[c] = static_cast<float>(low + (high - low) * share);
    }
    return color;
}

/// Six columns and four rows: strong, muted and light hues, and greys. Each row covers the whole
/// circle of hues, so that the mean of the chart is grey.
void paintPatches(Painter &painter)
{
    constexpr double kLeft = 0.04, kTop = 0.06, kWidth = 0.48, kHeight = 0.42, kGap = 0.008;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 6; ++column) {
            const double hue = column * 60.0 + row * 20.0;
            const Color colors[] = {fromHue(hue, 0.06, 0.70), fromHue(hue, 0.15, 0.45),
                                    fromHue(hue, 0.45, 0.80), gray(0.04 + 0.17 * column)};
            const double u = kLeft + column * kWidth / 6, v = kTop + row * kHeight / 4;
            painter.fill(u, v, u + kWidth / 6 - kGap, v + kHeight / 4 - kGap,
                         [&](double, double) { return colors[row]; });
        }
}

void paintStar(Painter &painter)
{
    constexpr double kCenterU = 0.77, kCenterV = 0.27, kRadius = 0.20;
    const double aspect = painter.aspect();
    const double radiusU = kRadius / aspect;
    painter.fill(kCenterU - radiusU, kCenterV - kRadius, kCenterU + radiusU, kCenterV + kRadius,
                 [&](double u, double v) {
                     const double dx = (u - kCenterU) * aspect, dy = v - kCenterV;
                     if (dx * dx + dy * dy > kRadius * kRadius)
                         return gray(0.50);
                     const double turns = std::atan2(dy, dx) / (2 * pi) * 36;
                     return gray(turns - std::floor(turns) < 0.5 ? 0.85 : 0.05);
                 });
}

/// Groups of upright bars, 12 to 2 pixels wide.
void paintLinePairs(Painter &painter)
{
    constexpr std::uint32_t kWidths[] = {12, 8, 6, 4, 3, 2};
    double u = 0.55;
    for (const std::uint32_t bar : kWidths) {
        painter.fill(u, 0.52, u + 0.06, 0.62, [&](double at, double) {
            const auto x = static_cast<std::uint32_t>(at * painter.width());
            return gray(x / bar % 2 == 0 ? 0.85 : 0.05);
        });
        u += 0.068;
    }
}

void paintLamp(Painter &painter)
{
    painter.fill(
        0.53, 0.05, 0.57, 0.05 + 0.04 * painter.aspect(), [](double, double) { return gray(2.0); });
}

std::vector<Plane> paintVisible(const CameraModel &model)
{
    Painter painter(model);
    painter.fill(0, 0, 1, 1, [](double u, double v) { return gray(0.34 + 0.14 * u + 0.10 * v); });
    paintPatches(painter);
    paintStar(painter);
    paintLinePairs(painter);
    paintLamp(painter);
    painter.fill(
        0, 0.66, 1, 0.80, [](double, double) { return gray(0.26); });
    painter.fill(0.04, 0.84, 0.96, 0.94, [](double u, double) { return gray((u - 0.04) / 0.92); });
    return painter.take();
}

/// A warm object: a soft spot.
struct Warmth {
    double u, v, width, height, amount;
};

std::vector<Plane> paintThermal(const CameraModel &model)
{
    constexpr Warmth kSpots[] = {
        {0.30, 0.30, 0.045, 0.07, 0.55}, {0.30, 0.52, 0.09, 0.16, 0.42}, // a person
        {0.72, 0.35, 0.10, 0.06, 0.70},  {0.80, 0.42, 0.02, 0.02, 0.90}, // a motor, its bearing
        {0.55, 0.15, 0.30, 0.01, 0.35},                                  // a pipe
    };
    Painter painter(model);
    painter.fill(
        0, 0, 1, 1,
        [&](double u, double v) {
            double heat = 0.12 + 0.06 * v;
            for (const Warmth &spot : kSpots) {
                const double dx = (u - spot.u) / spot.width, dy = (v - spot.v) / spot.height;
                heat += spot.amount * std::exp(-0.5 * (dx * dx + dy * dy));
            }
            return gray(heat);
        });
    painter.fill(0.04, 0.86, 0.96, 0.94, [](double u, double) { return gray((u - 0.04) / 0.92); });
    return painter.take();
}

std::uint16_t brightnessAt(const std::vector<Plane> &planes, std::size_t i)
{
    if (planes.size() == 1)
        return planes[0].values[i];
    return static_cast<std::uint16_t>(
        (77u * planes[0].values[i] + 150u * planes[1].values[i] + 29u * planes[2].values[i]) >> 8);
}

/// The detail that a blur over 3 x 3 pixels removes; 0 for edge pixels of the sensor.
std::vector<std::int16_t> makeDetail(const std::vector<Plane> &planes, std::size_t width,
                                     std::size_t height)
{
    std::vector<std::uint16_t> brightness(width * height);
    for (std::size_t i = 0; i < brightness.size(); ++i)
        brightness[i] = brightnessAt(planes, i);
    std::vector<std::int16_t> detail(width * height);
    for (std::size_t y = 1; y + 1 < height; ++y) {
        const std::uint16_t *const row = &brightness[y * width];
        for (std::size_t x = 1; x + 1 < width; ++x) {
            int sum = 0;
            for (const std::uint16_t *p : {row + x - width, row + x, row + x + width})
                sum += p[-1] + p[0] + p[1];
            detail[y * width + x] =
                static_cast<std::int16_t>(std::clamp(row[x] - sum / 9, -32768, 32767));
        }
    }
    return detail;
}

} // namespace

double MovingDisc::positionAt(double seconds) const
{
    const double length = right - left;
    const double way = std::fmod(seconds * speed, 2 * length);
    return left + (way < length ? way : 2 * length - way);
}

Scene makeScene(const CameraModel &model)
{
    Scene scene;
    scene.planes = model.thermal ? paintThermal(model) : paintVisible(model);
    scene.detail = makeDetail(scene.planes, model.width, model.height);
    const double radius = 0.05 * model.height;
    scene.disc = {.left = 2 * radius,
                  .right = model.width - 2 * radius,
                  .y = 0.73 * model.height,
                  .radius = radius,
                  .speed = 0.25 * model.width,
                  .color = {toLight(0.90), toLight(model.thermal ? 0.90 : 0.45),
                            toLight(model.thermal ? 0.90 : 0.10)}};
    return scene;
}

} // namespace orvalis::simulated
