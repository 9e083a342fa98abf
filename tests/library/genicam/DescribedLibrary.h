// SPDX-License-Identifier: MIT
// A described camera, used through the library's entry points.
#pragma once

#include "library/core/Library.h"
#include "tests/library/genicam/DescribedCamera.h"
#include "tests/library/genicam/FakeTraffic.h"

#include <memory>

namespace genicamtest {

/// Call describe(), then open(); `traffic` counts from then on.
class DescribedLibrary : public testing::Test {
protected:
    void open()
    {
        ASSERT_EQ(orvalis::Library::instance().init([] {
            orvalis::Backends backends;
            backends.push_back(orvalis::makeGenicamBackend(true));
            return backends;
        }),
                  ORVALIS_OK);
        const std::string path = camera.write();
        arv_set_fake_camera_genicam_filename(path.c_str());
        EXPECT_EQ(OrvalisOpenCamera("Aravis-Fake-1", &handle), ORVALIS_OK);
        arv_set_fake_camera_genicam_filename(nullptr);
        unlink(path.c_str());
        traffic = std::make_unique<FakeTraffic>();
    }
    void TearDown() override
    {
        OrvalisCloseCamera(handle);
        traffic.reset();
        while (OrvalisUninit() == ORVALIS_OK) {
        }
    }
    std::uint32_t word(std::uint32_t address)
    {
        std::uint32_t value = 0;
        EXPECT_EQ(OrvalisReadRegister(handle, address, &value), ORVALIS_OK) << address;
        return value;
    }
    void setWord(std::uint32_t address, std::uint32_t value)
    {
        EXPECT_EQ(OrvalisWriteRegiser(handle, address, value), ORVALIS_OK) << address;
    }

    DescribedCamera camera;
    OCameraHandle handle = nullptr;
    std::unique_ptr<FakeTraffic> traffic;
};

} // namespace genicamtest
