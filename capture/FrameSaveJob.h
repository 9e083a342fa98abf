// SPDX-License-Identifier: MIT
// One frame on its way from the display thread to a file.
#pragma once

#include "capture/SaveLimiter.h"
#include "sdk/OrvalisAPI.h"

#include <QByteArray>
#include <QImage>
#include <QString>

#include <array>
#include <cstddef>
#include <memory>

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

/// A job that holds all it needs of `frame`: the bytes of its plane for "RAW" and "RGB", else a
/// copy of `shown`, the image made of it. Reads the frame's memory, so the frame must be valid
/// still; path, camera and place are left to the caller. Throws std::bad_alloc.
std::unique_ptr<FrameSaveJob> makeSaveJob(const OImageFrame &frame, const QImage &shown,
                                          const QString &format);

/// Bytes of pixels that a job keeps in memory.
std::size_t heldBytes(const FrameSaveJob &job);

/// Writes the file of a FrameSaveJob and deletes the job; a null job is nothing to do. A file that
/// cannot be written to its end is removed; nothing is reported. Any thread.
void SaveThread(void *job);
