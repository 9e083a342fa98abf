// SPDX-License-Identifier: MIT
// A fixture with one simulated camera.
#pragma once

#include "library/core/Device.h"
#include "library/simulated/CameraModel.h"
#include "library/simulated/UserSets.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>

namespace orvalis::test {

constexpr const char *kMono = "OV-SIM-1280M-0001";
constexpr const char *kColor = "OV-SIM-2448C-0002";
constexpr const char *kFast = "OV-SIM-0640F-0003";
constexpr const char *kThermal = "OV-SIM-0640T-0004";

inline Clock::time_point soon() { return Clock::now() + std::chrono::seconds(30); }
inline Clock::time_point atOnce() { return Clock::now(); }

/// New cameras for each test, one of them open.
class Bench : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (const auto &model : simulated::cameraModels())
            simulated::UserSets::of(model.id).setPowerOn(0);
        bus_ = makeSimulatedBackend();
    }

    void open(const char *id) { ASSERT_EQ(bus_->open(id, camera_), ORVALIS_OK); }
    /// Opens a camera whose images are all equal.
    void openStill(const char *id)
    {
        open(id);
        set("SimulationNoise", false);
        set("SimulationMotion", false);
    }

    NodeMap &nodes() { return camera_->nodes(); }
    void set(const char *name, bool value)
    {
        EXPECT_EQ(nodes().setBoolean(name, value), ORVALIS_OK) << name;
    }
    void set(const char *name, int value)
    {
        EXPECT_EQ(nodes().setInteger(name, value), ORVALIS_OK) << name;
    }
    void set(const char *name, double value)
    {
        EXPECT_EQ(nodes().setFloat(name, value), ORVALIS_OK) << name;
    }
    void set(const char *name, const char *entry)
    {
        EXPECT_EQ(nodes().setEnumeration(name, entry), ORVALIS_OK) << name << " " << entry;
    }
    std::int64_t integer(const char *name)
    {
        IntegerValue value;
        EXPECT_EQ(nodes().getInteger(name, value), ORVALIS_OK) << name;
        return value.value;
    }
    double real(const char *name)
    {
        FloatValue value;
        EXPECT_EQ(nodes().getFloat(name, value), ORVALIS_OK) << name;
        return value.value;
    }
    std::string entry(const char *name)
    {
        EnumerationValue value;
        EXPECT_EQ(nodes().getEnumeration(name, value), ORVALIS_OK) << name;
        return value.current < 0 ? "" : value.entries[std::size_t(value.current)].name;
    }
    OAccessMode access(const char *name)
    {
        NodeInfo info;
        EXPECT_EQ(nodes().info(name, info), ORVALIS_OK) << name;
        return info.access;
    }
    void region(int x, int y, int width, int height)
    {
        set("OffsetX", 0);
        set("OffsetY", 0);
        set("Width", width);
        set("Height", height);
        set("OffsetX", x);
        set("OffsetY", y);
    }

    RawImage take()
    {
        RawImage image;
        EXPECT_EQ(camera_->takeImage(image, soon()), ORVALIS_OK);
        return image;
    }
    RawImage next()
    {
        RawImage image;
        EXPECT_EQ(camera_->nextImage(image, soon()), ORVALIS_OK);
        return image;
    }
    OResult start() { return camera_->startStream(); }

    std::unique_ptr<Backend> bus_;
    std::unique_ptr<Device> camera_;
};

/// The number that FrameNumberOverlay has drawn into an 8-bit monochrome image.
inline std::uint32_t frameNumber(const RawImage &image)
{
    std::uint32_t number = 0;
    const std::uint32_t inRow = std::min(32u, image.width / 8);
    for (std::uint32_t bit = 0; bit < 32; ++bit) {
        const std::uint32_t x = bit % inRow * 8 + 4, y = bit / inRow * 8 + 4;
        if (y < image.height && image.data[y * image.width + x] == 255)
            number |= 1u << bit;
    }
    return number;
}

} // namespace orvalis::test
