// SPDX-License-Identifier: MIT
// Why a camera may be missing: what discovery saw, for the debug output.
#include "library/core/Debug.h"
#include "library/genicam/Discovery.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <mutex>

namespace orvalis {
namespace {

struct Subnet {
    std::string text;
    in_addr_t address;
    in_addr_t mask;
};

std::string dotted(in_addr_t address)
{
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &address, text, sizeof text);
    return text;
}

std::vector<Subnet> localSubnets()
{
    std::vector<Subnet> subnets;
    ifaddrs *first = nullptr;
    if (getifaddrs(&first) != 0) {
        return subnets;
    }
    for (const ifaddrs *item = first; item != nullptr; item = item->ifa_next) {
        if (item->ifa_addr == nullptr || item->ifa_netmask == nullptr ||
            item->ifa_addr->sa_family != AF_INET || (item->ifa_flags & IFF_UP) == 0) {
            continue;
        }
        const auto address = reinterpret_cast<const sockaddr_in *>(item->ifa_addr)->sin_addr.s_addr;
        const auto mask = reinterpret_cast<const sockaddr_in *>(item->ifa_netmask)->sin_addr.s_addr;
        subnets.push_back(
            {textOf(item->ifa_name) + " " + dotted(address) + "/" + dotted(mask), address, mask});
    }
    freeifaddrs(first);
    return subnets;
}

bool isOnOneOf(const std::vector<Subnet> &subnets, const std::string &address)
{
    in_addr camera{};
    if (inet_pton(AF_INET, address.c_str(), &camera) != 1) {
        return true; // nothing to compare
    }
    for (const Subnet &subnet : subnets) {
        if ((camera.s_addr & subnet.mask) == (subnet.address & subnet.mask)) {
            return true;
        }
    }
    return false;
}

std::string firstLine(const std::filesystem::path &file)
{
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return line;
}

/// USB3 Vision control interfaces are of class EF, subclass 05, protocol 00.
bool isCameraInterface(const std::filesystem::path &interface)
{
    return firstLine(interface / "bInterfaceClass") == "ef" &&
           firstLine(interface / "bInterfaceSubClass") == "05" &&
           firstLine(interface / "bInterfaceProtocol") == "00";
}

std::string deviceNode(const std::filesystem::path &device)
{
    const int bus = std::atoi(firstLine(device / "busnum").c_str());
    const int number = std::atoi(firstLine(device / "devnum").c_str());
    char node[64];
    std::snprintf(node, sizeof node, "/dev/bus/usb/%03d/%03d", bus, number);
    return node;
}

/// Device files of the USB3 Vision cameras that this program may not write to.
std::vector<std::string> forbiddenUsbCameras()
{
    namespace fs = std::filesystem;
    std::vector<std::string> nodes;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator("/sys/bus/usb/devices", error)) {
        // "1-2:1.0" is an interface of the device "1-2".
        const std::string name = entry.path().filename();
        const std::size_t colon = name.find(':');
        if (colon == std::string::npos || !isCameraInterface(entry.path())) {
            continue;
        }
        std::string node = deviceNode(entry.path().parent_path() / name.substr(0, colon));
        if (access(node.c_str(), R_OK | W_OK) != 0) {
            nodes.push_back(std::move(node));
        }
    }
    return nodes;
}

std::string report(const std::vector<CameraRecord> &cameras)
{
    const std::vector<Subnet> subnets = localSubnets();
    std::string text = "discovery: " + std::to_string(cameras.size()) + " cameras\n";
    for (const CameraRecord &camera : cameras) {
        text += "  " + camera.id + ": " + camera.protocol + " " + camera.address + " " +
                camera.physicalId + "\n";
        if (camera.isGige() && !isOnOneOf(subnets, camera.address)) {
            text += "    its address is on no subnet of this computer: it cannot be opened until "
                    "one of the two gets another address\n";
        }
    }
    for (const std::string &node : forbiddenUsbCameras()) {
        text += "  a USB3 Vision camera at " + node +
                " may not be opened: no permission (is the udev rule installed?)\n";
    }
    for (const Subnet &subnet : subnets) {
        text += "  looked on " + subnet.text + "\n";
    }
    return text;
}

} // namespace

void reportDiscovery(const std::vector<CameraRecord> &cameras)
{
    if (!debugEnabled()) {
        return;
    }
    static std::mutex mutex; // guards last
    static std::string last;
    const std::lock_guard lock(mutex);
    std::string text = report(cameras);
    if (text == last) {
        return;
    }
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        debugPrint("%s", text.substr(start, end - start).c_str());
        start = end + 1;
    }
    last = std::move(text);
}

bool hasForbiddenUsbCamera() { return !forbiddenUsbCameras().empty(); }

} // namespace orvalis
