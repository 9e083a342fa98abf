// SPDX-License-Identifier: MIT
// Construction, wiring and destruction of the main window.
#include "app/MainWindow.h"

#include "app/Artwork.h"
#include "app/CameraList.h"
#include "app/DiscoveryLink.h"
#include "app/LogStatus.h"
#include "app/PoolThreads.h"
#include "control/CameraCtrl.h"
#include "dialogs/AboutDialog.h"
#include "dialogs/AccessRegister.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"
#include "view/DrawCenterDlg.h"
#include "view/HintLabel.h"
#include "view/ScaleWatch.h"

#include <QLabel>
#include <QStatusBar>

std::atomic<MainWindow *> g_inst{nullptr};

namespace {

/// As often as frames are displayed.
constexpr int statusPeriodMs = 33;

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::MainWindow>()),
      m_discovery(std::make_shared<DiscoveryLink>())
{
    keepPoolThreads(QThreadPool::globalInstance());
    m_grabPool.setMaxThreadCount(1);
    keepPoolThreads(&m_grabPool);
    (void)m_hub.attach(&frameQueue);
    qRegisterMetaType<PicturePtr>("PicturePtr");
    ui->setupUi(this);
    (void)OrvalisInit();
    sharpenIcons();
    giveCornersToSides();
    connectCameraActions();
    createLogDock();
    createCameraListDock();
    createTreeDock();
    createControlDock();
    createDialogs();
    connectRemainingActions();
    init_graphics_view(false);
    g_inst = this;
    ui->graphicsView->setFitFlag(&m_bFitView);
    createStatusLabels();
    createGuidance();
    emit sigTraceLog(QStringLiteral("Start orvalisviewer"));
    UpdateUIStatus(false, 0);
    slotRefreshCamera(nullptr);
    startDiscovery();
    m_pCameraList->setFocus();
}

MainWindow::~MainWindow()
{
    leaveDiscovery();
    (void)OrvalisUninit();
    slotCloseCamera();
    enter(SessionStep::Exiting);
    endPoolTasks();
    ui.reset();
    frameQueue.clear();
    g_inst = nullptr;
}

void MainWindow::sharpenIcons()
{
    addToolBarSize(ui->actionExit, QStringLiteral("window-close"));
    addToolBarSize(ui->actionOpen, QStringLiteral("camera-open"));
    addToolBarSize(ui->actionClose, QStringLiteral("camera-close"));
    addToolBarSize(ui->actionRegisterAccess_2, QStringLiteral("camera-register"));
}

/// The log needs little width and the docks at the sides need all the height they can get.
void MainWindow::giveCornersToSides()
{
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
}

void MainWindow::connectCameraActions()
{
    connect(ui->actionDiscovery, SIGNAL(triggered()), this, SLOT(slotRefreshCamera()));
    connect(ui->actionOpen, SIGNAL(triggered()), this, SLOT(slotOpenCamera()));
    connect(ui->actionClose, SIGNAL(triggered()), this, SLOT(slotCloseCamera()));
    connect(ui->actionPlay, SIGNAL(triggered()), this, SLOT(slotStartCamera()));
    connect(ui->actionStop, SIGNAL(triggered()), this, SLOT(slotStopCamera()));
    connect(ui->actionOneGrab, SIGNAL(triggered()), this, SLOT(slotOneGrab()));
}

void MainWindow::createLogDock()
{
    m_pLogStatus = new LogStatus(this);
    addDockWidget(Qt::BottomDockWidgetArea, m_pLogStatus);
    connect(m_pLogStatus->toggleViewAction(), SIGNAL(triggered(bool)), this,
            SLOT(slotShowLogStatus(bool)));
    connect(ui->actionShowLogStatus, SIGNAL(triggered()), this, SLOT(slotShowLogStatus()));
    connect(this, SIGNAL(sigTraceLog(QString)), m_pLogStatus, SLOT(slotTraceLog(QString)));
}

void MainWindow::createCameraListDock()
{
    m_pCameraList = new CameraList(this);
    addDockWidget(Qt::LeftDockWidgetArea, m_pCameraList);
    connect(m_pCameraList->toggleViewAction(), SIGNAL(triggered(bool)), this,
            SLOT(slotShowCameraList(bool)));
    connect(ui->actionShowCameraList, SIGNAL(triggered()), this, SLOT(slotShowCameraList()));
    connect(this, SIGNAL(sigUpdateCameraList(QStringList)), m_pCameraList,
            SLOT(slotUpdateCameraList(QStringList)));
    connect(this, SIGNAL(sigCameraOpened(bool)), m_pCameraList, SLOT(slotCameraOpened(bool)));
    connect(m_pCameraList, SIGNAL(sigOpenCamera(int)), this, SLOT(slotOpenCamera(int)));
}

void MainWindow::createTreeDock()
{
    m_pXMLCtrl = new XMLCtrl(this);
    addDockWidget(Qt::LeftDockWidgetArea, m_pXMLCtrl);
    connect(m_pXMLCtrl->toggleViewAction(), SIGNAL(triggered(bool)), this,
            SLOT(slotShowXMLCtrl(bool)));
    connect(ui->actionShowXMLControl, SIGNAL(triggered()), this, SLOT(slotShowXMLCtrl()));
}

void MainWindow::createControlDock()
{
    m_pCameraCtrl = new CameraCtrl(this);
    m_pCameraCtrl->hide();
    m_pCameraCtrl->widget()->setEnabled(false); // until it has a camera
    addDockWidget(Qt::RightDockWidgetArea, m_pCameraCtrl);
    connect(m_pCameraCtrl->toggleViewAction(), SIGNAL(triggered(bool)), this,
            SLOT(slotShowCameraCtrl(bool)));
    connect(ui->actionShowCameraControl, SIGNAL(triggered()), this, SLOT(slotShowCameraCtrl()));
    connect(ui->actionControl, SIGNAL(triggered()), this, SLOT(slotShowCameraCtrl()));

    connect(m_pXMLCtrl, SIGNAL(sigUpdateFeatureInfo(bool)), m_pCameraCtrl,
            SLOT(loadFeatureValue(bool)));
    connect(m_pXMLCtrl, SIGNAL(sigUpdateVideoInfo()), m_pCameraCtrl, SLOT(loadVideoInfo()));
    connect(m_pXMLCtrl, SIGNAL(sigUpdateTriggerInfo()), m_pCameraCtrl, SLOT(loadTriggerValue()));
    connect(m_pXMLCtrl, SIGNAL(sigUpdateStrobeInfo()), m_pCameraCtrl, SLOT(loadStrobeValue()));
    connect(m_pXMLCtrl, SIGNAL(sigUpdateUSerSetInfo()), m_pCameraCtrl, SLOT(loadUserSet()));
}

void MainWindow::createDialogs()
{
    m_pAboutDialog = new AboutDialog(this);
    m_pAboutDialog->hide();
    connect(ui->actionAbout_Orvalis, SIGNAL(triggered()), this, SLOT(slotShowAboutDlg()));

    m_pDrawCenterDlg = new DrawCenterDlg(this);
    m_pDrawCenterDlg->hide();
    connect(ui->actionDrawCenter, SIGNAL(toggled(bool)), this, SLOT(slotShowDrawCenterDlg(bool)));
    connect(m_pDrawCenterDlg, SIGNAL(sigValueApply(int, QColor)), this,
            SLOT(slotCenterValue(int, QColor)));
}

void MainWindow::connectRemainingActions()
{
    connect(ui->actionRegisterAccess_2, SIGNAL(triggered()), this, SLOT(slotAccessRegister()));
    connect(ui->actionCameraReset, SIGNAL(triggered()), this, SLOT(slotResetCamera()));
    connect(ui->actionSave, SIGNAL(triggered(bool)), this, SLOT(slotSaveImg(bool)));
    connect(ui->actionExit, SIGNAL(triggered()), this, SLOT(slotExit()));
    connect(ui->actionZoomFIT, SIGNAL(triggered()), this, SLOT(slotZoomFit()));
    connect(ui->actionZoom100, SIGNAL(triggered()), this, SLOT(slotZoom100()));
    connect(ui->actionZoomIN, SIGNAL(triggered()), this, SLOT(slotZoomIn()));
    connect(ui->actionZoomOUT, SIGNAL(triggered()), this, SLOT(slotZoomOut()));
    // Deliberate: direct, as a queued event for each frame would take memory in the callback.
    connect(this, SIGNAL(sigStatusBar(int, double, double)), this,
            SLOT(slotStatusBar(int, double, double)), Qt::DirectConnection);
}

void MainWindow::createStatusLabels()
{
    m_pRateLabel = new QLabel(this);
    m_pRecvLabel = new QLabel(this);
    // The longest numbers to be expected make the room.
    slotStatusBar(0, 99999999, 0);
    slotStatusBar(1, 999.9, 9999.9);
    slotStatusBar(0, 0, 0);
    slotStatusBar(1, 0, 0);
    statusBar()->addPermanentWidget(m_pRateLabel);
    statusBar()->addPermanentWidget(m_pRecvLabel);
    m_statusTimer.setInterval(statusPeriodMs);
    connect(&m_statusTimer, &QTimer::timeout, this, &MainWindow::refreshStatus);
}

void MainWindow::createGuidance()
{
    ui->graphicsView->setAccessibleName(tr("Picture"));
    ui->graphicsView->setBackgroundRole(QPalette::Window); // quieter around a picture than white
    m_pHint = new HintLabel(ui->graphicsView);
    const auto *scale = new ScaleWatch(ui->graphicsView);
    connect(scale, &ScaleWatch::sigScaleChanged, this, &MainWindow::updateGuidance,
            Qt::QueuedConnection);
    connect(this, &MainWindow::sigUpdateCameraList, this, [this](const QStringList &names) {
        m_nCameras = static_cast<int>(names.size());
        updateGuidance();
    });
    connect(ui->actionSave, &QAction::toggled, m_pHint, [this] { updateGuidance(); });
    // A menu under the mouse clears the message.
    connect(statusBar(), &QStatusBar::messageChanged, this, [this](const QString &message) {
        if (message.isEmpty())
            updateGuidance();
    });
}

void MainWindow::slotExit()
{
    slotCloseCamera();
    QCoreApplication::exit(0);
}
