// SPDX-License-Identifier: MIT
// What the panel's GUI thread shares with the threads that read from it.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QImage>
#include <QString>

/// Save options as the display thread reads them.
struct SaveOption {
    QString path;
    QString format;
    int count = 1; ///< 1: one frame per arming; -1: every displayed frame
};

/// The GUI thread's copies for the sensor preview thread, and that thread's latest picture.
struct PreviewState {
    OCameraHandle camera = nullptr;
    OSizeInfo size{};
    QString pixelFormat;
    QImage picture;      ///< the newest one, until the GUI thread takes it
    bool posted = false; ///< the GUI thread has been told of `picture`
    bool stop = false;
    int paused = 0; ///< above 0 while settings are reloaded and `size` may be out of date
};
