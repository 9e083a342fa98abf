// SPDX-License-Identifier: MIT
// Implements feature nodes with registers.
#include "library/simulated/SimulatedNodes.h"

#include <algorithm>

namespace orvalis::simulated {
namespace {

bool isReadable(OAccessMode access)
{
    return access == ORVALIS_ACCESS_READ_ONLY || access == ORVALIS_ACCESS_READ_WRITE;
}

std::uint8_t visibilityOf(const NodeSpec &spec)
{
    return spec.has(kGuru) ? 2 : spec.has(kExpert) ? 1 : 0;
}

} // namespace

OResult SimulatedNodes::presence(OResult otherwise)
{
    return camera_.look(
        session_, [&](const RegisterFile &, bool) { return otherwise; });
}

const NodeSpec *SimulatedNodes::find(std::string_view name, ONodeType type, OResult &result)
{
    const NodeSpec *const spec = camera_.table().find(name);
    if (spec && spec->type == type)
        return spec;
    result = presence(spec ? ORVALIS_ERROR_WRONG_TYPE : ORVALIS_ERROR_NOT_FOUND);
    return nullptr;
}

template <class Action>
OResult SimulatedNodes::read(std::string_view name, ONodeType type, Action action)
{
    OResult result = ORVALIS_OK;
    const NodeSpec *const spec = find(name, type, result);
    if (!spec)
        return result;
    return camera_.look(session_, [&](const RegisterFile &registers, bool streaming) {
        if (!isReadable(registers.access(*spec, streaming)))
            return ORVALIS_ERROR_ACCESS_DENIED;
        action(registers, *spec, registers.addressOf(*spec));
        return ORVALIS_OK;
    });
}

OResult SimulatedNodes::writeNumber(std::string_view name, ONodeType type, double value)
{
    OResult result = ORVALIS_OK;
    const NodeSpec *const spec = find(name, type, result);
    if (!spec)
        return result;
    return camera_.change(session_, *spec, [&](RegisterFile &registers) {
        return registers.setNumber(*spec, registers.addressOf(*spec), value);
    });
}

OResult SimulatedNodes::list(std::string_view category, std::vector<std::string> &children)
{
    const NodeSpec *const spec = camera_.table().find(category);
    const OResult result = presence(spec ? ORVALIS_OK : ORVALIS_ERROR_NOT_FOUND);
    if (result == ORVALIS_OK)
        children = camera_.table().children(category);
    return result;
}

OResult SimulatedNodes::info(std::string_view name, NodeInfo &info)
{
    const NodeSpec *const spec = camera_.table().find(name);
    return camera_.look(session_, [&](const RegisterFile &registers, bool streaming) {
        if (!spec)
            return ORVALIS_ERROR_NOT_FOUND;
        info.type = spec->type;
        info.access = registers.access(*spec, streaming);
        info.lockable = spec->has(kLockable);
        info.visibility = visibilityOf(*spec);
        info.displayName = displayNameOf(spec->name);
        info.description = spec->description;
        info.unit = spec->unit;
        return ORVALIS_OK;
    });
}

OResult SimulatedNodes::getInteger(std::string_view name, IntegerValue &value)
{
    return read(
        name, ORVALIS_NODE_INTEGER,
        [&](const RegisterFile &r, const NodeSpec &spec, std::uint32_t address) {
            const Range range = r.bounds(spec, address);
            value = {.value = static_cast<std::int64_t>(r.number(spec, address)),
                     .minimum = static_cast<std::int64_t>(range.minimum),
                     .maximum = static_cast<std::int64_t>(range.maximum),
                     .increment =
                         std::max<std::int64_t>(1, static_cast<std::int64_t>(range.increment))};
        });
}

OResult SimulatedNodes::setInteger(std::string_view name, std::int64_t value)
{
    return writeNumber(name, ORVALIS_NODE_INTEGER, static_cast<double>(value));
}

OResult SimulatedNodes::getFloat(std::string_view name, FloatValue &value)
{
    return read(
        name, ORVALIS_NODE_FLOAT,
        [&](const RegisterFile &r, const NodeSpec &spec, std::uint32_t address) {
            const Range range = r.bounds(spec, address);
            value = {.value = r.number(spec, address),
                     .minimum = range.minimum,
                     .maximum = range.maximum,
                     .increment = range.increment};
        });
}

OResult SimulatedNodes::setFloat(std::string_view name, double value)
{
    return writeNumber(name, ORVALIS_NODE_FLOAT, value);
}

OResult SimulatedNodes::getBoolean(std::string_view name, bool &value)
{
    return read(
        name, ORVALIS_NODE_BOOLEAN,
        [&](const RegisterFile &r, const NodeSpec &, std::uint32_t address) {
            value = r.flag(address);
        });
}

OResult SimulatedNodes::setBoolean(std::string_view name, bool value)
{
    return writeNumber(name, ORVALIS_NODE_BOOLEAN, value ? 1 : 0);
}

OResult SimulatedNodes::getEnumeration(std::string_view name, EnumerationValue &value)
{
    return read(
        name, ORVALIS_NODE_ENUMERATION,
        [&](const RegisterFile &r, const NodeSpec &spec, std::uint32_t address) {
            value = {};
            for (const EntrySpec &entry : spec.entries) {
                if (entry.value == r.word(address))
                    value.current = static_cast<int>(value.entries.size());
                value.entries.push_back({std::string(entry.name), entry.value});
            }
        });
}

OResult SimulatedNodes::setEnumeration(std::string_view name, std::string_view entry)
{
    OResult result = ORVALIS_OK;
    const NodeSpec *const spec = find(name, ORVALIS_NODE_ENUMERATION, result);
    if (!spec)
        return result;
    return camera_.change(session_, *spec, [&](RegisterFile &registers) {
        const auto found = std::ranges::find(spec->entries, entry, &EntrySpec::name);
        return found == spec->entries.end()
                   ? ORVALIS_ERROR_NOT_FOUND
                   : registers.setNumber(*spec, registers.addressOf(*spec), found->value);
    });
}

OResult SimulatedNodes::getText(std::string_view name, std::string &value)
{
    return read(
        name, ORVALIS_NODE_STRING,
        [&](const RegisterFile &r, const NodeSpec &spec, std::uint32_t) { value = r.text(spec); });
}

OResult SimulatedNodes::setText(std::string_view name, std::string_view value)
{
    OResult result = ORVALIS_OK;
    const NodeSpec *const spec = find(name, ORVALIS_NODE_STRING, result);
    if (!spec)
        return result;
    return camera_.change(session_, *spec,
                          [&](RegisterFile &registers) { return registers.setText(*spec, value); });
}

OResult SimulatedNodes::execute(std::string_view name)
{
    OResult result = ORVALIS_OK;
    const NodeSpec *const spec = find(name, ORVALIS_NODE_COMMAND, result);
    return spec ? camera_.execute(session_, *spec) : result;
}

OResult SimulatedNodes::readRegister(std::uint32_t address, std::uint32_t &value)
{
    const NodeSpec *const spec = address % 4 == 0 ? camera_.table().at(address) : nullptr;
    if (!spec)
        return presence(address % 4 != 0 ? ORVALIS_ERROR_BAD_ARGUMENT : ORVALIS_ERROR_NOT_FOUND);
    return camera_.look(session_, [&](const RegisterFile &registers, bool streaming) {
        if (spec->type == ORVALIS_NODE_COMMAND || !isReadable(registers.access(*spec, streaming)))
            return ORVALIS_ERROR_ACCESS_DENIED;
        value = registers.word(address);
        return ORVALIS_OK;
    });
}

OResult SimulatedNodes::writeRegister(std::uint32_t address, std::uint32_t value)
{
    const NodeSpec *const spec = address % 4 == 0 ? camera_.table().at(address) : nullptr;
    if (!spec)
        return presence(address % 4 != 0 ? ORVALIS_ERROR_BAD_ARGUMENT : ORVALIS_ERROR_NOT_FOUND);
    if (spec->type == ORVALIS_NODE_COMMAND && value != 0)
        return camera_.execute(session_, *spec);
    return camera_.change(session_, *spec, [&](RegisterFile &registers) {
        return registers.writeWord(*spec, address, value);
    });
}

} // namespace orvalis::simulated
