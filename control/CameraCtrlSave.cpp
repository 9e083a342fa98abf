// SPDX-License-Identifier: MIT
// The save options on the tab "Miscellaneous".
#include "control/CameraCtrl.h"

#include "capture/SaveFormat.h"
#include "control/FeatureMath.h"
#include "ui_CameraCtrl.h"

#include <QFileDialog>
#include <QSignalBlocker>
#include <QStandardPaths>

namespace {

constexpr int oneFrame = 1;
constexpr int everyFrame = -1;

} // namespace

void CameraCtrl::loadSaveOpt()
{
    ui->radioSaveOnce->setChecked(true);
    setSaveCount(oneFrame);
    fillSaveExtensions(
        namesOf({SaveFormat::Bmp, SaveFormat::Jpg, SaveFormat::Png, SaveFormat::Raw}));
    ui->edSavePath->setText(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
}

void CameraCtrl::fillSaveExtensions(const QStringList &always)
{
    {
        const QSignalBlocker blocker(ui->cmbSaveExt); // do not publish a format while repopulating
        ui->cmbSaveExt->clear();
        ui->cmbSaveExt->addItems(saveExtensions(always, ui->cbPixelFormat->currentText()));
    }
    publishSaveOpt();
}

void CameraCtrl::getSaveOpt(QString *path, QString *format, int *count)
{
    const std::lock_guard lock(m_saveMutex);
    *path = m_saveOption.path;
    *format = m_saveOption.format;
    *count = m_saveOption.count;
}

void CameraCtrl::publishSaveOpt()
{
    const std::lock_guard lock(m_saveMutex);
    m_saveOption = {ui->edSavePath->text(), ui->cmbSaveExt->currentText(), m_saveCount};
}

void CameraCtrl::setSaveCount(int count)
{
    m_saveCount = count;
    publishSaveOpt();
}

void CameraCtrl::on_radioSaveOnce_clicked() { setSaveCount(oneFrame); }

void CameraCtrl::on_radioSaveAll_clicked() { setSaveCount(everyFrame); }

void CameraCtrl::on_btnSaveBrowser_clicked()
{
    // Deliberate: the caption, and that cancelling the dialog empties the path.
    ui->edSavePath->setText(QFileDialog::getExistingDirectory(
        this, QStringLiteral("dd"), ui->edSavePath->text(), QFileDialog::ShowDirsOnly));
}
