// SPDX-License-Identifier: MIT
// Entry points: library, enumeration, connection.
#include "library/api/ApiCall.h"

using namespace orvalis;
using namespace orvalis::api;

namespace {

using Field = std::string DeviceDescription::*;

std::int32_t describe(std::uint32_t index, char *text, Field field) noexcept
{
    return guarded([&]() -> OResult {
        Snapshot cameras;
        const OResult result = Library::instance().presentSnapshot(cameras);
        if (result != ORVALIS_OK)
            return result;
        if (!text)
            return ORVALIS_ERROR_BAD_ARGUMENT;
        if (index >= cameras->size())
            return ORVALIS_ERROR_NOT_FOUND;
        copyName(text, (*cameras)[index].*field);
        return ORVALIS_OK;
    });
}

} // namespace

std::int32_t OrvalisInit()
{
    return guarded([] { return Library::instance().init(); });
}

std::int32_t OrvalisUninit()
{
    return guarded([] { return Library::instance().uninit(); });
}

std::int32_t OrvalisNumberOfCameras(std::uint32_t *count)
{
    return guarded([&]() -> OResult {
        Library &library = Library::instance();
        if (library.initialized() && !count)
            return ORVALIS_ERROR_BAD_ARGUMENT;
        Snapshot cameras;
        const OResult result = library.takeSnapshot(cameras);
        if (result == ORVALIS_OK)
            *count = static_cast<std::uint32_t>(cameras->size());
        return result;
    });
}

std::int32_t OrvalisGetDisplayName(std::uint32_t index, char *name)
{
    return describe(index, name, &DeviceDescription::displayName);
}

std::int32_t OrvalisGetCameraID(std::uint32_t index, char *cameraId)
{
    return describe(index, cameraId, &DeviceDescription::id);
}

std::int32_t OrvalisOpenCamera(const char *cameraId, OCameraHandle *handle)
{
    return guarded([&]() -> OResult {
        Library &library = Library::instance();
        if (!library.initialized())
            return ORVALIS_ERROR_NOT_INITIALIZED;
        if (!cameraId || !handle)
            return ORVALIS_ERROR_BAD_ARGUMENT;
        return library.open(std::string(boundedText(cameraId)), *handle);
    });
}

std::int32_t OrvalisCloseCamera(OCameraHandle handle)
{
    return guarded([&] { return Library::instance().close(handle); });
}

std::int32_t OrvalisCameraReset(OCameraHandle handle)
{
    return writing(
        handle, true, [](Camera &camera) { return camera.reset(); });
}

std::int32_t OrvalisGetCamInfo(OCameraHandle handle, OCameraInfo *info)
{
    return reading(
        handle, info, [&](Camera &camera) { return camera.cameraInfo(*info); });
}
