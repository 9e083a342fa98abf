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

/// An open camera. Every function may be called from any thread. A call in flight holds a
/// shared_ptr, so that the camera outlives it when another thread closes it.
///
/// Each has a thread of its own from the first to the last, which streams, grabs, and destroys the
/// camera when the last shared_ptr has gone: to leave a camera that does not answer takes seconds,
/// and the last one to let go may be that very thread, inside the callback.
class Camera {
public:
    /// `bus` is whatever has to outlive `device`. Throws std::bad_alloc without a thread for it.
    static std::shared_ptr<Camera> create(std::unique_ptr<Device> device,
                                          std::shared_ptr<const void> bus);
    ~Camera() = default;
    Camera(const Camera &) = delete;
    Camera &operator=(const Camera &) = delete;

    /// Who it is.
    const DeviceIdentity &identity() const { return device_->identity(); }
    /// Good for as long as the camera, as are the three below.
    Device &device() { return *device_; }
    /// The typed features.
    Features &features() { return features_; }
    /// The names that can be chosen, one by one.
    ChoiceLists &lists() { return lists_; }
    /// The stream and the grabs.
    Acquisition &acquisition() { return acquisition_; }

    /// True if the camera was restarted: its ID may be opened again, this handle is of no use.
    bool lost() const { return lost_; }
    /// From now on lost().
    void markLost() { lost_ = true; }
    /// Ready when nothing is left of the camera.
    std::shared_future<void> gone() const { return gone_; }

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
    std::mutex nodesMutex_; // one access to the nodes, selectors included
    Features features_;
    ChoiceLists lists_{features_};
    Acquisition acquisition_;
};

} // namespace orvalis
