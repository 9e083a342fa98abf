// SPDX-License-Identifier: MIT
// The control panel's arithmetic: exposure steps, gamma slider, region mapping, save formats.
#pragma once

#include <QPoint>
#include <QSize>
#include <QStringList>

/// `value` without its fraction; the nearest int if it does not fit, 0 if it is not a number.
int truncated(double value);

/// The end of a slider from `minimum` to `maximum`, nearer where their distance does not fit an
/// int: Qt divides by zero when it draws a slider from -1 to the largest int.
int sliderEnd(int minimum, int maximum);

/// Step of an exposure time in microseconds: finer for shorter times. Negative times have step 1.
int shutterStep(qlonglong microseconds);
/// True if the time is a whole multiple of its step; only such times are sent to the camera.
bool isOnShutterStep(qlonglong microseconds);
/// The nearest time that is not above `microseconds` and lies on its step.
int snappedShutter(int microseconds);

/// True if the gamma slider works in tenths, so that a range that ends at 1.0 has more than one
/// place.
bool isGammaScaled(float maximum);
/// Slider value of a gamma, of a bound or of one read from the camera.
int gammaSliderValue(float gamma, bool scaled);
/// Slider value of a gamma in the spin box: to the nearest tenth if scaled.
int gammaSliderFromSpin(double gamma, bool scaled);
double gammaFromSlider(int value, bool scaled);

/// A region of interest in sensor pixels. Sizes are negative where the user drew backwards.
struct Region {
    int offsetX;
    int offsetY;
    int width;
    int height;
};
/// Scales a rectangle drawn from `start` to `end` on a label of size `label` up to the sensor.
Region regionFromDrag(QPoint start, QPoint end, QSize label, QSize sensor);

/// Formats that images can be saved in: `always`, and "RGB" unless `pixelFormat` contains "Mono".
QStringList saveExtensions(const QStringList &always, const QString &pixelFormat);
