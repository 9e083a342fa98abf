// SPDX-License-Identifier: MIT
// Tests of the rig itself: discovery, opening, writing and streaming of a described camera, and the
// effect of each fault.
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/RigCamera.h"

using namespace genicamtest;

namespace {

constexpr std::uint32_t gain = 0x1000;

class Rig : public GigeFixture {
protected:
    static CameraDescription withGain()
    {
        CameraDescription description;
        description.addFloat("Gain", gain, 0, 24);
        return description;
    }
    std::unique_ptr<Device> opened(const RigCamera &camera)
    {
        backend_->discover();
        return openCamera(*backend_, camera.id());
    }
};

TEST_F(Rig, isFoundOpenedReadAndWritten)
{
    RigCamera camera(withGain());
    const auto device = opened(camera);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->identity().vendor, "Rig");
    camera.memory.resetCounts();
    EXPECT_EQ(device->nodes().setFloat("Gain", 6), ORVALIS_OK);
    EXPECT_EQ(camera.memory.floatAt(gain), 6.0F);
    EXPECT_EQ(camera.memory.writes(gain), 1U);
    camera.memory.setFloat(gain, 7);
    orvalis::FloatValue value;
    EXPECT_EQ(device->nodes().getFloat("Gain", value), ORVALIS_OK);
    EXPECT_EQ(value.value, 7);
    EXPECT_GE(camera.memory.reads(gain), 1U);
}

TEST_F(Rig, streamsWholeImages)
{
    RigCamera camera(withGain());
    const auto device = opened(camera);
    ASSERT_TRUE(device);
    for (const bool extended : {false, true}) {
        camera.faults.extendedIds = extended;
        ASSERT_EQ(device->startStream(), ORVALIS_OK);
        EXPECT_TRUE(camera.acquires());
        for (int i = 0; i < 5; ++i) {
            RawImage image;
            ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
            EXPECT_EQ(image.width, 64U);
            EXPECT_EQ(image.height, 48U);
            EXPECT_TRUE(isWhole(image));
        }
        device->stopStream();
        EXPECT_FALSE(camera.acquires());
    }
}

TEST_F(Rig, resendsLostPackets)
{
    RigCamera camera(withGain());
    const auto device = opened(camera);
    ASSERT_TRUE(device);
    ASSERT_EQ(device->nodes().setInteger("Width", 1024), ORVALIS_OK);
    ASSERT_EQ(device->nodes().setInteger("Height", 1024), ORVALIS_OK);
    camera.faults.losesPerMillion = 2000;
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    RawImage image;
    while (camera.packetsLost() < 5) {
        ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
        EXPECT_TRUE(isWhole(image));
    }
    EXPECT_GT(camera.resendRequests(), 0U);
    device->stopStream();
}

TEST_F(Rig, refusesAndIsHeldElsewhere)
{
    RigCamera camera(withGain());
    const auto device = opened(camera);
    ASSERT_TRUE(device);
    camera.refuse(gain, RigStatus::accessDenied);
    EXPECT_EQ(device->nodes().setFloat("Gain", 6), ORVALIS_ERROR_ACCESS_DENIED);
    camera.refuse(gain, 0);
    EXPECT_EQ(device->nodes().setFloat("Gain", 6), ORVALIS_OK);
    camera.takeAway();
    EXPECT_NE(device->nodes().setFloat("Gain", 6), ORVALIS_OK);
}

TEST_F(Rig, sendsFramesOnRequest)
{
    RigCamera camera(withGain());
    camera.faults.waitsForTrigger = true;
    const auto device = opened(camera);
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    camera.sendFrame();
    RawImage image;
    EXPECT_EQ(nextImage(*device, image), ORVALIS_OK);
    EXPECT_EQ(camera.framesSent(), 1U);
    device->stopStream();
}

TEST_F(Rig, announcesALateAnswer)
{
    RigCamera camera(withGain());
    const auto device = opened(camera);
    ASSERT_TRUE(device);
    camera.faults.announcesDelay = true;
    camera.faults.answerDelayMs = 1500; // longer than the timeout of a request
    EXPECT_EQ(device->nodes().setFloat("Gain", 6), ORVALIS_OK);
    camera.faults.answerDelayMs = 0;
    EXPECT_EQ(camera.memory.floatAt(gain), 6.0F);
}

TEST_F(Rig, commandsMayTakeTime)
{
    CameraDescription description = withGain();
    description.addCommand("UserSetLoad", 0x1100);
    RigCamera camera(description);
    camera.addCommand(0x1100);
    camera.faults.commandTakesMs = 60000;
    const auto device = opened(camera);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->writeRegister(0x1100, 1), ORVALIS_OK);
    EXPECT_EQ(camera.memory.at(0x1100), 1U);
    camera.faults.commandTakesMs = 0;
    EXPECT_EQ(device->writeRegister(0x1100, 1), ORVALIS_OK);
    EXPECT_EQ(camera.memory.at(0x1100), 0U);
}

TEST_F(Rig, vanishesAndComesBack)
{
    RigCamera camera(withGain());
    EXPECT_EQ(backend_->discover().size(), 1U);
    camera.vanish();
    EXPECT_EQ(backend_->discover().size(), 0U);
    camera.comeBack();
    const RigCamera second(withGain(), {.number = 2});
    EXPECT_EQ(backend_->discover().size(), 2U);
}

} // namespace
