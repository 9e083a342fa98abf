// SPDX-License-Identifier: MIT
// The main window's picture, zoom actions, docks and dialogs.
#include "app/MainWindow.h"

#include "app/Artwork.h"
#include "app/CameraList.h"
#include "app/LogStatus.h"
#include "control/CameraCtrl.h"
#include "dialogs/AboutDialog.h"
#include "dialogs/AccessRegister.h"
#include "tree/XMLCtrl.h"
#include "ui_MainWindow.h"
#include "view/DrawCenterDlg.h"

#include <QGraphicsPixmapItem>
#include <QPainter>

#include <utility>

namespace {

constexpr int oneZoomStep = 120;

void showAndRaise(QWidget *widget, bool show)
{
    if (!show)
        return;
    widget->show();
    widget->raise();
}

/// The keyboard goes where the user wants to look.
void showDock(QDockWidget *dock, bool show)
{
    showAndRaise(dock, show);
    if (show)
        dock->setFocus(Qt::OtherFocusReason);
}

} // namespace

void MainWindow::init_graphics_view(bool streaming)
{
    ZoomGraphicsView *view = ui->graphicsView;
    if (m_pixmapItem != nullptr) {
        view->scene()->removeItem(m_pixmapItem);
        view->resetTransform();
        delete m_pixmapItem;
        m_pixmapItem = nullptr;
    }
    m_shown = {};
    m_bPicture = false;
    auto *item = new QGraphicsPixmapItem;
    m_pixmapItem = item;
    view->setScene(new QGraphicsScene(this));
    view->scene()->addItem(item);
    view->setAlignment(Qt::AlignCenter);
    view->setDragMode(QGraphicsView::ScrollHandDrag);
    QCoreApplication::processEvents();
    // An event may have brought another scene.
    if (!streaming && m_pixmapItem == item)
        item->setPixmap(logoFor(devicePixelRatioF()));
}

void MainWindow::slotDisplayFrame(QPixmap pixmap)
{
    if (!m_bStreaming)
        return;
    const bool cross = ui->actionDrawCenter->isChecked();
    // The signal is connected once more by every single shot, so one frame may come many times.
    const Shown frame{pixmap.cacheKey(), cross ? m_crossWidth : 0, cross ? m_crossColor : QColor()};
    if (!(frame == m_shown)) {
        m_shown = frame;
        m_pixmapItem->setPixmap(cross ? withCross(pixmap) : pixmap);
    }
    if (!std::exchange(m_bPicture, true))
        updateGuidance();
    if (m_bFitView)
        ui->graphicsView->fitScene();
}

QPixmap MainWindow::withCross(const QPixmap &pixmap) const
{
    // Copied once here: to paint on a pixmap that shares its image copies both, one after the
    // other.
    QPixmap marked = pixmap.copy();
    if (marked.isNull()) // no memory for it
        return pixmap;
    const int width = marked.width();
    const int height = marked.height();
    QPen pen;
    pen.setColor(m_crossColor);
    pen.setWidth(m_crossWidth);
    QPainter painter(&marked);
    painter.setPen(pen);
    // The ends lie one pixel beyond the last column and row; kept.
    const QLine horizontal(0, height / 2, width, height / 2);
    const QLine vertical(width / 2, 0, width / 2, height);
    painter.drawLines(&horizontal, 1);
    painter.drawLines(&vertical, 1);
    painter.end();
    return marked;
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
    m_pAccessRegister->activateWindow(); // to be typed into, also if it was on show before
}
