// SPDX-License-Identifier: MIT
// Turns a camera's selectors for the time of one access, and puts them back.
#pragma once

#include "library/core/FeatureTable.h"
#include "library/core/NodeMap.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvalis {

/// Selectors as they have to stand for a feature, from select() to destruction. To be used under
/// the camera's node lock, so that nobody meets a selector that somebody else has turned.
class Selection {
public:
    explicit Selection(NodeMap &nodes) : nodes_(nodes) {}
    ~Selection();
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;

    /// ORVALIS_ERROR_NOT_SUPPORTED if the camera has nothing of that kind.
    OResult select(Selecting what);

private:
    OResult selectRequired(std::string_view selector, std::string_view entry);
    OResult selectIfOffered(std::string_view selector,
                            std::initializer_list<std::string_view> entries);
    OResult selectTriggerLine();
    OResult selectOutputLine();
    OResult selectStrobeTimer();
    /// Tries the present entry, then the others; OK with the first one that `fits`, else
    /// ORVALIS_ERROR_NOT_SUPPORTED with the selector as it was.
    template <class Fits> OResult selectFirst(std::string_view selector, Fits fits);
    OResult turn(std::string_view selector, const EnumerationValue &now, std::string_view entry);

    NodeMap &nodes_;
    std::vector<std::pair<std::string, std::string>> before_; // selector, entry to go back to
};

/// True if the node is there and can be used at present.
bool isAvailable(NodeMap &nodes, std::string_view name);

/// The name of the present entry of an enumeration; empty if there is none.
std::string currentEntry(NodeMap &nodes, std::string_view name);

} // namespace orvalis
