// SPDX-License-Identifier: MIT
// Fuzzes the viewer's conversion of 16-bit pixels of any size and depth, compared with its
// definition.
#include "capture/RawConversion.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/ByteTape.h"

#include <algorithm>
#include <memory>

namespace {

constexpr std::uint8_t untouched = 0xA5;

/// The expected grey value; 16 bits map to the lower half of the grey scale.
std::uint8_t expected(unsigned word, int bits)
{
    const int shift = bits == 16 ? 9 : std::min(bits - 8, 16);
    return static_cast<std::uint8_t>(std::min(word >> shift, 255U));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    viewertest::ByteTape tape(data, size);
    const int width = tape.number<std::int8_t>();
    const int height = tape.number<std::int8_t>();
    const int bits =
        tape.below(4) == 0 ? tape.number<std::int32_t>() : static_cast<int>(tape.below(20));
    const bool empty = width < 1 || height < 1;
    const std::size_t pixels = empty ? 0 : static_cast<std::size_t>(width * height);
    // An odd address, as the function requires no alignment.
    const auto memory = std::make_unique<std::uint8_t[]>(pixels * 2 + 1);
    std::uint8_t *const source = memory.get() + 1;
    const auto words = tape.rest();
    for (std::size_t i = 0; i < pixels * 2 && !words.empty(); ++i)
        source[i] = words[i % words.size()];
    const auto grey = std::make_unique<std::uint8_t[]>(pixels);
    std::fill_n(grey.get(), pixels, untouched);

    rawToGray8(grey.get(), source, width, height, bits);
    for (std::size_t i = 0; i < pixels; ++i) {
        const unsigned word = source[2 * i] | static_cast<unsigned>(source[2 * i + 1]) << 8;
        FUZZ_CHECK(grey[i] == (bits <= 8 ? untouched : expected(word, bits)));
    }
    return 0;
}
