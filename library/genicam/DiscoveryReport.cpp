// SPDX-License-Identifier: MIT
// Debug messages about discovery: what it found, and why a camera may be missing.
#include "library/core/Debug.h"
#include "library/genicam/Discovery.h"
#include "library/genicam/UsbCameras.h"

#include <net/if.h>

#include <mutex>

namespace orvalis {
namespace {

std::string nameOf(unsigned interfaceIndex)
{
    char name[IF_NAMESIZE] = "";
    return if_indextoname(interfaceIndex, name) != nullptr ? name : "a removed interface";
}

std::string report(const std::vector<CameraRecord> &cameras,
                   const std::vector<InterfaceAddress> &interfaces)
{
    std::string text = "discovery: " + std::to_string(cameras.size()) + " cameras\n";
    for (const CameraRecord &camera : cameras) {
        text += "  " + camera.id + ": " + camera.protocol + " " + camera.address + " " +
                camera.physicalId +
                (camera.isGige() ? " on " + nameOf(camera.interfaceIndex) : std::string()) + "\n";
        if (camera.isGige() && !camera.route) {
            text +=
                "    its address is not in a subnet of that interface: it cannot be opened until "
                "one of the two addresses changes\n";
        }
    }
    for (const UsbCamera &camera : pluggedUsbCameras()) {
        if (!camera.permitted) {
            text += "  a USB3 Vision camera at " + camera.node.string() +
                    " cannot be opened: no permission (is the udev rule installed?)\n";
        }
    }
    for (const InterfaceAddress &interface : interfaces) {
        text += "  searched " + interface.name + " " + dotted(interface.address) + "/" +
                dotted(interface.mask) + "\n";
    }
    return text;
}

} // namespace

void reportDiscovery(const std::vector<CameraRecord> &cameras,
                     const std::vector<InterfaceAddress> &interfaces)
{
    if (!debugEnabled())
        return;
    static std::mutex mutex; // guards last
    static std::string last;
    const std::lock_guard lock(mutex);
    std::string text = report(cameras, interfaces);
    if (text == last)
        return;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        debugPrint("%s", text.substr(start, end - start).c_str());
        start = end + 1;
    }
    last = std::move(text);
}

} // namespace orvalis
