// SPDX-License-Identifier: MIT
// Recognises integer nodes that hold IPv4 addresses, and parses typed addresses.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// True for a node whose value is an IPv4 address, most significant byte first.
bool isAddressNode(const QByteArray &name);

/// Parses an address: dotted, such as "192.168.1.1" (four decimal numbers up to 255), or an
/// unsigned decimal number up to 4294967295. Ignores blanks around it. Empty for any other text.
std::optional<quint32> addressFrom(const QString &text);
