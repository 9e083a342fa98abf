// SPDX-License-Identifier: MIT
// Stops the live stream while a setting changes that the camera accepts only when idle.
#pragma once

#include "capture/StreamControl.h"

/// Stops a running stream and restarts it at the end of the scope. A stopped stream stays stopped.
class StreamPause {
public:
    /// `stream` may be null.
    explicit StreamPause(StreamControl *stream)
        : m_stream(stream != nullptr && stream->isStreaming() ? stream : nullptr)
    {
        if (m_stream != nullptr)
            m_stream->slotStopCamera();
    }
    ~StreamPause()
    {
        if (m_stream != nullptr)
            m_stream->slotStartCamera();
    }
    StreamPause(const StreamPause &) = delete;
    StreamPause &operator=(const StreamPause &) = delete;

private:
    StreamControl *m_stream; // null if there is no stream to restart
};
