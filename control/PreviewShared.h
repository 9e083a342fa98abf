// SPDX-License-Identifier: MIT
// What the panel's GUI thread shares with the threads that read from it.
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
    std::mutex mutex;                // guards all members below but `changed`
    std::condition_variable changed; // `stop`, `paused` or `grabbing` is another
    PreviewSource source;
    QImage picture;      // the newest one, until the GUI thread takes it
    bool posted = false; // the GUI thread has been told of `picture`
    bool stop = false;
    int paused = 0;        // above 0 while a size may change
    bool grabbing = false; // from before the size is read until the grab has returned
};

/// One turn of the preview thread, from reading the sensor's size to the end of the grab.
class PreviewTurn {
public:
    /// Waits while the preview is paused.
    explicit PreviewTurn(PreviewShared &preview) : m_preview(preview)
    {
        std::unique_lock lock(m_preview.mutex);
        m_preview.changed.wait(lock, [this] { return m_preview.stop || m_preview.paused == 0; });
        m_granted = m_preview.grabbing = !m_preview.stop;
        m_source = m_preview.source;
    }
    ~PreviewTurn()
    {
        {
            const std::lock_guard lock(m_preview.mutex);
            m_preview.grabbing = false;
        }
        m_preview.changed.notify_all();
    }
    PreviewTurn(const PreviewTurn &) = delete;
    PreviewTurn &operator=(const PreviewTurn &) = delete;

    /// False if the thread has to end.
    bool granted() const { return m_granted; }
    /// What to show, as it was when the turn began.
    const PreviewSource &source() const { return m_source; }

private:
    PreviewShared &m_preview;
    PreviewSource m_source;
    bool m_granted = false;
};

/// Lets no turn begin during its scope, and waits for one that has begun (at most the time-out of a
/// grab): for writes after which the sensor may be larger than the buffers of that grab.
class PreviewPause {
public:
    explicit PreviewPause(PreviewShared &preview) : m_preview(preview) { begin(m_preview); }
    ~PreviewPause() { end(m_preview); }
    PreviewPause(const PreviewPause &) = delete;
    PreviewPause &operator=(const PreviewPause &) = delete;

    /// The same without a scope; pauses nest.
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
