// SPDX-License-Identifier: MIT
// A frame that the display thread passes to a save task.
#pragma once

#include "capture/SaveFormat.h"
#include "capture/SaveLimiter.h"

#include <QByteArray>
#include <QFuture>
#include <QImage>
#include <QString>

#include <array>
#include <cstddef>
#include <memory>

class Picture;

/// Created on the heap by the display thread; SaveThread() deletes it.
struct FrameSaveJob {
    QImage image;   ///< saved unless `format` is a dump; shares no memory with the frame
    QString path;   ///< directory
    QString format; ///< suffix of the file; "RAW" and "RGB" are headerless dumps
    const char *cameraId =
        nullptr;    ///< NUL-terminated Latin-1, at most 64 bytes are read; may be null
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
    int size = 0;   ///< bytes of a dump
    const unsigned char *raw = nullptr; ///< source of "RAW", `size` bytes, not owned
    const unsigned char *rgb = nullptr; ///< source of "RGB", `size` bytes, not owned

    // Optional. The display thread fills these to keep the pointers above valid even if the camera
    // closes before the task runs.
    QByteArray ownedBytes;                ///< memory behind raw or rgb
    std::array<char, 65> ownedCameraId{}; ///< memory behind cameraId
    SaveLimiter::Place place;             ///< released with the job
};

/// A job with a copy of the part of `picture` that `format` saves: its samples, its RGB bytes, or
/// the displayed image. The caller fills in path, camera and place. Throws std::bad_alloc.
std::unique_ptr<FrameSaveJob> makeSaveJob(const Picture &picture, SaveFormat format);

/// Bytes of pixels that a job keeps in memory.
std::size_t heldBytes(const FrameSaveJob &job);

/// Writes the file of a FrameSaveJob and deletes the job. Ignores a null job. Removes a file that
/// it cannot write completely, without reporting it. Any thread.
void SaveThread(void *job);

/// Runs SaveThread() for `job` on the global thread pool. Throws std::bad_alloc if it cannot; the
/// job is then deleted and its place released.
QFuture<void> startSaveTask(std::unique_ptr<FrameSaveJob> job);
