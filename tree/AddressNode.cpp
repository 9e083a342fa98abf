// SPDX-License-Identifier: MIT
// Recognises integer nodes that hold IPv4 addresses, and parses typed addresses.
#include "tree/AddressNode.h"

#include <QStringList>

#include <algorithm>

namespace {

/// Parses one of the four numbers of a dotted address. Leading zeros do not make it octal.
std::optional<quint32> byteFrom(const QString &text)
{
    const bool digits = std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
    const quint32 value = text.toUInt();
    if (!digits || text.isEmpty() || text.size() > 3 || value > 255)
        return std::nullopt;
    return value;
}

} // namespace

bool isAddressNode(const QByteArray &name)
{
    return name.contains("Persistent") || name == "GevSCDA";
}

std::optional<quint32> addressFrom(const QString &text)
{
    bool isNumber = false;
    const quint32 number = text.toUInt(&isNumber);
    if (isNumber)
        return number;
    const QStringList parts = text.trimmed().split(QLatin1Char('.'));
    if (parts.size() != 4)
        return std::nullopt;
    quint32 bits = 0;
    for (const QString &part : parts) {
        const auto byte = byteFrom(part);
        if (!byte)
            return std::nullopt;
        bits = bits << 8 | *byte;
    }
    return bits;
}
