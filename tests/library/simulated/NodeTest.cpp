// SPDX-License-Identifier: MIT
// Nodes and registers of an open simulated camera.
#include "tests/library/simulated/Bench.h"

#include "library/simulated/Addresses.h"
#include "library/simulated/NodeTable.h"

#include <bit>
#include <cmath>
#include <limits>

namespace orvalis::test {
namespace {

namespace address = simulated::address;

class Nodes : public Bench {
protected:
    std::uint32_t word(std::uint32_t at)
    {
        std::uint32_t value = 0;
        EXPECT_EQ(camera_->readRegister(at, value), ORVALIS_OK) << std::hex << at;
        return value;
    }
};

TEST_F(Nodes, showTheContentOfTheRegisters)
{
    for (const auto &model : simulated::cameraModels()) {
        open(model.id.data());
        const simulated::NodeTable table(model, 0);
        for (const auto &spec : table.nodes()) {
            if (spec.isCategory() || spec.selector != simulated::Selector::None ||
                spec.access == ORVALIS_ACCESS_WRITE_ONLY)
                continue;
            const std::string name(spec.name);
            if (spec.type == ORVALIS_NODE_INTEGER) {
                EXPECT_EQ(std::uint32_t(integer(name.c_str())), word(spec.address)) << name;
            } else if (spec.type == ORVALIS_NODE_FLOAT) {
                EXPECT_EQ(float(real(name.c_str())), std::bit_cast<float>(word(spec.address)))
                    << name;
            }
        }
        camera_.reset();
    }
}

TEST_F(Nodes, followTheRegisters)
{
    open(kColor);
    EXPECT_EQ(camera_->writeRegister(address::kWidth, 640), ORVALIS_OK);
    EXPECT_EQ(integer("Width"), 640);
    EXPECT_EQ(camera_->writeRegister(address::kExposureTime, std::bit_cast<std::uint32_t>(1234.5f)),
              ORVALIS_OK);
    EXPECT_EQ(real("ExposureTime"), 1234.5);
    EXPECT_EQ(camera_->writeRegister(address::kPixelFormat, simulated::format::kRgb8), ORVALIS_OK);
    EXPECT_EQ(entry("PixelFormat"), "RGB8");
    EXPECT_EQ(camera_->writeRegister(address::kOverlay, 1), ORVALIS_OK);
    bool overlay = false;
    EXPECT_EQ(nodes().getBoolean("FrameNumberOverlay", overlay), ORVALIS_OK);
    EXPECT_TRUE(overlay);
}

TEST_F(Nodes, useTheRegistersOfTheSelectedEntry)
{
    open(kColor);
    const char *const channels[] = {"Red", "Green", "Blue"};
    for (std::uint32_t c = 0; c < 3; ++c) {
        set("BalanceRatioSelector", channels[c]);
        set("BalanceRatio", 1.0 + 0.5 * c);
    }
    for (std::uint32_t c = 0; c < 3; ++c)
        EXPECT_EQ(std::bit_cast<float>(word(address::kBalanceRatio + 4 * c)),
                  1.0f + 0.5f * float(c));
}

TEST_F(Nodes, refuseMissingRegisters)
{
    open(kMono);
    std::uint32_t value = 77;
    for (const std::uint32_t at : {0x0300u, 0x7FFCu, 0x20000u, 0xFFFFFFFCu, address::kNucMode})
        EXPECT_EQ(camera_->readRegister(at, value), ORVALIS_ERROR_NOT_FOUND) << at;
    EXPECT_EQ(camera_->readRegister(2, value), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(camera_->writeRegister(0x0300, 1), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(camera_->writeRegister(3, 1), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(value, 77u);
}

TEST_F(Nodes, refuseReadOnlyAndLockedRegisters)
{
    open(kMono);
    std::uint32_t value = 77;
    EXPECT_EQ(camera_->writeRegister(address::kSensorWidth, 5), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(camera_->readRegister(address::kReset, value), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(camera_->readRegister(0x01C0, value), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(camera_->writeRegister(0x01C0, 0x41), ORVALIS_OK);
    EXPECT_EQ(camera_->writeRegister(address::kWidth, 100000), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(camera_->writeRegister(address::kPixelFormat, 5), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(camera_->writeRegister(address::kExposureTime, 0x7FC00000), // NaN
              ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(value, 77u);
}

TEST_F(Nodes, acceptEveryRegisterValueThatTheyReport)
{
    open(kColor);
    const simulated::NodeTable table(simulated::cameraModels()[1], 0);
    for (const auto &spec : table.nodes()) {
        if (spec.access != ORVALIS_ACCESS_READ_WRITE || spec.type == ORVALIS_NODE_COMMAND)
            continue;
        for (std::uint32_t i = 0; i < spec.words(); ++i)
            EXPECT_EQ(camera_->writeRegister(spec.address + 4 * i, word(spec.address + 4 * i)),
                      ORVALIS_OK)
                << spec.name;
    }
}

TEST_F(Nodes, executeCommandsThroughTheirRegisters)
{
    open(kMono);
    EXPECT_EQ(camera_->writeRegister(address::kReset, 0), ORVALIS_OK); // nothing
    EXPECT_EQ(integer("Width"), 1280);
    EXPECT_EQ(camera_->writeRegister(address::kReset, 1), ORVALIS_OK);
    IntegerValue value;
    EXPECT_EQ(nodes().getInteger("Width", value), ORVALIS_ERROR_CONNECTION_LOST);
}

TEST_F(Nodes, returnTheRightErrors)
{
    open(kMono);
    IntegerValue number{.value = 5};
    EnumerationValue choice;
    FloatValue fraction;
    NodeInfo info;
    std::string text = "as it was";
    std::vector<std::string> names{"as it was"};
    EXPECT_EQ(nodes().getInteger("NoSuchNode", number), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().getInteger("Gain", number), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().setFloat("Width", 5), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().getText("DeviceMaintenanceKey", text), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(nodes().setText("DeviceMaintenanceKey", "key"), ORVALIS_OK);
    EXPECT_EQ(nodes().setText("DeviceUserID", std::string(64, 'x')), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(nodes().setText("DeviceModelName", "x"), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(nodes().setEnumeration("PixelFormat", "RGB8"), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().setEnumeration("PixelFormat", ""), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().execute("Width"), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().execute("DeviceControl"), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().info("NoSuchNode", info), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().list("NoSuchNode", names), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().setFloat("Gain", std::numeric_limits<double>::quiet_NaN()),
              ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(nodes().setFloat("Gain", 24.01), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(nodes().setInteger("Width", std::numeric_limits<std::int64_t>::max()),
              ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(number.value, 5);
    EXPECT_EQ(text, "as it was");
    EXPECT_EQ(names.size(), 1u);
}

TEST_F(Nodes, areRoundedDownToTheirIncrement)
{
    open(kMono);
    set("Width", 71);
    EXPECT_EQ(integer("Width"), 64);
    set("OffsetX", 15);
    EXPECT_EQ(integer("OffsetX"), 8);
}

TEST_F(Nodes, keepTheRegionOnTheSensor)
{
    open(kMono);
    EXPECT_EQ(nodes().setInteger("OffsetX", 8), ORVALIS_ERROR_OUT_OF_RANGE);
    set("Width", 640);
    set("OffsetX", 640);
    EXPECT_EQ(nodes().setInteger("Width", 648), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(integer("PayloadSize"), 640 * 1024);
}

TEST_F(Nodes, showDecimalFractionsAsTheyWereWritten)
{
    open(kMono);
    set("AcquisitionFrameRate", 29.97);
    EXPECT_EQ(real("AcquisitionFrameRate"), 29.97);
}

TEST_F(Nodes, showTheGainTwice)
{
    open(kMono);
    set("Gain", 12.3);
    EXPECT_EQ(integer("GainRaw"), 123);
    set("GainRaw", 60);
    EXPECT_EQ(real("Gain"), 6.0);
}

TEST_F(Nodes, showTheSecondTimerTwice)
{
    open(kMono);
    set("TimerSelector", "Timer1");
    set("TimerDelay", 700.0);
    set("TimerSelector", "Timer0");
    EXPECT_EQ(real("Timer1Delay"), 700.0);
    EXPECT_EQ(real("TimerDelay"), 0.0);
    set("Timer1Delay", 800.0);
    set("TimerSelector", "Timer1");
    EXPECT_EQ(real("TimerDelay"), 800.0);
}

TEST_F(Nodes, boundTheFrameRateByRegionAndFormat)
{
    open(kMono);
    FloatValue whole, half, deep;
    EXPECT_EQ(nodes().getFloat("AcquisitionFrameRate", whole), ORVALIS_OK);
    set("AcquisitionFrameRate", whole.maximum);
    set("Height", 512);
    EXPECT_EQ(nodes().getFloat("AcquisitionFrameRate", half), ORVALIS_OK);
    EXPECT_GT(half.maximum, 1.8 * whole.maximum);
    set("Height", 1024);
    set("PixelFormat", "Mono12");
    EXPECT_EQ(nodes().getFloat("AcquisitionFrameRate", deep), ORVALIS_OK);
    EXPECT_LT(deep.maximum, whole.maximum);
    EXPECT_LE(deep.value, deep.maximum);
}

TEST_F(Nodes, reportTheRateThatTheExposurePermits)
{
    open(kMono);
    set("ExposureTime", 100000.0);
    EXPECT_EQ(real("AcquisitionFrameRate"), 30.0);
    EXPECT_EQ(real("ResultingFrameRate"), 10.0);
    set("ExposureTime", 1000.0);
    EXPECT_EQ(real("ResultingFrameRate"), 30.0);
}

TEST_F(Nodes, areLockedWhileTheCameraStreams)
{
    open(kMono);
    for (const char *name : {"Width", "Height", "OffsetX", "OffsetY", "PixelFormat"}) {
        NodeInfo info;
        EXPECT_EQ(nodes().info(name, info), ORVALIS_OK);
        EXPECT_TRUE(info.lockable) << name;
        EXPECT_EQ(info.access, ORVALIS_ACCESS_READ_WRITE) << name;
    }
    ASSERT_EQ(start(), ORVALIS_OK);
    for (const char *name : {"Width", "Height", "OffsetX", "OffsetY", "PixelFormat"})
        EXPECT_EQ(access(name), ORVALIS_ACCESS_READ_ONLY) << name;
    EXPECT_EQ(nodes().setInteger("Width", 640), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(camera_->writeRegister(address::kWidth, 640), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(nodes().execute("UserSetLoad"), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(access("UserSetLoad"), ORVALIS_ACCESS_READ_WRITE);
    set("ExposureTime", 500.0);
    camera_->stopStream();
    set("Width", 640);
}

TEST_F(Nodes, withColorAreNotAvailableInMonochromeFormats)
{
    open(kColor);
    const char *const kNames[] = {"Hue", "Saturation", "BalanceRatio", "BalanceWhiteAuto"};
    for (const char *name : kNames)
        EXPECT_EQ(access(name), ORVALIS_ACCESS_READ_WRITE) << name;
    set("PixelFormat", "Mono8");
    for (const char *name : kNames)
        EXPECT_EQ(access(name), ORVALIS_ACCESS_NOT_AVAILABLE) << name;
    IntegerValue value;
    EXPECT_EQ(nodes().getInteger("Hue", value), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(nodes().setInteger("Hue", 5), ORVALIS_ERROR_ACCESS_DENIED);
}

TEST_F(Nodes, areReadOnlyUnderAutomaticControl)
{
    open(kColor);
    const std::pair<const char *, const char *> kHolds[] = {{"ExposureAuto", "ExposureTime"},
                                                            {"GainAuto", "Gain"},
                                                            {"GainAuto", "GainRaw"},
                                                            {"BalanceWhiteAuto", "BalanceRatio"}};
    for (const auto &[automatic, held] : kHolds) {
        set(automatic, "Continuous");
        EXPECT_EQ(access(held), ORVALIS_ACCESS_READ_ONLY) << held;
        set(automatic, "Off");
        EXPECT_EQ(access(held), ORVALIS_ACCESS_READ_WRITE) << held;
    }
}

TEST_F(Nodes, reportWhichCommandsAreExecutable)
{
    open(kMono);
    for (const char *name : {"TriggerSoftware", "UserSetLoad", "UserSetSave", "DeviceReset"})
        EXPECT_EQ(access(name), ORVALIS_ACCESS_READ_WRITE) << name;
    for (const char *name : {"TimestampLatch", "AlarmReset", "StreamStatisticsReset"}) {
        EXPECT_EQ(access(name), ORVALIS_ACCESS_WRITE_ONLY) << name;
        EXPECT_EQ(nodes().execute(name), ORVALIS_OK) << name;
    }
}

TEST_F(Nodes, ofAnOutputAreNotAvailableForAnInput)
{
    open(kMono);
    EXPECT_EQ(access("LineSource"), ORVALIS_ACCESS_READ_WRITE);
    EXPECT_EQ(entry("LineMode"), "Output");
    set("LineSelector", "Line0");
    EXPECT_EQ(access("LineSource"), ORVALIS_ACCESS_NOT_AVAILABLE);
    EXPECT_EQ(entry("LineMode"), "Input");
}

TEST_F(Nodes, ofAddressesAreUnsigned)
{
    open(kMono);
    IntegerValue address;
    ASSERT_EQ(nodes().getInteger("GevSCDA", address), ORVALIS_OK);
    EXPECT_EQ(address.value, 0xC0A80101);
    EXPECT_EQ(address.minimum, 0);
    EXPECT_EQ(address.maximum, 0xFFFFFFFF);
    EXPECT_EQ(nodes().setInteger("GevPersistentIPAddress", 0xFFFFFFFF), ORVALIS_OK);
    EXPECT_EQ(integer("GevPersistentIPAddress"), 0xFFFFFFFF);
    EXPECT_EQ(nodes().setInteger("GevPersistentIPAddress", -1), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(integer("GevCurrentIPAddress"), 0xC0A80164);
    std::uint32_t word = 0;
    EXPECT_EQ(camera_->readRegister(0x1A14, word), ORVALIS_OK);
    EXPECT_EQ(word, 0xFFFFFFFFU);
    EXPECT_EQ(camera_->writeRegister(0x1A14, 0xC0A80105), ORVALIS_OK);
    EXPECT_EQ(integer("GevPersistentIPAddress"), 0xC0A80105);
}

TEST_F(Nodes, countTheTimeFromItsReset)
{
    open(kMono);
    const auto latched = [this] {
        EXPECT_EQ(nodes().execute("TimestampLatch"), ORVALIS_OK);
        return integer("TimestampLatchValue");
    };
    constexpr std::int64_t old = 50; // ms
    while (latched() < old)
        std::this_thread::yield();
    // Even on a slow machine, the time since the reset cannot exceed the total time.
    const auto before = Clock::now();
    EXPECT_EQ(nodes().execute("TimestampReset"), ORVALIS_OK);
    const std::int64_t counted = latched();
    const auto passed = Clock::now() - before;
    EXPECT_LE(counted, std::chrono::ceil<std::chrono::milliseconds>(passed).count());
}

TEST_F(Nodes, raiseAndResetTheAlarm)
{
    open(kMono);
    bool alarm = true;
    set("AlarmTemperature", 10.0);
    EXPECT_EQ(nodes().getBoolean("AlarmStatus", alarm), ORVALIS_OK);
    EXPECT_FALSE(alarm);
    set("AlarmEnable", true);
    EXPECT_EQ(nodes().getBoolean("AlarmStatus", alarm), ORVALIS_OK);
    EXPECT_TRUE(alarm);
    set("AlarmEnable", false);
    EXPECT_EQ(nodes().execute("AlarmReset"), ORVALIS_OK);
    EXPECT_EQ(nodes().getBoolean("AlarmStatus", alarm), ORVALIS_OK);
    EXPECT_FALSE(alarm);
}

TEST_F(Nodes, reportTheIdentity)
{
    open(kColor);
    const DeviceIdentity &who = camera_->identity();
    EXPECT_EQ(who.id, kColor);
    EXPECT_EQ(who.vendor, "Orvalis");
    EXPECT_EQ(who.model, "OV-SIM-2448C");
    EXPECT_EQ(who.serialNumber, "0002");
    EXPECT_EQ(who.firmware, "2.4.1");
    std::string model;
    EXPECT_EQ(nodes().getText("DeviceModelName", model), ORVALIS_OK);
    EXPECT_EQ(model, who.model);
}

TEST_F(Nodes, canBeAddedForLoadTests)
{
    ASSERT_EQ(setenv("ORVALIS_SIMULATED_EXTRA_NODES", "500", 1), 0);
    bus_ = makeSimulatedBackend();
    ASSERT_EQ(unsetenv("ORVALIS_SIMULATED_EXTRA_NODES"), 0);
    open(kMono);
    std::vector<std::string> names;
    EXPECT_EQ(nodes().list("ExtraFeatures4", names), ORVALIS_OK);
    EXPECT_EQ(names.size(), 100u);
    set("ExtraNode499", 12345);
    EXPECT_EQ(integer("ExtraNode499"), 12345);
}

} // namespace
} // namespace orvalis::test
