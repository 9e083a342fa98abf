// SPDX-License-Identifier: MIT
// One open camera: its device, features and stream.
#pragma once

#include "library/core/Acquisition.h"
#include "library/core/ChoiceLists.h"
#include "library/core/Device.h"
#include "library/core/Features.h"

#include <atomic>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace orvalis {

/// An open camera. Every function may be called from any thread. A call in progress holds a
/// shared_ptr, so the camera outlives the call when another thread closes it.
/// | Each camera has a thread that streams, grabs, and destroys the camera after the last
/// shared_ptr is released. The destruction happens there because disconnecting from a camera that
/// does not answer takes seconds, and because the last shared_ptr may be released on that thread,
/// inside the callback.
class Camera {
public:
    /// `bus` is kept alive as long as `device`. Throws std::bad_alloc if no thread can be created.
    static std::shared_ptr<Camera> create(std::unique_ptr<Device> device,
                                          std::shared_ptr<const void> bus);
    ~Camera() = default;
    Camera(const Camera &) = delete;
    Camera &operator=(const Camera &) = delete;

    /// Names and serial number.
    const DeviceIdentity &identity() const { return device_->identity(); }
    /// Valid for the camera's lifetime, as are the three references below.
    Device &device() { return *device_; }
    /// The typed features.
    Features &features() { return features_; }
    /// The lists of names, entry by entry.
    ChoiceLists &lists() { return lists_; }
    /// The stream and the grabs.
    Acquisition &acquisition() { return acquisition_; }

    /// True if the connection is lost or the camera was restarted. Its ID may be opened again; this
    /// handle is useless.
    bool lost() const { return lost_; }
    /// Sets lost().
    void markLost() { lost_ = true; }
    /// Ready when the camera has been destroyed.
    std::shared_future<void> gone() const { return gone_; }

    /// ORVALIS_ERROR_CONNECTION_LOST or ORVALIS_ERROR_DEVICE if the pixel format cannot be read.
    OResult cameraInfo(OCameraInfo &info);
    /// `session` is the library session in which the call was made.
    OResult start(OFrameCallback callback, std::uint64_t session);
    /// Restarts the camera; on success it is lost().
    OResult reset();
    /// Loads the factory settings; ORVALIS_ERROR_ACCESS_DENIED while it streams.
    OResult loadDefaults();
    /// Writes one image as RGB to the caller's plane, which is as large as the sensor.
    OResult grabRgb(OImageFrame &frame, std::uint32_t timeoutMs);
    /// Writes one raw image to the caller's raw plane, which is as large as the sensor.
    OResult grabRaw(OImageFrame &frame, std::uint32_t timeoutMs);

    /// Runs `access(nodes, name)` under the node lock. Uses the other spelling of the name if the
    /// camera has only that one.
    template <class Access> OResult withNode(std::string_view name, Access access)
    {
        const NodeAccess hold(device_->nodes(), nodesMutex_);
        const std::string spelled = spelling(name);
        return access(device_->nodes(), std::string_view(spelled));
    }

private:
    Camera(std::unique_ptr<Device> device, std::shared_ptr<const void> bus);

    std::string spelling(std::string_view name);
    using Writer = OResult (*)(const GrabbedImage &, std::size_t, OImageFrame &);
    OResult grab(OImageFrame &frame, std::uint32_t timeoutMs, Writer write);

    std::shared_future<void> gone_;
    std::shared_ptr<const void> bus_;
    std::unique_ptr<Device> device_;
    std::atomic<bool> lost_{false};
    std::mutex nodesMutex_; // guards one access to the nodes, selectors included
    Features features_;
    ChoiceLists lists_{features_};
    Acquisition acquisition_;
};

} // namespace orvalis
