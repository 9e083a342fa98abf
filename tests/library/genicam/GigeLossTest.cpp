// SPDX-License-Identifier: MIT
// GigE Vision cameras that vanish, come back, or lose packets.
#include "tests/library/genicam/GenicamFixture.h"

using namespace genicamtest;

namespace {

class GigeLoss : public testing::Test {
protected:
    void SetUp() override
    {
        if (std::getenv("ORVALIS_GIGE_NETWORK") == nullptr) {
            GTEST_SKIP() << "runs in a network of its own only: tests/contract/run_gige.sh";
        }
    }
    std::unique_ptr<Device> discoveredAndOpened(const std::string &id)
    {
        backend_->discover();
        return openCamera(*backend_, id);
    }

    std::unique_ptr<Backend> backend_ = orvalis::makeGenicamBackend(false);
};

/// Aravis takes 2.5 s for a call that is not answered; these are answered by ourselves.
template <typename Call> void expectLostAtOnce(const char *what, Call call)
{
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(call(), ORVALIS_ERROR_CONNECTION_LOST) << what;
    EXPECT_LT(Clock::now() - begin, 1s) << what;
}

TEST_F(GigeLoss, aKilledCameraIsLostAndComesBack)
{
    CameraProcess camera(1);
    auto device = discoveredAndOpened(camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    RawImage image;
    ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
    camera.kill();
    EXPECT_EQ(streamUntilItEnds(*device), ORVALIS_ERROR_CONNECTION_LOST);

    orvalis::IntegerValue value;
    orvalis::NodeInfo info;
    std::vector<std::string> names;
    std::uint32_t data = 0;
    expectLostAtOnce("getInteger", [&] { return device->nodes().getInteger("Width", value); });
    expectLostAtOnce(
        "counter", [&] { return device->nodes().getInteger("StreamDeliveredFrameCount", value); });
    expectLostAtOnce("info", [&] { return device->nodes().info("Width", info); });
    expectLostAtOnce("list", [&] { return device->nodes().list("Root", names); });
    expectLostAtOnce("readRegister", [&] { return device->readRegister(0x100, data); });
    expectLostAtOnce("reset", [&] { return device->reset(); });

    const Clock::time_point begin = Clock::now();
    device->stopStream();
    device.reset();
    EXPECT_LT(Clock::now() - begin, 2500ms) << "each of the two is done within a second";

    camera.start();
    device = discoveredAndOpened(camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
    EXPECT_TRUE(isWhole(image));
    device->stopStream();
}

TEST_F(GigeLoss, stopReturnsInTimeThoughTheCameraHasJustVanished)
{
    CameraProcess camera(1);
    const auto device = discoveredAndOpened(camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    RawImage image;
    ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
    camera.kill();
    const Clock::time_point begin = Clock::now();
    device->stopStream();
    EXPECT_LT(Clock::now() - begin, 1500ms) << "promised: a second";
}

TEST_F(GigeLoss, aCameraThatFallsSilentIsLost)
{
    CameraProcess camera(1);
    auto device = discoveredAndOpened(camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    RawImage image;
    ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
    camera.freeze();
    const Clock::time_point begin = Clock::now();
    EXPECT_EQ(streamUntilItEnds(*device), ORVALIS_ERROR_CONNECTION_LOST);
    std::printf("lost after %.1f s\n", std::chrono::duration<double>(Clock::now() - begin).count());
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
