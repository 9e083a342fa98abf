// SPDX-License-Identifier: MIT
// Makes save jobs out of frames.
#include "capture/FrameSaveJob.h"

#include "capture/FramePixels.h"

#include <limits>
#include <new>

namespace {

const unsigned char *keepBytes(FrameSaveJob *job, const std::uint8_t *source, std::size_t size)
{
    if (source == nullptr || size > std::size_t{std::numeric_limits<int>::max()})
        return nullptr;
    job->size = static_cast<int>(size);
    job->ownedBytes = QByteArray(reinterpret_cast<const char *>(source), job->size);
    return reinterpret_cast<const unsigned char *>(job->ownedBytes.constData());
}

} // namespace

std::unique_ptr<FrameSaveJob> makeSaveJob(const OImageFrame &frame, const QImage &shown,
                                          const QString &format)
{
    auto job = std::make_unique<FrameSaveJob>();
    job->format = format;
    job->width = static_cast<int>(frame.width);
    job->height = static_cast<int>(frame.height);
    if (format.contains(QLatin1String("RAW"))) {
        job->raw = keepBytes(job.get(), frame.raw, rawPlaneBytes(frame));
    } else if (format.contains(QLatin1String("RGB"))) {
        job->rgb = keepBytes(job.get(), frame.rgb, std::size_t{3} * frame.width * frame.height);
    } else {
        job->image = shown.copy();
        if (job->image.isNull() && !shown.isNull())
            throw std::bad_alloc();
    }
    return job;
}

std::size_t heldBytes(const FrameSaveJob &job)
{
    return static_cast<std::size_t>(job.ownedBytes.size()) +
           static_cast<std::size_t>(job.image.sizeInBytes());
}
