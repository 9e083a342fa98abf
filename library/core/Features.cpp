// SPDX-License-Identifier: MIT
// The typed features that are numbers.
#include "library/core/Features.h"

#include "library/core/Selection.h"

#include <algorithm>
#include <cmath>

namespace orvalis {

namespace {

constexpr const char *kOff = "Off";
constexpr const char *kContinuous = "Continuous";

bool isNumber(const NodeInfo &info)
{
    return info.type == ORVALIS_NODE_INTEGER || info.type == ORVALIS_NODE_FLOAT;
}

double rounded(double value, Rounding rounding)
{
    return rounding == Rounding::Integer ? std::round(value)
                                         : static_cast<double>(static_cast<float>(value));
}

NumberValue inInterfaceUnits(const FloatValue &node, double units, Rounding rounding)
{
    return {rounded(node.value * units, rounding), rounded(node.minimum * units, rounding),
            rounded(node.maximum * units, rounding), false};
}

FloatValue asFloat(const IntegerValue &node)
{
    return {static_cast<double>(node.value), static_cast<double>(node.minimum),
            static_cast<double>(node.maximum), static_cast<double>(node.increment)};
}

/// Down to the increment, with some tolerance for steps like 0.1 that binary cannot hold.
double aligned(double value, const FloatValue &bounds)
{
    if (!(bounds.increment > 0))
        return value;
    const double steps = std::floor((value - bounds.minimum) / bounds.increment + 1e-6);
    return std::min(bounds.minimum + steps * bounds.increment, bounds.maximum);
}

} // namespace

/// What a node is; ORVALIS_ERROR_NOT_SUPPORTED if the camera cannot do anything with it at present.
OResult Features::inspect(const char *name, NodeInfo &info)
{
    const OResult result = nodes_.info(name, info);
    if (result == ORVALIS_ERROR_NOT_FOUND)
        return ORVALIS_ERROR_NOT_SUPPORTED;
    if (result == ORVALIS_OK && info.access <= ORVALIS_ACCESS_NOT_AVAILABLE)
        return ORVALIS_ERROR_NOT_SUPPORTED;
    return result;
}

OResult Features::locate(const NumberRow &wanted, Located &found)
{
    for (const NumberNode &node : wanted.nodes) {
        if (!node.name)
            break;
        const OResult result = inspect(node.name, found.info);
        if (result == ORVALIS_OK && isNumber(found.info)) {
            found.name = node.name;
            found.units = node.unitsPerNodeUnit * baseOf(node);
            return ORVALIS_OK;
        }
        if (result != ORVALIS_OK && result != ORVALIS_ERROR_NOT_SUPPORTED)
            return result;
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

/// What one step of a raw value stands for; 1 where the camera does not tell.
double Features::baseOf(const NumberNode &node)
{
    FloatValue base;
    const bool known = node.base && nodes_.getFloat(node.base, base) == ORVALIS_OK;
    return known && base.value > 0 ? base.value : 1;
}

OResult Features::read(const NumberRow &wanted, const Located &node, NumberValue &value)
{
    FloatValue real;
    OResult result;
    if (node.info.type == ORVALIS_NODE_INTEGER) {
        IntegerValue integer;
        result = nodes_.getInteger(node.name, integer);
        real = asFloat(integer);
    } else {
        result = nodes_.getFloat(node.name, real);
    }
    if (result == ORVALIS_OK)
        value = inInterfaceUnits(real, node.units, wanted.rounding);
    return result;
}

/// Writes a value that lies within the rounded bounds, hence at most half a unit outside the true
/// ones.
OResult Features::write(const NumberRow &wanted, const Located &node, double value)
{
    const double target = value / node.units;
    if (node.info.type == ORVALIS_NODE_INTEGER) {
        IntegerValue now;
        if (const OResult result = nodes_.getInteger(node.name, now); result != ORVALIS_OK)
            return result;
        // Features of the interface have at most 32 bits, so nothing is cut here.
        const auto integer = static_cast<std::int64_t>(std::llround(target));
        return nodes_.setInteger(node.name, std::clamp(integer, now.minimum, now.maximum));
    }
    FloatValue now;
    if (const OResult result = nodes_.getFloat(node.name, now); result != ORVALIS_OK)
        return result;
    // A number that was read and is written back leaves the camera's finer value as it is.
    if (rounded(now.value * node.units, wanted.rounding) == value)
        return nodes_.setFloat(node.name, now.value);
    const double bounded = std::clamp(target, now.minimum, std::max(now.minimum, now.maximum));
    return nodes_.setFloat(node.name, aligned(bounded, now));
}

OResult Features::readAutomatic(const NumberRow &wanted, bool &automatic)
{
    automatic = false;
    NodeInfo info;
    if (!wanted.automatic || inspect(wanted.automatic, info) == ORVALIS_ERROR_NOT_SUPPORTED)
        return ORVALIS_OK;
    EnumerationValue value;
    const OResult result = nodes_.getEnumeration(wanted.automatic, value);
    const bool known =
        value.current >= 0 && static_cast<std::size_t>(value.current) < value.entries.size();
    if (result == ORVALIS_OK && known)
        automatic = value.entries[static_cast<std::size_t>(value.current)].name != kOff;
    return result;
}

OResult Features::setAutomatic(const NumberRow &wanted, bool automatic)
{
    NodeInfo info;
    const OResult there =
        wanted.automatic ? inspect(wanted.automatic, info) : ORVALIS_ERROR_NOT_SUPPORTED;
    if (there == ORVALIS_ERROR_NOT_SUPPORTED)
        return automatic ? ORVALIS_ERROR_NOT_SUPPORTED : ORVALIS_OK;
    if (there != ORVALIS_OK)
        return there;
    const char *entry = automatic ? kContinuous : kOff;
    if (currentEntry(nodes_, wanted.automatic) == entry)
        return ORVALIS_OK;
    const OResult result = nodes_.setEnumeration(wanted.automatic, entry);
    return result == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : result;
}

/// Puts on what has to be on. A camera without a switch, or with one that is locked, may do anyway.
void Features::enable(const NumberRow &wanted)
{
    for (const char *name : wanted.enables) {
        Located node;
        if (name && inspect(name, node.info) == ORVALIS_OK) {
            node.name = name;
            bool on = false;
            if (readSwitch(node, on) == ORVALIS_OK && !on)
                writeSwitch(node, true);
        }
    }
}

OResult Features::get(Number number, NumberValue &value)
{
    const std::lock_guard lock(mutex_);
    const NumberRow &wanted = row(number);
    Selection selection(nodes_);
    if (const OResult result = selection.select(wanted.selecting); result != ORVALIS_OK)
        return result;
    Located node;
    if (const OResult result = locate(wanted, node); result != ORVALIS_OK)
        return result;
    NumberValue now;
    bool automatic = false;
    if (const OResult result = read(wanted, node, now); result != ORVALIS_OK)
        return result;
    if (const OResult result = readAutomatic(wanted, automatic); result != ORVALIS_OK)
        return result;
    now.automatic = automatic;
    value = now;
    return ORVALIS_OK;
}

OResult Features::set(Number number, double value, bool automatic)
{
    const std::lock_guard lock(mutex_);
    const NumberRow &wanted = row(number);
    Selection selection(nodes_);
    if (const OResult result = selection.select(wanted.selecting); result != ORVALIS_OK)
        return result;
    if (automatic)
        return setAutomatic(wanted, true);
    return setValue(wanted, value);
}

/// ORVALIS_OK also where the camera does not tell its bounds before the feature is switched on.
OResult Features::checkRange(const NumberRow &wanted, double value)
{
    Located node;
    OResult result = locate(wanted, node);
    NumberValue now;
    if (result == ORVALIS_OK)
        result = read(wanted, node, now);
    if (result != ORVALIS_OK)
        return wanted.enables[0] && result == ORVALIS_ERROR_NOT_SUPPORTED ? ORVALIS_OK : result;
    const bool inside = value >= now.minimum && value <= now.maximum; // false for NaN
    return inside ? ORVALIS_OK : ORVALIS_ERROR_OUT_OF_RANGE;
}

OResult Features::setValue(const NumberRow &wanted, double value)
{
    // Before anything is switched: a value that is refused leaves the camera as it was.
    if (const OResult result = checkRange(wanted, value); result != ORVALIS_OK)
        return result;
    bool wasAutomatic = false;
    if (const OResult result = readAutomatic(wanted, wasAutomatic); result != ORVALIS_OK)
        return result;
    if (const OResult result = setAutomatic(wanted, false); result != ORVALIS_OK)
        return result;
    enable(wanted);
    Located node;
    OResult result = locate(wanted, node);
    if (result == ORVALIS_OK)
        result = checkRange(wanted, value);
    if (result == ORVALIS_OK)
        result = write(wanted, node, value);
    if (result != ORVALIS_OK && wasAutomatic)
        setAutomatic(wanted, true);
    return result;
}

} // namespace orvalis
