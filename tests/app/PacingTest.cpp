// SPDX-License-Identifier: MIT
// The pauses of the window's threads, counted instead of timed.
#include "tests/app/Shell.h"
#include "tests/app/SleepWatch.h"

#include <QSemaphore>

#include <atomic>
#include <memory>
#include <thread>

using shell::Frame;
using shell::gray;
using shell::Shell;

class PacingTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void theDisplayThreadIsJoinedBeforeTheStop();
    void onlyTheNewestFrameIsDisplayed();
    void aPauseFollowsEveryDisplayedFrame();
    void aShotLooks149TimesForItsFrame();
    void aShotEndsAsSoonAsItsFrameArrives();
};

namespace {

constexpr useconds_t displayPauseUs = 33000;
constexpr useconds_t shotPauseUs = 10000;

} // namespace

// The display thread reads memory of the library, which the library may free after the stop.
void PacingTest::theDisplayThreadIsJoinedBeforeTheStop()
{
    const Shell shell;
    shell.play();
    QSemaphore inTheMiddle;
    std::atomic<bool> ended{false};
    QObject::connect(
        shell.window.get(), &MainWindow::sigDisplayFrame, shell.window.get(),
        [&] {
            inTheMiddle.release();
            while (shell->isAcquiring()) // until the stop ends the loop
                std::this_thread::yield();
            ended = true;
        },
        Qt::DirectConnection);
    Frame frame(64, 48, 9);
    frame.deliver();
    inTheMiddle.acquire();
    bool joined = false;
    fakeorvalis::onCall("OrvalisStopAcquisition", [&] { joined = ended; });
    shell->slotStopCamera();
    QVERIFY(joined);
}

void PacingTest::onlyTheNewestFrameIsDisplayed()
{
    QSemaphore paused;
    QSemaphore goOn;
    std::atomic<bool> gate{true};
    const shell::SleepWatch sleeps([&](useconds_t microseconds) {
        if (microseconds == displayPauseUs && gate) {
            paused.release();
            goOn.acquire();
        }
    });
    const Shell shell;
    shell.play();
    paused.acquire(); // the display thread found no frame
    std::vector<std::unique_ptr<Frame>> frames;
    const auto opened = qScopeGuard([&] {
        gate = false;
        goOn.release();
    });
    for (int i = 0; i < 20; ++i) {
        frames.push_back(std::make_unique<Frame>(64, 48, static_cast<std::uint8_t>(100 + i)));
        QVERIFY(frames.back()->deliver());
    }
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    for (int round = 0; round < 3; ++round) { // older frames are not displayed later
        goOn.release();
        paused.acquire();
    }
    QTRY_COMPARE(shell.recv(), QString("20"));
    QCOMPARE(shown.size(), 1);
    QCOMPARE(shell.picture().pixel(0, 0), gray(119));
}

// A pause of 33 ms limits the display to 30 frames a second.
void PacingTest::aPauseFollowsEveryDisplayedFrame()
{
    const shell::SleepWatch sleeps([](useconds_t) { std::this_thread::yield(); });
    const Shell shell;
    shell.play();
    int pictures = 0;
    bool everPaused = true;
    QObject::connect(
        shell.window.get(), &MainWindow::sigDisplayFrame, shell.window.get(),
        [&] { everPaused &= sleeps.pauses(displayPauseUs) >= pictures++; }, Qt::DirectConnection);
    Frame frame(64, 48, 9);
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    QTRY_VERIFY((frame.deliver(), shown.size() >= 50));
    shell->slotStopCamera();
    QVERIFY(everPaused);
}

void PacingTest::aShotLooks149TimesForItsFrame()
{
    const shell::SleepWatch sleeps([](useconds_t) {});
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    QTRY_VERIFY(!shell->isAcquiring());
    QCOMPARE(sleeps.pauses(shotPauseUs), 149);
}

void PacingTest::aShotEndsAsSoonAsItsFrameArrives()
{
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    Frame frame(64, 48, 70);
    QVERIFY(frame.deliver());
    QTRY_VERIFY(!shell->isAcquiring());
    const shell::SleepWatch sleeps;
    QSignalSpy status(shell.window.get(), SIGNAL(sigStatusBar(int, double, double)));
    OneGrabThread(shell.window.get());
    QCOMPARE(sleeps.pauses(shotPauseUs), 0);
    QVERIFY(status.isEmpty());
}

ORVALIS_QTEST_MAIN(PacingTest)
#include "PacingTest.moc"
