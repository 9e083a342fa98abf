// SPDX-License-Identifier: MIT
// What the panel's GUI thread shares with the threads that read from it.
#pragma once

#include "sdk/OrvalisAPI.h"

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

/// What the sensor preview shows: the GUI thread's copies.
struct PreviewSource {
    OCameraHandle camera = nullptr;
    OSizeInfo size{};
    QString pixelFormat;
};

/// Everything that passes between the GUI thread and the sensor preview thread.
struct PreviewShared {
    std::mutex mutex;             // guards all members below but `wake`
    std::condition_variable wake; // `stop` was set or `paused` fell to 0
    PreviewSource source;
    QImage picture;      // the newest one, until the GUI thread takes it
    bool posted = false; // the GUI thread has been told of `picture`
    bool stop = false;
    int paused = 0; // above 0 while settings are reloaded
};

/// Lets no grab begin during its scope, for operations after which the sensor may have another size
/// than the buffers were made for until the size has been read again. Does not wait for a grab
/// under way: the library gives it up when settings are written.
class PreviewPause {
public:
    explicit PreviewPause(PreviewShared &preview) : m_preview(preview)
    {
        const std::lock_guard lock(m_preview.mutex);
        ++m_preview.paused;
    }
    ~PreviewPause()
    {
        {
            const std::lock_guard lock(m_preview.mutex);
            --m_preview.paused;
        }
        m_preview.wake.notify_all();
    }
    PreviewPause(const PreviewPause &) = delete;
    PreviewPause &operator=(const PreviewPause &) = delete;

private:
    PreviewShared &m_preview;
};
