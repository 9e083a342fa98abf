// SPDX-License-Identifier: MIT
// Converts internal types to the fixed-size records of the interface.
#include "library/core/Records.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace orvalis {

namespace {

template <class Target> Target saturate(double value)
{
    using Limits = std::numeric_limits<Target>;
    if (std::isnan(value))
        return 0;
    if (value <= static_cast<double>(Limits::min()))
        return Limits::min();
    if (value >= static_cast<double>(Limits::max()))
        return Limits::max();
    return static_cast<Target>(value);
}

using Int32 = std::numeric_limits<std::int32_t>;
using Int64 = std::numeric_limits<std::int64_t>;
using Uint32 = std::numeric_limits<std::uint32_t>;

/// True for a node whose numbers are unsigned and need 32 bits, such as an address.
bool isUnsigned32(const IntegerValue &node)
{
    return node.minimum >= 0 && node.maximum > Int32::max() && node.maximum <= Uint32::max();
}

bool fitsInt32(std::int64_t value) { return value >= Int32::min() && value <= Int32::max(); }

/// True for a node whose numbers fit in signed 32 bits. Many descriptions give no bounds; the
/// present value decides then.
bool isSigned32(const IntegerValue &node)
{
    const bool unbounded = node.minimum == Int64::min() && node.maximum == Int64::max();
    return unbounded ? fitsInt32(node.value) : fitsInt32(node.minimum) && fitsInt32(node.maximum);
}

std::int32_t patternOf(std::int64_t value)
{
    const std::int64_t nearest = std::clamp<std::int64_t>(value, 0, Uint32::max());
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(nearest));
}

} // namespace

void copyText(char *out, std::size_t capacity, std::string_view text)
{
    const std::size_t size = std::min(text.size(), capacity - 1);
    std::memcpy(out, text.data(), size);
    out[size] = '\0';
}

std::int32_t toInt32(double value) { return saturate<std::int32_t>(value); }
std::uint32_t toUint32(double value) { return saturate<std::uint32_t>(value); }

std::int32_t toInt32(std::int64_t value)
{
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Int32::min(), Int32::max()));
}

OResult fromInt32(std::int32_t bits, const IntegerValue &present, std::int64_t &number)
{
    if (!isUnsigned32(present) && !isSigned32(present))
        return ORVALIS_ERROR_ACCESS_DENIED;
    number = isUnsigned32(present) ? std::int64_t{static_cast<std::uint32_t>(bits)} : bits;
    return ORVALIS_OK;
}

void fillRecord(const std::vector<std::string> &names, ONodeList &list)
{
    const std::size_t capacity = std::min<std::size_t>(list.count, ORVALIS_NODE_LIST_SIZE);
    const std::size_t count = std::min(names.size(), capacity);
    for (std::size_t i = 0; i < count; ++i)
        copyText(list.names[i], names[i]);
    list.count = static_cast<std::uint32_t>(count);
}

void fillRecord(const NodeInfo &info, ONodeInfo &record)
{
    record = {};
    record.type = info.type;
    record.accessMode = info.access;
    record.lockable = info.lockable ? 1 : 0;
    record.visibility = info.visibility;
    copyText(record.displayName, info.displayName);
    copyText(record.description, info.description);
    copyText(record.unit, info.unit);
}

void fillRecord(const IntegerValue &value, OIntNode &record)
{
    record = {toInt32(value.value), toInt32(value.minimum), toInt32(value.maximum),
              std::max(1, toInt32(value.increment))};
    if (isUnsigned32(value)) {
        // Every bit pattern is permitted; the camera refuses numbers outside its real bounds.
        record.value = patternOf(value.value);
        record.minimum = Int32::min();
        record.maximum = Int32::max();
    }
}

void fillRecord(const FloatValue &value, OFloatNode &record)
{
    record = {value.value, value.minimum, value.maximum, value.increment};
}

void fillRecord(const EnumerationValue &value, OEnumNode &record)
{
    const std::size_t capacity = std::min<std::size_t>(record.count, ORVALIS_ENUM_SIZE);
    const std::size_t count = std::min(value.entries.size(), capacity);
    for (std::size_t i = 0; i < count; ++i) {
        copyText(record.names[i], value.entries[i].name);
        record.values[i] = toInt32(value.entries[i].value);
    }
    const bool written = value.current >= 0 && static_cast<std::size_t>(value.current) < count;
    record.count = static_cast<std::uint32_t>(count);
    record.currentIndex = written ? value.current : -1;
}

} // namespace orvalis
