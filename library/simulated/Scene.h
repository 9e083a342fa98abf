// SPDX-License-Identifier: MIT
// The scene before a simulated camera: reflected light for every pixel of its sensor.
#pragma once

#include "library/simulated/CameraModel.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orvalis::simulated {

/// Light that a perfectly white surface reflects. Lamps are brighter.
constexpr std::uint16_t kWhite = 16384;

/// One value for each pixel of the sensor, rows without padding.
struct Plane {
    std::uint32_t width = 0;
    std::vector<std::uint16_t> values;

    /// `width` values.
    const std::uint16_t *row(std::uint32_t y) const
    {
        return values.data() + std::size_t(y) * width;
    }
};

/// A disc that moves back and forth in a lane of the scene; positions in pixels of the sensor.
struct MovingDisc {
    double left = 0;  ///< smallest x of the centre
    double right = 0; ///< largest x of the centre
    double y = 0;
    double radius = 0;
    double speed = 0; ///< pixels per second
    std::array<std::uint16_t, 3> color{};

    /// The x of the centre at a time.
    double positionAt(double seconds) const;
};

/// A still scene and one moving object. Visible light: a chart of colour patches, a resolution
/// star, line pairs, a lamp, a grey ramp. Thermal: warm objects before a cool wall.
struct Scene {
    std::vector<Plane> planes;        ///< red, green, blue; only luminance for a monochrome camera
    std::vector<std::int16_t> detail; ///< luminance minus the mean of its neighbourhood
    MovingDisc disc;
};

/// Renders the scene for a camera's sensor.
Scene makeScene(const CameraModel &model);

} // namespace orvalis::simulated
