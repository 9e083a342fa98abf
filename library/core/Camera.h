// SPDX-License-Identifier: MIT
// One open camera: its device, features and stream.
#pragma once

#include "library/core/Acquisition.h"
#include "library/core/Device.h"
#include "library/core/Features.h"
#include "library/core/Reaper.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace orvalis {

/// Opens once and stays open.
class Gate {
public:
    /// Lets everyone through who waits, and who comes later.
    void open();
    /// True if it is open by `deadline`.
    bool waitUntil(Clock::time_point deadline);

private:
    std::mutex mutex_; // guards open_
    std::condition_variable opened_;
    bool open_ = false;
};

/// An open camera. Every function may be called from any thread. A call in flight holds a
/// shared_ptr, so that the camera outlives it when another thread closes it.
class Camera : public Reapable {
public:
    /// `bus` is whatever has to outlive `device`.
    static std::shared_ptr<Camera> create(std::unique_ptr<Device> device,
                                          std::shared_ptr<const void> bus, Reaper &reaper);
    ~Camera() override;

    /// Who it is.
    const DeviceIdentity &identity() const { return device_->identity(); }
    /// Good for as long as the camera, as are the two below.
    Device &device() { return *device_; }
    /// The typed features.
    Features &features() { return features_; }
    /// The stream and the grabs.
    Acquisition &acquisition() { return acquisition_; }

    /// True if the camera was restarted: its ID may be opened again, this handle is of no use.
    bool lost() const { return lost_; }
    /// From now on lost().
    void markLost() { lost_ = true; }
    /// Opens when nothing is left of the camera.
    std::shared_ptr<Gate> gone() const { return gone_; }

    /// ORVALIS_ERROR_CONNECTION_LOST or ORVALIS_ERROR_DEVICE if the pixel format cannot be read.
    OResult cameraInfo(OCameraInfo &info);
    /// `session` is the number of the library's session that the call belongs to.
    OResult start(OFrameCallback callback, std::uint64_t session);
    /// Restarts the camera, which is lost then.
    OResult reset();
    /// Loads the maker's settings; ORVALIS_ERROR_ACCESS_DENIED while it streams.
    OResult loadDefaults();
    /// Writes one picture as RGB to the caller's planes, which are as large as the sensor.
    OResult grabRgb(OImageFrame &frame, std::uint32_t timeoutMs);
    /// Writes one picture as the camera sent it to the caller's raw plane, as large as the sensor.
    OResult grabRaw(OImageFrame &frame, std::uint32_t timeoutMs);

    /// Runs `access(nodes, name)` under the node lock, with the other spelling of the name if the
    /// camera has that one only.
    template <class Access> OResult withNode(std::string_view name, Access access)
    {
        const std::lock_guard lock(nodesMutex_);
        const std::string spelled = spelling(name);
        return access(device_->nodes(), std::string_view(spelled));
    }

private:
    Camera(std::unique_ptr<Device> device, std::shared_ptr<const void> bus);

    std::string spelling(std::string_view name);
    using Writer = OResult (*)(const GrabbedImage &, std::size_t, OImageFrame &);
    OResult grab(OImageFrame &frame, std::uint32_t timeoutMs, Writer write);

    std::shared_ptr<Gate> gone_ = std::make_shared<Gate>();
    std::shared_ptr<const void> bus_;
    std::unique_ptr<Device> device_;
    std::atomic<bool> lost_{false};
    std::mutex nodesMutex_; // one access to the nodes, selectors included
    Features features_;
    Acquisition acquisition_;
};

} // namespace orvalis
