// SPDX-License-Identifier: MIT
// The live stream: from the camera library's callback through the display thread to the screen.
#include "app/MainWindow.h"

#include "capture/FramePixels.h"
#include "capture/FrameSaveJob.h"
#include "capture/ScreenImages.h"
#include "control/CameraCtrl.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"

#include <QDebug>
#include <QImage>
#include <QLabel>
#include <QScopedValueRollback>
#include <QTimer>
#include <QtConcurrent>

#include <new>
#include <string.h>
#include <system_error>
#include <unistd.h>

namespace {

/// Caps the display at about 30 frames a second.
constexpr useconds_t displayPauseUs = 33000;

constexpr int everyFrame = -1;

/// Frames that wait while the display thread waits for the disk. It wants none but the newest.
constexpr std::size_t mostQueued = 1000;

/// Pixels on their way to a GUI thread that is late. With that many no further frame is taken.
constexpr std::size_t mostOnTheirWay = std::size_t{64} * 1024 * 1024;

timeval timeNow()
{
    timeval now{};
    (void)gettimeofday(&now, nullptr);
    return now;
}

} // namespace

void MainWindow::readStreamFormat()
{
    OCameraInfo info{};
    (void)OrvalisGetCamInfo(m_hCamera, &info);
    m_pixelFormat = info.pixelFormat;
    (void)OrvalisGetSizeInfo(m_hCamera, &m_sizeInfo);
    char text[ORVALIS_TEXT_SIZE] = {};
    (void)OrvalisGetPixelFormatStr(m_hCamera, text);
    const auto length = static_cast<int>(strnlen(text, sizeof text));
    const QString format = QString::fromUtf8(text, length);
    m_bColor = !format.contains(QLatin1String("Mono"));
    m_bBayer = m_bColor && format.contains(QLatin1String("Bayer"));
    (void)OrvalisSetBayerConversion(m_hCamera, m_bBayer ? 1 : 0);
}

void MainWindow::slotStartCamera()
{
    if (m_bStreaming)
        return;
    if (m_hCamera == nullptr || m_bStarting || m_bExiting) {
        ui->actionPlay->setChecked(false);
        return;
    }
    const QScopedValueRollback<bool> starting(m_bStarting, true);
    const unsigned connection = m_nConnection;
    readStreamFormat();
    init_graphics_view(true);
    // That let events through: the camera may be gone, another one open, or a single shot under
    // way.
    if (m_hCamera == nullptr || m_nConnection != connection || m_bStreaming) {
        acquisitionChanged(m_bStreaming);
        return;
    }
    if (!startDisplaying()) {
        acquisitionChanged(false);
        return;
    }
    (void)OrvalisStartAcquisition(m_hCamera, callback_imgrecv);
    UpdateUIStatus(true, 2);
    emit sigTraceLog(QStringLiteral("start stream Camera[%1]").arg(cameraIdText()));
    acquisitionChanged(true);
}

bool MainWindow::startDisplaying()
{
    connect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)),
            Qt::QueuedConnection);
    showSizeInTitle();
    joinDisplayThread();
    frameQueue.clear(); // a library that failed to stop may have gone on
    m_u64FrameCount = 0;
    m_rateMeter.restart();
    m_bStreaming = true;
    try {
        m_displayThread = std::thread(&MainWindow::DisplayThread, this);
    } catch (const std::system_error &) { // the system has no thread left
        m_bStreaming = false;
        disconnect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)));
        return false;
    }
    return true;
}

void MainWindow::joinDisplayThread()
{
    if (!m_displayThread.joinable())
        return;
    // A frame that waits for a place among those to be saved gets it now.
    m_saveLimiter.letThrough(true);
    m_displayThread.join();
    m_saveLimiter.letThrough(false);
}

// After this no callback runs, no frame is held, and a picture that is still on its way is not
// shown.
void MainWindow::endStream()
{
    m_bStreaming = false;
    joinDisplayThread();
    (void)OrvalisStopAcquisition(m_hCamera);
    frameQueue.clear();
    endOneGrab();
    disconnect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)));
}

void MainWindow::slotStopCamera()
{
    if (!m_bStreaming)
        return;
    m_rateMeter.restart();
    showInStatusBar(m_pRateLabel, QStringLiteral("               0.0 fps (0.0 MB/s)"));
    endStream();
    UpdateUIStatus(false, 2);
    emit sigTraceLog(QStringLiteral("stop steam Camera[%1]").arg(cameraIdText()));
    acquisitionChanged(false);
}

void MainWindow::acquisitionChanged(bool acquiring)
{
    m_pXMLCtrl->UpdateAcqState(acquiring);
    ui->actionPlay->setChecked(acquiring && !m_bOneGrab);
    if (acquiring)
        streamBegins();
    updateGuidance();
}

void MainWindow::callback_imgrecv(OImageFrame *frame)
{
    MainWindow *window = g_inst;
    if (window != nullptr && frame != nullptr)
        window->frameReceived(frame);
}

void MainWindow::frameReceived(OImageFrame *frame)
{
    if (const auto rates = m_rateMeter.frameReceived(*frame, timeNow()))
        emit sigStatusBar(1, rates->framesPerSecond, rates->megabytesPerSecond);
    const std::uint64_t count = ++m_u64FrameCount;
    emit sigStatusBar(0, static_cast<double>(count), 0);
    if (frameQueue.size() >= mostQueued)
        frameQueue.clear();
    frameQueue.push(frame);
}

void MainWindow::DisplayThread()
{
    FrameBuffer buffer(m_sizeInfo.width, m_sizeInfo.height);
    ScreenImages screenImages;
    while (m_bStreaming) {
        const bool guiIsLate = m_bytesOnTheirWay >= mostOnTheirWay;
        if (const OImageFrame *newest = guiIsLate ? nullptr : frameQueue.takeNewest())
            displayIfPossible(*newest, &buffer, &screenImages);
        usleep(displayPauseUs);
    }
}

void MainWindow::displayIfPossible(OImageFrame frame, FrameBuffer *buffer,
                                   ScreenImages *screenImages)
{
    try {
        displayFrame(frame, buffer, screenImages);
    } catch (const std::bad_alloc &) {
        qDebug() << "no memory to save and show a frame";
    }
}

void MainWindow::displayFrame(const OImageFrame &frame, FrameBuffer *buffer,
                              ScreenImages *screenImages)
{
    const FramePlane plane = displayPlane(m_bColor, m_pixelFormat);
    const bool copied = buffer->copyFrom(frame, plane);
    frameQueue.clear();
    if (!copied)
        return;
    // No line stride: Qt takes rows as aligned to 4 bytes. Kept.
    const QImage image(
        buffer->data(), static_cast<int>(frame.width), static_cast<int>(frame.height),
        plane == FramePlane::Rgb ? QImage::Format_RGB888 : QImage::Format_Grayscale8);
    saveIfArmed(frame, image);
    const QPixmap pixmap = screenImages->pixmapOf(image);
    if (!pixmap.isNull()) // there was memory for it
        sendToScreen(pixmap);
}

void MainWindow::sendToScreen(const QPixmap &pixmap)
{
    const std::size_t bytes = std::size_t{sizeof(QRgb)} * static_cast<std::size_t>(pixmap.width()) *
                              static_cast<std::size_t>(pixmap.height());
    m_bytesOnTheirWay += bytes;
    emit sigDisplayFrame(pixmap);
    // Behind the picture, and by a timer: posted events alone, if they come as fast as they are
    // handled, would leave the user's no turn.
    QMetaObject::invokeMethod(
        this,
        [this, bytes] {
            QTimer::singleShot(0, this, [this, bytes] { m_bytesOnTheirWay -= bytes; });
        },
        Qt::QueuedConnection);
}

void MainWindow::slotSaveImg(bool checked) { m_bSaveRequest.set(checked); }

void MainWindow::saveIfArmed(const OImageFrame &frame, const QImage &image)
{
    const SaveRequest::Arming arming = m_bSaveRequest.arming();
    if (arming == 0)
        return;
    QString path;
    QString format;
    int count = 1;
    m_pCameraCtrl->getSaveOpt(&path, &format, &count);
    auto job = makeSaveJob(frame, image, format);
    job->path = path;
    job->ownedCameraId = m_szCameraID;
    job->cameraId = job->ownedCameraId.data();
    job->place = m_saveLimiter.take(heldBytes(*job));
    startSaveTask(std::move(job));
    if (count == everyFrame)
        return;
    m_bSaveRequest.finish(arming);
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!m_bSaveRequest)
                ui->actionSave->setChecked(false);
        },
        Qt::QueuedConnection);
}

void MainWindow::startSaveTask(std::unique_ptr<FrameSaveJob> job)
{
    const QFuture<void> task = QtConcurrent::run(SaveThread, static_cast<void *>(job.release()));
    // The watcher lives on the GUI thread.
    QMetaObject::invokeMethod(
        this, [this, task] { m_saveWatcher.setFuture(task); }, Qt::QueuedConnection);
}
