// SPDX-License-Identifier: MIT
// One frame on its way from the display thread to a file.
#pragma once

#include "capture/SaveLimiter.h"

#include <QByteArray>
#include <QFuture>
#include <QImage>
#include <QString>

#include <array>
#include <cstddef>
#include <memory>

class Picture;

/// Made on the heap by the display thread, consumed and freed by SaveThread().
struct FrameSaveJob {
    QImage image;   ///< what is saved unless format names a dump; a copy of its own
    QString path;   ///< directory
    QString format; ///< suffix of the file; "RAW" and "RGB" are headerless dumps
    const char *cameraId =
        nullptr;    ///< NUL-terminated Latin-1, at most 64 bytes are read; may be null
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    int size = 0;   ///< bytes of a dump
    const unsigned char *raw = nullptr; ///< source of "RAW", `size` bytes, not owned
    const unsigned char *rgb = nullptr; ///< source of "RGB", `size` bytes, not owned

    // The display thread fills these, so that the pointers above stay good whatever becomes of the
    // camera before the task runs. A job may do without them.
    QByteArray ownedBytes;                ///< what raw or rgb points to
    std::array<char, 65> ownedCameraId{}; ///< what cameraId points to
    SaveLimiter::Place place;             ///< given back with the job
};

/// A job with a copy of what `format` saves of `picture`: its samples, its RGB bytes, or the
/// displayed image. Path, camera and place are left to the caller. Throws std::bad_alloc.
std::unique_ptr<FrameSaveJob> makeSaveJob(const Picture &picture, const QString &format);

/// Bytes of pixels that a job keeps in memory.
std::size_t heldBytes(const FrameSaveJob &job);

/// Writes the file of a FrameSaveJob and deletes the job; a null job is nothing to do. A file that
/// cannot be written to its end is removed; nothing is reported. Any thread.
void SaveThread(void *job);

/// Runs SaveThread() for `job` on the global thread pool. If that fails, which it does by throwing
/// std::bad_alloc, the job is deleted and its place given back.
QFuture<void> startSaveTask(std::unique_ptr<FrameSaveJob> job);
