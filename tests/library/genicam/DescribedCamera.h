// SPDX-License-Identifier: MIT
// A test camera with a GenICam description that the test writes.
#pragma once

#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/CameraDescription.h"

#include <arv.h>
#include <unistd.h>

namespace genicamtest {

/// A description whose features are registers of Aravis' in-process test camera. For a camera that
/// misbehaves, or streams in a way of its own, give a description to a RigCamera.
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
    /// Writes the description to a file of its own, which the caller deletes, and returns its path.
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
