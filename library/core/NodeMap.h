// SPDX-License-Identifier: MIT
// The feature nodes of one camera, whatever it is made of.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

/// What a node is and what may be done with it at present.
struct NodeInfo {
    ONodeType type = ORVALIS_NODE_VALUE;
    OAccessMode access = ORVALIS_ACCESS_NOT_IMPLEMENTED;
    bool lockable = false; ///< becomes read-only while the camera acquires
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

/// Entries that an enumeration offers at present. `current` is an index into `entries`, or -1.
struct EnumerationValue {
    /// One entry. The value is what stands in the camera's register.
    struct Entry {
        std::string name;
        std::int64_t value = 0;
    };
    std::vector<Entry> entries;
    int current = -1;
};

/// The feature nodes of one camera. Every function may be called from any thread at any time; each
/// one is complete in itself. Results: ORVALIS_OK, ORVALIS_ERROR_NOT_FOUND (no node of that name),
/// ORVALIS_ERROR_WRONG_TYPE, ORVALIS_ERROR_ACCESS_DENIED, ORVALIS_ERROR_OUT_OF_RANGE,
/// ORVALIS_ERROR_CONNECTION_LOST, ORVALIS_ERROR_DEVICE. After a failure outputs are unchanged.
class NodeMap {
public:
    virtual ~NodeMap() = default;

    /// Names below a category, in the camera's order; empty for a node that is no category.
    virtual OResult list(std::string_view category, std::vector<std::string> &children) = 0;
    /// What the node is, and its present access.
    virtual OResult info(std::string_view name, NodeInfo &info) = 0;

    /// Integer nodes only, here and below.
    virtual OResult getInteger(std::string_view name, IntegerValue &value) = 0;
    /// Refuses values out of bounds, rounds down to the increment.
    virtual OResult setInteger(std::string_view name, std::int64_t value) = 0;
    /// Floating-point nodes only, here and below.
    virtual OResult getFloat(std::string_view name, FloatValue &value) = 0;
    /// Refuses values out of bounds and NaN.
    virtual OResult setFloat(std::string_view name, double value) = 0;
    /// Boolean nodes only, here and below.
    virtual OResult getBoolean(std::string_view name, bool &value) = 0;
    /// Switches on or off.
    virtual OResult setBoolean(std::string_view name, bool value) = 0;
    /// Enumerations only, here and below.
    virtual OResult getEnumeration(std::string_view name, EnumerationValue &value) = 0;
    /// An entry that is not offered at present is ORVALIS_ERROR_NOT_FOUND.
    virtual OResult setEnumeration(std::string_view name, std::string_view entry) = 0;
    /// String nodes only; the text forms of other types are made in `Camera`.
    virtual OResult getText(std::string_view name, std::string &value) = 0;
    /// ORVALIS_ERROR_OUT_OF_RANGE for a text that is too long.
    virtual OResult setText(std::string_view name, std::string_view value) = 0;
    /// Commands only.
    virtual OResult execute(std::string_view name) = 0;
};

} // namespace orvalis
