// SPDX-License-Identifier: MIT
// The region of interest on a camera with interdependent bounds.
#include "library/core/Features.h"
#include "tests/library/core/ScriptedNodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace orvalis;
using namespace orvalis::test;

namespace {

constexpr int kSensorWidth = 1280;
constexpr int kSensorHeight = 1024;

/// A camera that refuses every write that would extend beyond the sensor.
class RegionTest : public testing::Test {
protected:
    void SetUp() override
    {
        nodes_.nodes["OffsetX"] = integerNode(0, 0, 0, 8);
        nodes_.nodes["OffsetY"] = integerNode(0, 0, 0, 2);
        nodes_.nodes["Width"] = integerNode(kSensorWidth, 64, kSensorWidth, 8);
        nodes_.nodes["Height"] = integerNode(kSensorHeight, 64, kSensorHeight, 2);
        nodes_.nodes["WidthMax"] = integerNode(kSensorWidth, 0, kSensorWidth);
        nodes_.nodes["HeightMax"] = integerNode(kSensorHeight, 0, kSensorHeight);
        nodes_.afterWrite = [this] { follow(); };
    }

    void follow()
    {
        auto &n = nodes_.nodes;
        n["OffsetX"].maximum = kSensorWidth - n["Width"].value;
        n["OffsetY"].maximum = kSensorHeight - n["Height"].value;
        n["Width"].maximum = kSensorWidth - n["OffsetX"].value;
        n["Height"].maximum = kSensorHeight - n["OffsetY"].value;
    }

    OSizeInfo set(OSizeInfo size)
    {
        EXPECT_EQ(features_.setRegion(size), ORVALIS_OK);
        return get();
    }
    OSizeInfo get()
    {
        OSizeInfo size{};
        EXPECT_EQ(features_.getRegion(size), ORVALIS_OK);
        return size;
    }

    ScriptedNodes nodes_;
    std::mutex mutex_;
    Features features_{nodes_, mutex_};
};

} // namespace

bool operator==(const OSizeInfo &a, const OSizeInfo &b)
{
    return a.offsetX == b.offsetX && a.offsetY == b.offsetY && a.width == b.width &&
           a.height == b.height && a.maxWidth == b.maxWidth && a.maxHeight == b.maxHeight;
}

void PrintTo(const OSizeInfo &size, std::ostream *out)
{
    *out << size.offsetX << "," << size.offsetY << " " << size.width << "x" << size.height << " on "
         << size.maxWidth << "x" << size.maxHeight;
}

TEST_F(RegionTest, anyRegionFollowsAnyOther)
{
    const OSizeInfo small{640, 512, 128, 128, kSensorWidth, kSensorHeight};
    const OSizeInfo wide{8, 900, 1264, 100, kSensorWidth, kSensorHeight};
    const OSizeInfo tall{1200, 0, 64, 1024, kSensorWidth, kSensorHeight};
    const OSizeInfo whole{0, 0, kSensorWidth, kSensorHeight, kSensorWidth, kSensorHeight};
    for (const OSizeInfo &from : {small, wide, tall, whole}) {
        for (const OSizeInfo &to : {small, wide, tall, whole}) {
            EXPECT_EQ(set(from), from);
            EXPECT_EQ(set(to), to);
        }
    }
}

TEST_F(RegionTest, maximumOfTheRecordIsIgnored)
{
    EXPECT_EQ(set({0, 0, 640, 480, 0, 0}),
              (OSizeInfo{0, 0, 640, 480, kSensorWidth, kSensorHeight}));
}

TEST_F(RegionTest, sizesAreClampedAndRoundedDown)
{
    EXPECT_EQ(set({0, 0, 645, 481, 0, 0}),
              (OSizeInfo{0, 0, 640, 480, kSensorWidth, kSensorHeight}));
    EXPECT_EQ(set({0, 0, 5000, 1, 0, 0}),
              (OSizeInfo{0, 0, kSensorWidth, 64, kSensorWidth, kSensorHeight}));
    EXPECT_EQ(set({0, 0, 0, -7, 0, 0}), (OSizeInfo{0, 0, 64, 64, kSensorWidth, kSensorHeight}));
}

TEST_F(RegionTest, offsetsKeepTheRegionOnTheSensor)
{
    EXPECT_EQ(set({9999, 9999, 640, 480, 0, 0}),
              (OSizeInfo{640, 544, 640, 480, kSensorWidth, kSensorHeight}));
    EXPECT_EQ(set({-5, 7, 640, 480, 0, 0}),
              (OSizeInfo{0, 6, 640, 480, kSensorWidth, kSensorHeight}));
}

TEST_F(RegionTest, extremeNumbersAreHarmless)
{
    constexpr int low = std::numeric_limits<int>::min();
    constexpr int high = std::numeric_limits<int>::max();
    EXPECT_EQ(set({low, low, low, low, low, low}),
              (OSizeInfo{0, 0, 64, 64, kSensorWidth, kSensorHeight}));
    EXPECT_EQ(set({high, high, high, high, high, high}),
              (OSizeInfo{0, 0, kSensorWidth, kSensorHeight, kSensorWidth, kSensorHeight}));
}

TEST_F(RegionTest, regionStaysOnTheSensorIfTheCameraPermitsMore)
{
    nodes_.afterWrite = nullptr;
    nodes_.nodes["OffsetX"].maximum = kSensorWidth;
    nodes_.nodes["OffsetY"].maximum = kSensorHeight;
    EXPECT_EQ(set({9999, 9999, 640, 480, 0, 0}),
              (OSizeInfo{640, 544, 640, 480, kSensorWidth, kSensorHeight}));
}

TEST_F(RegionTest, nothingChangesWhileSizesAreLocked)
{
    set({8, 8, 640, 480, 0, 0});
    nodes_.nodes["Width"].access = nodes_.nodes["Height"].access = ORVALIS_ACCESS_READ_ONLY;
    const auto before = nodes_.writes();
    EXPECT_EQ(features_.setRegion({0, 0, 320, 240, 0, 0}), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(nodes_.writes(), before);
}

TEST_F(RegionTest, failureRestoresTheOldRegion)
{
    const OSizeInfo before = set({8, 8, 640, 480, 0, 0});
    int failures = 0;
    nodes_.afterWrite = [this] {
        follow();
        if (nodes_.nodes["Width"].value == 320)
            nodes_.failure = ORVALIS_ERROR_DEVICE;
    };
    nodes_.beforeAccess = [this, &failures] {
        if (nodes_.failure != ORVALIS_OK && ++failures > 1)
            nodes_.failure = ORVALIS_OK; // the camera fails only once
    };
    EXPECT_EQ(features_.setRegion({0, 0, 320, 240, 0, 0}), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(get(), before);
}

TEST_F(RegionTest, lostCameraHasNoRegion)
{
    nodes_.failure = ORVALIS_ERROR_CONNECTION_LOST;
    OSizeInfo size{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(features_.getRegion(size), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(size, (OSizeInfo{1, 2, 3, 4, 5, 6})) << "unchanged";
}

TEST_F(RegionTest, unchangedSizesAreNotWritten)
{
    EXPECT_EQ(features_.setRegion({0, 0, kSensorWidth, kSensorHeight, 0, 0}), ORVALIS_OK);
    EXPECT_THAT(nodes_.writes(), testing::IsEmpty());
}

TEST_F(RegionTest, cameraWithoutOffsetsBeginsAtZero)
{
    nodes_.nodes.erase("OffsetX");
    nodes_.nodes.erase("OffsetY");
    nodes_.afterWrite = nullptr;
    EXPECT_EQ(set({100, 100, 320, 240, 0, 0}),
              (OSizeInfo{0, 0, 320, 240, kSensorWidth, kSensorHeight}));
}

TEST_F(RegionTest, sensorSizeHasOtherNamesToo)
{
    for (const char *name : {"WidthMax", "HeightMax"})
        nodes_.nodes.erase(name);
    EXPECT_EQ(get().maxWidth, kSensorWidth) << "from the bounds of the width";
    set({128, 64, 640, 480, 0, 0});
    EXPECT_EQ(get().maxWidth, kSensorWidth - 128) << "the bound excludes the offset";
    nodes_.nodes["OffsetX"].value = 640; // a camera whose bounds are late
    nodes_.nodes["Width"].maximum = 640;
    EXPECT_EQ(get().maxWidth, 640 + 640) << "never smaller than the region";
    nodes_.nodes["OffsetX"].value = 0;
    nodes_.nodes["SensorWidth"] = integerNode(2000, 0, 4000);
    nodes_.nodes["SensorHeight"] = integerNode(1000, 0, 4000);
    EXPECT_EQ(get().maxWidth, 2000);
    EXPECT_EQ(get().maxHeight, 1000);
}

TEST_F(RegionTest, sensorSizeIsDividedByBinningAndDecimation)
{
    for (const char *name : {"WidthMax", "HeightMax"})
        nodes_.nodes.erase(name);
    nodes_.nodes["SensorWidth"] = integerNode(2000, 0, 4000);
    nodes_.nodes["SensorHeight"] = integerNode(1000, 0, 4000);
    nodes_.nodes["BinningHorizontal"] = integerNode(2, 1, 4);
    nodes_.nodes["DecimationHorizontal"] = integerNode(2, 1, 4);
    nodes_.nodes["DecimationVertical"] = integerNode(4, 1, 4);
    EXPECT_EQ(get().maxWidth, 500);
    EXPECT_EQ(get().maxHeight, 250);
}

TEST_F(RegionTest, cameraWithoutARegionIsADeviceError)
{
    nodes_.nodes.clear();
    OSizeInfo size{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(features_.getRegion(size), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(size, (OSizeInfo{1, 2, 3, 4, 5, 6})) << "unchanged";
}
