// SPDX-License-Identifier: MIT
// The lists of names that programs read entry by entry.
#pragma once

#include "library/core/Features.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace orvalis {

/// To read a list from a camera takes a round trip for many of its entries. A program that asks for
/// the number of names and then for each of them gets them all out of the list that was read for
/// the number, until something is written to the camera, or its stream starts or stops. Any thread.
class ChoiceLists {
public:
    explicit ChoiceLists(Features &features) : features_(features) {}

    /// Reads the list. Results as of Features::list().
    OResult count(Choice choice, bool streaming, std::int32_t &count);
    /// A name of the list that was counted last; of one that is read now where the camera may have
    /// changed since. ORVALIS_ERROR_NOT_FOUND for an index that it does not have.
    OResult name(Choice choice, bool streaming, std::int32_t index, std::string &name);

    /// Something is written to the camera: to be called before and afterwards, so that no list
    /// read meanwhile is kept.
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
