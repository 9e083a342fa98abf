// SPDX-License-Identifier: MIT
// Queries the camera library for the cameras on the bus.
#include "app/CameraBus.h"

#include <algorithm>
#include <cstdint>
#include <string.h>

namespace {

/// More cameras than any bus has; a larger count is an error of the library.
constexpr std::uint32_t maxCameras = 1024;

std::uint32_t cameraCount()
{
    std::uint32_t count = 0;
    (void)OrvalisNumberOfCameras(&count);
    return std::min(count, maxCameras);
}

} // namespace

QString cameraIdText(const CameraId &id)
{
    return QString::fromLatin1(id.data(), static_cast<int>(strnlen(id.data(), ORVALIS_NAME_SIZE)));
}

QStringList cameraNames()
{
    QStringList names;
    const std::uint32_t count = cameraCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        CameraId name{};
        (void)OrvalisGetDisplayName(i, name.data());
        names.append(cameraIdText(name));
    }
    return names;
}

CameraId cameraIdAt(int index)
{
    CameraId id{};
    (void)OrvalisGetCameraID(static_cast<std::uint32_t>(index), id.data());
    id.back() = '\0';
    return id;
}

int cameraPosition(const CameraId &id, int count)
{
    for (int i = 0; i < count; ++i)
        if (strncmp(cameraIdAt(i).data(), id.data(), ORVALIS_NAME_SIZE) == 0)
            return i;
    return -1;
}
