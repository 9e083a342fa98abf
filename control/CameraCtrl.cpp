// SPDX-License-Identifier: MIT
// Construction of the camera control panel, its keys, its width, and the change of cameras.
#include "control/CameraCtrl.h"

#include "capture/StreamControl.h"
#include "ui_CameraCtrl.h"

#include <QKeyEvent>
#include <QMainWindow>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>

#include <algorithm>

CameraCtrl::CameraCtrl(QWidget *parent)
    : QDockWidget(parent), ui(std::make_unique<Ui::CameraCtrl>())
{
    ui->setupUi(this);
    m_formGammaStep = ui->spiGamma->singleStep();
    setFocusProxy(ui->tabWidget);
    ui->sliShutter->hide(); // too coarse for its range: exposures are typed
    ui->spiShutter->setKeyboardTracking(false);
    ui->radioSaveAll->hide();
    ui->laROI->setFrameStyle(QFrame::Box);
    connect(ui->laROI, SIGNAL(sigCurrentPoint(QPoint, QPoint)), this,
            SLOT(slotCurrentPoint(QPoint, QPoint)));
    connect(this, SIGNAL(sigHideRubberBand()), ui->laROI, SLOT(slotHideRubberBand()));
    connect(ui->cbPixelFormat, &QComboBox::currentTextChanged, this, &CameraCtrl::publishCamera);
    connect(ui->cmbSaveExt, &QComboBox::currentTextChanged, this, &CameraCtrl::publishSaveOpt);
    connect(ui->edSavePath, &QLineEdit::textChanged, this, &CameraCtrl::publishSaveOpt);
    ignoreWheelWithoutFocus();
    scrollByFocus();
    alignRangeLabels();
    if (parentWidget() != nullptr)
        parentWidget()->installEventFilter(this);
}

CameraCtrl::~CameraCtrl() { DeleteGrabThread(); }

void CameraCtrl::loadConfigurationValue(void *handle)
{
    if (handle != nullptr && handle != m_hCamera) {
        m_hCamera = handle;
        m_sizeInfo = {};                  // another sensor
        ui->chkShutter->setEnabled(true); // disabled if the previous camera refused it
        publishCamera();
    }
    loadTriggerValue();
    loadStrobeValue();
    loadFeatureValue(false);
    loadVideoInfo();
    loadUserSet();
    loadSaveOpt();
}

void CameraCtrl::releaseCamera()
{
    m_hCamera = nullptr;
    m_sizeInfo = {};
    publishCamera();
}

void CameraCtrl::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Enter)
        event->accept(); // keypad Enter ends the editing of a box and must do nothing else
    else
        QWidget::keyPressEvent(event);
}

/// Scrolling a tab must not change the settings that pass below the pointer: the wheel changes only
/// the control that has the focus.
void CameraCtrl::ignoreWheelWithoutFocus()
{
    for (QWidget *control : ui->tabWidget->findChildren<QWidget *>()) {
        if (qobject_cast<QAbstractSpinBox *>(control) == nullptr &&
            qobject_cast<QComboBox *>(control) == nullptr &&
            qobject_cast<QSlider *>(control) == nullptr)
            continue;
        control->setFocusPolicy(Qt::StrongFocus); // not by wheel
        control->installEventFilter(this);
    }
}

bool CameraCtrl::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget()) {
        if (event->type() == QEvent::Resize)
            QMetaObject::invokeMethod(this, &CameraCtrl::restoreWidth, Qt::QueuedConnection);
        return QDockWidget::eventFilter(watched, event);
    }
    if (event->type() != QEvent::Wheel || static_cast<QWidget *>(watched)->hasFocus())
        return QDockWidget::eventFilter(watched, event);
    event->ignore(); // Qt passes it to the scroll area
    return true;
}

/// A scroll area follows the control that has the focus, so it needs no tab stop of its own.
void CameraCtrl::scrollByFocus()
{
    for (QScrollArea *area : ui->tabWidget->findChildren<QScrollArea *>())
        area->setFocusPolicy(Qt::NoFocus);
}

/// Aligns the boxes of both groups of the trigger tab in one column.
void CameraCtrl::alignRangeLabels()
{
    const int width =
        std::max(ui->laTriDelay->sizeHint().width(), ui->laStroDuration->sizeHint().width());
    ui->laTriDelay->setMinimumWidth(width);
    ui->laStroDuration->setMinimumWidth(width);
}

/// Wide enough for captions and range labels. The tabs scroll in a smaller panel.
QSize CameraCtrl::sizeHint() const
{
    int width = ui->tabWidget->tabBar()->sizeHint().width();
    for (const QScrollArea *area : ui->tabWidget->findChildren<QScrollArea *>()) {
        width = std::max(width, area->widget()->minimumSizeHint().width() +
                                    area->verticalScrollBar()->sizeHint().width());
    }
    const int frame =
        2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, ui->tabWidget);
    const QMargins margins = ui->layoutDock->contentsMargins();
    width += frame + margins.left() + margins.right();
    const QSize hint = QDockWidget::sizeHint();
    return {std::max(width, hint.width()), hint.height()};
}

void CameraCtrl::showEvent(QShowEvent *event)
{
    QDockWidget::showEvent(event);
    m_nWidened = 0;
    widenToTabs();
}

/// Widens the dock if a camera has longer ranges than those before; Qt keeps the old width. A width
/// that the user chooses stays until the ranges get longer.
void CameraCtrl::widenToTabs()
{
    auto *window = qobject_cast<QMainWindow *>(parentWidget());
    const int wanted = sizeHint().width();
    if (window == nullptr || !isVisible() || isFloating() || wanted <= m_nWidened)
        return;
    m_nWidened = wanted;
    m_nPreferred = std::max(width(), wanted);
    restoreWidth();
}

/// Keeps a width that the user chooses with the mouse, but not one that a narrow window enforces.
void CameraCtrl::resizeEvent(QResizeEvent *event)
{
    QDockWidget::resizeEvent(event);
    if (QGuiApplication::mouseButtons().testFlag(Qt::LeftButton))
        m_nPreferred = width();
}

void CameraCtrl::restoreWidth()
{
    auto *window = qobject_cast<QMainWindow *>(parentWidget());
    if (window != nullptr && isVisible() && !isFloating() && width() < m_nPreferred)
        window->resizeDocks({this}, {m_nPreferred}, Qt::Horizontal);
}
