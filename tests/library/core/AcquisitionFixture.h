// SPDX-License-Identifier: MIT
// A scripted camera and its acquisition, for the tests of stream and grab.
#pragma once

#include "library/core/Acquisition.h"
#include "tests/library/core/CallbackHook.h"
#include "tests/library/core/ScriptedCamera.h"

#include <gtest/gtest.h>

#include <thread>

namespace orvalis::test {

class AcquisitionFixture : public testing::Test {
protected:
    void SetUp() override
    {
        onFrame = [this](OImageFrame *) { frames_.add(); };
    }
    void TearDown() override
    {
        acquisition_.close();
        acquisition_.leave();
        server_.join();
        onFrame = nullptr;
    }
    /// Runs `call` inside the frame callback and returns its result.
    template <typename Call> OResult fromTheCallback(Call call)
    {
        OResult result = ORVALIS_OK;
        onFrame = [&](OImageFrame *) {
            result = call();
            frames_.add();
        };
        EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
        script_->pushFrame(monoImage(1));
        frames_.waitFor(1);
        acquisition_.stop();
        return result;
    }

    std::shared_ptr<Script> script_ = std::make_shared<Script>();
    ScriptedDevice device_{script_};
    std::atomic<bool> lost_{false};
    Counter frames_; ///< received by the callback
    Acquisition acquisition_{device_, lost_};
    std::thread server_{[this] { acquisition_.serve(); }}; ///< the camera's thread
};

} // namespace orvalis::test
