// SPDX-License-Identifier: MIT
// The simulated bus: list of cameras, opening, loss and return.
#include "tests/library/simulated/Bench.h"

#include <algorithm>
#include <future>

namespace orvalis::test {
namespace {

using namespace std::chrono_literals;

class SimulatedBus : public Bench {
protected:
    bool sees(const char *id)
    {
        const auto all = bus_->discover();
        return std::ranges::any_of(all, [&](const auto &camera) { return camera.id == id; });
    }
};

TEST_F(SimulatedBus, hasFourCameras)
{
    const auto all = bus_->discover();
    ASSERT_EQ(all.size(), 4u);
    EXPECT_EQ(all[0].id, kMono);
    EXPECT_EQ(all[1].id, kColor);
    EXPECT_EQ(all[2].id, kFast);
    EXPECT_EQ(all[3].id, kThermal);
    EXPECT_EQ(all[1].displayName, "OV-SIM-2448C-0002 (colour 2448x2048)");
    EXPECT_TRUE(bus_->discoversAtOnce());
    EXPECT_EQ(bus_->name(), "simulated");
}

TEST_F(SimulatedBus, opensACameraOnlyOnce)
{
    open(kMono);
    std::unique_ptr<Device> second;
    EXPECT_EQ(bus_->open(kMono, second), ORVALIS_ERROR_BUSY);
    EXPECT_FALSE(second);
    EXPECT_EQ(bus_->open(kFast, second), ORVALIS_OK);
    camera_.reset();
    EXPECT_EQ(bus_->open(kMono, second), ORVALIS_OK);
    EXPECT_EQ(bus_->open("OV-SIM-9999X-0009", second), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(bus_->open("", second), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(SimulatedBus, keepsSettingsFromSessionToSession)
{
    open(kMono);
    set("Gain", 5.0);
    camera_.reset();
    open(kMono);
    EXPECT_EQ(real("Gain"), 5.0);
}

TEST_F(SimulatedBus, refusesToOpenOnDemand)
{
    open(kMono);
    set("SimulationRefuseOpens", 2);
    camera_.reset();
    EXPECT_EQ(bus_->open(kMono, camera_), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(bus_->open(kMono, camera_), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(bus_->open(kMono, camera_), ORVALIS_OK);
}

TEST_F(SimulatedBus, losesACameraTemporarily)
{
    open(kMono);
    set("SimulationLeaveDuration", 300);
    ASSERT_EQ(start(), ORVALIS_OK);
    next();
    EXPECT_EQ(nodes().execute("SimulationLeaveBus"), ORVALIS_OK);
    EXPECT_FALSE(sees(kMono));
    EXPECT_TRUE(sees(kColor));
    RawImage image;
    std::uint32_t word = 0;
    NodeInfo info;
    std::vector<std::string> names;
    EXPECT_EQ(camera_->nextImage(image, soon()), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(camera_->takeImage(image, soon()), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(camera_->startStream(), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(camera_->readRegister(0, word), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(camera_->writeRegister(0, word), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(camera_->reset(), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(nodes().info("Width", info), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(nodes().info("NoSuchNode", info), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(nodes().list("Root", names), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(nodes().setFloat("Gain", 1), ORVALIS_ERROR_CONNECTION_LOST);
    camera_->wake();
    camera_->stopStream();
    std::unique_ptr<Device> again;
    while (bus_->open(kMono, again) == ORVALIS_ERROR_NOT_FOUND)
        std::this_thread::sleep_for(5ms);
    ASSERT_TRUE(again);
    EXPECT_TRUE(sees(kMono));
    // the old handle stays lost and does not affect the new one
    EXPECT_EQ(nodes().info("Width", info), ORVALIS_ERROR_CONNECTION_LOST);
    camera_.reset();
    EXPECT_EQ(again->nodes().info("Width", info), ORVALIS_OK);
    EXPECT_EQ(again->startStream(), ORVALIS_OK);
    EXPECT_EQ(again->nextImage(image, soon()), ORVALIS_OK);
}

TEST_F(SimulatedBus, lossEndsWaitsAtOnce)
{
    open(kMono);
    set("TriggerMode", "On");
    ASSERT_EQ(start(), ORVALIS_OK);
    RawImage image;
    auto waiting =
        std::async(std::launch::async, [&] { return camera_->nextImage(image, soon()); });
    EXPECT_EQ(nodes().execute("SimulationLeaveBus"), ORVALIS_OK);
    EXPECT_EQ(waiting.get(), ORVALIS_ERROR_CONNECTION_LOST);
}

TEST_F(SimulatedBus, doesNotListACameraWhileItReboots)
{
    open(kFast);
    EXPECT_EQ(nodes().setText("DeviceUserID", "kept"), ORVALIS_OK);
    set("Gain", 9.0);
    EXPECT_EQ(camera_->reset(), ORVALIS_OK);
    EXPECT_FALSE(sees(kFast));
    NodeInfo info;
    EXPECT_EQ(nodes().info("Width", info), ORVALIS_ERROR_CONNECTION_LOST);
    camera_.reset();
    EXPECT_EQ(bus_->open(kFast, camera_), ORVALIS_ERROR_NOT_FOUND);
    while (!sees(kFast))
        std::this_thread::sleep_for(20ms);
    open(kFast);
    EXPECT_EQ(real("Gain"), 0.0);
    std::string name;
    EXPECT_EQ(nodes().getText("DeviceUserID", name), ORVALIS_OK);
    EXPECT_EQ(name, "kept");
}

} // namespace
} // namespace orvalis::test
