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

/// All tasks share one clock, so that no two of them get the same file name.
QDateTime timeOfSaving()
{
    static SaveClock clock;
    return QDateTime::fromMSecsSinceEpoch(clock.take().count());
}

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

/// Result of writing a file.
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

/// Writes under `name`, or under the name of a later time if a file of that name exists, which
/// happens when the clock has been set back.
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
    // Copy first: the source may be memory that is about to be reused.
    const std::unique_ptr<void, Free> copy(std::malloc(bytes));
    if (copy == nullptr)
        return;
    std::memcpy(copy.get(), source, bytes);
    writeUnderFreeName(job, name,
                       [&](const QString &free) { return writeDump(free, copy.get(), bytes); });
}

// Encodes in memory, because QImageWriter on a file does not report a failure to write the last
// bytes.
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
        qDebug() << "a frame was not saved: out of memory";
    }
}

QFuture<void> startSaveTask(std::unique_ptr<FrameSaveJob> job)
{
    QFuture<void> task = QtConcurrent::run(SaveThread, static_cast<void *>(job.get()));
    (void)job.release(); // the task owns it now
    return task;
}
