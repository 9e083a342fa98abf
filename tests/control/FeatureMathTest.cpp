// SPDX-License-Identifier: MIT
// The control panel's arithmetic at every boundary.
#include "control/FeatureMath.h"
#include "tests/support/QtTestMain.h"

#include <cmath>
#include <limits>

class FeatureMathTest : public QObject {
    Q_OBJECT

private slots:
    void shutterStepFollowsTheTime_data();
    void shutterStepFollowsTheTime();
    void onlyMultiplesOfTheStepAreOnIt_data();
    void onlyMultiplesOfTheStepAreOnIt();
    void snapGoesDownToTheStep_data();
    void snapGoesDownToTheStep();
    void gammaIsScaledUpToOne_data();
    void gammaIsScaledUpToOne();
    void gammaSliderTruncates_data();
    void gammaSliderTruncates();
    void gammaTenthsAreExact();
    void gammaFromSpinIsRoundedOnlyWhenScaled_data();
    void gammaFromSpinIsRoundedOnlyWhenScaled();
    void gammaFromSlider();
    void truncationIsBounded_data();
    void truncationIsBounded();
    void slidersCanBeDrawn();
    void dragIsScaledToTheSensor_data();
    void dragIsScaledToTheSensor();
    void labelWithoutSizeDividesNothing();
    void saveExtensionsFollowThePixelFormat_data();
    void saveExtensionsFollowThePixelFormat();
};

void FeatureMathTest::shutterStepFollowsTheTime_data()
{
    QTest::addColumn<qlonglong>("time");
    QTest::addColumn<int>("step");
    const auto row = [](qlonglong time, int step) {
        QTest::newRow(qPrintable(QString::number(time))) << time << step;
    };
    row(std::numeric_limits<qlonglong>::min(), 1);
    row(-1'000'000, 1);
    row(-1, 1);
    row(0, 1);
    row(499, 1);
    row(500, 10);
    row(5'499, 10);
    row(5'500, 100);
    row(75'999, 100);
    row(76'000, 1'000);
    row(709'999, 1'000);
    row(710'000, 10'000);
    row(5'799'999, 10'000);
    row(5'800'000, 100'000);
    row(45'999'999, 100'000);
    row(46'000'000, 1'000'000);
    row(std::numeric_limits<qlonglong>::max(), 1'000'000);
}

void FeatureMathTest::shutterStepFollowsTheTime()
{
    QFETCH(qlonglong, time);
    QTEST(shutterStep(time), "step");
}

void FeatureMathTest::onlyMultiplesOfTheStepAreOnIt_data()
{
    QTest::addColumn<qlonglong>("time");
    QTest::addColumn<bool>("on");
    const auto row = [](qlonglong time, bool on) {
        QTest::newRow(qPrintable(QString::number(time))) << time << on;
    };
    row(-7, true);
    row(0, true);
    row(499, true);
    row(500, true);
    row(505, false);
    row(5'490, true);
    row(5'501, false);
    row(5'600, true);
    row(75'950, false);
    row(76'500, false);
    row(77'000, true);
    row(715'000, false);
    row(720'000, true);
    row(5'850'000, false);
    row(5'900'000, true);
    row(46'500'000, false);
    row(47'000'000, true);
    row(5'000'000'000'000, true);
}

void FeatureMathTest::onlyMultiplesOfTheStepAreOnIt()
{
    QFETCH(qlonglong, time);
    QTEST(isOnShutterStep(time), "on");
}

void FeatureMathTest::snapGoesDownToTheStep_data()
{
    QTest::addColumn<int>("time");
    QTest::addColumn<int>("snapped");
    const auto row = [](int time, int snapped) {
        QTest::newRow(qPrintable(QString::number(time))) << time << snapped;
    };
    row(-3, -3);
    row(499, 499);
    row(509, 500);
    row(5'499, 5'490);
    row(5'599, 5'500);
    row(75'999, 75'900);
    row(76'999, 76'000);
    row(709'999, 709'000);
    row(719'999, 710'000);
    row(5'799'999, 5'790'000);
    row(5'899'999, 5'800'000);
    row(45'999'999, 45'900'000);
    row(46'999'999, 46'000'000);
    row(std::numeric_limits<int>::max(), 2'147'000'000);
}

void FeatureMathTest::snapGoesDownToTheStep()
{
    QFETCH(int, time);
    QTEST(snappedShutter(time), "snapped");
}

void FeatureMathTest::gammaIsScaledUpToOne_data()
{
    QTest::addColumn<float>("maximum");
    QTest::addColumn<bool>("scaled");
    QTest::newRow("0") << 0.0F << true;
    QTest::newRow("1.0") << 1.0F << true;
    QTest::newRow("1.01") << 1.01F << true;
    QTest::newRow("1.02") << 1.02F << false;
    QTest::newRow("4") << 4.0F << false;
}

void FeatureMathTest::gammaIsScaledUpToOne()
{
    QFETCH(float, maximum);
    QTEST(isGammaScaled(maximum), "scaled");
}

void FeatureMathTest::gammaSliderTruncates_data()
{
    QTest::addColumn<float>("gamma");
    QTest::addColumn<bool>("scaled");
    QTest::addColumn<int>("slider");
    QTest::newRow("scaled 0.3") << 0.3F << true << 3;
    QTest::newRow("scaled 0.39") << 0.39F << true << 3;
    QTest::newRow("scaled 1.0") << 1.0F << true << 10;
    QTest::newRow("scaled -0.25") << -0.25F << true << -2;
    QTest::newRow("unscaled 0.25") << 0.25F << false << 0;
    QTest::newRow("unscaled 3.99") << 3.99F << false << 3;
    QTest::newRow("unscaled -1.5") << -1.5F << false << -1;
}

void FeatureMathTest::gammaSliderTruncates()
{
    QFETCH(float, gamma);
    QFETCH(bool, scaled);
    QTEST(gammaSliderValue(gamma, scaled), "slider");
}

void FeatureMathTest::gammaTenthsAreExact()
{
    for (int tenths = -100; tenths <= 100; ++tenths) {
        const auto gamma = static_cast<float>(tenths / 10.0);
        QCOMPARE(gammaSliderValue(gamma, true), tenths);
    }
}

void FeatureMathTest::gammaFromSpinIsRoundedOnlyWhenScaled_data()
{
    QTest::addColumn<double>("gamma");
    QTest::addColumn<bool>("scaled");
    QTest::addColumn<int>("slider");
    QTest::newRow("scaled 0.3") << 0.3 << true << 3;
    QTest::newRow("scaled 0.7") << 0.7 << true << 7;
    QTest::newRow("scaled 0.75") << 0.75 << true << 8;
    QTest::newRow("unscaled 2.9") << 2.9 << false << 2;
    QTest::newRow("unscaled 3.0") << 3.0 << false << 3;
}

void FeatureMathTest::gammaFromSpinIsRoundedOnlyWhenScaled()
{
    QFETCH(double, gamma);
    QFETCH(bool, scaled);
    QTEST(gammaSliderFromSpin(gamma, scaled), "slider");
}

void FeatureMathTest::gammaFromSlider()
{
    QCOMPARE(::gammaFromSlider(7, true), 0.7);
    QCOMPARE(::gammaFromSlider(3, false), 3.0);
}

void FeatureMathTest::truncationIsBounded_data()
{
    using Ints = std::numeric_limits<int>;
    using Doubles = std::numeric_limits<double>;
    QTest::addColumn<double>("number");
    QTest::addColumn<int>("whole");
    QTest::newRow("1.9") << 1.9 << 1;
    QTest::newRow("-1.9") << -1.9 << -1;
    QTest::newRow("huge") << 1e300 << Ints::max();
    QTest::newRow("-huge") << -1e300 << Ints::min();
    QTest::newRow("infinite") << Doubles::infinity() << Ints::max();
    QTest::newRow("not a number") << Doubles::quiet_NaN() << 0;
}

void FeatureMathTest::truncationIsBounded()
{
    QFETCH(double, number);
    QTEST(truncated(number), "whole");
}

void FeatureMathTest::dragIsScaledToTheSensor_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QPoint>("end");
    QTest::addColumn<QSize>("label");
    QTest::addColumn<QVector<int>>("region"); // left, top, width, height
    const QSize label(200, 100);
    QTest::newRow("whole label") << QPoint(0, 0) << QPoint(200, 100) << label
                                 << QVector<int>{0, 0, 1280, 960};
    QTest::newRow("inside") << QPoint(10, 20) << QPoint(60, 70) << label
                            << QVector<int>{64, 192, 320, 480};
    QTest::newRow("backwards") << QPoint(60, 70) << QPoint(10, 20) << label
                               << QVector<int>{384, 672, -320, -480};
    QTest::newRow("click") << QPoint(3, 3) << QPoint(3, 3) << label << QVector<int>{19, 28, 0, 0};
    QTest::newRow("outside") << QPoint(-1, -1) << QPoint(201, 101) << label
                             << QVector<int>{-6, -9, 1292, 979};
    QTest::newRow("other label") << QPoint(0, 0) << QPoint(640, 480) << QSize(640, 480)
                                 << QVector<int>{0, 0, 1280, 960};
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int most = std::numeric_limits<int>::max();
    QTest::newRow("farther than an int") << QPoint(most, most) << QPoint(least, least) << label
                                         << QVector<int>{most, most, least, least};
}

void FeatureMathTest::dragIsScaledToTheSensor()
{
    QFETCH(QPoint, start);
    QFETCH(QPoint, end);
    QFETCH(QSize, label);
    const Region region = regionFromDrag(start, end, label, QSize(1280, 960));
    QTEST((QVector<int>{region.offsetX, region.offsetY, region.width, region.height}), "region");
}

void FeatureMathTest::labelWithoutSizeDividesNothing()
{
    const Region region = regionFromDrag({1, 1}, {2, 2}, QSize(0, 0), QSize(1280, 960));
    QCOMPARE(region.offsetX, 1280);
    QCOMPARE(region.height, 960);
}

void FeatureMathTest::saveExtensionsFollowThePixelFormat_data()
{
    QTest::addColumn<QString>("pixelFormat");
    QTest::addColumn<QStringList>("extensions");
    const QStringList grey{"A", "B"};
    const QStringList colour{"A", "B", "RGB"};
    QTest::newRow("Mono8") << "Mono8" << grey;
    QTest::newRow("Mono12Packed") << "Mono12Packed" << grey;
    QTest::newRow("in the middle") << "xMonox" << grey;
    QTest::newRow("lower case") << "mono8" << colour;
    QTest::newRow("BayerGR8") << "BayerGR8" << colour;
    QTest::newRow("none") << QString() << colour;
}

void FeatureMathTest::saveExtensionsFollowThePixelFormat()
{
    QFETCH(QString, pixelFormat);
    QTEST(saveExtensions({"A", "B"}, pixelFormat), "extensions");
}

void FeatureMathTest::slidersCanBeDrawn()
{
    using Limits = std::numeric_limits<int>;
    QCOMPARE(sliderEnd(0, Limits::max()), Limits::max());
    QCOMPARE(sliderEnd(-1, Limits::max()), Limits::max() - 1);
    QCOMPARE(sliderEnd(Limits::min(), 0), -1);
    QCOMPARE(sliderEnd(Limits::min(), Limits::max()), -1);
    QCOMPARE(sliderEnd(10, -10), -10);
}

ORVALIS_QTEST_MAIN(FeatureMathTest)
#include "FeatureMathTest.moc"
