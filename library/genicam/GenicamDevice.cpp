// SPDX-License-Identifier: MIT
// One open real camera: opening, disconnecting, registers, reset.
#include "library/genicam/GenicamDevice.h"

#include "library/genicam/NodeReach.h"
#include "library/genicam/StringNode.h"

#include <initializer_list>

namespace orvalis {
namespace {

/// Aravis' test cameras have no memory above this, and crash on an access to it.
constexpr std::uint32_t fakeMemory = ARV_FAKE_CAMERA_MEMORY_SIZE;

/// True for Aravis' test camera, in this process or as a GigE Vision camera in another.
bool isTestCamera(ArvDevice *device, const DeviceIdentity &identity)
{
    return ARV_IS_FAKE_DEVICE(device) || (identity.vendor == "Aravis" && identity.model == "Fake");
}

std::string firstText(ArvDevice *device, std::initializer_list<const char *> names)
{
    NodeReach reach;
    for (const char *name : names) {
        ArvGcNode *const node = arv_device_get_feature(device, name);
        if (!ARV_IS_GC_STRING(node))
            continue;
        Failure failure;
        std::string text;
        if (reach.isSound(ARV_GC_FEATURE_NODE(node), failure))
            readText(ARV_GC_FEATURE_NODE(node), text, failure);
        if (!failure && !text.empty())
            return text;
    }
    return {};
}

} // namespace

DeviceIdentity identityOf(ArvDevice *device, std::string id, std::string displayName)
{
    DeviceIdentity identity;
    identity.id = std::move(id);
    identity.displayName = std::move(displayName);
    identity.vendor = firstText(device, {"DeviceVendorName"});
    identity.model = firstText(device, {"DeviceModelName"});
    identity.serialNumber = firstText(device, {"DeviceSerialNumber", "DeviceID"});
    identity.firmware = firstText(device, {"DeviceFirmwareVersion", "DeviceVersion"});
    return identity;
}

GenicamDevice::GenicamDevice(GPtr<ArvDevice> device, DeviceIdentity identity,
                             std::function<void()> onGone)
    : identity_(std::move(identity)), onGone_(std::move(onGone)),
      isFake_(isTestCamera(device.get(), identity_)), gige_(device.get()), order_(device.get()),
      link_(std::make_shared<CameraLink>(device.release())), nodes_(*link_, counters_)
{
}

GenicamDevice::~GenicamDevice()
{
    GenicamDevice::stopStream(); // a running stream would keep the camera open
    link_->close();
    onGone_();
}

std::function<bool()> GenicamDevice::lossProbe() const
{
    return [watched = std::weak_ptr<CameraLink>(link_)] {
        const std::shared_ptr<CameraLink> link = watched.lock();
        return link && link->lost();
    };
}

bool GenicamDevice::servesRegister(std::uint32_t address) const
{
    return !isFake_ || address < fakeMemory;
}

template <class Access> OResult GenicamDevice::atRegister(std::uint32_t address, Access access)
{
    const CameraLink::Lock lock = link_->acquire();
    if (!lock)
        return ORVALIS_ERROR_CONNECTION_LOST;
    if (!servesRegister(address))
        return ORVALIS_ERROR_NOT_FOUND;
    Failure failure;
    access(link_->device(), failure.slot());
    return link_->resultOf(failure);
}

OResult GenicamDevice::readRegister(std::uint32_t address, std::uint32_t &value)
{
    guint32 found = 0;
    const OResult result = atRegister(address, [&](ArvDevice *device, GError **error) {
        arv_device_read_register(device, address, &found, error);
    });
    value = result == ORVALIS_OK ? found : value;
    return result;
}

OResult GenicamDevice::writeRegister(std::uint32_t address, std::uint32_t value)
{
    return atRegister(
        address,
        [&](ArvDevice *device, GError **error) {
            arv_device_write_register(device, address, value, error);
            nodes_.invalidateRegisters();
        });
}

OResult GenicamDevice::reset()
{
    const OResult result = nodes_.execute("DeviceReset");
    if (result == ORVALIS_OK || result == ORVALIS_ERROR_CONNECTION_LOST) {
        // Many cameras restart before they acknowledge the command.
        const bool knownBefore = result != ORVALIS_OK && link_->lost();
        link_->markLost("it restarts");
        return knownBefore ? result : ORVALIS_OK;
    }
    return result == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : result;
}

} // namespace orvalis
