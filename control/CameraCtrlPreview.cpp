// SPDX-License-Identifier: MIT
// The thread that shows the newest frame at its place on the sensor, once a second.
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
        return; // no thread left: the camera works without its preview
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
    m_preview.picture = QImage(); // may be on its way still
}

void CameraCtrl::GrabThread()
{
    SensorCanvas canvas;
    for (;;) {
        {
            const PreviewTurn turn(m_preview);
            if (!turn.granted())
                return;
            lookAtSensor(turn.source(), canvas,
                         [this](QImage picture) { postPreview(std::move(picture)); });
        }
        sleepUntilDue(m_preview);
    }
}

void CameraCtrl::pausePreview() { PreviewPause::begin(m_preview); }

void CameraCtrl::resumePreview() { PreviewPause::end(m_preview); }

void CameraCtrl::postPreview(QImage picture)
{
    bool alreadyPosted = false;
    {
        const std::lock_guard lock(m_preview.mutex);
        m_preview.picture = std::move(picture);
        alreadyPosted = std::exchange(m_preview.posted, true);
    }
    if (!alreadyPosted) // else the GUI thread is late, and will find the newer picture
        QMetaObject::invokeMethod(
            this, [this] { takePreview(); }, Qt::QueuedConnection);
}

void CameraCtrl::takePreview()
{
    QImage picture;
    {
        const std::lock_guard lock(m_preview.mutex);
        picture.swap(m_preview.picture);
        m_preview.posted = false;
    }
    if (picture.isNull())
        return;
    const QSize size(std::max(1, ui->laROI->width() - 2), std::max(1, ui->laROI->height() - 2));
    ui->laROI->setPixmap(
        QPixmap::fromImage(picture.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation)));
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
