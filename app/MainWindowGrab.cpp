// SPDX-License-Identifier: MIT
// The single shot: one frame from a camera that does not stream.
#include "app/MainWindow.h"

#include "capture/FramePixels.h"
#include "tree/XMLCtrl.h"

#include <QImage>
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
    if (m_hCamera == nullptr || m_bStreaming || m_bExiting)
        return;
    (void)OrvalisSetNodeEnum(m_hCamera, "AcquisitionMode", "SingleFrame");
    readStreamFormat();
    // Connected anew by every shot, here and below; kept. Both slots bear being called again.
    connect(this, SIGNAL(sigDisplayFrame(QPixmap)), this, SLOT(slotDisplayFrame(QPixmap)),
            Qt::QueuedConnection);
    UpdateUIStatus(true, 2);
    m_bOneGrab = true;
    m_bStreaming = true;
    m_bOneGrabDone = false;
    ++m_nGrabRun;
    m_u64FrameCount = 0;
    emit sigStatusBar(0, 0.0, 0.0);
    (void)OrvalisStartAcquisition(m_hCamera, callback_oneGrab);
    connect(&m_grabWatcher, SIGNAL(finished()), this, SLOT(slotFinishedGrab()));
    m_grabTasks.begin();
    m_grabWatcher.setFuture(QtConcurrent::run(OneGrabThread, static_cast<void *>(this)));
    acquisitionChanged(true);
}

void MainWindow::callback_oneGrab(OImageFrame *frame)
{
    MainWindow *window = g_inst;
    if (window != nullptr && frame != nullptr)
        window->oneFrameReceived(*frame);
}

void MainWindow::oneFrameReceived(const OImageFrame &frame)
{
    if (m_bOneGrabDone)
        return; // a camera without single-frame mode goes on
    const FramePlane plane = displayPlane(m_bColor, m_pixelFormat);
    // Shown from where it lies: it may be larger than announced, if its own size bears that out.
    const std::uint64_t mostPixels =
        std::max<std::uint64_t>(regionPixels(m_sizeInfo.width, m_sizeInfo.height), frame.rawSize);
    const std::uint8_t *pixels = shownPixels(frame, plane, mostPixels);
    if (pixels == nullptr)
        return;
    const auto width = static_cast<int>(frame.width);
    const QImage image(pixels, width, static_cast<int>(frame.height),
                       width * static_cast<int>(pixelBytes(plane)),
                       plane == FramePlane::Rgb ? QImage::Format_RGB888 : QImage::Format_Indexed8);
    emit sigDisplayFrame(QPixmap::fromImage(image));
    const std::uint64_t count = ++m_u64FrameCount;
    emit sigStatusBar(0, static_cast<double>(count), 0.0);
    m_bOneGrabDone = true;
}

void OneGrabThread(void *mainWindow)
{
    auto *window = static_cast<MainWindow *>(mainWindow);
    window->waitForOneGrab();
    window->m_grabTasks.end();
}

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
    // m_bStreaming alone may by now stand for a stream that was started behind the shot.
    if (!m_bStreaming || !m_bOneGrab)
        return;
    UpdateUIStatus(false, 2);
    m_bStreaming = false;
    (void)OrvalisStopAcquisition(m_hCamera);
    endOneGrab();
    acquisitionChanged(false);
}

void MainWindow::endOneGrab()
{
    if (!m_bOneGrab)
        return;
    m_bOneGrab = false;
    m_bOneGrabDone = true;
    // Also for a shot that was stopped, or the next stream would end with its first frame.
    (void)OrvalisSetNodeEnum(m_hCamera, "AcquisitionMode", "Continuous");
}
