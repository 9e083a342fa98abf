// SPDX-License-Identifier: MIT
// The dock in which the user tunes the open camera.
#pragma once

#include "control/PreviewShared.h"
#include "sdk/OrvalisAPI.h"

#include <QDockWidget>
#include <QPoint>

#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

class StreamControl;
struct IntegerFeature;
namespace Ui {
class CameraCtrl;
}

/// Displays the settings of the open camera on four tabs and writes every change straight to the
/// camera, without a model in between. A load displays the values that the camera reports; a number
/// that is new to its spin box is written back to the camera. A control whose value cannot be read
/// keeps its content and sends nothing. A value that the camera refuses or adjusts stays in its box
/// until the next load; the region is read back at once. Everything runs on the GUI thread, except
/// GrabThread() and, from any thread, getSaveOpt().
class CameraCtrl : public QDockWidget {
    Q_OBJECT

public:
    explicit CameraCtrl(QWidget *parent = nullptr);
    ~CameraCtrl() override;

    /// @param stream stopped and restarted around settings; not owned. Null: never streaming.
    void setStreamControl(StreamControl *stream) { m_pMainWindow = stream; }

    QSize sizeHint() const override;

    /// Sets the open camera and reloads every tab from it. Null reloads from the current camera.
    void loadConfigurationValue(void *handle);
    /// Detaches the panel from the camera. Call it when the camera is closed, after
    /// DeleteGrabThread().
    void releaseCamera();

    /// Sets the save options to their defaults.
    void loadSaveOpt();
    /// The save options: directory, format as displayed ("BMP"), and 1 for one frame per arming or
    /// -1 for every frame. Any thread.
    void getSaveOpt(QString *path, QString *format, int *count);

    /// Starts the sensor preview. Does nothing if it runs.
    void CreateGrabThread();
    /// Stops the sensor preview and joins its thread; waits for a pending grab, at most its
    /// time-out of one second. No image arrives afterwards.
    void DeleteGrabThread();

    /// Suspends grabs of the sensor preview until resumePreview() and waits for a pending one, at
    /// most its time-out of one second. Call it around writes that may change the sensor's size.
    /// Calls nest.
    void pausePreview();
    /// @copydoc pausePreview
    void resumePreview();

    /// Converts an image of the size of the current region from 16-bit little-endian words with
    /// `bits` significant bits to 8 bits; writes nothing if `bits` is 8. `src` holds width x height
    /// words, `dst` takes width x height bytes.
    void RawXXtoRaw8(unsigned char *dst, unsigned char *src, int bits);

signals:
    /// The region was written; hides the rubber band on the preview.
    void sigHideRubberBand();

public slots:
    /// Reads and displays the features of the first tab. `bUpdate` has no effect.
    void loadFeatureValue(bool bUpdate);
    /// Reads and displays the trigger settings.
    void loadTriggerValue();
    /// Reads and displays the strobe settings.
    void loadStrobeValue();
    /// Reads and displays region, pixel format and frame rate, and their bounds.
    void loadVideoInfo();
    /// Reads and displays the user sets and the default one.
    void loadUserSet();
    /// Displays in sensor pixels the region drawn from `start` to `end` in pixels of the preview.
    void slotCurrentPoint(QPoint start, QPoint end);

private slots: // connected by name: "Feature Setting"
    void on_spiGamma_valueChanged(double value);
    void on_sliGamma_actionTriggered(int action);
    void on_sliGamma_sliderReleased();
    void on_spiGain_valueChanged(int value);
    void on_sliGain_actionTriggered(int action);
    void on_sliGain_sliderReleased();
    void on_spiRGain_valueChanged(int value);
    void on_sliRGain_actionTriggered(int action);
    void on_sliRGain_sliderReleased();
    void on_spiGGain_valueChanged(int value);
    void on_sliGGain_actionTriggered(int action);
    void on_sliGGain_sliderReleased();
    void on_spiBGain_valueChanged(int value);
    void on_sliBGain_actionTriggered(int action);
    void on_sliBGain_sliderReleased();
    void on_spiBlackLevel_valueChanged(int value);
    void on_sliBlackLevel_actionTriggered(int action);
    void on_sliBlackLevel_sliderReleased();
    void on_spiContrast_valueChanged(int value);
    void on_sliContrast_actionTriggered(int action);
    void on_sliContrast_sliderReleased();
    void on_spiHue_valueChanged(int value);
    void on_sliHue_actionTriggered(int action);
    void on_sliHue_sliderReleased();
    void on_spiSaturation_valueChanged(int value);
    void on_sliSaturation_actionTriggered(int action);
    void on_sliSaturation_sliderReleased();
    void on_spiSharp_valueChanged(int value);
    void on_sliSharp_actionTriggered(int action);
    void on_sliSharp_sliderReleased();
    void on_spiShutter_valueChanged(qlonglong value);
    void on_sliShutter_actionTriggered(int action);
    void on_sliShutter_sliderReleased();
    void on_spiAutoExp_valueChanged(int value);
    void on_sliAutoExp_actionTriggered(int action);
    void on_sliAutoExp_sliderReleased();
    void on_chkGain_clicked(bool checked);
    void on_chkShutter_clicked(bool checked);
    void on_cmbWB_activated(const QString &text);
    void on_btnWBDefault_clicked();

private slots: // "Video Modes"
    void on_btnROIApply_clicked();
    void on_btnROIMax_clicked();
    void on_spiFrameRate_valueChanged(double rate);
    void on_cbPixelFormat_activated(const QString &text);

private slots: // "Trigger&Stobe"
    void on_chkTriEnabled_clicked(bool checked);
    void on_cmbTriMode_activated(const QString &text);
    void on_cmbTriPol_activated(const QString &text);
    void on_cmbTriSource_activated(const QString &text);
    void on_spTriPara_valueChanged(int value);
    void on_spTriDelay_valueChanged(int value);
    void on_spTrNoiseFilter_valueChanged(int value);
    void on_btnApply_clicked();
    void on_btnRunSWTri_clicked();
    void on_chkStroEnabled_clicked(bool checked);
    void on_cmbStroMode_activated(const QString &text);
    void on_cmbStroPol_activated(const QString &text);
    void on_spStroDelay_valueChanged(int value);
    void on_spStroDuration_valueChanged(int value);

private slots: // "Miscellaneous"
    void on_btnUserSetSave_clicked();
    void on_btnUserSetLoad_clicked();
    void on_btnUserSetPW_clicked();
    void on_radioSaveOnce_clicked();
    void on_radioSaveAll_clicked();
    void on_btnSaveBrowser_clicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // One feature with a spin box and a slider of type int.
    void loadInteger(const IntegerFeature &feature);
    bool loadRange(const IntegerFeature &feature);
    void showInteger(const IntegerFeature &feature, int value, bool bounded = true);
    void setIntegerEnabled(const IntegerFeature &feature, bool enabled);
    void sendInteger(const IntegerFeature &feature, int value);
    void pageInteger(const IntegerFeature &feature, int action);
    void releaseInteger(const IntegerFeature &feature);

    void loadGamma();
    bool loadGammaRange();
    void loadGain();
    void loadShutter();
    void loadWhiteBalance();
    void fillWhiteBalance(std::int32_t count);
    void setShutterEnabled(bool enabled);
    bool loadShutterRange();
    void showShutter(std::uint32_t value, bool bounded = true);
    void setColourGainsEnabled(bool enabled);
    void readColourGains();

    void loadRegion();
    void showRegion();
    void loadFrameRate();
    bool loadFrameRateRange();
    void loadPixelFormats();
    void fillSaveExtensions(const QStringList &always);

    void ignoreWheelWithoutFocus();
    void scrollByFocus();
    void widenToTabs();
    void restoreWidth();
    void alignRangeLabels();
    void setSaveCount(int count);
    void publishSaveOpt();
    void publishCamera();

    // Preview thread, except takePreview().
    void GrabThread();
    void postPreview(QImage image);
    void takePreview();

    std::unique_ptr<Ui::CameraCtrl> ui;
    StreamControl *m_pMainWindow = nullptr; // not owned; may be null
    OCameraHandle m_hCamera = nullptr;
    bool m_bGammaScaled = true; // the gamma slider works in tenths
    double m_formGammaStep = 0; // step of the spin box while the slider is scaled
    OSizeInfo m_sizeInfo{};

    std::mutex m_saveMutex; // guards m_saveOption
    SaveOption m_saveOption;
    int m_nWidened = 0;   // largest width requested since the panel appeared
    int m_nPreferred = 0; // width to restore when there is room again
    int m_saveCount = 1;  // GUI thread only: 1 for "Once", -1 for "All"

    bool m_bGrabRunning = false;
    std::thread m_grabThread;
    PreviewShared m_preview;
};
