// SPDX-License-Identifier: MIT
// Saves displayed frames while the user wants it.
#include "capture/FrameSaver.h"

#include "capture/Picture.h"

#include <utility>

FrameSaver::FrameSaver(std::function<SaveOptions()> readOptions)
    : m_readOptions(std::move(readOptions))
{
}

std::optional<FrameSaver::Saved> FrameSaver::saveIfArmed(const Picture &picture,
                                                         const std::array<char, 65> &cameraId)
{
    const SaveRequest::Arming arming = m_request.arming();
    if (arming == 0)
        return std::nullopt;
    const SaveOptions options = m_readOptions();
    Saved saved;
    if (options.format) {
        auto job = makeSaveJob(picture, *options.format);
        job->path = options.path;
        job->ownedCameraId = cameraId;
        job->cameraId = job->ownedCameraId.data();
        job->place = m_limiter.take(heldBytes(*job));
        saved.task = startSaveTask(std::move(job));
    }
    saved.last = !options.everyFrame;
    if (saved.last)
        m_request.finish(arming);
    return saved;
}
