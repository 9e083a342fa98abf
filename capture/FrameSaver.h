// SPDX-License-Identifier: MIT
// Saves displayed frames while the user wants it.
#pragma once

#include "capture/FrameSaveJob.h"
#include "capture/SaveFormat.h"
#include "capture/SaveLimiter.h"
#include "capture/SaveRequest.h"

#include <QFuture>
#include <QString>

#include <functional>
#include <optional>

class Picture;

/// What the user has chosen for files.
struct SaveOptions {
    QString path;                     ///< directory
    std::optional<SaveFormat> format; ///< none: nothing can be saved
    bool everyFrame = false;          ///< until disarmed; otherwise one frame
};

/// Makes a job of each frame to be saved, bounds the memory of jobs that wait for the disk, and
/// starts their tasks.
class FrameSaver {
public:
    /// @param readOptions called on the thread that saves, for every frame
    explicit FrameSaver(std::function<SaveOptions()> readOptions);

    /// Armed while frames are to be saved. Any thread.
    SaveRequest &request() { return m_request; }
    /// The memory of frames that wait for the disk. Any thread.
    SaveLimiter &limiter() { return m_limiter; }
    /// @copydoc limiter
    const SaveLimiter &limiter() const { return m_limiter; }

    /// What saveIfArmed() did.
    struct Saved {
        QFuture<void> task;
        bool last = false; ///< the request ended with this frame
    };
    /// Waits for memory of earlier frames if there are too many. Call it on one thread at a time.
    /// @param cameraId part of the file's name
    /// @return nothing if no frame is to be saved
    /// @throws std::bad_alloc
    std::optional<Saved> saveIfArmed(const Picture &picture, const std::array<char, 65> &cameraId);

private:
    const std::function<SaveOptions()> m_readOptions;
    SaveRequest m_request;
    SaveLimiter m_limiter;
};
