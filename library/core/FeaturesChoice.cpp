// SPDX-License-Identifier: MIT
// The typed features that are names, switches and commands.
#include "library/core/Features.h"
#include "library/core/Selection.h"

namespace orvalis {

namespace {

constexpr const char *kOff = "Off";
constexpr const char *kOn = "On";

std::string presentName(const EnumerationValue &value)
{
    const bool known =
        value.current >= 0 && static_cast<std::size_t>(value.current) < value.entries.size();
    return known ? value.entries[static_cast<std::size_t>(value.current)].name : std::string();
}

bool isSwitch(const NodeInfo &info)
{
    return info.type == ORVALIS_NODE_BOOLEAN || info.type == ORVALIS_NODE_ENUMERATION;
}

} // namespace

template <class Names> OResult Features::locateAny(const Names &names, Located &found)
{
    for (const char *name : names) {
        if (!name)
            break;
        const OResult result = inspect(name, found.info);
        if (result == ORVALIS_OK && isSwitch(found.info)) {
            found.name = name;
            return ORVALIS_OK;
        }
        if (result != ORVALIS_OK && result != ORVALIS_ERROR_NOT_SUPPORTED)
            return result;
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

/// Turns the choice's selectors, finds its node and returns what `body` does with row and node.
template <class Body> OResult Features::withChoice(Choice choice, Body body)
{
    const std::lock_guard lock(mutex_);
    const ChoiceRow &wanted = row(choice);
    Selection selection(nodes_);
    Located node;
    OResult result = selection.select(wanted.selecting);
    if (result == ORVALIS_OK)
        result = locateAny(wanted.nodes, node);
    return result == ORVALIS_OK ? body(wanted, node) : result;
}

OResult Features::list(Choice choice, std::vector<std::string> &names)
{
    return withChoice(choice, [&](const ChoiceRow &wanted, const Located &node) -> OResult {
        if (node.info.type == ORVALIS_NODE_BOOLEAN) {
            if (!wanted.booleanNames[0])
                return ORVALIS_ERROR_NOT_SUPPORTED;
            names.assign(wanted.booleanNames.begin(), wanted.booleanNames.end());
            return ORVALIS_OK;
        }
        EnumerationValue value;
        const OResult result = nodes_.getEnumeration(node.name, value);
        if (result != ORVALIS_OK)
            return result;
        names.clear();
        for (auto &entry : value.entries)
            names.push_back(std::move(entry.name));
        return ORVALIS_OK;
    });
}

OResult Features::get(Choice choice, std::string &name)
{
    return withChoice(choice, [&](const ChoiceRow &wanted, const Located &node) -> OResult {
        if (node.info.type == ORVALIS_NODE_BOOLEAN) {
            if (!wanted.booleanNames[0])
                return ORVALIS_ERROR_NOT_SUPPORTED;
            bool value = false;
            const OResult result = nodes_.getBoolean(node.name, value);
            if (result == ORVALIS_OK)
                name = wanted.booleanNames[value ? 1 : 0];
            return result;
        }
        EnumerationValue value;
        const OResult result = nodes_.getEnumeration(node.name, value);
        if (result == ORVALIS_OK)
            name = presentName(value);
        return result;
    });
}

OResult Features::set(Choice choice, std::string_view name)
{
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

OResult Features::readSwitch(const Located &node, bool &on)
{
    if (node.info.type == ORVALIS_NODE_BOOLEAN)
        return nodes_.getBoolean(node.name, on);
    EnumerationValue value;
    const OResult result = nodes_.getEnumeration(node.name, value);
    if (result == ORVALIS_OK)
        on = presentName(value) != kOff;
    return result;
}

OResult Features::writeSwitch(const Located &node, bool on)
{
    if (node.info.type == ORVALIS_NODE_BOOLEAN)
        return nodes_.setBoolean(node.name, on);
    return nodes_.setEnumeration(node.name, on ? kOn : kOff);
}

/// Returns what `own` does with the node that switches the feature; where a camera has none, and
/// the row names a source in its place, what `source` does, with the source's selectors turned.
template <class Own, class Source>
OResult Features::withSwitch(Switch which, Own own, Source source)
{
    const std::lock_guard lock(mutex_);
    const SwitchRow &wanted = row(which);
    Located node;
    OResult result = locateAny(wanted.nodes, node);
    if (result != ORVALIS_ERROR_NOT_SUPPORTED || !wanted.source)
        return result == ORVALIS_OK ? own(node) : result;
    Selection selection(nodes_);
    result = selection.select(wanted.selecting);
    return result == ORVALIS_OK ? source(wanted) : result;
}

OResult Features::get(Switch which, bool &on)
{
    const auto own = [&](const Located &node) { return readSwitch(node, on); };
    return withSwitch(which, own, [&](const SwitchRow &wanted) {
        Located node;
        node.name = wanted.source;
        const OResult result = inspect(wanted.source, node.info);
        return result == ORVALIS_OK ? own(node) : result;
    });
}

OResult Features::set(Switch which, bool on)
{
    return withSwitch(
        which, [&](const Located &node) { return writeSwitch(node, on); },
        [&](const SwitchRow &wanted) { return writeSource(wanted, on); });
}

/// An output without a switch of its own is off while nothing drives it.
OResult Features::writeSource(const SwitchRow &wanted, bool on)
{
    EnumerationValue value;
    const OResult result = nodes_.getEnumeration(wanted.source, value);
    if (result != ORVALIS_OK)
        return result == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : result;
    if ((presentName(value) != kOff) == on)
        return ORVALIS_OK;
    std::string target = on ? "" : kOff;
    for (const auto &entry : value.entries) {
        if (on && entry.name != kOff && (target.empty() || entry.name == wanted.sourceOn))
            target = entry.name;
    }
    const OResult written = nodes_.setEnumeration(wanted.source, target);
    return written == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : written;
}

OResult Features::fireSoftwareTrigger(bool streaming)
{
    const std::lock_guard lock(mutex_);
    NodeInfo info;
    const OResult result = nodes_.info("TriggerSoftware", info);
    if (result == ORVALIS_ERROR_NOT_FOUND ||
        (result == ORVALIS_OK && info.access == ORVALIS_ACCESS_NOT_IMPLEMENTED))
        return ORVALIS_ERROR_NOT_SUPPORTED;
    if (result != ORVALIS_OK)
        return result;
    // Some cameras keep a trigger in mind that came while they did not wait for one.
    const std::string source = currentEntry(nodes_, "TriggerSource");
    if (!streaming || currentEntry(nodes_, "TriggerMode") == kOff ||
        (!source.empty() && source != "Software"))
        return ORVALIS_OK;
    const OResult fired = nodes_.execute("TriggerSoftware");
    return fired == ORVALIS_ERROR_ACCESS_DENIED ? ORVALIS_OK : fired; // not set up for it
}

OResult Features::loadDefaults()
{
    const std::lock_guard lock(mutex_);
    EnumerationValue sets;
    NodeInfo info;
    OResult result = inspect("UserSetSelector", info);
    if (result == ORVALIS_OK)
        result = inspect("UserSetLoad", info);
    if (result == ORVALIS_OK)
        result = nodes_.getEnumeration("UserSetSelector", sets);
    if (result != ORVALIS_OK)
        return result;
    const std::string before = presentName(sets);
    result = nodes_.setEnumeration("UserSetSelector", "Default");
    if (result == ORVALIS_ERROR_NOT_FOUND)
        result = nodes_.setEnumeration("UserSetSelector", "Factory");
    if (result != ORVALIS_OK)
        return result == ORVALIS_ERROR_NOT_FOUND ? ORVALIS_ERROR_NOT_SUPPORTED : result;
    result = nodes_.execute("UserSetLoad");
    if (!before.empty())
        nodes_.setEnumeration("UserSetSelector", before);
    return result;
}

OResult Features::presentFormat(PresentFormat &present)
{
    const std::lock_guard lock(mutex_);
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
