// SPDX-License-Identifier: MIT
// The formats that frames are saved in.
#pragma once

#include <QString>
#include <QStringList>

#include <initializer_list>
#include <optional>

/// The formats in the control panel. The name of a format is also the suffix of its files.
enum class SaveFormat { Bmp, Jpg, Png, Tif, Raw, Rgb };

/// "BMP"
QString nameOf(SaveFormat format);
/// The format with that name, if there is one.
std::optional<SaveFormat> saveFormatNamed(const QString &name);
/// In the same order.
QStringList namesOf(std::initializer_list<SaveFormat> formats);

/// The content of a file.
enum class SaveContent {
    Image, ///< the displayed image, encoded according to the suffix
    Raw,   ///< the original samples, without a header
    Rgb,   ///< 8 bits each of R, G and B, without a header
};

/// @param format its name; a name that contains "RAW" or else "RGB" is a dump, any other an image
SaveContent contentOf(const QString &format);
