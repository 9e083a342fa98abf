// SPDX-License-Identifier: MIT
// All pixel formats of the library, for fuzzers that choose one by index.
#pragma once

#include "library/convert/PixelFormat.h"

#include <cstdint>
#include <vector>

namespace fuzz {

/// Finds the formats by their codes, which consist of a colour class, bits per pixel and a number.
inline std::vector<const orvalis::PixelFormat *> allFormats()
{
    std::vector<const orvalis::PixelFormat *> found;
    for (const std::uint32_t room :
         {0x0108U, 0x010AU, 0x010CU, 0x010EU, 0x0110U, 0x020CU, 0x0210U, 0x0218U, 0x021EU, 0x0220U,
          0x0224U, 0x0228U, 0x0230U, 0x0240U}) {
        for (std::uint32_t number = 0; number < 0x200; ++number) {
            if (const auto *format = orvalis::findPixelFormat(room << 16 | number))
                found.push_back(format);
        }
    }
    return found;
}

} // namespace fuzz
