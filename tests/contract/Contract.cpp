// SPDX-License-Identifier: MIT
// Fixtures of the contract tests.
#include "tests/contract/Contract.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>

namespace contract {

namespace {

using namespace std::chrono_literals;

/// Much longer than a camera needs: only a defective one makes a test wait so long.
constexpr auto kFrameTimeout = 30s;

std::mutex g_mutex; // guards g_frames
Frames *g_frames = nullptr;

/// Finds the camera under test: the first one whose ID contains the text in the environment, or the
/// first one.
std::string findCamera()
{
    const char *wanted = std::getenv("ORVALIS_CONTRACT_CAMERA");
    std::uint32_t count = 0;
    if (OrvalisNumberOfCameras(&count) != ORVALIS_OK)
        return {};
    for (std::uint32_t i = 0; i < count; ++i) {
        char id[ORVALIS_NAME_SIZE] = "";
        if (OrvalisGetCameraID(i, id) == ORVALIS_OK &&
            (!wanted || std::string(id).find(wanted) != std::string::npos))
            return id;
    }
    return {};
}

} // namespace

Frames::Frames()
{
    const std::lock_guard lock(g_mutex);
    g_frames = this;
}

Frames::~Frames()
{
    const std::lock_guard lock(g_mutex);
    g_frames = nullptr;
}

void Frames::callback(OImageFrame *frame)
{
    Frames *frames = nullptr;
    {
        const std::lock_guard lock(g_mutex);
        frames = g_frames;
    }
    if (!frames) {
        ADD_FAILURE() << "a callback after the end of its stream";
        return;
    }
    {
        const std::lock_guard lock(frames->mutex_);
        EXPECT_FALSE(frames->inside_) << "two callbacks at a time";
        frames->inside_ = true;
    }
    if (frames->onFrame)
        frames->onFrame(frame);
    const std::lock_guard lock(frames->mutex_);
    frames->inside_ = false;
    ++frames->count_;
    frames->changed_.notify_all();
}

int Frames::count()
{
    const std::lock_guard lock(mutex_);
    return count_;
}

bool Frames::waitFor(int count)
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kFrameTimeout, [&] { return count_ >= count; });
}

void LibraryTest::SetUp() { ASSERT_EQ(OrvalisInit(), ORVALIS_OK); }

void LibraryTest::TearDown()
{
    while (OrvalisUninit() == ORVALIS_OK) {
    }
}

bool eventually(const std::function<bool()> &done)
{
    const auto deadline = std::chrono::steady_clock::now() + kFrameTimeout;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

std::string LibraryTest::cameraId()
{
    std::string id;
    EXPECT_TRUE(eventually([&] { return !(id = findCamera()).empty(); }))
        << "no camera to test with";
    return id;
}

void CameraTest::SetUp()
{
    LibraryTest::SetUp();
    const std::string id = cameraId();
    ASSERT_EQ(OrvalisOpenCamera(id.c_str(), &handle_), ORVALIS_OK) << id;
    OrvalisSetUserDefault(handle_);
    OrvalisSetTriggerEnable(handle_, false);
    OrvalisSetNodeEnum(handle_, "AcquisitionMode", "Continuous");
}

void CameraTest::TearDown()
{
    if (handle_) {
        EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
        OrvalisSetUserDefault(handle_);
        EXPECT_EQ(OrvalisCloseCamera(handle_), ORVALIS_OK);
    }
    LibraryTest::TearDown();
}

void CameraTest::start()
{
    ASSERT_EQ(OrvalisStartAcquisition(handle_, &Frames::callback), ORVALIS_OK);
}

OSizeInfo CameraTest::size()
{
    OSizeInfo info{};
    EXPECT_EQ(OrvalisGetSizeInfo(handle_, &info), ORVALIS_OK);
    return info;
}

std::vector<std::uint8_t> CameraTest::grabBuffer(std::size_t bytes)
{
    const OSizeInfo info = size();
    const std::size_t pixels =
        static_cast<std::size_t>(info.maxWidth) * static_cast<std::size_t>(info.maxHeight);
    return std::vector<std::uint8_t>(pixels * bytes + 1, kGuard);
}

std::vector<std::string> allNodes(OCameraHandle handle, const std::string &category)
{
    auto list = std::make_unique<ONodeList>();
    std::vector<std::string> names{category};
    for (std::size_t i = 0; i < names.size(); ++i) {
        list->count = ORVALIS_NODE_LIST_SIZE;
        if (OrvalisGetNodeList(handle, names[i].c_str(), list.get()) != ORVALIS_OK)
            continue;
        for (std::uint32_t k = 0; k < list->count; ++k)
            if (std::find(names.begin(), names.end(), list->names[k]) == names.end())
                names.emplace_back(list->names[k]);
    }
    return names;
}

} // namespace contract
