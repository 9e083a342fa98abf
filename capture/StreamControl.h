// SPDX-License-Identifier: MIT
// What the control panel and the feature tree need of the window that runs the live stream.
#pragma once

/// Implemented by the main window. All functions are called on the GUI thread.
class StreamControl {
public:
    virtual ~StreamControl() = default;

    /// True while the live stream runs, from Play to Stop; false during a single shot.
    virtual bool isStreaming() const = 0;
    /// Begins the live stream; does nothing without a camera, while it runs, or in a single shot.
    virtual void slotStartCamera() = 0;
    /// Ends the live stream or a single shot, if one runs. When it returns no frame callback runs.
    virtual void slotStopCamera() = 0;
    /// The next frame received counts as the first.
    virtual void resetFrameCount() = 0;
    /// Lets no grab of the sensor preview run until resumePreview(); returns when none runs, after
    /// a second at most. Calls nest.
    virtual void pausePreview() = 0;
    /// @copydoc pausePreview
    virtual void resumePreview() = 0;
};

/// Keeps the sensor preview from grabbing while a setting is written that may change the sensor's
/// size, and with it what a grab writes.
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
