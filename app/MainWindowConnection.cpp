// SPDX-License-Identifier: MIT
// Finds, opens, closes and reboots cameras, sets up the panels of the open camera, and guides the
// user.
#include "app/MainWindow.h"

#include "app/CameraList.h"
#include "app/PoolThreads.h"
#include "control/CameraCtrl.h"
#include "dialogs/AccessRegister.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"
#include "view/HintLabel.h"

#include <QMessageBox>
#include <QStatusBar>
#include <QThreadPool>
#include <QtConcurrent>

#include <chrono>
#include <mutex>

namespace {

constexpr int discoveryPeriodMs = 3000;
constexpr std::chrono::milliseconds longestWaitAtExit{3000};

/// Limit of pending passes, since each may hang in the library; at the limit, a tick starts none.
constexpr int maxPasses = 8;

/// Grace period for the first frame of a stream: normally it arrives at once.
constexpr int firstFrameGraceMs = 700;

/// The finder of the window at `owner`, an address that is only compared, never dereferenced.
struct CurrentFinder {
    std::mutex mutex; // guards owner and finder
    const void *owner = nullptr;
    std::shared_ptr<CameraFinder> finder;

    void set(const void *newOwner, std::shared_ptr<CameraFinder> newFinder)
    {
        const std::lock_guard lock(mutex);
        owner = newOwner;
        finder = std::move(newFinder);
    }
    std::shared_ptr<CameraFinder> of(const void *window)
    {
        const std::lock_guard lock(mutex);
        return owner == window ? finder : nullptr;
    }
};
CurrentFinder currentFinder;

/// "43 %", or "4.3 %" below ten percent.
QString percentText(qreal factor)
{
    const qreal percent = 100 * factor;
    return QString::number(percent, 'f', percent < 9.95 ? 1 : 0) + QStringLiteral(" %");
}

} // namespace

void DiscoveryThread(void *mainWindow)
{
    const std::shared_ptr<CameraFinder> finder = currentFinder.of(mainWindow);
    if (finder == nullptr)
        return;
    // A pass mostly waits for the library: let the pool run save tasks meanwhile.
    QThreadPool::globalInstance()->releaseThread();
    finder->run();
    QThreadPool::globalInstance()->reserveThread();
}

int MainWindow::DiscoveryProc()
{
    m_finder->run();
    return 0;
}

void MainWindow::slotRefreshCamera(int *count)
{
    const QStringList names = cameraNames();
    emit sigUpdateCameraList(names);
    if (count != nullptr)
        *count = static_cast<int>(names.size());
}

void MainWindow::startDiscovery()
{
    m_finder->attach({this, [this](const QStringList &names) { emit sigUpdateCameraList(names); },
                      [this] { loseCamera(); }});
    currentFinder.set(this, m_finder);
    m_pTimer = new QTimer(this);
    connect(m_pTimer, SIGNAL(timeout()), this, SLOT(OnTimer()));
    m_pTimer->start(discoveryPeriodMs);
}

void MainWindow::OnTimer()
{
    // A pass releases its place in the pool, so the pool may start another thread.
    if (m_finder->passes.running() >= maxPasses || !mayStartPoolThread())
        return;
    m_finder->passes.begin();
    m_discoveryWatcher.setFuture(QtConcurrent::run([finder = m_finder, window = this] {
        DiscoveryThread(window); // only its address: the window may be destroyed already
        finder->passes.end();
    }));
}

void MainWindow::stopDiscovery()
{
    m_pTimer->stop();
    m_finder->detach();
}

void MainWindow::awaitDiscovery()
{
    (void)m_finder->passes.waitIdle(longestWaitAtExit);
    currentFinder.set(nullptr, nullptr);
}

void MainWindow::enter(SessionStep next)
{
    const SessionStep present = m_session.step();
    if (!m_session.go(next))
        qWarning("refused the step from %s to %s", nameOf(present), nameOf(next));
}

void MainWindow::slotOpenCamera(int index)
{
    if (!m_session.mayOpenOrClose())
        return;
    if (m_hCamera != nullptr)
        releaseOpenCamera();
    else if (index == -1)
        index = m_pCameraList->currentCameraIdx();
    if (index < 0)
        return;

    const SessionStep before = m_session.step();
    enter(SessionStep::Opening);
    const CameraId id = cameraIdAt(index);
    if (OrvalisOpenCamera(id.data(), &m_hCamera) != ORVALIS_OK || m_hCamera == nullptr) {
        m_hCamera = nullptr;
        enter(before);
        reportOpenError(id);
        return;
    }
    cameraOpened(id);
}

void MainWindow::reportOpenError(const CameraId &id)
{
    const QString message = QStringLiteral("%1 open error").arg(::cameraIdText(id));
    QMessageBox::critical(this, QStringLiteral("error"), message, QMessageBox::Ok);
    emit sigTraceLog(message);
}

void MainWindow::cameraOpened(const CameraId &id)
{
    enter(SessionStep::Open);
    ++m_nConnection;
    (void)OrvalisGetSizeInfo(m_hCamera, &m_sizeInfo);
    m_pXMLCtrl->CreateXMLTree(m_hCamera);
    deleteRegisterDialog();
    m_pAccessRegister = new AccessRegister(this, m_hCamera);
    m_pAccessRegister->setStreamControl(this);
    m_pAccessRegister->hide();
    m_szCameraID = id;
    m_finder->setOpened(id);
    emit sigCameraOpened(true);
    showSizeInTitle();
    emit sigTraceLog(QStringLiteral("Success open camera[%1] %2x%3")
                         .arg(cameraIdText(), QString::number(m_sizeInfo.width),
                              QString::number(m_sizeInfo.height)));
    UpdateUIStatus(true, 1);
    attachPanels();
    updateGuidance();
}

void MainWindow::attachPanels()
{
    char text[ORVALIS_TEXT_SIZE] = {};
    m_bNUCCamera = OrvalisGetNodeString(m_hCamera, "NUCMode", text) == ORVALIS_OK;
    if (m_bNUCCamera) {
        m_pCameraCtrl->hide();
        ui->actionControl->setEnabled(false);
        return;
    }
    m_pCameraCtrl->widget()->setEnabled(true);
    m_pCameraCtrl->loadConfigurationValue(m_hCamera);
    m_pCameraCtrl->CreateGrabThread();
}

void MainWindow::detachPanels()
{
    deleteRegisterDialog();
    if (m_pCameraCtrl->isVisible())
        m_pCameraCtrl->hide();
    m_pCameraCtrl->DeleteGrabThread();
    m_pCameraCtrl->releaseCamera();
    m_pCameraCtrl->widget()->setEnabled(false);
}

void MainWindow::pausePreview() { m_pCameraCtrl->pausePreview(); }

void MainWindow::resumePreview() { m_pCameraCtrl->resumePreview(); }

void MainWindow::deleteRegisterDialog()
{
    if (m_pAccessRegister == nullptr)
        return;
    m_pAccessRegister->hide();
    delete m_pAccessRegister;
    m_pAccessRegister = nullptr;
}

void MainWindow::showSizeInTitle()
{
    setWindowTitle(QStringLiteral("OrvalisViewer - %1 %2x%3")
                       .arg(cameraIdText(), QString::number(m_sizeInfo.width),
                            QString::number(m_sizeInfo.height)));
}

void MainWindow::slotCloseCamera()
{
    closeCamera(m_session.is(SessionStep::Lost) ? SessionStep::Lost : SessionStep::Closed);
}

void MainWindow::loseCamera()
{
    if (m_hCamera != nullptr)
        closeCamera(SessionStep::Lost);
    else
        slotCloseCamera();
}

void MainWindow::closeCamera(SessionStep afterwards)
{
    if (!m_session.mayOpenOrClose())
        return;
    m_pXMLCtrl->DeleteXMLTree();
    slotStopCamera();
    enter(SessionStep::Closing);
    if (m_hCamera != nullptr) {
        detachPanels();
        (void)OrvalisCloseCamera(m_hCamera);
        m_hCamera = nullptr;
        emit sigCameraOpened(false);
        init_graphics_view(false);
    }
    enter(afterwards);
    UpdateUIStatus(false, 0);
    emit sigTraceLog(QStringLiteral("close Camera[%1]").arg(cameraIdText()));
    updateGuidance();
}

// Closes the camera before another one is opened: the image stays, and nothing is logged.
void MainWindow::releaseOpenCamera()
{
    endStream();
    acquisitionChanged();
    enter(SessionStep::Closing);
    m_pXMLCtrl->DeleteXMLTree();
    detachPanels();
    (void)OrvalisCloseCamera(m_hCamera);
    m_hCamera = nullptr;
    enter(SessionStep::Closed);
    emit sigCameraOpened(false);
    UpdateUIStatus(false, 0);
    updateGuidance();
}

void MainWindow::slotResetCamera()
{
    if (m_hCamera == nullptr || !m_session.mayOpenOrClose())
        return;
    const OCameraHandle asked = m_hCamera;
    const unsigned connection = m_nConnection;
    const auto answer = QMessageBox::question(this, QStringLiteral("Confirm"),
                                              QStringLiteral("Do you want to reboot camera?"),
                                              QMessageBox::Yes | QMessageBox::No);
    if (answer == QMessageBox::No)
        return;
    // The camera may have left the bus while the question was open.
    if (m_hCamera != asked || m_nConnection != connection || !m_session.mayOpenOrClose())
        return;
    (void)OrvalisCameraReset(m_hCamera);
    slotCloseCamera();
}

Situation MainWindow::situation() const
{
    if (m_session.is(SessionStep::Lost))
        return Situation::CameraLost;
    if (m_hCamera == nullptr && m_nCameras < 2)
        return m_nCameras == 0 ? Situation::NoCamera : Situation::OneNotOpen;
    if (m_hCamera == nullptr)
        return Situation::NotOpen;
    if (!m_bStreaming && m_view.hasFrame())
        return Situation::Stopped;
    if (!m_bStreaming)
        return m_bNUCCamera ? Situation::NoPanel : Situation::NotStarted;
    if (!m_view.hasFrame() && m_sinceStart.hasExpired(firstFrameGraceMs))
        return Situation::NoFrameYet;
    return ui->actionSave->isChecked() ? Situation::LiveAndSaving : Situation::Live;
}

void MainWindow::updateGuidance()
{
    const Guidance &guidance = guidanceIn(situation());
    if (m_view.hasFrame())
        m_pHint->showHint({}, {});
    else
        m_pHint->showHint(QLatin1String(guidance.title), QLatin1String(guidance.detail));
    QString status = QLatin1String(guidance.status);
    if (m_view.hasFrame())
        status += QStringLiteral(", zoom ") + percentText(ui->graphicsView->transform().m11());
    statusBar()->showMessage(status);
}

void MainWindow::startGracePeriod()
{
    m_sinceStart.start();
    QTimer::singleShot(firstFrameGraceMs + 1, this, &MainWindow::updateGuidance);
}
