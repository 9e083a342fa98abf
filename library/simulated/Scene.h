// SPDX-License-Identifier: MIT
// What stands in front of a simulated camera: reflected light for every pixel of its sensor.
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

/// A disc that runs to and fro in a lane of the scene; places in pixels of the sensor.
struct MovingDisc {
    double left = 0;  ///< x of the centre at its leftmost
    double right = 0; ///< and at its rightmost
    double y = 0;
    double radius = 0;
    double speed = 0; ///< pixels per second
    std::array<std::uint16_t, 3> color{};

    /// x of the centre at a time.
    double positionAt(double seconds) const;
};

/// A still scene and one thing that moves. Visible light: a chart of colour patches, a resolution
/// star, line pairs, a lamp, a grey ramp. Thermal: warm things before a cool wall.
struct Scene {
    std::vector<Plane> planes; ///< red, green, blue; a camera without colour has brightness only
    std::vector<std::int16_t> detail; ///< brightness less the mean of its neighbourhood
    MovingDisc disc;
};

/// Draws the scene for a camera's sensor.
Scene makeScene(const CameraModel &model);

} // namespace orvalis::simulated
