// SPDX-License-Identifier: MIT
// Measures of an image that camera settings change.
#pragma once

#include <QImage>

namespace picturemeasures {

/// Mean of R, G and B over the image, 0 to 255.
double meanBrightness(const QImage &picture);
/// Mean of the darkest tenth of the pixels, 0 to 255.
double darkestBrightness(const QImage &picture);
/// Ratios of the channels' means.
double redOverGreen(const QImage &picture);
double greenOverBlue(const QImage &picture);
double blueOverGreen(const QImage &picture);
/// Standard deviation of the brightness.
double contrast(const QImage &picture);
/// Mean saturation (HSV) of the pixels that are neither very dark nor clipped, 0 to 1.
double saturation(const QImage &picture);
/// Mean hue of the clearly coloured pixels in the most saturated part of the image, as the angle of
/// the mean colour vector in degrees. Use it on one colour patch.
double hueAngle(const QImage &picture);
/// Mean absolute difference of brightness between pixels two columns apart.
double edgeEnergy(const QImage &picture);

} // namespace picturemeasures
