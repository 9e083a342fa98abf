// SPDX-License-Identifier: MIT
// Many threads at once: nothing crashes, nothing hangs, the camera is of use afterwards.
#include "tests/contract/Contract.h"
#include "tests/contract/EntryPoints.h"

#include <algorithm>
#include <atomic>
#include <string_view>
#include <thread>

using namespace contract;

namespace {

constexpr std::string_view kDisruptive[] = {"OrvalisCloseCamera",  "OrvalisStopAcquisition",
                                            "OrvalisCameraReset",  "OrvalisStartAcquisition",
                                            "OrvalisWriteRegiser", "OrvalisSetTriggerEnable"};

class Hammer : public CameraTest {
protected:
    /// Calls every entry point but the disruptive ones, over and over, until told to end.
    void hammer()
    {
        const auto isLeft = [](std::string_view name) {
            return std::find(std::begin(kDisruptive), std::end(kDisruptive), name) !=
                   std::end(kDisruptive);
        };
        while (!done_)
            for (const EntryPoint &entry : entryPoints())
                if (!done_ && !isLeft(entry.name))
                    if (!isResult(entry.call(handle_)))
                        ADD_FAILURE() << entry.name;
    }
    std::atomic<bool> done_{false};
};

} // namespace

TEST_F(Hammer, callsBesideAStreamThatStartsAndStops)
{
    std::thread first([this] { hammer(); });
    std::thread second([this] { hammer(); });
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(OrvalisStartAcquisition(handle_, &Frames::callback), ORVALIS_OK);
        EXPECT_TRUE(frames_.waitFor(frames_.count() + 1));
        EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    }
    done_ = true;
    first.join();
    second.join();
    start();
    EXPECT_TRUE(frames_.waitFor(frames_.count() + 1));
}

TEST_F(Hammer, enumerationAndCallsBesideCloseAndOpen)
{
    const std::string id = cameraId();
    std::atomic<OCameraHandle> handle{handle_};
    std::thread user([&] {
        OSizeInfo info{};
        char name[ORVALIS_NAME_SIZE] = "";
        std::uint32_t count = 0;
        while (!done_) {
            EXPECT_TRUE(isResult(OrvalisGetSizeInfo(handle, &info)));
            EXPECT_TRUE(isResult(OrvalisGetPixelFormatStr(handle, name)));
            EXPECT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_OK);
            EXPECT_TRUE(isResult(OrvalisGetCameraID(0, name)));
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
    }
    done_ = true;
    user.join();
}
