// SPDX-License-Identifier: MIT
// USB3 Vision cameras that are plugged in, as the system lists them.
#include "library/genicam/UsbCameras.h"

#include "library/genicam/Discovery.h"

#include <fcntl.h>
#include <linux/usbdevice_fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace orvalis {
namespace {

namespace fs = std::filesystem;

std::string firstLine(const fs::path &file)
{
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

/// USB3 Vision control interfaces are of class EF, subclass 05, protocol 00.
bool isControlInterface(const fs::path &interface)
{
    return firstLine(interface / "bInterfaceClass") == "ef" &&
           firstLine(interface / "bInterfaceSubClass") == "05" &&
           firstLine(interface / "bInterfaceProtocol") == "00";
}

/// "usbfs" means a program; the kernel has no driver for such cameras.
bool isClaimed(const fs::path &interface)
{
    std::error_code error;
    return fs::read_symlink(interface / "driver", error).filename() == "usbfs";
}

/// Finds the index of the string descriptor with the user-defined name: USB3 Vision 1.0, device
/// info descriptor.
std::uint8_t userNameIndexIn(const std::string &descriptors)
{
    constexpr char infoType = 0x24;
    constexpr char infoSubtype = 0x01;
    constexpr std::size_t infoSize = 20;
    constexpr std::size_t userNameAt = 18;
    for (std::size_t at = 0; at + 2 < descriptors.size();) {
        const auto size = static_cast<unsigned char>(descriptors[at]);
        if (size >= infoSize && at + size <= descriptors.size() &&
            descriptors[at + 1] == infoType && descriptors[at + 2] == infoSubtype)
            return static_cast<std::uint8_t>(descriptors[at + userNameAt]);
        at += std::max<std::size_t>(size, 2);
    }
    return 0;
}

std::string contentOf(const fs::path &file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

fs::path nodeOf(const fs::path &device, const fs::path &nodes)
{
    char bus[16];
    char number[16];
    std::snprintf(bus, sizeof bus, "%03d", std::atoi(firstLine(device / "busnum").c_str()));
    std::snprintf(number, sizeof number, "%03d", std::atoi(firstLine(device / "devnum").c_str()));
    return nodes / bus / number;
}

/// A missing node does not count as forbidden.
bool isPermitted(const fs::path &node)
{
    return access(node.c_str(), R_OK | W_OK) == 0 || (errno != EACCES && errno != EPERM);
}

UsbCamera cameraAt(const fs::path &device, const fs::path &interface, const fs::path &nodes)
{
    UsbCamera camera;
    camera.node = nodeOf(device, nodes);
    camera.vendor = firstLine(device / "manufacturer");
    camera.model = firstLine(device / "product");
    camera.serialNumber = firstLine(device / "serial");
    camera.permitted = isPermitted(camera.node);
    camera.claimed = isClaimed(interface);
    camera.userNameIndex = userNameIndexIn(contentOf(device / "descriptors"));
    return camera;
}

/// Converts a USB string descriptor: UTF-16, little-endian, after a header of two bytes.
std::string utf8(const std::uint8_t *bytes, std::size_t size)
{
    std::string text;
    for (std::size_t at = 2; at + 1 < size; at += 2) {
        const unsigned code = bytes[at] | unsigned{bytes[at + 1]} << 8;
        if (code == 0)
            break;
        const auto put = [&](unsigned byte) { text += static_cast<char>(byte); };
        if (code < 0x80) {
            put(code);
        } else if (code < 0x800) {
            put(0xC0 | code >> 6);
            put(0x80 | (code & 0x3F));
        } else {
            put(0xE0 | code >> 12);
            put(0x80 | (code >> 6 & 0x3F));
            put(0x80 | (code & 0x3F));
        }
    }
    return text;
}

} // namespace

std::vector<UsbCamera> pluggedUsbCameras(const fs::path &devices, const fs::path &nodes)
{
    std::vector<UsbCamera> cameras;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(devices, error)) {
        // "1-2:1.0" is an interface of the device "1-2".
        const std::string name = entry.path().filename();
        const std::size_t colon = name.find(':');
        if (colon != std::string::npos && isControlInterface(entry.path()))
            cameras.push_back(cameraAt(devices / name.substr(0, colon), entry.path(), nodes));
    }
    return cameras;
}

const UsbCamera *usbCameraOf(const CameraRecord &camera, const std::vector<UsbCamera> &plugged)
{
    const UsbCamera *found = nullptr;
    int ofThatNumber = 0;
    for (const UsbCamera &candidate : plugged) {
        if (candidate.serialNumber != camera.serialNumber)
            continue;
        if (candidate.vendor == camera.vendor && candidate.model == camera.model)
            return &candidate;
        found = &candidate;
        ++ofThatNumber;
    }
    // Aravis may spell vendor and model differently, so a unique serial number is sufficient.
    return ofThatNumber == 1 && !camera.serialNumber.empty() ? found : nullptr;
}

OResult usbRefusal(const UsbCamera *camera, OResult otherwise)
{
    if (camera == nullptr)
        return ORVALIS_ERROR_NOT_FOUND;
    if (!camera->permitted)
        return ORVALIS_ERROR_ACCESS_DENIED;
    return camera->claimed ? ORVALIS_ERROR_BUSY : otherwise;
}

std::string userNameOf(const UsbCamera &camera)
{
    const int file = camera.userNameIndex != 0 ? open(camera.node.c_str(), O_RDWR | O_CLOEXEC) : -1;
    if (file < 0)
        return {};
    std::array<std::uint8_t, 255> bytes{};
    usbdevfs_ctrltransfer request{};
    request.bRequestType = 0x80;                                                 // from the device
    request.bRequest = 6;                                                        // GET_DESCRIPTOR
    request.wValue = static_cast<std::uint16_t>(0x0300U | camera.userNameIndex); // a string
    request.wIndex = 0x0409; // English; cameras declare it even if the text is in another language
    request.wLength = bytes.size();
    request.timeout = 200; // milliseconds
    request.data = bytes.data();
    const int size = ioctl(file, USBDEVFS_CONTROL, &request);
    close(file);
    return size > 2 ? utf8(bytes.data(), static_cast<std::size_t>(size)) : std::string();
}

} // namespace orvalis
