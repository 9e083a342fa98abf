// SPDX-License-Identifier: MIT
// The trigger: its switch, its mode, and software triggering. A camera has one trigger for each
// entry of TriggerSelector, and any trigger that is on suspends frames until it fires.
#include "library/core/Features.h"
#include "library/core/Selection.h"

#include <algorithm>

namespace orvalis {

namespace {

constexpr const char *kSelector = "TriggerSelector";
constexpr const char *kMode = "TriggerMode";
constexpr const char *kCommand = "TriggerSoftware";
constexpr const char *kPulse = "SoftwareSignalPulse";

const SwitchNode &modeSwitch() { return row(Switch::TriggerEnable).nodes[0]; }

bool hasCommand(NodeMap &nodes, const char *name, OResult &result)
{
    NodeInfo info;
    result = nodes.info(name, info);
    return result == ORVALIS_OK && info.type == ORVALIS_NODE_COMMAND &&
           info.access != ORVALIS_ACCESS_NOT_IMPLEMENTED;
}

bool isSoftwareSignal(std::string_view source) { return source.starts_with("SoftwareSignal"); }

/// Sources that a software trigger fires: the software source, and sources that stand for all. An
/// empty source means a camera without a list of sources.
bool isFiredBySoftware(std::string_view source)
{
    return source.empty() || source == "Software" || source == "All" || source == "Any" ||
           isSoftwareSignal(source);
}

} // namespace

/// Whether the trigger of the selected entry is on. ORVALIS_ERROR_NOT_SUPPORTED if it has no
/// trigger.
OResult Features::readTrigger(bool &on)
{
    Located mode{kMode};
    const OResult result = inspect(kMode, mode.info);
    return result == ORVALIS_OK ? readSwitch(mode, modeSwitch(), on) : result;
}

/// Switches the trigger of one entry, and leaves that entry selected. `entry` is empty for a camera
/// without the selector, which has one trigger.
OResult Features::writeTrigger(Selection &selection, const std::string &entry, bool on)
{
    Located mode{kMode};
    OResult result = entry.empty() ? ORVALIS_OK : selection.setSelector(kSelector, entry);
    if (result == ORVALIS_OK)
        result = inspect(kMode, mode.info);
    return result == ORVALIS_OK ? writeSwitch(mode, modeSwitch(), on) : result;
}

/// Finds the entries whose trigger is on, the selected one first. ORVALIS_ERROR_NOT_SUPPORTED if no
/// entry has a trigger.
OResult Features::findTriggers(std::vector<std::string> &on)
{
    OResult result = ORVALIS_ERROR_NOT_SUPPORTED;
    Selection selection(nodes_);
    const OResult walked = selection.eachEntry(kSelector, [&](std::string_view entry) {
        bool isOn = false;
        const OResult read = readTrigger(isOn);
        if (read == ORVALIS_ERROR_NOT_SUPPORTED)
            return true;
        if (read == ORVALIS_OK && isOn)
            on.emplace_back(entry);
        result = read;
        return read == ORVALIS_OK;
    });
    return walked == ORVALIS_OK ? result : walked;
}

/// Switches off the entries in `on`, then switches on `wanted` unless it is null; some cameras
/// refuse two triggers at a time. After a failure the triggers are as before.
OResult Features::switchOnOnly(const std::string *wanted, const std::vector<std::string> &on)
{
    Selection selection(nodes_);
    OResult result = ORVALIS_OK;
    std::vector<std::string> done;
    for (const std::string &entry : on) {
        if (result != ORVALIS_OK || (wanted && entry == *wanted))
            continue;
        result = writeTrigger(selection, entry, false);
        if (result == ORVALIS_OK)
            done.push_back(entry);
    }
    // Even if it was on before: the entries of some cameras share one switch.
    if (result == ORVALIS_OK && wanted)
        result = writeTrigger(selection, *wanted, true);
    if (result != ORVALIS_OK)
        for (const std::string &entry : done)
            writeTrigger(selection, entry, true);
    return result;
}

OResult Features::getTrigger(bool &on)
{
    const NodeAccess access(nodes_, mutex_);
    std::vector<std::string> found;
    const OResult result = findTriggers(found);
    if (result == ORVALIS_OK)
        on = !found.empty();
    return result;
}

OResult Features::setTrigger(bool on)
{
    const NodeAccess access(nodes_, mutex_);
    std::vector<std::string> found;
    std::string chosen;
    OResult result = findTriggers(found);
    if (result == ORVALIS_OK)
        result = readEntry(nodes_, kSelector, chosen);
    return result == ORVALIS_OK ? switchOnOnly(on ? &chosen : nullptr, found) : result;
}

OResult Features::setTriggerMode(std::string_view name)
{
    const NodeAccess access(nodes_, mutex_);
    NodeInfo info;
    if (const OResult result = inspect(kSelector, info); result != ORVALIS_OK)
        return result;
    std::vector<std::string> on;
    std::string before;
    OResult result = findTriggers(on);
    if (result == ORVALIS_OK || result == ORVALIS_ERROR_NOT_SUPPORTED)
        result = readEntry(nodes_, kSelector, before);
    if (result == ORVALIS_OK)
        result = nodes_.setEnumeration(kSelector, name);
    if (result != ORVALIS_OK)
        return result;
    result = moveTrigger(std::string(name), on);
    if (result != ORVALIS_OK && !before.empty())
        nodes_.setEnumeration(kSelector, before);
    return result;
}

/// Moves the trigger from the entries in `on` to the selected entry.
OResult Features::moveTrigger(const std::string &chosen, const std::vector<std::string> &on)
{
    if (on.empty() || (on.size() == 1 && on.front() == chosen))
        return ORVALIS_OK;
    NodeInfo info;
    const OResult result = inspect(kMode, info);
    if (result == ORVALIS_ERROR_NOT_SUPPORTED) // no trigger here
        return ORVALIS_OK;
    return result == ORVALIS_OK ? switchOnOnly(&chosen, on) : result;
}

/// Whether the selected entry waits for a software trigger, and its source.
bool Features::waitsForSoftware(std::string &source)
{
    bool on = false;
    const OResult result = readTrigger(on);
    const bool waits = result == ORVALIS_ERROR_NOT_SUPPORTED ? !hasNode(nodes_, kMode) : on;
    return waits && readEntry(nodes_, "TriggerSource", source) == ORVALIS_OK &&
           isFiredBySoftware(source);
}

OResult Features::fireSoftwareTrigger(bool streaming)
{
    const NodeAccess access(nodes_, mutex_);
    OResult result = ORVALIS_OK;
    const bool hasTrigger = hasCommand(nodes_, kCommand, result);
    if (result == ORVALIS_ERROR_CONNECTION_LOST)
        return result;
    const bool hasPulse = hasCommand(nodes_, kPulse, result);
    if (result == ORVALIS_ERROR_CONNECTION_LOST)
        return result;
    if (!hasTrigger && !hasPulse)
        return ORVALIS_ERROR_NOT_SUPPORTED;
    if (!streaming) // some cameras store a trigger that arrives while they are not waiting for one
        return ORVALIS_OK;
    Selection selection(nodes_);
    result = ORVALIS_OK;
    const OResult walked = selection.eachEntry(kSelector, [&](std::string_view) {
        std::string source;
        if (!waitsForSoftware(source))
            return true;
        const bool pulse = isSoftwareSignal(source) ? hasPulse : !hasTrigger;
        if (pulse && isSoftwareSignal(source))
            selection.setSelector("SoftwareSignalSelector", source);
        result = nodes_.execute(pulse ? kPulse : kCommand);
        return false;
    });
    if (walked != ORVALIS_OK)
        return walked;
    const bool notReady =
        result == ORVALIS_ERROR_ACCESS_DENIED || result == ORVALIS_ERROR_NOT_FOUND;
    return notReady ? ORVALIS_OK : result; // not set up for software
}

} // namespace orvalis
