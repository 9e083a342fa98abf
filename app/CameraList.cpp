// SPDX-License-Identifier: MIT
// The dock that lists the cameras on the bus.
#include "app/CameraList.h"

#include "ui_CameraList.h"

CameraList::CameraList(QWidget *parent)
    : QDockWidget(parent), ui(std::make_unique<Ui::CameraList>())
{
    ui->setupUi(this);
}

CameraList::~CameraList() = default;

int CameraList::currentCameraIdx() const { return ui->listWidget->currentIndex().row(); }

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
