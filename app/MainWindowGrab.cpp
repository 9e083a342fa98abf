// SPDX-License-Identifier: MIT
// The single shot: one frame from a camera that does not stream.
#include "app/MainWindow.h"

#include "capture/FramePixels.h"
#include "capture/Picture.h"
#include "tree/XMLCtrl.h"

#include <QtConcurrent>

#include <algorithm>

#include <unistd.h>

namespace {

/// How often the wait for the frame looks, and how long it sleeps in between: about 1.5 s.
constexpr int waitSteps = 150;
constexpr useconds_t waitStepUs = 10000;

} // namespace

void MainWindow::slotOneGrab()
{
    if (!m_session.mayGo(SessionStep::Shooting))
        return;
    if (OrvalisSetNodeEnum(m_hCamera, "AcquisitionMode", "SingleFrame") == ORVALIS_OK)
        m_singleFrameCamera = cameraIdText();
    readStreamFormat();
    // Deliberate: connected again by every shot, here and below. Both slots may be called
    // repeatedly.
    connect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)),
            Qt::QueuedConnection);
    UpdateUIStatus(true, 2);
    enter(SessionStep::Shooting);
    m_bOneGrabDone = false;
    ++m_nGrabRun;
    (void)m_statusFigures.take();
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

// May be called for several frames: a camera without single-frame mode goes on until it is stopped.
void MainWindow::oneFrameReceived(OImageFrame *frame)
{
    const bool shown = showOneFrame(frame);
    const std::uint64_t count = ++m_u64FrameCount;
    emit sigStatusBar(0, static_cast<double>(count), 0.0);
    if (shown)
        m_bOneGrabDone = true;
}

bool MainWindow::showOneFrame(OImageFrame *frame)
{
    if (m_bOneGrabDone && guiIsLate())
        return false;
    // Read from where it lies: it may be larger than announced, if its own size confirms that.
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
    // A shot that was stopped, and followed by another, has nothing more to say.
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
    // A stream may have been started after the shot.
    if (!m_session.is(SessionStep::Shooting))
        return;
    UpdateUIStatus(false, 2);
    enter(SessionStep::Stopping);
    (void)OrvalisStopAcquisition(m_hCamera);
    showFinalCount();
    endOneGrab();
    enter(SessionStep::Open);
    acquisitionChanged();
}

void MainWindow::endOneGrab()
{
    m_bOneGrabDone = true;
    // Also for a shot that was stopped, or the next stream would end with its first frame.
    endSingleFrameMode();
}

void MainWindow::endSingleFrameMode()
{
    if (OrvalisSetNodeEnum(m_hCamera, "AcquisitionMode", "Continuous") == ORVALIS_OK)
        m_singleFrameCamera.clear();
}

// A camera that is lost during a shot takes no more writes, and has the shot's mode when it
// returns. A mode that the user has set stays.
void MainWindow::continueInContinuousMode()
{
    if (!m_singleFrameCamera.isEmpty() && m_singleFrameCamera == cameraIdText())
        endSingleFrameMode();
}
