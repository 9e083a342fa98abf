// SPDX-License-Identifier: MIT
// Which real cameras are there, and what it takes to open one.
#include "library/genicam/Discovery.h"

#include "library/genicam/GigePresence.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <mutex>
#include <set>

namespace orvalis {
namespace {

constexpr std::size_t longestName = ORVALIS_NAME_SIZE - 1;

/// IDs become parts of file names: letters, digits and what is harmless.
std::string sanitized(std::string text)
{
    for (char &c : text) {
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) != 0 && (c & 0x80) == 0;
        if (!plain && c != '-' && c != '.' && c != '_') {
            c = '_';
        }
    }
    return text;
}

std::string joined(std::initializer_list<std::string> parts)
{
    std::string text;
    for (const std::string &part : parts) {
        if (!part.empty()) {
            text += (text.empty() ? "" : "-") + part;
        }
    }
    return text;
}

/// The serial number tells cameras apart, so it stays; vendor and model are for people.
std::string idOf(const CameraRecord &camera)
{
    const std::string serial =
        camera.serialNumber.empty() ? camera.physicalId : camera.serialNumber;
    std::string id = joined({camera.vendor, camera.model, serial});
    if (id.size() > longestName) {
        id = joined({camera.model, serial});
    }
    if (id.size() > longestName) {
        id = id.substr(id.size() - longestName);
    }
    return sanitized(id);
}

std::string displayNameOf(const CameraRecord &camera)
{
    const std::string serial =
        camera.serialNumber.empty() ? camera.physicalId : camera.serialNumber;
    std::string name = camera.vendor;
    name += (name.empty() ? "" : " ") + camera.model;
    const std::string tail = " (" + serial + ")";
    const std::size_t room = tail.size() < longestName ? longestName - tail.size() : 0;
    return (name.substr(0, room) + tail).substr(0, longestName);
}

/// A bare "-2" would go to whichever camera answers second, so the place on the bus is used.
std::string distinguished(const std::string &id, const CameraRecord &camera)
{
    const std::string mark =
        sanitized("-" + (camera.address.empty() ? camera.physicalId : camera.address));
    return mark.size() < longestName ? id.substr(0, longestName - mark.size()) + mark : id;
}

CameraRecord recordOf(unsigned index)
{
    CameraRecord camera;
    camera.aravisId = textOf(arv_get_device_id(index));
    camera.protocol = textOf(arv_get_device_protocol(index));
    camera.address = textOf(arv_get_device_address(index));
    camera.physicalId = textOf(arv_get_device_physical_id(index));
    camera.vendor = textOf(arv_get_device_vendor(index));
    camera.model = textOf(arv_get_device_model(index));
    camera.serialNumber = textOf(arv_get_device_serial_nbr(index));
    return camera;
}

/// Address of the local interface that packets to `remote` leave through; empty if there is none.
std::string localAddressTowards(const std::string &remote)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(3956); // GigE Vision control; nothing is sent
    socklen_t length = sizeof address;
    char text[INET_ADDRSTRLEN] = "";
    const int probe = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (probe >= 0 && inet_pton(AF_INET, remote.c_str(), &address.sin_addr) == 1 &&
        connect(probe, reinterpret_cast<sockaddr *>(&address), length) == 0 &&
        getsockname(probe, reinterpret_cast<sockaddr *>(&address), &length) == 0) {
        inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
    }
    if (probe >= 0) {
        close(probe);
    }
    return text;
}

GPtr<ArvDevice> openGige(const CameraRecord &camera, Failure &failure)
{
    const std::string local = localAddressTowards(camera.address);
    const GPtr<GInetAddress> interface(g_inet_address_new_from_string(local.c_str()));
    const GPtr<GInetAddress> remote(g_inet_address_new_from_string(camera.address.c_str()));
    const char *reason = "no network of this computer leads to its address";
    if (interface && remote) {
        reason = GigePresence(interface.get(), remote.get()).whyGone();
    }
    if (reason != nullptr) {
        g_set_error_literal(failure.slot(), ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_NOT_FOUND, reason);
        return nullptr;
    }
    return GPtr<ArvDevice>(arv_gv_device_new(interface.get(), remote.get(), failure.slot()));
}

} // namespace

void nameCameras(std::vector<CameraRecord> &cameras)
{
    std::multiset<std::string> ids;
    for (CameraRecord &camera : cameras) {
        camera.id = idOf(camera);
        camera.displayName = displayNameOf(camera);
        ids.insert(camera.id);
    }
    for (CameraRecord &camera : cameras) {
        if (ids.count(camera.id) > 1) {
            camera.id = distinguished(camera.id, camera);
            camera.displayName = (camera.displayName + " " + camera.address).substr(0, longestName);
        }
    }
}

std::vector<CameraRecord> lookForCameras()
{
    // Aravis keeps one device list for the whole program.
    static std::mutex listMutex;
    std::vector<CameraRecord> cameras;
    {
        const std::lock_guard lock(listMutex);
        arv_update_device_list();
        const unsigned count = arv_get_n_devices();
        for (unsigned i = 0; i < count; ++i) {
            cameras.push_back(recordOf(i));
        }
    }
    nameCameras(cameras);
    reportDiscovery(cameras);
    return cameras;
}

GPtr<ArvDevice> openRecordedCamera(const CameraRecord &camera, Failure &failure)
{
    // Aravis' own opening by ID waits for discovery, so these go round it.
    if (camera.isGige()) {
        return openGige(camera, failure);
    }
    return GPtr<ArvDevice>(arv_uv_device_new(camera.vendor.c_str(), camera.model.c_str(),
                                             camera.serialNumber.c_str(), failure.slot()));
}

} // namespace orvalis
