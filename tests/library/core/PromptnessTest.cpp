// SPDX-License-Identifier: MIT
// Stop, close and uninit return although the camera no longer answers.
#include "tests/library/core/LibraryFixture.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <dlfcn.h>
#include <future>
#include <list>
#include <pthread.h>
#include <thread>

using namespace orvalis;
using namespace orvalis::test;
using namespace std::chrono_literals;

namespace {

/// The interface promises one second. A slow machine may take longer; a defect waits forever.
constexpr auto kWaitLimit = 20s;

std::atomic<bool> noThreads{false};

/// A camera that stops answering during a call, until answer().
class Promptness : public LibraryFixture {
protected:
    void TearDown() override
    {
        noThreads = false;
        answer();
        LibraryFixture::TearDown();
        waiting_.clear(); // before script_, which the waiting calls use
    }
    /// A hook for script_ that blocks the calling thread.
    auto hangs()
    {
        return [inside = inside_, answer = answer_] {
            inside->open();
            answer->wait();
        };
    }
    void answer() { answer_->open(); }

    /// Starts a call on its own thread. Wait for its result only with ends().
    template <typename Call> std::future<std::int32_t> &inBackground(Call call)
    {
        return waiting_.emplace_back(std::async(std::launch::async, call));
    }
    static bool ends(std::future<std::int32_t> &call)
    {
        return call.wait_for(kWaitLimit) == std::future_status::ready;
    }
    /// True if `call` returns ORVALIS_OK in time. If it does not return, lets the camera answer.
    template <typename Call> bool isPrompt(Call call)
    {
        std::future<std::int32_t> &result = inBackground(call);
        const bool prompt = ends(result);
        if (!prompt)
            answer();
        return result.get() == ORVALIS_OK && prompt;
    }
    std::future<std::int32_t> &startAside()
    {
        return inBackground(
            [handle = handle_] { return OrvalisStartAcquisition(handle, frameCallback); });
    }

    // A blocked thread may outlive the test for a moment.
    std::shared_ptr<Latch> inside_ = std::make_shared<Latch>();
    std::shared_ptr<Latch> answer_ = std::make_shared<Latch>();
    std::list<std::future<std::int32_t>> waiting_;
};

} // namespace

/// Replaces the C library's function, also for the standard library.
extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                              void *(*body)(void *), void *argument) noexcept
{
    if (noThreads)
        return EAGAIN;
    using Create = int (*)(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return create(thread, attributes, body, argument);
}

TEST_F(Promptness, anOpenCameraNeedsNoFurtherThread)
{
    open();
    noThreads = true;
    for (int i = 1; i <= 2; ++i) {
        EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
        script_->pushFrame(monoImage(1));
        frames_.waitFor(i);
        EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    }
    EXPECT_EQ(OrvalisCloseCamera(takeHandle()), ORVALIS_OK);
    EXPECT_EQ(script_->destroyed.value(), 1);
    EXPECT_EQ(OrvalisOpenCamera("SCRIPTED-1", &handle_), ORVALIS_ERROR_OUT_OF_MEMORY);
    noThreads = false;
    open();
}

TEST_F(Promptness, stopDoesNotWaitForAConnectionCheck)
{
    open();
    script_->onNextImage = hangs();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    inside_->wait();
    EXPECT_TRUE(isPrompt([this] { return OrvalisStopAcquisition(handle_); }));
    script_->pushFrame(monoImage(1));
    answer();
    script_->stops.waitFor(1);
    EXPECT_EQ(frames_.value(), 0) << "no callback after the stop, whenever the camera answers";
}

TEST_F(Promptness, stopDoesNotWaitForTheCameraToStop)
{
    open();
    script_->onStop = hangs();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    EXPECT_TRUE(isPrompt([this] { return OrvalisStopAcquisition(handle_); }));
    EXPECT_TRUE(isPrompt([this] { return OrvalisCloseCamera(takeHandle()); }));
}

/// An old frame's memory is released between the arrival of a new frame and its callback.
TEST_F(Promptness, pendingFrameIsNotDeliveredAfterTheStop)
{
    open();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    RawImage image = monoImage(1);
    image.owner = std::shared_ptr<const void>(
        image.data, [hang = hangs(), owner = image.owner](const void *) { hang(); });
    script_->pushFrame(std::exchange(image, {}));
    for (int i = 1; !inside_->isOpen(); ++i) {
        script_->pushFrame(monoImage(2));
        std::this_thread::sleep_for(1ms); // frames are kept for 200 ms
    }
    EXPECT_TRUE(isPrompt([this] { return OrvalisStopAcquisition(handle_); }));
    const int seen = frames_.value();
    answer();
    script_->stops.waitFor(1);
    EXPECT_EQ(frames_.value(), seen);
}

TEST_F(Promptness, aStreamStartsAgainOnceTheCameraHasAnswered)
{
    open();
    script_->onStop = hangs();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    EXPECT_TRUE(isPrompt([this] { return OrvalisStopAcquisition(handle_); }));
    std::future<std::int32_t> &again = startAside();
    answer();
    EXPECT_EQ(again.get(), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    frames_.waitFor(1);
}

TEST_F(Promptness, stopEndsAStartThatHangs)
{
    open();
    script_->onStart = [hang = hangs()] {
        hang();
        return ORVALIS_OK;
    };
    std::future<std::int32_t> &start = startAside();
    inside_->wait();
    EXPECT_TRUE(isPrompt([this] { return OrvalisStopAcquisition(handle_); }));
    ASSERT_TRUE(ends(start));
    EXPECT_EQ(start.get(), ORVALIS_ERROR_ABORTED);
    answer();
    script_->stops.waitFor(1); // a stream that starts too late is stopped
    EXPECT_EQ(frames_.value(), 0);
}

TEST_F(Promptness, stopEndsAStartThatStillReadsTheCamera)
{
    open();
    script_->nodes.beforeAccess = hangs();
    std::future<std::int32_t> &start = startAside();
    inside_->wait();
    EXPECT_TRUE(isPrompt([this] { return OrvalisStopAcquisition(handle_); }));
    ASSERT_TRUE(ends(start));
    EXPECT_EQ(start.get(), ORVALIS_ERROR_ABORTED);
    answer();
    script_->nodes.beforeAccess = nullptr;
    EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    EXPECT_EQ(script_->starts.value(), 1) << "the first start was aborted";
}

TEST_F(Promptness, closeEndsAStartThatHangs)
{
    open();
    script_->onStart = [hang = hangs()] {
        hang();
        return ORVALIS_OK;
    };
    std::future<std::int32_t> &start = startAside();
    inside_->wait();
    EXPECT_TRUE(isPrompt([this] { return OrvalisCloseCamera(takeHandle()); }));
    ASSERT_TRUE(ends(start));
    EXPECT_EQ(start.get(), ORVALIS_ERROR_BAD_HANDLE);
    answer();
    script_->destroyed.waitFor(1);
    EXPECT_EQ(script_->stops.value(), 1);
}

TEST_F(Promptness, closeEndsAGrabThatHangs)
{
    open();
    script_->onTakeImage = hangs();
    std::vector<std::uint8_t> pixels(128 * 96 * 3);
    std::future<std::int32_t> &grab = inBackground([&, handle = handle_] {
        OImageFrame frame{};
        frame.rgb = pixels.data();
        return OrvalisGrabRGBData(handle, &frame, 600000);
    });
    inside_->wait();
    EXPECT_TRUE(isPrompt([this] { return OrvalisCloseCamera(takeHandle()); }));
    ASSERT_TRUE(ends(grab));
    EXPECT_EQ(grab.get(), ORVALIS_ERROR_ABORTED);
}

TEST_F(Promptness, aGrabReturnsAtItsTimeAlthoughTheCameraHangs)
{
    open();
    script_->onTakeImage = hangs();
    std::vector<std::uint8_t> pixels(128 * 96 * 3);
    std::future<std::int32_t> &grab = inBackground([&, handle = handle_] {
        OImageFrame frame{};
        frame.rgb = pixels.data();
        return OrvalisGrabRGBData(handle, &frame, 10);
    });
    ASSERT_TRUE(ends(grab));
    EXPECT_EQ(grab.get(), ORVALIS_ERROR_TIMEOUT);
}

TEST_F(Promptness, closeInsideACallbackDoesNotWait)
{
    script_->onStop = hangs();
    open();
    const OCameraHandle handle = takeHandle();
    onFrame = [&](OImageFrame *) {
        EXPECT_EQ(OrvalisCloseCamera(handle), ORVALIS_OK);
        frames_.add();
    };
    ASSERT_EQ(OrvalisStartAcquisition(handle, frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    frames_.waitFor(1);
    inside_->wait();
    answer();
    script_->destroyed.waitFor(1);
}

TEST_F(Promptness, uninitEndsAStartThatHangs)
{
    open();
    script_->onStart = [hang = hangs()] {
        hang();
        return ORVALIS_OK;
    };
    std::future<std::int32_t> &start = startAside();
    inside_->wait();
    EXPECT_TRUE(isPrompt([] { return OrvalisUninit(); }));
    ASSERT_TRUE(ends(start));
    EXPECT_EQ(start.get(), ORVALIS_ERROR_NOT_INITIALIZED);
}

TEST_F(Promptness, uninitDoesNotWaitForAPassOfDiscovery)
{
    OrvalisUninit();
    const auto slowBus = [this] {
        auto backend = std::make_unique<ScriptedBackend>();
        backend->atOnce = false;
        backend->onDiscover = [hang = hangs()] {
            hang();
            return std::vector<DeviceDescription>{};
        };
        return onlyBackend(std::move(backend));
    };
    ASSERT_EQ(Library::instance().init(slowBus), ORVALIS_OK);
    inside_->wait();
    EXPECT_TRUE(isPrompt([] { return OrvalisUninit(); }));
}

/// Sequential waits would exceed the test's limit.
TEST_F(Promptness, uninitWaitsForAllCamerasAtOnce)
{
    constexpr int kCameras = 60;
    OrvalisUninit();
    std::vector<std::shared_ptr<Script>> scripts(kCameras);
    const auto manyCameras = [&] {
        Backends backends;
        for (std::size_t i = 0; i < scripts.size(); ++i) {
            scripts[i] = std::make_shared<Script>();
            scripts[i]->identity.id = "SCRIPTED-" + std::to_string(i);
            scripts[i]->onStop = hangs();
            backends.push_back(backendFor(scripts[i]));
        }
        return backends;
    };
    ASSERT_EQ(Library::instance().init(manyCameras), ORVALIS_OK);
    std::vector<OCameraHandle> handles;
    for (const auto &script : scripts) {
        OCameraHandle handle = nullptr;
        ASSERT_EQ(OrvalisOpenCamera(script->identity.id.c_str(), &handle), ORVALIS_OK);
        ASSERT_EQ(OrvalisStartAcquisition(handle, frameCallback), ORVALIS_OK);
        handles.push_back(handle);
    }
    EXPECT_TRUE(isPrompt([] { return OrvalisUninit(); }));
    answer();
    for (OCameraHandle handle : handles)
        EXPECT_EQ(OrvalisCloseCamera(handle), ORVALIS_OK);
}
