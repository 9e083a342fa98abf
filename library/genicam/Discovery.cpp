// SPDX-License-Identifier: MIT
// Finds real cameras.
#include "library/genicam/Discovery.h"

#include "library/genicam/GigeDiscovery.h"
#include "library/genicam/UsbCameras.h"

#include <algorithm>
#include <mutex>

namespace orvalis {
namespace {

using namespace std::chrono_literals;

/// The time within which a GigE Vision camera must answer.
constexpr auto gigeTimeout = 1s;

/// Builds a record. The library finds GigE Vision cameras itself, because Aravis does not reveal
/// the interface of a camera.
CameraRecord gigeRecord(const GigeAnnouncement &seen,
                        const std::vector<InterfaceAddress> &interfaces)
{
    CameraRecord camera;
    camera.protocol = "GigEVision";
    camera.address = dotted(seen.address);
    camera.physicalId = seen.hardwareAddress;
    camera.vendor = seen.vendor;
    camera.model = seen.model;
    camera.serialNumber = seen.serialNumber;
    camera.userName = seen.userName;
    camera.interfaceIndex = seen.interfaceIndex;
    camera.route = routeTo(seen.address, seen.interfaceIndex, interfaces);
    return camera;
}

void addUsbCameras(std::vector<CameraRecord> &cameras)
{
#if ARAVIS_HAS_USB
    // Aravis has one device list for the process.
    static std::mutex listMutex;
    const std::lock_guard lock(listMutex);
    ArvInterface *bus = arv_uv_interface_get_instance();
    arv_interface_update_device_list(bus);
    const std::vector<UsbCamera> plugged = pluggedUsbCameras();
    for (unsigned i = 0; i < arv_interface_get_n_devices(bus); ++i) {
        CameraRecord camera;
        camera.protocol = textOf(arv_interface_get_device_protocol(bus, i));
        camera.physicalId = textOf(arv_interface_get_device_physical_id(bus, i));
        camera.vendor = textOf(arv_interface_get_device_vendor(bus, i));
        camera.model = textOf(arv_interface_get_device_model(bus, i));
        camera.serialNumber = textOf(arv_interface_get_device_serial_nbr(bus, i));
        if (const UsbCamera *found = usbCameraOf(camera, plugged))
            camera.userName = userNameOf(*found);
        cameras.push_back(std::move(camera));
    }
#endif
}

} // namespace

std::vector<CameraRecord> findCameras()
{
    std::vector<CameraRecord> cameras;
    const std::vector<InterfaceAddress> interfaces = localInterfaces();
    for (const GigeAnnouncement &seen : findGigeCameras(interfaces, gigeTimeout))
        cameras.push_back(gigeRecord(seen, interfaces));
    addUsbCameras(cameras);
    nameCameras(cameras);
    std::sort(cameras.begin(), cameras.end(),
              [](const CameraRecord &a, const CameraRecord &b) { return a.id < b.id; });
    reportDiscovery(cameras, interfaces);
    return cameras;
}

} // namespace orvalis
