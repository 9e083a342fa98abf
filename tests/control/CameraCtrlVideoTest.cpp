// SPDX-License-Identifier: MIT
// Region of interest, pixel format and frame rate: every call, its arguments and its order.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"
#include "view/RoiLabelView.h"

#include <QDoubleSpinBox>
#include <QPushButton>
#include <QRubberBand>
#include <QSignalSpy>
#include <QSpinBox>

namespace {

QVector<int> region(const Panel &panel)
{
    QVector<int> values;
    for (const char *name : {"spiOffsetX", "spiOffsetY", "spiWidth", "spiHeight"})
        values << panel.find<QSpinBox>(name)->value();
    return values;
}

void setRegion(const Panel &panel, const QVector<int> &values)
{
    int index = 0;
    for (const char *name : {"spiOffsetX", "spiOffsetY", "spiWidth", "spiHeight"})
        panel.find<QSpinBox>(name)->setValue(values[index++]);
}

const QStringList loadCalls{
    "OrvalisGetSizeInfo(h1)",
    "OrvalisGetFrameRateMinMax(h1)",
    "OrvalisGetFrameRate(h1)",
    "OrvalisGetNumAvailablePixelFormats(h1)",
    "OrvalisGetAvailablePixelFormatsIdxToStr(h1, 0)",
    "OrvalisGetAvailablePixelFormatsIdxToStr(h1, 1)",
    "OrvalisGetAvailablePixelFormatsIdxToStr(h1, 2)",
    "OrvalisGetAvailablePixelFormatsIdxToStr(h1, 3)",
    "OrvalisGetAvailablePixelFormatsIdxToStr(h1, 4)",
    "OrvalisGetPixelFormatStr(h1)",
};

} // namespace

class CameraCtrlVideoTest : public QObject {
    Q_OBJECT

private slots:
    void loadReadsInOrderAndSetsTheFormatAgain();
    void loadShowsWhatTheCameraHas();
    void reloadWhileStreamingRestartsOnce();
    void unlistedFormatIsNotSet();
    void formatsAreComparedExactly();
    void unreadFormatIsNotSet();
    void failedRateKeepsTheBox();
    void failedRateBoundsSendNothing();
    void failedSizeKeepsTheRegion();
    void applySendsAndReadsBack_data();
    void applySendsAndReadsBack();
    void applyDisplaysTheCamerasRegion();
    void applyIgnoresRefusal();
    void applyHidesTheRubberBandLast();
    void maximizeSendsNothing();
    void maximizeThenApply();
    void frameRateIsSentFromOne_data();
    void frameRateIsSentFromOne();
    void pixelFormat_data();
    void pixelFormat();
    void refusedFormatStillReloads();
    void extensionsAreRefilledAfterTheRestart();
    void formatChoosesTheSaveExtensions_data();
    void formatChoosesTheSaveExtensions();
    void dragSetsTheRegion_data();
    void dragSetsTheRegion();
    void dragOnAResizedLabelMapsTheWholeSensor();
    void dragWithoutAnswerUsesTheKnownSensor();
    void drawnBandStaysUntilApply();
};

void CameraCtrlVideoTest::loadReadsInOrderAndSetsTheFormatAgain()
{
    Panel panel;
    panel.openCamera();
    panel.panel.loadVideoInfo();
    const QStringList log = panel.log();
    QCOMPARE(log.mid(0, loadCalls.size()), loadCalls);
    QCOMPARE(log.value(loadCalls.size()), QString("OrvalisSetPixelFormatStr(h1, \"BayerGR8\")"));
    QCOMPARE(log.value(loadCalls.size() + 1), QString("OrvalisGetGammaMinMax(h1)"));
    QCOMPARE(log.last(), QString("OrvalisGetWhiteBalanceStr(h1)"));
    QCOMPARE(panel.sent().size(), 1);
}

void CameraCtrlVideoTest::loadShowsWhatTheCameraHas()
{
    Panel panel;
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.size = {8, 16, 24, 32, 128, 96}; });
    panel.openCamera();
    QCOMPARE(region(panel), (QVector<int>{8, 16, 24, 32}));
    QCOMPARE(panel.find<QSpinBox>("spiOffsetX")->maximum(), 128);
    QCOMPARE(panel.find<QSpinBox>("spiWidth")->maximum(), 128);
    QCOMPARE(panel.find<QSpinBox>("spiOffsetY")->maximum(), 96);
    QCOMPARE(panel.find<QSpinBox>("spiHeight")->maximum(), 96);
    for (const char *name : {"spiOffsetX", "spiOffsetY", "spiWidth", "spiHeight"})
        QCOMPARE(panel.find<QSpinBox>(name)->minimum(), 0);
    const auto *rate = panel.find<QDoubleSpinBox>("spiFrameRate");
    QCOMPARE(rate->minimum(), 1.0);
    QCOMPARE(rate->maximum(), 120.0);
    QCOMPARE(rate->value(), 30.0);
    QCOMPARE(panel.items("cbPixelFormat"),
             (QStringList{"BayerGR8", "BayerGR12", "RGB8", "Mono8", "Mono12"}));
}

void CameraCtrlVideoTest::reloadWhileStreamingRestartsOnce()
{
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    panel.panel.loadVideoInfo();
    const QStringList log = panel.log();
    QCOMPARE(log.count("stop"), 1);
    QCOMPARE(log.count("start"), 1);
    QCOMPARE(log.indexOf("stop"), loadCalls.size());
    QCOMPARE(log.last(), QString("start"));
}

void CameraCtrlVideoTest::unlistedFormatIsNotSet()
{
    Panel panel;
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.lists["PixelFormat"].current = "Unheard"; });
    panel.openCamera();
    panel.panel.loadVideoInfo();
    QCOMPARE(panel.log(), loadCalls);
}

void CameraCtrlVideoTest::formatsAreComparedExactly()
{
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.lists["PixelFormat"] = {{"mono8", "Mono8x", "Mono8 ", "Mono", "Mono8", "Mono8"},
                                      "Mono8"};
    });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>("cbPixelFormat")->currentIndex(), 4);
    panel.panel.loadVideoInfo();
    QCOMPARE(panel.sent(), QStringList("OrvalisSetPixelFormatStr(h1, \"Mono8\")"));
}

void CameraCtrlVideoTest::unreadFormatIsNotSet()
{
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    fakeorvalis::fail("OrvalisGetAvailablePixelFormatsIdxToStr");
    fakeorvalis::fail("OrvalisGetPixelFormatStr");
    panel.panel.loadVideoInfo();
    QCOMPARE(panel.sent(), QStringList());
}

void CameraCtrlVideoTest::failedRateBoundsSendNothing()
{
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    fakeorvalis::fail("OrvalisGetFrameRateMinMax");
    fakeorvalis::fail("OrvalisGetNumAvailablePixelFormats"); // else the format is set again
    for (const double rate : {500.0, 60.0}) {
        fakeorvalis::withState(
            [=](fakeorvalis::State &state) { state.floats["FrameRate"].value = rate; });
        panel.panel.loadVideoInfo();
        QCOMPARE(panel.find<QDoubleSpinBox>("spiFrameRate")->value(), std::min(rate, 120.0));
        QCOMPARE(panel.sent(), QStringList());
    }
}

void CameraCtrlVideoTest::failedRateKeepsTheBox()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::withState([](fakeorvalis::State &state) { state.floats["FrameRate"].value = 60; });
    fakeorvalis::fail("OrvalisGetFrameRate");
    panel.panel.loadVideoInfo();
    QCOMPARE(panel.find<QDoubleSpinBox>("spiFrameRate")->value(), 30.0);
}

void CameraCtrlVideoTest::failedSizeKeepsTheRegion()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::fail("OrvalisGetSizeInfo");
    panel.panel.loadVideoInfo();
    QCOMPARE(region(panel), (QVector<int>{0, 0, 64, 48}));
    QVERIFY(panel.functions().contains("OrvalisSetPixelFormatStr"));
}

void CameraCtrlVideoTest::applySendsAndReadsBack_data()
{
    QTest::addColumn<bool>("streaming");
    QTest::newRow("stopped") << false;
    QTest::newRow("streaming") << true;
}

void CameraCtrlVideoTest::applySendsAndReadsBack()
{
    QFETCH(bool, streaming);
    Panel panel;
    panel.openCamera();
    panel.window.streaming = streaming;
    setRegion(panel, {8, 16, 24, 40});
    QCOMPARE(panel.log(), QStringList());
    panel.find<QPushButton>("btnROIApply")->click();
    QStringList expected{"OrvalisSetSizeInfo(h1, {8, 16, 24, 40, 0, 0})", "OrvalisGetSizeInfo(h1)"};
    if (streaming)
        expected = QStringList("stop") + expected + QStringList("start");
    QCOMPARE(panel.log(), expected);
}

void CameraCtrlVideoTest::applyDisplaysTheCamerasRegion()
{
    Panel panel;
    panel.openCamera();
    setRegion(panel, {120, 90, 64, 48});
    panel.find<QPushButton>("btnROIApply")->click();
    QCOMPARE(region(panel), (QVector<int>{64, 48, 64, 48}));
}

void CameraCtrlVideoTest::applyIgnoresRefusal()
{
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    fakeorvalis::fail("OrvalisSetSizeInfo");
    setRegion(panel, {8, 8, 8, 8});
    panel.find<QPushButton>("btnROIApply")->click();
    QCOMPARE(region(panel), (QVector<int>{0, 0, 64, 48}));
    QCOMPARE(panel.log().last(), QString("start"));
}

void CameraCtrlVideoTest::applyHidesTheRubberBandLast()
{
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    QStringList atSignal;
    connect(&panel.panel, &CameraCtrl::sigHideRubberBand, [&] { atSignal = panel.log(); });
    panel.find<QPushButton>("btnROIApply")->click();
    QCOMPARE(atSignal.size(), 4);
    QCOMPARE(atSignal.last(), QString("start"));
}

void CameraCtrlVideoTest::maximizeSendsNothing()
{
    Panel panel;
    panel.openCamera();
    setRegion(panel, {8, 8, 8, 8});
    panel.find<QPushButton>("btnROIMax")->click();
    QCOMPARE(region(panel), (QVector<int>{0, 0, 128, 96}));
    QCOMPARE(panel.log(), QStringList());
}

void CameraCtrlVideoTest::maximizeThenApply()
{
    Panel panel;
    panel.openCamera();
    panel.find<QPushButton>("btnROIMax")->click();
    panel.find<QPushButton>("btnROIApply")->click();
    QCOMPARE(panel.sent(), QStringList("OrvalisSetSizeInfo(h1, {0, 0, 128, 96, 0, 0})"));
}

void CameraCtrlVideoTest::frameRateIsSentFromOne_data()
{
    QTest::addColumn<double>("rate");
    QTest::addColumn<bool>("streaming");
    QTest::addColumn<QStringList>("log");
    QTest::newRow("0.5") << 0.5 << false << QStringList();
    QTest::newRow("0.9 streaming") << 0.9 << true << QStringList();
    QTest::newRow("1.0") << 1.0 << false << QStringList("OrvalisSetFrameRate(h1, 1)");
    QTest::newRow("12.5") << 12.5 << false << QStringList("OrvalisSetFrameRate(h1, 12.5)");
    QTest::newRow("25 streaming") << 25.0 << true
                                  << QStringList{"stop", "OrvalisSetFrameRate(h1, 25)", "start"};
}

void CameraCtrlVideoTest::frameRateIsSentFromOne()
{
    QFETCH(double, rate);
    QFETCH(bool, streaming);
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.floats["FrameRate"] = {30, 0.1, 120};
    });
    panel.openCamera();
    panel.window.streaming = streaming;
    panel.find<QDoubleSpinBox>("spiFrameRate")->setValue(rate);
    QTEST(panel.log(), "log");
}

void CameraCtrlVideoTest::pixelFormat_data() { applySendsAndReadsBack_data(); }

void CameraCtrlVideoTest::pixelFormat()
{
    QFETCH(bool, streaming);
    Panel panel;
    panel.openCamera();
    panel.window.streaming = streaming;
    panel.choose("cbPixelFormat", "Mono12");
    QStringList log = panel.log();
    if (streaming) {
        QCOMPARE(log.takeFirst(), QString("stop"));
        QCOMPARE(log.takeLast(), QString("start"));
    }
    QCOMPARE(log.takeFirst(), QString("OrvalisSetPixelFormatStr(h1, \"Mono12\")"));
    QCOMPARE(log.first(), QString("OrvalisGetGammaMinMax(h1)"));
    QCOMPARE(log.last(), QString("OrvalisGetWhiteBalanceStr(h1)"));
    QVERIFY(!log.contains("start"));
}

void CameraCtrlVideoTest::refusedFormatStillReloads()
{
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    fakeorvalis::fail("OrvalisSetPixelFormatStr");
    panel.choose("cbPixelFormat", "Mono12");
    QVERIFY(panel.functions().contains("OrvalisGetGamma"));
    QCOMPARE(panel.log().last(), QString("start"));
}

void CameraCtrlVideoTest::extensionsAreRefilledAfterTheRestart()
{
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    QStringList atStart;
    panel.window.onStart = [&] { atStart = panel.items("cmbSaveExt"); };
    panel.choose("cbPixelFormat", "Mono12");
    QCOMPARE(atStart, (QStringList{"BMP", "JPG", "PNG", "RAW", "RGB"})); // still those of the load
    QCOMPARE(panel.items("cmbSaveExt"), (QStringList{"BMP", "JPG", "TIF", "RAW"}));
}

void CameraCtrlVideoTest::formatChoosesTheSaveExtensions_data()
{
    const QStringList grey{"BMP", "JPG", "TIF", "RAW"};
    QTest::addColumn<QStringList>("extensions");
    QTest::newRow("Mono8") << grey;
    QTest::newRow("Mono12") << grey;
    QTest::newRow("BayerGR12") << grey + QStringList("RGB");
    QTest::newRow("RGB8") << grey + QStringList("RGB");
}

void CameraCtrlVideoTest::formatChoosesTheSaveExtensions()
{
    Panel panel;
    panel.openCamera();
    panel.choose("cbPixelFormat", QTest::currentDataTag());
    QTEST(panel.items("cmbSaveExt"), "extensions");
    QCOMPARE(panel.find<QComboBox>("cmbSaveExt")->currentText(), QString("BMP"));
}

void CameraCtrlVideoTest::dragSetsTheRegion_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QPoint>("end");
    QTest::addColumn<QVector<int>>("region"); // label 256 x 192, sensor 128 x 96: scale 0.5
    QTest::newRow("forwards") << QPoint(32, 48) << QPoint(96, 144) << QVector<int>{16, 24, 32, 48};
    QTest::newRow("odd corners") << QPoint(33, 49) << QPoint(96, 144)
                                 << QVector<int>{16, 24, 31, 47};
    QTest::newRow("backwards") << QPoint(96, 144) << QPoint(32, 48) << QVector<int>{48, 72, 0, 0};
    QTest::newRow("click") << QPoint(32, 48) << QPoint(32, 48) << QVector<int>{16, 24, 0, 0};
    QTest::newRow("beyond the label")
        << QPoint(-20, -20) << QPoint(400, 400) << QVector<int>{0, 0, 128, 96};
}

void CameraCtrlVideoTest::dragSetsTheRegion()
{
    QFETCH(QPoint, start);
    QFETCH(QPoint, end);
    Panel panel;
    panel.openCamera();
    auto *label = panel.find<RoiLabelView>("laROI");
    label->setFixedSize(256, 192);
    emit label->sigCurrentPoint(start, end);
    QTEST(region(panel), "region");
    QCOMPARE(panel.log(), QStringList("OrvalisGetSizeInfo(h1)"));
}

void CameraCtrlVideoTest::dragOnAResizedLabelMapsTheWholeSensor()
{
    Panel panel;
    panel.openCamera();
    auto *label = panel.find<RoiLabelView>("laROI");
    label->setFixedSize(333, 77);
    emit label->sigCurrentPoint({0, 0}, {333, 77});
    QCOMPARE(region(panel), (QVector<int>{0, 0, 128, 96}));
}

void CameraCtrlVideoTest::dragWithoutAnswerUsesTheKnownSensor()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::fail("OrvalisGetSizeInfo");
    auto *label = panel.find<RoiLabelView>("laROI");
    label->setFixedSize(256, 192);
    emit label->sigCurrentPoint({0, 0}, {128, 96});
    QCOMPARE(region(panel), (QVector<int>{0, 0, 64, 48}));
}

void CameraCtrlVideoTest::drawnBandStaysUntilApply()
{
    Panel panel;
    panel.openCamera();
    auto *label = panel.find<RoiLabelView>("laROI");
    auto *band = label->findChild<QRubberBand *>();
    QTest::mousePress(label, Qt::LeftButton, {}, QPoint(10, 10));
    QMouseEvent move(QEvent::MouseMove, QPoint(40, 40), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(label, &move);
    QTest::mouseRelease(label, Qt::LeftButton, {}, QPoint(40, 40));
    QVERIFY(!band->isHidden());
    panel.find<QPushButton>("btnROIApply")->click();
    QVERIFY(band->isHidden());
}

ORVALIS_QTEST_MAIN(CameraCtrlVideoTest)
#include "CameraCtrlVideoTest.moc"
