// SPDX-License-Identifier: MIT
// The exposure time: steps, what is sent, and the automatic mode.
#include "control/QLongLongSpinBox.h"
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

#include <limits>

namespace {

struct Shutter {
    void open(std::int64_t value = 10'000, std::int64_t minimum = 50,
              std::int64_t maximum = 100'000'000)
    {
        fakeorvalis::withState([=](fakeorvalis::State &state) {
            state.integers["Shutter"] = {value, minimum, maximum, false};
        });
        panel.openCamera();
    }
    QLongLongSpinBox *spin() const { return panel.find<QLongLongSpinBox>("spiShutter"); }
    QSlider *slider() const { return panel.find<QSlider>("sliShutter"); }
    QCheckBox *automatic() const { return panel.find<QCheckBox>("chkShutter"); }

    Panel panel;
};

} // namespace

class CameraCtrlShutterTest : public QObject {
    Q_OBJECT

private slots:
    void loadShowsRangeAndValue();
    void loadTakesTheWholeUnsignedRange();
    void loadShowsTheAutomaticMode();
    void failedGetterDisables();
    void failedBoundsSendNothing();
    void everyLoadSetsTheStep();
    void refusalEndsWithTheCamera();
    void unreadExposureIsNotSent();
    void pagesEndAtTheSlidersEnds();
    void valueSetsTheStepAndIsSentOnIt_data();
    void valueSetsTheStepAndIsSentOnIt();
    void sliderIsNotTouched();
    void refusalIsIgnored();
    void typedExposureIsSentWhenEditingFinishes();
    void releasedSliderSnaps_data();
    void releasedSliderSnaps();
    void pageActionsSend();
    void automaticOnSendsZero();
    void refusedAutomaticOnDisablesTheBox();
    void automaticOffFetchesTheValue();
    void refusedAutomaticOffKeepsTheBox();
};

void CameraCtrlShutterTest::loadShowsRangeAndValue()
{
    Shutter shutter;
    shutter.open(10'000, 50, 2'000'000);
    QCOMPARE(shutter.panel.find<QLabel>("laShutter")->text(), QString("us (50 ~ 2000000)"));
    QCOMPARE(shutter.spin()->minimum(), 50LL);
    QCOMPARE(shutter.spin()->maximum(), 2'000'000LL);
    QCOMPARE(shutter.spin()->value(), 10'000LL);
    QCOMPARE(shutter.slider()->minimum(), 50);
    QCOMPARE(shutter.slider()->maximum(), 2'000'000);
    QCOMPARE(shutter.slider()->value(), 10'000);
    QVERIFY(shutter.spin()->isEnabled());
    shutter.panel.panel.loadFeatureValue(false);
    QCOMPARE(shutter.panel.sent(), QStringList()); // equal values are not set again
}

void CameraCtrlShutterTest::loadTakesTheWholeUnsignedRange()
{
    Shutter shutter;
    shutter.open(4'000'000'000LL, 1, std::numeric_limits<std::uint32_t>::max());
    QCOMPARE(shutter.panel.find<QLabel>("laShutter")->text(), QString("us (1 ~ 4294967295)"));
    QCOMPARE(shutter.spin()->maximum(), 4'294'967'295LL);
    QCOMPARE(shutter.spin()->value(), 4'000'000'000LL);
    QCOMPARE(shutter.slider()->value(), std::numeric_limits<int>::max());
}

void CameraCtrlShutterTest::loadShowsTheAutomaticMode()
{
    Shutter shutter;
    shutter.open();
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.integers["Shutter"].automatic = true; });
    shutter.panel.panel.loadFeatureValue(false);
    QVERIFY(shutter.automatic()->isChecked());
    QVERIFY(!shutter.spin()->isEnabled());
    QVERIFY(!shutter.slider()->isEnabled());
}

void CameraCtrlShutterTest::failedGetterDisables()
{
    Shutter shutter;
    shutter.open();
    fakeorvalis::fail("OrvalisGetShutter");
    shutter.panel.panel.loadFeatureValue(false);
    QVERIFY(!shutter.spin()->isEnabled());
    QVERIFY(!shutter.slider()->isEnabled());
    QCOMPARE(shutter.spin()->value(), 10'000LL);
    QCOMPARE(shutter.panel.sent(), QStringList());
}

void CameraCtrlShutterTest::failedBoundsSendNothing()
{
    Shutter shutter;
    shutter.open(10'000, 50, 2'000'000);
    fakeorvalis::fail("OrvalisGetShutterMinMax");
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.integers["Shutter"].value = 30'000; });
    shutter.panel.panel.loadFeatureValue(false);
    QCOMPARE(shutter.panel.find<QLabel>("laShutter")->text(), QString("us (50 ~ 2000000)"));
    QCOMPARE(shutter.spin()->maximum(), 2'000'000LL);
    QCOMPARE(shutter.spin()->value(), 30'000LL);
    QCOMPARE(shutter.panel.sent(), QStringList());
}

void CameraCtrlShutterTest::everyLoadSetsTheStep()
{
    Shutter shutter;
    shutter.open(0, 0, 1000); // the box displays 0 before, too
    QCOMPARE(shutter.spin()->singleStep(), 1);
    fakeorvalis::fail("OrvalisGetShutterMinMax");
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.integers["Shutter"].value = 600; });
    shutter.panel.panel.loadFeatureValue(false);
    QCOMPARE(shutter.spin()->singleStep(), 10);
}

void CameraCtrlShutterTest::refusalEndsWithTheCamera()
{
    Shutter shutter;
    shutter.open();
    fakeorvalis::fail("OrvalisSetShutter");
    shutter.automatic()->click();
    QVERIFY(!shutter.automatic()->isEnabled());
    shutter.panel.panel.loadConfigurationValue(nullptr);
    QVERIFY(!shutter.automatic()->isEnabled()); // the same camera
    shutter.panel.changeCamera();
    QVERIFY(shutter.automatic()->isEnabled());
}

void CameraCtrlShutterTest::unreadExposureIsNotSent()
{
    Shutter shutter;
    shutter.open();
    shutter.automatic()->click();
    shutter.panel.forget();
    fakeorvalis::fail("OrvalisGetShutter");
    shutter.automatic()->click();
    QCOMPARE(shutter.panel.log(), QStringList("OrvalisGetShutter(h1)"));
    QVERIFY(shutter.automatic()->isChecked()); // the camera still is automatic
    QCOMPARE(shutter.spin()->value(), 10'000LL);
    QVERIFY(!shutter.spin()->isEnabled());
}

void CameraCtrlShutterTest::pagesEndAtTheSlidersEnds()
{
    Shutter shutter;
    shutter.open(1'995'000, 50, 2'000'000);
    shutter.slider()->setPageStep(10'000);
    shutter.slider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(shutter.slider()->value(), 2'000'000);
    QCOMPARE(shutter.spin()->value(), 2'000'000LL);
}

void CameraCtrlShutterTest::valueSetsTheStepAndIsSentOnIt_data()
{
    QTest::addColumn<qlonglong>("value");
    QTest::addColumn<int>("step");
    QTest::addColumn<QString>("sent"); // the number in the call; empty: none
    QTest::newRow("-1") << -1LL << 1 << "4294967295";
    QTest::newRow("499") << 499LL << 1 << "499";
    QTest::newRow("500") << 500LL << 10 << "500";
    QTest::newRow("501") << 501LL << 10 << "";
    QTest::newRow("5499") << 5499LL << 10 << "";
    QTest::newRow("5500") << 5500LL << 100 << "5500";
    QTest::newRow("5501") << 5501LL << 100 << "";
    QTest::newRow("5600") << 5600LL << 100 << "5600";
    QTest::newRow("75999") << 75'999LL << 100 << "";
    QTest::newRow("76000") << 76'000LL << 1000 << "76000";
    QTest::newRow("709999") << 709'999LL << 1000 << "";
    QTest::newRow("710000") << 710'000LL << 10'000 << "710000";
    QTest::newRow("5799999") << 5'799'999LL << 10'000 << "";
    QTest::newRow("5800000") << 5'800'000LL << 100'000 << "5800000";
    QTest::newRow("45999999") << 45'999'999LL << 100'000 << "";
    QTest::newRow("46000000") << 46'000'000LL << 1'000'000 << "46000000";
    QTest::newRow("4000000000") << 4'000'000'000LL << 1'000'000 << "4000000000";
}

void CameraCtrlShutterTest::valueSetsTheStepAndIsSentOnIt()
{
    QFETCH(qlonglong, value);
    QFETCH(QString, sent);
    Shutter shutter;
    shutter.open();
    shutter.spin()->setValue(value);
    QTEST(shutter.spin()->singleStep(), "step");
    QStringList expected;
    if (!sent.isEmpty())
        expected << QString("OrvalisSetShutter(h1, %1, false)").arg(sent);
    QCOMPARE(shutter.panel.log(), expected);
}

void CameraCtrlShutterTest::sliderIsNotTouched()
{
    Shutter shutter;
    shutter.open();
    shutter.spin()->setValue(20'000);
    QCOMPARE(shutter.slider()->value(), 10'000);
}

void CameraCtrlShutterTest::refusalIsIgnored()
{
    Shutter shutter;
    shutter.open();
    fakeorvalis::fail("OrvalisSetShutter");
    shutter.spin()->setValue(20'000);
    QCOMPARE(shutter.spin()->value(), 20'000LL);
    QVERIFY(shutter.spin()->isEnabled());
}

void CameraCtrlShutterTest::typedExposureIsSentWhenEditingFinishes()
{
    Shutter shutter;
    shutter.open();
    shutter.spin()->selectAll();
    QTest::keyClicks(shutter.spin(), "12300");
    QCOMPARE(shutter.panel.log(), QStringList());
    QTest::keyClick(shutter.spin(), Qt::Key_Return);
    QCOMPARE(shutter.panel.log(), QStringList("OrvalisSetShutter(h1, 12300, false)"));
    shutter.panel.forget();
    shutter.spin()->selectAll();
    QTest::keyClicks(shutter.spin(), "7");
    QTest::keyClick(shutter.spin(), Qt::Key_Return);
    QCOMPARE(shutter.panel.log(), QStringList());
    QCOMPARE(shutter.spin()->text(), QString("12300"));
}

void CameraCtrlShutterTest::releasedSliderSnaps_data()
{
    QTest::addColumn<int>("slider");
    QTest::addColumn<int>("sent");
    QTest::newRow("499") << 499 << 499;
    QTest::newRow("509") << 509 << 500;
    QTest::newRow("5599") << 5599 << 5500;
    QTest::newRow("76999") << 76'999 << 76'000;
    QTest::newRow("719999") << 719'999 << 710'000;
    QTest::newRow("5899999") << 5'899'999 << 5'800'000;
    QTest::newRow("46999999") << 46'999'999 << 46'000'000;
}

void CameraCtrlShutterTest::releasedSliderSnaps()
{
    QFETCH(int, slider);
    QFETCH(int, sent);
    Shutter shutter;
    shutter.open();
    shutter.slider()->setSliderDown(true);
    shutter.slider()->setSliderPosition(slider);
    QCOMPARE(shutter.panel.log(), QStringList());
    shutter.slider()->setSliderDown(false);
    QCOMPARE(shutter.panel.log(),
             QStringList(QString("OrvalisSetShutter(h1, %1, false)").arg(sent)));
}

void CameraCtrlShutterTest::pageActionsSend()
{
    Shutter shutter;
    shutter.open();
    shutter.slider()->setPageStep(1000);
    shutter.slider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(shutter.spin()->value(), 11'000LL);
    shutter.slider()->triggerAction(QAbstractSlider::SliderPageStepSub);
    QCOMPARE(shutter.spin()->value(), 10'000LL);
    shutter.slider()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    QCOMPARE(shutter.spin()->value(), 10'000LL);
}

void CameraCtrlShutterTest::automaticOnSendsZero()
{
    Shutter shutter;
    shutter.open();
    shutter.automatic()->click();
    QCOMPARE(shutter.panel.log(), QStringList("OrvalisSetShutter(h1, 0, true)"));
    QVERIFY(!shutter.spin()->isEnabled());
    QVERIFY(!shutter.slider()->isEnabled());
    QVERIFY(shutter.automatic()->isEnabled());
}

void CameraCtrlShutterTest::refusedAutomaticOnDisablesTheBox()
{
    Shutter shutter;
    shutter.open();
    fakeorvalis::fail("OrvalisSetShutter");
    shutter.automatic()->click();
    QCOMPARE(shutter.panel.log(), QStringList("OrvalisSetShutter(h1, 0, true)"));
    QVERIFY(!shutter.automatic()->isEnabled());
    QVERIFY(shutter.spin()->isEnabled());
}

void CameraCtrlShutterTest::automaticOffFetchesTheValue()
{
    Shutter shutter;
    shutter.open();
    shutter.automatic()->click();
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.integers["Shutter"].value = 33'300; });
    shutter.panel.forget();
    shutter.automatic()->click();
    const QString set =
        "OrvalisSetShutter(h1, 33300, false)"; // the slot of the spin box sends the first
    QCOMPARE(shutter.panel.log(), (QStringList{"OrvalisGetShutter(h1)", set, set}));
    QCOMPARE(shutter.slider()->value(), 33'300);
    QVERIFY(shutter.spin()->isEnabled());
    QVERIFY(shutter.slider()->isEnabled());
}

void CameraCtrlShutterTest::refusedAutomaticOffKeepsTheBox()
{
    Shutter shutter;
    shutter.open();
    shutter.automatic()->click();
    fakeorvalis::fail("OrvalisSetShutter");
    shutter.automatic()->click();
    QVERIFY(shutter.automatic()->isEnabled());
    QVERIFY(!shutter.spin()->isEnabled());
}

ORVALIS_QTEST_MAIN(CameraCtrlShutterTest)
#include "CameraCtrlShutterTest.moc"
