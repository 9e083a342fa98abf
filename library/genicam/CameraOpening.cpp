// SPDX-License-Identifier: MIT
// Opening a real camera, and why it may not be had.
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

/// What a failed attempt means for the caller. "Access denied" is what a camera tells a guest.
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

/// Leaves a camera of which we are only a guest. Some do not answer to guests at all: this may take
/// seconds.
void leave(GPtr<ArvDevice> device)
{
    Background::instance().run(
        [aravis = AravisUse::instance(), guest = std::shared_ptr<ArvDevice>(std::move(device))] {});
}

OResult openGige(const CameraRecord &camera, GPtr<ArvDevice> &device)
{
    // Addresses of interfaces change: what is true now counts.
    const GigeRoute route = routeTo(camera.route.camera, camera.interfaceIndex, localInterfaces());
    if (!route) {
        return refused(camera, ORVALIS_ERROR_NOT_FOUND,
                       "its address is in no subnet of the interface that it was seen on");
    }
    const GigePresence presence(route);
    if (const char *proof = presence.whyGone()) {
        return refused(camera, ORVALIS_ERROR_NOT_FOUND, proof);
    }
    if (presence.isHeldByOther()) {
        return refused(camera, ORVALIS_ERROR_BUSY, heldByOther);
    }
    Failure failure;
    GPtr<ArvDevice> opened = openAlong(route, failure);
    if (!opened) {
        // Somebody may have been faster, and cameras that are held refuse in many ways.
        return refused(camera, presence.isHeldByOther() ? ORVALIS_ERROR_BUSY : meaningOf(failure),
                       failure.text());
    }
    if (!arv_gv_device_is_controller(ARV_GV_DEVICE(opened.get()))) {
        leave(std::move(opened));
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
    // Aravis' own opening by ID waits for discovery, so these go round it.
    return camera.isGige() ? openGige(camera, device) : openUsb(camera, device);
}

} // namespace orvalis
