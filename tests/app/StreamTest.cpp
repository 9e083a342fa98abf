// SPDX-License-Identifier: MIT
// Play, frames, stop and the centre cross.
#include "tests/app/Shell.h"

#include <QSemaphore>
#include <QTimeLine>
#include <QtConcurrent>

#include <latch>

using shell::Frame;
using shell::gray;
using shell::Shell;
using shell::shows;

class StreamTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void startMakesItsCallsInOrder_data();
    void startMakesItsCallsInOrder();
    void startGoesOnWhateverFails_data();
    void startGoesOnWhateverFails();
    void startTellsEveryone();
    void startWhileStreamingDoesNothing();
    void startWithoutACameraDoesNothing();
    void startLeavesAnEmptyScene();
    void stopMakesItsCallsInOrder();
    void stopWithoutAStreamDoesNothing();
    void stopKeepsTheCountAndClearsTheRate();
    void playShowsWhetherItPlays();
    void framesAreCounted();
    void theCallbackWaitsForNobody();
    void countsLeaveTheLayoutAlone();
    void ratesComeWithEvery31stFrame();
    void aRateThatComesLateIsNotShown();
    void theNewestFrameIsShown();
    void planesAreChosenByFormat_data();
    void planesAreChosenByFormat();
    void aWidthNotDivisibleBy4ShowsAlignedRows_data();
    void aWidthNotDivisibleBy4ShowsAlignedRows();
    void greyIsShownWhileThePoolIsBusy();
    void brokenFramesAreDropped();
    void framesBehindAStopAreNotShown();
    void eventsDuringStartMayCloseTheCamera();
    void eventsDuringStartMayStartAgain();
    void theFormatIsReadAnewByEveryStart();
    void manyCyclesAreQuiet();

    void fitFollowsEveryFrame();
    void zoomActionsSetTheScale();

    void theCrossIsPainted_data();
    void theCrossIsPainted();
    void theCrossTakesNewValuesWithTheNextFrame();
};

namespace {

constexpr std::uint32_t bayerGR8 = 0x01080008;
constexpr std::uint32_t bayerGR12 = 0x01100010;
constexpr std::uint32_t mono8 = 0x01080001;
constexpr std::uint32_t mono12 = 0x01100005;
constexpr std::uint32_t rgb8 = 0x02180014;

/// Lets events through, and those that they bring about.
void settle()
{
    for (int round = 0; round < 10; ++round)
        QCoreApplication::processEvents();
}

/// Counts the times that a widget is to lay itself out anew.
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

/// Keeps every thread of the global pool busy while it lives.
class BusyPool {
public:
    BusyPool()
    {
        for (int i = 0; i < QThreadPool::globalInstance()->maxThreadCount(); ++i)
            m_tasks.addFuture(QtConcurrent::run([this] { m_end.wait(); }));
    }
    ~BusyPool()
    {
        m_end.count_down();
        m_tasks.waitForFinished();
    }

private:
    std::latch m_end{1};
    QFutureSynchronizer<void> m_tasks;
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
    shell::setPixelFormat(format.toStdString(), mono8);
    shell->slotStartCamera();
    const QStringList calls = shell::calls();
    QCOMPARE(calls.mid(0, 4),
             QStringList({"OrvalisGetCamInfo(h1)", "OrvalisGetSizeInfo(h1)",
                          "OrvalisGetPixelFormatStr(h1)",
                          QString("OrvalisSetBayerConversion(h1, %1)").arg(conversion)}));
    QCOMPARE(calls.size(), 5);
    QVERIFY(calls.last().startsWith("OrvalisStartAcquisition(h1"));
}

void StreamTest::startGoesOnWhateverFails_data()
{
    QTest::addColumn<QString>("function");
    for (const char *name : {"OrvalisGetCamInfo", "OrvalisGetSizeInfo", "OrvalisGetPixelFormatStr",
                             "OrvalisSetBayerConversion", "OrvalisStartAcquisition"})
        QTest::newRow(name) << name;
}

void StreamTest::startGoesOnWhateverFails()
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

void StreamTest::startTellsEveryone()
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

void StreamTest::playShowsWhetherItPlays()
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

// The thread of the window is busy, and so is the display thread, in the middle of a frame.
void StreamTest::theCallbackWaitsForNobody()
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

void StreamTest::countsLeaveTheLayoutAlone()
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

    // Longer numbers have their room, and those that are longer than expected get it.
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
    QCOMPARE(places, QList<int>({30, 62})); // in front of the count of the same frame
    QCOMPARE(status.last(), QVariantList({0, 62.0, 0.0}));
}

void StreamTest::aRateThatComesLateIsNotShown()
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

void StreamTest::theNewestFrameIsShown()
{
    const Shell shell;
    shell.play();
    Frame old(64, 48, 10);
    Frame newest(64, 48, 200);
    QVERIFY(shows(shell, old, gray(10)));
    QVERIFY(shows(shell, newest, gray(200)));
    QCOMPARE(shell.picture().size(), QSize(64, 48));
}

void StreamTest::planesAreChosenByFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<uint>("code");
    QTest::addColumn<int>("plane"); // value of the plane that is to be shown
    QTest::newRow("Mono8") << "Mono8" << mono8 << 1;
    QTest::newRow("Mono12") << "Mono12" << mono12 << 3;
    QTest::newRow("12-bit code") << "Mono8" << bayerGR12 << 3;
    QTest::newRow("Bayer") << "BayerGR8" << bayerGR8 << 2;
    QTest::newRow("Bayer 12") << "BayerGR12" << bayerGR12 << 2;
    QTest::newRow("RGB") << "RGB8" << rgb8 << 2;
}

void StreamTest::planesAreChosenByFormat()
{
    QFETCH(QString, format);
    QFETCH(uint, code);
    QFETCH(int, plane);
    const Shell shell;
    shell.open();
    shell::setPixelFormat(format.toStdString(), code);
    shell->slotStartCamera();
    std::vector<std::uint8_t> raw(64 * 48, 1);
    std::vector<std::uint8_t> rgb(64 * 48 * 3, 2);
    std::vector<std::uint8_t> grey(64 * 48, 3);
    OImageFrame record{64 * 48, 64, 48, 8, raw.data(), rgb.data(), grey.data()};
    QTRY_VERIFY((fakeorvalis::deliver(record), !shell.item()->pixmap().isNull()));
    QCOMPARE(shell.picture().pixel(63, 47), gray(plane));
    shell->slotStopCamera();
}

void StreamTest::aWidthNotDivisibleBy4ShowsAlignedRows_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("bytes");
    QTest::newRow("grey") << "Mono8" << 1;
    QTest::newRow("colour") << "RGB8" << 3;
}

void StreamTest::aWidthNotDivisibleBy4ShowsAlignedRows()
{
    QFETCH(QString, format);
    QFETCH(int, bytes);
    constexpr int width = 37;
    constexpr int height = 11;
    const Shell shell;
    shell.open();
    shell::setRegion(width, height);
    shell::setPixelFormat(format.toStdString(), mono8);
    shell->slotStartCamera();
    Frame frame(width, height, 0);
    for (std::size_t i = 0; i < frame.plane().size(); ++i)
        frame.plane()[i] = static_cast<std::uint8_t>(1 + i % 251);
    QTRY_VERIFY((frame.deliver(), !shell.item()->pixmap().isNull()));
    // Rows start at multiples of 4 bytes although the frame's rows follow each other closely.
    const int stride = (width * bytes + 3) / 4 * 4;
    const QImage picture = shell.picture();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto at = [&](int channel) {
                const auto place = static_cast<std::size_t>(y * stride + x * bytes + channel);
                const auto end = static_cast<std::size_t>(width * height * bytes);
                return place < end ? frame.plane()[place] : 0;
            };
            const QRgb expected = bytes == 1 ? gray(at(0)) : qRgb(at(0), at(1), at(2));
            QVERIFY2(picture.pixel(x, y) == expected, qPrintable(QString("%1,%2").arg(x).arg(y)));
        }
    }
    shell->slotStopCamera();
}

void StreamTest::greyIsShownWhileThePoolIsBusy()
{
    const Shell shell([] {
        shell::setPixelFormat("Mono8", mono8);
        shell::setRegion(640, 480);
    });
    shell.play();
    Frame frame(640, 480, 77);
    const BusyPool pool; // as with many frames to be saved
    QVERIFY(shows(shell, frame, gray(77)));
    shell.action("actionDrawCenter")->setChecked(true);
    QVERIFY(frame.deliver());
    QTRY_COMPARE(shell.picture().pixelColor(320, 240), QColor(Qt::red));
}

void StreamTest::brokenFramesAreDropped()
{
    const Shell shell;
    shell.play();
    std::vector<std::uint8_t> plane(64 * 48 * 3, 77);
    std::uint8_t *bytes = plane.data();
    std::vector<OImageFrame> broken{
        {64 * 48, 64, 48, 8, nullptr, nullptr, nullptr},
        {65 * 48, 65, 48, 8, bytes, bytes, bytes},
        {64 * 49, 64, 49, 8, bytes, bytes, bytes},
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, bytes, bytes, bytes},
        {0, 0, 0, 0, bytes, bytes, bytes},
    };
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    for (OImageFrame &frame : broken)
        QVERIFY(fakeorvalis::deliver(frame));
    fakeorvalis::callback()(nullptr);
    QTRY_COMPARE(shell.recv(), QString("5"));
    Frame good(64, 48, 5);
    QVERIFY(shows(shell, good, gray(5)));
    for (const QVariantList &signal : qAsConst(shown))
        QCOMPARE(signal.at(0).value<QPixmap>().toImage().pixel(0, 0), gray(5));
    shell->slotStopCamera();
}

void StreamTest::framesBehindAStopAreNotShown()
{
    const Shell shell;
    shell.play();
    Frame first(64, 48, 10);
    QVERIFY(shows(shell, first, gray(10)));
    QPixmap late(64, 48);
    late.fill(Qt::blue);
    shell->slotStopCamera();
    shell->slotDisplayFrame(late);
    QCOMPARE(shell.picture().pixel(0, 0), gray(10));
    Frame behind(64, 48, 20);
    QVERIFY(!behind.deliver());
}

void StreamTest::eventsDuringStartMayCloseTheCamera()
{
    const Shell shell;
    shell.open();
    QTimer::singleShot(0, shell.window.get(), SLOT(slotCloseCamera()));
    shell->slotStartCamera();
    QVERIFY(!shell->isStreaming());
    QVERIFY(fakeorvalis::openHandles().empty());
    QVERIFY(fakeorvalis::callsOf({"OrvalisStartAcquisition"}).empty());
    QVERIFY(shell.action("actionOpen")->isEnabled());
    QVERIFY(!shell.action("actionPlay")->isChecked());
}

void StreamTest::eventsDuringStartMayStartAgain()
{
    const Shell shell;
    shell.open();
    QTimer::singleShot(0, shell.window.get(), SLOT(slotStartCamera()));
    shell->slotStartCamera();
    QVERIFY(shell->isStreaming());
    QCOMPARE(fakeorvalis::callsOf({"OrvalisStartAcquisition"}).size(), std::size_t{1});
    QVERIFY(shell.action("actionPlay")->isChecked());
}

void StreamTest::theFormatIsReadAnewByEveryStart()
{
    const Shell shell;
    shell.play();
    shell->slotStopCamera();
    shell::setPixelFormat("Mono8", mono8);
    shell::setRegion(16, 8);
    shell->slotStartCamera();
    Frame frame(16, 8, 99);
    frame.record.rgb = nullptr;
    QVERIFY(shows(shell, frame, gray(99)));
    QCOMPARE(shell.picture().size(), QSize(16, 8));
}

void StreamTest::manyCyclesAreQuiet()
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

void StreamTest::fitFollowsEveryFrame()
{
    const Shell shell;
    shell->show();
    shell.play();
    Frame frame(64, 48, 30);
    QVERIFY(shows(shell, frame, gray(30)));
    QVERIFY(shell.view()->transform().isIdentity());
    shell.action("actionZoomFIT")->trigger();
    QVERIFY(shell.view()->transform().isIdentity());
    frame.deliver();
    QTRY_VERIFY(!shell.view()->transform().isIdentity());
    QCOMPARE(shell.view()->transform().m11(), shell.view()->transform().m22());
    shell.action("actionZoom100")->trigger();
    QVERIFY(shell.view()->transform().isIdentity());
    Frame next(64, 48, 31);
    QVERIFY(shows(shell, next, gray(31)));
    QVERIFY(shell.view()->transform().isIdentity());
}

void StreamTest::zoomActionsSetTheScale()
{
    const Shell shell;
    shell->show();
    shell.play();
    shell.action("actionZoomFIT")->trigger();
    shell.action("actionZoomIN")->trigger();
    QTRY_VERIFY(shell.view()->transform().m11() > 1.0);
    QTRY_VERIFY(shell.view()->findChildren<QTimeLine *>().isEmpty());
    shell.action("actionZoom100")->trigger();
    shell.action("actionZoomOUT")->trigger();
    QTRY_VERIFY(shell.view()->transform().m11() < 1.0);
}

void StreamTest::theCrossIsPainted_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("width");
    const QList<QSize> sizes{{64, 48}, {65, 49}, {1, 1}, {2, 1}, {3, 2}, {7, 7}};
    for (const QSize &size : sizes) {
        for (const int width : {1, 2, 3, 50})
            QTest::addRow("%dx%d, %d", size.width(), size.height(), width) << size << width;
    }
}

void StreamTest::theCrossIsPainted()
{
    QFETCH(QSize, size);
    QFETCH(int, width);
    const Shell shell;
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    shell->slotCenterValue(width, Qt::green);
    QPixmap pixmap(size);
    pixmap.fill(Qt::blue);
    shell->slotDisplayFrame(pixmap);
    const QImage painted = shell.picture();
    QCOMPARE(pixmap.toImage().pixelColor(0, 0), QColor(Qt::blue)); // the signal's copy is untouched
    const int middleX = size.width() / 2;
    const int middleY = size.height() / 2;
    const int before = width / 2;
    const int behind = (width - 1) / 2;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool cross = (x >= middleX - before && x <= middleX + behind) ||
                               (y >= middleY - before && y <= middleY + behind);
            QVERIFY2(painted.pixelColor(x, y) == QColor(cross ? Qt::green : Qt::blue),
                     qPrintable(QString("%1,%2").arg(x).arg(y)));
        }
    }
}

void StreamTest::theCrossTakesNewValuesWithTheNextFrame()
{
    const Shell shell;
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    QPixmap pixmap(9, 9);
    pixmap.fill(Qt::blue);
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::red));
    shell->slotCenterValue(1, Qt::white);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::red));
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::white));
    shell.action("actionDrawCenter")->setChecked(false);
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::blue));
}

ORVALIS_QTEST_MAIN(StreamTest)
#include "StreamTest.moc"
