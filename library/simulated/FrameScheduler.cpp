// SPDX-License-Identifier: MIT
// The clock of an acquisition.
#include "library/simulated/FrameScheduler.h"

#include <algorithm>
#include <cmath>

namespace orvalis::simulated {
namespace {

using std::chrono::nanoseconds;

constexpr int kBacklogFrames = 4; ///< frames that a late host still receives
constexpr nanoseconds kBacklogTime = std::chrono::milliseconds(200); // or this time, if longer
constexpr std::size_t kTriggerQueue = 64;

nanoseconds backlog(nanoseconds period) { return std::max(kBacklogFrames * period, kBacklogTime); }

nanoseconds pulsePeriod(double rate)
{
    return nanoseconds(std::max<std::int64_t>(2, std::llround(1e9 / rate)));
}

double lineRate(const FrameTiming &timing)
{
    return timing.lineRate[timing.source == TriggerSource::Line1 ? 1 : 0];
}

} // namespace

bool lineIsHigh(double rate, Clock::time_point now)
{
    const nanoseconds period = pulsePeriod(rate);
    return nanoseconds(now.time_since_epoch()) % period < period / 2;
}

void FrameScheduler::start(Clock::time_point now)
{
    next_ = lastEdge_ = now;
    triggers_.clear();
    burstLeft_ = 0;
    triggered_ = false;
}

void FrameScheduler::firstFrameDone(const FrameTiming &timing, Clock::time_point now)
{
    if (!timing.triggered)
        next_ = std::max(next_, now + timing.period - timing.exposure);
}

void FrameScheduler::softwareTrigger(const FrameTiming &timing, Clock::time_point now)
{
    followMode(timing, now);
    if (timing.triggered && timing.source == TriggerSource::Software &&
        triggers_.size() < kTriggerQueue)
        triggers_.push_back(now);
}

void FrameScheduler::followMode(const FrameTiming &timing, Clock::time_point now)
{
    if (timing.triggered == triggered_)
        return;
    triggered_ = timing.triggered;
    next_ = std::max(next_, now);
    lastEdge_ = now;
    triggers_.clear();
    burstLeft_ = 0;
}

Clock::time_point FrameScheduler::nextEdge(const FrameTiming &timing) const
{
    const nanoseconds period = pulsePeriod(lineRate(timing));
    const nanoseconds phase = timing.fallingEdge ? period / 2 : nanoseconds(0);
    const nanoseconds since = nanoseconds(lastEdge_.time_since_epoch()) - phase;
    return Clock::time_point(phase + (since / period + 1) * period);
}

std::optional<Clock::time_point> FrameScheduler::trigger(const FrameTiming &timing) const
{
    if (timing.source == TriggerSource::Software)
        return triggers_.empty() ? std::nullopt : std::optional(triggers_.front());
    if (timing.debounce > pulsePeriod(lineRate(timing)) / 2)
        return std::nullopt; // every pulse is filtered out
    return nextEdge(timing) + timing.debounce;
}

std::optional<Clock::time_point> FrameScheduler::due(const FrameTiming &timing,
                                                     Clock::time_point now)
{
    followMode(timing, now);
    next_ = std::min(next_, now + timing.period); // the rate may have been raised
    if (!timing.triggered || burstLeft_ > 0)
        return next_ + timing.exposure;
    const auto fired = trigger(timing);
    if (!fired)
        return std::nullopt;
    return std::max(*fired + timing.delay, next_) + timing.exposure;
}

std::uint64_t FrameScheduler::take(const FrameTiming &timing, Clock::time_point now)
{
    return timing.triggered ? takeTriggered(timing, now) : takeFreeRunning(timing, now);
}

std::uint64_t FrameScheduler::takeFreeRunning(const FrameTiming &timing, Clock::time_point now)
{
    next_ += timing.period;
    const nanoseconds late = now - (next_ + timing.exposure);
    if (late <= backlog(timing.period))
        return 0;
    const auto skipped = late / timing.period;
    next_ += skipped * timing.period;
    return static_cast<std::uint64_t>(skipped);
}

std::uint64_t FrameScheduler::takeTriggered(const FrameTiming &timing, Clock::time_point now)
{
    if (burstLeft_ > 0) {
        --burstLeft_;
        next_ += timing.period;
        return 0;
    }
    const auto fired = trigger(timing);
    if (!fired)
        return 0;
    next_ = std::max(*fired + timing.delay, next_) + timing.period;
    burstLeft_ = timing.burst - 1;
    if (timing.source == TriggerSource::Software) {
        triggers_.pop_front();
        return 0;
    }
    lastEdge_ = nextEdge(timing);
    const nanoseconds period = pulsePeriod(lineRate(timing));
    if (now - lastEdge_ <= timing.delay + timing.exposure + backlog(period))
        return 0;
    const auto skipped = (now - lastEdge_) / period;
    lastEdge_ += skipped * period;
    return static_cast<std::uint64_t>(skipped);
}

} // namespace orvalis::simulated
