// SPDX-License-Identifier: MIT
// What every contract test stands on: the library as a program sees it, and one camera of whatever
// back end ORVALIS_BACKENDS chooses.
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

/// Skips a test for a feature that this camera really does not have.
#define CONTRACT_NEEDS(call)                                                                       \
    do {                                                                                           \
        const std::int32_t needed = (call);                                                        \
        if (needed == ORVALIS_ERROR_NOT_SUPPORTED)                                                 \
            GTEST_SKIP() << "the camera does not have it: " #call;                                 \
        ASSERT_EQ(needed, ORVALIS_OK) << #call;                                                    \
    } while (false)

/// Frames of the running stream. One at a time; made before the start, gone after the stop.
class Frames {
public:
    Frames();
    ~Frames();
    Frames(const Frames &) = delete;
    Frames &operator=(const Frames &) = delete;

    static void callback(OImageFrame *frame);
    int count();
    /// False if so many do not come within half a minute.
    bool waitFor(int count);

    std::function<void(OImageFrame *)> onFrame; ///< runs in the callback

private:
    std::mutex mutex_; // guards count_ and inside_
    std::condition_variable changed_;
    int count_ = 0;
    bool inside_ = false;
};

/// The library in use, nothing open.
class LibraryTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    /// The ID of the camera under test; empty, with a failure, if it does not come.
    static std::string cameraId();
};

/// One open camera with the maker's settings as far as it has any, free-running.
class CameraTest : public LibraryTest {
protected:
    void SetUp() override;
    void TearDown() override;
    void start();

    OSizeInfo size();
    /// Memory for a grab of `bytes` bytes a pixel, with a guard behind it.
    std::vector<std::uint8_t> grabBuffer(std::size_t bytes);

    static constexpr std::uint8_t kGuard = 0xAB;
    OCameraHandle handle_ = nullptr;
    Frames frames_;
};

/// Nodes of a camera below `category`, categories included, each once, parents first.
std::vector<std::string> allNodes(OCameraHandle handle, const std::string &category = "Root");

} // namespace contract
