// SPDX-License-Identifier: MIT
// Asks the camera library which cameras are on the bus, trusting neither its counts nor its
// strings.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QString>
#include <QStringList>

#include <array>

/// A camera's identification and the NUL that the library may have left out.
using CameraId = std::array<char, ORVALIS_NAME_SIZE + 1>;

/// The ID as text (Latin-1).
QString cameraIdText(const CameraId &id);

/// Display names of all cameras, in the library's order. Any thread.
QStringList cameraNames();

/// The ID of camera `index`; empty if the library does not tell. Any thread.
CameraId cameraIdAt(int index);

/// The position of the camera with this ID among the first `count`, -1 if it is not there. Any
/// thread.
int cameraPosition(const CameraId &id, int count);
