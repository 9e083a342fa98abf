// SPDX-License-Identifier: MIT
// The exposure time on the tab "Feature Setting".
#include "control/CameraCtrl.h"

#include "control/FeatureMath.h"
#include "control/WidgetHelp.h"
#include "ui_CameraCtrl.h"

#include <algorithm>
#include <limits>

namespace {

/// Exposure times beyond the slider's numbers end at its last one.
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

/// False, and the range as it was, if the camera does not report it.
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
    ui->spiShutter->setSingleStep(shutterStep(value)); // also if the box showed it already
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
    // This box takes any number; the slider ends at its bounds.
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
            ui->chkShutter->setChecked(true); // without a time to send the camera stays automatic
            return;
        }
        showShutter(value);
    }
    if (OrvalisSetShutter(m_hCamera, value, checked) == 0)
        setShutterEnabled(!checked);
    else
        ui->chkShutter->setEnabled(!checked); // kept: a camera that refuses is not asked again
}
