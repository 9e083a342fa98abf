// SPDX-License-Identifier: MIT
// Writes the file of a save job.
#include "capture/FrameSaveJob.h"

#include "capture/SaveClock.h"
#include "capture/SaveFileName.h"
#include "capture/SaveFormat.h"

#include <QBuffer>
#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QtConcurrent>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

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

/// What became of a file.
enum class Written { Yes, No, NameTaken };

Written writeDump(const QString &name, const void *bytes, std::size_t size)
{
    const QByteArray latin1 = name.toLatin1();
    std::FILE *file = std::fopen(latin1.constData(), "wbx");
    if (file == nullptr)
        return errno == EEXIST ? Written::NameTaken : Written::No;
    const bool written = std::fwrite(bytes, size, 1, file) == 1;
    if (std::fclose(file) == 0 && written)
        return Written::Yes;
    (void)std::remove(latin1.constData());
    return Written::No;
}

Written writeFile(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return QFileInfo::exists(name) ? Written::NameTaken : Written::No;
    const bool whole = file.write(bytes) == bytes.size() && file.flush();
    file.close();
    if (whole)
        return Written::Yes;
    file.remove();
    return Written::No;
}

QString nameOf(const FrameSaveJob &job)
{
    return saveFileName(job.path, job.cameraId, timeOfSaving(), job.format);
}

/// Writes under `name`, or under the name of a later time where a file of that name exists: the
/// clock may have been set back to a time of which there are files.
template <typename Write>
void writeUnderFreeName(const FrameSaveJob &job, QString name, Write write)
{
    while (write(name) == Written::NameTaken)
        name = nameOf(job);
}

void saveDump(const FrameSaveJob &job, const QString &name, const unsigned char *source)
{
    if (source == nullptr || job.size < 1)
        return;
    const auto bytes = static_cast<std::size_t>(job.size);
    // Copied before anything that takes time, as the source may be memory that is used again.
    const std::unique_ptr<void, Free> copy(std::malloc(bytes));
    if (copy == nullptr)
        return;
    std::memcpy(copy.get(), source, bytes);
    writeUnderFreeName(job, name,
                       [&](const QString &free) { return writeDump(free, copy.get(), bytes); });
}

// Through memory, because a writer on a file does not tell when the last bytes found no room.
void saveImage(const FrameSaveJob &job, const QString &name)
{
    QBuffer encoded;
    QImageWriter writer(&encoded, QFileInfo(name).suffix().toLower().toLatin1());
    if (writer.write(job.image))
        writeUnderFreeName(job, name,
                           [&](const QString &free) { return writeFile(free, encoded.data()); });
}

void save(const FrameSaveJob &job)
{
    const QString name = nameOf(job);
    switch (contentOf(job.format)) {
    case SaveContent::Raw:
        return saveDump(job, name, job.raw);
    case SaveContent::Rgb:
        return saveDump(job, name, job.rgb);
    case SaveContent::Image:
        return saveImage(job, name);
    }
}

} // namespace

void SaveThread(void *job)
{
    const std::unique_ptr<FrameSaveJob> frame(static_cast<FrameSaveJob *>(job));
    if (frame == nullptr)
        return;
    try {
        save(*frame);
    } catch (const std::bad_alloc &) {
        qDebug() << "no memory to encode a frame";
    }
}

QFuture<void> startSaveTask(std::unique_ptr<FrameSaveJob> job)
{
    QFuture<void> task = QtConcurrent::run(SaveThread, static_cast<void *>(job.get()));
    (void)job.release(); // the task's now
    return task;
}
