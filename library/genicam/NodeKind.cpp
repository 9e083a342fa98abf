// SPDX-License-Identifier: MIT
// Reads and writes one node of Aravis' GenICam engine.
#include "library/genicam/NodeKind.h"

#include "library/core/Device.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <vector>

namespace orvalis {
namespace {

std::uint8_t visibilityOf(ArvGcFeatureNode *node)
{
    switch (arv_gc_feature_node_get_visibility(node)) {
    case ARV_GC_VISIBILITY_EXPERT:
        return 1;
    case ARV_GC_VISIBILITY_GURU:
        return 2;
    case ARV_GC_VISIBILITY_INVISIBLE:
        return 3;
    default:
        return 0;
    }
}

std::string unitOf(ArvGcFeatureNode *node)
{
    switch (nodeType(node)) {
    case ORVALIS_NODE_INTEGER:
        return textOf(arv_gc_integer_get_unit(ARV_GC_INTEGER(node)));
    case ORVALIS_NODE_FLOAT:
        return textOf(arv_gc_float_get_unit(ARV_GC_FLOAT(node)));
    default:
        return {};
    }
}

/// Longer lists are truncated. The longest known lists, those of events, have about a hundred
/// entries.
constexpr std::size_t maxEntries = 512;
constexpr auto entriesTimeout = std::chrono::seconds(2);

/// Entries in the order of the camera's description; the engine's own list is reversed.
std::vector<ArvGcFeatureNode *> entriesOf(ArvGcEnumeration *enumeration)
{
    std::vector<ArvGcFeatureNode *> entries;
    for (ArvDomNode *child = arv_dom_node_get_first_child(ARV_DOM_NODE(enumeration));
         child != nullptr; child = arv_dom_node_get_next_sibling(child))
        if (ARV_IS_GC_ENUM_ENTRY(child))
            entries.push_back(ARV_GC_FEATURE_NODE(child));
    return entries;
}

/// True if the entry is available now.
bool isOffered(ArvGcFeatureNode *entry, NodeReach &reach)
{
    Failure failure;
    if (!reach.isSound(entry, failure))
        return true;
    const bool implemented = arv_gc_feature_node_is_implemented(entry, failure.slot()) || failure;
    return implemented &&
           (arv_gc_feature_node_is_available(entry, failure.slot()) != FALSE || failure);
}

/// Bounds and increments are optional in a camera's description: regards unreadable ones as missing
/// and clears `failure`, unless the camera does not answer. Returns true in that case and keeps
/// `failure`.
bool isSilent(Failure &failure)
{
    if (failure.isSilence())
        return true;
    failure.slot();
    return false;
}

IntegerValue integerBounds(ArvGcInteger *integer, Failure &failure)
{
    IntegerValue bounds;
    bounds.minimum = arv_gc_integer_get_min(integer, failure.slot());
    if (failure)
        bounds.minimum = std::numeric_limits<std::int64_t>::min();
    if (isSilent(failure))
        return bounds;
    bounds.maximum = arv_gc_integer_get_max(integer, failure.slot());
    if (failure)
        bounds.maximum = std::numeric_limits<std::int64_t>::max();
    if (isSilent(failure))
        return bounds;
    bounds.increment = arv_gc_integer_get_inc(integer, failure.slot());
    if (failure || bounds.increment < 1)
        bounds.increment = 1;
    isSilent(failure);
    return bounds;
}

FloatValue floatBounds(ArvGcFloat *number, Failure &failure)
{
    FloatValue bounds;
    bounds.minimum = arv_gc_float_get_min(number, failure.slot());
    if (failure || std::isnan(bounds.minimum))
        bounds.minimum = std::numeric_limits<double>::lowest();
    if (isSilent(failure))
        return bounds;
    bounds.maximum = arv_gc_float_get_max(number, failure.slot());
    if (failure || std::isnan(bounds.maximum))
        bounds.maximum = std::numeric_limits<double>::max();
    if (isSilent(failure))
        return bounds;
    bounds.increment = arv_gc_float_get_inc(number, failure.slot());
    // The engine returns the smallest positive number if there is no increment.
    if (failure || !(bounds.increment > std::numeric_limits<double>::min()))
        bounds.increment = 0;
    isSilent(failure);
    return bounds;
}

/// Writes the value node directly: the engine's enumeration would read the state of every other
/// entry first.
OResult writeEntry(ArvGcFeatureNode *enumeration, ArvGcEnumEntry *entry, Failure &failure)
{
    const gint64 number = arv_gc_enum_entry_get_value(entry, failure.slot());
    if (failure)
        return ORVALIS_OK;
    for (const auto type : {ARV_GC_PROPERTY_NODE_TYPE_P_VALUE, ARV_GC_PROPERTY_NODE_TYPE_VALUE}) {
        if (ArvGcPropertyNode *value = propertyOf(ARV_GC_NODE(enumeration), type)) {
            arv_gc_property_node_set_int64(value, number, failure.slot());
            return ORVALIS_OK;
        }
    }
    return ORVALIS_ERROR_DEVICE;
}

std::int64_t roundedDown(std::int64_t value, const IntegerValue &bounds)
{
    const auto above =
        static_cast<std::uint64_t>(value) - static_cast<std::uint64_t>(bounds.minimum);
    const std::uint64_t steps = above / static_cast<std::uint64_t>(bounds.increment);
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(bounds.minimum) +
                                     steps * static_cast<std::uint64_t>(bounds.increment));
}

} // namespace

ONodeType nodeType(ArvGcFeatureNode *node)
{
    // The engine's enumerations and booleans are integers too, so the order matters.
    if (ARV_IS_GC_CATEGORY(node))
        return ORVALIS_NODE_CATEGORY;
    if (ARV_IS_GC_COMMAND(node))
        return ORVALIS_NODE_COMMAND;
    if (ARV_IS_GC_ENUMERATION(node))
        return ORVALIS_NODE_ENUMERATION;
    if (ARV_IS_GC_BOOLEAN(node))
        return ORVALIS_NODE_BOOLEAN;
    if (ARV_IS_GC_STRING(node))
        return ORVALIS_NODE_STRING;
    if (ARV_IS_GC_FLOAT(node))
        return ORVALIS_NODE_FLOAT;
    if (ARV_IS_GC_INTEGER(node))
        return ORVALIS_NODE_INTEGER;
    return ARV_IS_GC_REGISTER(node) ? ORVALIS_NODE_REGISTER : ORVALIS_NODE_VALUE;
}

NodeInfo describe(ArvGcFeatureNode *node)
{
    NodeInfo info;
    info.type = nodeType(node);
    info.visibility = visibilityOf(node);
    info.displayName = textOf(arv_gc_feature_node_get_display_name(node));
    if (info.displayName.empty())
        info.displayName = textOf(arv_gc_feature_node_get_name(node));
    info.description = textOf(arv_gc_feature_node_get_description(node));
    if (info.description.empty())
        info.description = textOf(arv_gc_feature_node_get_tooltip(node));
    info.unit = unitOf(node);
    return info;
}

OResult readInteger(ArvGcFeatureNode *node, IntegerValue &value, Failure &failure)
{
    ArvGcInteger *integer = ARV_GC_INTEGER(node);
    const gint64 present = arv_gc_integer_get_value(integer, failure.slot());
    if (failure)
        return ORVALIS_OK;
    IntegerValue found = integerBounds(integer, failure);
    found.value = present;
    value = failure ? value : found;
    return ORVALIS_OK;
}

OResult writeInteger(ArvGcFeatureNode *node, std::int64_t value, Failure &failure)
{
    ArvGcInteger *integer = ARV_GC_INTEGER(node);
    const IntegerValue bounds = integerBounds(integer, failure);
    if (failure)
        return ORVALIS_OK;
    if (value < bounds.minimum || value > bounds.maximum)
        return ORVALIS_ERROR_OUT_OF_RANGE;
    arv_gc_integer_set_value(integer, roundedDown(value, bounds), failure.slot());
    return ORVALIS_OK;
}

OResult readFloat(ArvGcFeatureNode *node, FloatValue &value, Failure &failure)
{
    ArvGcFloat *number = ARV_GC_FLOAT(node);
    const double present = arv_gc_float_get_value(number, failure.slot());
    if (failure)
        return ORVALIS_OK;
    FloatValue found = floatBounds(number, failure);
    found.value = present;
    value = failure ? value : found;
    return ORVALIS_OK;
}

OResult writeFloat(ArvGcFeatureNode *node, double value, Failure &failure)
{
    ArvGcFloat *number = ARV_GC_FLOAT(node);
    const FloatValue bounds = floatBounds(number, failure);
    if (failure)
        return ORVALIS_OK;
    if (!(value >= bounds.minimum && value <= bounds.maximum))
        return ORVALIS_ERROR_OUT_OF_RANGE;
    arv_gc_float_set_value(number, value, failure.slot());
    return ORVALIS_OK;
}

OResult readPart(ArvGcFeatureNode *node, NumberPart part, FloatValue &value, Failure &failure)
{
    const bool isFloat = nodeType(node) == ORVALIS_NODE_FLOAT;
    FloatValue found;
    if (part == NumberPart::Bounds) {
        found = isFloat ? floatBounds(ARV_GC_FLOAT(node), failure)
                        : asFloat(integerBounds(ARV_GC_INTEGER(node), failure));
    } else {
        found.value = isFloat ? arv_gc_float_get_value(ARV_GC_FLOAT(node), failure.slot())
                              : static_cast<double>(
                                    arv_gc_integer_get_value(ARV_GC_INTEGER(node), failure.slot()));
    }
    value = failure ? value : found;
    return ORVALIS_OK;
}

OResult readEntry(ArvGcFeatureNode *node, NodeReach &reach, std::string &name, Failure &failure)
{
    ArvGcEnumeration *enumeration = ARV_GC_ENUMERATION(node);
    const gint64 present = arv_gc_enumeration_get_int_value(enumeration, failure.slot());
    if (failure)
        return ORVALIS_OK;
    std::string found;
    for (ArvGcFeatureNode *entry : entriesOf(enumeration)) {
        Failure ignored;
        const gint64 number = arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(entry), ignored.slot());
        if (!ignored && number == present && isOffered(entry, reach)) {
            found = textOf(arv_gc_feature_node_get_name(entry));
            break;
        }
    }
    name = std::move(found);
    return ORVALIS_OK;
}

std::vector<EnumerationValue::Entry> offeredEntries(ArvGcFeatureNode *node, NodeReach &reach)
{
    const Clock::time_point limit = Clock::now() + entriesTimeout;
    std::vector<EnumerationValue::Entry> offered;
    std::vector<ArvGcFeatureNode *> entries = entriesOf(ARV_GC_ENUMERATION(node));
    entries.resize(std::min(entries.size(), maxEntries));
    for (ArvGcFeatureNode *entry : entries) {
        Failure ignored;
        const gint64 number = arv_gc_enum_entry_get_value(ARV_GC_ENUM_ENTRY(entry), ignored.slot());
        if (!ignored && (Clock::now() >= limit || isOffered(entry, reach)))
            offered.push_back({textOf(arv_gc_feature_node_get_name(entry)), number});
    }
    return offered;
}

OResult readEnumeration(ArvGcFeatureNode *node, NodeReach &reach, EnumerationValue &value,
                        Failure &failure)
{
    const gint64 present =
        arv_gc_enumeration_get_int_value(ARV_GC_ENUMERATION(node), failure.slot());
    if (failure)
        return ORVALIS_OK;
    EnumerationValue found;
    found.entries = offeredEntries(node, reach);
    const auto current = std::ranges::find(found.entries, present, &EnumerationValue::Entry::value);
    if (current != found.entries.end())
        found.current = static_cast<int>(current - found.entries.begin());
    value = std::move(found);
    return ORVALIS_OK;
}

OResult writeEnumeration(ArvGcFeatureNode *node, NodeReach &reach, const std::string &entry,
                         Failure &failure)
{
    ArvGcEnumeration *enumeration = ARV_GC_ENUMERATION(node);
    for (ArvGcFeatureNode *candidate : entriesOf(enumeration))
        if (entry == textOf(arv_gc_feature_node_get_name(candidate)) && isOffered(candidate, reach))
            return writeEntry(node, ARV_GC_ENUM_ENTRY(candidate), failure);
    return ORVALIS_ERROR_NOT_FOUND;
}

} // namespace orvalis
