// SPDX-License-Identifier: MIT
// GigE Vision cameras that other programs control, or take over.
#include "tests/library/genicam/OtherProgram.h"
#include "tests/library/genicam/rig/RigCamera.h"

using namespace genicamtest;

namespace {

class GigeControl : public GigeFixture {};

TEST_F(GigeControl, aCameraIsBusyUntilAnotherProgramReleasesIt)
{
    const CameraProcess camera(1);
    backend_->discover();
    std::unique_ptr<Device> device;
    {
        const OtherProgram other(camera.address(), OtherProgram::Way::Free);
        EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_BUSY);
        EXPECT_FALSE(device);
    }
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_OK);
}

TEST_F(GigeControl, aCameraUnderControlOrExclusiveAccessIsBusy)
{
    RigCamera camera({});
    backend_->discover();
    for (const std::uint32_t exclusiveOrControl : {1U, 2U}) {
        camera.faults.heldElsewhere = exclusiveOrControl;
        std::unique_ptr<Device> device;
        EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_BUSY) << exclusiveOrControl;
        EXPECT_FALSE(device);
    }
    camera.faults.heldElsewhere = 0;
    EXPECT_TRUE(openCamera(*backend_, camera.id()));
}

TEST_F(GigeControl, aFailedOpenDoesNotDisturbAnotherProgram)
{
    RigCamera camera({});
    backend_->discover();
    camera.faults.heldElsewhere = 2;
    const std::uint64_t before = camera.commands();
    std::unique_ptr<Device> device;
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_BUSY);
    EXPECT_LE(camera.commands() - before, 3U) << "discovery and privilege";
}

TEST_F(GigeControl, aCameraThatRefusesItsDescriptionIsBusy)
{
    RigCamera camera({});
    backend_->discover();
    constexpr std::uint32_t firstUrl = 0x0200; // address of the description
    camera.refuse(firstUrl, RigStatus::accessDenied);
    std::unique_ptr<Device> device;
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_BUSY);
}

TEST_F(GigeControl, aCameraThatAnotherProgramTakesWhileItStreamsIsLost)
{
    const CameraProcess camera(1);
    backend_->discover();
    auto device = openCamera(*backend_, camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    RawImage image;
    ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
    const OtherProgram other(camera.address(), OtherProgram::Way::Steal);
    EXPECT_EQ(streamUntilItEnds(*device), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(backend_->discover().size(), 0U) << "until it is released";
    device->stopStream();
    device.reset();
    while (backend_->discover().empty()) {
    }
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_BUSY);
}

TEST_F(GigeControl, aCameraThatHasBeenReleasedIsLost)
{
    const CameraProcess camera(1);
    backend_->discover();
    const auto device = openCamera(*backend_, camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    RawImage image;
    ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
    ASSERT_EQ(device->writeRegister(0x0A00, 0), ORVALIS_OK);
    EXPECT_EQ(streamUntilItEnds(*device), ORVALIS_ERROR_CONNECTION_LOST);
}

} // namespace
