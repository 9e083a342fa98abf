// SPDX-License-Identifier: MIT
// Sets a camera's selectors for one access and restores them afterwards.
#include "library/core/Selection.h"

#include <algorithm>

namespace orvalis {

namespace {

constexpr std::string_view kStrobe = "Strobe"; ///< the mode of a line that fires a lamp

bool offers(const EnumerationValue &value, std::string_view entry)
{
    return std::any_of(
        value.entries.begin(), value.entries.end(),
        [&](const auto &candidate) { return candidate.name == entry; });
}

/// A missing selector is not an error if the camera can do without.
OResult ignoreMissing(OResult result)
{
    const bool missing = result == ORVALIS_ERROR_NOT_FOUND || result == ORVALIS_ERROR_WRONG_TYPE ||
                         result == ORVALIS_ERROR_ACCESS_DENIED;
    return missing ? ORVALIS_OK : result;
}

/// Whether the selected line can drive a lamp. Never drive an input.
bool isOutput(NodeMap &nodes, std::string_view mode)
{
    if (!mode.empty() && mode != "Output")
        return false;
    return isAvailable(nodes, hasNode(nodes, "LineSource") ? "LineSource" : "StrobeEnable");
}

} // namespace

bool hasNode(NodeMap &nodes, std::string_view name)
{
    NodeInfo info;
    return nodes.info(name, info) == ORVALIS_OK && info.access != ORVALIS_ACCESS_NOT_IMPLEMENTED;
}

bool isAvailable(NodeMap &nodes, std::string_view name)
{
    NodeInfo info;
    return nodes.info(name, info) == ORVALIS_OK && info.access >= ORVALIS_ACCESS_WRITE_ONLY;
}

OResult readEntry(NodeMap &nodes, std::string_view name, std::string &entry)
{
    return ignoreMissing(nodes.getEntry(name, entry));
}

std::string currentEntry(NodeMap &nodes, std::string_view name)
{
    std::string entry;
    readEntry(nodes, name, entry);
    return entry;
}

Selection::~Selection()
{
    try {
        for (auto it = changed_.rbegin(); it != changed_.rend(); ++it) {
            if (it->now == it->before)
                continue;
            // Try twice, because the camera may be busy for a moment, and the value that the user
            // sees depends on selectors.
            const OResult result = nodes_.setEnumeration(it->selector, it->before);
            if (result != ORVALIS_OK && result != ORVALIS_ERROR_CONNECTION_LOST)
                nodes_.setEnumeration(it->selector, it->before);
        }
    } catch (...) {
        // Best effort: the access already has its result.
    }
}

OResult Selection::select(Selecting what)
{
    switch (what) {
    case Selecting::Nothing:
        return ORVALIS_OK;
    case Selecting::Red:
        return selectRequired("BalanceRatioSelector", "Red");
    case Selecting::Green:
        return selectRequired("BalanceRatioSelector", "Green");
    case Selecting::Blue:
        return selectRequired("BalanceRatioSelector", "Blue");
    case Selecting::Gain:
        return selectIfOffered("GainSelector", {"All", "AnalogAll"});
    case Selecting::BlackLevel:
        return selectIfOffered("BlackLevelSelector", {"All"});
    case Selecting::TriggerLine:
        return selectTriggerLine();
    case Selecting::StrobeLine:
        return selectStrobeLine();
    case Selecting::StrobeNode:
        return selectStrobeLineIfAny();
    case Selecting::StrobeTimer:
        return selectStrobeTimer();
    case Selecting::StrobeOutput:
        return selectStrobeOutput();
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Selection::setSelector(std::string_view selector, std::string_view entry)
{
    EnumerationValue value;
    const bool known =
        std::any_of(changed_.begin(), changed_.end(),
                    [&](const ChangedSelector &changed) { return changed.selector == selector; });
    if (!known) {
        const OResult result = nodes_.getEnumeration(selector, value);
        if (result != ORVALIS_OK)
            return result;
    }
    return setSelector(selector, value, entry);
}

/// `found` is the state of the selector before its first change.
OResult Selection::setSelector(std::string_view selector, const EnumerationValue &found,
                               std::string_view entry)
{
    auto it = std::find_if(changed_.begin(), changed_.end(), [&](const ChangedSelector &changed) {
        return changed.selector == selector;
    });
    if (it == changed_.end()) {
        const std::string present(nameOf(found));
        if (present == entry)
            return ORVALIS_OK;
        if (present.empty()) // no entry to restore
            return nodes_.setEnumeration(selector, entry);
        it = changed_.insert(changed_.end(), {std::string(selector), present, present});
    }
    if (it->now == entry)
        return ORVALIS_OK;
    const OResult result = nodes_.setEnumeration(selector, entry);
    if (result == ORVALIS_OK)
        it->now = entry;
    else if (ignoreMissing(result) != ORVALIS_OK)
        it->now.clear(); // state unknown: restore it in any case
    return result;
}

OResult Selection::eachEntry(std::string_view selector,
                             const std::function<bool(std::string_view)> &body)
{
    EnumerationValue value;
    if (const OResult result = ignoreMissing(nodes_.getEnumeration(selector, value));
        result != ORVALIS_OK)
        return result;
    const std::string present(nameOf(value));
    if (!body(present))
        return ORVALIS_OK;
    for (const auto &entry : value.entries) {
        if (entry.name == present)
            continue;
        const OResult result = setSelector(selector, value, entry.name);
        if (ignoreMissing(result) != ORVALIS_OK)
            return result;
        if (result == ORVALIS_OK && !body(entry.name))
            return ORVALIS_OK;
    }
    return ORVALIS_OK;
}

OResult Selection::selectRequired(std::string_view selector, std::string_view entry)
{
    EnumerationValue now;
    const OResult result = nodes_.getEnumeration(selector, now);
    if (result != ORVALIS_OK)
        return ignoreMissing(result) == ORVALIS_OK ? ORVALIS_ERROR_NOT_SUPPORTED : result;
    return offers(now, entry) ? setSelector(selector, now, entry) : ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Selection::selectIfOffered(std::string_view selector,
                                   std::initializer_list<std::string_view> entries)
{
    EnumerationValue now;
    if (const OResult result = nodes_.getEnumeration(selector, now); result != ORVALIS_OK)
        return ignoreMissing(result);
    for (const std::string_view entry : entries)
        if (offers(now, entry))
            return setSelector(selector, now, entry);
    return ORVALIS_OK;
}

template <class Fits> OResult Selection::selectFirst(std::string_view selector, Fits fits)
{
    bool found = false;
    const OResult result = eachEntry(selector, [&](std::string_view) {
        found = fits();
        return !found;
    });
    if (result != ORVALIS_OK)
        return result;
    return found ? ORVALIS_OK : ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Selection::selectTriggerLine()
{
    const std::string source = currentEntry(nodes_, "TriggerSource");
    OResult result = selectTriggerInput(source);
    if (result != ORVALIS_OK)
        return result;
    EnumerationValue lines;
    result = nodes_.getEnumeration("LineSelector", lines);
    if (result == ORVALIS_OK)
        result = offers(lines, source) ? setSelector("LineSelector", lines, source)
                                       : selectFilteredLine();
    if (ignoreMissing(result) != ORVALIS_OK)
        return result;
    return selectIfOffered("LineFilterSelector", {"Deglitch", "Debounce"});
}

OResult Selection::selectFilteredLine()
{
    return selectFirst(
        "LineSelector",
        [this] {
            const auto &nodes = row(Number::TriggerNoiseFilter).nodes;
            return std::any_of(
                nodes.begin(), nodes.end(),
                [this](const NumberNode &node) {
                    return node.name && isAvailable(nodes_, node.name);
                });
        });
}

/// Some cameras have a separate selector for inputs, with another name for the same line: "SyncIn2"
/// for the trigger source "Line2".
OResult Selection::selectTriggerInput(std::string_view source)
{
    constexpr std::string_view line = "Line";
    const std::string input =
        source.starts_with(line) ? "SyncIn" + std::string(source.substr(line.size())) : "";
    return selectIfOffered("SyncInSelector", {source, input});
}

/// Selects the line in strobe mode, else the first output. Independent of the present selection, so
/// that the strobe is always on the same line.
OResult Selection::selectStrobeLine()
{
    EnumerationValue lines;
    if (const OResult result = nodes_.getEnumeration("LineSelector", lines); result != ORVALIS_OK)
        return ignoreMissing(result);
    return isKnownStrobeLine(lines) ? ORVALIS_OK : findStrobeLine(lines);
}

bool Selection::isKnownStrobeLine(const EnumerationValue &lines)
{
    std::string mode;
    return known_ && offers(lines, known_->name) &&
           setSelector("LineSelector", lines, known_->name) == ORVALIS_OK &&
           readEntry(nodes_, "LineMode", mode) == ORVALIS_OK && mode == known_->mode &&
           (mode == kStrobe || isOutput(nodes_, mode));
}

OResult Selection::findStrobeLine(const EnumerationValue &lines)
{
    StrobeLine found;
    bool offersStrobe = false;
    for (const auto &line : lines.entries) {
        OResult result = setSelector("LineSelector", lines, line.name);
        if (result != ORVALIS_OK && ignoreMissing(result) == ORVALIS_OK)
            continue;
        EnumerationValue mode;
        if (result == ORVALIS_OK)
            result = ignoreMissing(nodes_.getEnumeration("LineMode", mode));
        if (result != ORVALIS_OK)
            return result;
        offersStrobe = offersStrobe || offers(mode, kStrobe);
        const bool isStrobe = nameOf(mode) == kStrobe;
        if (isStrobe || (found.name.empty() && isOutput(nodes_, nameOf(mode))))
            found = {line.name, std::string(nameOf(mode))};
        if (isStrobe)
            break;
    }
    // Do not cache an output while another line can change to strobe mode, which takes precedence.
    if (known_)
        *known_ = found.mode == kStrobe || !offersStrobe ? found : StrobeLine();
    return found.name.empty() ? ORVALIS_ERROR_NOT_SUPPORTED
                              : setSelector("LineSelector", lines, found.name);
}

/// If no line is the strobe's, restores the selector: the node may not belong to a line.
OResult Selection::selectStrobeLineIfAny()
{
    const OResult result = selectStrobeLine();
    if (result != ORVALIS_ERROR_NOT_SUPPORTED)
        return result;
    for (const ChangedSelector &changed : changed_)
        if (changed.selector == "LineSelector")
            return setSelector("LineSelector", std::string(changed.before));
    return ORVALIS_OK;
}

OResult Selection::selectStrobeTimer()
{
    const OResult line = selectStrobeLine();
    if (line != ORVALIS_OK && line != ORVALIS_ERROR_NOT_SUPPORTED)
        return line;
    EnumerationValue timers;
    if (const OResult result = nodes_.getEnumeration("TimerSelector", timers); result != ORVALIS_OK)
        return ignoreMissing(result);
    const std::string source =
        line == ORVALIS_OK ? currentEntry(nodes_, "LineSource") : std::string();
    for (const auto &timer : timers.entries)
        if (source.starts_with(timer.name)) // source "Timer0Active" belongs to "Timer0"
            return setSelector("TimerSelector", timers, timer.name);
    return timers.entries.empty()
               ? ORVALIS_OK
               : setSelector("TimerSelector", timers, timers.entries.front().name);
}

OResult Selection::selectStrobeOutput()
{
    std::string present;
    bool found = false;
    const OResult result = eachEntry("SyncOutSelector", [&](std::string_view output) {
        present = present.empty() ? std::string(output) : present;
        found = currentEntry(nodes_, "SyncOutSource").starts_with("Strobe");
        return !found;
    });
    if (result != ORVALIS_OK || found || present.empty())
        return result;
    return setSelector("SyncOutSelector", present);
}

} // namespace orvalis
