// SPDX-License-Identifier: MIT
// Invalid answers, of exactly the sizes that OrvalisAPI.h documents.
#pragma once

#include "sdk/OrvalisAPI.h"
#include "tests/support/ByteTape.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <span>

namespace fakeorvalis {

/// Hostile output values, from a seeded generator or from a tape. Not thread-safe: the library's
/// lock guards it.
class HostileSource {
public:
    explicit HostileSource(std::uint32_t seed) : generator_(seed) {}
    /// After the end of the tape, answers are harmless: success, zeros, empty texts.
    explicit HostileSource(viewertest::ByteTape tape) : tape_(std::move(tape)) {}

    /// True in `share` percent of the calls.
    bool chance(unsigned share) { return below(100) < share; }
    /// Success in three of four calls, else a documented or an undocumented code.
    std::int32_t result();

    void fill(std::int32_t &value);
    void fill(std::uint32_t &value);
    void fill(float &value);
    void fill(double &value);
    void fill(bool &value) { value = chance(50); } // another byte would be undefined in the caller
    void fill(OCameraInfo &info);
    void fill(OSizeInfo &size);
    void fill(ONodeList &list);
    void fill(ONodeInfo &info);
    void fill(OIntNode &node);
    void fill(OFloatNode &node);
    void fill(OEnumNode &node);
    /// Sets sizes and depth; keeps the planes, which belong to the caller.
    void fill(OImageFrame &frame);
    /// Mostly all bytes without a NUL, sometimes an empty string.
    void text(std::span<char> buffer);

private:
    std::uint32_t below(std::uint32_t limit);
    std::uint32_t word();
    void textFromTape(std::span<char> buffer);

    std::mt19937 generator_;
    std::optional<viewertest::ByteTape> tape_;
};

} // namespace fakeorvalis
