// SPDX-License-Identifier: MIT
// Fixtures of the contract tests: the library as a program sees it, and one camera of the back end
// that ORVALIS_BACKENDS selects.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace contract {

/// Skips a test for a feature that this camera does not have.
#define CONTRACT_NEEDS(call)                                                                       \
    do {                                                                                           \
        const std::int32_t needed = (call);                                                        \
        if (needed == ORVALIS_ERROR_NOT_SUPPORTED)                                                 \
            GTEST_SKIP() << "the camera does not have it: " #call;                                 \
        ASSERT_EQ(needed, ORVALIS_OK) << #call;                                                    \
    } while (false)

/// Counts frames of the running stream. One object at a time; create it before the start and
/// destroy it after the stop.
class Frames {
public:
    Frames();
    ~Frames();
    Frames(const Frames &) = delete;
    Frames &operator=(const Frames &) = delete;

    static void callback(OImageFrame *frame);
    int count();
    /// False if the frames do not arrive within half a minute.
    bool waitFor(int count);

    std::function<void(OImageFrame *)> onFrame; ///< called from the callback

private:
    std::mutex mutex_; // guards count_ and inside_
    std::condition_variable changed_;
    int count_ = 0;
    bool inside_ = false;
};

/// Polls until `done` returns true, for 30 s at most. For what has no notification.
bool eventually(const std::function<bool()> &done);

/// The initialised library, without an open camera.
class LibraryTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    /// The ID of the camera under test; empty, with a test failure, if it does not appear.
    static std::string cameraId();
};

/// One open camera with factory settings, if it has any, free-running.
class CameraTest : public LibraryTest {
protected:
    void SetUp() override;
    void TearDown() override;
    void start();

    OSizeInfo size();
    /// Memory for a grab of `bytes` bytes for each pixel, followed by a guard.
    std::vector<std::uint8_t> grabBuffer(std::size_t bytes);

    static constexpr std::uint8_t kGuard = 0xAB;
    OCameraHandle handle_ = nullptr;
    Frames frames_;
};

/// All nodes of a camera below `category`, including categories, each once, parents first.
std::vector<std::string> allNodes(OCameraHandle handle, const std::string &category = "Root");

} // namespace contract
