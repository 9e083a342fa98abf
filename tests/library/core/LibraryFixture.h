// SPDX-License-Identifier: MIT
// The library with one scripted camera, used through its entry points.
#pragma once

#include "library/core/Library.h"
#include "tests/library/core/CallbackHook.h"
#include "tests/library/core/ScriptedCamera.h"

#include <gtest/gtest.h>

namespace orvalis::test {

class LibraryFixture : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(Library::instance().init([this] { return onlyBackend(backendFor(script_)); }),
                  ORVALIS_OK);
        onFrame = [this](OImageFrame *) { frames_.add(); };
    }

    void TearDown() override
    {
        if (handle_)
            OrvalisCloseCamera(handle_);
        while (OrvalisUninit() == ORVALIS_OK) {
        }
        onFrame = nullptr;
    }

    void open()
    {
        ASSERT_EQ(OrvalisOpenCamera(script_->identity.id.c_str(), &handle_), ORVALIS_OK);
    }
    /// Returns the handle for a test that closes it itself; TearDown() does not close it then.
    OCameraHandle takeHandle() { return std::exchange(handle_, nullptr); }

    std::shared_ptr<Script> script_ = std::make_shared<Script>();
    OCameraHandle handle_ = nullptr;
    Counter frames_;
};

} // namespace orvalis::test
