// SPDX-License-Identifier: MIT
// One look at the sensor: its present size, and the newest frame at its place.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QImage>
#include <QString>

#include <functional>

class SensorCanvas;

/// What the sensor preview shows: the GUI thread's copies.
struct PreviewSource {
    OCameraHandle camera = nullptr; ///< not owned; null: nothing to show
    QString pixelFormat;
};

/// Reads the size of the sensor, fits the canvas and its buffers to it, grabs one frame and paints
/// it. The camera must not get a larger sensor meanwhile: the library writes as many pixels as the
/// sensor has when the frame comes. Without a camera it calls nothing. Takes as long as the grab,
/// at most a second. Any thread, one at a time per canvas.
/// @param show takes a white sensor when the size is another than before, then the picture; nothing
///        without a frame
void lookAtSensor(const PreviewSource &source, SensorCanvas &canvas,
                  const std::function<void(QImage)> &show);
