// SPDX-License-Identifier: MIT
// Construction, wiring and destruction of the main window; its view, docks and dialogs.
#include "app/MainWindow.h"

#include "app/ActionRules.h"
#include "app/Artwork.h"
#include "app/CameraList.h"
#include "app/ExitNotice.h"
#include "app/LogStatus.h"
#include "app/PoolThreads.h"
#include "app/StreamStatus.h"
#include "control/CameraCtrl.h"
#include "dialogs/AboutDialog.h"
#include "dialogs/AccessRegister.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"
#include "view/DrawCenterDlg.h"
#include "view/HintLabel.h"
#include "view/ScaleWatch.h"

#include <QGraphicsPixmapItem>
#include <QStatusBar>

std::atomic<MainWindow *> g_inst{nullptr};

namespace {

constexpr int oneZoomStep = 120;

void showAndRaise(QWidget *widget, bool show)
{
    if (!show)
        return;
    widget->show();
    widget->raise();
}

/// A dock that the user shows gets the keyboard focus.
void showDock(QDockWidget *dock, bool show)
{
    showAndRaise(dock, show);
    if (show)
        dock->setFocus(Qt::OtherFocusReason);
}

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent), ui(std::make_unique<Ui::MainWindow>())
{
    keepPoolThreads(QThreadPool::globalInstance());
    m_grabPool.setMaxThreadCount(1);
    keepPoolThreads(&m_grabPool);
    (void)m_hub.attach(&frameQueue);
    qRegisterMetaType<PicturePtr>("PicturePtr");
    ui->setupUi(this);
    m_view.attach(ui->graphicsView);
    (void)OrvalisInit();
    addToolBarIcons();
    assignDockCorners();
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
    stopDiscovery();
    (void)OrvalisUninit();
    slotCloseCamera();
    enter(SessionStep::Exiting);
    awaitPoolTasks();
    ui.reset();
    frameQueue.clear();
    g_inst = nullptr;
}

void MainWindow::addToolBarIcons()
{
    addToolBarSize(ui->actionExit, QStringLiteral("window-close"));
    addToolBarSize(ui->actionOpen, QStringLiteral("camera-open"));
    addToolBarSize(ui->actionClose, QStringLiteral("camera-close"));
    addToolBarSize(ui->actionRegisterAccess_2, QStringLiteral("camera-register"));
}

/// The log needs little width; the docks at the sides need the full height.
void MainWindow::assignDockCorners()
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
    m_pXMLCtrl->setStreamControl(this);
    addDockWidget(Qt::LeftDockWidgetArea, m_pXMLCtrl);
    connect(m_pXMLCtrl->toggleViewAction(), SIGNAL(triggered(bool)), this,
            SLOT(slotShowXMLCtrl(bool)));
    connect(ui->actionShowXMLControl, SIGNAL(triggered()), this, SLOT(slotShowXMLCtrl()));
}

void MainWindow::createControlDock()
{
    m_pCameraCtrl = new CameraCtrl(this);
    m_pCameraCtrl->setStreamControl(this);
    m_pCameraCtrl->hide();
    m_pCameraCtrl->widget()->setEnabled(false); // until a camera is open
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
    // Deliberate: a direct connection. A queued event for each frame would allocate memory in the
    // callback.
    connect(this, SIGNAL(sigStatusBar(int, double, double)), this,
            SLOT(slotStatusBar(int, double, double)), Qt::DirectConnection);
}

void MainWindow::createStatusLabels()
{
    m_pStatus = new StreamStatus(statusBar());
    slotStatusBar(0, 0, 0);
    slotStatusBar(1, 0, 0);
}

void MainWindow::createGuidance()
{
    ui->graphicsView->setAccessibleName(tr("Image"));
    ui->graphicsView->setBackgroundRole(QPalette::Window); // distracts less than white
    m_pHint = new HintLabel(ui->graphicsView);
    const auto *scale = new ScaleWatch(ui->graphicsView);
    connect(scale, &ScaleWatch::sigScaleChanged, this, &MainWindow::updateGuidance,
            Qt::QueuedConnection);
    connect(
        this, &MainWindow::sigUpdateCameraList, this,
        [this](const QStringList &names) {
            m_nCameras = static_cast<int>(names.size());
            updateGuidance();
        });
    connect(ui->actionSave, &QAction::toggled, m_pHint, [this] { updateGuidance(); });
    // Qt clears the message when the mouse moves over a menu.
    connect(statusBar(), &QStatusBar::messageChanged, this, [this](const QString &message) {
        if (message.isEmpty())
            updateGuidance();
    });
}

void MainWindow::awaitPoolTasks()
{
    hide(); // the window does not respond during the waits
    m_bOneGrabDone = true;
    m_grabPool.waitForDone();
    awaitSaves(m_saver.limiter());
    awaitDiscovery();
}

void MainWindow::slotExit()
{
    slotCloseCamera();
    QCoreApplication::exit(0);
}

void MainWindow::UpdateUIStatus(bool on, int stage) { applyActionRules(*ui, on, stage); }

void MainWindow::slotStatusBar(int kind, double a, double b) { m_pStatus->put(kind, a, b); }

void MainWindow::init_graphics_view(bool streaming)
{
    m_view.renewScene(this);
    const QGraphicsPixmapItem *item = m_pixmapItem;
    QCoreApplication::processEvents();
    // An event may have replaced the scene.
    if (!streaming && m_pixmapItem == item)
        m_pixmapItem->setPixmap(logoFor(devicePixelRatioF()));
}

void MainWindow::slotDisplayFrame(QPixmap pixmap)
{
    if (!m_bStreaming)
        return;
    // Every single shot connects the signal again, so one frame may arrive several times.
    const bool cross = ui->actionDrawCenter->isChecked();
    if (m_view.showFrame(pixmap, cross ? std::optional(m_cross) : std::nullopt))
        updateGuidance();
}

void MainWindow::slotCenterValue(int width, QColor color)
{
    m_crossWidth = width;
    m_crossColor = color;
}

void MainWindow::slotZoomIn()
{
    m_bFitView = false;
    ui->graphicsView->ZoomInOut(oneZoomStep);
}

void MainWindow::slotZoomOut()
{
    m_bFitView = false;
    ui->graphicsView->ZoomInOut(-oneZoomStep);
}

void MainWindow::slotZoomFit()
{
    ui->graphicsView->resetTransform();
    QCoreApplication::processEvents();
    m_bFitView = true;
}

void MainWindow::slotZoom100()
{
    ui->graphicsView->resetTransform();
    m_bFitView = false;
}

void MainWindow::slotShowCameraList(bool show) { showDock(m_pCameraList, show); }

void MainWindow::slotShowXMLCtrl(bool show) { showDock(m_pXMLCtrl, show); }

void MainWindow::slotShowCameraCtrl(bool show) { showDock(m_pCameraCtrl, show); }

void MainWindow::slotShowLogStatus(bool show) { showDock(m_pLogStatus, show); }

void MainWindow::slotShowAboutDlg() { m_pAboutDialog->show(); }

void MainWindow::slotShowDrawCenterDlg(bool show) { m_pDrawCenterDlg->setVisible(show); }

void MainWindow::slotAccessRegister()
{
    if (m_pAccessRegister == nullptr)
        return;
    showAndRaise(m_pAccessRegister, true);
    m_pAccessRegister->activateWindow(); // gives it the focus even if it was visible already
}
