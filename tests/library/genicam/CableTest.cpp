// SPDX-License-Identifier: MIT
// GigE Vision across a cable: discovery, streaming, pulling the cable out and plugging it in again,
// and packets that are too large for the network.
#include "tests/library/genicam/Cable.h"

#include <cstdio>

using namespace genicamtest;

namespace {

/// With Aravis' packet socket, and without it.
class AcrossTheCable : public GigeFixture, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override
    {
        GigeFixture::SetUp();
        if (std::getenv("ORVALIS_CABLE_PID") == nullptr) {
            GTEST_SKIP() << "needs a cable: tests/contract/run_gige.sh --cable";
        }
        setenv("ORVALIS_PACKET_SOCKET", GetParam() ? "1" : "0", 1);
    }
    void TearDown() override { unsetenv("ORVALIS_PACKET_SOCKET"); }
};

void expectWholeImages(Device &device, int count)
{
    for (int i = 0; i < count; ++i) {
        RawImage image;
        ASSERT_EQ(nextImage(device, image), ORVALIS_OK);
        EXPECT_TRUE(isWhole(image));
    }
}

TEST_P(AcrossTheCable, aCameraIsFoundAndStreams)
{
    const Cable cable;
    const CameraProcess camera(1, Cable::cameraAddress, Cable::launcher());
    const auto found = backend_->discover();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].id, camera.id());
    const auto device = openCamera(*backend_, camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    expectWholeImages(*device, 20);
    std::printf("packets of %d bytes\n", int(integer(*device, "GevSCPSPacketSize")));
    device->stopStream();
}

TEST_P(AcrossTheCable, twoCamerasBehindOneInterfaceStreamTogether)
{
    const Cable cable;
    const CameraProcess one(1, Cable::cameraAddress, Cable::launcher());
    const CameraProcess two(2, Cable::secondAddress, Cable::launcher());
    const auto first = discoveredAndOpened(one);
    const auto second = openCamera(*backend_, two.id());
    ASSERT_TRUE(first && second);
    ASSERT_EQ(first->startStream(), ORVALIS_OK);
    ASSERT_EQ(second->startStream(), ORVALIS_OK);
    for (int i = 0; i < 5; ++i) {
        expectWholeImages(*first, 1);
        expectWholeImages(*second, 1);
    }
}

TEST_P(AcrossTheCable, interfacesComeAndGo)
{
    Cable cable;
    const CameraProcess camera(1, Cable::cameraAddress, Cable::launcher());
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(backend_->discover().size(), 1U);
        cable.removeAddressesHere();
        EXPECT_EQ(backend_->discover().size(), 0U);
        std::unique_ptr<Device> device;
        EXPECT_NE(backend_->open(camera.id(), device), ORVALIS_OK);
        cable.addAddressHere();
    }
    EXPECT_EQ(backend_->discover().size(), 1U);
    const auto device = openCamera(*backend_, camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    expectWholeImages(*device, 1);
}

TEST_P(AcrossTheCable, aCameraInAnotherSubnetIsListedWithTheReason)
{
    Cable cable;
    cable.addAddressThere("192.168.99.2");
    backend_->discover(); // discovery reports only changes
    const CameraProcess camera(1, "192.168.99.2", Cable::launcher());
    testing::internal::CaptureStderr();
    const auto found = backend_->discover();
    const std::string said = testing::internal::GetCapturedStderr();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].displayName, "Aravis Fake (GV01) - other subnet 192.168.99.2");
    EXPECT_NE(said.find("its address is not in a subnet of that interface"), std::string::npos)
        << said;
    std::unique_ptr<Device> device;
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_NOT_FOUND);
}

TEST_P(AcrossTheCable, withTheCableOutACameraIsNotFoundAtOnce)
{
    Cable cable;
    const CameraProcess camera(1, Cable::cameraAddress, Cable::launcher());
    backend_->discover();
    cable.pullOut();
    std::unique_ptr<Device> device;
    expectSoon("told",
               [&] { EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_NOT_FOUND); });
}

TEST_P(AcrossTheCable, anIdleCameraIsLostAtTheNextGrab)
{
    Cable cable;
    const CameraProcess camera(1, Cable::cameraAddress, Cable::launcher());
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    cable.pullOut();
    expectLost("takeImage", [&] {
        RawImage image;
        return device->takeImage(image, Clock::now() + 30s);
    });
}

TEST_P(AcrossTheCable, pullingTheCableOutIsALoss)
{
    Cable cable;
    const CameraProcess camera(1, Cable::cameraAddress, Cable::launcher());
    auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    expectWholeImages(*device, 5);
    cable.pullOut();
    expectLost("noticed", [&] { return streamUntilItEnds(*device); });
    expectLost("info", [&] {
        orvalis::NodeInfo info;
        return device->nodes().info("Width", info);
    });
    expectLost("readRegister", [&] {
        std::uint32_t value = 0;
        return device->readRegister(0x100, value);
    });
    expectSoon("stop", [&] { device->stopStream(); });
    expectSoon("close", [&] { device.reset(); });

    cable.plugIn();
    backend_->discover();
    OResult opened = ORVALIS_ERROR_BUSY; // until the camera has noticed the disconnection
    while (opened == ORVALIS_ERROR_BUSY) {
        opened = backend_->open(camera.id(), device);
    }
    ASSERT_EQ(opened, ORVALIS_OK);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    expectWholeImages(*device, 5);
}

TEST_P(AcrossTheCable, packetsThatAreTooLargeAreReplacedBySmallerOnes)
{
    Cable cable(9000);
    const CameraProcess camera(1, Cable::cameraAddress, Cable::launcher());
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    cable.setMtuHere(1500);
    ASSERT_EQ(device->nodes().setInteger("GevSCPSPacketSize", 8000), ORVALIS_OK);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    expectSoon("first image", [&] { expectWholeImages(*device, 1); });
    expectWholeImages(*device, 5);
    EXPECT_LE(integer(*device, "GevSCPSPacketSize"), 1500);
}

TEST_P(AcrossTheCable, packetSizeAdaptsWhileItStreams)
{
    Cable cable(9000);
    const CameraProcess camera(1, Cable::cameraAddress, Cable::launcher());
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    ASSERT_EQ(device->nodes().setInteger("GevSCPSPacketSize", 8000), ORVALIS_OK);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    expectWholeImages(*device, 5);
    std::printf("packets of %d bytes\n", int(integer(*device, "GevSCPSPacketSize")));
    cable.setMtuHere(1500);
    expectSoon("images again", [&] { expectWholeImages(*device, 10); });
    EXPECT_LE(integer(*device, "GevSCPSPacketSize"), 1500);
}

INSTANTIATE_TEST_SUITE_P(Socket, AcrossTheCable, testing::Bool(), [](const auto &use) {
    return std::string(use.param ? "packet" : "ordinary");
});

} // namespace
