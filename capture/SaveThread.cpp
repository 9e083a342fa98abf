// SPDX-License-Identifier: MIT
// Writes the file of a save job.
#include "capture/FrameSaveJob.h"

#include "capture/SaveClock.h"
#include "capture/SaveFileName.h"

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

/// Shared by all tasks, so that no two of them take the same name.
QDateTime timeOfSaving()
{
    static SaveClock clock;
    return QDateTime::fromMSecsSinceEpoch(clock.take().count());
}

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

bool writeWhole(std::FILE *file, const void *bytes, std::size_t size)
{
    const bool written = std::fwrite(bytes, size, 1, file) == 1;
    return std::fclose(file) == 0 && written;
}

void saveDump(const QString &name, const unsigned char *source, int size)
{
    if (source == nullptr || size < 1)
        return;
    const auto bytes = static_cast<std::size_t>(size);
    // Copied before anything that takes time, as the source may be memory that is used again.
    const std::unique_ptr<void, Free> copy(std::malloc(bytes));
    if (copy == nullptr)
        return;
    std::memcpy(copy.get(), source, bytes);
    const QByteArray latin1 = name.toLatin1();
    std::FILE *file = std::fopen(latin1.constData(), "wb");
    if (file != nullptr && !writeWhole(file, copy.get(), bytes))
        (void)std::remove(latin1.constData());
}

// Through memory, because a writer on a file does not tell when the last bytes found no room.
void saveImage(const QString &name, const QImage &image)
{
    QBuffer encoded;
    QImageWriter writer(&encoded, QFileInfo(name).suffix().toLower().toLatin1());
    if (!writer.write(image))
        return;
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        return;
    const bool whole = file.write(encoded.data()) == encoded.size() && file.flush();
    file.close();
    if (!whole)
        file.remove();
}

} // namespace

void SaveThread(void *job)
{
    const std::unique_ptr<FrameSaveJob> frame(static_cast<FrameSaveJob *>(job));
    if (frame == nullptr)
        return;
    const QString name = saveFileName(frame->path, frame->cameraId, timeOfSaving(), frame->format);
    if (frame->format.contains(QLatin1String("RAW")))
        saveDump(name, frame->raw, frame->size);
    else if (frame->format.contains(QLatin1String("RGB")))
        saveDump(name, frame->rgb, frame->size);
    else
        saveImage(name, frame->image);
}
