// SPDX-License-Identifier: MIT
// One refresh of the sensor preview: the sensor's current size, and the newest frame in it.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QImage>
#include <QString>

#include <functional>

class SensorCanvas;

/// Source of the sensor preview, copied from the GUI thread.
struct PreviewSource {
    OCameraHandle camera = nullptr; ///< not owned; null: no camera
    QString pixelFormat;
};

/// Reads the size of the sensor, fits the canvas and its buffers to it, grabs one frame and paints
/// it. The sensor's size must not grow meanwhile: the library writes as many pixels as the sensor
/// has when the frame arrives. Does nothing without a camera. Takes as long as the grab, at most a
/// second. Any thread, one at a time per canvas.
/// @param display receives a white sensor if the size has changed, then the image if the grab
///        returned a frame
void refreshPreview(const PreviewSource &source, SensorCanvas &canvas,
                    const std::function<void(QImage)> &display);
