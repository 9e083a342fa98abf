// SPDX-License-Identifier: MIT
// Data that the panel's GUI thread shares with the display thread and the preview thread.
#pragma once

#include "control/SensorPreview.h"

#include <QImage>
#include <QString>

#include <condition_variable>
#include <mutex>

/// Save options as the display thread reads them.
struct SaveOption {
    QString path;
    QString format;
    int count = 1; ///< 1: one frame per arming; -1: every displayed frame
};

/// Everything that passes between the GUI thread and the sensor preview thread.
struct PreviewShared {
    std::mutex mutex;                // guards all members below except `changed`
    std::condition_variable changed; // notified when `stop`, `paused` or `grabbing` changes
    PreviewSource source;
    QImage image;        // the newest one, until the GUI thread takes it
    bool posted = false; // a call that takes `image` is queued for the GUI thread
    bool stop = false;
    int paused = 0;        // above 0 while the sensor's size may change
    bool grabbing = false; // from before the size is read until the grab has returned
};

/// One pass of the preview thread, from reading the sensor's size to the end of the grab.
class PreviewPass {
public:
    /// Waits while the preview is paused.
    explicit PreviewPass(PreviewShared &preview) : m_preview(preview)
    {
        std::unique_lock lock(m_preview.mutex);
        m_preview.changed.wait(lock, [this] { return m_preview.stop || m_preview.paused == 0; });
        m_granted = m_preview.grabbing = !m_preview.stop;
        m_source = m_preview.source;
    }
    ~PreviewPass()
    {
        {
            const std::lock_guard lock(m_preview.mutex);
            m_preview.grabbing = false;
        }
        m_preview.changed.notify_all();
    }
    PreviewPass(const PreviewPass &) = delete;
    PreviewPass &operator=(const PreviewPass &) = delete;

    /// False if the thread must end.
    bool granted() const { return m_granted; }
    /// Camera and pixel format at the beginning of the pass.
    const PreviewSource &source() const { return m_source; }

private:
    PreviewShared &m_preview;
    PreviewSource m_source;
    bool m_granted = false;
};

/// Suspends passes during its scope and waits for a pending one, at most the time-out of a grab.
/// Use it for writes that may make the sensor larger than the buffers of that grab.
class PreviewPause {
public:
    explicit PreviewPause(PreviewShared &preview) : m_preview(preview) { begin(m_preview); }
    ~PreviewPause() { end(m_preview); }
    PreviewPause(const PreviewPause &) = delete;
    PreviewPause &operator=(const PreviewPause &) = delete;

    /// The same without a scope. Pauses nest.
    static void begin(PreviewShared &preview)
    {
        std::unique_lock lock(preview.mutex);
        ++preview.paused;
        preview.changed.wait(lock, [&preview] { return !preview.grabbing; });
    }
    /// @copydoc begin
    static void end(PreviewShared &preview)
    {
        {
            const std::lock_guard lock(preview.mutex);
            --preview.paused;
        }
        preview.changed.notify_all();
    }

private:
    PreviewShared &m_preview;
};
