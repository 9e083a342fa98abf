// SPDX-License-Identifier: MIT
// Determines when a simulated camera's next frame is complete: free running, or triggered.
#pragma once

#include "library/core/Device.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace orvalis::simulated {

/// The trigger's source; values of the node TriggerSource.
enum class TriggerSource : std::uint32_t { Software, Line0, Line1 };

/// The settings that concern time.
struct FrameTiming {
    std::chrono::nanoseconds period{};   ///< minimum time between the starts of two exposures
    std::chrono::nanoseconds exposure{}; ///< at most `period`
    std::chrono::nanoseconds delay{};    ///< from trigger to exposure
    std::chrono::nanoseconds debounce{}; ///< minimum length of a valid pulse
    bool triggered = false;
    TriggerSource source = TriggerSource::Software;
    bool fallingEdge = false;
    unsigned burst = 1;                   ///< frames for one trigger
    std::array<double, 2> lineRate{1, 1}; ///< pulses per second on Line0 and Line1
};

/// The level of a simulated line: high for the first half of each pulse.
bool lineIsHigh(double rate, Clock::time_point now);

/// The clock of one acquisition. Times are absolute and each frame follows from the previous one,
/// so that the mean rate does not drift. A late host receives what the camera's memory contains,
/// the frames of 200 ms or four if that is more; the rest is skipped. Not synchronised: the owner
/// holds a lock.
class FrameScheduler {
public:
    /// Resets the state; frames and triggers count from `now` on.
    void start(Clock::time_point now);
    /// Reports that the first frame is ready. It may be late because the camera warms up, so the
    /// clock of a free-running acquisition restarts here.
    void firstFrameDone(const FrameTiming &timing, Clock::time_point now);
    /// Fires the software trigger. Ignored unless `timing` waits for it.
    void softwareTrigger(const FrameTiming &timing, Clock::time_point now);
    /// The time at which the next frame is complete; empty while only a software trigger can start
    /// one.
    std::optional<Clock::time_point> due(const FrameTiming &timing, Clock::time_point now);
    /// Advances to the frame after the one reported by due(). Returns the number of frames skipped
    /// because the host is late.
    std::uint64_t take(const FrameTiming &timing, Clock::time_point now);

private:
    std::optional<Clock::time_point> trigger(const FrameTiming &timing) const;
    Clock::time_point nextEdge(const FrameTiming &timing) const;
    void followMode(const FrameTiming &timing, Clock::time_point now);
    std::uint64_t takeFreeRunning(const FrameTiming &timing, Clock::time_point now);
    std::uint64_t takeTriggered(const FrameTiming &timing, Clock::time_point now);

    Clock::time_point next_;     ///< start of the next exposure: free running, or within a burst
    Clock::time_point lastEdge_; ///< edges up to this time are processed
    std::deque<Clock::time_point> triggers_; ///< pending software triggers
    unsigned burstLeft_ = 0;
    bool triggered_ = false;
};

} // namespace orvalis::simulated
