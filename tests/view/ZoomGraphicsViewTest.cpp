// SPDX-License-Identifier: MIT
// The animated zoom of the live image.
#include "view/ZoomGraphicsView.h"
#include "tests/support/QtTestMain.h"
#include "view/ZoomArithmetic.h"

#include <QGraphicsPixmapItem>
#include <QScrollBar>
#include <QTimeLine>
#include <QWheelEvent>

#include <cmath>

class ZoomGraphicsViewTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void stepsAreWholeWheelUnits_data();
    void stepsAreWholeWheelUnits();
    void stepsAddUpUntilTheDirectionChanges_data();
    void stepsAddUpUntilTheDirectionChanges();
    void theEndOfAnAnimationTakesOneStepBack_data();
    void theEndOfAnAnimationTakesOneStepBack();
    void aTickScalesByPendingSteps_data();
    void aTickScalesByPendingSteps();
    void zoomsThatHideTheImageAreRefused_data();
    void zoomsThatHideTheImageAreRefused();

    void startsWithoutAnchors();
    void oneNotchScalesEveryTick();
    void twoNotchesScaleByTheSumOfBoth();
    void aNotchBackReplacesThePendingOnes();
    void anEndWithNothingPendingLeavesOne();
    void theTimeLineIsDeletedAtOnce();
    void aTimeLineLasts350MsInTicksOf20();
    void theCentreStaysWhenTheActionZooms();
    void thePointUnderTheMouseStaysWhenTheWheelZooms();
    void everyZoomEndsFitMode();
    void worksWithoutAFitFlag();
    void theWheelNeverScrolls();
    void aSidewaysWheelAlsoZooms();
    void aFitDisplaysTheWholeScene();
    void anUnchangedFitDoesNotRepaint();
    void closingDuringAnAnimationIsHarmless();
    void aStrayEndOfAnAnimationIsHarmless();

private:
    QList<QTimeLine *> timeLines() const { return m_view->findChildren<QTimeLine *>(); }
    double zoom() const { return m_view->transform().m11(); }
    void turnWheel(const QPoint &at, const QPoint &angle);
    void stopTicking();
    void tick() { QMetaObject::invokeMethod(m_view.data(), "scalingTime", Q_ARG(qreal, 0.5)); }
    void finish(QTimeLine *line)
    {
        QMetaObject::invokeMethod(line, "setCurrentTime", Q_ARG(int, 350));
    }
    double pending();

    QScopedPointer<QGraphicsScene> m_scene;
    QScopedPointer<ZoomGraphicsView> m_view;
};

namespace {

constexpr double tolerance = 1e-9;

/// Processes pending events, and the events that these cause.
void settle()
{
    for (int round = 0; round < 10; ++round)
        QCoreApplication::processEvents();
}

/// Counts the paint events of a widget.
class Paintings : public QObject {
public:
    explicit Paintings(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

bool near(double a, double b) { return std::abs(a - b) < tolerance; }

} // namespace

void ZoomGraphicsViewTest::init()
{
    m_scene.reset(new QGraphicsScene);
    m_scene->addItem(new QGraphicsPixmapItem(QPixmap(4000, 3000)));
    m_view.reset(new ZoomGraphicsView(nullptr));
    m_view->resize(400, 300);
    m_view->setScene(m_scene.data());
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.data()));
}

void ZoomGraphicsViewTest::cleanup()
{
    m_view.reset();
    m_scene.reset();
    QCOMPARE(viewertest::takeWarnings(), QStringList());
}

void ZoomGraphicsViewTest::turnWheel(const QPoint &at, const QPoint &angle)
{
    QWheelEvent event(at, m_view->viewport()->mapToGlobal(at), QPoint(), angle, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_view->viewport(), &event);
}

/// Pauses the time lines, so that the test ticks instead of the clock.
void ZoomGraphicsViewTest::stopTicking()
{
    const auto lines = timeLines();
    for (QTimeLine *line : lines)
        line->setPaused(true);
}

/// Pending steps, derived from the effect of one tick.
double ZoomGraphicsViewTest::pending()
{
    const double before = zoom();
    tick();
    return std::round((zoom() / before - 1.0) * 300.0);
}

void ZoomGraphicsViewTest::stepsAreWholeWheelUnits_data()
{
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("steps");
    const int rows[][2] = {{120, 1}, {-120, -1}, {119, 0},   {-119, 0}, {0, 0},
                           {240, 2}, {239, 1},   {-239, -1}, {-240, -2}};
    for (const auto &row : rows)
        QTest::addRow("%d", row[0]) << row[0] << row[1];
}

void ZoomGraphicsViewTest::stepsAreWholeWheelUnits()
{
    QFETCH(int, delta);
    QFETCH(int, steps);
    QCOMPARE(zoomSteps(delta), steps);
}

void ZoomGraphicsViewTest::stepsAddUpUntilTheDirectionChanges_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<int>("steps");
    QTest::addColumn<double>("after");
    QTest::newRow("first") << 0.0 << 1 << 1.0;
    QTest::newRow("second") << 1.0 << 1 << 2.0;
    QTest::newRow("reversed") << 3.0 << -1 << -1.0;
    QTest::newRow("reversed beyond nothing") << 3.0 << -5 << -2.0;
    QTest::newRow("reversed upwards") << -3.0 << 2 << 2.0;
    QTest::newRow("back to nothing") << 1.0 << -1 << 0.0;
    QTest::newRow("no step") << 3.0 << 0 << 3.0;
}

void ZoomGraphicsViewTest::stepsAddUpUntilTheDirectionChanges()
{
    QFETCH(double, before);
    QFETCH(int, steps);
    QFETCH(double, after);
    QCOMPARE(addedScalings(before, steps), after);
}

void ZoomGraphicsViewTest::theEndOfAnAnimationTakesOneStepBack_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<double>("after");
    QTest::newRow("two in") << 2.0 << 1.0;
    QTest::newRow("one in") << 1.0 << 0.0;
    QTest::newRow("none") << 0.0 << 1.0;
    QTest::newRow("one out") << -1.0 << 0.0;
    QTest::newRow("two out") << -2.0 << -1.0;
}

void ZoomGraphicsViewTest::theEndOfAnAnimationTakesOneStepBack()
{
    QFETCH(double, before);
    QFETCH(double, after);
    QCOMPARE(scalingsAfterAnimation(before), after);
}

void ZoomGraphicsViewTest::aTickScalesByPendingSteps_data()
{
    QTest::addColumn<double>("pending");
    QTest::addColumn<double>("factor");
    QTest::newRow("none") << 0.0 << 1.0;
    QTest::newRow("one in") << 1.0 << 1.0 + 1.0 / 300.0;
    QTest::newRow("two in") << 2.0 << 1.0 + 2.0 / 300.0;
    QTest::newRow("three out") << -3.0 << 0.99;
}

void ZoomGraphicsViewTest::aTickScalesByPendingSteps()
{
    QFETCH(double, pending);
    QFETCH(double, factor);
    QCOMPARE(tickFactor(pending), factor);
}

void ZoomGraphicsViewTest::zoomsThatHideTheImageAreRefused_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("factor");
    QTest::addColumn<bool>("useful");
    QTest::newRow("usual") << 1.0 << 1.003 << true;
    QTest::newRow("nothing") << 1.0 << 1.0 << true;
    QTest::newRow("to zero") << 1.0 << 0.0 << false;
    QTest::newRow("mirrored") << 1.0 << -0.5 << false;
    QTest::newRow("ever smaller") << 1e-3 << 0.99 << false;
    QTest::newRow("back from small") << 1e-9 << 1.003 << true;
    QTest::newRow("ever larger") << 1e3 << 1.003 << false;
    QTest::newRow("back from large") << 1e9 << 0.99 << true;
}

void ZoomGraphicsViewTest::zoomsThatHideTheImageAreRefused()
{
    QFETCH(double, scale);
    QFETCH(double, factor);
    QTEST(isUsefulZoom(scale, factor), "useful");
}

void ZoomGraphicsViewTest::startsWithoutAnchors()
{
    QCOMPARE(m_view->transformationAnchor(), QGraphicsView::NoAnchor);
    QCOMPARE(m_view->resizeAnchor(), QGraphicsView::NoAnchor);
    QVERIFY(timeLines().isEmpty());
    QCOMPARE(zoom(), 1.0);
}

void ZoomGraphicsViewTest::oneNotchScalesEveryTick()
{
    turnWheel({100, 100}, {0, 120});
    QCOMPARE(timeLines().size(), 1);
    stopTicking();
    const double before = zoom();
    tick();
    tick();
    QVERIFY(near(zoom() / before, (1 + 1.0 / 300) * (1 + 1.0 / 300)));
}

void ZoomGraphicsViewTest::twoNotchesScaleByTheSumOfBoth()
{
    turnWheel({100, 100}, {0, 120});
    turnWheel({100, 100}, {0, 120});
    QCOMPARE(timeLines().size(), 2);
    stopTicking();
    QCOMPARE(pending(), 2.0);
    timeLines().first()->setPaused(false);
    finish(timeLines().first());
    QCOMPARE(timeLines().size(), 1);
    QCOMPARE(pending(), 1.0);
}

void ZoomGraphicsViewTest::aNotchBackReplacesThePendingOnes()
{
    turnWheel({100, 100}, {0, 360});
    turnWheel({100, 100}, {0, -120});
    stopTicking();
    QCOMPARE(pending(), -1.0);
}

void ZoomGraphicsViewTest::anEndWithNothingPendingLeavesOne()
{
    turnWheel({100, 100}, {0, 60}); // less than one step, but starts a time line
    QCOMPARE(timeLines().size(), 1);
    stopTicking();
    QCOMPARE(pending(), 0.0);
    timeLines().first()->setPaused(false);
    finish(timeLines().first());
    QCOMPARE(pending(), 1.0);
    turnWheel({100, 100}, {0, -120});
    stopTicking();
    QCOMPARE(pending(), 0.0);
}

void ZoomGraphicsViewTest::theTimeLineIsDeletedAtOnce()
{
    m_view->ZoomInOut(120);
    QTimeLine *line = timeLines().constFirst();
    QSignalSpy deleted(line, &QObject::destroyed);
    finish(line);
    QCOMPARE(deleted.size(), 1); // without the event loop
    QVERIFY(timeLines().isEmpty());
}

void ZoomGraphicsViewTest::aTimeLineLasts350MsInTicksOf20()
{
    m_view->ZoomInOut(-120);
    const QTimeLine *line = timeLines().constFirst();
    QCOMPARE(line->duration(), 350);
    QCOMPARE(line->updateInterval(), 20);
    QCOMPARE(line->state(), QTimeLine::Running);
    QTRY_VERIFY(timeLines().isEmpty());
    QVERIFY(zoom() < 1.0);
}

void ZoomGraphicsViewTest::theCentreStaysWhenTheActionZooms()
{
    m_view->centerOn(2000, 1500);
    const QPoint anchor = m_view->geometry().center();
    const QPointF before = m_view->mapToScene(anchor);
    m_view->ZoomInOut(120);
    stopTicking();
    for (int i = 0; i < 50; ++i)
        tick();
    const QPointF after = m_view->mapToScene(anchor);
    QVERIFY(zoom() > 1.1);
    QVERIFY((after - before).manhattanLength() < 2.0);
}

void ZoomGraphicsViewTest::thePointUnderTheMouseStaysWhenTheWheelZooms()
{
    m_view->centerOn(2000, 1500);
    const QPoint mouse(77, 211);
    const QPointF before = m_view->mapToScene(mouse);
    turnWheel(mouse, {0, 120});
    stopTicking();
    for (int i = 0; i < 50; ++i)
        tick();
    QVERIFY(zoom() > 1.1);
    QVERIFY((m_view->mapToScene(mouse) - before).manhattanLength() < 2.0);
}

void ZoomGraphicsViewTest::everyZoomEndsFitMode()
{
    bool fit = true;
    m_view->setFitFlag(&fit);
    m_view->ZoomInOut(120);
    QVERIFY(!fit);
    fit = true;
    turnWheel({10, 10}, {0, 15});
    QVERIFY(!fit);
}

void ZoomGraphicsViewTest::worksWithoutAFitFlag()
{
    m_view->setFitFlag(nullptr);
    m_view->ZoomInOut(120);
    QCOMPARE(timeLines().size(), 1);
}

void ZoomGraphicsViewTest::theWheelNeverScrolls()
{
    m_view->verticalScrollBar()->setValue(500);
    const int before = m_view->verticalScrollBar()->value();
    turnWheel({100, 100}, {0, -120});
    stopTicking();
    QCOMPARE(m_view->verticalScrollBar()->value(), before);
}

void ZoomGraphicsViewTest::aSidewaysWheelAlsoZooms()
{
    turnWheel({100, 100}, {-120, 30});
    stopTicking();
    QCOMPARE(pending(), -1.0);
}

void ZoomGraphicsViewTest::aFitDisplaysTheWholeScene()
{
    const auto wholeSceneFills = [this] {
        const QRectF shown = m_view->transform().mapRect(m_scene->sceneRect());
        const QSizeF room = m_view->viewport()->size();
        return shown.width() <= room.width() && shown.height() <= room.height() &&
               (shown.width() > room.width() - 8 || shown.height() > room.height() - 8);
    };
    m_view->fitScene();
    QVERIFY(wholeSceneFills());
    m_view->resize(500, 500);
    m_view->fitScene();
    QVERIFY(wholeSceneFills());
    m_view->scale(2, 2);
    m_view->fitScene();
    QVERIFY(wholeSceneFills());
    m_scene->addItem(new QGraphicsPixmapItem(QPixmap(4000, 6000)));
    m_view->fitScene();
    QVERIFY(wholeSceneFills());
}

void ZoomGraphicsViewTest::anUnchangedFitDoesNotRepaint()
{
    m_view->fitScene();
    settle(); // the scroll bars disappear, which enlarges the viewport
    m_view->fitScene();
    settle();
    const Paintings paintings(m_view->viewport());
    m_view->fitScene();
    settle();
    QCOMPARE(paintings.count, 0);
    m_view->resize(200, 200);
    m_view->fitScene();
    QTRY_VERIFY(paintings.count > 0);
}

void ZoomGraphicsViewTest::closingDuringAnAnimationIsHarmless()
{
    m_view->ZoomInOut(120);
    m_view->ZoomInOut(120);
    m_view.reset();
    QCoreApplication::processEvents();
}

void ZoomGraphicsViewTest::aStrayEndOfAnAnimationIsHarmless()
{
    QMetaObject::invokeMethod(m_view.data(), "animFinshed");
    QCOMPARE(pending(), 1.0);
}

ORVALIS_QTEST_MAIN(ZoomGraphicsViewTest)
#include "ZoomGraphicsViewTest.moc"
