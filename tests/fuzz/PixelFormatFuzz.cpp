// SPDX-License-Identifier: MIT
// Fuzzes the table of pixel formats: codes, names and sizes of any value.
#include "library/convert/Convert.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/ByteTape.h"

#include <string>

namespace {

using orvalis::findPixelFormat;
using orvalis::PixelFormat;

void checkFormat(const PixelFormat &format)
{
    FUZZ_CHECK(findPixelFormat(format.code) == &format);
    FUZZ_CHECK(findPixelFormat(format.name) == &format);
    FUZZ_CHECK(format.depth >= 8 && format.depth <= format.bitsPerPixel);
    FUZZ_CHECK(format.isMono() + format.isBayer() + format.hasDirectColor() == 1);
    const PixelFormat *unpacked = orvalis::unpackedFormat(format);
    FUZZ_CHECK(unpacked != nullptr && !orvalis::isPacked(*unpacked));
    FUZZ_CHECK(unpacked->kind == format.kind && unpacked->depth == format.depth);
    FUZZ_CHECK((unpacked == &format) == !orvalis::isPacked(format));
}

void checkSize(const PixelFormat &format, std::uint32_t width, std::uint32_t height)
{
    __extension__ using Wide = unsigned __int128;
    const Wide bits = Wide{width} * height * format.bitsPerPixel;
    const Wide bytes = (bits + 7) / 8;
    const bool overflows = bits >> 64 != 0;
    FUZZ_CHECK(orvalis::imageBytes(format, width, height) == (overflows ? 0 : bytes));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    viewertest::ByteTape tape(data, size);
    const auto width = tape.number<std::uint32_t>();
    const auto height = tape.number<std::uint32_t>();
    const auto code = tape.number<std::uint32_t>();
    const std::vector<std::uint8_t> rest = tape.rest();
    const std::string name(rest.begin(), rest.end());
    const PixelFormat *byCode = findPixelFormat(code);
    FUZZ_CHECK(byCode == nullptr || byCode->code == code);
    for (const PixelFormat *format : {byCode, findPixelFormat(name)}) {
        if (format == nullptr)
            continue;
        checkFormat(*format);
        checkSize(*format, width, height);
    }
    return 0;
}
