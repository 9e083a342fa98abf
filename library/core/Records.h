// SPDX-License-Identifier: MIT
// Converts internal types to the fixed-size records of the interface.
#pragma once

#include "library/core/NodeMap.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

/// Copies `text` to a buffer of `capacity` bytes, truncated if necessary, always with a NUL.
void copyText(char *out, std::size_t capacity, std::string_view text);

template <std::size_t N> void copyText(char (&out)[N], std::string_view text)
{
    copyText(out, N, text);
}

/// Converts to the nearest 32-bit value.
std::int32_t toInt32(double value);
std::int32_t toInt32(std::int64_t value);
std::uint32_t toUint32(double value);

/// Converts the 32 bits that a caller passes for an integer node to the node's number. `present` is
/// the node's value and bounds: for a node of unsigned 32-bit numbers the bits are the bit pattern.
/// ORVALIS_ERROR_ACCESS_DENIED for a node that needs more bits: what the caller has read may be
/// truncated, and must not be written back.
OResult fromInt32(std::int32_t bits, const IntegerValue &present, std::int64_t &number);

/// Each fills the whole record; on input, `count` of a list is its capacity.
void fillRecord(const std::vector<std::string> &names, ONodeList &list);
void fillRecord(const NodeInfo &info, ONodeInfo &record);
void fillRecord(const IntegerValue &value, OIntNode &record);
void fillRecord(const FloatValue &value, OFloatNode &record);
void fillRecord(const EnumerationValue &value, OEnumNode &record);

} // namespace orvalis
