// SPDX-License-Identifier: MIT
// The interface of a back end: one open camera, and the bus on which cameras are found.
#pragma once

#include "library/core/NodeMap.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

using Clock = std::chrono::steady_clock;

/// A camera found on a bus.
struct DeviceDescription {
    std::string id;          ///< for open(); unique across all back ends; at most 63 bytes
    std::string displayName; ///< displayed to users; at most 63 bytes
};

/// The identity of an open camera. Constant from open to close.
struct DeviceIdentity {
    std::string id;
    std::string displayName;
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string firmware;
};

/// An image as the camera sent it: complete, never torn.
struct RawImage {
    const std::uint8_t *data = nullptr;
    std::size_t size = 0; ///< bytes; at least what width, height and pixelFormat need
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t pixelFormat = 0;     ///< PFNC code
    std::shared_ptr<const void> owner; ///< keeps `data` valid and unchanged; may be null
};

/// One open camera. Functions return ORVALIS_ERROR_CONNECTION_LOST at once when the camera is known
/// to be lost. The camera's own thread makes all calls that stream or take images; any thread may
/// make the other calls, concurrently. A call may take seconds if the camera does not answer: no
/// caller waits for the camera's thread (see Acquisition).
class Device {
public:
    virtual ~Device() = default; ///< disconnects; no other call may be running

    /// Valid for the device's lifetime.
    virtual const DeviceIdentity &identity() const = 0;
    /// Valid for the device's lifetime.
    virtual NodeMap &nodes() = 0;

    /// Starts the camera's acquisition. Never called while it streams. Camera's thread; so are
    /// nextImage(), stopStream() and takeImage().
    virtual OResult startStream() = 0;
    /// Waits for the next complete image between startStream() and stopStream().
    /// ORVALIS_ERROR_TIMEOUT after `deadline`, ORVALIS_ERROR_ABORTED after wake(),
    /// ORVALIS_ERROR_CONNECTION_LOST.
    virtual OResult nextImage(RawImage &image, Clock::time_point deadline) = 0;
    /// Makes the current or the next nextImage() or takeImage() return ORVALIS_ERROR_ABORTED soon.
    /// Any thread; does not wait for the camera.
    virtual void wake() = 0;
    /// Ends the acquisition.
    virtual void stopStream() = 0;

    /// Takes one image while no stream runs. Does not lock any settings meanwhile.
    virtual OResult takeImage(RawImage &image, Clock::time_point deadline) = 0;

    /// Reads 32 bits. ORVALIS_ERROR_NOT_FOUND where the camera has no register.
    virtual OResult readRegister(std::uint32_t address, std::uint32_t &value) = 0;
    /// Writes 32 bits. ORVALIS_ERROR_NOT_FOUND where the camera has no register.
    virtual OResult writeRegister(std::uint32_t address, std::uint32_t value) = 0;
    /// Restarts the camera; the connection is lost then. ORVALIS_ERROR_NOT_SUPPORTED if the camera
    /// cannot restart.
    virtual OResult reset() = 0;
};

/// A bus: the simulated one, or GigE Vision and USB3 Vision through Aravis.
class Backend {
public:
    virtual ~Backend() = default;

    /// For debug messages.
    virtual std::string_view name() const = 0;
    /// True if discover() is fast enough to run in any call.
    virtual bool discoversAtOnce() const = 0;
    /// Returns all cameras that are present now. Called by one thread at a time.
    virtual std::vector<DeviceDescription> discover() = 0;
    /// Opens a camera. May run concurrently with discover() and other open() calls, and does not
    /// wait for discover(). ORVALIS_ERROR_NOT_FOUND if this bus has no such camera,
    /// ORVALIS_ERROR_BUSY, ORVALIS_ERROR_ACCESS_DENIED, ORVALIS_ERROR_DEVICE.
    virtual OResult open(const std::string &id, std::unique_ptr<Device> &device) = 0;
};

/// The built-in cameras.
std::unique_ptr<Backend> makeSimulatedBackend();
#ifdef ORVALIS_WITH_GENICAM
/// GigE Vision and USB3 Vision cameras; if `fake` is true, only the in-process test camera.
std::unique_ptr<Backend> makeGenicamBackend(bool fake);
#endif

} // namespace orvalis
