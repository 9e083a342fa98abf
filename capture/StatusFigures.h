// SPDX-License-Identifier: MIT
// The newest figures of a stream for the status bar, from the thread that measures them to the GUI.
#pragma once

#include "capture/RateMeter.h"

#include <mutex>
#include <optional>
#include <utility>

/// Coalesces: a figure that was not taken is replaced by the next one, so that a thousand frames a
/// second cost no event each. Nothing here allocates. Any thread.
class StatusFigures {
public:
    /// What arrived since the last take().
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
    /// Each figure once.
    Newest take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_newest, {});
    }

private:
    std::mutex m_mutex; // guards m_newest; held for a copy of a few words
    Newest m_newest;
};
