// SPDX-License-Identifier: MIT
// Turns a camera's selectors for the time of one access, and puts them back.
#pragma once

#include "library/core/FeatureTable.h"
#include "library/core/NodeMap.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

/// Selectors as they have to stand for a feature, from select() to destruction. To be used under
/// the camera's node lock, so that nobody meets a selector that somebody else has turned.
class Selection {
public:
    /// The line that a strobe was found on, and its mode then. Spares the look at every line.
    struct StrobeLine {
        std::string name;
        std::string mode;
    };

    /// `known` is looked at and kept up to date, where it is not null.
    explicit Selection(NodeMap &nodes, StrobeLine *known = nullptr) : nodes_(nodes), known_(known)
    {
    }
    ~Selection();
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;

    /// ORVALIS_ERROR_NOT_SUPPORTED if the camera has nothing of that kind.
    OResult select(Selecting what);
    /// Turns one selector. ORVALIS_ERROR_NOT_FOUND for an entry that is not offered.
    OResult turn(std::string_view selector, std::string_view entry);
    /// Calls `body` with the name of the present entry of a selector, then with each other one, the
    /// selector turned to it, until `body` returns false. Entries that cannot be selected at
    /// present are skipped. A camera without the selector has one entry without a name.
    OResult eachEntry(std::string_view selector, const std::function<bool(std::string_view)> &body);

private:
    /// A selector as it stands and as it stood.
    struct Turned {
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
    /// Tries the present entry, then the others; OK with the first one that `fits`, else
    /// ORVALIS_ERROR_NOT_SUPPORTED.
    template <class Fits> OResult selectFirst(std::string_view selector, Fits fits);
    OResult turn(std::string_view selector, const EnumerationValue &found, std::string_view entry);

    NodeMap &nodes_;
    StrobeLine *known_;
    std::vector<Turned> turned_; // in the order of the first turn
};

/// True if the node is there and can be used at present.
bool isAvailable(NodeMap &nodes, std::string_view name);

/// True if the camera has the node, whether or not it can be used at present.
bool hasNode(NodeMap &nodes, std::string_view name);

/// The name of the present entry of an enumeration; empty for a camera that lacks it or gives no
/// access to it.
OResult readEntry(NodeMap &nodes, std::string_view name, std::string &entry);

/// The same; empty after any failure.
std::string currentEntry(NodeMap &nodes, std::string_view name);

} // namespace orvalis
