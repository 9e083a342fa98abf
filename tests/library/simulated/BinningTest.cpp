// SPDX-License-Identifier: MIT
// Binning and decimation: effective sensor size, position of the region, image content.
#include "tests/library/simulated/Bench.h"

#include <cmath>
#include <vector>

namespace orvalis::test {
namespace {

class Binning : public Bench {
protected:
    struct Sizes {
        std::int64_t x, y, width, height, widthMax, heightMax;
        bool operator==(const Sizes &) const = default;
    };
    Sizes sizes()
    {
        return {integer("OffsetX"), integer("OffsetY"),  integer("Width"),
                integer("Height"),  integer("WidthMax"), integer("HeightMax")};
    }
    IntegerValue bounds(const char *name)
    {
        IntegerValue value;
        EXPECT_EQ(nodes().getInteger(name, value), ORVALIS_OK) << name;
        return value;
    }
    std::vector<std::uint8_t> copy()
    {
        const RawImage image = take();
        return {image.data, image.data + image.size};
    }
};

TEST_F(Binning, halvesTheSensorAndTheRegionWithIt)
{
    open(kMono);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 1280, 1024, 1280, 1024}));
    set("BinningHorizontal", 2);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 640, 1024, 640, 1024}));
    set("BinningVertical", 4);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 640, 256, 640, 256}));
    set("DecimationHorizontal", 2);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 320, 256, 320, 256}));
    EXPECT_EQ(integer("PayloadSize"), 320 * 256);
    EXPECT_EQ(integer("SensorWidth"), 1280);
    EXPECT_EQ(integer("SensorHeight"), 1024);
}

TEST_F(Binning, aFullRegionStaysFull)
{
    open(kColor);
    for (const int factor : {2, 3, 4, 1}) {
        set("BinningHorizontal", factor);
        set("DecimationVertical", factor);
        const std::int64_t width = 2448 / factor / 8 * 8, height = 2048 / factor / 8 * 8;
        EXPECT_EQ(sizes(), (Sizes{0, 0, width, height, width, height})) << factor;
    }
}

TEST_F(Binning, aRegionStaysOnItsPartOfTheScene)
{
    open(kMono);
    region(640, 512, 320, 128);
    set("BinningHorizontal", 2);
    set("BinningVertical", 2);
    EXPECT_EQ(sizes(), (Sizes{320, 256, 160, 64, 640, 512}));
    set("BinningHorizontal", 1);
    set("BinningVertical", 1);
    EXPECT_EQ(sizes(), (Sizes{640, 512, 320, 128, 1280, 1024}));
}

TEST_F(Binning, theSmallestRegionStaysOnTheSensor)
{
    open(kFast);
    region(576, 472, 64, 8);
    for (const char *name : {"BinningHorizontal", "BinningVertical"})
        set(name, 4);
    EXPECT_EQ(sizes(), (Sizes{96, 112, 64, 8, 160, 120}));
    EXPECT_EQ(take().size, 64u * 8u);
}

TEST_F(Binning, boundsOfTheRegionFollow)
{
    open(kMono);
    set("BinningHorizontal", 2);
    EXPECT_EQ(bounds("Width").maximum, 640);
    EXPECT_EQ(nodes().setInteger("Width", 648), ORVALIS_ERROR_OUT_OF_RANGE);
    set("Width", 128);
    EXPECT_EQ(bounds("OffsetX").maximum, 512);
    EXPECT_EQ(nodes().setInteger("OffsetX", 520), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(Binning, combinedReductionIsLimited)
{
    open(kFast);
    set("BinningHorizontal", 4);
    EXPECT_EQ(bounds("DecimationHorizontal").maximum, 2);
    EXPECT_EQ(nodes().setInteger("DecimationHorizontal", 3), ORVALIS_ERROR_OUT_OF_RANGE);
    set("DecimationHorizontal", 2);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 80, 480, 80, 480}));
    EXPECT_EQ(nodes().setInteger("BinningVertical", 0), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(Binning, isLockedWhileTheCameraStreams)
{
    open(kFast);
    ASSERT_EQ(start(), ORVALIS_OK);
    for (const char *name :
         {"BinningHorizontal", "BinningVertical", "DecimationHorizontal", "DecimationVertical"}) {
        EXPECT_EQ(access(name), ORVALIS_ACCESS_READ_ONLY) << name;
        EXPECT_EQ(nodes().setInteger(name, 2), ORVALIS_ERROR_ACCESS_DENIED) << name;
    }
    camera_->stopStream();
}

TEST_F(Binning, belongsToTheUserSets)
{
    open(kFast);
    set("BinningHorizontal", 2);
    set("UserSetSelector", "UserSet1");
    ASSERT_EQ(nodes().execute("UserSetSave"), ORVALIS_OK);
    set("UserSetSelector", "Default");
    ASSERT_EQ(nodes().execute("UserSetLoad"), ORVALIS_OK);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 640, 480, 640, 480}));
    set("UserSetSelector", "UserSet1");
    ASSERT_EQ(nodes().execute("UserSetLoad"), ORVALIS_OK);
    EXPECT_EQ(sizes(), (Sizes{0, 0, 320, 480, 320, 480}));
}

TEST_F(Binning, shortensTheReadOut)
{
    open(kMono);
    const double before = real("SensorReadoutTime");
    set("BinningVertical", 2);
    EXPECT_LT(real("SensorReadoutTime"), before * 0.6);
}

TEST_F(Binning, streamAndGrabReturnTheRegion)
{
    openStill(kFast);
    set("BinningHorizontal", 2);
    set("DecimationVertical", 2);
    const RawImage grabbed = take();
    ASSERT_EQ(start(), ORVALIS_OK);
    const RawImage streamed = next();
    camera_->stopStream();
    for (const RawImage *image : {&grabbed, &streamed}) {
        EXPECT_EQ(image->width, 320u);
        EXPECT_EQ(image->height, 240u);
        EXPECT_EQ(image->size, 320u * 240u);
    }
    EXPECT_TRUE(std::equal(grabbed.data, grabbed.data + grabbed.size, streamed.data));
}

struct Steps {
    int binX, binY, decimateX, decimateY;
};

class BinnedPicture : public Binning, public testing::WithParamInterface<Steps> {
protected:
    void apply()
    {
        set("BinningHorizontal", GetParam().binX);
        set("BinningVertical", GetParam().binY);
        set("DecimationHorizontal", GetParam().decimateX);
        set("DecimationVertical", GetParam().decimateY);
    }
    /// Mean of the pixels of the full image that one pixel of the reduced image represents.
    double expectedAt(const std::vector<std::uint8_t> &whole, std::uint32_t width, std::uint32_t x,
                      std::uint32_t y) const
    {
        const Steps p = GetParam();
        const auto left = x * std::uint32_t(p.binX * p.decimateX);
        const auto top = y * std::uint32_t(p.binY * p.decimateY);
        double sum = 0;
        for (std::uint32_t v = 0; v < std::uint32_t(p.binY); ++v)
            for (std::uint32_t u = 0; u < std::uint32_t(p.binX); ++u)
                sum += whole[std::size_t(top + v) * width + left + u];
        return sum / (p.binX * p.binY);
    }
};

TEST_P(BinnedPicture, consistsOfMeansOfTheFullImage)
{
    openStill(kMono);
    set("ExposureTime", 3000.0); // no saturation, so that means stay exact
    const std::vector<std::uint8_t> whole = copy();
    apply();
    const RawImage small = take();
    for (std::uint32_t y = 0; y < small.height; ++y)
        for (std::uint32_t x = 0; x < small.width; ++x)
            ASSERT_NEAR(small.data[std::size_t(y) * small.width + x], expectedAt(whole, 1280, x, y),
                        1.01)
                << x << "," << y;
}

TEST_P(BinnedPicture, isMirroredAsAWhole)
{
    openStill(kMono);
    apply();
    const RawImage plain = take();
    set("ReverseX", true);
    set("ReverseY", true);
    const RawImage turned = take();
    for (std::size_t i = 0; i < plain.size; ++i)
        ASSERT_EQ(turned.data[i], plain.data[plain.size - 1 - i]) << i;
}

TEST_P(BinnedPicture, ofARegionIsThatPartOfIt)
{
    openStill(kMono);
    apply();
    const RawImage whole = take();
    region(64, 24, 64, 16);
    const RawImage part = take();
    for (std::uint32_t y = 0; y < part.height; ++y)
        for (std::uint32_t x = 0; x < part.width; ++x)
            ASSERT_EQ(part.data[y * 64 + x],
                      whole.data[std::size_t(y + 24) * whole.width + x + 64]);
}

TEST_P(BinnedPicture, keepsTheOrderOfTheMosaic)
{
    openStill(kColor);
    apply();
    region(0, 0, 128, 64);
    set("PixelFormat", "RGB8");
    const RawImage rgb = take();
    set("PixelFormat", "BayerGR8");
    const RawImage mosaic = take();
    for (std::uint32_t y = 0; y < 64; ++y)
        for (std::uint32_t x = 0; x < 128; ++x) {
            const std::uint32_t channel = x % 2 == y % 2 ? 1 : y % 2 == 0 ? 0 : 2;
            ASSERT_EQ(mosaic.data[y * 128 + x], rgb.data[(y * 128 + x) * 3 + channel]);
        }
}

TEST_P(BinnedPicture, showsTheDiscWhereItIs)
{
    open(kFast);
    set("SimulationNoise", false);
    apply();
    const RawImage moving = take();
    set("SimulationMotion", false);
    const RawImage still = take();
    double sum = 0, count = 0;
    for (std::uint32_t y = 0; y < moving.height; ++y)
        for (std::uint32_t x = 0; x < moving.width; ++x)
            if (const std::size_t i = std::size_t(y) * moving.width + x;
                moving.data[i] != still.data[i]) {
                sum += y + 0.5;
                ++count;
            }
    ASSERT_GT(count, 0);
    EXPECT_NEAR(sum / count / moving.height, 0.73, 0.03); // its lane
}

INSTANTIATE_TEST_SUITE_P(Steps, BinnedPicture,
                         testing::Values(Steps{2, 2, 1, 1}, Steps{4, 1, 1, 1}, Steps{1, 1, 2, 2},
                                         Steps{1, 1, 1, 4}, Steps{2, 2, 2, 2}, Steps{3, 2, 2, 1}),
                         [](const auto &row) {
                             const Steps &p = row.param;
                             return "Bin" + std::to_string(p.binX) + "x" + std::to_string(p.binY) +
                                    "Decimate" + std::to_string(p.decimateX) + "x" +
                                    std::to_string(p.decimateY);
                         });

TEST_F(Binning, lowersTheNoise)
{
    open(kMono);
    set("SimulationMotion", false);
    const auto noise = [&] {
        const RawImage a = take(), b = take();
        double sum = 0;
        for (std::size_t i = 0; i < a.size; ++i)
            sum += std::abs(a.data[i] - b.data[i]);
        return sum / double(a.size);
    };
    const double before = noise();
    set("BinningHorizontal", 4);
    set("BinningVertical", 4);
    EXPECT_LT(noise(), before * 0.6);
}

} // namespace
} // namespace orvalis::test
