// SPDX-License-Identifier: MIT
// The live stream and the single shot, from the callback of the camera library through the display
// thread to the screen.
#include "app/MainWindow.h"

#include "app/StreamStatus.h"
#include "capture/FramePixels.h"
#include "capture/Picture.h"
#include "control/CameraCtrl.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"

#include <QDebug>
#include <QtConcurrent>

#include <algorithm>
#include <exception>
#include <new>
#include <string.h>
#include <system_error>
#include <unistd.h>

namespace {

/// Caps the display at about 30 frames a second.
constexpr useconds_t displayPauseUs = 33000;

constexpr int everyFrame = -1;

/// Backpressure: at this many bytes of images pending in the GUI thread, no further frame is taken.
constexpr std::size_t maxPendingDisplayBytes = std::size_t{64} * 1024 * 1024;

/// The wait for the frame of a single shot, about 1.5 s: number of checks, and pause between two.
constexpr int waitSteps = 150;
constexpr useconds_t waitStepUs = 10000;

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
    readStreamFormat(); // after the events in prepareStart(), which may change the format
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

// init_graphics_view() processes events. They may stop this start, close the camera, open another
// one or take a single shot. The start continues only if none of this happened, or if a shot has
// already ended.
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
    m_pStatus->discard(); // figures of a library that failed to stop
    m_hub.start(streamInfo());
    enter(SessionStep::Live);
    try {
        m_displayThread = std::thread(&MainWindow::DisplayThread, this);
    } catch (const std::system_error &) { // the system cannot create a thread
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
    // The display thread may be waiting for the limiter: admit its frame now.
    m_saver.limiter().setBypass(true);
    m_displayThread.join();
    m_saver.limiter().setBypass(false);
}

// On return, no callback runs, no frame is held, and pending images will not be displayed.
void MainWindow::endStream()
{
    const bool shot = m_session.is(SessionStep::Shooting);
    enter(SessionStep::Stopping);
    joinDisplayThread();
    (void)OrvalisStopAcquisition(m_hCamera);
    m_hub.stop();
    m_pStatus->showFinalCount();
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
    m_pStatus->showNoRate();
    endStream();
    UpdateUIStatus(false, 2);
    emit sigTraceLog(QStringLiteral("stop steam Camera[%1]").arg(cameraIdText()));
    acquisitionChanged();
}

// There is no stream to stop yet. prepareStart() detects the cancellation when it has processed its
// events.
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
        startGracePeriod();
        m_pStatus->start();
    } else {
        m_pStatus->stop();
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
    } catch (const std::exception &error) { // must not reach C code
        qDebug() << "a frame was lost:" << error.what();
    }
}

void MainWindow::callback_imgrecv(OImageFrame *frame)
{
    receive(frame, &MainWindow::frameReceived);
}

// Runs on the library's thread, which must not wait: no expensive work here.
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
        qDebug() << "no memory to save and display a frame";
    }
}

void MainWindow::displayFrame(const PublishedFrame &frame, PictureMaker *maker)
{
    const PicturePtr picture =
        maker->make(frame, Rows::AlignedTo4, regionPixels(m_sizeInfo.width, m_sizeInfo.height));
    frameQueue.clear(); // discards frames that arrived meanwhile
    if (picture == nullptr)
        return;
    saveIfArmed(*picture);
    sendToScreen(picture);
}

bool MainWindow::guiIsLate() const { return m_pendingDisplayBytes >= maxPendingDisplayBytes; }

void MainWindow::sendToScreen(const PicturePtr &picture)
{
    const QPixmap &pixmap = picture->screen();
    const std::size_t bytes = std::size_t{sizeof(QRgb)} * static_cast<std::size_t>(pixmap.width()) *
                              static_cast<std::size_t>(pixmap.height());
    m_pendingDisplayBytes += bytes;
    emit sigDisplayFrame(pixmap);
    emit sigPicture(picture);
    // Release the bytes after the image, and by a timer: if posted events arrive as fast as Qt
    // processes them, only a timer leaves time for user input.
    QMetaObject::invokeMethod(
        this,
        [this, bytes] {
            QTimer::singleShot(0, this, [this, bytes] { m_pendingDisplayBytes -= bytes; });
        },
        Qt::QueuedConnection);
}

void MainWindow::slotSaveImg(bool checked) { m_bSaveRequest.set(checked); }

SaveOptions MainWindow::saveOptions() const
{
    SaveOptions options;
    QString format;
    int count = 1;
    m_pCameraCtrl->getSaveOpt(&options.path, &format, &count);
    options.format = saveFormatNamed(format);
    options.everyFrame = count == everyFrame;
    return options;
}

void MainWindow::saveIfArmed(const Picture &picture)
{
    const auto saved = m_saver.saveIfArmed(picture, m_szCameraID);
    if (!saved)
        return;
    // Only the GUI thread may use watcher and action.
    QMetaObject::invokeMethod(
        this,
        [this, saved = *saved] {
            m_saveWatcher.setFuture(saved.task);
            if (saved.last && !m_bSaveRequest)
                ui->actionSave->setChecked(false);
        },
        Qt::QueuedConnection);
}

void MainWindow::slotOneGrab()
{
    if (!m_session.mayGo(SessionStep::Shooting))
        return;
    if (OrvalisSetNodeEnum(m_hCamera, "AcquisitionMode", "SingleFrame") == ORVALIS_OK)
        m_singleFrameCamera = cameraIdText();
    readStreamFormat();
    // Deliberate: every shot connects again, here and below. Both slots are idempotent.
    connect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)),
            Qt::QueuedConnection);
    UpdateUIStatus(true, 2);
    enter(SessionStep::Shooting);
    m_bOneGrabDone = false;
    ++m_nGrabRun;
    m_pStatus->discard();
    m_u64FrameCount = 0;
    emit sigStatusBar(0, 0.0, 0.0);
    (void)OrvalisStartAcquisition(m_hCamera, callback_oneGrab);
    connect(&m_grabWatcher, SIGNAL(finished()), this, SLOT(slotFinishedGrab()));
    m_grabWatcher.setFuture(
        QtConcurrent::run(&m_grabPool, OneGrabThread, static_cast<void *>(this)));
    acquisitionChanged();
}

void MainWindow::callback_oneGrab(OImageFrame *frame)
{
    receive(frame, &MainWindow::oneFrameReceived);
}

// May run for several frames: a camera without single-frame mode continues until it is stopped.
void MainWindow::oneFrameReceived(OImageFrame *frame)
{
    const bool displayed = displayOneFrame(frame);
    const std::uint64_t count = ++m_u64FrameCount;
    emit sigStatusBar(0, static_cast<double>(count), 0.0);
    if (displayed)
        m_bOneGrabDone = true;
}

bool MainWindow::displayOneFrame(OImageFrame *frame)
{
    if (m_bOneGrabDone && guiIsLate())
        return false;
    // The frame is read in place, so it may be larger than announced if its rawSize confirms that.
    const std::uint64_t mostPixels =
        std::max<std::uint64_t>(regionPixels(m_sizeInfo.width, m_sizeInfo.height), frame->rawSize);
    const FrameStamp stamp{m_u64FrameCount + 1, std::chrono::steady_clock::now(),
                           std::chrono::system_clock::now()};
    PictureMaker maker(streamInfo(), m_meaning);
    const PicturePtr picture = maker.make({frame, stamp}, Rows::Packed, mostPixels);
    if (picture == nullptr)
        return false;
    sendToScreen(picture);
    return true;
}

void OneGrabThread(void *mainWindow) { static_cast<MainWindow *>(mainWindow)->waitForOneGrab(); }

void MainWindow::waitForOneGrab()
{
    const unsigned run = m_nGrabRun;
    int counter = waitSteps;
    // A newer shot replaces this one, which then has nothing to report.
    while (!m_bOneGrabDone && run == m_nGrabRun) {
        if (--counter == 0) {
            emit sigStatusBar(0, 0.0, 0.0);
            return;
        }
        usleep(waitStepUs);
    }
}

void MainWindow::slotFinishedGrab()
{
    // The shot may have been stopped, and a stream started, meanwhile.
    if (!m_session.is(SessionStep::Shooting))
        return;
    UpdateUIStatus(false, 2);
    enter(SessionStep::Stopping);
    (void)OrvalisStopAcquisition(m_hCamera);
    m_pStatus->showFinalCount();
    endOneGrab();
    enter(SessionStep::Open);
    acquisitionChanged();
}

void MainWindow::endOneGrab()
{
    m_bOneGrabDone = true;
    // Also after a stop: in single-frame mode, the next stream would end with its first frame.
    endSingleFrameMode();
}

void MainWindow::endSingleFrameMode()
{
    if (OrvalisSetNodeEnum(m_hCamera, "AcquisitionMode", "Continuous") == ORVALIS_OK)
        m_singleFrameCamera.clear();
}

// A camera that is lost during a shot cannot be written to, and returns in single-frame mode. A
// mode that the user has set stays.
void MainWindow::continueInContinuousMode()
{
    if (!m_singleFrameCamera.isEmpty() && m_singleFrameCamera == cameraIdText())
        endSingleFrameMode();
}
