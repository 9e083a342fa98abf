// SPDX-License-Identifier: MIT
// The tab "Video Modes": region of interest, pixel format, frame rate.
#include "control/CameraCtrl.h"

#include "capture/SaveFormat.h"
#include "capture/StreamControl.h"
#include "control/FeatureMath.h"
#include "control/LibraryNames.h"
#include "control/WidgetHelp.h"
#include "ui_CameraCtrl.h"

#include <QSignalBlocker>

void CameraCtrl::loadVideoInfo()
{
    if (m_hCamera == nullptr)
        return;
    loadRegion();
    loadFrameRate();
    loadPixelFormats();
}

void CameraCtrl::loadRegion()
{
    OrvalisGetSizeInfo(m_hCamera, &m_sizeInfo);
    ui->spiOffsetX->setRange(0, m_sizeInfo.maxWidth);
    ui->spiWidth->setRange(0, m_sizeInfo.maxWidth);
    ui->spiOffsetY->setRange(0, m_sizeInfo.maxHeight);
    ui->spiHeight->setRange(0, m_sizeInfo.maxHeight);
    showRegion();
}

void CameraCtrl::showRegion()
{
    setIfDifferent(ui->spiOffsetX, m_sizeInfo.offsetX);
    setIfDifferent(ui->spiOffsetY, m_sizeInfo.offsetY);
    setIfDifferent(ui->spiWidth, m_sizeInfo.width);
    setIfDifferent(ui->spiHeight, m_sizeInfo.height);
}

void CameraCtrl::loadFrameRate()
{
    const bool bounded = loadFrameRateRange();
    float rate = 0;
    if (OrvalisGetFrameRate(m_hCamera, &rate) == 0)
        showRead(ui->spiFrameRate, static_cast<double>(rate), bounded);
}

/// Returns false and keeps the range if the camera does not report one.
bool CameraCtrl::loadFrameRateRange()
{
    float minimum = 0;
    float maximum = 0;
    if (OrvalisGetFrameRateMinMax(m_hCamera, &minimum, &maximum) != 0)
        return false;
    // New bounds may change the value of the box, which must not be written before the camera's
    // rate is read.
    const QSignalBlocker blocker(ui->spiFrameRate);
    ui->spiFrameRate->setRange(static_cast<double>(minimum), static_cast<double>(maximum));
    return true;
}

void CameraCtrl::loadPixelFormats()
{
    std::int32_t count = 0;
    OrvalisGetNumAvailablePixelFormats(m_hCamera, &count);
    bool found = false;
    {
        const QSignalBlocker blocker(ui->cbPixelFormat); // suppress signals while repopulating
        ui->cbPixelFormat->clear();
        appendNames(ui->cbPixelFormat, m_hCamera, count, OrvalisGetAvailablePixelFormatsIdxToStr);
        found = selectName(ui->cbPixelFormat, readName(m_hCamera, OrvalisGetPixelFormatStr));
    }
    publishCamera();
    if (found)
        on_cbPixelFormat_activated(ui->cbPixelFormat->currentText());
}

void CameraCtrl::on_btnROIApply_clicked()
{
    {
        const StreamPause streamPause(m_pMainWindow);
        const PreviewPause previewPause(m_preview);
        OrvalisSetSizeInfo(m_hCamera,
                           OSizeInfo{ui->spiOffsetX->value(), ui->spiOffsetY->value(),
                                     ui->spiWidth->value(), ui->spiHeight->value(), 0, 0});
        OrvalisGetSizeInfo(m_hCamera, &m_sizeInfo);
        showRegion();
    }
    emit sigHideRubberBand();
}

void CameraCtrl::on_btnROIMax_clicked()
{
    ui->spiOffsetX->setValue(0);
    ui->spiOffsetY->setValue(0);
    ui->spiWidth->setValue(m_sizeInfo.maxWidth);
    ui->spiHeight->setValue(m_sizeInfo.maxHeight);
}

void CameraCtrl::on_spiFrameRate_valueChanged(double rate)
{
    if (rate < 1.0)
        return;
    const StreamPause streamPause(m_pMainWindow);
    OrvalisSetFrameRate(m_hCamera, static_cast<float>(rate));
}

void CameraCtrl::on_cbPixelFormat_activated(const QString &text)
{
    {
        const StreamPause streamPause(m_pMainWindow);
        const PreviewPause previewPause(m_preview);
        OrvalisSetPixelFormatStr(m_hCamera, text.toLatin1().constData());
        loadFeatureValue(false);
    }
    fillSaveExtensions(
        namesOf({SaveFormat::Bmp, SaveFormat::Jpg, SaveFormat::Tif, SaveFormat::Raw}));
}

void CameraCtrl::slotCurrentPoint(QPoint start, QPoint end)
{
    OSizeInfo size = m_sizeInfo; // fallback if the camera does not answer
    OrvalisGetSizeInfo(m_hCamera, &size);
    const Region region =
        regionFromDrag(start, end, ui->laROI->size(), QSize(size.maxWidth, size.maxHeight));
    ui->spiOffsetX->setValue(region.offsetX);
    ui->spiOffsetY->setValue(region.offsetY);
    ui->spiWidth->setValue(region.width);
    ui->spiHeight->setValue(region.height);
}
