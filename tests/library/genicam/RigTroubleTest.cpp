// SPDX-License-Identifier: MIT
// Failed starts and late answers.
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/RigCamera.h"

using namespace genicamtest;

namespace {

constexpr std::uint32_t gainRegister = 0x1000;

class RigTrouble : public GigeFixture {
protected:
    void SetUp() override
    {
        GigeFixture::SetUp();
        if (IsSkipped()) {
            return;
        }
        CameraDescription description;
        description.addFloat("Gain", gainRegister, 0, 24);
        camera_ = std::make_unique<RigCamera>(description);
        backend_->discover();
        device_ = openCamera(*backend_, camera_->id());
        ASSERT_TRUE(device_);
    }
    void TearDown() override { device_.reset(); }
    bool locked() const { return camera_->memory.at(RigAddress::parametersLocked) != 0; }
    /// Makes the camera silent for three seconds at the next write to `address`: longer than Aravis
    /// waits for an answer, but shorter than the heartbeat timeout.
    void fallSilentAtWrite(std::uint32_t address)
    {
        camera_->memory.set(RigAddress::heartbeatTimeout, 600000);
        const auto done = std::make_shared<std::atomic<bool>>(false);
        camera_->memory.onWrite(address, [done](std::uint32_t) { // also for a repeated request
            if (!done->exchange(true)) {
                std::this_thread::sleep_for(3s);
            }
        });
    }

    std::unique_ptr<RigCamera> camera_;
    std::unique_ptr<Device> device_;
};

TEST_F(RigTrouble, parametersAreUnlockedAfterAStartThatWasRefused)
{
    for (const std::uint16_t status : {RigStatus::accessDenied, RigStatus::notImplemented,
                                       RigStatus::invalidParameter, RigStatus::busy}) {
        camera_->refuse(RigAddress::acquisitionStart, status);
        EXPECT_NE(device_->startStream(), ORVALIS_OK);
        EXPECT_FALSE(locked()) << status;
        EXPECT_EQ(device_->nodes().setInteger("Width", 32), ORVALIS_OK) << status;
    }
    camera_->refuse(RigAddress::acquisitionStart, 0);
    EXPECT_EQ(device_->startStream(), ORVALIS_OK);
    EXPECT_TRUE(locked());
    device_->stopStream();
    EXPECT_FALSE(locked());
}

TEST_F(RigTrouble, parametersAreUnlockedAfterAStartWithoutAnAnswer)
{
    fallSilentAtWrite(RigAddress::acquisitionStart);
    if (device_->startStream() == ORVALIS_OK) { // on a slow machine the answer may arrive in time
        device_->stopStream();
    }
    EXPECT_FALSE(locked());
    EXPECT_FALSE(camera_->acquires()) << "it had started nevertheless";
    EXPECT_EQ(device_->nodes().setInteger("Width", 32), ORVALIS_OK);
}

TEST_F(RigTrouble, parametersAreNotLockedByAStartWithoutASize)
{
    camera_->refuse(RigAddress::payloadSize, RigStatus::busy);
    EXPECT_NE(device_->startStream(), ORVALIS_OK);
    EXPECT_FALSE(locked());
}

TEST_F(RigTrouble, aMissingAnswerIsNoLossWhileTheCameraIsThere)
{
    fallSilentAtWrite(gainRegister);
    EXPECT_NE(device_->nodes().setFloat("Gain", 6), ORVALIS_ERROR_CONNECTION_LOST);
    orvalis::FloatValue value;
    EXPECT_EQ(device_->nodes().getFloat("Gain", value), ORVALIS_OK);
    EXPECT_EQ(value.value, 6);
    EXPECT_EQ(device_->startStream(), ORVALIS_OK);
    RawImage image;
    EXPECT_EQ(nextImage(*device_, image), ORVALIS_OK);
    device_->stopStream();
}

TEST_F(RigTrouble, anAnnouncedAnswerIsAwaited)
{
    camera_->faults.announcesDelay = true;
    camera_->faults.answerDelayMs = 1500; // longer than one attempt of Aravis
    EXPECT_EQ(device_->nodes().setFloat("Gain", 6), ORVALIS_OK);
    camera_->faults.answerDelayMs = 0;
    EXPECT_EQ(camera_->memory.floatAt(gainRegister), 6.0F);
}

TEST_F(RigTrouble, aFrozenCameraIsLost)
{
    camera_->faults.frozen = true;
    EXPECT_EQ(device_->nodes().setFloat("Gain", 6), ORVALIS_ERROR_CONNECTION_LOST);
    camera_->faults.frozen = false;
    EXPECT_EQ(device_->nodes().setFloat("Gain", 6), ORVALIS_ERROR_CONNECTION_LOST) << "permanently";
}

} // namespace
