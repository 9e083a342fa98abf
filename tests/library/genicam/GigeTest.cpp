// SPDX-License-Identifier: MIT
// GigE Vision cameras in other processes: discovery, streams, registers, control.
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/RigCamera.h"

#include <future>

using namespace genicamtest;

namespace {

class Gige : public GigeFixture {};

TEST_F(Gige, discoveryFindsTheCamera)
{
    const CameraProcess camera(1);
    const auto found = backend_->discover();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].id, "Aravis-Fake-GV01");
    EXPECT_EQ(found[0].displayName, "Aravis Fake (GV01)");
}

TEST_F(Gige, userDefinedNameIsListed)
{
    RigCamera camera({}, {.userName = "T\xC3\xBCr"});
    const auto found = backend_->discover();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].displayName, "T\xFCr: Rig Described (RIG1)");
    const auto device = openCamera(*backend_, camera.id());
    ASSERT_TRUE(device);
    EXPECT_EQ(device->identity().displayName, found[0].displayName);
    ASSERT_EQ(device->writeRegister(0x00E8, 0x4C656674), ORVALIS_OK); // "Left"
    ASSERT_EQ(device->writeRegister(0x00EC, 0), ORVALIS_OK);
    EXPECT_EQ(backend_->discover().at(0).displayName, "Left: Rig Described (RIG1)");
}

TEST_F(Gige, discoveryTracksCamerasThatComeAndGo)
{
    EXPECT_EQ(backend_->discover().size(), 0U);
    CameraProcess first(1);
    EXPECT_EQ(backend_->discover().size(), 1U);
    const CameraProcess second(2);
    EXPECT_EQ(backend_->discover().size(), 2U);
    first.kill();
    const auto rest = backend_->discover();
    ASSERT_EQ(rest.size(), 1U);
    EXPECT_EQ(rest[0].id, second.id());
}

TEST_F(Gige, aCameraThatWasNeverListedIsNotFound)
{
    const CameraProcess camera(1);
    std::unique_ptr<Device> device;
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(Gige, opensReportsItsIdentityAndStreams)
{
    const CameraProcess camera(1);
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    EXPECT_EQ(device->identity().id, camera.id());
    EXPECT_EQ(device->identity().vendor, "Aravis");
    EXPECT_EQ(device->identity().serialNumber, "GV01");
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(device->startStream(), ORVALIS_OK);
        for (int i = 0; i < 10; ++i) {
            RawImage image;
            ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
            EXPECT_EQ(image.width, 512U);
            EXPECT_TRUE(isWhole(image));
        }
        device->stopStream();
        EXPECT_EQ(integer(*device, "StreamDeliveredFrameCount"), 10);
    }
}

TEST_F(Gige, openDoesNotWaitForDiscovery)
{
    const CameraProcess camera(1);
    backend_->discover();
    std::atomic<bool> looking{true};
    auto look = std::async(std::launch::async, [&] {
        backend_->discover();
        looking = false;
    });
    const auto device = openCamera(*backend_, camera.id());
    EXPECT_TRUE(looking) << "a pass takes a second, opening some milliseconds";
    look.get();
}

TEST_F(Gige, canBeReopenedAtOnce)
{
    const CameraProcess camera(1);
    backend_->discover();
    for (int i = 0; i < 10; ++i) {
        const auto device = openCamera(*backend_, camera.id());
        ASSERT_TRUE(device);
        EXPECT_EQ(integer(*device, "Width"), 512);
    }
}

TEST_F(Gige, twoCamerasStreamAtTheSameTime)
{
    const CameraProcess one(1);
    const CameraProcess two(2);
    const auto first = discoveredAndOpened(one);
    const auto second = openCamera(*backend_, two.id());
    ASSERT_TRUE(first && second);
    ASSERT_EQ(first->nodes().setInteger("Width", 256), ORVALIS_OK);
    ASSERT_EQ(first->startStream(), ORVALIS_OK);
    ASSERT_EQ(second->startStream(), ORVALIS_OK);
    for (int i = 0; i < 5; ++i) {
        RawImage image;
        ASSERT_EQ(nextImage(*first, image), ORVALIS_OK);
        EXPECT_EQ(image.width, 256U);
        ASSERT_EQ(nextImage(*second, image), ORVALIS_OK);
        EXPECT_EQ(image.width, 512U);
    }
    first->stopStream();
    second->stopStream();
}

TEST_F(Gige, camerasAreSwappedWhileTheyStream)
{
    const CameraProcess one(1);
    const CameraProcess two(2);
    backend_->discover();
    for (int round = 0; round < 3; ++round) {
        for (const CameraProcess *camera : {&one, &two}) {
            const auto device = openCamera(*backend_, camera->id());
            ASSERT_TRUE(device);
            EXPECT_EQ(device->identity().id, camera->id());
            ASSERT_EQ(device->startStream(), ORVALIS_OK);
            RawImage image;
            ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
            EXPECT_TRUE(isWhole(image));
        } // closed without a stop
    }
}

TEST_F(Gige, nodesAndRegistersAreTheSameMemory)
{
    const CameraProcess camera(1);
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    std::uint32_t value = 0;
    ASSERT_EQ(device->readRegister(0x1F0, value), ORVALIS_OK);
    EXPECT_EQ(value, 0x12345678U);
    ASSERT_EQ(device->writeRegister(0x100, 640), ORVALIS_OK);
    EXPECT_EQ(integer(*device, "Width"), 640);
    ASSERT_EQ(device->nodes().setInteger("Height", 480), ORVALIS_OK);
    ASSERT_EQ(device->readRegister(0x104, value), ORVALIS_OK);
    EXPECT_EQ(value, 480U);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    RawImage image;
    ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
    EXPECT_EQ(image.width, 640U);
    EXPECT_EQ(image.height, 480U);
    EXPECT_EQ(image.size, 640U * 480U);
    device->stopStream();
}

TEST_F(Gige, aSingleImageNeedsNoStreamAndEndsByWake)
{
    const CameraProcess camera(1);
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    RawImage image;
    ASSERT_EQ(device->takeImage(image, Clock::now() + 30s), ORVALIS_OK);
    EXPECT_TRUE(isWhole(image));
    ASSERT_EQ(device->nodes().setEnumeration("TriggerMode", "On"), ORVALIS_OK);
    ASSERT_EQ(device->nodes().setEnumeration("TriggerSource", "Software"), ORVALIS_OK);
    auto waiter = std::async(std::launch::async,
                             [&] { return device->takeImage(image, Clock::now() + 60s); });
    EXPECT_EQ(integer(*device, "Width"), 512);
    device->wake();
    EXPECT_EQ(waiter.get(), ORVALIS_ERROR_ABORTED);
}

TEST_F(Gige, colourFormatsKeepTheirCode)
{
    const CameraProcess camera(1);
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    for (const auto &[name, code] :
         {std::pair{"BayerGR8", 0x01080008U}, std::pair{"RGB8", 0x02180014U},
          std::pair{"Mono16", 0x01100007U}}) {
        ASSERT_EQ(device->nodes().setEnumeration("PixelFormat", name), ORVALIS_OK);
        RawImage image;
        ASSERT_EQ(device->takeImage(image, Clock::now() + 30s), ORVALIS_OK) << name;
        EXPECT_EQ(image.pixelFormat, code) << name;
    }
}

} // namespace
