// SPDX-License-Identifier: MIT
// GigE Vision cameras that disappear, return, or lose packets.
#include "tests/library/genicam/GenicamFixture.h"

using namespace genicamtest;

namespace {

class GigeLoss : public GigeFixture {
protected:
    /// Opens the camera and starts its stream; null after a failure.
    std::unique_ptr<Device> streaming(const CameraProcess &camera)
    {
        auto device = discoveredAndOpened(camera);
        RawImage image;
        if (!device || device->startStream() != ORVALIS_OK ||
            nextImage(*device, image) != ORVALIS_OK || !isWhole(image)) {
            return nullptr;
        }
        return device;
    }
};

TEST_F(GigeLoss, aKilledCameraIsLostAndComesBack)
{
    CameraProcess camera(1);
    auto device = streaming(camera);
    ASSERT_TRUE(device);
    camera.kill();
    EXPECT_EQ(streamUntilItEnds(*device), ORVALIS_ERROR_CONNECTION_LOST);

    orvalis::IntegerValue value;
    orvalis::NodeInfo info;
    std::vector<std::string> names;
    std::uint32_t data = 0;
    expectLost("getInteger", [&] { return device->nodes().getInteger("Width", value); });
    expectLost("counter",
               [&] { return device->nodes().getInteger("StreamDeliveredFrameCount", value); });
    expectLost("info", [&] { return device->nodes().info("Width", info); });
    expectLost("list", [&] { return device->nodes().list("Root", names); });
    expectLost("readRegister", [&] { return device->readRegister(0x100, data); });
    expectLost("reset", [&] { return device->reset(); });

    expectSoon("stop and close", [&] {
        device->stopStream();
        device.reset();
    });

    camera.start();
    device = streaming(camera);
    ASSERT_TRUE(device);
    device->stopStream();
}

TEST_F(GigeLoss, stopReturnsAfterTheCameraHasVanished)
{
    CameraProcess camera(1);
    const auto device = streaming(camera);
    ASSERT_TRUE(device);
    camera.kill();
    expectSoon("stop", [&] { device->stopStream(); });
}

TEST_F(GigeLoss, aCameraThatFallsSilentIsLost)
{
    CameraProcess camera(1);
    const auto device = streaming(camera);
    ASSERT_TRUE(device);
    camera.freeze();
    expectLost("noticed", [&] { return streamUntilItEnds(*device); });
}

TEST_F(GigeLoss, aCameraThatIsGoneIsNotFound)
{
    CameraProcess camera(1);
    backend_->discover();
    camera.kill();
    std::unique_ptr<Device> device;
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_NOT_FOUND);
}

} // namespace
