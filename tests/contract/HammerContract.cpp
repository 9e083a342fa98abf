// SPDX-License-Identifier: MIT
// Many concurrent threads: no crash, no deadlock, and the camera works afterwards.
#include "tests/contract/Contract.h"
#include "tests/contract/Documented.h"
#include "tests/contract/EntryPoints.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <functional>
#include <string_view>
#include <thread>
#include <utility>

using namespace contract;

namespace {

constexpr std::string_view kDisruptive[] = {"OrvalisCloseCamera",  "OrvalisStopAcquisition",
                                            "OrvalisCameraReset",  "OrvalisStartAcquisition",
                                            "OrvalisWriteRegiser", "OrvalisSetTriggerEnable"};

std::size_t sumOf(const OImageFrame &frame)
{
    return std::hash<std::string_view>{}({reinterpret_cast<char *>(frame.raw), frame.rawSize});
}

bool isUniform(const OImageFrame &frame)
{
    return std::all_of(frame.raw, frame.raw + frame.rawSize,
                       [&](std::uint8_t byte) { return byte == frame.raw[0]; });
}

/// Checks that each frame fits its record and stays unchanged while eight more arrive.
class OldFrames {
public:
    void check(const OImageFrame &frame)
    {
        ASSERT_NE(frame.raw, nullptr);
        EXPECT_GT(frame.width, 0u);
        EXPECT_GT(frame.height, 0u);
        EXPECT_EQ(frame.rawSize, frame.width * frame.height * frame.bitsPerPixel / 8);
        for (const auto &[old, sum] : old_)
            EXPECT_EQ(sumOf(old), sum) << "an old frame has changed";
        if (old_.size() == 8)
            old_.pop_front();
        old_.emplace_back(frame, sumOf(frame));
    }
    void forget() { old_.clear(); }

private:
    std::deque<std::pair<OImageFrame, std::size_t>> old_;
};

class Hammer : public CameraTest {
protected:
    /// Calls all entry points except the disruptive ones repeatedly until stopped.
    void hammer()
    {
        const auto isLeft = [](std::string_view name) {
            return std::find(std::begin(kDisruptive), std::end(kDisruptive), name) !=
                   std::end(kDisruptive);
        };
        while (!done_)
            for (const EntryPoint &entry : entryPoints())
                if (!done_ && !isLeft(entry.name))
                    if (const std::int32_t result = entry.call(handle_);
                        !isDocumented(entry.name, result))
                        ADD_FAILURE() << entry.name << ": " << result;
    }
    /// The hammer may leave an exposure of a few microseconds: set a good one.
    void exposeWell()
    {
        if (OrvalisSetUserDefault(handle_) == ORVALIS_OK)
            return;
        OSizeInfo size{};
        OrvalisGetSizeInfo(handle_, &size);
        OrvalisSetSizeInfo(handle_, {0, 0, size.maxWidth, size.maxHeight, 0, 0});
        std::int32_t least = 0;
        std::int32_t most = 0;
        if (OrvalisGetGainMinMax(handle_, &least, &most) == ORVALIS_OK)
            OrvalisSetGain(handle_, least, false);
        OrvalisSetShutter(handle_, 10000, false);
    }
    std::atomic<bool> done_{false};
    std::atomic<int> uses_{0}; // number of successful calls
};

} // namespace

TEST_F(Hammer, callsDuringStartsAndStops)
{
    OldFrames frames;
    frames_.onFrame = [&](OImageFrame *frame) { frames.check(*frame); };
    std::thread first([this] { hammer(); });
    std::thread second([this] { hammer(); });
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(OrvalisStartAcquisition(handle_, &Frames::callback), ORVALIS_OK);
        EXPECT_TRUE(frames_.waitFor(frames_.count() + 10));
        EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
        frames.forget(); // the next start invalidates them
    }
    done_ = true;
    first.join();
    second.join();
    exposeWell();
    std::atomic<bool> sees{false};
    frames_.onFrame = [&](OImageFrame *frame) { sees = sees || !isUniform(*frame); };
    start();
    EXPECT_TRUE(frames_.waitFor(frames_.count() + 1));
    EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_TRUE(sees) << "the camera still sends frames";
}

TEST_F(Hammer, callsDuringOpenAndClose)
{
    const std::string id = cameraId();
    std::atomic<OCameraHandle> handle{handle_};
    std::thread user([&] {
        OSizeInfo info{};
        char name[ORVALIS_NAME_SIZE] = "";
        std::uint32_t count = 0;
        while (!done_) {
            const std::int32_t used = OrvalisGetSizeInfo(handle, &info);
            EXPECT_TRUE(isDocumented("OrvalisGetSizeInfo", used)) << used;
            const std::int32_t named = OrvalisGetPixelFormatStr(handle, name);
            EXPECT_TRUE(isDocumented("OrvalisGetPixelFormatStr", named)) << named;
            EXPECT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_OK);
            const std::int32_t listed = OrvalisGetCameraID(0, name);
            EXPECT_TRUE(isDocumented("OrvalisGetCameraID", listed)) << listed;
            uses_ += used == ORVALIS_OK;
        }
    });
    for (int i = 0; i < 20; ++i) {
        OrvalisStartAcquisition(handle_, &Frames::callback);
        ASSERT_EQ(OrvalisCloseCamera(handle_), ORVALIS_OK);
        handle_ = nullptr;
        std::int32_t result = ORVALIS_ERROR_BUSY;
        while (result == ORVALIS_ERROR_BUSY)
            result = OrvalisOpenCamera(id.c_str(), &handle_);
        ASSERT_EQ(result, ORVALIS_OK);
        handle = handle_;
        // Wait until the other thread has used the camera.
        for (const int before = uses_; uses_ == before && !HasFailure();)
            std::this_thread::yield();
    }
    done_ = true;
    user.join();
}
