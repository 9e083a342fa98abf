// SPDX-License-Identifier: MIT
// What the automatic controls measure in a picture.
#include "library/simulated/Renderer.h"
#include "library/simulated/CameraModel.h"
#include "tests/library/simulated/Bench.h"

#include <vector>

namespace orvalis::test {
namespace {

using simulated::format::kMono8;
using simulated::format::kRgb8;

class MeanBrightness : public testing::TestWithParam<std::uint32_t> {};

// The ramp is 0 at the left and 255 at the right of a region of 256 columns.
TEST_P(MeanBrightness, isThatOfTheAreaAlone)
{
    simulated::Renderer renderer(simulated::cameraModels()[1]);
    simulated::SensorSettings settings;
    settings.region = {0, 0, 256, 32};
    settings.pattern = simulated::TestPattern::GreyHorizontalRamp;
    settings.pixelFormat = GetParam();
    std::vector<std::uint16_t> out(256 * 32 * 3);
    renderer.render(settings, {.noise = false}, reinterpret_cast<std::uint8_t *>(out.data()));
    EXPECT_NEAR(renderer.meanBrightness({0, 0, 256, 32}), 0.5, 0.01);
    EXPECT_NEAR(renderer.meanBrightness({0, 0, 128, 32}), 0.25, 0.01);
    EXPECT_NEAR(renderer.meanBrightness({128, 8, 128, 16}), 0.75, 0.01);
    EXPECT_NEAR(renderer.meanBrightness({192, 0, 512, 512}), 0.875, 0.01);
}

INSTANTIATE_TEST_SUITE_P(Formats, MeanBrightness, testing::Values(kMono8, kRgb8));

} // namespace
} // namespace orvalis::test
