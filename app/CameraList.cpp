// SPDX-License-Identifier: MIT
// The dock that lists the cameras on the bus.
#include "app/CameraList.h"

#include "ui_CameraList.h"

#include <QKeyEvent>

CameraList::CameraList(QWidget *parent)
    : QDockWidget(parent), ui(std::make_unique<Ui::CameraList>())
{
    ui->setupUi(this);
    setFocusProxy(ui->listWidget);
    ui->listWidget->installEventFilter(this);
    clearCurrent();
}

CameraList::~CameraList() = default;

int CameraList::currentCameraIdx() const { return ui->listWidget->currentIndex().row(); }

bool CameraList::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDockWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    openCurrent();
    return true;
}

void CameraList::openCurrent()
{
    if (currentCameraIdx() >= 0)
        emit sigOpenCamera(currentCameraIdx());
}

QStringList CameraList::listedNames() const
{
    QStringList names;
    for (int row = 0; row < ui->listWidget->count(); ++row)
        names.append(ui->listWidget->item(row)->text());
    return names;
}

void CameraList::slotUpdateCameraList(QStringList names)
{
    // Keep an unchanged list: a double-click must end on the item on which it began.
    if (names != listedNames()) {
        ui->listWidget->clear();
        ui->listWidget->addItems(names);
    }
    // Deliberate: a single camera is not preselected.
    if (!m_bOpened && ui->listWidget->count() > 1)
        ui->listWidget->setCurrentRow(0);
    else
        clearCurrent();
}

/// Makes no row current. Otherwise the list makes its first row current when it gets the focus.
void CameraList::clearCurrent() { ui->listWidget->setCurrentIndex({}); }

void CameraList::slotCameraOpened(bool opened)
{
    ui->listWidget->setDisabled(opened);
    m_bOpened = opened;
}

void CameraList::on_listWidget_doubleClicked(const QModelIndex &index)
{
    emit sigOpenCamera(index.row());
}
