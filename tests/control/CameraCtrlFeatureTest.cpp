// SPDX-License-Identifier: MIT
// The integer features and "Feature Default": every call, its arguments and its order.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>

#include <limits>

namespace {

struct Row {
    const char *key; // in library names and in the recording library's state
    const char *spin;
    const char *slider;
    const char *range;
};

constexpr Row rows[] = {
    {"Gain", "spiGain", "sliGain", "laGain"},
    {"RGain", "spiRGain", "sliRGain", "laRGain"},
    {"GGain", "spiGGain", "sliGGain", "laGGain"},
    {"BGain", "spiBGain", "sliBGain", "laBGain"},
    {"BlackLevel", "spiBlackLevel", "sliBlackLevel", "laBlack"},
    {"Contrast", "spiContrast", "sliContrast", "laCont"},
    {"Hue", "spiHue", "sliHue", "laHue"},
    {"Saturation", "spiSaturation", "sliSaturation", "laSaturation"},
    {"Sharpness", "spiSharp", "sliSharp", "laSharp"},
    {"AutoExposure", "spiAutoExp", "sliAutoExp", "laAutoExp"},
};

/// One feature of an open panel.
struct Feature {
    explicit Feature(int index) : row(rows[index]) {}

    void open()
    {
        // Room on both sides for a page step, whatever the feature.
        fakeorvalis::withState([this](fakeorvalis::State &state) {
            state.integers[row.key] = {500, 100, 1000, false};
        });
        panel.openCamera();
    }
    bool checksItsGetter() const { return !isGain() && QByteArray(row.key) != "BlackLevel"; }
    bool isGain() const { return QByteArray(row.key) == "Gain"; }
    QString set(int value) const
    {
        return QStringLiteral("OrvalisSet%1(h1, %2%3)")
            .arg(QString(row.key))
            .arg(value)
            .arg(isGain() ? QString(", false") : QString());
    }
    std::string setter() const { return std::string("OrvalisSet") + row.key; }
    QSpinBox *spin() const { return panel.find<QSpinBox>(row.spin); }
    QSlider *slider() const { return panel.find<QSlider>(row.slider); }

    Row row;
    Panel panel;
};

const QStringList whiteBalanceCalls{
    "OrvalisGetPixelFormatStr(h1)",
    "OrvalisGetNumAvailableWhiteBalances(h1)",
    "OrvalisGetAvailableWhiteBalancesIdxToStr(h1, 0)",
    "OrvalisGetAvailableWhiteBalancesIdxToStr(h1, 1)",
    "OrvalisGetAvailableWhiteBalancesIdxToStr(h1, 2)",
    "OrvalisGetWhiteBalanceStr(h1)",
};

} // namespace

class CameraCtrlFeatureTest : public QObject {
    Q_OBJECT

private:
    static void addFeatures();

private slots:
    void loadReadsInTheFixedOrder();
    void firstLoadSendsChangedValuesBack();
    void loadDoesNotOverwriteACameraOfOtherBounds();

    void loadShowsRangeAndValue_data();
    void loadShowsRangeAndValue();
    void failedGetterDisablesAndLeavesTheValue_data();
    void failedGetterDisablesAndLeavesTheValue();
    void nextLoadEnablesAgain_data();
    void nextLoadEnablesAgain();
    void failedBoundsAreNotChecked_data();
    void failedBoundsAreNotChecked();
    void spinBoxSendsAndMovesTheSlider_data();
    void spinBoxSendsAndMovesTheSlider();
    void refusedValueLeavesTheSlider_data();
    void refusedValueLeavesTheSlider();
    void pageActionsSend_data();
    void pageActionsSend();
    void refusedPageLeavesTheSlider_data();
    void refusedPageLeavesTheSlider();
    void pagesEndAtTheLastNumber_data();
    void pagesEndAtTheLastNumber();
    void otherActionsSendNothing_data();
    void otherActionsSendNothing();
    void draggingSendsOnRelease_data();
    void draggingSendsOnRelease();
    void nextLoadPutsAMovedSliderBack();

    void gainIgnoresTheGettersResult();
    void automaticGainDisablesItsControls();
    void gainIsSentWithTheAutomaticFlag();
    void switchingAutomaticGainOnSendsTheValue_data();
    void switchingAutomaticGainOnSendsTheValue();
    void switchingAutomaticGainOffFetchesTheValue_data();
    void switchingAutomaticGainOffFetchesTheValue();

    void featureDefault_data();
    void featureDefault();
};

void CameraCtrlFeatureTest::addFeatures()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < static_cast<int>(std::size(rows)); ++index)
        QTest::newRow(rows[index].key) << index;
}

void CameraCtrlFeatureTest::loadReadsInTheFixedOrder()
{
    Panel panel;
    panel.openCamera();
    panel.panel.loadFeatureValue(false);
    QStringList expected;
    for (const char *key : {"Gamma", "Gain", "RGain", "GGain", "BGain", "BlackLevel", "Contrast",
                            "Hue", "Saturation", "Sharpness", "Shutter", "AutoExposure"}) {
        expected << QString("OrvalisGet%1MinMax(h1)").arg(key)
                 << QString("OrvalisGet%1(h1)").arg(key);
    }
    QCOMPARE(panel.log(), expected + whiteBalanceCalls);
    panel.forget();
    panel.panel.loadFeatureValue(true); // ignored
    QCOMPARE(panel.log(), expected + whiteBalanceCalls);
}

void CameraCtrlFeatureTest::firstLoadSendsChangedValuesBack()
{
    Panel panel;
    OrvalisOpenCamera("CAM-A", &panel.handle);
    panel.panel.loadConfigurationValue(panel.handle);
    const QStringList sent = panel.sent();
    QVERIFY(sent.contains("OrvalisSetGain(h1, 10, false)"));
    QVERIFY(sent.contains("OrvalisSetContrast(h1, 508)"));
    QVERIFY(!sent.join('\n').contains("OrvalisSetSharpness")); // 10 is what the form shows
    const QStringList log = panel.log();
    QCOMPARE(log.indexOf("OrvalisSetGain(h1, 10, false)"), log.indexOf("OrvalisGetGain(h1)") + 1);
}

void CameraCtrlFeatureTest::loadDoesNotOverwriteACameraOfOtherBounds()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.integers["Contrast"] = {40, 0, 100, false}; // the box shows 508
        state.floats["FrameRate"] = {7.5, 5, 10};         // the box shows 30
        state.floats["Gamma"] = {2.5, 2, 3};
    });
    panel.panel.loadConfigurationValue(nullptr);
    for (const QString &call : panel.sent()) {
        if (call.startsWith("OrvalisSetContrast"))
            QCOMPARE(call, QString("OrvalisSetContrast(h1, 40)"));
        if (call.startsWith("OrvalisSetFrameRate"))
            QCOMPARE(call, QString("OrvalisSetFrameRate(h1, 7.5)"));
        if (call.startsWith("OrvalisSetGamma"))
            QCOMPARE(call, QString("OrvalisSetGamma(h1, 2.5)"));
    }
    QCOMPARE(panel.find<QSpinBox>("spiContrast")->value(), 40);
}

void CameraCtrlFeatureTest::loadShowsRangeAndValue_data() { addFeatures(); }

void CameraCtrlFeatureTest::loadShowsRangeAndValue()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    QCOMPARE(feature.panel.find<QLabel>(feature.row.range)->text(), QString("(100 ~ 1000)"));
    QCOMPARE(feature.spin()->minimum(), 100);
    QCOMPARE(feature.spin()->maximum(), 1000);
    QCOMPARE(feature.spin()->value(), 500);
    QCOMPARE(feature.slider()->minimum(), 100);
    QCOMPARE(feature.slider()->maximum(), 1000);
    QCOMPARE(feature.slider()->value(), 500);
    QVERIFY(feature.spin()->isEnabled());
    QVERIFY(feature.slider()->isEnabled());
}

void CameraCtrlFeatureTest::failedGetterDisablesAndLeavesTheValue_data() { addFeatures(); }

void CameraCtrlFeatureTest::failedGetterDisablesAndLeavesTheValue()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    fakeorvalis::fail(std::string("OrvalisGet") + feature.row.key);
    fakeorvalis::fail("OrvalisGetNumAvailableWhiteBalances", 0);
    feature.panel.panel.loadFeatureValue(false);
    const bool checks = feature.checksItsGetter();
    const bool isColourGain = QString(feature.row.key).endsWith("Gain") && !feature.isGain();
    if (!isColourGain) { // white balance has the last word on those
        QCOMPARE(feature.spin()->isEnabled(), !checks);
        QCOMPARE(feature.slider()->isEnabled(), !checks);
    }
    QCOMPARE(feature.spin()->value(), checks ? 500 : 100);
    QCOMPARE(feature.slider()->value(), checks ? 500 : 100);
    QCOMPARE(feature.panel.sent(), checks ? QStringList() : QStringList(feature.set(100)));
}

void CameraCtrlFeatureTest::nextLoadEnablesAgain_data() { addFeatures(); }

void CameraCtrlFeatureTest::nextLoadEnablesAgain()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    const std::string getter = std::string("OrvalisGet") + feature.row.key;
    fakeorvalis::fail(getter);
    feature.panel.panel.loadFeatureValue(false);
    fakeorvalis::fail(getter, 0);
    feature.panel.panel.loadFeatureValue(false);
    QVERIFY(feature.spin()->isEnabled());
    QVERIFY(feature.slider()->isEnabled());
}

void CameraCtrlFeatureTest::failedBoundsAreNotChecked_data() { addFeatures(); }

void CameraCtrlFeatureTest::failedBoundsAreNotChecked()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    fakeorvalis::fail(std::string("OrvalisGet") + feature.row.key + "MinMax");
    feature.panel.panel.loadFeatureValue(false);
    QCOMPARE(feature.panel.find<QLabel>(feature.row.range)->text(), QString("(0 ~ 0)"));
    QVERIFY(feature.panel.functions().contains(QString("OrvalisGet%1").arg(feature.row.key)));
}

void CameraCtrlFeatureTest::spinBoxSendsAndMovesTheSlider_data() { addFeatures(); }

void CameraCtrlFeatureTest::spinBoxSendsAndMovesTheSlider()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    feature.spin()->setValue(123);
    QCOMPARE(feature.panel.log(), QStringList(feature.set(123)));
    QCOMPARE(feature.slider()->value(), 123);
}

void CameraCtrlFeatureTest::refusedValueLeavesTheSlider_data() { addFeatures(); }

void CameraCtrlFeatureTest::refusedValueLeavesTheSlider()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    fakeorvalis::fail(feature.setter());
    feature.spin()->setValue(123);
    QCOMPARE(feature.panel.log(), QStringList(feature.set(123)));
    QCOMPARE(feature.spin()->value(), 123);
    QCOMPARE(feature.slider()->value(), 500);
}

void CameraCtrlFeatureTest::pageActionsSend_data() { addFeatures(); }

void CameraCtrlFeatureTest::pageActionsSend()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    const int page = feature.slider()->pageStep();
    feature.slider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(feature.panel.log(), QStringList(feature.set(500 + page)));
    QCOMPARE(feature.slider()->value(), 500 + page);
    feature.panel.forget();
    feature.slider()->triggerAction(QAbstractSlider::SliderPageStepSub);
    QCOMPARE(feature.panel.log(), QStringList(feature.set(500)));
    QCOMPARE(feature.spin()->value(), 500);
    QCOMPARE(feature.slider()->value(), 500);
}

void CameraCtrlFeatureTest::refusedPageLeavesTheSlider_data() { addFeatures(); }

void CameraCtrlFeatureTest::refusedPageLeavesTheSlider()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    fakeorvalis::fail(feature.setter());
    feature.slider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(feature.panel.log().size(), 1);
    QCOMPARE(feature.slider()->value(), 500);
}

void CameraCtrlFeatureTest::pagesEndAtTheLastNumber_data()
{
    using Limits = std::numeric_limits<int>;
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("end");
    QTest::newRow("up") << 0 << Limits::max() << Limits::max() - 3
                        << int(QAbstractSlider::SliderPageStepAdd) << Limits::max();
    QTest::newRow("down") << Limits::min() << -1 << Limits::min() + 3
                          << int(QAbstractSlider::SliderPageStepSub) << Limits::min();
}

void CameraCtrlFeatureTest::pagesEndAtTheLastNumber()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, value);
    QFETCH(int, action);
    QFETCH(int, end);
    Panel panel;
    fakeorvalis::withState([=](fakeorvalis::State &state) {
        state.integers["Hue"] = {value, minimum, maximum, false};
    });
    panel.openCamera();
    panel.find<QSlider>("sliHue")->triggerAction(QAbstractSlider::SliderAction(action));
    QCOMPARE(panel.log(), QStringList(QString("OrvalisSetHue(h1, %1)").arg(end)));
    QCOMPARE(panel.find<QSpinBox>("spiHue")->value(), end);
}

void CameraCtrlFeatureTest::otherActionsSendNothing_data() { addFeatures(); }

void CameraCtrlFeatureTest::otherActionsSendNothing()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    for (const auto action :
         {QAbstractSlider::SliderSingleStepAdd, QAbstractSlider::SliderSingleStepSub,
          QAbstractSlider::SliderToMaximum, QAbstractSlider::SliderToMinimum,
          QAbstractSlider::SliderMove, QAbstractSlider::SliderNoAction})
        feature.slider()->triggerAction(action);
    QCOMPARE(feature.panel.log(), QStringList());
    QCOMPARE(feature.spin()->value(), 500);
}

void CameraCtrlFeatureTest::draggingSendsOnRelease_data() { addFeatures(); }

void CameraCtrlFeatureTest::draggingSendsOnRelease()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    feature.slider()->setSliderDown(true);
    feature.slider()->setSliderPosition(700);
    feature.slider()->setSliderPosition(720);
    QCOMPARE(feature.panel.log(), QStringList());
    feature.slider()->setSliderDown(false);
    QCOMPARE(feature.panel.log(), QStringList(feature.set(720)));
    QCOMPARE(feature.spin()->value(), 720);
}

void CameraCtrlFeatureTest::nextLoadPutsAMovedSliderBack()
{
    Feature feature(0);
    feature.open();
    QTest::keyClick(feature.slider(), Qt::Key_Right);
    QCOMPARE(feature.slider()->value(), 501);
    QCOMPARE(feature.spin()->value(), 500);
    QCOMPARE(feature.panel.log(), QStringList());
    feature.panel.panel.loadFeatureValue(false);
    QCOMPARE(feature.slider()->value(), 500);
}

void CameraCtrlFeatureTest::gainIgnoresTheGettersResult()
{
    Feature feature(0);
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.integers["Gain"] = {500, 100, 1000, true};
    });
    feature.panel.openCamera();
    auto *automatic = feature.panel.find<QCheckBox>("chkGain");
    QVERIFY(automatic->isChecked());
    fakeorvalis::fail("OrvalisGetGain");
    feature.panel.panel.loadFeatureValue(false);
    QVERIFY(!automatic->isChecked());
    QVERIFY(feature.spin()->isEnabled());
}

void CameraCtrlFeatureTest::automaticGainDisablesItsControls()
{
    Feature feature(0);
    feature.open();
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.integers["Gain"].automatic = true; });
    feature.panel.panel.loadFeatureValue(false);
    QVERIFY(feature.panel.find<QCheckBox>("chkGain")->isChecked());
    QVERIFY(!feature.spin()->isEnabled());
    QVERIFY(!feature.slider()->isEnabled());
}

void CameraCtrlFeatureTest::gainIsSentWithTheAutomaticFlag()
{
    Feature feature(0);
    feature.open();
    feature.panel.find<QCheckBox>("chkGain")->setChecked(true);
    feature.spin()->setValue(200);
    QCOMPARE(feature.panel.log(), QStringList("OrvalisSetGain(h1, 200, true)"));
}

void CameraCtrlFeatureTest::switchingAutomaticGainOnSendsTheValue_data()
{
    QTest::addColumn<bool>("refused");
    QTest::newRow("accepted") << false;
    QTest::newRow("refused") << true;
}

void CameraCtrlFeatureTest::switchingAutomaticGainOnSendsTheValue()
{
    QFETCH(bool, refused);
    Feature feature(0);
    feature.open();
    if (refused)
        fakeorvalis::fail("OrvalisSetGain");
    feature.panel.find<QCheckBox>("chkGain")->click();
    QCOMPARE(feature.panel.log(), QStringList("OrvalisSetGain(h1, 500, true)"));
    QVERIFY(!feature.spin()->isEnabled());
    QVERIFY(!feature.slider()->isEnabled());
}

void CameraCtrlFeatureTest::switchingAutomaticGainOffFetchesTheValue_data()
{
    switchingAutomaticGainOnSendsTheValue_data();
}

void CameraCtrlFeatureTest::switchingAutomaticGainOffFetchesTheValue()
{
    QFETCH(bool, refused);
    Feature feature(0);
    feature.open();
    feature.panel.find<QCheckBox>("chkGain")->click();
    fakeorvalis::withState([](fakeorvalis::State &state) { state.integers["Gain"].value = 321; });
    feature.panel.forget();
    if (refused)
        fakeorvalis::fail("OrvalisSetGain");
    feature.panel.find<QCheckBox>("chkGain")->click();
    // The first set is the spin box's own, as after every change.
    const QString set = "OrvalisSetGain(h1, 321, false)";
    QCOMPARE(feature.panel.log(), (QStringList{"OrvalisGetGain(h1)", set, set}));
    QCOMPARE(feature.spin()->value(), 321);
    QCOMPARE(feature.slider()->value(), 321);
    QVERIFY(feature.spin()->isEnabled());
    QVERIFY(feature.slider()->isEnabled());
}

void CameraCtrlFeatureTest::featureDefault_data() { addStreamingAndRefusedRows(); }

void CameraCtrlFeatureTest::featureDefault()
{
    QFETCH(bool, streaming);
    QFETCH(bool, refused);
    Panel panel;
    panel.openCamera();
    panel.window.streaming = streaming;
    if (refused)
        fakeorvalis::fail("OrvalisSetUserDefault");
    panel.find<QPushButton>("btnWBDefault")->click();
    QStringList log = panel.log();
    QCOMPARE(panel.window.streaming, streaming);
    if (streaming) {
        QCOMPARE(log.takeFirst(), QString("stop"));
        QCOMPARE(log.takeLast(), QString("start"));
    }
    QVERIFY(!log.contains("start"));
    QCOMPARE(log.takeFirst(), QString("OrvalisSetUserDefault(h1)"));
    QCOMPARE(log.isEmpty(), refused);
    if (!refused)
        QCOMPARE(log.first(), QString("OrvalisGetTriggerEnable(h1)"));
}

ORVALIS_QTEST_MAIN(CameraCtrlFeatureTest)
#include "CameraCtrlFeatureTest.moc"
