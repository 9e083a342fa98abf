// SPDX-License-Identifier: MIT
// Renders images from scene and settings, reusing what does not change between frames.
#pragma once

#include "library/simulated/Noise.h"
#include "library/simulated/Scene.h"
#include "library/simulated/SensorSettings.h"
#include "library/simulated/ToneCurve.h"

#include <array>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace orvalis::simulated {

/// Renders a camera's images. The scene without noise and motion (the "still") is rendered once for
/// each change of the settings; a frame is the still, plus the moving disc, plus noise. Any thread;
/// renders one image at a time.
class Renderer {
public:
    explicit Renderer(const CameraModel &model);

    /// Renders one image of region.width x region.height pixels. `out` has enough bytes and is
    /// aligned for 16-bit words.
    void render(const SensorSettings &settings, const FrameStamp &stamp, std::uint8_t *out);

    /// Mean sample, 0 to 1, of a part of the last image, without its noise. `area` is in pixels of
    /// the image.
    double meanBrightness(const Region &area) const;
    /// Mean light on the red, green and blue pixels of a region, before white balance.
    std::array<double, 3> meanLight(const SensorSettings &settings);

private:
    /// An image without noise, and the standard deviation of the noise for each sample.
    template <class Sample> struct Still {
        std::vector<Sample> values;
        std::vector<typename NoiseTypes<Sample>::Sigma> sigma;
    };
    /// The moving disc in this image: its colour in samples, its position in the region, in pixels
    /// of the sensor.
    struct Disc {
        std::array<std::uint16_t, 3> samples{}; ///< R, G, B; Y, U, V; or luminance three times
        double x = 0;
        double y = 0;
        double radius = 0;
    };

    void prepare(const SensorSettings &settings);
    template <class Sample> Still<Sample> &still();
    template <class Sample> void drawStill(const SensorSettings &settings);
    void drawPattern(const SensorSettings &settings, std::uint32_t y);
    void drawLight(const SensorSettings &settings, const ColorMatrix &matrix, std::uint32_t y);
    void drawLightRow(const SensorSettings &settings, const std::array<float, 3> &weights,
                      std::uint32_t y, std::vector<std::uint16_t> &light);
    void reduceRows(const SensorSettings &settings, const std::array<float, 3> &weights,
                    std::uint32_t y, std::uint32_t left, std::vector<std::uint16_t> &light);
    void readRow(const SensorSettings &settings, const std::array<float, 3> &weights,
                 std::uint32_t sensorRow, std::uint32_t left,
                 std::vector<std::uint16_t> &light) const;
    void findDiscColor(const SensorSettings &settings);
    Disc placeDisc(const FrameStamp &stamp) const;
    template <class Sample> void drawFrame(const FrameStamp &stamp, std::uint8_t *out);
    template <class Sample>
    const Sample *withDisc(const Disc &disc, std::uint32_t y, const Sample *row);
    template <class Sample> void drawNumber(std::uint32_t number, std::uint8_t *out) const;
    std::size_t samplesPerPixel() const;

    const CameraModel &model_;
    mutable std::mutex mutex_; // guards all below
    std::optional<Scene> scene_;
    std::optional<SensorSettings> settings_; ///< of the still
    ToneCurve curve_;
    std::array<std::vector<std::uint16_t>, 3> light_; ///< one row, in light steps
    std::vector<std::uint16_t> sensorLight_;          ///< one row before reduction
    std::vector<std::uint32_t> sums_; ///< sums of the pixels that are reduced to one
    Still<std::uint8_t> still8_;
    Still<std::uint16_t> still12_;
    std::array<std::uint16_t, 3> discSamples_{};
    std::vector<std::uint16_t> scratch_; ///< one row of samples of either size
    NoiseOffsets offsets_;
};

} // namespace orvalis::simulated
