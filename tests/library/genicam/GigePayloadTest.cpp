// SPDX-License-Identifier: MIT
// GigE Vision payloads other than plain images, and transfer variants: padding, chunks, several
// parts, fewer lines, long block IDs, no resending.
#include "library/genicam/StreamCounters.h"
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/RigCamera.h"

using namespace genicamtest;

namespace {

using Payload = RigFaults::Payload;

class GigePayload : public GigeFixture {
protected:
    void open(RigOptions options = {})
    {
        camera_ = std::make_unique<RigCamera>(CameraDescription(), options);
        backend_->discover();
        device_ = openCamera(*backend_, camera_->id());
        ASSERT_TRUE(device_);
    }
    void setSize(std::uint32_t width, std::uint32_t height)
    {
        camera_->memory.set(RigAddress::width, width);
        camera_->memory.set(RigAddress::height, height);
    }
    void TearDown() override { device_.reset(); }
    std::int64_t counted(const char *name) { return integer(*device_, name); }
    void expectPictures(int count, std::uint32_t width, std::uint32_t height)
    {
        for (int i = 0; i < count; ++i) {
            RawImage image;
            ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
            EXPECT_EQ(image.width, width);
            EXPECT_EQ(image.height, height);
            EXPECT_TRUE(isWhole(image));
        }
    }

    void startAndLosePackets()
    {
        ASSERT_EQ(device_->startStream(), ORVALIS_OK);
        expectPictures(3, 1050, 1001);
        const auto before = camera_->packetsLost();
        camera_->faults.losesPerMillion = 10000; // more than one packet of a frame
        while (camera_->packetsLost() < before + 12)
            expectPictures(1, 1050, 1001);
        camera_->faults.losesPerMillion = 0;
        expectPictures(20, 1050, 1001);
    }

    std::unique_ptr<RigCamera> camera_;
    std::unique_ptr<Device> device_;
};

TEST_F(GigePayload, packetsAreNotRequestedAgainIfTheCameraDoesNotSupportIt)
{
    open({.offersResend = false});
    setSize(512, 512);
    camera_->faults.losesPerMillion = 5000;
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    while (counted("StreamFailedFrameCount") < 3) {
        RawImage image;
        ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
        EXPECT_TRUE(isWhole(image));
    }
    EXPECT_EQ(camera_->resendRequests(), 0U);
    device_->stopStream();
}

TEST_F(GigePayload, paddingAfterLinesIsRemoved)
{
    open();
    camera_->faults.linePadding = 12;
    setSize(100, 48);
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(5, 100, 48);
}

class GigeChunks : public GigePayload, public testing::WithParamInterface<Payload> {};

TEST_P(GigeChunks, theImageIsTaken)
{
    open();
    camera_->faults.payload = GetParam();
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(5, 64, 48);
    RawImage image;
    ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
    EXPECT_EQ(image.size, 64U * 48) << "the rest is omitted";
    EXPECT_EQ(counted("StreamFailedFrameCount"), 0);
}

INSTANTIATE_TEST_SUITE_P(With, GigeChunks,
                         testing::Values(Payload::ImageWithChunks, Payload::ExtendedChunks,
                                         Payload::Multipart),
                         [](const auto &payload) {
                             return std::string(
                                 payload.param == Payload::ImageWithChunks  ? "imageWithChunks"
                                 : payload.param == Payload::ExtendedChunks ? "extendedChunks"
                                                                            : "parts");
                         });

class GigeNoImage : public GigePayload, public testing::WithParamInterface<Payload> {};

TEST_P(GigeNoImage, isCountedSeparatelyAndIsNoDamage)
{
    open();
    camera_->faults.payload = GetParam();
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    RawImage image;
    // Longer than the time after which damaged frames are evidence.
    EXPECT_EQ(device_->nextImage(image, Clock::now() + 2500ms), ORVALIS_ERROR_TIMEOUT);
    EXPECT_GT(counted("StreamOtherPayloadCount"), 2);
    if (GetParam() != Payload::Raw) { // Aravis does not receive raw data at all
        EXPECT_EQ(counted("StreamFailedFrameCount"), 0);
        EXPECT_EQ(counted("StreamMissingPacketCount"), 0);
    }
    EXPECT_EQ(camera_->memory.writes(RigAddress::acquisitionStart), 1U) << "not tried otherwise";
    camera_->faults.payload = Payload::Image;
    expectPictures(2, 64, 48);
}

INSTANTIATE_TEST_SUITE_P(Of, GigeNoImage, testing::Values(Payload::Raw, Payload::Chunks),
                         [](const auto &payload) {
                             return std::string(payload.param == Payload::Raw ? "rawData"
                                                                              : "chunks");
                         });

TEST_F(GigePayload, onlyReceivedLinesOfALineScanCameraAreDelivered)
{
    open();
    camera_->faults.realHeight = 20;
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(5, 64, 20);
    EXPECT_EQ(counted("StreamFailedFrameCount"), 0);
    camera_->faults.realHeight = 0;
    RawImage image;
    do {
        ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
    } while (image.height == 20);
    EXPECT_EQ(image.height, 48U);
    EXPECT_TRUE(isWhole(image));
}

TEST_F(GigePayload, framesLargerThanTheirBuffersAreNoDamage)
{
    open();
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(2, 64, 48);
    setSize(64, 96);
    RawImage image;
    while (counted("StreamOtherPayloadCount") < 5) {
        device_->nextImage(image, Clock::now() + 100ms);
    }
    EXPECT_EQ(counted("StreamFailedFrameCount"), 0);
    EXPECT_EQ(camera_->memory.writes(RigAddress::acquisitionStart), 1U);
    setSize(64, 48);
    do {
        ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
    } while (image.height != 48);
    EXPECT_TRUE(isWhole(image));
}

TEST_F(GigePayload, lostPacketsWithLongBlockIdsAreCounted)
{
    open({.offersResend = false});
    camera_->faults.extendedIds = true;
    setSize(1050, 1001); // with short headers, the frame would need one packet less
    // Where the machine pauses the camera for longer than Aravis waits for a packet, packets that
    // are only late count as well. A wrong count of packets for each frame is wrong every time.
    const auto countsWhatWasLost = [&] {
        const auto before = static_cast<long>(camera_->packetsLost());
        startAndLosePackets();
        const long lost = static_cast<long>(camera_->packetsLost()) - before;
        const long found = counted("StreamMissingPacketCount");
        device_->stopStream();
        return found == lost;
    };
    constexpr int attempts = 5;
    int attempt = 0;
    while (attempt < attempts && !HasFatalFailure() && !countsWhatWasLost())
        ++attempt;
    EXPECT_LT(attempt, attempts);
}

TEST_F(GigePayload, skippedFrameNumbersAreNoFailure)
{
    open();
    camera_->faults.skipsFrameEvery = 2;
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(10, 64, 48);
    EXPECT_EQ(counted("StreamFailedFrameCount"), 0);
}

/// Checks 16-bit pixels: the slope of the rig, in little-endian order.
bool isDeepSlope(const RawImage &image)
{
    for (std::size_t y = 0; y < image.height; ++y) {
        const std::uint8_t *row = image.data + y * image.width * 2;
        for (std::size_t x = 0; x + 1 < image.width; ++x) {
            const auto pixel = [&](std::size_t i) { return row[2 * i] | row[2 * i + 1] << 8; };
            if (((pixel(x) + 16) & 0xFFFF) != pixel(x + 1)) {
                return false;
            }
        }
    }
    return true;
}

struct Endian {
    const char *name;
    bool registers; ///< according to the device mode register
    bool pixels;
    bool swapped;
};

class GigeOrder : public GigePayload, public testing::WithParamInterface<Endian> {};

TEST_P(GigeOrder, deepPixelsAreLittleEndian)
{
    open({.bigEndian = GetParam().registers});
    ASSERT_EQ(device_->nodes().setEnumeration("PixelFormat", "Mono16"), ORVALIS_OK);
    setSize(256, 48);
    camera_->faults.bigEndianPixels = GetParam().pixels;
    RawImage image;
    ASSERT_EQ(device_->takeImage(image, Clock::now() + 30s), ORVALIS_OK);
    EXPECT_EQ(isDeepSlope(image), GetParam().swapped == GetParam().pixels);
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
        EXPECT_EQ(image.size, 256U * 48 * 2);
        EXPECT_EQ(isDeepSlope(image), GetParam().swapped == GetParam().pixels);
    }
    device_->stopStream();
}

INSTANTIATE_TEST_SUITE_P(Of, GigeOrder,
                         testing::Values(Endian{"oldCamera", true, true, true},
                                         Endian{"almostEveryCamera", true, false, false},
                                         Endian{"littleEndianCamera", false, false, false}),
                         [](const auto &camera) { return std::string(camera.param.name); });

} // namespace
