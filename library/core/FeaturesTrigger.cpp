// SPDX-License-Identifier: MIT
// The trigger: whether it is on, which one it is, and firing it by software. A camera has a trigger
// for each entry of TriggerSelector, and any of them that is on holds the camera back.
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

/// Sources that software can fire: its own, and what stands for every source there is. A camera
/// without a list of sources has no other.
bool isFiredBySoftware(std::string_view source)
{
    return source.empty() || source == "Software" || source == "All" || source == "Any" ||
           isSoftwareSignal(source);
}

} // namespace

/// Whether the entry that is selected is on. ORVALIS_ERROR_NOT_SUPPORTED if it has no trigger.
OResult Features::readTrigger(bool &on)
{
    Located mode{kMode};
    const OResult result = inspect(kMode, mode.info);
    return result == ORVALIS_OK ? readSwitch(mode, modeSwitch(), on) : result;
}

/// Switches the trigger of one entry, and leaves the selector turned to it. A camera without the
/// selector has one trigger, of no name.
OResult Features::writeTrigger(Selection &selection, const std::string &entry, bool on)
{
    Located mode{kMode};
    OResult result = entry.empty() ? ORVALIS_OK : selection.turn(kSelector, entry);
    if (result == ORVALIS_OK)
        result = inspect(kMode, mode.info);
    return result == ORVALIS_OK ? writeSwitch(mode, modeSwitch(), on) : result;
}

/// The entries that are on, the present one first. ORVALIS_ERROR_NOT_SUPPORTED if no entry has a
/// trigger.
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

/// Switches off what is `on`, and then `wanted` on, if there is one; some cameras refuse two at a
/// time. After a failure the triggers are as before.
OResult Features::leaveOn(const std::string *wanted, const std::vector<std::string> &on)
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
    // Also where it was on before: the entries of some cameras share one switch.
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
    return result == ORVALIS_OK ? leaveOn(on ? &chosen : nullptr, found) : result;
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

/// The entry that is selected takes over from those that are `on`.
OResult Features::moveTrigger(const std::string &chosen, const std::vector<std::string> &on)
{
    if (on.empty() || (on.size() == 1 && on.front() == chosen))
        return ORVALIS_OK;
    NodeInfo info;
    const OResult result = inspect(kMode, info);
    if (result == ORVALIS_ERROR_NOT_SUPPORTED) // no trigger of its own: the others stay
        return ORVALIS_OK;
    return result == ORVALIS_OK ? leaveOn(&chosen, on) : result;
}

/// Whether the entry that is selected waits for software, and for which source.
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
    if (!streaming) // some cameras keep a trigger in mind that came while they did not wait for one
        return ORVALIS_OK;
    Selection selection(nodes_);
    result = ORVALIS_OK;
    const OResult walked = selection.eachEntry(kSelector, [&](std::string_view) {
        std::string source;
        if (!waitsForSoftware(source))
            return true;
        const bool pulse = isSoftwareSignal(source) ? hasPulse : !hasTrigger;
        if (pulse && isSoftwareSignal(source))
            selection.turn("SoftwareSignalSelector", source);
        result = nodes_.execute(pulse ? kPulse : kCommand);
        return false;
    });
    if (walked != ORVALIS_OK)
        return walked;
    const bool notReady =
        result == ORVALIS_ERROR_ACCESS_DENIED || result == ORVALIS_ERROR_NOT_FOUND;
    return notReady ? ORVALIS_OK : result; // not set up for it
}

} // namespace orvalis
