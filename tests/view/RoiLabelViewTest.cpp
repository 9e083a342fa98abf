// SPDX-License-Identifier: MIT
// Drawing a rectangle on the sensor label.
#include "view/RoiLabelView.h"
#include "tests/support/QtTestMain.h"

#include <QMetaMethod>
#include <QRubberBand>
#include <QSignalSpy>

namespace {

/// A label in a window, with simulated mouse input.
struct Drawing {
    Drawing()
    {
        label.resize(200, 150);
        label.show();
    }
    QRubberBand *band() const { return label.findChild<QRubberBand *>(); }
    void move(QPoint to, Qt::MouseButton button = Qt::LeftButton)
    {
        QMouseEvent event(QEvent::MouseMove, to, Qt::NoButton, button, Qt::NoModifier);
        QCoreApplication::sendEvent(&label, &event);
    }

    RoiLabelView label{nullptr};
};

} // namespace

class RoiLabelViewTest : public QObject {
    Q_OBJECT

private slots:
    void bandIsAHiddenDarkBlueRectangle();
    void bandBelongsToTheLabel();
    void pressHidesTheBand();
    void moveShowsTheNormalisedRectangle_data();
    void moveShowsTheNormalisedRectangle();
    void releaseReportsTheRawCorners_data();
    void releaseReportsTheRawCorners();
    void bandStaysAfterRelease();
    void clickReportsOnePointTwice();
    void anyButtonDraws_data();
    void anyButtonDraws();
    void hideSlotHidesTheBand();
    void movesNeedAButton();
};

void RoiLabelViewTest::bandIsAHiddenDarkBlueRectangle()
{
    const Drawing drawing;
    QCOMPARE(drawing.band()->shape(), QRubberBand::Rectangle);
    QVERIFY(drawing.band()->isHidden());
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(drawing.band()->palette().brush(group, QPalette::Highlight), QBrush(Qt::darkBlue));
}

void RoiLabelViewTest::bandBelongsToTheLabel()
{
    const Drawing drawing;
    QCOMPARE(drawing.band()->parent(), &drawing.label);
    QCOMPARE(drawing.label.windowFlags(), QLabel().windowFlags());
}

void RoiLabelViewTest::pressHidesTheBand()
{
    Drawing drawing;
    drawing.band()->show();
    QTest::mousePress(&drawing.label, Qt::LeftButton, {}, QPoint(5, 5));
    QVERIFY(drawing.band()->isHidden());
}

void RoiLabelViewTest::moveShowsTheNormalisedRectangle_data()
{
    QTest::addColumn<QPoint>("start");
    QTest::addColumn<QPoint>("end");
    QTest::newRow("right and down") << QPoint(10, 20) << QPoint(60, 80);
    QTest::newRow("left and up") << QPoint(60, 80) << QPoint(10, 20);
    QTest::newRow("right and up") << QPoint(10, 80) << QPoint(60, 20);
    QTest::newRow("left and down") << QPoint(60, 20) << QPoint(10, 80);
}

void RoiLabelViewTest::moveShowsTheNormalisedRectangle()
{
    QFETCH(QPoint, start);
    QFETCH(QPoint, end);
    Drawing drawing;
    QTest::mousePress(&drawing.label, Qt::LeftButton, {}, start);
    drawing.move(end);
    QVERIFY(drawing.band()->isVisible());
    QCOMPARE(drawing.band()->geometry(), QRect(start, end).normalized());
}

void RoiLabelViewTest::releaseReportsTheRawCorners_data()
{
    moveShowsTheNormalisedRectangle_data();
}

void RoiLabelViewTest::releaseReportsTheRawCorners()
{
    QFETCH(QPoint, start);
    QFETCH(QPoint, end);
    Drawing drawing;
    QSignalSpy spy(&drawing.label, &RoiLabelView::sigCurrentPoint);
    QTest::mousePress(&drawing.label, Qt::LeftButton, {}, start);
    drawing.move(end);
    QCOMPARE(spy.count(), 0);
    QTest::mouseRelease(&drawing.label, Qt::LeftButton, {}, end);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(0).toPoint(), start);
    QCOMPARE(spy.first().at(1).toPoint(), end);
}

void RoiLabelViewTest::bandStaysAfterRelease()
{
    Drawing drawing;
    QTest::mousePress(&drawing.label, Qt::LeftButton, {}, QPoint(1, 1));
    drawing.move({9, 9});
    QTest::mouseRelease(&drawing.label, Qt::LeftButton, {}, QPoint(9, 9));
    QVERIFY(drawing.band()->isVisible());
}

void RoiLabelViewTest::clickReportsOnePointTwice()
{
    Drawing drawing;
    QSignalSpy spy(&drawing.label, &RoiLabelView::sigCurrentPoint);
    QTest::mouseClick(&drawing.label, Qt::LeftButton, {}, QPoint(7, 8));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().at(0).toPoint(), QPoint(7, 8));
    QCOMPARE(spy.first().at(1).toPoint(), QPoint(7, 8));
    QVERIFY(drawing.band()->isHidden());
}

void RoiLabelViewTest::anyButtonDraws_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("left") << int{Qt::LeftButton};
    QTest::newRow("right") << int{Qt::RightButton};
    QTest::newRow("middle") << int{Qt::MiddleButton};
}

void RoiLabelViewTest::anyButtonDraws()
{
    QFETCH(int, button);
    const auto mouseButton = static_cast<Qt::MouseButton>(button);
    Drawing drawing;
    QSignalSpy spy(&drawing.label, &RoiLabelView::sigCurrentPoint);
    QTest::mousePress(&drawing.label, mouseButton, {}, QPoint(1, 2));
    drawing.move({30, 40}, mouseButton);
    QVERIFY(drawing.band()->isVisible());
    QTest::mouseRelease(&drawing.label, mouseButton, {}, QPoint(30, 40));
    QCOMPARE(spy.count(), 1);
}

void RoiLabelViewTest::hideSlotHidesTheBand()
{
    Drawing drawing;
    drawing.band()->show();
    QVERIFY(QMetaObject::invokeMethod(&drawing.label, "slotHideRubberBand"));
    QVERIFY(drawing.band()->isHidden());
}

void RoiLabelViewTest::movesNeedAButton() { QVERIFY(!Drawing().label.hasMouseTracking()); }

ORVALIS_QTEST_MAIN(RoiLabelViewTest)
#include "RoiLabelViewTest.moc"
