// SPDX-License-Identifier: MIT
// Opens real cameras and reports why one cannot be opened.
#include "library/genicam/CameraOpening.h"

#include "library/core/Background.h"
#include "library/core/Debug.h"
#include "library/genicam/AravisUse.h"
#include "library/genicam/GigePresence.h"
#include "library/genicam/UsbCameras.h"

#include <memory>

namespace orvalis {
namespace {

OResult refused(const CameraRecord &camera, OResult result, const char *reason)
{
    debugPrint("%s cannot be opened: %s", camera.id.c_str(), reason);
    return result;
}

constexpr const char *heldByOther = "another program controls it";

/// Translates the error of a failed attempt. A camera reports "access denied" to programs that do
/// not control it.
OResult meaningOf(const Failure &failure)
{
    switch (failure.result()) {
    case ORVALIS_ERROR_CONNECTION_LOST:
    case ORVALIS_ERROR_TIMEOUT:
    case ORVALIS_ERROR_NOT_FOUND:
        return ORVALIS_ERROR_NOT_FOUND;
    case ORVALIS_ERROR_ACCESS_DENIED:
    case ORVALIS_ERROR_BUSY:
        return ORVALIS_ERROR_BUSY;
    default:
        return ORVALIS_ERROR_DEVICE;
    }
}

/// Disconnects from a camera that this program does not control. Some cameras do not answer then,
/// so this may take seconds; it runs in the background.
void disconnect(GPtr<ArvDevice> device)
{
    Background::instance().run(
        [aravis = AravisUse::instance(), guest = std::shared_ptr<ArvDevice>(std::move(device))] {});
}

OResult openGige(const CameraRecord &camera, GPtr<ArvDevice> &device)
{
    // Addresses of interfaces change: use the present ones.
    const GigeRoute route = routeTo(camera.route.camera, camera.interfaceIndex, localInterfaces());
    if (!route) {
        return refused(camera, ORVALIS_ERROR_NOT_FOUND,
                       "its address is not in a subnet of the interface on which it was found");
    }
    const GigePresence presence(route);
    if (const char *proof = presence.whyGone())
        return refused(camera, ORVALIS_ERROR_NOT_FOUND, proof);
    if (presence.isHeldByOther())
        return refused(camera, ORVALIS_ERROR_BUSY, heldByOther);
    Failure failure;
    GPtr<ArvDevice> opened = openThrough(route, failure);
    if (!opened) {
        // Another program may have taken control meanwhile, and controlled cameras refuse in many
        // ways.
        return refused(camera, presence.isHeldByOther() ? ORVALIS_ERROR_BUSY : meaningOf(failure),
                       failure.text());
    }
    if (!arv_gv_device_is_controller(ARV_GV_DEVICE(opened.get()))) {
        disconnect(std::move(opened));
        return refused(camera, ORVALIS_ERROR_BUSY, heldByOther);
    }
    device = std::move(opened);
    return ORVALIS_OK;
}

OResult openUsb(const CameraRecord &camera, GPtr<ArvDevice> &device)
{
    Failure failure;
    GPtr<ArvDevice> opened(arv_uv_device_new(camera.vendor.c_str(), camera.model.c_str(),
                                             camera.serialNumber.c_str(), failure.slot()));
    if (!opened) {
        const std::vector<UsbCamera> plugged = pluggedUsbCameras();
        return refused(camera, usbRefusal(usbCameraOf(camera, plugged), meaningOf(failure)),
                       failure.text());
    }
    device = std::move(opened);
    return ORVALIS_OK;
}

} // namespace

OResult openRecordedCamera(const CameraRecord &camera, GPtr<ArvDevice> &device)
{
    // Opening by ID with Aravis waits for its discovery, so open by address or by name.
    return camera.isGige() ? openGige(camera, device) : openUsb(camera, device);
}

} // namespace orvalis
