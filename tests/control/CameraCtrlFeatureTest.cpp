// SPDX-License-Identifier: MIT
// The integer features and "Feature Default": every call, its arguments and its order.
#include "tests/control/FeatureRows.h"
#include "tests/support/QtTestMain.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace {

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

private slots:
    void loadReadsInTheFixedOrder();
    void firstLoadSendsChangedValuesBack();
    void loadDoesNotOverwriteACameraOfOtherBounds();

    void loadShowsRangeAndValue_data();
    void loadShowsRangeAndValue();
    void failedGetterDisablesAndKeepsTheValue_data();
    void failedGetterDisablesAndKeepsTheValue();
    void nextLoadEnablesAgain_data();
    void nextLoadEnablesAgain();
    void failedBoundsAreNotChecked_data();
    void failedBoundsAreNotChecked();
    void failedBoundsSendNoValueBack_data();
    void failedBoundsSendNoValueBack();
    void unreadSettingsAreNotSent();
    void spinBoxSendsAndMovesTheSlider_data();
    void spinBoxSendsAndMovesTheSlider();
    void refusedValueLeavesTheSlider_data();
    void refusedValueLeavesTheSlider();

    void unreadGainKeepsWhatItShows_data();
    void unreadGainKeepsWhatItShows();
    void unreadGainIsSentAsShownWhenAutomaticEnds();
    void automaticGainDisablesItsControls();
    void gainIsSentWithTheAutomaticFlag();
    void switchingAutomaticGainOnSendsTheValue_data();
    void switchingAutomaticGainOnSendsTheValue();
    void switchingAutomaticGainOffFetchesTheValue_data();
    void switchingAutomaticGainOffFetchesTheValue();

    void featureDefault_data();
    void featureDefault();
};

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
    QVERIFY(!sent.join('\n').contains("OrvalisSetSharpness")); // the form's initial value is 10
    const QStringList log = panel.log();
    QCOMPARE(log.indexOf("OrvalisSetGain(h1, 10, false)"), log.indexOf("OrvalisGetGain(h1)") + 1);
}

void CameraCtrlFeatureTest::loadDoesNotOverwriteACameraOfOtherBounds()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.integers["Contrast"] = {40, 0, 100, false}; // the box displays 508
        state.floats["FrameRate"] = {7.5, 5, 10};         // the box displays 30
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

/// Every getter that the load calls fails.
void CameraCtrlFeatureTest::unreadSettingsAreNotSent()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::failAll(true);
    panel.panel.loadConfigurationValue(nullptr);
    QCOMPARE(panel.sent(), QStringList());
    OCameraHandle other = &panel; // another camera, for which every call fails
    panel.panel.loadConfigurationValue(other);
    QCOMPARE(panel.sent(), QStringList());
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

void CameraCtrlFeatureTest::failedGetterDisablesAndKeepsTheValue_data() { addFeatures(); }

void CameraCtrlFeatureTest::failedGetterDisablesAndKeepsTheValue()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    fakeorvalis::fail(std::string("OrvalisGet") + feature.row.key);
    fakeorvalis::fail("OrvalisGetNumAvailableWhiteBalances", 0);
    feature.panel.panel.loadFeatureValue(false);
    const bool checks = feature.checksItsGetter();
    const bool isColourGain = QString(feature.row.key).endsWith("Gain") && !feature.isGain();
    if (!isColourGain) { // white balance decides about those
        QCOMPARE(feature.spin()->isEnabled(), !checks);
        QCOMPARE(feature.slider()->isEnabled(), !checks);
    }
    QCOMPARE(feature.spin()->value(), 500);
    QCOMPARE(feature.slider()->value(), 500);
    QCOMPARE(feature.panel.sent(), QStringList());
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
    QCOMPARE(feature.panel.find<QLabel>(feature.row.range)->text(), QString("(100 ~ 1000)"));
    QCOMPARE(feature.spin()->value(), 500);
    QCOMPARE(feature.slider()->maximum(), 1000);
    QVERIFY(feature.panel.functions().contains(QString("OrvalisGet%1").arg(feature.row.key)));
    QCOMPARE(feature.panel.sent(), QStringList());
}

void CameraCtrlFeatureTest::failedBoundsSendNoValueBack_data() { addFeatures(); }

/// The box clamps the camera's value and must not write the clamped value back.
void CameraCtrlFeatureTest::failedBoundsSendNoValueBack()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    fakeorvalis::fail(std::string("OrvalisGet") + feature.row.key + "MinMax");
    for (const int value : {1500, 700}) {
        fakeorvalis::withState(
            [&](fakeorvalis::State &state) { state.integers[feature.row.key].value = value; });
        feature.panel.panel.loadFeatureValue(false);
        QCOMPARE(feature.spin()->value(), std::min(value, 1000));
        QCOMPARE(feature.panel.sent(), QStringList());
    }
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

void CameraCtrlFeatureTest::unreadGainKeepsWhatItShows_data()
{
    QTest::addColumn<bool>("automatic");
    QTest::newRow("manual") << false;
    QTest::newRow("automatic") << true;
}

void CameraCtrlFeatureTest::unreadGainKeepsWhatItShows()
{
    QFETCH(bool, automatic);
    Feature feature(0);
    fakeorvalis::withState([=](fakeorvalis::State &state) {
        state.integers["Gain"] = {500, 100, 1000, automatic};
    });
    feature.panel.openCamera();
    fakeorvalis::fail("OrvalisGetGain");
    feature.panel.panel.loadFeatureValue(false);
    QCOMPARE(feature.panel.find<QCheckBox>("chkGain")->isChecked(), automatic);
    QCOMPARE(feature.spin()->isEnabled(), !automatic);
    QCOMPARE(feature.spin()->value(), 500);
    QCOMPARE(feature.panel.sent(), QStringList());
}

void CameraCtrlFeatureTest::unreadGainIsSentAsShownWhenAutomaticEnds()
{
    Feature feature(0);
    feature.open();
    feature.panel.find<QCheckBox>("chkGain")->click();
    feature.panel.forget();
    fakeorvalis::fail("OrvalisGetGain");
    feature.panel.find<QCheckBox>("chkGain")->click();
    QCOMPARE(feature.panel.log(),
             (QStringList{"OrvalisGetGain(h1)", "OrvalisSetGain(h1, 500, false)"}));
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
    // The slot of the spin box sends the first, as after every change.
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
