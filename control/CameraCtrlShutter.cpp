// SPDX-License-Identifier: MIT
// The exposure time on the tab "Feature Setting".
#include "control/CameraCtrl.h"

#include "control/FeatureMath.h"
#include "control/WidgetHelp.h"
#include "ui_CameraCtrl.h"

#include <algorithm>
#include <limits>

namespace {

/// Limits an exposure time to the numbers that a slider can hold.
int sliderValue(std::uint32_t microseconds)
{
    constexpr std::uint32_t largest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(microseconds, largest));
}

} // namespace

void CameraCtrl::loadShutter()
{
    const bool bounded = loadShutterRange();
    std::uint32_t value = 0;
    bool automatic = false;
    if (OrvalisGetShutter(m_hCamera, &value, &automatic) != 0) {
        setShutterEnabled(false);
        return;
    }
    ui->chkShutter->setChecked(automatic);
    setShutterEnabled(!automatic);
    showShutter(value, bounded);
}

/// Returns false and keeps the range if the camera does not report one.
bool CameraCtrl::loadShutterRange()
{
    std::uint32_t minimum = 0;
    std::uint32_t maximum = 0;
    if (OrvalisGetShutterMinMax(m_hCamera, &minimum, &maximum) != 0)
        return false;
    ui->spiShutter->setRange(minimum, maximum);
    ui->sliShutter->setRange(sliderValue(minimum), sliderValue(maximum));
    ui->laShutter->setText(QStringLiteral("us (%1 ~ %2)").arg(minimum).arg(maximum));
    return true;
}

void CameraCtrl::setShutterEnabled(bool enabled)
{
    ui->spiShutter->setEnabled(enabled);
    ui->sliShutter->setEnabled(enabled);
}

void CameraCtrl::showShutter(std::uint32_t value, bool bounded)
{
    showRead(ui->spiShutter, qlonglong{value}, bounded);
    ui->spiShutter->setSingleStep(shutterStep(value)); // even if the value did not change
    ui->sliShutter->setValue(sliderValue(value));
}

void CameraCtrl::on_spiShutter_valueChanged(qlonglong value)
{
    ui->spiShutter->setSingleStep(shutterStep(value));
    if (isOnShutterStep(value)) {
        OrvalisSetShutter(m_hCamera, static_cast<std::uint32_t>(value),
                          ui->chkShutter->isChecked());
    }
}

void CameraCtrl::on_sliShutter_actionTriggered(int action)
{
    // Clamp to the slider's bounds: the box accepts any number.
    if (const auto target = pageTarget(*ui->sliShutter, action)) {
        ui->spiShutter->setValue(
            std::clamp(*target, ui->sliShutter->minimum(), ui->sliShutter->maximum()));
    }
}

void CameraCtrl::on_sliShutter_sliderReleased()
{
    ui->spiShutter->setValue(snappedShutter(ui->sliShutter->value()));
}

void CameraCtrl::on_chkShutter_clicked(bool checked)
{
    std::uint32_t value = 0;
    if (!checked) {
        bool automatic = false;
        if (OrvalisGetShutter(m_hCamera, &value, &automatic) != 0) {
            ui->chkShutter->setChecked(true); // stay automatic: there is no time to send
            return;
        }
        showShutter(value);
    }
    if (OrvalisSetShutter(m_hCamera, value, checked) == 0)
        setShutterEnabled(!checked);
    else
        ui->chkShutter->setEnabled(!checked); // Deliberate: the box stays disabled
}
