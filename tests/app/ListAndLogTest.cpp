// SPDX-License-Identifier: MIT
// The camera list and the log, each without the window.
#include "app/CameraList.h"
#include "app/LogStatus.h"
#include "tests/support/QtTestMain.h"

#include <QListWidget>
#include <QVBoxLayout>

class ListAndLogTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void theListIsALeftDock();
    void camerasAreListedInOrder();
    void anEmptyListClears();
    void theFirstOfSeveralIsSelected();
    void aSingleCameraIsNotSelected();
    void nothingIsSelectedWhileACameraIsOpen();
    void theListIsDisabledWhileACameraIsOpen();
    void aDoubleClickOpensTheRow();
    void aDoubleClickSurvivesARefresh();

    void theLogIsABottomDock();
    void linesHaveUnpaddedTimes_data();
    void linesHaveUnpaddedTimes();
    void aMessageKeepsItsPlaceholders();
    void linesHaveTheCurrentTime();
    void theLogStartsOverBeyond1000Lines();
    void theLogScrollsToItsEnd();

private:
    static QListWidget *listOf(const QWidget &dock) { return dock.findChild<QListWidget *>(); }
};

namespace {

void checkContents(const QDockWidget &dock)
{
    const QWidget *contents = dock.widget();
    QVERIFY(contents != nullptr);
    const auto *layout = qobject_cast<QVBoxLayout *>(contents->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->contentsMargins(), QMargins(0, 2, 0, 0));
    QCOMPARE(layout->count(), 1);
    QVERIFY(qobject_cast<QListWidget *>(layout->itemAt(0)->widget()) != nullptr);
    QCOMPARE(dock.features(), QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable |
                                  QDockWidget::DockWidgetFloatable);
}

} // namespace

void ListAndLogTest::theListIsALeftDock()
{
    const CameraList list;
    QCOMPARE(list.windowTitle(), QString("Camera List"));
    QCOMPARE(list.size(), QSize(300, 300));
    QCOMPARE(list.minimumSize(), QSize(300, 100));
    QCOMPARE(list.maximumSize(), QSize(300, 300));
    QCOMPARE(list.allowedAreas(), Qt::DockWidgetAreas(Qt::LeftDockWidgetArea));
    QVERIFY(list.acceptDrops());
    checkContents(list);
    QCOMPARE(listOf(list)->objectName(), QString("listWidget"));
}

void ListAndLogTest::camerasAreListedInOrder()
{
    CameraList list;
    list.slotUpdateCameraList({"old"});
    list.slotUpdateCameraList({"C", "A", "B"});
    QCOMPARE(listOf(list)->count(), 3);
    QCOMPARE(listOf(list)->item(0)->text(), QString("C"));
    QCOMPARE(listOf(list)->item(1)->text(), QString("A"));
    QCOMPARE(listOf(list)->item(2)->text(), QString("B"));
}

void ListAndLogTest::anEmptyListClears()
{
    CameraList list;
    list.slotUpdateCameraList({"A", "B"});
    list.slotUpdateCameraList({});
    QCOMPARE(listOf(list)->count(), 0);
    QCOMPARE(list.currentCameraIdx(), -1);
}

void ListAndLogTest::theFirstOfSeveralIsSelected()
{
    CameraList list;
    QCOMPARE(list.currentCameraIdx(), -1);
    list.slotUpdateCameraList({"A", "B"});
    QCOMPARE(list.currentCameraIdx(), 0);
    listOf(list)->setCurrentRow(1);
    QCOMPARE(list.currentCameraIdx(), 1);
}

void ListAndLogTest::aSingleCameraIsNotSelected()
{
    CameraList list;
    list.slotUpdateCameraList({"A"});
    QCOMPARE(list.currentCameraIdx(), -1);
    QVERIFY(listOf(list)->selectedItems().isEmpty());
    listOf(list)->setCurrentRow(0); // as getting the focus does
    list.slotUpdateCameraList({"A"});
    QCOMPARE(list.currentCameraIdx(), -1);
    QVERIFY(listOf(list)->selectedItems().isEmpty());
}

void ListAndLogTest::nothingIsSelectedWhileACameraIsOpen()
{
    CameraList list;
    list.slotCameraOpened(true);
    list.slotUpdateCameraList({"A", "B"});
    QCOMPARE(list.currentCameraIdx(), -1);
    list.slotCameraOpened(false);
    list.slotUpdateCameraList({"A", "B"});
    QCOMPARE(list.currentCameraIdx(), 0);
}

void ListAndLogTest::theListIsDisabledWhileACameraIsOpen()
{
    CameraList list;
    list.slotCameraOpened(true);
    QVERIFY(!listOf(list)->isEnabled());
    list.slotCameraOpened(false);
    QVERIFY(listOf(list)->isEnabled());
}

void ListAndLogTest::aDoubleClickOpensTheRow()
{
    CameraList list;
    list.slotUpdateCameraList({"A", "B", "C"});
    list.show();
    QSignalSpy opened(&list, SIGNAL(sigOpenCamera(int)));
    const QPoint middle = listOf(list)->visualItemRect(listOf(list)->item(2)).center();
    QTest::mouseClick(listOf(list)->viewport(), Qt::LeftButton, {}, middle);
    QTest::mouseDClick(listOf(list)->viewport(), Qt::LeftButton, {}, middle);
    QCOMPARE(opened, (QList<QVariantList>{{2}}));
    list.slotCameraOpened(true);
    QTest::mouseDClick(listOf(list)->viewport(), Qt::LeftButton, {}, middle);
    QCOMPARE(opened.size(), 1);
}

// Discovery updates the list between the two clicks.
void ListAndLogTest::aDoubleClickSurvivesARefresh()
{
    CameraList list;
    const QStringList names{"A", "B", "C"};
    list.slotUpdateCameraList(names);
    list.show();
    QSignalSpy opened(&list, SIGNAL(sigOpenCamera(int)));
    const QPoint middle = listOf(list)->visualItemRect(listOf(list)->item(2)).center();
    QTest::mouseClick(listOf(list)->viewport(), Qt::LeftButton, {}, middle);
    list.slotUpdateCameraList(names);
    QCOMPARE(list.currentCameraIdx(), 0);
    QMouseEvent second(QEvent::MouseButtonDblClick, middle, Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(listOf(list)->viewport(), &second);
    QCOMPARE(opened, (QList<QVariantList>{{2}}));
}

void ListAndLogTest::theLogIsABottomDock()
{
    const LogStatus log;
    QCOMPARE(log.windowTitle(), QString("Log"));
    QCOMPARE(log.size(), QSize(400, 200));
    QCOMPARE(log.minimumSize(), QSize(95, 97));
    QCOMPARE(log.maximumSize(), QSize(524287, 300));
    QCOMPARE(log.allowedAreas(), Qt::DockWidgetAreas(Qt::BottomDockWidgetArea));
    checkContents(log);
}

void ListAndLogTest::linesHaveUnpaddedTimes_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QString>("line");
    QTest::newRow("short") << QDateTime({2025, 3, 7}, {9, 5, 3, 42})
                           << "[2025-3-2025 9:5:3.42] close Camera[X1]";
    QTest::newRow("long") << QDateTime({2025, 12, 31}, {23, 59, 58, 999})
                          << "[2025-12-2025 23:59:58.999] close Camera[X1]";
    QTest::newRow("midnight") << QDateTime({2030, 1, 1}, {0, 0, 0, 0})
                              << "[2030-1-2030 0:0:0.0] close Camera[X1]";
}

void ListAndLogTest::linesHaveUnpaddedTimes()
{
    QFETCH(QDateTime, time);
    QTEST(LogStatus::logLine(time, "close Camera[X1]"), "line");
}

void ListAndLogTest::aMessageKeepsItsPlaceholders()
{
    const QDateTime time({2025, 3, 7}, {9, 5, 3, 42});
    QCOMPARE(LogStatus::logLine(time, "%1 %8 %9"), QString("[2025-3-2025 9:5:3.42] %1 %8 %9"));
}

void ListAndLogTest::linesHaveTheCurrentTime()
{
    LogStatus log;
    const QDateTime before = QDateTime::currentDateTime();
    log.slotTraceLog("hello");
    const QDateTime after = QDateTime::currentDateTime();
    QStringList possible;
    for (QDateTime time = before; time <= after; time = time.addMSecs(1))
        possible << LogStatus::logLine(time, "hello");
    QVERIFY(possible.contains(listOf(log)->item(0)->text()));
}

void ListAndLogTest::theLogStartsOverBeyond1000Lines()
{
    LogStatus log;
    for (int i = 1; i <= 1000; ++i)
        log.slotTraceLog(QString::number(i));
    QCOMPARE(listOf(log)->count(), 1000);
    log.slotTraceLog("1001");
    QCOMPARE(listOf(log)->count(), 1001);
    log.slotTraceLog("1002");
    QCOMPARE(listOf(log)->count(), 1);
    QVERIFY(listOf(log)->item(0)->text().endsWith("] 1002"));
}

void ListAndLogTest::theLogScrollsToItsEnd()
{
    LogStatus log;
    log.show();
    for (int i = 0; i < 200; ++i)
        log.slotTraceLog("line");
    const QRect last = listOf(log)->visualItemRect(listOf(log)->item(199));
    QVERIFY(listOf(log)->viewport()->rect().intersects(last));
}

ORVALIS_QTEST_MAIN(ListAndLogTest)
#include "ListAndLogTest.moc"
