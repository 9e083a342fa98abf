// SPDX-License-Identifier: MIT
// Handles and lifetimes: which calls work before, during and after open, close, init and uninit.
#include "tests/library/core/LibraryFixture.h"

#include <thread>

using namespace orvalis;
using namespace orvalis::test;

namespace {

class LibraryTest : public LibraryFixture {};

} // namespace

TEST_F(LibraryTest, initIsCounted)
{
    EXPECT_EQ(OrvalisInit(), ORVALIS_OK);
    EXPECT_EQ(OrvalisUninit(), ORVALIS_OK);
    std::uint32_t count = 0;
    EXPECT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_OK);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(OrvalisUninit(), ORVALIS_OK);
    EXPECT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(OrvalisUninit(), ORVALIS_ERROR_NOT_INITIALIZED);
}

TEST_F(LibraryTest, handlesAreNeverReused)
{
    std::vector<OCameraHandle> handles;
    for (int i = 0; i < 20; ++i) {
        open();
        for (OCameraHandle old : handles)
            ASSERT_NE(handle_, old);
        handles.push_back(handle_);
        ASSERT_EQ(OrvalisCloseCamera(takeHandle()), ORVALIS_OK);
    }
    OSizeInfo size{};
    for (OCameraHandle old : handles) {
        EXPECT_EQ(OrvalisGetSizeInfo(old, &size), ORVALIS_ERROR_BAD_HANDLE);
        EXPECT_EQ(OrvalisCloseCamera(old), ORVALIS_ERROR_BAD_HANDLE);
        EXPECT_EQ(OrvalisStopAcquisition(old), ORVALIS_ERROR_BAD_HANDLE);
    }
}

TEST_F(LibraryTest, invalidHandlesAreNotDereferenced)
{
    int something = 0;
    OSizeInfo size{};
    for (OCameraHandle handle : {OCameraHandle{}, OCameraHandle{&something},
                                 reinterpret_cast<OCameraHandle>(std::uintptr_t{1}),
                                 reinterpret_cast<OCameraHandle>(~std::uintptr_t{0})})
        EXPECT_EQ(OrvalisGetSizeInfo(handle, &size), ORVALIS_ERROR_BAD_HANDLE);
}

TEST_F(LibraryTest, cameraCanBeOpenedAgainWhenCloseReturns)
{
    open();
    OCameraHandle second = nullptr;
    EXPECT_EQ(OrvalisOpenCamera(script_->identity.id.c_str(), &second), ORVALIS_ERROR_BUSY);
    EXPECT_EQ(second, nullptr);
    ASSERT_EQ(OrvalisCloseCamera(takeHandle()), ORVALIS_OK);
    EXPECT_EQ(script_->destroyed.value(), 1) << "the device is gone before close returns";
    open();
}

TEST_F(LibraryTest, callInFlightKeepsItsCameraAlive)
{
    Latch inside;
    Latch leave;
    script_->onReadRegister = [&](std::uint32_t) {
        inside.open();
        leave.wait();
        return ORVALIS_OK;
    };
    open();
    const OCameraHandle handle = takeHandle();
    std::uint32_t data = 0;
    std::thread caller([&] { EXPECT_EQ(OrvalisReadRegister(handle, 4, &data), ORVALIS_OK); });
    inside.wait();
    EXPECT_EQ(OrvalisCloseCamera(handle), ORVALIS_OK) << "does not wait for it";
    EXPECT_EQ(script_->destroyed.value(), 0);
    EXPECT_EQ(OrvalisReadRegister(handle, 4, &data), ORVALIS_ERROR_BAD_HANDLE);
    leave.open();
    caller.join();
    script_->destroyed.waitFor(1);
}

TEST_F(LibraryTest, closeWhileStreamingEndsTheCallbacks)
{
    open();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    frames_.waitFor(1);
    ASSERT_EQ(OrvalisCloseCamera(takeHandle()), ORVALIS_OK);
    EXPECT_EQ(script_->stops.value(), 1);
    EXPECT_EQ(script_->destroyed.value(), 1);
}

TEST_F(LibraryTest, closeFromTheCallback)
{
    open();
    const OCameraHandle handle = takeHandle();
    std::int32_t closed = ORVALIS_ERROR_DEVICE;
    std::int32_t after = ORVALIS_OK;
    int value = 0;
    onFrame = [&](OImageFrame *frame) {
        closed = OrvalisCloseCamera(handle);
        OSizeInfo size{};
        after = OrvalisGetSizeInfo(handle, &size);
        value = frame->raw[0]; // the callback's frame is valid until it returns
        frames_.add();
    };
    ASSERT_EQ(OrvalisStartAcquisition(handle, frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(77));
    script_->pushFrame(monoImage(78));
    script_->destroyed.waitFor(1);
    EXPECT_EQ(frames_.value(), 1);
    EXPECT_EQ(closed, ORVALIS_OK);
    EXPECT_EQ(after, ORVALIS_ERROR_BAD_HANDLE);
    EXPECT_EQ(value, 77);
}

TEST_F(LibraryTest, closeFromTheCallbackWhileAnotherThreadStops)
{
    for (int i = 1; i <= 20; ++i) {
        open();
        const OCameraHandle handle = takeHandle();
        onFrame = [&](OImageFrame *) { OrvalisCloseCamera(handle); };
        ASSERT_EQ(OrvalisStartAcquisition(handle, frameCallback), ORVALIS_OK);
        script_->pushFrame(monoImage(1));
        OrvalisStopAcquisition(handle);
        OrvalisCloseCamera(handle);
        script_->destroyed.waitFor(i);
    }
}

TEST_F(LibraryTest, stopAndCloseWorkAfterUninit)
{
    OImageFrame *kept = nullptr;
    onFrame = [&](OImageFrame *frame) {
        kept = frame;
        frames_.add();
    };
    open();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(50));
    frames_.waitFor(1);
    ASSERT_EQ(OrvalisUninit(), ORVALIS_OK);
    EXPECT_EQ(script_->stops.value(), 1);
    EXPECT_EQ(kept->raw[10], 50) << "frames stay until the close";
    OSizeInfo size{};
    EXPECT_EQ(OrvalisGetSizeInfo(handle_, &size), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_EQ(OrvalisCloseCamera(takeHandle()), ORVALIS_OK);
    EXPECT_EQ(script_->destroyed.value(), 1);
}

TEST_F(LibraryTest, uninitFromTheCallbackMakesItTheLast)
{
    onFrame = [&](OImageFrame *) {
        OrvalisUninit();
        frames_.add();
    };
    open();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    script_->pushFrame(monoImage(2));
    script_->stops.waitFor(1);
    EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_EQ(frames_.value(), 1);
}

TEST_F(LibraryTest, uninitAbortsAStart)
{
    open();
    Latch inside;
    Latch go;
    script_->nodes.beforeAccess = [&] {
        inside.open();
        go.wait();
    };
    std::thread starter([&] {
        EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_ERROR_NOT_INITIALIZED);
    });
    inside.wait();
    EXPECT_EQ(OrvalisUninit(), ORVALIS_OK);
    go.open();
    starter.join();
    EXPECT_EQ(script_->starts.value(), 0);
    script_->nodes.beforeAccess = nullptr;
    ASSERT_EQ(Library::instance().init([this] { return onlyBackend(backendFor(script_)); }),
              ORVALIS_OK);
    EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK)
        << "the next session is another one";
}

TEST_F(LibraryTest, handleIsValidAgainAfterTheNextInit)
{
    open();
    ASSERT_EQ(OrvalisUninit(), ORVALIS_OK);
    ASSERT_EQ(Library::instance().init([this] { return onlyBackend(backendFor(script_)); }),
              ORVALIS_OK);
    OSizeInfo size{};
    EXPECT_EQ(OrvalisGetSizeInfo(handle_, &size), ORVALIS_OK);
}

TEST_F(LibraryTest, closeEndsAGrabOfAnotherThread)
{
    open();
    const OCameraHandle handle = takeHandle();
    std::vector<std::uint8_t> pixels(128 * 96 * 3);
    std::thread grabber([&] {
        OImageFrame frame{};
        frame.rgb = pixels.data();
        EXPECT_EQ(OrvalisGrabRGBData(handle, &frame, 600000), ORVALIS_ERROR_ABORTED);
    });
    script_->takes.waitFor(1);
    EXPECT_EQ(OrvalisCloseCamera(handle), ORVALIS_OK);
    grabber.join();
}

TEST_F(LibraryTest, writeEndsAGrabOfAnotherThread)
{
    open();
    std::vector<std::uint8_t> pixels(128 * 96 * 3);
    std::thread grabber([&] {
        OImageFrame frame{};
        frame.rgb = pixels.data();
        EXPECT_EQ(OrvalisGrabRGBData(handle_, &frame, 600000), ORVALIS_ERROR_ABORTED);
    });
    script_->takes.waitFor(1);
    EXPECT_EQ(OrvalisSetNodeInt(handle_, "Width", 32), ORVALIS_OK);
    grabber.join();
}

TEST_F(LibraryTest, lostCameraAnswersFastAndCloses)
{
    open();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    script_->lose();
    script_->stops.waitFor(1);
    std::atomic<int> accesses{0};
    script_->nodes.beforeAccess = [&] { ++accesses; };
    OSizeInfo size{};
    EXPECT_EQ(OrvalisGetSizeInfo(handle_, &size), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(OrvalisSetGain(handle_, 1, false), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(accesses, 0) << "the device is not asked any more";
    EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_EQ(OrvalisCloseCamera(takeHandle()), ORVALIS_OK);
}

TEST_F(LibraryTest, lossDetectedByOneCallAppliesToAll)
{
    open();
    script_->nodes.failure = ORVALIS_ERROR_CONNECTION_LOST;
    OSizeInfo size{};
    EXPECT_EQ(OrvalisGetSizeInfo(handle_, &size), ORVALIS_ERROR_CONNECTION_LOST);
    script_->nodes.failure = ORVALIS_OK;
    std::uint32_t data = 0;
    EXPECT_EQ(OrvalisReadRegister(handle_, 0, &data), ORVALIS_ERROR_CONNECTION_LOST);
}

TEST_F(LibraryTest, resetLosesTheCamera)
{
    open();
    EXPECT_EQ(OrvalisCameraReset(handle_), ORVALIS_OK);
    EXPECT_EQ(OrvalisCameraReset(handle_), ORVALIS_ERROR_CONNECTION_LOST);
}

TEST_F(LibraryTest, slowDisconnectDoesNotDelayClose)
{
    Latch leave;
    script_->onDestroy = [&] { leave.wait(); };
    open();
    EXPECT_EQ(OrvalisCloseCamera(takeHandle()), ORVALIS_OK);
    EXPECT_EQ(script_->destroyed.value(), 0);
    leave.open();
    script_->destroyed.waitFor(1);
}

TEST_F(LibraryTest, threadsOpenUseAndCloseConcurrently)
{
    std::atomic<OCameraHandle> shared{nullptr};
    std::atomic<bool> done{false};
    Counter used; // calls that found the camera open
    const auto use = [&] {
        OSizeInfo size{};
        std::uint32_t data = 0;
        while (!done) {
            if (OrvalisGetSizeInfo(shared, &size) == ORVALIS_OK && size.width == 64)
                used.add();
            OrvalisReadRegister(shared, 8, &data);
            OrvalisSetNodeInt(shared, "Width", 64);
            OrvalisStopAcquisition(shared);
        }
    };
    std::thread first(use);
    std::thread second(use);
    int started = 0;
    for (int i = 0; i < 100; ++i) {
        OCameraHandle handle = nullptr;
        EXPECT_EQ(OrvalisOpenCamera(script_->identity.id.c_str(), &handle), ORVALIS_OK);
        shared = handle;
        started += OrvalisStartAcquisition(handle, frameCallback) == ORVALIS_OK;
        script_->pushFrame(monoImage(1));
        used.waitFor(used.value() + 1);
        EXPECT_EQ(OrvalisCloseCamera(handle), ORVALIS_OK);
    }
    EXPECT_GT(started, 0) << "a stop aborted all starts";
    done = true;
    first.join();
    second.join();
}
