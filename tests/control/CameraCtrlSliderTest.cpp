// SPDX-License-Identifier: MIT
// The sliders of the integer features: what moves them, what they send, and that they match their
// boxes.
#include "tests/control/FeatureRows.h"
#include "tests/support/QtTestMain.h"

#include <limits>

class CameraCtrlSliderTest : public QObject {
    Q_OBJECT

private slots:
    void pageActionsSend_data();
    void pageActionsSend();
    void refusedPageLeavesTheSlider_data();
    void refusedPageLeavesTheSlider();
    void pageToTheDisplayedValueMovesTheSliderBack_data();
    void pageToTheDisplayedValueMovesTheSliderBack();
    void pagesAtTheEndsKeepSliderAndBoxTogether_data();
    void pagesAtTheEndsKeepSliderAndBoxTogether();
    void clickInTheGrooveKeepsSliderAndBoxTogether();
    void pagesEndAtTheLastNumber_data();
    void pagesEndAtTheLastNumber();
    void otherActionsSendNothing_data();
    void otherActionsSendNothing();
    void draggingSendsOnRelease_data();
    void draggingSendsOnRelease();
    void nextLoadRestoresAMovedSlider();
};

void CameraCtrlSliderTest::pageActionsSend_data() { addFeatures(); }

void CameraCtrlSliderTest::pageActionsSend()
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

void CameraCtrlSliderTest::refusedPageLeavesTheSlider_data() { addFeatures(); }

void CameraCtrlSliderTest::refusedPageLeavesTheSlider()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    fakeorvalis::fail(feature.setter());
    feature.slider()->triggerAction(QAbstractSlider::SliderPageStepAdd);
    QCOMPARE(feature.panel.log().size(), 1);
    QCOMPARE(feature.slider()->value(), 500);
}

void CameraCtrlSliderTest::pageToTheDisplayedValueMovesTheSliderBack_data() { addFeatures(); }

/// The arrow keys move only the slider. A page step from there may lead to the number that the box
/// displays already.
void CameraCtrlSliderTest::pageToTheDisplayedValueMovesTheSliderBack()
{
    QFETCH(int, index);
    Feature feature(index);
    feature.open();
    const int page = feature.slider()->pageStep();
    for (int step = 0; step < page; ++step)
        QTest::keyClick(feature.slider(), Qt::Key_Left);
    QCOMPARE(feature.slider()->value(), 500 - page);
    QTest::keyClick(feature.slider(), Qt::Key_PageUp);
    QCOMPARE(feature.slider()->value(), 500);
    QCOMPARE(feature.spin()->value(), 500);
    QCOMPARE(feature.slider()->sliderPosition(), 500);
    QCOMPARE(feature.panel.log(), QStringList()); // the camera has it already
}

void CameraCtrlSliderTest::pagesAtTheEndsKeepSliderAndBoxTogether_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("arrow");
    QTest::addColumn<int>("page");
    QTest::newRow("upper") << 1000 << int(Qt::Key_Left) << int(Qt::Key_PageUp);
    QTest::newRow("lower") << 100 << int(Qt::Key_Right) << int(Qt::Key_PageDown);
}

void CameraCtrlSliderTest::pagesAtTheEndsKeepSliderAndBoxTogether()
{
    QFETCH(int, value);
    QFETCH(int, arrow);
    QFETCH(int, page);
    Feature feature(0);
    feature.open();
    feature.spin()->setValue(value);
    QTest::keyClick(feature.slider(), Qt::Key(arrow));
    QVERIFY(feature.slider()->value() != value);
    QTest::keyClick(feature.slider(), Qt::Key(page));
    QCOMPARE(feature.spin()->value(), value);
    QCOMPARE(feature.slider()->value(), value);
}

/// A click in the groove, on either side of the handle, after the arrow keys have moved the slider.
void CameraCtrlSliderTest::clickInTheGrooveKeepsSliderAndBoxTogether()
{
    Feature feature(0);
    feature.open();
    QSlider *slider = feature.slider();
    slider->setFixedSize(200, 30);
    for (const int start : {100, 119, 480, 500, 520, 981, 999, 1000}) {
        for (const QPoint groove : {QPoint(1, 15), QPoint(198, 15)}) {
            feature.spin()->setValue(500);
            slider->setValue(start);
            QTest::mouseClick(slider, Qt::LeftButton, {}, groove);
            QCOMPARE(slider->value(), feature.spin()->value());
        }
    }
}

void CameraCtrlSliderTest::pagesEndAtTheLastNumber_data()
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

void CameraCtrlSliderTest::pagesEndAtTheLastNumber()
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

void CameraCtrlSliderTest::otherActionsSendNothing_data() { addFeatures(); }

void CameraCtrlSliderTest::otherActionsSendNothing()
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

void CameraCtrlSliderTest::draggingSendsOnRelease_data() { addFeatures(); }

void CameraCtrlSliderTest::draggingSendsOnRelease()
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

void CameraCtrlSliderTest::nextLoadRestoresAMovedSlider()
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

ORVALIS_QTEST_MAIN(CameraCtrlSliderTest)
#include "CameraCtrlSliderTest.moc"
