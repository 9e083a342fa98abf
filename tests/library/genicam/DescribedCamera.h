// SPDX-License-Identifier: MIT
// A test camera with a GenICam description written by the test.
#pragma once

#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/CameraDescription.h"

#include <arv.h>
#include <unistd.h>

namespace genicamtest {

/// A description whose features are registers of Aravis' in-process test camera. If the camera must
/// misbehave or stream in a special way, pass a description to a RigCamera instead.
class DescribedCamera : public CameraDescription {
public:
    std::unique_ptr<Device> open(Backend &backend) const
    {
        const std::string path = write();
        arv_set_fake_camera_genicam_filename(path.c_str());
        std::unique_ptr<Device> device = openCamera(backend, backend.discover().at(0).id);
        arv_set_fake_camera_genicam_filename(nullptr);
        unlink(path.c_str());
        return device;
    }
    /// Writes the description to a new file and returns its path; the caller deletes the file.
    std::string write() const
    {
        char path[] = "/tmp/orvalis-camera-XXXXXX";
        const int file = mkstemp(path);
        EXPECT_GE(file, 0);
        close(file);
        std::ofstream(path) << text();
        return path;
    }
};

} // namespace genicamtest
