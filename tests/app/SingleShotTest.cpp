// SPDX-License-Identifier: MIT
// One frame from a camera that does not stream.
#include "tests/app/BusyPool.h"
#include "tests/app/Shell.h"

#include <QThreadPool>

#include <new>

using shell::bayerGR12;
using shell::BusyPool;
using shell::Frame;
using shell::gray;
using shell::mono12;
using shell::mono8;
using shell::Shell;

class SingleShotTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void makesItsCallsInOrder_data();
    void makesItsCallsInOrder();
    void everyFrameIsDisplayedAndCounted();
    void planesAreChosenByFormat_data();
    void planesAreChosenByFormat();
    void withoutAFrameItGivesUp();
    void brokenFramesDoNotEndTheShot();
    void aFrameLargerThanAnnouncedIsDisplayedWhole();
    void needsAnIdleCamera();
    void stopEndsTheWait();
    void closeEndsTheWait();
    void aStreamAfterAStoppedShotContinues();
    void aShotAfterAStoppedShotHasItsOwnWait();
    void shotPlayShot();
    void theWindowMayBeDestroyedDuringTheWait();
    void manyShotsBehaveLikeOne();
    void playStaysUnchecked();
    void theCrossIsPainted();
    void doesNotWaitForSaves_data();
    void doesNotWaitForSaves();
    void colourNeedsNoBayerPattern();
    void exceptionsStayInTheCallback();
    void aFrameWithoutARawSizeIsDisplayed();
    void aLateGuiThreadLimitsPendingImages();
    void aSettingDuringAShotStartsNoStream_data();
    void aSettingDuringAShotStartsNoStream();

private:
    static bool isIdle(const Shell &shell) { return !shell->isAcquiring(); }
};

namespace {

QString modeCall(const char *mode)
{
    return QString("OrvalisSetNodeEnum(h1, \"AcquisitionMode\", \"%1\")").arg(mode);
}

} // namespace

void SingleShotTest::makesItsCallsInOrder_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("conversion");
    QTest::newRow("Mono8") << "Mono8" << 0;
    QTest::newRow("Bayer") << "BayerGR8" << 1;
    QTest::newRow("RGB") << "RGB8" << 0;
}

void SingleShotTest::makesItsCallsInOrder()
{
    QFETCH(QString, format);
    QFETCH(int, conversion);
    const Shell shell;
    shell.open();
    shell::setPixelFormat(format.toStdString(), mono8);
    QSignalSpy status(shell.window.get(), SIGNAL(sigStatusBar(int, double, double)));
    shell.action("actionOneGrab")->trigger();
    QStringList calls = shell::calls();
    QCOMPARE(calls.mid(0, 5),
             QStringList({modeCall("SingleFrame"), "OrvalisGetCamInfo(h1)",
                          "OrvalisGetSizeInfo(h1)", "OrvalisGetPixelFormatStr(h1)",
                          QString("OrvalisSetBayerConversion(h1, %1)").arg(conversion)}));
    QCOMPARE(calls.size(), 6);
    QVERIFY(calls.last().startsWith("OrvalisStartAcquisition(h1"));
    QCOMPARE(status, (QList<QVariantList>{{0, 0.0, 0.0}}));
    QVERIFY(!shell.action("actionOneGrab")->isEnabled());
    QVERIFY(!shell.action("actionPlay")->isEnabled());
    QVERIFY(shell.action("actionStop")->isEnabled());
    fakeorvalis::clearCalls();
    Frame frame(64, 48, 70);
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell::calls(), QStringList({"OrvalisStopAcquisition(h1)", modeCall("Continuous")}));
    QVERIFY(shell.action("actionOneGrab")->isEnabled());
    QVERIFY(!shell.action("actionStop")->isEnabled());
}

// A camera without single-frame mode continues until it is stopped.
void SingleShotTest::everyFrameIsDisplayedAndCounted()
{
    const Shell shell;
    shell.open();
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    shell->slotOneGrab();
    Frame frame(64, 48, 70);
    Frame second(64, 48, 71);
    OImageFrame empty{64 * 48, 64, 48, 8, nullptr, nullptr, nullptr};
    QVERIFY(frame.deliver());
    QVERIFY(fakeorvalis::deliver(empty)); // counted, but not displayed
    QVERIFY(second.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shown.size(), 2);
    // Checks the signal, not the view: the shot may end between the two frames, and the view
    // discards images that arrive after its end.
    const auto sent = [&shown](int i) { return shown.at(i).at(0).value<QPixmap>().toImage(); };
    QCOMPARE(sent(0).pixel(5, 5), gray(70));
    QCOMPARE(sent(1).pixel(5, 5), gray(71));
    QCOMPARE(shell.recv(), QString("3"));
    const QStringList log = shell.log();
    QCOMPARE(log.last(), QString("Success open camera[CAM-A] 64x48")); // a shot logs nothing
}

void SingleShotTest::planesAreChosenByFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<uint>("code");
    QTest::addColumn<int>("plane");
    QTest::newRow("Mono8") << "Mono8" << mono8 << 1;
    QTest::newRow("Mono12") << "Mono12" << mono12 << 3;
    QTest::newRow("12-bit code") << "Mono" << bayerGR12 << 3;
    QTest::newRow("Bayer") << "BayerGR8" << 0x01080008U << 2;
    QTest::newRow("RGB") << "RGB8" << 0x02180014U << 2;
}

void SingleShotTest::planesAreChosenByFormat()
{
    QFETCH(QString, format);
    QFETCH(uint, code);
    QFETCH(int, plane);
    const Shell shell;
    shell.open();
    shell::setPixelFormat(format.toStdString(), code);
    shell::setRegion(37, 11);
    shell->slotOneGrab();
    // Exactly as long as the frame says; rows follow each other without padding.
    std::vector<std::uint8_t> raw(37 * 11, 1);
    std::vector<std::uint8_t> rgb(37 * 11 * 3, 2);
    std::vector<std::uint8_t> grey(37 * 11, 3);
    raw.back() = grey.back() = rgb.back() = 9;
    OImageFrame record{37 * 11, 37, 11, 8, raw.data(), rgb.data(), grey.data()};
    QVERIFY(fakeorvalis::deliver(record));
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().size(), QSize(37, 11));
    QCOMPARE(shell.picture().pixel(0, 0), gray(plane));
    QCOMPARE(shell.picture().pixel(0, 10), gray(plane));
    QCOMPARE(qBlue(shell.picture().pixel(36, 10)), 9);
}

void SingleShotTest::withoutAFrameItGivesUp()
{
    const Shell shell;
    shell.open();
    const QImage before = shell.picture();
    shell->slotOneGrab();
    fakeorvalis::clearCalls();
    QSignalSpy status(shell.window.get(), SIGNAL(sigStatusBar(int, double, double)));
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell::calls(), QStringList({"OrvalisStopAcquisition(h1)", modeCall("Continuous")}));
    QCOMPARE(status, (QList<QVariantList>{{0, 0.0, 0.0}}));
    QCOMPARE(shell.recv(), QString("0"));
    QCOMPARE(shell.picture(), before);
}

void SingleShotTest::brokenFramesDoNotEndTheShot()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    OImageFrame empty{64 * 48, 64, 48, 8, nullptr, nullptr, nullptr};
    Frame good(64, 48, 70);
    OImageFrame overdrawn = good.record;
    overdrawn.width = 65;
    QVERIFY(fakeorvalis::deliver(empty));
    QVERIFY(fakeorvalis::deliver(overdrawn));
    fakeorvalis::callback()(nullptr);
    QVERIFY(good.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().pixel(0, 0), gray(70));
    QCOMPARE(shell.recv(), QString("3"));
}

// A single shot copies nothing into memory of the announced size.
void SingleShotTest::aFrameLargerThanAnnouncedIsDisplayedWhole()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    Frame large(80, 60, 70);
    QVERIFY(large.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().size(), QSize(80, 60));
    QCOMPARE(shell.picture().pixel(79, 59), gray(70));
}

void SingleShotTest::needsAnIdleCamera()
{
    const Shell shell;
    fakeorvalis::clearCalls();
    shell->slotOneGrab();
    QCOMPARE(shell::calls(), QStringList());
    shell.play();
    shell->slotOneGrab();
    QCOMPARE(shell::calls(), QStringList());
    shell->slotStopCamera();
    shell->slotOneGrab();
    fakeorvalis::clearCalls();
    shell->slotOneGrab(); // immediately after the first
    shell->slotStartCamera();
    QCOMPARE(shell::calls(), QStringList());
}

void SingleShotTest::stopEndsTheWait()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    fakeorvalis::clearCalls();
    shell->slotStopCamera();
    QCOMPARE(shell::calls(), QStringList({"OrvalisStopAcquisition(h1)", modeCall("Continuous")}));
    QVERIFY(isIdle(shell));
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(shell::calls().size(), 2); // the end of the wait makes no further calls
}

void SingleShotTest::closeEndsTheWait()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    fakeorvalis::clearCalls();
    shell->slotCloseCamera();
    QCOMPARE(shell::calls(), QStringList({"OrvalisStopAcquisition(h1)", modeCall("Continuous"),
                                          "OrvalisCloseCamera(h1)"}));
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(shell::calls().size(), 3);
}

void SingleShotTest::aStreamAfterAStoppedShotContinues()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    shell->slotStopCamera();
    shell->slotStartCamera();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    shell->slotFinishedGrab();
    QVERIFY(shell->isStreaming());
    QVERIFY(fakeorvalis::callback() != nullptr);
}

void SingleShotTest::aShotAfterAStoppedShotHasItsOwnWait()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    shell->slotStopCamera();
    shell->slotOneGrab();
    Frame frame(64, 48, 70);
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.recv(), QString("1"));
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(shell.recv(), QString("1"));
}

void SingleShotTest::shotPlayShot()
{
    const Shell shell;
    shell.open();
    Frame frame(64, 48, 70);
    for (int round = 0; round < 3; ++round) {
        shell->slotOneGrab();
        QVERIFY(frame.deliver());
        QTRY_VERIFY(isIdle(shell));
        shell->slotStartCamera();
        Frame live(64, 48, static_cast<std::uint8_t>(80 + round));
        QTRY_VERIFY((live.deliver(), !shell.item()->pixmap().isNull()));
        QTRY_COMPARE(shell.picture().pixel(0, 0), gray(80 + round));
        shell->slotStopCamera();
    }
}

void SingleShotTest::theWindowMayBeDestroyedDuringTheWait()
{
    Shell shell;
    shell.open();
    shell->slotOneGrab();
    shell.window.reset();
    QVERIFY(fakeorvalis::openHandles().empty());
    QThreadPool::globalInstance()->waitForDone();
}

void SingleShotTest::manyShotsBehaveLikeOne()
{
    const Shell shell;
    shell.open();
    Frame frame(64, 48, 0);
    for (int i = 0; i < 200; ++i) {
        frame.plane().assign(frame.plane().size(), static_cast<std::uint8_t>(i));
        shell->slotOneGrab();
        QVERIFY(frame.deliver());
        QTRY_VERIFY(isIdle(shell));
        QCOMPARE(shell.picture().pixel(0, 0), gray(i));
    }
    QCOMPARE(fakeorvalis::callsOf({"OrvalisStopAcquisition"}).size(), std::size_t{200});
    QCOMPARE(shell.recv(), QString("1"));
}

void SingleShotTest::playStaysUnchecked()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    QVERIFY(!shell.action("actionPlay")->isChecked());
}

void SingleShotTest::theCrossIsPainted()
{
    const Shell shell;
    shell.open();
    shell.action("actionDrawCenter")->setChecked(true);
    shell->slotOneGrab();
    Frame frame(64, 48, 70);
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().pixelColor(32, 3), QColor(Qt::red));
}

void SingleShotTest::doesNotWaitForSaves_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("grey") << "Mono8";
    QTest::newRow("colour") << "RGB8";
}

void SingleShotTest::doesNotWaitForSaves()
{
    QFETCH(QString, format);
    const Shell shell([&] {
        shell::setRegion(640, 480);
        shell::setPixelFormat(format.toStdString(), mono8);
    });
    shell.open();
    const BusyPool pool;
    shell->slotOneGrab();
    Frame frame(640, 480, 70);
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().pixel(0, 0), gray(70));
}

void SingleShotTest::colourNeedsNoBayerPattern()
{
    const Shell shell;
    shell.open();
    shell::setPixelFormat("RGB8", 0x02180014);
    shell->slotOneGrab();
    QCOMPARE(shell::texts(fakeorvalis::callsOf({"OrvalisSetBayerConversion"})),
             QStringList("OrvalisSetBayerConversion(h1, 0)"));
    Frame frame(64, 48, 0);
    for (std::size_t i = 0; i < frame.plane().size(); ++i)
        frame.plane()[i] = static_cast<std::uint8_t>(10 + 100 * (i % 3));
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().pixel(63, 47), qRgb(10, 110, 210));
}

void SingleShotTest::exceptionsStayInTheCallback()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    QMetaObject::Connection thrower = QObject::connect(
        shell.window.get(), &MainWindow::sigStatusBar, shell.window.get(),
        [] { throw std::bad_alloc(); }, Qt::DirectConnection);
    Frame frame(64, 48, 9);
    QVERIFY(frame.deliver());
    QObject::disconnect(thrower);
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().pixel(0, 0), gray(9));
}

void SingleShotTest::aFrameWithoutARawSizeIsDisplayed()
{
    const Shell shell;
    shell.open();
    shell::setPixelFormat("Mono8", mono8);
    shell->slotOneGrab();
    Frame frame(64, 48, 9);
    frame.record.rawSize = 0;
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().pixel(0, 0), gray(9));
}

void SingleShotTest::aLateGuiThreadLimitsPendingImages()
{
    constexpr int side = 2048;
    constexpr int most = 64 / (4 * side * side / 1024 / 1024) + 1;
    const Shell shell([] { shell::setRegion(side, side); });
    shell.open();
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    shell->slotOneGrab();
    Frame frame(side, side, 60);
    for (int i = 0; i < 2 * most; ++i)
        QVERIFY(frame.deliver()); // the GUI thread processes no event
    QVERIFY2(shown.size() <= most, qPrintable(QString::number(shown.size())));
    shown.clear(); // the spy keeps them in memory
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.recv(), QString::number(2 * most));
}

void SingleShotTest::aSettingDuringAShotStartsNoStream_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("region") << QByteArray("on_btnROIApply_clicked");
    QTest::newRow("pixel format") << QByteArray("loadVideoInfo"); // applies it
    QTest::newRow("feature default") << QByteArray("on_btnWBDefault_clicked");
    QTest::newRow("user set") << QByteArray("on_btnUserSetLoad_clicked");
}

// A setting restarts only a stream that Play started.
void SingleShotTest::aSettingDuringAShotStartsNoStream()
{
    QFETCH(QByteArray, slot);
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    fakeorvalis::clearCalls();
    QVERIFY(QMetaObject::invokeMethod(shell.child<QObject>("CameraCtrl"), slot.constData()));
    QCOMPARE(fakeorvalis::callsOf({"OrvalisStartAcquisition", "OrvalisStopAcquisition"}).size(),
             std::size_t{0});
    QVERIFY(!shell.action("actionPlay")->isChecked());
    Frame frame(64, 48, 70);
    QVERIFY(frame.deliver());
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shell.picture().pixel(0, 0), gray(70));
    QVERIFY(!shell.log().contains("start stream Camera[CAM-A]"));
}

ORVALIS_QTEST_MAIN(SingleShotTest)
#include "SingleShotTest.moc"
