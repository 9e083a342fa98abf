// SPDX-License-Identifier: MIT
// From the library's own types to the fixed-size records of the interface.
#pragma once

#include "library/core/NodeMap.h"

#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

/// Copies `text` to a buffer of `capacity` bytes, cut if it is longer, always with its NUL.
void copyText(char *out, std::size_t capacity, std::string_view text);

template <std::size_t N> void copyText(char (&out)[N], std::string_view text)
{
    copyText(out, N, text);
}

/// The nearest 32-bit value.
std::int32_t toInt32(double value);
std::int32_t toInt32(std::int64_t value);
std::uint32_t toUint32(double value);

/// The number that a caller means with the 32 bits that it gives for an integer node, which is as
/// `present` says: of a node of unsigned 32-bit numbers they are the bit pattern.
/// ORVALIS_ERROR_ACCESS_DENIED for a node that needs more bits: what was read of it may be cut, and
/// must not be written back.
OResult fromInt32(std::int32_t bits, const IntegerValue &present, std::int64_t &number);

/// Fill the whole record; `count` of lists is taken as their capacity.
void fillRecord(const std::vector<std::string> &names, ONodeList &list);
void fillRecord(const NodeInfo &info, ONodeInfo &record);
void fillRecord(const IntegerValue &value, OIntNode &record);
void fillRecord(const FloatValue &value, OFloatNode &record);
void fillRecord(const EnumerationValue &value, OEnumNode &record);

} // namespace orvalis
