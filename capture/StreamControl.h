// SPDX-License-Identifier: MIT
// Interface through which the control panel and the feature tree control the live stream.
#pragma once

/// Implemented by the main window. All functions are called on the GUI thread.
class StreamControl {
public:
    virtual ~StreamControl() = default;

    /// True while the live stream runs, from Play to Stop; false during a single shot.
    virtual bool isStreaming() const = 0;
    /// Starts the live stream. Does nothing without a camera, while it runs, or in a single shot.
    virtual void slotStartCamera() = 0;
    /// Stops the live stream or a single shot, if one runs. When this returns, no frame callback
    /// runs.
    virtual void slotStopCamera() = 0;
    /// Counts the next frame as the first.
    virtual void resetFrameCount() = 0;
    /// Suspends grabs of the sensor preview until resumePreview(). Returns when none runs, after a
    /// second at most. Calls nest.
    virtual void pausePreview() = 0;
    /// @copydoc pausePreview
    virtual void resumePreview() = 0;
};

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

/// Suspends grabs of the sensor preview while a setting is written that may change the sensor's
/// size, and with it the number of bytes that a grab writes.
class PreviewHold {
public:
    /// `stream` may be null.
    explicit PreviewHold(StreamControl *stream) : m_stream(stream)
    {
        if (m_stream != nullptr)
            m_stream->pausePreview();
    }
    ~PreviewHold()
    {
        if (m_stream != nullptr)
            m_stream->resumePreview();
    }
    PreviewHold(const PreviewHold &) = delete;
    PreviewHold &operator=(const PreviewHold &) = delete;

private:
    StreamControl *m_stream;
};
