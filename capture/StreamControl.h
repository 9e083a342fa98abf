// SPDX-License-Identifier: MIT
// What the control panel and the feature tree need of the window that runs the live stream.
#pragma once

/// Implemented by the main window. All functions are called on the GUI thread.
class StreamControl {
public:
    virtual ~StreamControl() = default;

    /// True from Play to Stop, and while a single shot waits for its frame.
    virtual bool isStreaming() const = 0;
    /// Does nothing without a camera or while streaming.
    virtual void slotStartCamera() = 0;
    /// Does nothing unless streaming; returns when no frame is under way any more.
    virtual void slotStopCamera() = 0;
    /// The next frame received counts as the first.
    virtual void resetFrameCount() = 0;
};
