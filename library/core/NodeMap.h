// SPDX-License-Identifier: MIT
// The interface to the feature nodes of one camera.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

/// The description and present access of a node.
struct NodeInfo {
    ONodeType type = ORVALIS_NODE_VALUE;
    OAccessMode access = ORVALIS_ACCESS_NOT_IMPLEMENTED;
    bool lockable = false; ///< read-only while the camera acquires
    std::uint8_t visibility = 0;
    std::string displayName;
    std::string description;
    std::string unit;
};

/// Value and present bounds of an integer node. `increment` is at least 1.
struct IntegerValue {
    std::int64_t value = 0;
    std::int64_t minimum = 0;
    std::int64_t maximum = 0;
    std::int64_t increment = 1;
};

/// Value and present bounds of a floating-point node. `increment` is 0 if there is none.
struct FloatValue {
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    double increment = 0;
};

/// Converts to floats, exact up to 53 bits.
inline FloatValue asFloat(const IntegerValue &value)
{
    return {static_cast<double>(value.value), static_cast<double>(value.minimum),
            static_cast<double>(value.maximum), static_cast<double>(value.increment)};
}

/// A part of a number. What is not requested costs no round trip.
enum class NumberPart { Value, Bounds };

/// Entries that an enumeration offers at present. `current` is an index into `entries`, or -1.
struct EnumerationValue {
    /// One entry. `value` is the content of the camera's register.
    struct Entry {
        std::string name;
        std::int64_t value = 0;
    };
    std::vector<Entry> entries;
    int current = -1;
};

/// The name of the present entry; empty if it is unknown.
inline std::string_view nameOf(const EnumerationValue &value)
{
    const bool known =
        value.current >= 0 && static_cast<std::size_t>(value.current) < value.entries.size();
    return known ? std::string_view(value.entries[static_cast<std::size_t>(value.current)].name)
                 : std::string_view();
}

/// The names of all entries.
inline std::vector<std::string> namesOf(const EnumerationValue &value)
{
    std::vector<std::string> names;
    for (const EnumerationValue::Entry &entry : value.entries)
        names.push_back(entry.name);
    return names;
}

/// The feature nodes of one camera. Every function may be called from any thread at any time; each
/// call is atomic. Results: ORVALIS_OK, ORVALIS_ERROR_NOT_FOUND (no node of that name),
/// ORVALIS_ERROR_WRONG_TYPE, ORVALIS_ERROR_ACCESS_DENIED, ORVALIS_ERROR_OUT_OF_RANGE,
/// ORVALIS_ERROR_CONNECTION_LOST, ORVALIS_ERROR_DEVICE. After a failure, outputs are unchanged.
class NodeMap {
public:
    virtual ~NodeMap() = default;

    /// Begins a group of calls: see NodeAccess.
    virtual void beginAccess() {}
    /// Ends the group.
    virtual void endAccess() {}

    /// Names below a category, in the camera's order; empty for a node that is not a category.
    virtual OResult list(std::string_view category, std::vector<std::string> &children) = 0;
    /// The node's description and present access.
    virtual OResult info(std::string_view name, NodeInfo &info) = 0;

    /// Integer nodes only; so is setInteger().
    virtual OResult getInteger(std::string_view name, IntegerValue &value) = 0;
    /// Refuses values out of bounds, rounds down to the increment.
    virtual OResult setInteger(std::string_view name, std::int64_t value) = 0;
    /// Floating-point nodes only; so is setFloat().
    virtual OResult getFloat(std::string_view name, FloatValue &value) = 0;
    /// Refuses values out of bounds and NaN.
    virtual OResult setFloat(std::string_view name, double value) = 0;
    /// Reads value and bounds of a number of any type that exists but is not available at present.
    /// ORVALIS_ERROR_ACCESS_DENIED if they are unknown.
    virtual OResult peekNumber(std::string_view name, FloatValue &value)
    {
        static_cast<void>(name);
        static_cast<void>(value);
        return ORVALIS_ERROR_ACCESS_DENIED;
    }
    /// Reads value or bounds of a number of any type; the rest of `value` is meaningless then.
    virtual OResult getPart(std::string_view name, NumberPart part, FloatValue &value)
    {
        static_cast<void>(part);
        IntegerValue whole;
        const OResult result = getInteger(name, whole);
        if (result == ORVALIS_ERROR_WRONG_TYPE)
            return getFloat(name, value);
        if (result == ORVALIS_OK)
            value = asFloat(whole);
        return result;
    }
    /// Boolean nodes only; so is setBoolean().
    virtual OResult getBoolean(std::string_view name, bool &value) = 0;
    /// Writes the value.
    virtual OResult setBoolean(std::string_view name, bool value) = 0;
    /// Enumerations only; so are the three functions below.
    virtual OResult getEnumeration(std::string_view name, EnumerationValue &value) = 0;
    /// Only the names of the entries.
    virtual OResult getEntries(std::string_view name, std::vector<std::string> &entries)
    {
        EnumerationValue value;
        const OResult result = getEnumeration(name, value);
        if (result == ORVALIS_OK)
            entries = namesOf(value);
        return result;
    }
    /// Only the name of the present entry; empty if it is unknown or not available.
    virtual OResult getEntry(std::string_view name, std::string &entry)
    {
        EnumerationValue value;
        const OResult result = getEnumeration(name, value);
        if (result == ORVALIS_OK)
            entry = nameOf(value);
        return result;
    }
    /// ORVALIS_ERROR_NOT_FOUND for an entry that is not available at present.
    virtual OResult setEnumeration(std::string_view name, std::string_view entry) = 0;
    /// String nodes only; NodeText converts other types.
    virtual OResult getText(std::string_view name, std::string &value) = 0;
    /// ORVALIS_ERROR_OUT_OF_RANGE for a text that is too long.
    virtual OResult setText(std::string_view name, std::string_view value) = 0;
    /// Commands only.
    virtual OResult execute(std::string_view name) = 0;
};

/// A group of calls to a camera's nodes: selectors, node, automatic mode. Holds the camera's node
/// lock. A register that was read is not read again until the end of the group or the next write.
class NodeAccess {
public:
    NodeAccess(NodeMap &nodes, std::mutex &mutex) : lock_(mutex), nodes_(nodes)
    {
        nodes_.beginAccess();
    }
    ~NodeAccess() { nodes_.endAccess(); }
    NodeAccess(const NodeAccess &) = delete;
    NodeAccess &operator=(const NodeAccess &) = delete;

private:
    const std::lock_guard<std::mutex> lock_;
    NodeMap &nodes_;
};

} // namespace orvalis
