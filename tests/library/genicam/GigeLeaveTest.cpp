// SPDX-License-Identifier: MIT
// Programs that close GigE Vision cameras which no longer answer.
#include "sdk/OrvalisAPI.h"
#include "tests/library/genicam/ChildProgram.h"
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/RigCamera.h"

#include <atomic>

using namespace genicamtest;

namespace {

/// The interface promises one second for each call; a call that waits for the camera needs several.
constexpr auto waitLimit = 20s;

std::atomic<int> frames{0};

void countFrame(OImageFrame *) { ++frames; }

class GigeLeave : public GigeFixture {
protected:
    template <typename Call> static void expectPrompt(const char *what, Call call)
    {
        const Clock::time_point begin = Clock::now();
        EXPECT_EQ(call(), ORVALIS_OK) << what;
        EXPECT_LT(Clock::now() - begin, waitLimit) << what;
    }
    static OCameraHandle opened(const std::string &id)
    {
        OCameraHandle handle = nullptr;
        std::uint32_t count = 0;
        const Clock::time_point limit = Clock::now() + 60s;
        while (OrvalisOpenCamera(id.c_str(), &handle) != ORVALIS_OK && Clock::now() < limit) {
            OrvalisNumberOfCameras(&count);
        }
        return handle;
    }
};

TEST_F(GigeLeave, stopCloseAndUninitDoNotWaitForFrozenCameras)
{
    ASSERT_EQ(OrvalisInit(), ORVALIS_OK);
    std::vector<std::unique_ptr<RigCamera>> cameras;
    std::vector<OCameraHandle> handles;
    for (unsigned number = 1; number <= 4; ++number) {
        cameras.push_back(
            std::make_unique<RigCamera>(CameraDescription(), RigOptions{.number = number}));
        handles.push_back(opened(cameras.back()->id()));
        ASSERT_NE(handles.back(), nullptr);
        frames = 0;
        ASSERT_EQ(OrvalisStartAcquisition(handles.back(), countFrame), ORVALIS_OK);
        while (frames == 0) {
            std::this_thread::sleep_for(1ms);
        }
    }
    for (const auto &camera : cameras) {
        camera->faults.frozen = true;
    }
    // From here on, a call that communicates with a camera lasts until Aravis times out, or longer.
    expectPrompt("stop", [&] { return OrvalisStopAcquisition(handles[0]); });
    expectPrompt("close", [&] { return OrvalisCloseCamera(handles[0]); });
    std::thread reader([handle = handles[1]] {
        OSizeInfo size{};
        OrvalisGetSizeInfo(handle, &size);
    });
    expectPrompt("stop beside a read", [&] { return OrvalisStopAcquisition(handles[1]); });
    expectPrompt("close beside a read", [&] { return OrvalisCloseCamera(handles[1]); });
    expectPrompt("uninit", [] { return OrvalisUninit(); });
    const int seen = frames;
    for (const auto &camera : cameras) {
        camera->faults.frozen = false;
    }
    expectPrompt("close", [&] { return OrvalisCloseCamera(handles[2]); });
    expectPrompt("close", [&] { return OrvalisCloseCamera(handles[3]); });
    EXPECT_EQ(frames, seen) << "no callback after uninit";
    reader.join();
}

/// "at-once" ends while the library is still disconnecting from the camera; "alone" waits for the
/// end of its threads.
class GigeLeaveBy : public GigeLeave, public testing::WithParamInterface<const char *> {};

TEST_P(GigeLeaveBy, aProgramEndsAlthoughItsCameraIsFrozen)
{
    CameraProcess camera(1);
    ChildProgram program({ORVALIS_LEAVING_PROGRAM, camera.id(), GetParam()});
    ASSERT_EQ(program.line(), "streams");
    camera.freeze();
    program.say("\n");
    if (std::string(GetParam()) == "alone") {
        EXPECT_EQ(program.line(), "alone");
    }
    EXPECT_EQ(program.exitStatus(120s), 0);
}

INSTANTIATE_TEST_SUITE_P(Way, GigeLeaveBy, testing::Values("at-once", "alone"),
                         [](const auto &way) {
                             return std::string(way.param) == "alone" ? "alone" : "atOnce";
                         });

} // namespace
