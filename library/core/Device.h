// SPDX-License-Identifier: MIT
// What a back end implements: one open camera, and the bus that cameras are found on.
#pragma once

#include "library/core/NodeMap.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

using Clock = std::chrono::steady_clock;

/// A camera that was seen on a bus.
struct DeviceDescription {
    std::string id;          ///< opens it; unique over all back ends; at most 63 bytes
    std::string displayName; ///< for people; at most 63 bytes
};

/// Who an open camera is. Fixed from open to close.
struct DeviceIdentity {
    std::string id;
    std::string displayName;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string firmware;
};

/// A picture as the camera sent it: complete, never torn.
struct RawImage {
    const std::uint8_t *data = nullptr;
    std::size_t size = 0; ///< bytes; at least what width, height and pixelFormat need
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t pixelFormat = 0; ///< PFNC code
    std::shared_ptr<const void>
        owner; ///< keeps `data` alive and unchanged for as long as it is held
};

/// One open camera. Reports ORVALIS_ERROR_CONNECTION_LOST at once when the camera is known to be
/// lost. What streams and takes images is called by one thread, the camera's own; everything else
/// by any thread, at the same time as others. A call may last for seconds if the camera does not
/// answer: nobody waits for that thread (Acquisition).
class Device {
public:
    virtual ~Device() = default; ///< leaves the camera; called with no other call under way

    /// Good for as long as the device.
    virtual const DeviceIdentity &identity() const = 0;
    /// Good for as long as the device.
    virtual NodeMap &nodes() = 0;

    /// Starts the camera's acquisition. Never called while it streams. Camera's thread, as are
    /// nextImage(), stopStream() and takeImage().
    virtual OResult startStream() = 0;
    /// Waits for the next complete picture between startStream() and stopStream().
    /// ORVALIS_ERROR_TIMEOUT when `deadline` has passed, ORVALIS_ERROR_ABORTED after wake(),
    /// ORVALIS_ERROR_CONNECTION_LOST.
    virtual OResult nextImage(RawImage &image, Clock::time_point deadline) = 0;
    /// Makes the present or the next nextImage() or takeImage() return ORVALIS_ERROR_ABORTED soon.
    /// Any thread; does not wait for the camera.
    virtual void wake() = 0;
    /// Ends the acquisition.
    virtual void stopStream() = 0;

    /// Takes one picture while no stream runs: nothing that a user sets is locked meanwhile.
    virtual OResult takeImage(RawImage &image, Clock::time_point deadline) = 0;

    /// Reads 32 bits. ORVALIS_ERROR_NOT_FOUND where the camera has no register.
    virtual OResult readRegister(std::uint32_t address, std::uint32_t &value) = 0;
    /// Writes 32 bits. ORVALIS_ERROR_NOT_FOUND where the camera has no register.
    virtual OResult writeRegister(std::uint32_t address, std::uint32_t value) = 0;
    /// Restarts the camera, which is lost then. ORVALIS_ERROR_NOT_SUPPORTED if it cannot.
    virtual OResult reset() = 0;
};

/// A bus: the simulated one, or GigE Vision and USB3 Vision through Aravis.
class Backend {
public:
    virtual ~Backend() = default;

    /// For debug messages.
    virtual std::string_view name() const = 0;
    /// True if discover() takes no noticeable time and may run in any call.
    virtual bool discoversAtOnce() const = 0;
    /// Looks for cameras and returns all that are there now. Called by one thread at a time.
    virtual std::vector<DeviceDescription> discover() = 0;
    /// Opens a camera; may run at the same time as discover() and other open() calls, and does not
    /// wait for discover(). ORVALIS_ERROR_NOT_FOUND if this bus has no such camera,
    /// ORVALIS_ERROR_BUSY, ORVALIS_ERROR_ACCESS_DENIED, ORVALIS_ERROR_DEVICE.
    virtual OResult open(const std::string &id, std::unique_ptr<Device> &device) = 0;
};

/// The built-in cameras.
std::unique_ptr<Backend> makeSimulatedBackend();
#ifdef ORVALIS_WITH_GENICAM
/// GigE Vision and USB3 Vision cameras; with `fake` the one in-process test camera instead.
std::unique_ptr<Backend> makeGenicamBackend(bool fake);
#endif

} // namespace orvalis
