// SPDX-License-Identifier: MIT
// Turns a camera's selectors for the time of one access, and puts them back.
#include "library/core/Selection.h"

#include <algorithm>

namespace orvalis {

namespace {

constexpr std::string_view kStrobe = "Strobe"; ///< the mode of a line that fires a lamp

bool offers(const EnumerationValue &value, std::string_view entry)
{
    return std::any_of(value.entries.begin(), value.entries.end(),
                       [&](const auto &candidate) { return candidate.name == entry; });
}

/// A missing selector is no error where a camera may do without.
OResult missingIsFine(OResult result)
{
    const bool missing = result == ORVALIS_ERROR_NOT_FOUND || result == ORVALIS_ERROR_WRONG_TYPE ||
                         result == ORVALIS_ERROR_ACCESS_DENIED;
    return missing ? ORVALIS_OK : result;
}

/// Whether the line that is selected can drive a lamp. An input must never be driven.
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
    entry.clear();
    return missingIsFine(nodes.getEntry(name, entry));
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
        for (auto it = turned_.rbegin(); it != turned_.rend(); ++it) {
            if (it->now == it->before)
                continue;
            // Twice, as the camera may just have been busy: what is shown depends on selectors.
            const OResult result = nodes_.setEnumeration(it->selector, it->before);
            if (result != ORVALIS_OK && result != ORVALIS_ERROR_CONNECTION_LOST)
                nodes_.setEnumeration(it->selector, it->before);
        }
    } catch (...) {
        // The selector stays; the access itself has its result.
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

OResult Selection::turn(std::string_view selector, std::string_view entry)
{
    EnumerationValue value;
    const bool known = std::any_of(turned_.begin(), turned_.end(), [&](const Turned &turned) {
        return turned.selector == selector;
    });
    if (!known) {
        const OResult result = nodes_.getEnumeration(selector, value);
        if (result != ORVALIS_OK)
            return result;
    }
    return turn(selector, value, entry);
}

/// `found` is what the selector was before the first turn.
OResult Selection::turn(std::string_view selector, const EnumerationValue &found,
                        std::string_view entry)
{
    auto it = std::find_if(turned_.begin(), turned_.end(),
                           [&](const Turned &turned) { return turned.selector == selector; });
    if (it == turned_.end()) {
        const std::string present(nameOf(found));
        if (present == entry)
            return ORVALIS_OK;
        if (present.empty()) // nothing to go back to
            return nodes_.setEnumeration(selector, entry);
        it = turned_.insert(turned_.end(), {std::string(selector), present, present});
    }
    if (it->now == entry)
        return ORVALIS_OK;
    const OResult result = nodes_.setEnumeration(selector, entry);
    if (result == ORVALIS_OK)
        it->now = entry;
    else if (missingIsFine(result) != ORVALIS_OK)
        it->now.clear(); // it may stand anywhere: it is put back in any case
    return result;
}

OResult Selection::eachEntry(std::string_view selector,
                             const std::function<bool(std::string_view)> &body)
{
    EnumerationValue value;
    if (const OResult result = missingIsFine(nodes_.getEnumeration(selector, value));
        result != ORVALIS_OK)
        return result;
    const std::string present(nameOf(value));
    if (!body(present))
        return ORVALIS_OK;
    for (const auto &entry : value.entries) {
        if (entry.name == present)
            continue;
        const OResult result = turn(selector, value, entry.name);
        if (missingIsFine(result) != ORVALIS_OK)
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
        return missingIsFine(result) == ORVALIS_OK ? ORVALIS_ERROR_NOT_SUPPORTED : result;
    return offers(now, entry) ? turn(selector, now, entry) : ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Selection::selectIfOffered(std::string_view selector,
                                   std::initializer_list<std::string_view> entries)
{
    EnumerationValue now;
    if (const OResult result = nodes_.getEnumeration(selector, now); result != ORVALIS_OK)
        return missingIsFine(result);
    for (const std::string_view entry : entries)
        if (offers(now, entry))
            return turn(selector, now, entry);
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
        result = offers(lines, source) ? turn("LineSelector", lines, source) : selectFilteredLine();
    if (missingIsFine(result) != ORVALIS_OK)
        return result;
    return selectIfOffered("LineFilterSelector", {"Deglitch", "Debounce"});
}

OResult Selection::selectFilteredLine()
{
    return selectFirst("LineSelector", [this] {
        const auto &nodes = row(Number::TriggerNoiseFilter).nodes;
        return std::any_of(nodes.begin(), nodes.end(), [this](const NumberNode &node) {
            return node.name && isAvailable(nodes_, node.name);
        });
    });
}

/// Some cameras have a selector for inputs alone, with a name of its own for the same line:
/// "SyncIn2" where the trigger has "Line2".
OResult Selection::selectTriggerInput(std::string_view source)
{
    constexpr std::string_view line = "Line";
    const std::string input =
        source.starts_with(line) ? "SyncIn" + std::string(source.substr(line.size())) : "";
    return selectIfOffered("SyncInSelector", {source, input});
}

/// The line that is in the mode of a strobe, else the first one that is an output: wherever the
/// selector stands, so that the strobe is always on the same line.
OResult Selection::selectStrobeLine()
{
    EnumerationValue lines;
    if (const OResult result = nodes_.getEnumeration("LineSelector", lines); result != ORVALIS_OK)
        return missingIsFine(result);
    return isKnownStrobeLine(lines) ? ORVALIS_OK : findStrobeLine(lines);
}

bool Selection::isKnownStrobeLine(const EnumerationValue &lines)
{
    std::string mode;
    return known_ && offers(lines, known_->name) &&
           turn("LineSelector", lines, known_->name) == ORVALIS_OK &&
           readEntry(nodes_, "LineMode", mode) == ORVALIS_OK && mode == known_->mode &&
           (mode == kStrobe || isOutput(nodes_, mode));
}

OResult Selection::findStrobeLine(const EnumerationValue &lines)
{
    StrobeLine found;
    bool offersStrobe = false;
    for (const auto &line : lines.entries) {
        OResult result = turn("LineSelector", lines, line.name);
        if (result != ORVALIS_OK && missingIsFine(result) == ORVALIS_OK)
            continue;
        EnumerationValue mode;
        if (result == ORVALIS_OK)
            result = missingIsFine(nodes_.getEnumeration("LineMode", mode));
        if (result != ORVALIS_OK)
            return result;
        offersStrobe = offersStrobe || offers(mode, kStrobe);
        const bool isStrobe = nameOf(mode) == kStrobe;
        if (isStrobe || (found.name.empty() && isOutput(nodes_, nameOf(mode))))
            found = {line.name, std::string(nameOf(mode))};
        if (isStrobe)
            break;
    }
    // An output that is not in that mode may lose to a line that comes into it.
    if (known_)
        *known_ = found.mode == kStrobe || !offersStrobe ? found : StrobeLine();
    return found.name.empty() ? ORVALIS_ERROR_NOT_SUPPORTED
                              : turn("LineSelector", lines, found.name);
}

/// Where no line is the strobe's, the selector goes back: the node may belong to no line at all.
OResult Selection::selectStrobeLineIfAny()
{
    const OResult result = selectStrobeLine();
    if (result != ORVALIS_ERROR_NOT_SUPPORTED)
        return result;
    for (const Turned &turned : turned_)
        if (turned.selector == "LineSelector")
            return turn("LineSelector", std::string(turned.before));
    return ORVALIS_OK;
}

OResult Selection::selectStrobeTimer()
{
    const OResult line = selectStrobeLine();
    if (line != ORVALIS_OK && line != ORVALIS_ERROR_NOT_SUPPORTED)
        return line;
    EnumerationValue timers;
    if (const OResult result = nodes_.getEnumeration("TimerSelector", timers); result != ORVALIS_OK)
        return missingIsFine(result);
    const std::string source =
        line == ORVALIS_OK ? currentEntry(nodes_, "LineSource") : std::string();
    for (const auto &timer : timers.entries)
        if (source.starts_with(timer.name)) // "Timer0Active" comes from "Timer0"
            return turn("TimerSelector", timers, timer.name);
    return timers.entries.empty() ? ORVALIS_OK
                                  : turn("TimerSelector", timers, timers.entries.front().name);
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
    return turn("SyncOutSelector", present);
}

} // namespace orvalis
