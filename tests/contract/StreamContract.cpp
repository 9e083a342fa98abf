// SPDX-License-Identifier: MIT
// Streaming and grabs.
#include "tests/contract/Contract.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

using namespace contract;

namespace {

class Stream : public CameraTest {};
class Grab : public CameraTest {
protected:
    /// Makes the camera send frames only for software triggers.
    std::int32_t waitForSoftwareTrigger()
    {
        const char *backends = std::getenv("ORVALIS_BACKENDS");
        if (backends && std::string(backends) == "fake")
            return ORVALIS_ERROR_NOT_SUPPORTED;          // it has the nodes, but ignores them
        OrvalisSetTriggerModeStr(handle_, "FrameStart"); // if there are several modes
        const std::int32_t result = OrvalisSetTriggerEnable(handle_, true);
        if (result != ORVALIS_OK)
            return result;
        const std::int32_t source = OrvalisSetTriggerSourceStr(handle_, "Software");
        return source == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : source;
    }
};

constexpr std::uint32_t kLong = 30000; // milliseconds; no result depends on this

} // namespace

TEST_F(Stream, framesHaveTheSizeOfTheRegion)
{
    const OSizeInfo region = size();
    OImageFrame seen{};
    std::uint32_t sum = 0;
    frames_.onFrame = [&](OImageFrame *frame) {
        seen = *frame;
        for (std::uint32_t i = 0; i < frame->rawSize; ++i)
            sum += frame->raw[i]; // all of it is readable
    };
    start();
    ASSERT_TRUE(frames_.waitFor(2));
    ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_EQ(seen.width, static_cast<std::uint32_t>(region.width));
    EXPECT_EQ(seen.height, static_cast<std::uint32_t>(region.height));
    EXPECT_EQ(seen.rawSize, seen.width * seen.height * seen.bitsPerPixel / 8);
}

TEST_F(Stream, noCallbackAfterStop)
{
    for (int i = 0; i < 10; ++i) {
        start();
        ASSERT_TRUE(frames_.waitFor(frames_.count() + 1));
        ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
        const int count = frames_.count();
        std::vector<std::uint8_t> raw = grabBuffer(2);
        OImageFrame frame{};
        frame.raw = raw.data();
        ASSERT_EQ(OrvalisGrabRAWData(handle_, &frame, kLong), ORVALIS_OK) << "time for a frame";
        EXPECT_EQ(frames_.count(), count);
    }
}

TEST_F(Stream, stopFromTheCallbackMakesItTheLast)
{
    std::atomic<int> stopped{0};
    frames_.onFrame = [&](OImageFrame *) {
        EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
        ++stopped;
    };
    for (int i = 1; i <= 5; ++i) {
        start();
        ASSERT_TRUE(frames_.waitFor(i));
        ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
        EXPECT_EQ(stopped, i);
    }
}

TEST_F(Stream, closeFromTheCallback)
{
    const OCameraHandle handle = handle_;
    handle_ = nullptr;
    frames_.onFrame = [&](OImageFrame *frame) {
        EXPECT_EQ(OrvalisCloseCamera(handle), ORVALIS_OK);
        EXPECT_NE(frame->raw, nullptr);
    };
    ASSERT_EQ(OrvalisStartAcquisition(handle, &Frames::callback), ORVALIS_OK);
    ASSERT_TRUE(frames_.waitFor(1));
    EXPECT_EQ(OrvalisStopAcquisition(handle), ORVALIS_ERROR_BAD_HANDLE);
    // The camera becomes available again soon.
    const std::string id = cameraId();
    std::int32_t result = ORVALIS_ERROR_BUSY;
    while (result == ORVALIS_ERROR_BUSY)
        result = OrvalisOpenCamera(id.c_str(), &handle_);
    EXPECT_EQ(result, ORVALIS_OK);
    EXPECT_EQ(frames_.count(), 1);
}

TEST_F(Stream, framesStayValidForEightMoreAndAfterStop)
{
    struct Kept {
        OImageFrame *frame;
        std::uint8_t *raw;
        std::vector<std::uint8_t> copy;
    };
    std::vector<Kept> kept;
    frames_.onFrame = [&](OImageFrame *frame) {
        for (const Kept &old : kept) {
            EXPECT_EQ(old.frame->raw, old.raw);
            EXPECT_EQ(std::memcmp(old.raw, old.copy.data(), old.copy.size()), 0);
        }
        if (kept.size() == 8)
            kept.erase(kept.begin());
        kept.push_back({frame, frame->raw, {frame->raw, frame->raw + frame->rawSize}});
    };
    start();
    ASSERT_TRUE(frames_.waitFor(15));
    ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    for (const Kept &old : kept)
        EXPECT_EQ(std::memcmp(old.raw, old.copy.data(), old.copy.size()), 0);
}

TEST_F(Stream, regionAndFormatAreLocked)
{
    const OSizeInfo before = size();
    start();
    ASSERT_TRUE(frames_.waitFor(1));
    EXPECT_EQ(OrvalisSetSizeInfo(handle_, {0, 0, 64, 64, 0, 0}), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(size().width, before.width);
    EXPECT_EQ(size().height, before.height);
}

TEST_F(Stream, singleFrameModeSendsOneFrame)
{
    if (OrvalisSetNodeEnum(handle_, "AcquisitionMode", "SingleFrame") != ORVALIS_OK)
        GTEST_SKIP() << "the camera has no single frame mode";
    start();
    ASSERT_TRUE(frames_.waitFor(1));
    ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_EQ(frames_.count(), 1);
    ASSERT_EQ(OrvalisSetNodeEnum(handle_, "AcquisitionMode", "Continuous"), ORVALIS_OK);
}

TEST_F(Stream, everyFormatIsDeliveredOrRefused)
{
    std::int32_t count = 0;
    ASSERT_EQ(OrvalisGetNumAvailablePixelFormats(handle_, &count), ORVALIS_OK);
    ASSERT_EQ(OrvalisSetBayerConversion(handle_, 1), ORVALIS_OK);
    OImageFrame seen{};
    frames_.onFrame = [&](OImageFrame *frame) { seen = *frame; };
    for (std::int32_t i = 0; i < count; ++i) {
        char name[ORVALIS_NAME_SIZE] = "";
        ASSERT_EQ(OrvalisGetAvailablePixelFormatsIdxToStr(handle_, i, name), ORVALIS_OK);
        SCOPED_TRACE(name);
        // A stop returns after a second although the stream still ends, and the format is locked
        // then.
        ASSERT_TRUE(
            eventually([&] { return OrvalisSetPixelFormatStr(handle_, name) == ORVALIS_OK; }));
        const std::int32_t started = OrvalisStartAcquisition(handle_, &Frames::callback);
        if (started == ORVALIS_ERROR_NOT_SUPPORTED)
            continue;
        ASSERT_EQ(started, ORVALIS_OK);
        ASSERT_TRUE(frames_.waitFor(frames_.count() + 2));
        ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
        const bool mono = std::strstr(name, "Mono") != nullptr;
        EXPECT_EQ(seen.rgb != nullptr, !mono);
        EXPECT_EQ(seen.mono8 != nullptr, seen.bitsPerPixel == 16 && !std::strstr(name, "YUV"));
    }
    std::int32_t beyond = OrvalisGetAvailablePixelFormatsIdxToStr(handle_, count, nullptr);
    EXPECT_EQ(beyond, ORVALIS_ERROR_BAD_ARGUMENT);
}

TEST_F(Grab, rawAndRgbWhileIdle)
{
    std::vector<std::uint8_t> raw = grabBuffer(2);
    std::vector<std::uint8_t> rgb = grabBuffer(3);
    OImageFrame frame{};
    frame.raw = raw.data();
    frame.rgb = rgb.data();
    ASSERT_EQ(OrvalisGrabRAWData(handle_, &frame, kLong), ORVALIS_OK);
    EXPECT_EQ(frame.width, static_cast<std::uint32_t>(size().width));
    EXPECT_EQ(frame.rawSize, frame.width * frame.height * frame.bitsPerPixel / 8);
    ASSERT_EQ(OrvalisGrabRGBData(handle_, &frame, kLong), ORVALIS_OK);
    EXPECT_EQ(frame.bitsPerPixel, 24u);
    EXPECT_EQ(frame.rawSize, frame.width * frame.height * 3);
    EXPECT_EQ(raw.back(), kGuard);
    EXPECT_EQ(rgb.back(), kGuard);
    EXPECT_EQ(frame.mono8, nullptr);
}

TEST_F(Grab, nothingIsWrittenBeyondASmallerRegion)
{
    if (OrvalisSetSizeInfo(handle_, {0, 0, 64, 64, 0, 0}) != ORVALIS_OK)
        GTEST_SKIP() << "the camera has one region only";
    const OSizeInfo region = size();
    std::vector<std::uint8_t> rgb = grabBuffer(3);
    OImageFrame frame{};
    frame.rgb = rgb.data();
    ASSERT_EQ(OrvalisGrabRGBData(handle_, &frame, kLong), ORVALIS_OK);
    ASSERT_EQ(frame.width, static_cast<std::uint32_t>(region.width));
    for (std::size_t i = frame.rawSize; i < rgb.size(); ++i)
        ASSERT_EQ(rgb[i], kGuard) << i;
}

TEST_F(Grab, streamContinuesDuringAGrab)
{
    std::vector<std::uint8_t> rgb = grabBuffer(3);
    OImageFrame frame{};
    frame.rgb = rgb.data();
    start();
    ASSERT_TRUE(frames_.waitFor(1));
    for (int i = 0; i < 3; ++i)
        ASSERT_EQ(OrvalisGrabRGBData(handle_, &frame, kLong), ORVALIS_OK);
    EXPECT_TRUE(frames_.waitFor(frames_.count() + 1));
}

TEST_F(Grab, waitForATriggerEndsAtTheTimeout)
{
    CONTRACT_NEEDS(waitForSoftwareTrigger());
    std::vector<std::uint8_t> rgb = grabBuffer(3);
    OImageFrame frame{};
    frame.rgb = rgb.data();
    // The camera may still have a pending trigger from an earlier test.
    std::int32_t result = ORVALIS_OK;
    for (int i = 0; i < 3 && result == ORVALIS_OK; ++i) {
        frame.width = 0;
        result = OrvalisGrabRGBData(handle_, &frame, 50);
    }
    EXPECT_EQ(result, ORVALIS_ERROR_TIMEOUT);
    EXPECT_EQ(frame.width, 0u);
}

TEST_F(Grab, startAndWritesEndIt)
{
    CONTRACT_NEEDS(waitForSoftwareTrigger());
    std::vector<std::uint8_t> rgb = grabBuffer(3);
    std::atomic<bool> ended{false};
    std::thread grabber([&] {
        OImageFrame frame{};
        frame.rgb = rgb.data();
        EXPECT_EQ(OrvalisGrabRGBData(handle_, &frame, kLong), ORVALIS_ERROR_ABORTED);
        ended = true;
    });
    // The grab may begin after the first write.
    while (!ended)
        EXPECT_EQ(OrvalisSetTriggerSourceStr(handle_, "Software"), ORVALIS_OK);
    grabber.join();
}
