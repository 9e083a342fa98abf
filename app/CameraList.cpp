// SPDX-License-Identifier: MIT
// The dock that lists the cameras on the bus.
#include "app/CameraList.h"

#include "ui_CameraList.h"

#include <QShortcut>

CameraList::CameraList(QWidget *parent)
    : QDockWidget(parent), ui(std::make_unique<Ui::CameraList>())
{
    ui->setupUi(this);
    setFocusProxy(ui->listWidget);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto *open = new QShortcut(key, ui->listWidget);
        open->setContext(Qt::WidgetShortcut);
        connect(open, &QShortcut::activated, this, &CameraList::openCurrent);
    }
}

CameraList::~CameraList() = default;

int CameraList::currentCameraIdx() const { return ui->listWidget->currentIndex().row(); }

void CameraList::openCurrent()
{
    if (currentCameraIdx() >= 0)
        emit sigOpenCamera(currentCameraIdx());
}

void CameraList::slotUpdateCameraList(QStringList names)
{
    ui->listWidget->clear();
    ui->listWidget->addItems(names);
    // A single camera is not preselected; kept.
    if (!m_bOpened && ui->listWidget->count() > 1)
        ui->listWidget->setCurrentRow(0);
}

void CameraList::slotCameraOpened(bool opened)
{
    ui->listWidget->setDisabled(opened);
    m_bOpened = opened;
}

void CameraList::on_listWidget_doubleClicked(const QModelIndex &index)
{
    emit sigOpenCamera(index.row());
}
