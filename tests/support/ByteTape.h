// SPDX-License-Identifier: MIT
// Reads numbers and texts from a byte sequence, for tests whose steps a fuzzer or generator
// chooses.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace viewertest {

/// Returns zeros after the end. Not thread-safe.
class ByteTape {
public:
    explicit ByteTape(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}
    ByteTape(const std::uint8_t *data, std::size_t size) : bytes_(data, data + size) {}

    bool atEnd() const { return next_ >= bytes_.size(); }
    std::size_t left() const { return bytes_.size() - next_; }

    /// The next sizeof(Number) bytes in native byte order.
    template <typename Number> Number number()
    {
        static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>);
        Number value{};
        const std::vector<std::uint8_t> read = bytes(sizeof value);
        std::copy(read.begin(), read.end(), reinterpret_cast<std::uint8_t *>(&value));
        return value;
    }

    /// A number from 0 to limit - 1, from one byte if that is enough.
    std::uint32_t below(std::uint32_t limit)
    {
        return (limit <= 256 ? number<std::uint8_t>() : number<std::uint32_t>()) % limit;
    }

    /// At most `size` bytes; fewer near the end.
    std::vector<std::uint8_t> bytes(std::size_t size)
    {
        const auto first = bytes_.begin() + static_cast<std::ptrdiff_t>(next_);
        const std::size_t count = std::min(left(), size);
        next_ += count;
        return {first, first + static_cast<std::ptrdiff_t>(count)};
    }

    /// A text of at most `longest` bytes, any of them; its length is read first.
    std::string text(std::uint32_t longest)
    {
        const std::vector<std::uint8_t> read = bytes(below(longest + 1));
        return {read.begin(), read.end()};
    }

    std::vector<std::uint8_t> rest() { return bytes(left()); }

private:
    std::vector<std::uint8_t> bytes_;
    std::size_t next_ = 0;
};

} // namespace viewertest
