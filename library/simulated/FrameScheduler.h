// SPDX-License-Identifier: MIT
// Decides when a simulated camera's next frame is complete: by the clock, or by triggers.
#pragma once

#include "library/core/Device.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace orvalis::simulated {

/// Where triggers come from; numbers of the node TriggerSource.
enum class TriggerSource : std::uint32_t { Software, Line0, Line1 };

/// What the settings say about time.
struct FrameTiming {
    std::chrono::nanoseconds period{};   ///< between the starts of two exposures, at least
    std::chrono::nanoseconds exposure{}; ///< at most `period`
    std::chrono::nanoseconds delay{};    ///< from trigger to exposure
    std::chrono::nanoseconds debounce{}; ///< how long a pulse must last to count
    bool triggered = false;
    TriggerSource source = TriggerSource::Software;
    bool fallingEdge = false;
    unsigned burst = 1;                   ///< frames for one trigger
    std::array<double, 2> lineRate{1, 1}; ///< pulses per second on Line0 and Line1
};

/// Level of a simulated line, high for the first half of each pulse.
bool lineIsHigh(double rate, Clock::time_point now);

/// The clock of one acquisition. Times are absolute and each frame follows from the one before, so
/// that the mean rate does not drift. A host that comes late gets what the camera's memory holds,
/// the frames of 200 ms or four if that is more; the rest of what it missed is skipped. Not
/// synchronised: its owner holds a lock.
class FrameScheduler {
public:
    /// Forgets everything; frames and triggers count from `now` on.
    void start(Clock::time_point now);
    /// The first frame is ready, perhaps late since the camera had to warm up: the clock of a free
    /// running acquisition counts from there.
    void firstFrameDone(const FrameTiming &timing, Clock::time_point now);
    /// The software trigger. Ignored unless `timing` waits for it.
    void softwareTrigger(const FrameTiming &timing, Clock::time_point now);
    /// When the next frame is complete; nothing while only a software trigger can start one.
    std::optional<Clock::time_point> due(const FrameTiming &timing, Clock::time_point now);
    /// Goes on to the frame after the one that due() told of, and tells how many frames in between
    /// were skipped since the host is late.
    std::uint64_t take(const FrameTiming &timing, Clock::time_point now);

private:
    std::optional<Clock::time_point> trigger(const FrameTiming &timing) const;
    Clock::time_point nextEdge(const FrameTiming &timing) const;
    void followMode(const FrameTiming &timing, Clock::time_point now);
    std::uint64_t takeFreeRunning(const FrameTiming &timing, Clock::time_point now);
    std::uint64_t takeTriggered(const FrameTiming &timing, Clock::time_point now);

    Clock::time_point next_;     ///< start of the next exposure: free running, or within a burst
    Clock::time_point lastEdge_; ///< edges up to here are done with
    std::deque<Clock::time_point> triggers_; ///< software triggers that wait for their frame
    unsigned burstLeft_ = 0;
    bool triggered_ = false;
};

} // namespace orvalis::simulated
