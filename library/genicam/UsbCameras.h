// SPDX-License-Identifier: MIT
// What the system knows of USB3 Vision cameras that are plugged in.
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
    bool permitted = false;         ///< this program may write to the node
    bool claimed = false;           ///< a program, maybe this one, has its control interface open
    std::uint8_t userNameIndex = 0; ///< of the string descriptor that holds DeviceUserID; 0: none
};

/// All of them, from the system's tree of USB devices. Other trees than the real ones are for
/// tests.
std::vector<UsbCamera>
pluggedUsbCameras(const std::filesystem::path &devices = "/sys/bus/usb/devices",
                  const std::filesystem::path &nodes = "/dev/bus/usb");

/// The one of them that is the camera; null if it is not plugged in any more.
const UsbCamera *usbCameraOf(const CameraRecord &camera, const std::vector<UsbCamera> &plugged);

/// Why a camera could not be opened: what the system knows of it, or else what the attempt said.
/// Null for a camera that is not plugged in.
OResult usbRefusal(const UsbCamera *camera, OResult otherwise);

/// DeviceUserID as the camera tells it without being opened; empty if it has none, or cannot be
/// asked. UTF-8.
std::string userNameOf(const UsbCamera &camera);

} // namespace orvalis
