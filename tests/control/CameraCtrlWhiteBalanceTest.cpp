// SPDX-License-Identifier: MIT
// White balance: the list of modes and the colour gains that follow it.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QSlider>
#include <QSpinBox>

namespace {

void setPixelFormat(const char *format)
{
    fakeorvalis::withState([=](fakeorvalis::State &state) {
        state.lists["PixelFormat"].entries.push_back(format);
        state.lists["PixelFormat"].current = format;
    });
}

/// How many of the six colour gain controls are enabled.
int enabledGains(const Panel &panel)
{
    int enabled = 0;
    for (const char *name :
         {"spiRGain", "sliRGain", "spiGGain", "sliGGain", "spiBGain", "sliBGain"})
        enabled += panel.find<QWidget>(name)->isEnabled() ? 1 : 0;
    return enabled;
}

} // namespace

class CameraCtrlWhiteBalanceTest : public QObject {
    Q_OBJECT

private slots:
    void loadListsTheModes();
    void continuousDisablesTheGains();
    void unknownModeSelectsNothingElse();
    void modesAreComparedExactly();
    void unsupportedIsDisplayed();
    void monochromeDisablesEverything_data();
    void monochromeDisablesEverything();
    void otherFormatsAreColour();
    void colourAfterMonochromeEnablesAgain();
    void endlessListIsTruncated();
    void chosenModeIsSent_data();
    void chosenModeIsSent();
    void unreadGainsStayAndAreNotSent();
    void refusedModeChangesNothing();
    void onceFallsBackToTheFirstEntry();
};

void CameraCtrlWhiteBalanceTest::loadListsTheModes()
{
    Panel panel;
    panel.openCamera();
    QCOMPARE(panel.items("cmbWB"), (QStringList{"Off", "Once", "Continuous"}));
    QCOMPARE(panel.find<QComboBox>("cmbWB")->currentText(), QString("Off"));
    QVERIFY(panel.find<QComboBox>("cmbWB")->isEnabled());
    QCOMPARE(enabledGains(panel), 6);
}

void CameraCtrlWhiteBalanceTest::continuousDisablesTheGains()
{
    Panel panel;
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.lists["WhiteBalance"].current = "Continuous"; });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>("cmbWB")->currentText(), QString("Continuous"));
    QCOMPARE(enabledGains(panel), 0);
}

void CameraCtrlWhiteBalanceTest::unknownModeSelectsNothingElse()
{
    Panel panel;
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.lists["WhiteBalance"].current = "Sunset"; });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>("cmbWB")->currentIndex(), 0);
    QCOMPARE(enabledGains(panel), 6);
}

void CameraCtrlWhiteBalanceTest::modesAreComparedExactly()
{
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.lists["WhiteBalance"] = {{"off", "Off ", "Off", "Off"}, "Off"};
    });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>("cmbWB")->currentIndex(), 2);
}

void CameraCtrlWhiteBalanceTest::unsupportedIsDisplayed()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::fail("OrvalisGetNumAvailableWhiteBalances");
    panel.panel.loadFeatureValue(false);
    QCOMPARE(panel.items("cmbWB"), QStringList("Not Supported"));
    QVERIFY(!panel.find<QComboBox>("cmbWB")->isEnabled());
    QCOMPARE(enabledGains(panel), 0);
    QVERIFY(!panel.functions().contains("OrvalisGetWhiteBalanceStr"));
    QVERIFY(!panel.functions().contains("OrvalisGetAvailableWhiteBalancesIdxToStr"));
}

void CameraCtrlWhiteBalanceTest::monochromeDisablesEverything_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : {"Mono8", "mono12", "MONO16", "XMonoY"})
        QTest::newRow(format) << QString(format);
}

void CameraCtrlWhiteBalanceTest::monochromeDisablesEverything()
{
    QFETCH(QString, format);
    Panel panel;
    setPixelFormat(qPrintable(format));
    panel.openCamera();
    QVERIFY(!panel.find<QComboBox>("cmbWB")->isEnabled());
    QCOMPARE(panel.items("cmbWB").size(), 3);
    QCOMPARE(enabledGains(panel), 0);
}

void CameraCtrlWhiteBalanceTest::otherFormatsAreColour()
{
    Panel panel;
    setPixelFormat("BayerRG12");
    panel.openCamera();
    QCOMPARE(enabledGains(panel), 6);
}

void CameraCtrlWhiteBalanceTest::colourAfterMonochromeEnablesAgain()
{
    Panel panel;
    setPixelFormat("Mono8");
    panel.openCamera();
    panel.choose("cbPixelFormat", "BayerGR8");
    QVERIFY(panel.find<QComboBox>("cmbWB")->isEnabled());
    QCOMPARE(enabledGains(panel), 6);
}

void CameraCtrlWhiteBalanceTest::endlessListIsTruncated()
{
    Panel panel;
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.lists["WhiteBalance"].entries.assign(5000, "Off"); });
    panel.openCamera();
    QCOMPARE(panel.items("cmbWB").size(), 256);
}

void CameraCtrlWhiteBalanceTest::chosenModeIsSent_data()
{
    QTest::addColumn<bool>("gainsAreRead");
    QTest::newRow("Off") << true;
    QTest::newRow("Once") << true;
    QTest::newRow("Continuous") << false;
}

void CameraCtrlWhiteBalanceTest::chosenModeIsSent()
{
    QFETCH(bool, gainsAreRead);
    Panel panel;
    panel.openCamera();
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.integers["RGain"].value = 1100;
        state.integers["BGain"].value = 1300;
    });
    panel.choose("cmbWB", QTest::currentDataTag());
    QStringList expected{
        QString("OrvalisSetWhiteBalanceStr(h1, \"%1\")").arg(QTest::currentDataTag())};
    if (gainsAreRead) {
        expected << "OrvalisGetRGain(h1)"
                 << "OrvalisSetRGain(h1, 1100)"
                 << "OrvalisGetGGain(h1)"
                 << "OrvalisGetBGain(h1)"
                 << "OrvalisSetBGain(h1, 1300)";
    }
    QCOMPARE(panel.log(), expected);
    QCOMPARE(enabledGains(panel), gainsAreRead ? 6 : 0);
    QCOMPARE(panel.find<QSlider>("sliRGain")->value(), gainsAreRead ? 1100 : 1024);
    QCOMPARE(panel.find<QSpinBox>("spiBGain")->value(), gainsAreRead ? 1300 : 1024);
}

void CameraCtrlWhiteBalanceTest::unreadGainsStayAndAreNotSent()
{
    Panel panel;
    panel.openCamera();
    for (const char *getter : {"OrvalisGetRGain", "OrvalisGetGGain", "OrvalisGetBGain"})
        fakeorvalis::fail(getter);
    panel.choose("cmbWB", "Off");
    QCOMPARE(panel.sent(), QStringList("OrvalisSetWhiteBalanceStr(h1, \"Off\")"));
    QCOMPARE(panel.find<QSpinBox>("spiRGain")->value(), 1024);
    QCOMPARE(panel.find<QSlider>("sliBGain")->value(), 1024);
    QCOMPARE(enabledGains(panel), 6);
}

void CameraCtrlWhiteBalanceTest::refusedModeChangesNothing()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::fail("OrvalisSetWhiteBalanceStr");
    panel.choose("cmbWB", "Continuous");
    QCOMPARE(panel.log(), QStringList("OrvalisSetWhiteBalanceStr(h1, \"Continuous\")"));
    QCOMPARE(enabledGains(panel), 6);
    panel.choose("cmbWB", "Once");
    QCOMPARE(panel.find<QComboBox>("cmbWB")->currentText(), QString("Once"));
}

void CameraCtrlWhiteBalanceTest::onceFallsBackToTheFirstEntry()
{
    Panel panel;
    panel.openCamera();
    panel.choose("cmbWB", "Once");
    QCOMPARE(panel.find<QComboBox>("cmbWB")->currentIndex(), 0);
    QCOMPARE(panel.sent(), QStringList("OrvalisSetWhiteBalanceStr(h1, \"Once\")"));
}

ORVALIS_QTEST_MAIN(CameraCtrlWhiteBalanceTest)
#include "CameraCtrlWhiteBalanceTest.moc"
