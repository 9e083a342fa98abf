// SPDX-License-Identifier: MIT
// Gamma: both scales of its slider, and every call.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QSlider>

namespace {

struct Gamma {
    void open(double value, double minimum, double maximum)
    {
        fakeorvalis::withState([=](fakeorvalis::State &state) {
            state.floats["Gamma"] = {value, minimum, maximum};
        });
        panel.changeCamera();
    }
    QDoubleSpinBox *spin() const { return panel.find<QDoubleSpinBox>("spiGamma"); }
    QSlider *slider() const { return panel.find<QSlider>("sliGamma"); }

    Panel panel;
};

} // namespace

class CameraCtrlGammaTest : public QObject {
    Q_OBJECT

private slots:
    void loadChoosesTheSlidersUnit_data();
    void loadChoosesTheSlidersUnit();
    void scaledKeepsTheFormsSteps();
    void unscaledStepsByOne();
    void scaledHasItsStepAgainAfterALargeRange();
    void unreadGammaIsNotSent();
    void unreadRangeSendsNothing();
    void pageToTheDisplayedValueMovesTheSliderBack_data();
    void pageToTheDisplayedValueMovesTheSliderBack();
    void scaledSpinRoundsToTheSlider();
    void unscaledSpinTruncatesToTheSlider();
    void refusedValueLeavesTheSlider();
    void pageActions_data();
    void pageActions();
    void release_data();
    void release();
    void otherActionsSendNothing();
};

void CameraCtrlGammaTest::loadChoosesTheSlidersUnit_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QVector<int>>("slider"); // minimum, maximum, value
    QTest::newRow("to 1.0") << 0.7 << 0.3 << 1.0 << "(0.3 ~ 1)" << QVector<int>{3, 10, 7};
    QTest::newRow("to 1.01") << 0.5 << 0.29 << 1.01 << "(0.29 ~ 1.01)" << QVector<int>{2, 10, 5};
    QTest::newRow("to 1.02") << 1.0 << 0.3 << 1.02 << "(0.3 ~ 1.02)" << QVector<int>{0, 1, 1};
    QTest::newRow("to 4") << 2.5 << 0.25 << 4.0 << "(0.25 ~ 4)" << QVector<int>{0, 4, 2};
}

void CameraCtrlGammaTest::loadChoosesTheSlidersUnit()
{
    QFETCH(double, value);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    Gamma gamma;
    gamma.open(value, minimum, maximum);
    QTEST(gamma.panel.find<QLabel>("laGamma")->text(), "label");
    QTEST((QVector<int>{gamma.slider()->minimum(), gamma.slider()->maximum(),
                        gamma.slider()->value()}),
          "slider");
    QCOMPARE(gamma.spin()->value(), value);
}

void CameraCtrlGammaTest::scaledKeepsTheFormsSteps()
{
    Gamma gamma;
    gamma.open(0.7, 0.3, 1.0);
    QCOMPARE(gamma.spin()->singleStep(), 0.1);
}

void CameraCtrlGammaTest::unscaledStepsByOne()
{
    Gamma gamma;
    gamma.open(1.0, 0.25, 1.02);
    QCOMPARE(gamma.spin()->singleStep(), 1.0);
    QCOMPARE(gamma.slider()->singleStep(), 1);
}

void CameraCtrlGammaTest::scaledHasItsStepAgainAfterALargeRange()
{
    Gamma gamma;
    gamma.open(1.0, 0.25, 4.0);
    gamma.open(0.7, 0.3, 1.0);
    QCOMPARE(gamma.spin()->singleStep(), 0.1);
    gamma.spin()->stepUp();
    QCOMPARE(gamma.panel.log(), QStringList("OrvalisSetGamma(h2, 0.8)"));
    gamma.open(1.0, 0.25, 4.0);
    QCOMPARE(gamma.spin()->singleStep(), 1.0);
}

void CameraCtrlGammaTest::unreadGammaIsNotSent()
{
    Gamma gamma;
    gamma.open(0.7, 0.3, 1.0);
    fakeorvalis::fail("OrvalisGetGamma");
    gamma.panel.panel.loadFeatureValue(false);
    QCOMPARE(gamma.spin()->value(), 0.7);
    QCOMPARE(gamma.slider()->value(), 7);
    QVERIFY(gamma.spin()->isEnabled());
    QVERIFY(gamma.slider()->isEnabled());
    QCOMPARE(gamma.panel.sent(), QStringList());
}

void CameraCtrlGammaTest::unreadRangeSendsNothing()
{
    Gamma gamma;
    gamma.open(0.7, 0.3, 1.0);
    fakeorvalis::fail("OrvalisGetGammaMinMax");
    fakeorvalis::withState([](fakeorvalis::State &state) { state.floats["Gamma"].value = 2.5; });
    gamma.panel.panel.loadFeatureValue(false);
    QCOMPARE(gamma.panel.find<QLabel>("laGamma")->text(), QString("(0.3 ~ 1)"));
    QCOMPARE(gamma.spin()->maximum(), 1.0);
    QCOMPARE(gamma.slider()->maximum(), 10);
    QCOMPARE(gamma.panel.sent(), QStringList());
}

void CameraCtrlGammaTest::pageToTheDisplayedValueMovesTheSliderBack_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("maximum");
    QTest::newRow("scaled") << 0.7 << 1.0;
    QTest::newRow("unscaled") << 2.0 << 4.0;
    QTest::newRow("unscaled, between two places") << 2.9 << 4.0;
}

void CameraCtrlGammaTest::pageToTheDisplayedValueMovesTheSliderBack()
{
    QFETCH(double, value);
    QFETCH(double, maximum);
    Gamma gamma;
    gamma.open(value, 0.3, maximum);
    const int place = gamma.slider()->value();
    QTest::keyClick(gamma.slider(), Qt::Key_Left);
    QTest::keyClick(gamma.slider(), Qt::Key_PageUp);
    QCOMPARE(gamma.slider()->value(), place);
    QCOMPARE(int(gamma.spin()->value() * (maximum > 1 ? 1 : 10) + 0.01), place);
}

void CameraCtrlGammaTest::scaledSpinRoundsToTheSlider()
{
    Gamma gamma;
    gamma.open(1.0, 0.3, 1.0);
    gamma.spin()->setValue(0.6);
    QCOMPARE(gamma.panel.log(), QStringList("OrvalisSetGamma(h1, 0.6)"));
    QCOMPARE(gamma.slider()->value(), 6);
}

void CameraCtrlGammaTest::unscaledSpinTruncatesToTheSlider()
{
    Gamma gamma;
    gamma.open(1.0, 0.25, 4.0);
    gamma.spin()->setValue(2.9);
    QCOMPARE(gamma.panel.log(), QStringList("OrvalisSetGamma(h1, 2.9)"));
    QCOMPARE(gamma.slider()->value(), 2);
}

void CameraCtrlGammaTest::refusedValueLeavesTheSlider()
{
    Gamma gamma;
    gamma.open(1.0, 0.25, 4.0);
    fakeorvalis::fail("OrvalisSetGamma");
    gamma.spin()->setValue(3.0);
    QCOMPARE(gamma.panel.log(), QStringList("OrvalisSetGamma(h1, 3)"));
    QCOMPARE(gamma.slider()->value(), 1);
    gamma.slider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(gamma.slider()->value(), 1);
}

void CameraCtrlGammaTest::pageActions_data()
{
    QTest::addColumn<double>("maximum");
    QTest::addColumn<QString>("up");
    QTest::addColumn<QString>("down");
    QTest::newRow("scaled") << 1.0 << "OrvalisSetGamma(h1, 0.9)"
                            << "OrvalisSetGamma(h1, 0.8)";
    QTest::newRow("unscaled") << 4.0 << "OrvalisSetGamma(h1, 3)"
                              << "OrvalisSetGamma(h1, 2)";
}

void CameraCtrlGammaTest::pageActions()
{
    QFETCH(double, maximum);
    Gamma gamma;
    gamma.open(maximum > 1 ? 2.0 : 0.8, 0.3, maximum);
    gamma.slider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QFETCH(QString, up);
    QFETCH(QString, down);
    QCOMPARE(gamma.panel.log(), QStringList(up));
    gamma.slider()->triggerAction(QAbstractSlider::SliderPageStepSub);
    QCOMPARE(gamma.panel.log(), (QStringList{up, down}));
}

void CameraCtrlGammaTest::release_data()
{
    QTest::addColumn<double>("maximum");
    QTest::addColumn<int>("slider");
    QTest::addColumn<QString>("call");
    QTest::newRow("scaled") << 1.0 << 4 << "OrvalisSetGamma(h1, 0.4)";
    QTest::newRow("unscaled") << 4.0 << 3 << "OrvalisSetGamma(h1, 3)";
}

void CameraCtrlGammaTest::release()
{
    QFETCH(double, maximum);
    QFETCH(int, slider);
    Gamma gamma;
    gamma.open(1.0, 0.3, maximum);
    gamma.slider()->setSliderDown(true);
    gamma.slider()->setSliderPosition(slider);
    QCOMPARE(gamma.panel.log(), QStringList());
    gamma.slider()->setSliderDown(false);
    QFETCH(QString, call);
    QCOMPARE(gamma.panel.log(), QStringList(call));
}

void CameraCtrlGammaTest::otherActionsSendNothing()
{
    Gamma gamma;
    gamma.open(0.7, 0.3, 1.0);
    gamma.slider()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    gamma.slider()->triggerAction(QAbstractSlider::SliderToMinimum);
    QCOMPARE(gamma.panel.log(), QStringList());
}

ORVALIS_QTEST_MAIN(CameraCtrlGammaTest)
#include "CameraCtrlGammaTest.moc"
