// SPDX-License-Identifier: MIT
// The GenICam back end on Aravis' in-process test camera.
#include "tests/library/genicam/GenicamFixture.h"

#include <cmath>
#include <future>

using namespace genicamtest;
using orvalis::EnumerationValue;
using orvalis::FloatValue;
using orvalis::IntegerValue;
using orvalis::NodeInfo;

namespace {

class FakeDevice : public testing::Test {
protected:
    void SetUp() override
    {
        const auto cameras = backend_->discover();
        ASSERT_EQ(cameras.size(), 1U);
        device_ = openCamera(*backend_, cameras[0].id);
        ASSERT_TRUE(device_);
    }
    orvalis::NodeMap &nodes() { return device_->nodes(); }
    NodeInfo info(std::string_view name)
    {
        NodeInfo info;
        EXPECT_EQ(nodes().info(name, info), ORVALIS_OK) << name;
        return info;
    }

    std::unique_ptr<Backend> backend_ = orvalis::makeGenicamBackend(true);
    std::unique_ptr<Device> device_;
};

TEST_F(FakeDevice, anUnknownCameraIsNotFound)
{
    std::unique_ptr<Device> other;
    EXPECT_EQ(backend_->open("nobody", other), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_FALSE(other);
}

TEST_F(FakeDevice, reportsItsIdentity)
{
    EXPECT_EQ(device_->identity().vendor, "Aravis");
    EXPECT_EQ(device_->identity().model, "Fake");
    EXPECT_FALSE(device_->identity().id.empty());
}

TEST_F(FakeDevice, nodesHaveTheirTypes)
{
    EXPECT_EQ(info("Root").type, ORVALIS_NODE_CATEGORY);
    EXPECT_EQ(info("Width").type, ORVALIS_NODE_INTEGER);
    EXPECT_EQ(info("ExposureTimeAbs").type, ORVALIS_NODE_FLOAT);
    EXPECT_EQ(info("PixelFormat").type, ORVALIS_NODE_ENUMERATION);
    EXPECT_EQ(info("DeviceVendorName").type, ORVALIS_NODE_STRING);
    EXPECT_EQ(info("AcquisitionStart").type, ORVALIS_NODE_COMMAND);
    EXPECT_EQ(info("TestBoolean").type, ORVALIS_NODE_BOOLEAN);
}

TEST_F(FakeDevice, nodesHaveTheirAccess)
{
    EXPECT_EQ(info("SensorWidth").access, ORVALIS_ACCESS_READ_ONLY);
    EXPECT_EQ(info("OffsetX").access, ORVALIS_ACCESS_READ_WRITE);
    EXPECT_EQ(info("TriggerSoftware").access, ORVALIS_ACCESS_READ_WRITE) << "commands can be used";
    EXPECT_TRUE(info("Width").lockable);
    EXPECT_EQ(info("Root").access, ORVALIS_ACCESS_READ_ONLY);
    EXPECT_EQ(info("TLParamsLocked").visibility, 3);
}

TEST_F(FakeDevice, unknownNodesAreNotFound)
{
    NodeInfo info;
    IntegerValue value;
    std::vector<std::string> children;
    EXPECT_EQ(nodes().info("Nonsense", info), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().getInteger("", value), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().list("Nonsense", children), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(nodes().execute("Nonsense"), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(FakeDevice, wrongTypesAreRefused)
{
    IntegerValue integerValue;
    FloatValue floatValue;
    bool boolean = false;
    EXPECT_EQ(nodes().getInteger("PixelFormat", integerValue), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().getFloat("Width", floatValue), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().setBoolean("Width", true), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().getBoolean("Root", boolean), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().execute("Width"), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(nodes().setText("Width", "1"), ORVALIS_ERROR_WRONG_TYPE);
}

TEST_F(FakeDevice, integersAreReadAndWrittenWithinBounds)
{
    IntegerValue width;
    ASSERT_EQ(nodes().getInteger("Width", width), ORVALIS_OK);
    EXPECT_EQ(width.value, 512);
    EXPECT_EQ(width.minimum, 1);
    EXPECT_EQ(width.maximum, 2048);
    EXPECT_EQ(nodes().setInteger("Width", 300), ORVALIS_OK);
    EXPECT_EQ(integer(*device_, "Width"), 300);
    EXPECT_EQ(nodes().setInteger("Width", 2049), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(nodes().setInteger("Width", 0), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(integer(*device_, "Width"), 300);
    EXPECT_EQ(nodes().setInteger("SensorWidth", 100), ORVALIS_ERROR_ACCESS_DENIED);
}

TEST_F(FakeDevice, floatsAreReadAndWrittenWithinBounds)
{
    FloatValue exposure;
    ASSERT_EQ(nodes().getFloat("ExposureTimeAbs", exposure), ORVALIS_OK);
    EXPECT_EQ(nodes().setFloat("ExposureTimeAbs", 1234), ORVALIS_OK);
    ASSERT_EQ(nodes().getFloat("ExposureTimeAbs", exposure), ORVALIS_OK);
    EXPECT_DOUBLE_EQ(exposure.value, 1234);
    EXPECT_EQ(nodes().setFloat("ExposureTimeAbs", exposure.maximum * 2),
              ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(nodes().setFloat("ExposureTimeAbs", std::nan("")), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(FakeDevice, enumerationsOfferTheirEntries)
{
    EnumerationValue format;
    ASSERT_EQ(nodes().getEnumeration("PixelFormat", format), ORVALIS_OK);
    ASSERT_GE(format.current, 0);
    EXPECT_EQ(format.entries[static_cast<std::size_t>(format.current)].name, "Mono8");
    EXPECT_EQ(nodes().setEnumeration("PixelFormat", "RGB8"), ORVALIS_OK);
    ASSERT_EQ(nodes().getEnumeration("PixelFormat", format), ORVALIS_OK);
    EXPECT_EQ(format.entries[static_cast<std::size_t>(format.current)].value, 0x02180014);
    EXPECT_EQ(nodes().setEnumeration("PixelFormat", "Mono4711"), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(FakeDevice, booleansAndTextsAreRead)
{
    std::string text;
    ASSERT_EQ(nodes().getText("DeviceVendorName", text), ORVALIS_OK);
    EXPECT_EQ(text, "Aravis");
    EXPECT_EQ(nodes().setText("DeviceVendorName", "x"), ORVALIS_ERROR_ACCESS_DENIED);
    bool boolean = false;
    ASSERT_EQ(nodes().setBoolean("TestBoolean", true), ORVALIS_OK);
    ASSERT_EQ(nodes().getBoolean("TestBoolean", boolean), ORVALIS_OK);
    EXPECT_TRUE(boolean);
}

TEST_F(FakeDevice, everyNodeOfTheTreeCanBeDescribed)
{
    std::vector<std::string> open{"Root"};
    int nodesSeen = 0;
    while (!open.empty()) {
        const std::string name = open.back();
        open.pop_back();
        ++nodesSeen;
        EXPECT_FALSE(info(name).displayName.empty()) << name;
        std::vector<std::string> children;
        EXPECT_EQ(nodes().list(name, children), ORVALIS_OK) << name;
        open.insert(open.end(), children.begin(), children.end());
    }
    EXPECT_GT(nodesSeen, 30);
}

TEST_F(FakeDevice, registersAreThoseOfTheNodes)
{
    std::uint32_t value = 0;
    ASSERT_EQ(device_->readRegister(0x100, value), ORVALIS_OK);
    EXPECT_EQ(value, 512U);
    ASSERT_EQ(device_->writeRegister(0x100, 256), ORVALIS_OK);
    EXPECT_EQ(integer(*device_, "Width"), 256);
}

TEST_F(FakeDevice, registersThatItDoesNotHaveAreNotFound)
{
    std::uint32_t value = 7;
    for (const std::uint32_t address : {0x10000U, 0x20000U, 0x80000000U, 0xFFFFFFFCU}) {
        EXPECT_EQ(device_->readRegister(address, value), ORVALIS_ERROR_NOT_FOUND);
        EXPECT_EQ(device_->writeRegister(address, 1), ORVALIS_ERROR_NOT_FOUND);
    }
    EXPECT_EQ(value, 7U);
}

TEST_F(FakeDevice, resetIsNotSupported)
{
    EXPECT_EQ(device_->reset(), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(integer(*device_, "Width"), 512) << "and the camera is not lost";
}

TEST_F(FakeDevice, canStreamRepeatedly)
{
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(device_->startStream(), ORVALIS_OK);
        for (int i = 0; i < 3; ++i) {
            RawImage image;
            ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
            EXPECT_EQ(image.width, 512U);
            EXPECT_EQ(image.height, 512U);
            EXPECT_EQ(image.pixelFormat, 0x01080001U);
            EXPECT_TRUE(isWhole(image));
        }
        device_->stopStream();
        EXPECT_EQ(integer(*device_, "StreamDeliveredFrameCount"), 3);
    }
}

TEST_F(FakeDevice, stoppingTwiceDoesNothing)
{
    device_->stopStream();
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    RawImage image;
    EXPECT_EQ(nextImage(*device_, image), ORVALIS_OK);
    device_->stopStream();
    device_->stopStream();
    EXPECT_EQ(device_->startStream(), ORVALIS_OK);
}

TEST_F(FakeDevice, widthIsLockedWhileStreaming)
{
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    EXPECT_EQ(info("Width").access, ORVALIS_ACCESS_READ_ONLY);
    EXPECT_EQ(nodes().setInteger("Width", 100), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(nodes().setEnumeration("PixelFormat", "RGB8"), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(nodes().setFloat("ExposureTimeAbs", 2000), ORVALIS_OK);
    device_->stopStream();
    EXPECT_EQ(nodes().setInteger("Width", 100), ORVALIS_OK);
}

TEST_F(FakeDevice, imagesThatAreHeldStayUnchangedAndOutliveTheCamera)
{
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    std::vector<RawImage> held(12);
    std::vector<std::vector<std::uint8_t>> copies;
    for (RawImage &image : held) {
        ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
        ASSERT_TRUE(image.owner);
        copies.emplace_back(image.data, image.data + image.size);
    }
    device_->stopStream();
    device_.reset();
    for (std::size_t i = 0; i < held.size(); ++i) {
        EXPECT_TRUE(std::equal(copies[i].begin(), copies[i].end(), held[i].data)) << i;
    }
}

TEST_F(FakeDevice, aSingleImageNeedsNoStream)
{
    for (int i = 0; i < 3; ++i) {
        RawImage image;
        ASSERT_EQ(device_->takeImage(image, Clock::now() + 30s), ORVALIS_OK);
        EXPECT_TRUE(isWhole(image));
    }
    EXPECT_EQ(integer(*device_, "StreamDeliveredFrameCount"), 0) << "counts the user's streams";
}

TEST_F(FakeDevice, wakeEndsNextImage)
{
    ASSERT_EQ(nodes().setEnumeration("TriggerMode", "On"), ORVALIS_OK);
    ASSERT_EQ(nodes().setEnumeration("TriggerSource", "Software"), ORVALIS_OK);
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    auto waiter = std::async(std::launch::async, [&] {
        RawImage image;
        return nextImage(*device_, image);
    });
    device_->wake();
    EXPECT_EQ(waiter.get(), ORVALIS_ERROR_ABORTED);
    device_->stopStream();
}

TEST_F(FakeDevice, nodesAreAccessibleDuringAGrabAndWakeEndsIt)
{
    ASSERT_EQ(nodes().setEnumeration("TriggerMode", "On"), ORVALIS_OK);
    ASSERT_EQ(nodes().setEnumeration("TriggerSource", "Software"), ORVALIS_OK);
    auto waiter = std::async(std::launch::async, [&] {
        RawImage image;
        return device_->takeImage(image, Clock::now() + 60s);
    });
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(nodes().setInteger("Width", 500 + i), ORVALIS_OK);
    }
    EXPECT_NE(waiter.wait_for(0s), std::future_status::ready);
    device_->wake();
    EXPECT_EQ(waiter.get(), ORVALIS_ERROR_ABORTED);
}

TEST_F(FakeDevice, statisticsAreInTheTree)
{
    EXPECT_TRUE(lists(*device_, "Root", "StreamStatistics"));
    for (const char *name :
         {"StreamDeliveredFrameCount", "StreamFailedFrameCount", "StreamOtherPayloadCount",
          "StreamUnderrunCount", "StreamResentPacketCount", "StreamMissingPacketCount"}) {
        EXPECT_TRUE(lists(*device_, "StreamStatistics", name));
        EXPECT_EQ(info(name).access, ORVALIS_ACCESS_READ_ONLY);
        EXPECT_FALSE(info(name).description.empty());
        EXPECT_EQ(integer(*device_, name), 0);
        EXPECT_EQ(nodes().setInteger(name, 1), ORVALIS_ERROR_ACCESS_DENIED);
        EXPECT_EQ(nodes().execute(name), ORVALIS_ERROR_WRONG_TYPE);
    }
    EXPECT_EQ(nodes().execute("StreamStatisticsReset"), ORVALIS_OK);
}

TEST_F(FakeDevice, userSetDefaultSelectorMayBeMissing)
{
    EnumerationValue value;
    EXPECT_EQ(nodes().getEnumeration("UserSetDefaultSelector", value), ORVALIS_ERROR_NOT_FOUND);
}

} // namespace
