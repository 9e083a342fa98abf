// SPDX-License-Identifier: MIT
// One frame from a camera that does not stream.
#include "tests/app/Shell.h"

#include <QThreadPool>

using shell::Frame;
using shell::gray;
using shell::mono8;
using shell::Shell;

class SingleShotTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void makesItsCallsInOrder_data();
    void makesItsCallsInOrder();
    void oneFrameIsShownAndCountedOnce();
    void planesAreChosenByFormat_data();
    void planesAreChosenByFormat();
    void withoutAFrameItGivesUp();
    void brokenFramesAreNotTheOne();
    void aFrameLargerThanAnnouncedIsShownWhole();
    void needsAnIdleCamera();
    void stopEndsTheWait();
    void closeEndsTheWait();
    void aStreamStartedBehindAStoppedShotGoesOn();
    void aShotBehindAStoppedShotHasItsOwnWait();
    void shotPlayShot();
    void theWindowMayGoWhileItWaits();
    void manyShotsBehaveLikeOne();
    void playIsNotMarkedAsPlaying();
    void theCrossIsPainted();

private:
    static bool isIdle(const Shell &shell) { return !shell->isStreaming(); }
};

namespace {

constexpr std::uint32_t mono12 = 0x01100005;
constexpr std::uint32_t bayerGR12 = 0x01100010;

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

void SingleShotTest::oneFrameIsShownAndCountedOnce()
{
    const Shell shell;
    shell.open();
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    shell->slotOneGrab();
    Frame frame(64, 48, 70);
    Frame second(64, 48, 71);
    QVERIFY(frame.deliver());
    QVERIFY(second.deliver()); // from a camera without single-frame mode
    QTRY_VERIFY(isIdle(shell));
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shell.picture().pixel(5, 5), gray(70));
    QCOMPARE(shell.recv(), QString("1"));
    const QStringList log = shell.log();
    QCOMPARE(log.last(), QString("Success open camera[CAM-A] 64x48")); // nothing is logged
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

void SingleShotTest::brokenFramesAreNotTheOne()
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
    QCOMPARE(shell.recv(), QString("1"));
}

// Nothing is copied into memory of the announced size here.
void SingleShotTest::aFrameLargerThanAnnouncedIsShownWhole()
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
    shell->slotOneGrab(); // right after the first
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
    QCOMPARE(shell::calls().size(), 2); // the end of the wait finds nothing left to do
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

void SingleShotTest::aStreamStartedBehindAStoppedShotGoesOn()
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

void SingleShotTest::aShotBehindAStoppedShotHasItsOwnWait()
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

void SingleShotTest::theWindowMayGoWhileItWaits()
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

void SingleShotTest::playIsNotMarkedAsPlaying()
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

ORVALIS_QTEST_MAIN(SingleShotTest)
#include "SingleShotTest.moc"
