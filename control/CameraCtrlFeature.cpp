// SPDX-License-Identifier: MIT
// The tab "Feature Setting": gain, colour, gamma, white balance.
#include "control/CameraCtrl.h"

#include "capture/PixelMeaning.h"
#include "capture/StreamControl.h"
#include "control/FeatureMath.h"
#include "control/IntegerFeature.h"
#include "control/LibraryNames.h"
#include "control/PreviewShared.h"
#include "control/WidgetHelp.h"

#include <QSignalBlocker>

namespace {

// Not constexpr: Clang does not treat Qt's computation of their length as a constant expression.
const QLatin1String continuousBalance("Continuous");
const QLatin1String singleBalance("Once");

/// Whole numbers in decimal, others in the shortest general format.
template <typename Number> QString rangeText(Number minimum, Number maximum)
{
    return QStringLiteral("(%1 ~ %2)").arg(minimum).arg(maximum);
}

} // namespace

void CameraCtrl::loadFeatureValue(bool /*bUpdate*/)
{
    if (m_hCamera == nullptr)
        return;
    loadGamma();
    loadGain();
    for (const IntegerFeature *feature :
         {&features::rGain, &features::gGain, &features::bGain, &features::blackLevel,
          &features::contrast, &features::hue, &features::saturation, &features::sharpness})
        loadInteger(*feature);
    loadShutter();
    loadInteger(features::autoExposure);
    loadWhiteBalance();
    widenToTabs();
}

void CameraCtrl::loadInteger(const IntegerFeature &feature)
{
    const bool bounded = loadRange(feature);
    std::int32_t value = 0;
    const bool read = feature.read(m_hCamera, &value) == 0;
    if (feature.disabledByFailure)
        setIntegerEnabled(feature, read);
    if (read)
        showInteger(feature, value, bounded);
}

/// Returns false and keeps the range if the camera does not report one.
bool CameraCtrl::loadRange(const IntegerFeature &feature)
{
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    if (feature.readBounds(m_hCamera, &minimum, &maximum) != 0)
        return false;
    (ui.get()->*feature.range)->setText(rangeText(minimum, maximum));
    QSpinBox *spin = ui.get()->*feature.spin;
    // New bounds may change the value of the box, which must not be written before the camera's
    // value is read.
    const QSignalBlocker blocker(spin);
    spin->setRange(minimum, maximum);
    (ui.get()->*feature.slider)->setRange(minimum, sliderEnd(minimum, maximum));
    return true;
}

void CameraCtrl::showInteger(const IntegerFeature &feature, int value, bool bounded)
{
    showRead(ui.get()->*feature.spin, value, bounded);
    (ui.get()->*feature.slider)->setValue(value);
}

void CameraCtrl::setIntegerEnabled(const IntegerFeature &feature, bool enabled)
{
    (ui.get()->*feature.spin)->setEnabled(enabled);
    (ui.get()->*feature.slider)->setEnabled(enabled);
}

void CameraCtrl::sendInteger(const IntegerFeature &feature, int value)
{
    if (feature.write(m_hCamera, value) == 0)
        (ui.get()->*feature.slider)->setValue(value);
}

void CameraCtrl::pageInteger(const IntegerFeature &feature, int action)
{
    QSlider *slider = ui.get()->*feature.slider;
    if (const auto target = pageTarget(*slider, action))
        pageTo(ui.get()->*feature.spin, *target, slider, [](int value) { return value; });
}

void CameraCtrl::releaseInteger(const IntegerFeature &feature)
{
    (ui.get()->*feature.spin)->setValue((ui.get()->*feature.slider)->value());
}

void CameraCtrl::loadGain()
{
    const bool bounded = loadRange(features::gain);
    std::int32_t value = 0;
    bool automatic = false;
    if (OrvalisGetGain(m_hCamera, &value, &automatic) != 0)
        return;
    ui->chkGain->setChecked(automatic);
    setIntegerEnabled(features::gain, !automatic);
    showInteger(features::gain, value, bounded);
}

void CameraCtrl::loadGamma()
{
    const bool bounded = loadGammaRange();
    float value = 0;
    if (OrvalisGetGamma(m_hCamera, &value) != 0)
        return;
    showRead(ui->spiGamma, static_cast<double>(value), bounded);
    ui->sliGamma->setValue(gammaSliderValue(value, m_bGammaScaled));
}

/// Returns false and keeps the range if the camera does not report one.
bool CameraCtrl::loadGammaRange()
{
    float minimum = 0;
    float maximum = 0;
    if (OrvalisGetGammaMinMax(m_hCamera, &minimum, &maximum) != 0)
        return false;
    m_bGammaScaled = isGammaScaled(maximum);
    ui->laGamma->setText(rangeText<double>(minimum, maximum));
    const QSignalBlocker blocker(ui->spiGamma);
    ui->spiGamma->setRange(static_cast<double>(minimum), static_cast<double>(maximum));
    const int first = gammaSliderValue(minimum, m_bGammaScaled);
    ui->sliGamma->setRange(first, sliderEnd(first, gammaSliderValue(maximum, m_bGammaScaled)));
    ui->spiGamma->setSingleStep(m_bGammaScaled ? m_formGammaStep : 1.0);
    ui->sliGamma->setSingleStep(1);
    return true;
}

void CameraCtrl::loadWhiteBalance()
{
    const bool monochrome =
        meaningOf(readName(m_hCamera, OrvalisGetPixelFormatStr).toStdString()).hasNoColor;
    ui->cmbWB->setEnabled(!monochrome);
    ui->cmbWB->clear();
    std::int32_t count = 0;
    if (OrvalisGetNumAvailableWhiteBalances(m_hCamera, &count) != 0) {
        ui->cmbWB->setEnabled(false);
        setColourGainsEnabled(false);
        ui->cmbWB->addItem(QStringLiteral("Not Supported"));
    } else {
        fillWhiteBalance(count);
    }
    if (monochrome) {
        ui->cmbWB->setEnabled(false);
        setColourGainsEnabled(false);
    }
}

void CameraCtrl::fillWhiteBalance(std::int32_t count)
{
    ui->cmbWB->setEnabled(true);
    appendNames(ui->cmbWB, m_hCamera, count, OrvalisGetAvailableWhiteBalancesIdxToStr);
    const QByteArray mode = readName(m_hCamera, OrvalisGetWhiteBalanceStr);
    selectName(ui->cmbWB, mode);
    setColourGainsEnabled(mode != continuousBalance);
}

void CameraCtrl::setColourGainsEnabled(bool enabled)
{
    for (const IntegerFeature *feature : features::colourGains)
        setIntegerEnabled(*feature, enabled);
}

void CameraCtrl::readColourGains()
{
    for (const IntegerFeature *feature : features::colourGains) {
        std::int32_t value = 0;
        if (feature->read(m_hCamera, &value) == 0)
            showInteger(*feature, value);
    }
}

void CameraCtrl::on_cmbWB_activated(const QString &text)
{
    if (OrvalisSetWhiteBalanceStr(m_hCamera, text.toLatin1().constData()) != 0)
        return;
    setColourGainsEnabled(text != continuousBalance);
    if (text != continuousBalance)
        readColourGains();
    if (text == singleBalance)
        ui->cmbWB->setCurrentIndex(0); // a command, not a state
}

void CameraCtrl::on_chkGain_clicked(bool checked)
{
    if (!checked) {
        std::int32_t value = 0;
        bool automatic = false;
        if (OrvalisGetGain(m_hCamera, &value, &automatic) == 0)
            showInteger(features::gain, value);
    }
    OrvalisSetGain(m_hCamera, ui->spiGain->value(), checked);
    setIntegerEnabled(features::gain, !checked);
}

void CameraCtrl::on_btnWBDefault_clicked()
{
    const StreamPause streamPause(m_pMainWindow);
    const PreviewPause previewPause(m_preview);
    if (OrvalisSetUserDefault(m_hCamera) == 0)
        loadConfigurationValue(nullptr);
}

void CameraCtrl::on_spiGamma_valueChanged(double value)
{
    if (OrvalisSetGamma(m_hCamera, static_cast<float>(value)) == 0)
        ui->sliGamma->setValue(gammaSliderFromSpin(value, m_bGammaScaled));
}

void CameraCtrl::on_sliGamma_actionTriggered(int action)
{
    if (const auto target = pageTarget(*ui->sliGamma, action)) {
        pageTo(
            ui->spiGamma, gammaFromSlider(*target, m_bGammaScaled), ui->sliGamma,
            [this](double gamma) { return gammaSliderFromSpin(gamma, m_bGammaScaled); });
    }
}

void CameraCtrl::on_sliGamma_sliderReleased()
{
    ui->spiGamma->setValue(gammaFromSlider(ui->sliGamma->value(), m_bGammaScaled));
}
