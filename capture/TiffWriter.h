// SPDX-License-Identifier: MIT
// Writes TIFF files where Qt has no plugin that can.
#pragma once

#include <QByteArray>
#include <QImage>

/// `image` as a little-endian baseline TIFF without compression: 8-bit grey if the image is grey,
/// else 24-bit RGB. Empty for a null image and for one of 2 GiB or more.
QByteArray tiffFile(const QImage &image);
