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
#include <QScopedValueRollback>

void MainWindow::slotOpenCamera(int index)
{
    if (m_bClosing || m_bExiting)
        return;
    if (m_hCamera != nullptr)
        releaseOpenCamera();
    else if (index == -1)
        index = m_pCameraList->currentCameraIdx();
    if (index < 0)
        return;

    const CameraId id = cameraIdAt(index);
    if (OrvalisOpenCamera(id.data(), &m_hCamera) != ORVALIS_OK || m_hCamera == nullptr) {
        m_hCamera = nullptr;
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
    m_bLost = false;
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
    if (m_bClosing)
        return;
    const QScopedValueRollback<bool> closing(m_bClosing, true);
    m_pXMLCtrl->DeleteXMLTree();
    if (m_hCamera != nullptr) {
        slotStopCamera();
        detachPanels();
        (void)OrvalisCloseCamera(m_hCamera);
        m_hCamera = nullptr;
        emit sigCameraOpened(false);
        init_graphics_view(false);
    }
    UpdateUIStatus(false, 0);
    emit sigTraceLog(QStringLiteral("close Camera[%1]").arg(cameraIdText()));
    updateGuidance();
}

void MainWindow::loseCamera()
{
    m_bLost = m_bLost || m_hCamera != nullptr;
    slotCloseCamera();
}

// The short way out, when another camera is to be opened: the picture stays, and nothing is logged.
void MainWindow::releaseOpenCamera()
{
    endStream();
    acquisitionChanged(false);
    m_pXMLCtrl->DeleteXMLTree();
    detachPanels();
    (void)OrvalisCloseCamera(m_hCamera);
    m_hCamera = nullptr;
    emit sigCameraOpened(false);
    UpdateUIStatus(false, 0);
    updateGuidance();
}

void MainWindow::slotResetCamera()
{
    const OCameraHandle asked = m_hCamera;
    const unsigned connection = m_nConnection;
    const auto answer = QMessageBox::question(this, QStringLiteral("Confirm"),
                                              QStringLiteral("Do you want to reboot camera?"),
                                              QMessageBox::Yes | QMessageBox::No);
    if (answer == QMessageBox::No)
        return;
    // The camera may have left the bus while the question stood.
    if (m_hCamera != asked || m_nConnection != connection)
        return;
    (void)OrvalisCameraReset(m_hCamera);
    slotCloseCamera();
}
