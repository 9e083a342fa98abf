// SPDX-License-Identifier: MIT
// Play and Stop: library calls, display and counters.
#include "tests/app/Shell.h"

#include <QSemaphore>

#include <new>

using shell::Frame;
using shell::gray;
using shell::settle;
using shell::Shell;
using shell::shows;

class StreamTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void startMakesItsCallsInOrder_data();
    void startMakesItsCallsInOrder();
    void startContinuesAfterAFailure_data();
    void startContinuesAfterAFailure();
    void startUpdatesTheWindow();
    void startWhileStreamingDoesNothing();
    void startWithoutACameraDoesNothing();
    void startLeavesAnEmptyScene();
    void stopMakesItsCallsInOrder();
    void stopWithoutAStreamDoesNothing();
    void stopKeepsTheCountAndClearsTheRate();
    void playIsCheckedWhileStreaming();
    void framesAreCounted();
    void theCallbackNeverBlocks();
    void countsKeepTheLayout();
    void ratesComeWithEvery31stFrame();
    void aLateRateIsNotDisplayed();
    void theStatusDisplaysFiguresAtAnyTime();
    void exceptionsStayInTheCallback();
    void manyCyclesRunWithoutWarnings();
};

namespace {

/// Counts the layout requests of a widget.
class LayoutRequests : public QObject {
public:
    explicit LayoutRequests(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        count += event->type() == QEvent::LayoutRequest ? 1 : 0;
        return false;
    }
    int count = 0;
};

} // namespace

void StreamTest::startMakesItsCallsInOrder_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("conversion");
    QTest::newRow("Mono8") << "Mono8" << 0;
    QTest::newRow("Mono12") << "Mono12" << 0;
    QTest::newRow("Bayer") << "BayerGR8" << 1;
    QTest::newRow("Bayer 12") << "BayerGR12" << 1;
    QTest::newRow("RGB") << "RGB8" << 0;
    QTest::newRow("small letters") << "mono8" << 0;
    QTest::newRow("Mono wins") << "BayerMono" << 0;
    QTest::newRow("no name") << "" << 0;
}

void StreamTest::startMakesItsCallsInOrder()
{
    QFETCH(QString, format);
    QFETCH(int, conversion);
    const Shell shell;
    shell.open();
    shell::setPixelFormat(format.toStdString(), shell::mono8);
    shell->slotStartCamera();
    const QStringList calls = shell::calls();
    QCOMPARE(calls.mid(0, 4),
             QStringList({"OrvalisGetCamInfo(h1)", "OrvalisGetSizeInfo(h1)",
                          "OrvalisGetPixelFormatStr(h1)",
                          QString("OrvalisSetBayerConversion(h1, %1)").arg(conversion)}));
    QCOMPARE(calls.size(), 5);
    QVERIFY(calls.last().startsWith("OrvalisStartAcquisition(h1"));
}

void StreamTest::startContinuesAfterAFailure_data()
{
    QTest::addColumn<QString>("function");
    for (const char *name : {"OrvalisGetCamInfo", "OrvalisGetSizeInfo", "OrvalisGetPixelFormatStr",
                             "OrvalisSetBayerConversion", "OrvalisStartAcquisition"})
        QTest::newRow(name) << name;
}

void StreamTest::startContinuesAfterAFailure()
{
    QFETCH(QString, function);
    const Shell shell;
    shell.open();
    fakeorvalis::fail(function.toStdString());
    shell->slotStartCamera();
    QCOMPARE(shell::calls().size(), 5);
    QVERIFY(shell->isStreaming());
    QCOMPARE(shell.lastLog(), QString("start stream Camera[CAM-A]"));
    QCOMPARE(shell->windowTitle(), QString("OrvalisViewer - CAM-A 64x48"));
    shell->slotStopCamera();
    QVERIFY(!shell->isStreaming());
}

void StreamTest::startUpdatesTheWindow()
{
    const Shell shell;
    shell.open();
    shell::setRegion(32, 16);
    shell.action("actionPlay")->trigger();
    QCOMPARE(shell->windowTitle(), QString("OrvalisViewer - CAM-A 32x16"));
    QCOMPARE(shell.lastLog(), QString("start stream Camera[CAM-A]"));
    QVERIFY(!shell.action("actionPlay")->isEnabled());
    QVERIFY(!shell.action("actionOneGrab")->isEnabled());
    for (const char *name : {"actionStop", "actionSave", "actionZoomIN", "actionDrawCenter"})
        QVERIFY2(shell.action(name)->isEnabled(), name);
}

void StreamTest::startWhileStreamingDoesNothing()
{
    const Shell shell;
    shell.play();
    shell->slotStartCamera();
    QCOMPARE(shell::calls(), QStringList());
    QCOMPARE(shell.log().count("start stream Camera[CAM-A]"), 1);
}

void StreamTest::startWithoutACameraDoesNothing()
{
    const Shell shell;
    fakeorvalis::clearCalls();
    shell->slotStartCamera();
    QCOMPARE(shell::calls(), QStringList());
    QVERIFY(!shell->isStreaming());
}

void StreamTest::startLeavesAnEmptyScene()
{
    const Shell shell;
    shell.open();
    const QGraphicsScene *before = shell.view()->scene();
    shell.view()->scale(2, 2);
    shell->slotStartCamera();
    QVERIFY(shell.view()->scene() != before);
    QCOMPARE(before->parent(), static_cast<QObject *>(shell.window.get()));
    QVERIFY(shell.item()->pixmap().isNull());
    QVERIFY(shell.view()->transform().isIdentity());
}

void StreamTest::stopMakesItsCallsInOrder()
{
    const Shell shell;
    shell.play();
    shell.action("actionStop")->trigger();
    QCOMPARE(shell::calls(), QStringList("OrvalisStopAcquisition(h1)"));
    QCOMPARE(shell.lastLog(), QString("stop steam Camera[CAM-A]"));
    QVERIFY(shell.action("actionPlay")->isEnabled());
    QVERIFY(!shell.action("actionStop")->isEnabled());
    QVERIFY(!shell.action("actionSave")->isEnabled());
}

void StreamTest::stopWithoutAStreamDoesNothing()
{
    const Shell shell;
    shell.open();
    shell->slotStopCamera();
    QCOMPARE(shell::calls(), QStringList());
    QVERIFY(!shell.log().contains("stop steam Camera[CAM-A]"));
}

void StreamTest::stopKeepsTheCountAndClearsTheRate()
{
    const Shell shell;
    shell.play();
    Frame frame(64, 48, 9);
    for (int i = 0; i < 5; ++i)
        frame.deliver();
    QTRY_COMPARE(shell.recv(), QString("5"));
    shell->slotStopCamera();
    QCoreApplication::processEvents();
    QCOMPARE(shell.rateLabel()->text(), QString("               0.0 fps (0.0 MB/s)"));
    QCOMPARE(shell.recv(), QString("5"));
    shell->slotStartCamera();
    frame.deliver();
    QTRY_COMPARE(shell.recv(), QString("1"));
    shell->resetFrameCount();
    frame.deliver();
    frame.deliver();
    QTRY_COMPARE(shell.recv(), QString("2"));
}

void StreamTest::playIsCheckedWhileStreaming()
{
    const Shell shell;
    shell.open();
    const QAction *play = shell.action("actionPlay");
    shell.action("actionPlay")->trigger();
    QVERIFY(play->isChecked());
    shell->slotStopCamera();
    QVERIFY(!play->isChecked());
    shell->slotStartCamera(); // as the panel does
    QVERIFY(play->isChecked());
    shell->slotCloseCamera();
    QVERIFY(!play->isChecked());
}

void StreamTest::framesAreCounted()
{
    const Shell shell;
    shell.play();
    QSignalSpy status(shell.window.get(), SIGNAL(sigStatusBar(int, double, double)));
    Frame frame(64, 48, 9);
    frame.deliver();
    frame.deliver();
    QCOMPARE(status, (QList<QVariantList>{{0, 1.0, 0.0}, {0, 2.0, 0.0}}));
}

// The GUI thread is busy, and the display thread is processing a frame.
void StreamTest::theCallbackNeverBlocks()
{
    const Shell shell;
    shell.play();
    QSemaphore inTheMiddle;
    QSemaphore goOn;
    QObject::connect(
        shell.window.get(), &MainWindow::sigDisplayFrame, shell.window.get(),
        [&] {
            inTheMiddle.release();
            goOn.acquire();
        },
        Qt::DirectConnection);
    Frame frame(64, 48, 9);
    frame.deliver();
    inTheMiddle.acquire();
    for (int i = 0; i < 1000; ++i)
        frame.deliver(); // returns when the callback has returned
    goOn.release(1000);
    QTRY_COMPARE(shell.recv(), QString("1001"));
    shell->slotStopCamera();
}

void StreamTest::countsKeepTheLayout()
{
    const Shell shell;
    shell->show();
    QVERIFY(QTest::qWaitForWindowExposed(shell.window.get()));
    shell->slotStatusBar(0, 123, 0);
    shell->slotStatusBar(1, 29.9, 149.9);
    settle();
    const LayoutRequests ofWindow(shell.window.get());
    const LayoutRequests ofStatusBar(shell->statusBar());
    shell->slotStatusBar(0, 456, 0);
    shell->slotStatusBar(1, 30.0, 150.0);
    settle();
    QCOMPARE(ofWindow.count, 0);
    QCOMPARE(ofStatusBar.count, 0);

    // Expected numbers fit without a layout; the label grows for longer ones.
    const int wide = shell.recvLabel()->width();
    shell->slotStatusBar(0, 12345678, 0);
    settle();
    QCOMPARE(ofWindow.count, 0);
    QCOMPARE(shell.recvLabel()->width(), wide);
    shell->slotStatusBar(0, 1234567890123, 0);
    QTRY_VERIFY(shell.recvLabel()->width() > wide);
    QCOMPARE(shell.recvLabel()->size(), QLabel(shell.recvLabel()->text()).sizeHint());
}

void StreamTest::ratesComeWithEvery31stFrame()
{
    const Shell shell;
    shell.play();
    QSignalSpy status(shell.window.get(), SIGNAL(sigStatusBar(int, double, double)));
    Frame frame(64, 48, 9);
    for (int i = 0; i < 62; ++i)
        frame.deliver();
    QList<int> places;
    for (int i = 0; i < status.size(); ++i) {
        if (status.at(i).at(0) == 1) {
            places << i;
            QVERIFY(status.at(i).at(1).toDouble() > 0.0);
        }
    }
    QCOMPARE(places, QList<int>({30, 62})); // before the count of the same frame
    QCOMPARE(status.last(), QVariantList({0, 62.0, 0.0}));
}

void StreamTest::aLateRateIsNotDisplayed()
{
    const Shell shell;
    shell.play();
    Frame frame(64, 48, 9);
    for (int i = 0; i < 31; ++i)
        frame.deliver();
    shell->slotStopCamera();
    QCoreApplication::processEvents();
    QCOMPARE(shell.rateLabel()->text(), QString("               0.0 fps (0.0 MB/s)"));
    QCOMPARE(shell.recv(), QString("31"));
}

void StreamTest::theStatusDisplaysFiguresAtAnyTime()
{
    const Shell shell;
    emit shell->sigStatusBar(1, 12.5, 3.0);
    QCOMPARE(shell.rateLabel()->text().trimmed(), QString("12.5 fps (3.0 MB/s)"));
    shell.play();
    shell->slotStopCamera();
    emit shell->sigStatusBar(1, 13.5, 4.0);
    QCOMPARE(shell.rateLabel()->text().trimmed(), QString("13.5 fps (4.0 MB/s)"));
    settle();
    QCOMPARE(shell.rateLabel()->text().trimmed(), QString("13.5 fps (4.0 MB/s)"));
}

void StreamTest::exceptionsStayInTheCallback()
{
    const Shell shell;
    shell.play();
    QMetaObject::Connection thrower = QObject::connect(
        shell.window.get(), &MainWindow::sigStatusBar, shell.window.get(),
        [] { throw std::bad_alloc(); }, Qt::DirectConnection);
    Frame frame(64, 48, 9);
    QVERIFY(frame.deliver());
    QObject::disconnect(thrower);
    QVERIFY(shows(shell, frame, gray(9)));
    shell->slotStopCamera();
}

void StreamTest::manyCyclesRunWithoutWarnings()
{
    const Shell shell;
    Frame frame(64, 48, 1);
    for (int i = 0; i < 50; ++i) {
        shell->slotOpenCamera(i % 2);
        shell->slotStartCamera();
        frame.deliver();
        if (i % 3 != 0)
            shell->slotStopCamera();
        shell->slotCloseCamera();
    }
    QVERIFY(fakeorvalis::openHandles().empty());
}

ORVALIS_QTEST_MAIN(StreamTest)
#include "StreamTest.moc"
