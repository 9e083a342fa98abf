// SPDX-License-Identifier: MIT
// USB3 Vision cameras that are plugged in, as the system lists them.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace orvalis {

struct CameraRecord;

/// A USB3 Vision camera that is plugged in, whether it can be opened or not.
struct UsbCamera {
    std::filesystem::path node; ///< "/dev/bus/usb/002/004"
    std::string vendor;
    std::string model;
    std::string serialNumber;
    bool permitted = false; ///< this program may write to the node
    bool claimed = false;   ///< a program, possibly this one, has opened its control interface
    std::uint8_t userNameIndex = 0; ///< index of the string descriptor with DeviceUserID; 0: none
};

/// All cameras in the system's tree of USB devices. Tests pass other trees.
std::vector<UsbCamera>
pluggedUsbCameras(const std::filesystem::path &devices = "/sys/bus/usb/devices",
                  const std::filesystem::path &nodes = "/dev/bus/usb");

/// The entry of `camera`; null if it is no longer plugged in.
const UsbCamera *usbCameraOf(const CameraRecord &camera, const std::vector<UsbCamera> &plugged);

/// Why a camera could not be opened: according to the system, or else `otherwise`. `camera` is null
/// if it is not plugged in.
OResult usbRefusal(const UsbCamera *camera, OResult otherwise);

/// Reads DeviceUserID without opening the camera; empty if it has none or cannot be read. UTF-8.
std::string userNameOf(const UsbCamera &camera);

} // namespace orvalis
