// SPDX-License-Identifier: MIT
// The scale of a view is told when it changes, and only then.
#include "view/ScaleWatch.h"
#include "tests/support/QtTestMain.h"

#include <QGraphicsView>
#include <QSignalSpy>

class ScaleWatchTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void everyChangeIsTold();
    void paintingAloneTellsNothing();
};

void ScaleWatchTest::everyChangeIsTold()
{
    QGraphicsView view;
    const ScaleWatch *watch = new ScaleWatch(&view); // child of view
    QSignalSpy told(watch, &ScaleWatch::sigScaleChanged);
    view.show();
    QTRY_COMPARE(told.size(), 1);
    QCOMPARE(told.takeFirst().first().toReal(), 1.0);
    view.scale(0.25, 0.25);
    QTRY_COMPARE(told.size(), 1);
    QCOMPARE(told.takeFirst().first().toReal(), 0.25);
    view.resetTransform();
    QTRY_COMPARE(told.size(), 1);
    QCOMPARE(told.takeFirst().first().toReal(), 1.0);
}

void ScaleWatchTest::paintingAloneTellsNothing()
{
    QGraphicsView view;
    const ScaleWatch *watch = new ScaleWatch(&view); // child of view
    QSignalSpy told(watch, &ScaleWatch::sigScaleChanged);
    view.show();
    QTRY_COMPARE(told.size(), 1);
    view.translate(5, 5);
    for (int i = 0; i < 3; ++i)
        view.viewport()->repaint();
    QCOMPARE(told.size(), 1);
}

ORVALIS_QTEST_MAIN(ScaleWatchTest)
#include "ScaleWatchTest.moc"
