// SPDX-License-Identifier: MIT
// Frames on their way from the camera library's thread to the display thread.
#include "capture/FrameQueue.h"

#include <iterator>

void FrameQueue::push(OImageFrame *frame)
{
    std::list<OImageFrame *> last{frame};
    const std::lock_guard lock(m_mutex);
    m_frames.splice(m_frames.end(), last);
}

OImageFrame *FrameQueue::takeNewest()
{
    std::list<OImageFrame *> newest;
    {
        const std::lock_guard lock(m_mutex);
        if (m_frames.empty())
            return nullptr;
        newest.splice(newest.end(), m_frames, std::prev(m_frames.end()));
    }
    return newest.back();
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
