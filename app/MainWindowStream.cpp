// SPDX-License-Identifier: MIT
// The live stream: from the camera library's callback through the display thread to the screen.
#include "app/MainWindow.h"

#include "capture/FramePixels.h"
#include "capture/FrameSaveJob.h"
#include "capture/Picture.h"
#include "control/CameraCtrl.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"

#include <QDebug>
#include <QLabel>

#include <exception>
#include <new>
#include <string.h>
#include <system_error>
#include <unistd.h>

namespace {

/// Caps the display at about 30 frames a second.
constexpr useconds_t displayPauseUs = 33000;

constexpr int everyFrame = -1;

/// Pixels on their way to a GUI thread that is late. With that many no further frame is taken.
constexpr std::size_t mostOnTheirWay = std::size_t{64} * 1024 * 1024;

QString noRate() { return QStringLiteral("               0.0 fps (0.0 MB/s)"); }

} // namespace

void MainWindow::readStreamFormat()
{
    OCameraInfo info{};
    (void)OrvalisGetCamInfo(m_hCamera, &info);
    m_pixelFormat = info.pixelFormat;
    m_sensorPixelFormat = info.sensorPixelFormat;
    (void)OrvalisGetSizeInfo(m_hCamera, &m_sizeInfo);
    char text[ORVALIS_TEXT_SIZE] = {};
    (void)OrvalisGetPixelFormatStr(m_hCamera, text);
    m_meaning = meaningOf({text, strnlen(text, sizeof text)}, info.pixelFormat);
    (void)OrvalisSetBayerConversion(m_hCamera, m_meaning.bayer ? 1 : 0);
}

void MainWindow::slotStartCamera()
{
    if (m_bStreaming)
        return;
    if (!m_session.mayStart()) {
        ui->actionPlay->setChecked(false);
        return;
    }
    if (!prepareStart()) {
        acquisitionChanged();
        return;
    }
    continueInContinuousMode();
    readStreamFormat(); // after the events, which may have changed it
    if (!startDisplaying()) {
        UpdateUIStatus(false, 2);
        acquisitionChanged();
        return;
    }
    (void)OrvalisStartAcquisition(m_hCamera, callback_imgrecv);
    UpdateUIStatus(true, 2);
    emit sigTraceLog(QStringLiteral("start stream Camera[%1]").arg(cameraIdText()));
    acquisitionChanged();
}

// The new scene lets events through. They may stop this start, close the camera, open another one
// or take a single shot; only a shot that has already ended leaves the start as it was.
bool MainWindow::prepareStart()
{
    enter(SessionStep::Starting);
    ui->actionStop->setEnabled(true);
    const unsigned connection = m_nConnection;
    const unsigned stops = m_nStops;
    init_graphics_view(true);
    return m_hCamera != nullptr && m_nConnection == connection && m_nStops == stops &&
           m_session.isOneOf({SessionStep::Starting, SessionStep::Open});
}

bool MainWindow::startDisplaying()
{
    connect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)),
            Qt::QueuedConnection);
    showSizeInTitle();
    joinDisplayThread();
    (void)m_statusFigures.take(); // a library that failed to stop may have gone on
    m_hub.start(streamInfo());
    enter(SessionStep::Live);
    try {
        m_displayThread = std::thread(&MainWindow::DisplayThread, this);
    } catch (const std::system_error &) { // the system has no thread left
        enter(SessionStep::Stopping);
        enter(SessionStep::Open);
        m_hub.stop();
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
    const bool shot = m_session.is(SessionStep::Shooting);
    enter(SessionStep::Stopping);
    joinDisplayThread();
    (void)OrvalisStopAcquisition(m_hCamera);
    m_hub.stop();
    showFinalCount();
    if (shot)
        endOneGrab();
    disconnect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)));
    enter(SessionStep::Open);
}

void MainWindow::slotStopCamera()
{
    ++m_nStops;
    if (m_session.is(SessionStep::Starting))
        cancelStart();
    if (!m_bStreaming)
        return;
    m_hub.restartRates();
    showInStatusBar(m_pRateLabel, noRate());
    endStream();
    UpdateUIStatus(false, 2);
    emit sigTraceLog(QStringLiteral("stop steam Camera[%1]").arg(cameraIdText()));
    acquisitionChanged();
}

// Nothing runs yet that could be stopped; the start itself ends when its events have been
// processed.
void MainWindow::cancelStart()
{
    enter(SessionStep::Open);
    UpdateUIStatus(false, 2);
    acquisitionChanged();
}

void MainWindow::acquisitionChanged()
{
    m_pXMLCtrl->UpdateAcqState(m_bStreaming);
    ui->actionPlay->setChecked(m_session.isLive());
    if (m_bStreaming) {
        streamBegins();
        m_statusTimer.start();
    } else {
        m_statusTimer.stop();
    }
    updateGuidance();
}

void MainWindow::receive(OImageFrame *frame, void (MainWindow::*handle)(OImageFrame *)) noexcept
{
    MainWindow *window = g_inst;
    if (window == nullptr || frame == nullptr)
        return;
    try {
        (window->*handle)(frame);
    } catch (const std::exception &error) { // the library, which is C, cannot pass it on
        qDebug() << "a frame was lost:" << error.what();
    }
}

void MainWindow::callback_imgrecv(OImageFrame *frame)
{
    receive(frame, &MainWindow::frameReceived);
}

// We are running in the library's thread: expensive operations are not allowed.
void MainWindow::frameReceived(OImageFrame *frame)
{
    m_hub.publish(frame);
    const auto rates = m_hub.takeRates();
    if (rates && m_bStreaming)
        emit sigStatusBar(1, rates->framesPerSecond, rates->megabytesPerSecond);
    emit sigStatusBar(0, static_cast<double>(m_hub.received()), 0);
}

void MainWindow::DisplayThread()
{
    PictureMaker maker(streamInfo(), m_meaning);
    while (m_bStreaming) {
        if (const auto newest = guiIsLate() ? std::nullopt : frameQueue.takeNewest())
            displayIfPossible(*newest, &maker);
        usleep(displayPauseUs);
    }
}

void MainWindow::displayIfPossible(const PublishedFrame &frame, PictureMaker *maker)
{
    try {
        displayFrame(frame, maker);
    } catch (const std::bad_alloc &) {
        qDebug() << "no memory to save and show a frame";
    }
}

void MainWindow::displayFrame(const PublishedFrame &frame, PictureMaker *maker)
{
    const PicturePtr picture =
        maker->make(frame, Rows::AlignedTo4, regionPixels(m_sizeInfo.width, m_sizeInfo.height));
    frameQueue.clear(); // frames that arrived meanwhile are not displayed later
    if (picture == nullptr)
        return;
    saveIfArmed(*picture);
    sendToScreen(picture);
}

bool MainWindow::guiIsLate() const { return m_bytesOnTheirWay >= mostOnTheirWay; }

void MainWindow::sendToScreen(const PicturePtr &picture)
{
    const QPixmap &pixmap = picture->screen();
    const std::size_t bytes = std::size_t{sizeof(QRgb)} * static_cast<std::size_t>(pixmap.width()) *
                              static_cast<std::size_t>(pixmap.height());
    m_bytesOnTheirWay += bytes;
    emit sigDisplayFrame(pixmap);
    emit sigPicture(picture);
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

void MainWindow::saveIfArmed(const Picture &picture)
{
    const SaveRequest::Arming arming = m_bSaveRequest.arming();
    if (arming == 0)
        return;
    QString path;
    QString format;
    int count = 1;
    m_pCameraCtrl->getSaveOpt(&path, &format, &count);
    auto job = makeSaveJob(picture, format);
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
    const QFuture<void> task = ::startSaveTask(std::move(job));
    // The watcher lives on the GUI thread.
    QMetaObject::invokeMethod(
        this, [this, task] { m_saveWatcher.setFuture(task); }, Qt::QueuedConnection);
}
