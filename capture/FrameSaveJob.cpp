// SPDX-License-Identifier: MIT
// Makes save jobs out of pictures.
#include "capture/FrameSaveJob.h"

#include "capture/Picture.h"

#include <limits>
#include <new>
#include <utility>

namespace {

/// Null if there are no bytes to save.
const unsigned char *keepBytes(FrameSaveJob *job, QByteArray bytes)
{
    if (bytes.isNull())
        return nullptr;
    job->ownedBytes = std::move(bytes);
    job->size = job->ownedBytes.size();
    return reinterpret_cast<const unsigned char *>(job->ownedBytes.constData());
}

QByteArray samplesOf(const Picture &picture)
{
    if (picture.samples() == nullptr ||
        picture.sampleBytes() > std::size_t{std::numeric_limits<int>::max()})
        return {};
    return {reinterpret_cast<const char *>(picture.samples()),
            static_cast<int>(picture.sampleBytes())};
}

} // namespace

std::unique_ptr<FrameSaveJob> makeSaveJob(const Picture &picture, SaveFormat format)
{
    auto job = std::make_unique<FrameSaveJob>();
    job->format = nameOf(format);
    job->width = static_cast<int>(picture.width());
    job->height = static_cast<int>(picture.height());
    switch (contentOf(job->format)) {
    case SaveContent::Raw:
        job->raw = keepBytes(job.get(), samplesOf(picture));
        break;
    case SaveContent::Rgb:
        job->rgb = keepBytes(job.get(), picture.rgb());
        break;
    case SaveContent::Image:
        job->image = picture.displayedImage();
        if (job->image.isNull())
            throw std::bad_alloc();
    }
    return job;
}

std::size_t heldBytes(const FrameSaveJob &job)
{
    return static_cast<std::size_t>(job.ownedBytes.size()) +
           static_cast<std::size_t>(job.image.sizeInBytes());
}
