// SPDX-License-Identifier: MIT
// Frames on their way from the camera library's thread to the display thread.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstddef>
#include <list>
#include <mutex>

/// Holds pointers to frame records in order of arrival. The records stay the library's: the queue
/// neither reads nor frees them. Every function may be called from any thread; none allocates or
/// frees with the lock held, so that a callback never waits for more than a few pointers.
class FrameQueue {
public:
    /// Appends a frame behind all others.
    void push(OImageFrame *frame);

    /// Removes and returns the frame that came last; null if there is none. Older ones stay.
    OImageFrame *takeNewest();

    /// Forgets all frames.
    void clear();

    /// Frames that wait.
    std::size_t size() const;

private:
    mutable std::mutex m_mutex; // guards m_frames
    std::list<OImageFrame *> m_frames;
};
