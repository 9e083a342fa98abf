// SPDX-License-Identifier: MIT
// Queries the camera library for the cameras on the bus. Bounds every count and string that the
// library returns.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QString>
#include <QStringList>

#include <array>

/// A camera's ID, with room for the terminating NUL that the library may omit.
using CameraId = std::array<char, ORVALIS_NAME_SIZE + 1>;

/// The ID as text (Latin-1).
QString cameraIdText(const CameraId &id);

/// Display names of all cameras, in the library's order. Any thread.
QStringList cameraNames();

/// The ID of camera `index`; empty if the library reports none. Any thread.
CameraId cameraIdAt(int index);

/// The position of the camera with this ID among the first `count`, -1 if it is absent. Any thread.
int cameraPosition(const CameraId &id, int count);
