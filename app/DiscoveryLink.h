// SPDX-License-Identifier: MIT
// What discovery passes on pool threads and the main window share.
#pragma once

#include "app/CameraBus.h"
#include "capture/PoolTasks.h"

#include <QStringList>

#include <mutex>

class MainWindow;

/// Outlives the window for as long as a pass hangs in the camera library.
struct DiscoveryLink {
    PoolTasks passes;            ///< passes handed to the pool and not ended
    const void *owner = nullptr; ///< the window's address, to be compared with only

    std::mutex mutex;             // guards all that follows
    MainWindow *window = nullptr; ///< null while the window is not up or goes away
    CameraId cameraId{};          ///< the camera opened last; empty before the first
    int previousCount = 0;        ///< cameras that the last pass found
    QStringList names;            ///< the newest list, while listPosted
    bool listPosted = false;      ///< the GUI has been told to take `names`
    bool closePosted = false;     ///< the GUI has been told to close the camera
};
