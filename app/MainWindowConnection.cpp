// SPDX-License-Identifier: MIT
// Opens, closes and reboots the camera, and sets up the panels that work on it.
#include "app/DiscoveryLink.h"
#include "app/MainWindow.h"

#include "app/CameraList.h"
#include "control/CameraCtrl.h"
#include "dialogs/AccessRegister.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"

#include <QMessageBox>

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
    m_pAccessRegister->hide();
    m_szCameraID = id;
    {
        const std::lock_guard lock(m_discovery->mutex);
        m_discovery->cameraId = id;
    }
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

// The short way out, when another camera is to be opened: the picture stays, and nothing is logged.
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
