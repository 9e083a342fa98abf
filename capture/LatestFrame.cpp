// SPDX-License-Identifier: MIT
// The newest frame of a stream, for the screen.
#include "capture/LatestFrame.h"

#include <utility>

void LatestFrame::started(const StreamInfo &)
{
    const std::lock_guard lock(m_mutex);
    m_newest.reset();
    m_superseded = 0;
}

void LatestFrame::frame(const PublishedFrame &published)
{
    const std::lock_guard lock(m_mutex);
    if (m_newest)
        ++m_superseded;
    m_newest = published;
}

std::optional<PublishedFrame> LatestFrame::takeNewest()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_newest, std::nullopt);
}

void LatestFrame::clear()
{
    const std::lock_guard lock(m_mutex);
    m_newest.reset();
}

std::uint64_t LatestFrame::superseded() const
{
    const std::lock_guard lock(m_mutex);
    return m_superseded;
}
