// SPDX-License-Identifier: MIT
// Every change of the scale is reported, and nothing else.
#include "view/ScaleWatch.h"
#include "tests/support/QtTestMain.h"

#include <QGraphicsView>
#include <QSignalSpy>

class ScaleWatchTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void everyChangeIsReported();
    void paintingAloneReportsNothing();
};

void ScaleWatchTest::everyChangeIsReported()
{
    QGraphicsView view;
    const ScaleWatch *watch = new ScaleWatch(&view); // child of view
    QSignalSpy changes(watch, &ScaleWatch::sigScaleChanged);
    view.show();
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(changes.takeFirst().first().toReal(), 1.0);
    view.scale(0.25, 0.25);
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(changes.takeFirst().first().toReal(), 0.25);
    view.resetTransform();
    QTRY_COMPARE(changes.size(), 1);
    QCOMPARE(changes.takeFirst().first().toReal(), 1.0);
}

void ScaleWatchTest::paintingAloneReportsNothing()
{
    QGraphicsView view;
    const ScaleWatch *watch = new ScaleWatch(&view); // child of view
    QSignalSpy changes(watch, &ScaleWatch::sigScaleChanged);
    view.show();
    QTRY_COMPARE(changes.size(), 1);
    view.translate(5, 5);
    for (int i = 0; i < 3; ++i)
        view.viewport()->repaint();
    QCOMPARE(changes.size(), 1);
}

ORVALIS_QTEST_MAIN(ScaleWatchTest)
#include "ScaleWatchTest.moc"
