// SPDX-License-Identifier: MIT
// Every frame of a stream, in order, for consumers that must not miss one.
#pragma once

#include "capture/FrameTap.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

/// A frame that owns its samples.
struct FrameCopy {
    FrameStamp stamp;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitsPerPixel = 0;
    std::vector<std::uint8_t> samples; ///< the raw plane as the library delivered it
};

/// Copies each frame within the lifetime that the camera library guarantees, into a queue bounded
/// in bytes, and counts the frames it drops by cause. Its own thread copies, from started() to
/// stopped(); any one thread takes.
class EveryFrame : public FrameTap {
public:
    /// Frames since the start. Each frame is in exactly one of these.
    struct Counts {
        std::uint64_t copied = 0;  ///< queued or already taken
        std::uint64_t noRoom = 0;  ///< the queue was full: the consumer is too slow
        std::uint64_t tooLate = 0; ///< past its lifetime: the copying thread is too slow
        std::uint64_t noImage = 0; ///< the frame had no samples
    };

    /// @param capacityBytes of queued samples
    explicit EveryFrame(std::size_t capacityBytes) : m_capacityBytes(capacityBytes) {}
    ~EveryFrame() override;
    EveryFrame(const EveryFrame &) = delete;
    EveryFrame &operator=(const EveryFrame &) = delete;

    void started(const StreamInfo &info) override;
    void frame(const PublishedFrame &published) override;
    /// Returns when every frame that arrived is copied or counted. Queued copies can still be
    /// taken.
    void stopped() override;

    /// Waits for the oldest copy and moves it to `copy`, whose former memory is reused.
    /// @return false if none arrives by `deadline`, or the stream ended and none is left
    bool take(FrameCopy *copy, std::chrono::steady_clock::time_point deadline);

    /// Counts of the current stream, or of the last one. Any thread.
    Counts counts() const;

    /// Whether the library still guarantees the memory of a frame at `now`, when `newest` is the
    /// index of the frame that arrived last.
    static bool isStillValid(const FrameStamp &stamp, std::uint64_t newest,
                             std::chrono::steady_clock::time_point now);

private:
    static constexpr std::size_t places = 32; ///< frames between the callback and this thread

    void run();
    void copyNext();
    bool isStillValid(const FrameStamp &stamp) const
    {
        return isStillValid(stamp, m_newest, std::chrono::steady_clock::now());
    }
    bool reserve(std::size_t bytes, std::vector<std::uint8_t> *memory);
    void count(std::uint64_t Counts::*cause);

    const std::size_t m_capacityBytes;
    std::uint32_t m_pixelFormat = 0;                ///< written while m_thread does not run
    std::array<PublishedFrame, places> m_arrived{}; // between m_read and m_written
    std::atomic<std::uint64_t> m_written{0};        ///< frames put into m_arrived
    std::atomic<std::uint64_t> m_read{0};           ///< frames taken out of it
    std::atomic<std::uint64_t> m_newest{0};         ///< index of the newest frame
    std::atomic<std::uint64_t> m_overrun{0};        ///< frames dropped because m_arrived was full
    std::atomic<std::uint32_t> m_wakeUps{0};
    std::atomic<bool> m_ending{false};
    std::thread m_thread;

    mutable std::mutex m_mutex; // guards the following
    std::condition_variable m_changed;
    std::deque<FrameCopy> m_ready;
    std::vector<std::vector<std::uint8_t>> m_spare; ///< memory of copies that were taken
    std::size_t m_readyBytes = 0;
    Counts m_counts;
    bool m_running = false;
};
