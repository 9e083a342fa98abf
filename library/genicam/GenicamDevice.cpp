// SPDX-License-Identifier: MIT
// One open real camera: opening, leaving, registers, reset.
#include "library/genicam/GenicamDevice.h"

#include <initializer_list>

namespace orvalis {
namespace {

using namespace std::chrono_literals;

/// Callers are promised a second.
constexpr auto farewellPatience = 800ms;

/// Aravis' test cameras have no memory above this, and crash when asked for it.
constexpr std::uint32_t fakeMemory = ARV_FAKE_CAMERA_MEMORY_SIZE;

/// In this process, or as a GigE Vision camera in another one.
bool isTestCamera(ArvDevice *device, const DeviceIdentity &identity)
{
    return ARV_IS_FAKE_DEVICE(device) || (identity.vendor == "Aravis" && identity.model == "Fake");
}

std::string firstText(ArvDevice *device, std::initializer_list<const char *> names)
{
    for (const char *name : names) {
        if (!ARV_IS_GC_STRING(arv_device_get_feature(device, name))) {
            continue;
        }
        Failure failure;
        std::string text =
            textOf(arv_device_get_string_feature_value(device, name, failure.slot()));
        if (!failure && !text.empty()) {
            return text;
        }
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
      isFake_(isTestCamera(device.get(), identity_))
{
    core_ = std::make_shared<Core>(std::move(device));
}

GenicamDevice::~GenicamDevice()
{
    GenicamDevice::stopStream(); // whoever forgot it must not make the camera stay open for ever
    const auto patience = isGone(*core_) ? 0ms : farewellPatience;
    const auto leave = [core = std::move(core_), onGone = std::move(onGone_)] {
        {
            // A stream that is on its way out uses the camera until it is gone.
            std::unique_lock lock(core->mutex);
            core->ended.wait(lock, [&] { return core->stream == Stream::None; });
        }
        core->link.close();
        onGone();
    };
    background_->run(leave, patience);
}

std::function<bool()> GenicamDevice::lossProbe() const
{
    return [watched = std::weak_ptr<Core>(core_)] {
        const std::shared_ptr<Core> core = watched.lock();
        return core && core->link.lost();
    };
}

bool GenicamDevice::isGone(Core &core)
{
    if (const char *proof = core.link.lost() ? nullptr : core.presence.whyGone()) {
        core.link.markLost(proof);
    }
    return core.link.lost();
}

CameraLink::Turn GenicamDevice::turnUnlessGone()
{
    return isGone(*core_) ? CameraLink::Turn(nullptr) : core_->link.turn();
}

bool GenicamDevice::servesRegister(std::uint32_t address) const
{
    return !isFake_ || address < fakeMemory;
}

template <class Access> OResult GenicamDevice::atRegister(std::uint32_t address, Access access)
{
    const CameraLink::Turn turn = core_->link.turn();
    if (!turn) {
        return ORVALIS_ERROR_CONNECTION_LOST;
    }
    if (!servesRegister(address)) {
        return ORVALIS_ERROR_NOT_FOUND;
    }
    Failure failure;
    access(core_->link.device(), failure.slot());
    return core_->link.resultOf(failure);
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
    return atRegister(address, [&](ArvDevice *device, GError **error) {
        arv_device_write_register(device, address, value, error);
    });
}

OResult GenicamDevice::reset()
{
    const OResult result = core_->nodes.execute("DeviceReset");
    if (result == ORVALIS_OK || result == ORVALIS_ERROR_CONNECTION_LOST) {
        // Many cameras are gone before they have acknowledged the command.
        const bool knownBefore = result != ORVALIS_OK && core_->link.lost();
        core_->link.markLost("it restarts");
        return knownBefore ? result : ORVALIS_OK;
    }
    return result == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : result;
}

} // namespace orvalis
