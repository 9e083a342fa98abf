// SPDX-License-Identifier: MIT
// Which integer nodes are IPv4 addresses, and the number that a typed address stands for.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// True for a node whose number is an IPv4 address, most significant byte first.
bool isAddressNode(const QByteArray &name);

/// The bits of an address: dotted, such as "192.168.1.1" (four decimal numbers up to 255), or as an
/// unsigned decimal number up to 4294967295. Blanks around it do not count. Nothing for any other
/// text.
std::optional<quint32> addressFrom(const QString &text);
