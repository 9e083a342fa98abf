// SPDX-License-Identifier: MIT
// Cached lists of names, which programs read entry by entry.
#pragma once

#include "library/core/Features.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace orvalis {

/// Caches lists of names. Reading a list from a camera takes a round trip for many of its entries;
/// a program asks for the number of names and then for each name. count() reads the list, and
/// name() uses it until something is written to the camera or its stream starts or stops. Any
/// thread.
class ChoiceLists {
public:
    explicit ChoiceLists(Features &features) : features_(features) {}

    /// Reads the list. Results as of Features::list().
    OResult count(Choice choice, bool streaming, std::int32_t &count);
    /// Returns a name from the list that count() read last; reads the list again if the camera may
    /// have changed since. ORVALIS_ERROR_NOT_FOUND for an index out of range.
    OResult name(Choice choice, bool streaming, std::int32_t index, std::string &name);

    /// Invalidates the lists. Call it before and after each write to the camera, so that no list
    /// read during the write is kept.
    void changed() { ++revision_; }

private:
    struct List {
        std::uint64_t revision = 0;
        bool streaming = false;
        std::vector<std::string> names;
    };
    OResult read(Choice choice, bool streaming, List &list);

    Features &features_;
    std::atomic<std::uint64_t> revision_{0};
    std::mutex mutex_; // guards lists_
    std::map<Choice, List> lists_;
};

} // namespace orvalis
