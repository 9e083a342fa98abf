// SPDX-License-Identifier: MIT
// The tab "Trigger&Stobe": how exposures start, and the strobe output.
#include "control/CameraCtrl.h"

#include "capture/StreamControl.h"
#include "control/LibraryNames.h"
#include "ui_CameraCtrl.h"

namespace {

constexpr NameList triggerModes{OrvalisGetNumAvailableTriggerModes,
                                OrvalisGetAvailableTriggerModesIdxToStr, OrvalisGetTriggerModeStr};
constexpr NameList triggerSources{OrvalisGetNumAvailableTriggerSources,
                                  OrvalisGetAvailableTriggerSourcesIdxToStr,
                                  OrvalisGetTriggerSourceStr};
constexpr NameList triggerPolarities{OrvalisGetNumAvailableTriggerPolaritys,
                                     OrvalisGetAvailableTriggerPolaritysIdxToStr,
                                     OrvalisGetTriggerPolarityStr};
constexpr NameList strobeModes{OrvalisGetNumAvailableStrobeModes,
                               OrvalisGetAvailableStrobeModesIdxToStr, OrvalisGetStrobeModeStr};
constexpr NameList strobePolarities{OrvalisGetNumAvailableStrobePolaritys,
                                    OrvalisGetAvailableStrobePolaritysIdxToStr,
                                    OrvalisGetStrobePolarityStr};

/// Displays the value that `read` reports; keeps the widget's value if it fails.
void showSwitch(QCheckBox *box, OCameraHandle camera, std::int32_t (*read)(OCameraHandle, bool *))
{
    bool on = false;
    if (read(camera, &on) == 0)
        box->setChecked(on);
}

/// @copydoc showSwitch
void showNumber(QSpinBox *box, OCameraHandle camera, CountReader read)
{
    std::int32_t value = 0;
    if (read(camera, &value) == 0)
        box->setValue(value);
}

using NameWriter = std::int32_t (*)(OCameraHandle, const char *);

void writeName(OCameraHandle camera, NameWriter write, const QString &name)
{
    write(camera, name.toLatin1().constData());
}

} // namespace

void CameraCtrl::loadTriggerValue()
{
    if (m_hCamera == nullptr)
        return;
    showSwitch(ui->chkTriEnabled, m_hCamera, OrvalisGetTriggerEnable);
    fillFromCamera(ui->cmbTriSource, m_hCamera, triggerSources);
    showNumber(ui->spTriPara, m_hCamera, OrvalisGetTriggerParameter);
    fillFromCamera(ui->cmbTriMode, m_hCamera, triggerModes);
    fillFromCamera(ui->cmbTriPol, m_hCamera, triggerPolarities);
    showNumber(ui->spTriDelay, m_hCamera, OrvalisGetTriggerDelay);
    showNumber(ui->spTrNoiseFilter, m_hCamera, OrvalisGetTriggerNoiseFilter);
}

void CameraCtrl::loadStrobeValue()
{
    if (m_hCamera == nullptr)
        return;
    showSwitch(ui->chkStroEnabled, m_hCamera, OrvalisGetStrobeEnable);
    fillFromCamera(ui->cmbStroMode, m_hCamera, strobeModes);
    fillFromCamera(ui->cmbStroPol, m_hCamera, strobePolarities);
    showNumber(ui->spStroDelay, m_hCamera, OrvalisGetStrobeDelay);
    showNumber(ui->spStroDuration, m_hCamera, OrvalisGetStrobeDuration);
}

void CameraCtrl::on_btnApply_clicked()
{
    OrvalisSetTriggerEnable(m_hCamera, ui->chkTriEnabled->isChecked());
    OrvalisSetTriggerParameter(m_hCamera, ui->spTriPara->value());
    writeName(m_hCamera, OrvalisSetTriggerModeStr, ui->cmbTriMode->currentText());
    writeName(m_hCamera, OrvalisSetTriggerSourceStr, ui->cmbTriSource->currentText());
    writeName(m_hCamera, OrvalisSetTriggerPolarityStr, ui->cmbTriPol->currentText());
}

void CameraCtrl::on_btnRunSWTri_clicked()
{
    if (m_pMainWindow != nullptr)
        m_pMainWindow->resetFrameCount();
    OrvalisRunSoftwareTrigger(m_hCamera);
}

void CameraCtrl::on_chkTriEnabled_clicked(bool checked)
{
    OrvalisSetTriggerEnable(m_hCamera, checked);
}

void CameraCtrl::on_cmbTriMode_activated(const QString &text)
{
    writeName(m_hCamera, OrvalisSetTriggerModeStr, text);
}

void CameraCtrl::on_cmbTriPol_activated(const QString &text)
{
    writeName(m_hCamera, OrvalisSetTriggerPolarityStr, text);
}

void CameraCtrl::on_cmbTriSource_activated(const QString &text)
{
    writeName(m_hCamera, OrvalisSetTriggerSourceStr, text);
}

void CameraCtrl::on_spTriPara_valueChanged(int value)
{
    OrvalisSetTriggerParameter(m_hCamera, value);
}

void CameraCtrl::on_spTriDelay_valueChanged(int value) { OrvalisSetTriggerDelay(m_hCamera, value); }

void CameraCtrl::on_spTrNoiseFilter_valueChanged(int value)
{
    OrvalisSetTriggerNoiseFilter(m_hCamera, value);
}

void CameraCtrl::on_chkStroEnabled_clicked(bool checked)
{
    OrvalisSetStrobeEnable(m_hCamera, checked);
}

void CameraCtrl::on_cmbStroMode_activated(const QString &text)
{
    writeName(m_hCamera, OrvalisSetStrobeModeStr, text);
}

void CameraCtrl::on_cmbStroPol_activated(const QString &text)
{
    writeName(m_hCamera, OrvalisSetStrobePolarityStr, text);
}

void CameraCtrl::on_spStroDelay_valueChanged(int value) { OrvalisSetStrobeDelay(m_hCamera, value); }

void CameraCtrl::on_spStroDuration_valueChanged(int value)
{
    OrvalisSetStrobeDuration(m_hCamera, value);
}
