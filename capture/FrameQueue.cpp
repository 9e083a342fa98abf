// SPDX-License-Identifier: MIT
// Frames on their way from the camera library's thread to the display thread.
#include "capture/FrameQueue.h"

void FrameQueue::push(OImageFrame *frame)
{
    const std::lock_guard lock(m_mutex);
    m_frames.push_back(frame);
}

OImageFrame *FrameQueue::takeNewest()
{
    const std::lock_guard lock(m_mutex);
    if (m_frames.empty())
        return nullptr;
    OImageFrame *newest = m_frames.back();
    m_frames.pop_back();
    return newest;
}

void FrameQueue::clear()
{
    std::list<OImageFrame *> dropped;
    const std::lock_guard lock(m_mutex);
    m_frames.swap(dropped);
}

std::size_t FrameQueue::size() const
{
    const std::lock_guard lock(m_mutex);
    return m_frames.size();
}
