// SPDX-License-Identifier: MIT
// One row of an image as three rows of one colour each, and the way back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvalis {

/// What one thread works on: small enough for the nearest cache, and vector units like it.
struct RowPlanes {
    explicit RowPlanes(std::size_t width) : r(width), g(width), b(width) {}
    std::vector<std::uint8_t> r, g, b;
};

/// `count` pixels R, G, B in turn. `out` has count x 3 bytes.
void interleave(const std::uint8_t *r, const std::uint8_t *g, const std::uint8_t *b,
                std::size_t count, std::uint8_t *out);

inline void interleave(const RowPlanes &row, std::uint8_t *out)
{
    interleave(row.r.data(), row.g.data(), row.b.data(), row.r.size(), out);
}

} // namespace orvalis
