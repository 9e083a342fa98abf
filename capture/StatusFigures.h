// SPDX-License-Identifier: MIT
// Passes the newest figures of a stream from the measuring thread to the status bar.
#pragma once

#include "capture/RateMeter.h"

#include <mutex>
#include <optional>
#include <utility>

/// Coalesces figures: the next one replaces one that was not taken, so that a thousand frames a
/// second do not post an event each. Does not allocate. Any thread.
class StatusFigures {
public:
    /// Figures that arrived since the last take().
    struct Newest {
        std::optional<double> count; ///< frames received
        std::optional<StreamRates> rates;
    };

    /// Frames received so far.
    void putCount(double count)
    {
        const std::lock_guard lock(m_mutex);
        m_newest.count = count;
    }
    /// Rates of a full measuring window.
    void putRates(const StreamRates &rates)
    {
        const std::lock_guard lock(m_mutex);
        m_newest.rates = rates;
    }
    /// Returns each figure once.
    Newest take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_newest, {});
    }

private:
    std::mutex m_mutex; // guards m_newest; held for a copy of a few words
    Newest m_newest;
};
