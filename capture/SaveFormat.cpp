// SPDX-License-Identifier: MIT
// The formats that frames are saved in.
#include "capture/SaveFormat.h"

QString nameOf(SaveFormat format)
{
    switch (format) {
    case SaveFormat::Bmp:
        return QStringLiteral("BMP");
    case SaveFormat::Jpg:
        return QStringLiteral("JPG");
    case SaveFormat::Png:
        return QStringLiteral("PNG");
    case SaveFormat::Tif:
        return QStringLiteral("TIF");
    case SaveFormat::Raw:
        return QStringLiteral("RAW");
    case SaveFormat::Rgb:
        break;
    }
    return QStringLiteral("RGB");
}

QStringList namesOf(std::initializer_list<SaveFormat> formats)
{
    QStringList names;
    for (const SaveFormat format : formats)
        names << nameOf(format);
    return names;
}

std::optional<SaveFormat> saveFormatNamed(const QString &name)
{
    for (const SaveFormat format : {SaveFormat::Bmp, SaveFormat::Jpg, SaveFormat::Png,
                                    SaveFormat::Tif, SaveFormat::Raw, SaveFormat::Rgb})
        if (name == nameOf(format))
            return format;
    return std::nullopt;
}

SaveContent contentOf(const QString &format)
{
    if (format.contains(nameOf(SaveFormat::Raw)))
        return SaveContent::Raw;
    return format.contains(nameOf(SaveFormat::Rgb)) ? SaveContent::Rgb : SaveContent::Image;
}
