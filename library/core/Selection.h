// SPDX-License-Identifier: MIT
// Sets a camera's selectors for one access and restores them afterwards.
#pragma once

#include "library/core/FeatureTable.h"
#include "library/core/NodeMap.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

/// Sets selectors for a feature and restores them on destruction. Use it under the camera's node
/// lock, so that no other call depends on a changed selector.
class Selection {
public:
    /// The line on which the strobe was found, and its mode then. Avoids a search through all
    /// lines.
    struct StrobeLine {
        std::string name;
        std::string mode;
    };

    /// `known` may be null; otherwise it is used and updated.
    explicit Selection(NodeMap &nodes, StrobeLine *known = nullptr) : nodes_(nodes), known_(known)
    {
    }
    ~Selection();
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;

    /// ORVALIS_ERROR_NOT_SUPPORTED if the camera has no such selector or entry.
    OResult select(Selecting what);
    /// Sets one selector. ORVALIS_ERROR_NOT_FOUND for an entry that is not available.
    OResult setSelector(std::string_view selector, std::string_view entry);
    /// Calls `body` with the name of the present entry, then with each other entry after selecting
    /// it, until `body` returns false. Skips entries that cannot be selected at present. For a
    /// camera without the selector, calls `body` once with an empty name.
    OResult eachEntry(std::string_view selector, const std::function<bool(std::string_view)> &body);

private:
    /// A selector that was changed: its original and its present entry.
    struct ChangedSelector {
        std::string selector;
        std::string before;
        std::string now;
    };
    OResult selectRequired(std::string_view selector, std::string_view entry);
    OResult selectIfOffered(std::string_view selector,
                            std::initializer_list<std::string_view> entries);
    OResult selectTriggerLine();
    OResult selectFilteredLine();
    OResult selectTriggerInput(std::string_view source);
    OResult selectStrobeLine();
    OResult findStrobeLine(const EnumerationValue &lines);
    bool isKnownStrobeLine(const EnumerationValue &lines);
    OResult selectStrobeLineIfAny();
    OResult selectStrobeTimer();
    OResult selectStrobeOutput();
    /// Selects the present entry or else the first other entry for which `fits` returns true;
    /// ORVALIS_ERROR_NOT_SUPPORTED if there is none.
    template <class Fits> OResult selectFirst(std::string_view selector, Fits fits);
    OResult setSelector(std::string_view selector, const EnumerationValue &found,
                        std::string_view entry);

    NodeMap &nodes_;
    StrobeLine *known_;
    std::vector<ChangedSelector> changed_; // in the order of the first change
};

/// True if the camera has the node and it is usable at present.
bool isAvailable(NodeMap &nodes, std::string_view name);

/// True if the camera has the node, usable at present or not.
bool hasNode(NodeMap &nodes, std::string_view name);

/// Reads the name of an enumeration's present entry into `entry`, which stays as it is for a camera
/// that lacks the node or denies access to it.
OResult readEntry(NodeMap &nodes, std::string_view name, std::string &entry);

/// Likewise; empty after any failure.
std::string currentEntry(NodeMap &nodes, std::string_view name);

} // namespace orvalis
