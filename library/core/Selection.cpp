// SPDX-License-Identifier: MIT
// Turns a camera's selectors for the time of one access, and puts them back.
#include "library/core/Selection.h"

#include <algorithm>

namespace orvalis {

namespace {

bool offers(const EnumerationValue &value, std::string_view entry)
{
    return std::any_of(value.entries.begin(), value.entries.end(),
                       [&](const auto &candidate) { return candidate.name == entry; });
}

std::string_view nameOf(const EnumerationValue &value)
{
    const bool known =
        value.current >= 0 && static_cast<std::size_t>(value.current) < value.entries.size();
    return known ? std::string_view(value.entries[static_cast<std::size_t>(value.current)].name)
                 : std::string_view();
}

/// A missing selector is no error where a camera may do without.
OResult missingIsFine(OResult result)
{
    const bool missing = result == ORVALIS_ERROR_NOT_FOUND || result == ORVALIS_ERROR_WRONG_TYPE ||
                         result == ORVALIS_ERROR_ACCESS_DENIED;
    return missing ? ORVALIS_OK : result;
}

} // namespace

bool isAvailable(NodeMap &nodes, std::string_view name)
{
    NodeInfo info;
    return nodes.info(name, info) == ORVALIS_OK && info.access >= ORVALIS_ACCESS_WRITE_ONLY;
}

std::string currentEntry(NodeMap &nodes, std::string_view name)
{
    EnumerationValue value;
    return nodes.getEnumeration(name, value) == ORVALIS_OK ? std::string(nameOf(value))
                                                           : std::string();
}

Selection::~Selection()
{
    try {
        for (auto it = before_.rbegin(); it != before_.rend(); ++it)
            nodes_.setEnumeration(it->first, it->second);
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
    case Selecting::OutputLine:
        return selectOutputLine();
    case Selecting::StrobeTimer:
        return selectStrobeTimer();
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Selection::turn(std::string_view selector, const EnumerationValue &now,
                        std::string_view entry)
{
    const std::string_view present = nameOf(now);
    if (present == entry)
        return ORVALIS_OK;
    const auto known = [&](const auto &pair) { return pair.first == selector; };
    if (!present.empty() && std::none_of(before_.begin(), before_.end(), known))
        before_.emplace_back(selector, present);
    return nodes_.setEnumeration(selector, entry);
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
    EnumerationValue now;
    if (const OResult result = nodes_.getEnumeration(selector, now); result != ORVALIS_OK)
        return fits() ? ORVALIS_OK : result;
    if (fits())
        return ORVALIS_OK;
    for (const auto &entry : now.entries) {
        const bool present = entry.name == nameOf(now);
        if (!present && turn(selector, now, entry.name) == ORVALIS_OK && fits())
            return ORVALIS_OK;
    }
    return ORVALIS_ERROR_NOT_SUPPORTED;
}

OResult Selection::selectTriggerLine()
{
    const std::string source = currentEntry(nodes_, "TriggerSource");
    EnumerationValue lines;
    if (nodes_.getEnumeration("LineSelector", lines) == ORVALIS_OK && offers(lines, source))
        return turn("LineSelector", lines, source);
    const auto hasFilter = [this] {
        return isAvailable(nodes_, "LineDebouncerTime") ||
               isAvailable(nodes_, "LineDebouncerTimeAbs") ||
               isAvailable(nodes_, "LineDebouncerTimeRaw");
    };
    return missingIsFine(selectFirst("LineSelector", hasFilter));
}

OResult Selection::selectOutputLine()
{
    const auto isOutput = [this] {
        const std::string mode = currentEntry(nodes_, "LineMode");
        return isAvailable(nodes_, "LineSource") && (mode.empty() || mode == "Output");
    };
    return missingIsFine(selectFirst("LineSelector", isOutput));
}

OResult Selection::selectStrobeTimer()
{
    EnumerationValue timers;
    if (const OResult result = nodes_.getEnumeration("TimerSelector", timers); result != ORVALIS_OK)
        return missingIsFine(result);
    std::string source;
    {
        Selection line(nodes_);
        if (line.selectOutputLine() == ORVALIS_OK)
            source = currentEntry(nodes_, "LineSource");
    }
    for (const auto &timer : timers.entries)
        if (source.starts_with(timer.name)) // "Timer0Active" comes from "Timer0"
            return turn("TimerSelector", timers, timer.name);
    return timers.entries.empty() ? ORVALIS_OK
                                  : turn("TimerSelector", timers, timers.entries.front().name);
}

} // namespace orvalis
