// SPDX-License-Identifier: MIT
// Every frame of a stream, in order, for consumers that must not miss one.
#include "capture/EveryFrame.h"

#include "capture/FramePixels.h"

#include <algorithm>
#include <cstring>

namespace {

using namespace std::chrono_literals;

// Guaranteed lifetime of a frame: the library reuses its memory only after both have passed.
constexpr std::uint64_t guaranteedFrames = 8;
constexpr auto guaranteedTime = 200ms;

constexpr std::size_t maxSpare = 8;

} // namespace

EveryFrame::~EveryFrame() { stopped(); }

void EveryFrame::started(const StreamInfo &info)
{
    stopped();
    m_pixelFormat = info.pixelFormat;
    m_written = m_read = m_newest = m_overrun = 0;
    m_ending = false;
    {
        const std::lock_guard lock(m_mutex);
        m_ready.clear();
        m_readyBytes = 0;
        m_counts = {};
        m_running = true;
    }
    m_thread = std::thread(&EveryFrame::run, this);
}

// Runs in the library's thread: expensive operations are not allowed.
void EveryFrame::frame(const PublishedFrame &published)
{
    m_newest = published.stamp.index;
    const std::uint64_t written = m_written;
    if (written - m_read >= places) {
        ++m_overrun;
        return;
    }
    m_arrived[written % places] = published;
    m_written = written + 1;
    ++m_wakeUps;
    m_wakeUps.notify_one();
}

void EveryFrame::stopped()
{
    if (!m_thread.joinable())
        return;
    m_ending = true;
    ++m_wakeUps;
    m_wakeUps.notify_one();
    m_thread.join();
    const std::lock_guard lock(m_mutex);
    m_running = false;
    m_changed.notify_all();
}

void EveryFrame::run()
{
    for (;;) {
        const std::uint32_t seen = m_wakeUps;
        const bool ending = m_ending; // read first: no frame arrives after it is set
        while (m_read != m_written)
            copyNext();
        if (ending)
            return;
        m_wakeUps.wait(seen);
    }
}

void EveryFrame::copyNext()
{
    const PublishedFrame next = m_arrived[m_read % places];
    FrameCopy copy{next.stamp, 0, 0, 0, {}};
    if (!isStillValid(next.stamp)) {
        ++m_read;
        return count(&Counts::tooLate);
    }
    const OImageFrame record = *next.frame;
    const std::size_t bytes = rawPlaneBytes(record, m_pixelFormat);
    const bool hasRoom = bytes > 0 && reserve(bytes, &copy.samples);
    if (hasRoom)
        std::memcpy(copy.samples.data(), record.raw, bytes);
    const bool intact = isStillValid(next.stamp);
    ++m_read;
    if (bytes == 0 || !hasRoom || !intact)
        return count(!intact ? &Counts::tooLate : bytes == 0 ? &Counts::noImage : &Counts::noRoom);
    copy.width = record.width;
    copy.height = record.height;
    copy.bitsPerPixel = record.bitsPerPixel;
    const std::lock_guard lock(m_mutex);
    m_readyBytes += bytes;
    m_ready.push_back(std::move(copy));
    ++m_counts.copied;
    m_changed.notify_one();
}

bool EveryFrame::isStillValid(const FrameStamp &stamp, std::uint64_t newest,
                              std::chrono::steady_clock::time_point now)
{
    return newest - stamp.index < guaranteedFrames || now - stamp.received < guaranteedTime;
}

/// Provides memory for a copy, reusing that of a taken copy if possible.
bool EveryFrame::reserve(std::size_t bytes, std::vector<std::uint8_t> *memory)
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_readyBytes + bytes > m_capacityBytes)
            return false;
        if (!m_spare.empty()) {
            memory->swap(m_spare.back());
            m_spare.pop_back();
        }
    }
    try {
        memory->resize(bytes);
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

void EveryFrame::count(std::uint64_t Counts::*cause)
{
    const std::lock_guard lock(m_mutex);
    ++(m_counts.*cause);
}

bool EveryFrame::take(FrameCopy *copy, std::chrono::steady_clock::time_point deadline)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait_until(lock, deadline, [this] { return !m_ready.empty() || !m_running; });
    if (m_ready.empty())
        return false;
    if (m_spare.size() < maxSpare)
        m_spare.push_back(std::move(copy->samples));
    *copy = std::move(m_ready.front());
    m_ready.pop_front();
    m_readyBytes -= copy->samples.size();
    return true;
}

EveryFrame::Counts EveryFrame::counts() const
{
    const std::lock_guard lock(m_mutex);
    Counts counts = m_counts;
    counts.tooLate += m_overrun;
    return counts;
}
