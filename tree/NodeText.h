// SPDX-License-Identifier: MIT
// Reads the texts and flags that the camera library writes, within bounds.
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstring>

/// The bytes of a fixed-size buffer up to its NUL, or all of them if there is none.
template <std::size_t N> QByteArray bytesOf(const char (&buffer)[N])
{
    return QByteArray(buffer, static_cast<int>(qstrnlen(buffer, N)));
}

/// 0 or 1, even if a library wrote some other byte to the flag.
inline int numberOf(const bool &flag)
{
    unsigned char byte = 0;
    std::memcpy(&byte, &flag, sizeof byte);
    return byte != 0;
}
