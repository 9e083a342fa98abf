// SPDX-License-Identifier: MIT
// Answers that no sane library gives, of exactly the sizes that OrvalisAPI.h documents.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

namespace fakeorvalis {

/// A seeded source of hostile output values. Not safe for threads: the library's lock guards it.
class HostileSource {
public:
    explicit HostileSource(std::uint32_t seed) : generator_(seed) {}

    /// True in `share` of 100 calls.
    bool chance(unsigned share) { return generator_() % 100 < share; }
    /// Success in three of four calls, else one of the documented codes or a number that is none.
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
    /// Sizes and depth; the planes are the caller's and stay as they are.
    void fill(OImageFrame &frame);
    /// Mostly all bytes without a NUL, sometimes an empty string.
    void text(std::span<char> buffer);

private:
    std::mt19937 generator_;
};

} // namespace fakeorvalis
