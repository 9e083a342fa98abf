// SPDX-License-Identifier: MIT
// The thread that displays the newest frame at its position on the sensor, once a second.
#include "control/CameraCtrl.h"

#include "capture/RawConversion.h"
#include "control/SensorCanvas.h"
#include "ui_CameraCtrl.h"

#include <QPixmap>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace {

constexpr std::chrono::seconds grabPeriod{1};

/// Sleeps until the next grab is due or the thread has to end.
void sleepUntilDue(PreviewShared &preview)
{
    std::unique_lock lock(preview.mutex);
    preview.changed.wait_for(lock, grabPeriod, [&preview] { return preview.stop; });
}

} // namespace

void CameraCtrl::CreateGrabThread()
{
    if (m_bGrabRunning)
        return;
    {
        const std::lock_guard lock(m_preview.mutex);
        m_preview.stop = false;
    }
    try {
        m_grabThread = std::thread(&CameraCtrl::GrabThread, this);
    } catch (const std::system_error &) {
        return; // best effort: the camera works without a preview
    }
    m_bGrabRunning = true;
}

void CameraCtrl::DeleteGrabThread()
{
    {
        const std::lock_guard lock(m_preview.mutex);
        m_preview.stop = true;
    }
    m_preview.changed.notify_all();
    if (!m_bGrabRunning)
        return;
    m_grabThread.join();
    m_bGrabRunning = false;
    const std::lock_guard lock(m_preview.mutex);
    m_preview.image = QImage(); // discard an image that the GUI has not taken
}

void CameraCtrl::GrabThread()
{
    SensorCanvas canvas;
    for (;;) {
        {
            const PreviewPass pass(m_preview);
            if (!pass.granted())
                return;
            refreshPreview(pass.source(), canvas,
                           [this](QImage image) { postPreview(std::move(image)); });
        }
        sleepUntilDue(m_preview);
    }
}

void CameraCtrl::pausePreview() { PreviewPause::begin(m_preview); }

void CameraCtrl::resumePreview() { PreviewPause::end(m_preview); }

void CameraCtrl::postPreview(QImage image)
{
    bool alreadyPosted = false;
    {
        const std::lock_guard lock(m_preview.mutex);
        m_preview.image = std::move(image);
        alreadyPosted = std::exchange(m_preview.posted, true);
    }
    if (!alreadyPosted) // coalesce: else the pending call takes the newer image
        QMetaObject::invokeMethod(
            this, [this] { takePreview(); }, Qt::QueuedConnection);
}

void CameraCtrl::takePreview()
{
    QImage image;
    {
        const std::lock_guard lock(m_preview.mutex);
        image.swap(m_preview.image);
        m_preview.posted = false;
    }
    if (image.isNull())
        return;
    const QSize size(std::max(1, ui->laROI->width() - 2), std::max(1, ui->laROI->height() - 2));
    ui->laROI->setPixmap(
        QPixmap::fromImage(image.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation)));
}

void CameraCtrl::publishCamera()
{
    const std::lock_guard lock(m_preview.mutex);
    m_preview.source = {m_hCamera, ui->cbPixelFormat->currentText()};
}

void CameraCtrl::RawXXtoRaw8(unsigned char *dst, unsigned char *src, int bits)
{
    rawToGray8(dst, src, m_sizeInfo.width, m_sizeInfo.height, bits);
}
