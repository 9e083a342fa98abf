// SPDX-License-Identifier: MIT
// Typed features: names and switches; user sets.
#include "library/core/Features.h"
#include "library/core/Selection.h"

namespace orvalis {

namespace {

bool isSwitch(const NodeInfo &info)
{
    return info.type == ORVALIS_NODE_BOOLEAN || info.type == ORVALIS_NODE_ENUMERATION;
}

} // namespace

/// Sets the selectors and finds the node. ORVALIS_ERROR_NOT_SUPPORTED if the camera lacks the node
/// or what must be selected.
template <class Node>
OResult Features::locateSwitch(const Node &wanted, Selection &selection, Located &found)
{
    OResult result = nodes_.info(wanted.name, found.info);
    const bool missing =
        result == ORVALIS_ERROR_NOT_FOUND ||
        (result == ORVALIS_OK &&
         (found.info.access == ORVALIS_ACCESS_NOT_IMPLEMENTED || !isSwitch(found.info)));
    if (missing)
        return ORVALIS_ERROR_NOT_SUPPORTED;
    if (result == ORVALIS_OK)
        result = selection.select(wanted.selecting);
    if (result == ORVALIS_OK)
        result = inspect(wanted.name, found.info);
    found.name = wanted.name;
    return result;
}

/// Finds the choice's node and returns the result of `body(row, node)`.
template <class Body> OResult Features::withChoice(Choice choice, Body body)
{
    const NodeAccess access(nodes_, mutex_);
    const ChoiceRow &wanted = row(choice);
    Selection selection(nodes_, &strobeLine_);
    for (const ChoiceNode &node : wanted.nodes) {
        Located found;
        const OResult result =
            node.name ? locateSwitch(node, selection, found) : ORVALIS_ERROR_NOT_SUPPORTED;
        if (result != ORVALIS_ERROR_NOT_SUPPORTED)
            return result == ORVALIS_OK ? body(wanted, found) : result;
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Features::list(Choice choice, std::vector<std::string> &names)
{
    return withChoice(
        choice,
        [&](const ChoiceRow &wanted, const Located &node) -> OResult {
            if (node.info.type == ORVALIS_NODE_BOOLEAN) {
                if (!wanted.booleanNames[0])
                    return ORVALIS_ERROR_NOT_SUPPORTED;
                names.assign(wanted.booleanNames.begin(), wanted.booleanNames.end());
                return ORVALIS_OK;
            }
            return nodes_.getEntries(node.name, names);
        });
}

OResult Features::get(Choice choice, std::string &name)
{
    return withChoice(
        choice,
        [&](const ChoiceRow &wanted, const Located &node) -> OResult {
            if (node.info.type == ORVALIS_NODE_BOOLEAN) {
                if (!wanted.booleanNames[0])
                    return ORVALIS_ERROR_NOT_SUPPORTED;
                bool value = false;
                const OResult result = nodes_.getBoolean(node.name, value);
                if (result == ORVALIS_OK)
                    name = wanted.booleanNames[value ? 1 : 0];
                return result;
            }
            return nodes_.getEntry(node.name, name);
        });
}

OResult Features::set(Choice choice, std::string_view name)
{
    if (choice == Choice::TriggerMode)
        return setTriggerMode(name);
    return withChoice(choice, [&](const ChoiceRow &wanted, const Located &node) -> OResult {
        if (node.info.type == ORVALIS_NODE_ENUMERATION)
            return nodes_.setEnumeration(node.name, name);
        for (const bool value : {false, true}) {
            const char *text = wanted.booleanNames[value ? 1 : 0];
            if (text && name == text)
                return nodes_.setBoolean(node.name, value);
        }
        return ORVALIS_ERROR_NOT_FOUND;
    });
}

OResult Features::readSwitch(const Located &node, const SwitchNode &wanted, bool &on)
{
    if (node.info.type == ORVALIS_NODE_BOOLEAN)
        return nodes_.getBoolean(node.name, on);
    std::string entry;
    const OResult result = nodes_.getEntry(node.name, entry);
    if (result == ORVALIS_OK)
        on = wanted.onlyOnIsOn ? entry == wanted.on : entry != wanted.off;
    return result;
}

OResult Features::writeSwitch(const Located &node, const SwitchNode &wanted, bool on)
{
    if (node.info.type == ORVALIS_NODE_BOOLEAN)
        return nodes_.setBoolean(node.name, on);
    bool isOn = !on;
    OResult result = readSwitch(node, wanted, isOn);
    EnumerationValue value;
    if (result == ORVALIS_OK)
        result = nodes_.getEnumeration(node.name, value);
    if (result != ORVALIS_OK || isOn == on)
        return result;
    std::string target = on ? "" : wanted.off;
    for (const auto &entry : value.entries)
        if (on && entry.name != wanted.off && (target.empty() || entry.name == wanted.on))
            target = entry.name;
    result = nodes_.setEnumeration(node.name, target);
    return result == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : result;
}

/// Finds the switch's node and returns the result of `body(row, node)`.
template <class Body> OResult Features::withSwitch(Switch which, Body body)
{
    const NodeAccess access(nodes_, mutex_);
    Selection selection(nodes_, &strobeLine_);
    for (const SwitchNode &node : row(which).nodes) {
        Located found;
        const OResult result =
            node.name ? locateSwitch(node, selection, found) : ORVALIS_ERROR_NOT_SUPPORTED;
        if (result != ORVALIS_ERROR_NOT_SUPPORTED)
            return result == ORVALIS_OK ? body(node, found) : result;
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Features::get(Switch which, bool &on)
{
    if (which == Switch::TriggerEnable)
        return getTrigger(on);
    return withSwitch(which, [&](const SwitchNode &wanted, const Located &node) {
        return readSwitch(node, wanted, on);
    });
}

OResult Features::set(Switch which, bool on)
{
    if (which == Switch::TriggerEnable)
        return setTrigger(on);
    return withSwitch(which, [&](const SwitchNode &wanted, const Located &node) {
        return writeSwitch(node, wanted, on);
    });
}

OResult Features::loadDefaults()
{
    const NodeAccess access(nodes_, mutex_);
    NodeInfo info;
    OResult result = inspect("UserSetSelector", info);
    if (result == ORVALIS_OK)
        result = inspect("UserSetLoad", info);
    if (result != ORVALIS_OK)
        return result;
    Selection selection(nodes_, &strobeLine_);
    result = selection.setSelector("UserSetSelector", "Default");
    if (result == ORVALIS_ERROR_NOT_FOUND)
        result = selection.setSelector("UserSetSelector", "Factory");
    if (result != ORVALIS_OK)
        return result == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : result;
    return nodes_.execute("UserSetLoad");
}

OResult Features::presentFormat(PresentFormat &present)
{
    const NodeAccess access(nodes_, mutex_);
    EnumerationValue value;
    if (const OResult result = nodes_.getEnumeration("PixelFormat", value); result != ORVALIS_OK)
        return result;
    const bool known =
        value.current >= 0 && static_cast<std::size_t>(value.current) < value.entries.size();
    if (!known)
        return ORVALIS_ERROR_DEVICE;
    const auto &entry = value.entries[static_cast<std::size_t>(value.current)];
    const auto code = static_cast<std::uint32_t>(entry.value);
    present.format = findPixelFormat(code);
    if (!present.format)
        present.format = findPixelFormat(std::string_view(entry.name));
    present.code = present.format ? present.format->code : code;
    present.name = entry.name;
    return ORVALIS_OK;
}

} // namespace orvalis
