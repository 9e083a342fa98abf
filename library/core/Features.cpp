// SPDX-License-Identifier: MIT
// Typed features: numbers.
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

/// The length of a unit of time in microseconds; 0 for any other text.
double microsecondsIn(std::string_view unit)
{
    constexpr struct {
        std::string_view name;
        double microseconds;
    } units[] = {{"ns", 0.001},    {"us", 1}, {"\xC2\xB5s", 1}, // micro sign
                 {"\xCE\xBCs", 1},                              // Greek mu
                 {"ms", 1000},     {"s", 1e6}};
    for (const auto &[name, microseconds] : units)
        if (unit == name)
            return microseconds;
    return 0;
}

/// Rounds down to the increment, with a tolerance for steps such as 0.1 that have no exact binary
/// form.
double aligned(double value, const FloatValue &bounds)
{
    if (!(bounds.increment > 0))
        return value;
    const double steps = std::floor((value - bounds.minimum) / bounds.increment + 1e-6);
    return std::min(bounds.minimum + steps * bounds.increment, bounds.maximum);
}

} // namespace

/// Reads a node's description; ORVALIS_ERROR_NOT_SUPPORTED if the node is not usable at present.
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
            found.units = unitsOf(wanted, node, found.info);
            found.twin = node.twin;
            return ORVALIS_OK;
        }
        if (result != ORVALIS_OK && result != ORVALIS_ERROR_NOT_SUPPORTED)
            return result;
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

/// A time unit that the node names takes precedence over the table. A base node takes precedence
/// over the unit, because the description often gives a raw value the unit of the converted value.
double Features::unitsOf(const NumberRow &wanted, const NumberNode &node, const NodeInfo &info)
{
    FloatValue base;
    if (node.base && nodes_.getFloat(node.base, base) == ORVALIS_OK && base.value > 0)
        return node.unitsPerNodeUnit * base.value;
    const double named = wanted.quantity == Quantity::Time ? microsecondsIn(info.unit) : 0;
    return named > 0 ? named : node.unitsPerNodeUnit;
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

OResult Features::readPart(const NumberRow &wanted, NumberPart part, NumberValue &value)
{
    Located node;
    OResult result = locate(wanted, node);
    if (result == ORVALIS_ERROR_NOT_SUPPORTED)
        return readHidden(wanted, value);
    FloatValue real;
    if (result == ORVALIS_OK)
        result = nodes_.getPart(node.name, part, real);
    if (result == ORVALIS_OK)
        value = inInterfaceUnits(real, node.units, wanted.rounding);
    return result;
}

OResult Features::readPresent(const NumberRow &wanted, NumberValue &value)
{
    Located node;
    const OResult result = locate(wanted, node);
    if (result == ORVALIS_OK)
        return read(wanted, node, value);
    return result == ORVALIS_ERROR_NOT_SUPPORTED ? readHidden(wanted, value) : result;
}

/// Reads a number that is not available while its switch is off. It still has a value and bounds;
/// switching it on in order to read them would change how the camera operates.
OResult Features::readHidden(const NumberRow &wanted, NumberValue &value)
{
    if (!isSwitchedOff(wanted))
        return ORVALIS_ERROR_NOT_SUPPORTED;
    for (const NumberNode &node : wanted.nodes) {
        NodeInfo info;
        FloatValue kept;
        if (!node.name)
            break;
        const bool hidden = nodes_.info(node.name, info) == ORVALIS_OK && isNumber(info) &&
                            info.access == ORVALIS_ACCESS_NOT_AVAILABLE;
        if (!hidden || nodes_.peekNumber(node.name, kept) != ORVALIS_OK)
            continue;
        value = inInterfaceUnits(kept, unitsOf(wanted, node, info), wanted.rounding);
        return ORVALIS_OK;
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

/// Writes a value that is within the rounded bounds, hence at most half a unit outside the exact
/// ones.
OResult Features::write(const NumberRow &wanted, const Located &node, double value)
{
    const double target = value / node.units;
    if (node.info.type == ORVALIS_NODE_INTEGER) {
        IntegerValue now;
        if (const OResult result = nodes_.getInteger(node.name, now); result != ORVALIS_OK)
            return result;
        // Numbers of the interface have at most 32 bits, so nothing overflows here.
        const auto integer = static_cast<std::int64_t>(std::llround(target));
        return nodes_.setInteger(node.name, std::clamp(integer, now.minimum, now.maximum));
    }
    FloatValue now;
    if (const OResult result = nodes_.getFloat(node.name, now); result != ORVALIS_OK)
        return result;
    // Writing back a value that was read preserves the camera's more precise value.
    if (rounded(now.value * node.units, wanted.rounding) == value)
        return nodes_.setFloat(node.name, now.value);
    const double bounded = std::clamp(target, now.minimum, std::max(now.minimum, now.maximum));
    return nodes_.setFloat(node.name, aligned(bounded, now));
}

/// Sets the accompanying node, best effort: the result depends on the number alone.
void Features::writeTwin(const Located &node, double value)
{
    NumberRow row{};
    Located twin;
    twin.name = node.twin;
    twin.units = node.units;
    NumberValue now;
    const bool there = twin.name && inspect(twin.name, twin.info) == ORVALIS_OK &&
                       isNumber(twin.info) && read(row, twin, now) == ORVALIS_OK;
    if (there && now.minimum <= now.maximum)
        write(row, twin, std::clamp(value, now.minimum, now.maximum));
}

OResult Features::readAutomatic(const NumberRow &wanted, bool &automatic)
{
    automatic = false;
    NodeInfo info;
    if (!wanted.automatic || inspect(wanted.automatic, info) == ORVALIS_ERROR_NOT_SUPPORTED)
        return ORVALIS_OK;
    std::string entry;
    const OResult result = nodes_.getEntry(wanted.automatic, entry);
    if (result == ORVALIS_OK && !entry.empty())
        automatic = entry != kOff;
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

namespace {

SwitchNode switchOf(const EnableNode &node)
{
    return {node.name, Selecting::Nothing, node.on, node.off, false};
}

} // namespace

/// Whether the camera has a switch for the number that is off.
bool Features::isSwitchedOff(const NumberRow &wanted)
{
    for (const EnableNode &enable : wanted.enables) {
        Located node;
        bool on = true;
        if (!enable.name || inspect(enable.name, node.info) != ORVALIS_OK)
            continue;
        node.name = enable.name;
        if (readSwitch(node, switchOf(enable), on) == ORVALIS_OK && !on)
            return true;
    }
    return false;
}

/// Switches on the number's switches, best effort: a camera whose switch is missing or locked may
/// accept the number anyway.
void Features::enable(const NumberRow &wanted, bool changes, std::vector<Enabled> &enabled)
{
    for (const EnableNode &enable : wanted.enables) {
        Located node;
        bool on = true;
        if (!enable.name || (enable.onlyForChanges && !changes) ||
            inspect(enable.name, node.info) != ORVALIS_OK)
            continue;
        node.name = enable.name;
        if (readSwitch(node, switchOf(enable), on) == ORVALIS_OK && !on &&
            writeSwitch(node, switchOf(enable), true) == ORVALIS_OK)
            enabled.push_back({node, &enable});
    }
}

void Features::disable(const std::vector<Enabled> &enabled)
{
    for (const Enabled &done : enabled)
        writeSwitch(done.node, switchOf(*done.wanted), false);
}

OResult Features::get(Number number, NumberValue &value)
{
    const NodeAccess access(nodes_, mutex_);
    const NumberRow &wanted = row(number);
    Selection selection(nodes_, &strobeLine_);
    if (const OResult result = selection.select(wanted.selecting); result != ORVALIS_OK)
        return result;
    NumberValue now;
    bool automatic = false;
    if (const OResult result = readPresent(wanted, now); result != ORVALIS_OK)
        return result;
    if (const OResult result = readAutomatic(wanted, automatic); result != ORVALIS_OK)
        return result;
    now.automatic = automatic;
    value = now;
    return ORVALIS_OK;
}

OResult Features::get(Number number, NumberPart part, NumberValue &value)
{
    const NodeAccess access(nodes_, mutex_);
    const NumberRow &wanted = row(number);
    Selection selection(nodes_, &strobeLine_);
    NumberValue now;
    OResult result = selection.select(wanted.selecting);
    if (result == ORVALIS_OK)
        result = readPart(wanted, part, now);
    bool automatic = false;
    if (result == ORVALIS_OK && part == NumberPart::Value)
        result = readAutomatic(wanted, automatic);
    if (result != ORVALIS_OK)
        return result;
    now.automatic = automatic;
    value = now;
    return ORVALIS_OK;
}

OResult Features::set(Number number, double value, bool automatic)
{
    const NodeAccess access(nodes_, mutex_);
    const NumberRow &wanted = row(number);
    Selection selection(nodes_, &strobeLine_);
    if (const OResult result = selection.select(wanted.selecting); result != ORVALIS_OK)
        return result;
    if (automatic)
        return setAutomatic(wanted, true);
    return setValue(wanted, value);
}

/// ORVALIS_OK also if the camera does not report bounds until the feature is switched on.
OResult Features::checkRange(const NumberRow &wanted, double value, bool &changes)
{
    NumberValue now;
    const OResult result = readPresent(wanted, now);
    if (result != ORVALIS_OK)
        return result == ORVALIS_ERROR_NOT_SUPPORTED && isSwitchedOff(wanted) ? ORVALIS_OK : result;
    changes = value != now.value;
    const bool inside = value >= now.minimum && value <= now.maximum; // false for NaN
    return inside ? ORVALIS_OK : ORVALIS_ERROR_OUT_OF_RANGE;
}

OResult Features::setValue(const NumberRow &wanted, double value)
{
    // Check before switching anything: a refused value must leave the camera unchanged.
    bool changes = true;
    if (const OResult result = checkRange(wanted, value, changes); result != ORVALIS_OK)
        return result;
    bool wasAutomatic = false;
    std::vector<Enabled> enabled;
    OResult result = readAutomatic(wanted, wasAutomatic);
    if (result != ORVALIS_OK)
        return result;
    // A switch may hide the automatic control, and the control may lock the switch.
    enable(wanted, changes, enabled);
    bool appeared = false;
    readAutomatic(wanted, appeared);
    result = setAutomatic(wanted, false);
    if (result == ORVALIS_OK) {
        enable(wanted, changes, enabled);
        result = writeEnabled(wanted, value);
    }
    if (result != ORVALIS_OK) {
        if (wasAutomatic || appeared)
            setAutomatic(wanted, true);
        disable(enabled);
    }
    return result;
}

OResult Features::writeEnabled(const NumberRow &wanted, double value)
{
    Located node;
    NumberValue now;
    OResult result = locate(wanted, node);
    if (result == ORVALIS_OK)
        result = read(wanted, node, now);
    if (result != ORVALIS_OK)
        return result;
    if (!(value >= now.minimum && value <= now.maximum))
        return ORVALIS_ERROR_OUT_OF_RANGE;
    result = write(wanted, node, value);
    if (result == ORVALIS_OK && node.twin)
        writeTwin(node, value);
    return result;
}

} // namespace orvalis
