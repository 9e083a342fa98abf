// SPDX-License-Identifier: MIT
// The control panel's arithmetic: exposure steps, gamma slider, region mapping, save formats.
#pragma once

#include <QPoint>
#include <QSize>
#include <QStringList>

/// `value` truncated to an int; the nearest int if it does not fit, 0 for NaN.
int truncated(double value);

/// The end of a slider from `minimum` to `maximum`, reduced if their distance does not fit an int:
/// Qt divides by zero when it draws a slider from -1 to the largest int.
int sliderEnd(int minimum, int maximum);

/// Step of an exposure time in microseconds: finer for shorter times. Negative times have step 1.
int shutterStep(qlonglong microseconds);
/// True if the time is a whole multiple of its step; only such times are sent to the camera.
bool isOnShutterStep(qlonglong microseconds);
/// `microseconds` rounded down to a multiple of its step.
int snappedShutter(int microseconds);

/// True if the gamma slider works in tenths, so that it has several positions if the range ends at
/// 1.0.
bool isGammaScaled(float maximum);
/// Slider value of a bound of gamma or of a gamma read from the camera.
int gammaSliderValue(float gamma, bool scaled);
/// Slider value of a gamma in the spin box, rounded to the nearest tenth if scaled.
int gammaSliderFromSpin(double gamma, bool scaled);
double gammaFromSlider(int value, bool scaled);

/// A region of interest in sensor pixels. Sizes are negative if the user drew backwards.
struct Region {
    int offsetX;
    int offsetY;
    int width;
    int height;
};
/// Scales a rectangle drawn from `start` to `end` on a label of size `label` to the sensor.
Region regionFromDrag(QPoint start, QPoint end, QSize label, QSize sensor);

/// Formats for saving: `always`, plus "RGB" unless `pixelFormat` contains "Mono".
QStringList saveExtensions(const QStringList &always, const QString &pixelFormat);
