// SPDX-License-Identifier: MIT
// The slots of the integer features. Every change passes through the spin box, whose slot writes to
// the camera and then moves the slider.
#include "control/CameraCtrl.h"

#include "control/IntegerFeature.h"

void CameraCtrl::on_spiGain_valueChanged(int value)
{
    if (OrvalisSetGain(m_hCamera, value, ui->chkGain->isChecked()) == 0)
        ui->sliGain->setValue(value);
}
void CameraCtrl::on_sliGain_actionTriggered(int action) { pageInteger(features::gain, action); }
void CameraCtrl::on_sliGain_sliderReleased() { releaseInteger(features::gain); }

void CameraCtrl::on_spiRGain_valueChanged(int value) { sendInteger(features::rGain, value); }
void CameraCtrl::on_sliRGain_actionTriggered(int action) { pageInteger(features::rGain, action); }
void CameraCtrl::on_sliRGain_sliderReleased() { releaseInteger(features::rGain); }

void CameraCtrl::on_spiGGain_valueChanged(int value) { sendInteger(features::gGain, value); }
void CameraCtrl::on_sliGGain_actionTriggered(int action) { pageInteger(features::gGain, action); }
void CameraCtrl::on_sliGGain_sliderReleased() { releaseInteger(features::gGain); }

void CameraCtrl::on_spiBGain_valueChanged(int value) { sendInteger(features::bGain, value); }
void CameraCtrl::on_sliBGain_actionTriggered(int action) { pageInteger(features::bGain, action); }
void CameraCtrl::on_sliBGain_sliderReleased() { releaseInteger(features::bGain); }

void CameraCtrl::on_spiBlackLevel_valueChanged(int value)
{
    sendInteger(features::blackLevel, value);
}
void CameraCtrl::on_sliBlackLevel_actionTriggered(int action)
{
    pageInteger(features::blackLevel, action);
}
void CameraCtrl::on_sliBlackLevel_sliderReleased() { releaseInteger(features::blackLevel); }

void CameraCtrl::on_spiContrast_valueChanged(int value) { sendInteger(features::contrast, value); }
void CameraCtrl::on_sliContrast_actionTriggered(int action)
{
    pageInteger(features::contrast, action);
}
void CameraCtrl::on_sliContrast_sliderReleased() { releaseInteger(features::contrast); }

void CameraCtrl::on_spiHue_valueChanged(int value) { sendInteger(features::hue, value); }
void CameraCtrl::on_sliHue_actionTriggered(int action) { pageInteger(features::hue, action); }
void CameraCtrl::on_sliHue_sliderReleased() { releaseInteger(features::hue); }

void CameraCtrl::on_spiSaturation_valueChanged(int value)
{
    sendInteger(features::saturation, value);
}
void CameraCtrl::on_sliSaturation_actionTriggered(int action)
{
    pageInteger(features::saturation, action);
}
void CameraCtrl::on_sliSaturation_sliderReleased() { releaseInteger(features::saturation); }

void CameraCtrl::on_spiSharp_valueChanged(int value) { sendInteger(features::sharpness, value); }
void CameraCtrl::on_sliSharp_actionTriggered(int action)
{
    pageInteger(features::sharpness, action);
}
void CameraCtrl::on_sliSharp_sliderReleased() { releaseInteger(features::sharpness); }

void CameraCtrl::on_spiAutoExp_valueChanged(int value)
{
    sendInteger(features::autoExposure, value);
}
void CameraCtrl::on_sliAutoExp_actionTriggered(int action)
{
    pageInteger(features::autoExposure, action);
}
void CameraCtrl::on_sliAutoExp_sliderReleased() { releaseInteger(features::autoExposure); }
