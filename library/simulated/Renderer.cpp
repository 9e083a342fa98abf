// SPDX-License-Identifier: MIT
// Renders stills and frames.
#include "library/simulated/Renderer.h"

#include "library/simulated/Mosaic.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace orvalis::simulated {
namespace {

/// Light of one row: weighted sum of the planes, plus detail. Written so that the compiler
/// vectorises it.
void weigh(const std::uint16_t *__restrict red, const std::uint16_t *__restrict green,
           const std::uint16_t *__restrict blue, const std::array<float, 3> &weights,
           std::uint16_t *__restrict light, std::size_t count)
{
    const float r = weights[0], g = weights[1], b = weights[2];
    constexpr float kTop = kLightSteps - 1;
    for (std::size_t i = 0; i < count; ++i) {
        float value = r * red[i] + g * green[i] + b * blue[i] + 0.5f;
        value = value < 0.0f ? 0.0f : value;
        value = value > kTop ? kTop : value;
        light[i] = static_cast<std::uint16_t>(static_cast<int>(value));
    }
}

void weigh(const std::uint16_t *__restrict gray, float weight, std::uint16_t *__restrict light,
           std::size_t count)
{
    constexpr float kTop = kLightSteps - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const float value = weight * gray[i] + 0.5f;
        light[i] = static_cast<std::uint16_t>(static_cast<int>(value > kTop ? kTop : value));
    }
}

void sharpen(const std::int16_t *__restrict detail, float weight, std::uint16_t *__restrict light,
             std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        const auto value = static_cast<int>(light[i]) + static_cast<int>(weight * detail[i]);
        light[i] = static_cast<std::uint16_t>(std::clamp<int>(value, 0, kLightSteps - 1));
    }
}

/// The offset of a column of an uncorrected thermal sensor, in light steps.
int columnError(std::uint32_t x)
{
    const std::uint32_t hash = (x * 2654435761u) >> 16;
    return static_cast<int>(hash % 1601) - 800;
}

} // namespace

Renderer::Renderer(const CameraModel &model) : model_(model) {}

template <> Renderer::Still<std::uint8_t> &Renderer::still() { return still8_; }
template <> Renderer::Still<std::uint16_t> &Renderer::still() { return still12_; }

std::size_t Renderer::samplesPerPixel() const
{
    return bytesPerPixel(settings_->pixelFormat) / (isDeep(settings_->pixelFormat) ? 2 : 1);
}

void Renderer::render(const SensorSettings &settings, const FrameStamp &stamp, std::uint8_t *out)
{
    const std::lock_guard lock(mutex_);
    prepare(settings);
    if (isDeep(settings.pixelFormat))
        drawFrame<std::uint16_t>(stamp, out);
    else
        drawFrame<std::uint8_t>(stamp, out);
}

void Renderer::prepare(const SensorSettings &settings)
{
    if (!scene_)
        scene_ = makeScene(model_);
    if (settings_ == settings)
        return;
    settings_ = settings;
    try {
        if (isDeep(settings.pixelFormat)) {
            still8_ = {};
            drawStill<std::uint16_t>(settings);
        } else {
            still12_ = {};
            drawStill<std::uint8_t>(settings);
        }
        findDiscColor(settings);
    } catch (...) { // out of memory: the still is invalid
        settings_.reset();
        throw;
    }
}

template <class Sample> void Renderer::drawStill(const SensorSettings &settings)
{
    using Types = NoiseTypes<Sample>;
    const Region &region = settings.region;
    const ColorMatrix matrix = makeColorMatrix(settings, model_.exposureDefault);
    const bool pattern = settings.pattern != TestPattern::Off;
    curve_ = pattern ? makeStraightCurve(Types::kMaximum)
                     : makeToneCurve(settings, Types::kMaximum, Types::kSigmaMaximum);
    for (auto &light : light_)
        light.resize(region.width);
    const std::size_t rowSamples = region.width * samplesPerPixel();
    auto &target = still<Sample>();
    target.values.resize(rowSamples * region.height);
    target.sigma.resize(rowSamples * region.height);
    for (std::uint32_t y = 0; y < region.height; ++y) {
        if (pattern)
            drawPattern(settings, y);
        else
            drawLight(settings, matrix, y);
        const LightRow row{light_[0].data(), light_[1].data(), light_[2].data(), region.width, y};
        packRow<Sample>(settings.pixelFormat, row, curve_, &target.values[y * rowSamples],
                        &target.sigma[y * rowSamples]);
    }
}

void Renderer::drawPattern(const SensorSettings &settings, std::uint32_t y)
{
    const Region &region = settings.region;
    const bool mono = isMono(settings.pixelFormat);
    for (std::uint32_t x = 0; x < region.width; ++x) {
        const auto color =
            patternAt(settings.pattern, x, y, region.width, region.height, settings.patternShift);
        const int brightness = mono ? toYuv(color[0], color[1], color[2])[0] : 0;
        for (std::size_t c = 0; c < 3; ++c) {
            const std::uint32_t level = mono ? std::uint32_t(brightness) : color[c];
            light_[c][x] = static_cast<std::uint16_t>((level * (kLightSteps - 1) + 127) / 255);
        }
    }
}

void Renderer::drawLight(const SensorSettings &settings, const ColorMatrix &matrix, std::uint32_t y)
{
    if (isMono(settings.pixelFormat)) {
        drawLightRow(settings, brightnessRow(matrix), y, light_[0]);
        return;
    }
    for (std::size_t c = 0; c < 3; ++c)
        drawLightRow(settings, matrix[c], y, light_[c]);
}

void Renderer::drawLightRow(const SensorSettings &settings, const std::array<float, 3> &weights,
                            std::uint32_t y, std::vector<std::uint16_t> &light)
{
    const Region &region = settings.region;
    const Reduction &reduction = settings.reduction;
    const std::uint32_t row =
        settings.reverseY ? reduction.height - 1 - (region.y + y) : region.y + y;
    const std::uint32_t left =
        settings.reverseX ? reduction.width - region.x - region.width : region.x;
    if (reduction.reduces())
        reduceRows(settings, weights, row, left, light);
    else
        readRow(settings, weights, row, left, light);
    if (settings.reverseX)
        std::reverse(light.begin(), light.end());
}

void Renderer::reduceRows(const SensorSettings &settings, const std::array<float, 3> &weights,
                          std::uint32_t y, std::uint32_t left, std::vector<std::uint16_t> &light)
{
    const Reduction &reduction = settings.reduction;
    sensorLight_.resize(light.size() * reduction.stepX);
    sums_.assign(light.size(), 0);
    for (std::uint32_t v = 0; v < reduction.binY; ++v) {
        readRow(settings, weights, y * reduction.stepY + v, left * reduction.stepX, sensorLight_);
        for (std::size_t x = 0; x < light.size(); ++x)
            for (std::uint32_t u = 0; u < reduction.binX; ++u)
                sums_[x] += sensorLight_[x * reduction.stepX + u];
    }
    const std::uint32_t count = std::max(1U, reduction.binX * reduction.binY);
    for (std::size_t x = 0; x < light.size(); ++x)
        light[x] = static_cast<std::uint16_t>((sums_[x] + count / 2) / count);
}

void Renderer::readRow(const SensorSettings &settings, const std::array<float, 3> &weights,
                       std::uint32_t sensorRow, std::uint32_t left,
                       std::vector<std::uint16_t> &light) const
{
    const std::size_t width = light.size();
    const float sum = weights[0] + weights[1] + weights[2];
    const auto at = [&](std::size_t plane) { return scene_->planes[plane].row(sensorRow) + left; };
    if (model_.color)
        weigh(at(0), at(1), at(2), weights, light.data(), width);
    else
        weigh(at(0), sum, light.data(), width);
    if (settings.sharpness > 0)
        sharpen(&scene_->detail[std::size_t(sensorRow) * model_.width + left],
                sum * static_cast<float>(settings.sharpness), light.data(), width);
    if (!settings.uniform)
        for (std::uint32_t x = 0; x < width; ++x)
            light[x] = static_cast<std::uint16_t>(
                std::clamp<int>(light[x] + columnError(left + x), 0, kLightSteps - 1));
}

void Renderer::findDiscColor(const SensorSettings &settings)
{
    const ColorMatrix matrix = makeColorMatrix(settings, model_.exposureDefault);
    const auto lightOf = [&](const std::array<float, 3> &weights) {
        float value = 0;
        for (std::size_t c = 0; c < 3; ++c)
            value += weights[c] * scene_->disc.color[c];
        return static_cast<std::uint16_t>(std::clamp<float>(value, 0, kLightSteps - 1));
    };
    const auto sampleOf = [&](const std::array<float, 3> &weights) {
        return curve_.value[lightOf(weights)];
    };
    if (isMono(settings.pixelFormat))
        discSamples_.fill(sampleOf(brightnessRow(matrix)));
    else
        discSamples_ = {sampleOf(matrix[0]), sampleOf(matrix[1]), sampleOf(matrix[2])};
    if (settings.pixelFormat == format::kYuv422)
        discSamples_ = toYuv(discSamples_[0], discSamples_[1], discSamples_[2]);
}

Renderer::Disc Renderer::placeDisc(const FrameStamp &stamp) const
{
    const bool shown = stamp.motion && settings_->pattern == TestPattern::Off;
    const Reduction &reduction = settings_->reduction;
    Disc disc{.samples = discSamples_,
              .x = scene_->disc.positionAt(stamp.seconds),
              .y = scene_->disc.y,
              .radius = shown ? scene_->disc.radius : 0};
    if (settings_->reverseX)
        disc.x = reduction.width * reduction.stepX - 1 - disc.x;
    if (settings_->reverseY)
        disc.y = reduction.height * reduction.stepY - 1 - disc.y;
    disc.x -= settings_->region.x * reduction.stepX;
    disc.y -= settings_->region.y * reduction.stepY;
    return disc;
}

template <class Sample>
const Sample *Renderer::withDisc(const Disc &disc, std::uint32_t y, const Sample *row)
{
    const Reduction &reduction = settings_->reduction;
    const double dy = y * reduction.stepY - disc.y;
    if (std::abs(dy) >= disc.radius)
        return row;
    const double half = std::sqrt(disc.radius * disc.radius - dy * dy);
    const double width = settings_->region.width;
    // whole pairs of pixels: some formats share colour between two
    const auto first =
        static_cast<std::uint32_t>(std::clamp((disc.x - half) / reduction.stepX, 0.0, width)) & ~1u;
    const auto last =
        static_cast<std::uint32_t>(std::clamp((disc.x + half) / reduction.stepX, 0.0, width)) & ~1u;
    if (first >= last)
        return row;
    const std::size_t samples = settings_->region.width * samplesPerPixel();
    scratch_.resize(samples);
    auto *const copy = reinterpret_cast<Sample *>(scratch_.data());
    std::memcpy(copy, row, samples * sizeof(Sample));
    paintPixels<Sample>(settings_->pixelFormat, disc.samples, first, last, y, copy);
    return copy;
}

template <class Sample> void Renderer::drawFrame(const FrameStamp &stamp, std::uint8_t *out)
{
    const auto &source = still<Sample>();
    const auto &random = randomNumbers<Sample>();
    const std::size_t samples = settings_->region.width * samplesPerPixel();
    const Disc disc = placeDisc(stamp);
    for (std::uint32_t y = 0; y < settings_->region.height; ++y) {
        const Sample *const row = withDisc(disc, y, &source.values[y * samples]);
        auto *const target = reinterpret_cast<Sample *>(out) + y * samples;
        if (stamp.noise)
            addNoise(row, &source.sigma[y * samples], &random[offsets_.next(samples)], target,
                     samples);
        else
            std::memcpy(target, row, samples * sizeof(Sample));
    }
    if (stamp.overlay)
        drawNumber<Sample>(stamp.number, out);
}

template <class Sample> void Renderer::drawNumber(std::uint32_t number, std::uint8_t *out) const
{
    constexpr std::uint32_t kField = 8;
    constexpr std::uint16_t kTop = NoiseTypes<Sample>::kMaximum;
    const bool yuv = settings_->pixelFormat == format::kYuv422;
    const Region &region = settings_->region;
    const std::uint32_t fieldsInRow = std::min(32u, region.width / kField);
    const std::size_t samples = region.width * samplesPerPixel();
    for (std::uint32_t bit = 0; bit < 32; ++bit) {
        const std::uint16_t level = (number >> bit & 1u) != 0 ? kTop : 0;
        const std::array<std::uint16_t, 3> color{level, yuv ? std::uint16_t(128) : level,
                                                 yuv ? std::uint16_t(128) : level};
        const std::uint32_t left = bit % fieldsInRow * kField, top = bit / fieldsInRow * kField;
        for (std::uint32_t y = top; y < std::min(top + kField, region.height); ++y)
            paintPixels<Sample>(settings_->pixelFormat, color, left, left + kField, y,
                                reinterpret_cast<Sample *>(out) + y * samples);
    }
}

double Renderer::meanBrightness(const Region &area) const
{
    const std::lock_guard lock(mutex_);
    if (!settings_)
        return 0;
    const Region &region = settings_->region;
    const bool deep = isDeep(settings_->pixelFormat);
    const std::size_t perPixel = samplesPerPixel();
    // luminance is every second sample of YUV, every sample of other formats
    const std::size_t step = settings_->pixelFormat == format::kYuv422 ? 2 : 1;
    double sum = 0;
    std::size_t count = 0;
    const std::uint32_t bottom = std::min(area.y + area.height, region.height);
    const std::uint32_t right = std::min(area.x + area.width, region.width);
    for (std::uint32_t y = area.y; y < bottom; y += y % 2 == 0 ? 1 : 15) // pairs, for mosaics
        for (std::size_t i = area.x * perPixel; i < right * perPixel; i += step, ++count) {
            const std::size_t at = y * region.width * perPixel + i;
            sum += deep ? still12_.values[at] : still8_.values[at];
        }
    return count > 0 ? sum / double(count) / (deep ? 4095 : 255) : 0;
}

std::array<double, 3> Renderer::meanLight(const SensorSettings &settings)
{
    const std::lock_guard lock(mutex_);
    if (!scene_)
        scene_ = makeScene(model_);
    std::array<double, 3> mean = sensorResponse(settings.illuminant);
    const Region &region = settings.region;
    const std::uint32_t stepX = settings.reduction.stepX, stepY = settings.reduction.stepY;
    for (std::size_t c = 0; c < 3; ++c) {
        const Plane &plane = scene_->planes[std::min(c, scene_->planes.size() - 1)];
        double sum = 0;
        std::size_t count = 0;
        for (std::uint32_t y = 0; y < region.height; y += 8)
            for (std::uint32_t x = 0; x < region.width; x += 8, ++count)
                sum += plane.row((region.y + y) * stepY)[(region.x + x) * stepX];
        mean[c] *= sum / double(std::max<std::size_t>(count, 1));
    }
    return mean;
}

} // namespace orvalis::simulated
