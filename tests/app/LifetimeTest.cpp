// SPDX-License-Identifier: MIT
// Destruction of the window, and libraries that misbehave.
#include "tests/app/BusyPool.h"
#include "tests/app/Shell.h"
#include "tests/support/ProcessFigures.h"

#include <QDir>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QThreadPool>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <random>
#include <thread>

using shell::BoxAnswer;
using shell::BusyPool;
using shell::dismissBoxes;
using shell::Frame;
using shell::Shell;

class LifetimeTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void theLibraryIsUninitialisedBeforeTheClose();
    void withoutACameraNothingIsClosed();
    void framesAfterTheUninitAreHarmless();
    void lateTasksFindNoWindow();
    void theWindowDoesNotWaitForAHangingPass();
    void framesAfterAFailedStopAreDiscarded();
    void framesThatAreNotDisplayedUseNoMemory();
    void aLateGuiThreadLimitsPendingImages();
    void tasksCalledDirectlyLetTheWindowClose();
    void theUserMayGiveUpTheWaitForTheDisk();
    void theWaitForTheDiskEndsWhenAllIsSaved();
    void randomUseOfAFailingLibrary_data();
    void randomUseOfAFailingLibrary();
    void randomUseOfAHostileLibrary_data();
    void randomUseOfAHostileLibrary();
};

void LifetimeTest::theLibraryIsUninitialisedBeforeTheClose()
{
    Shell shell;
    shell.play();
    shell.window.reset();
    QCOMPARE(shell::lifeCalls(), QStringList({"OrvalisUninit()", "OrvalisStopAcquisition(h1)",
                                              "OrvalisCloseCamera(h1)"}));
}

void LifetimeTest::withoutACameraNothingIsClosed()
{
    Shell shell;
    fakeorvalis::clearCalls();
    shell.window.reset();
    QCOMPARE(shell::texts(fakeorvalis::calls()), QStringList("OrvalisUninit()"));
}

void LifetimeTest::framesAfterTheUninitAreHarmless()
{
    Shell shell;
    shell.play();
    Frame frame(64, 48, 3);
    bool delivered = false;
    fakeorvalis::onCall("OrvalisUninit", [&] {
        for (int i = 0; i < 40; ++i)
            delivered = frame.deliver();
    });
    shell.window.reset();
    QVERIFY(delivered);
}

void LifetimeTest::lateTasksFindNoWindow()
{
    OFrameCallback late = nullptr;
    {
        Shell shell;
        shell.play();
        late = fakeorvalis::callback();
        shell.window.reset();
        DiscoveryThread(&shell); // a task that starts after the window is destroyed
    }
    QVERIFY(g_inst.load() == nullptr);
    Frame frame(64, 48, 3);
    late(&frame.record);
}

void LifetimeTest::theWindowDoesNotWaitForAHangingPass()
{
    std::mutex mutex;
    std::condition_variable changed;
    bool inside = false;
    bool go = false;
    Shell shell;
    fakeorvalis::onCall("OrvalisGetDisplayName", [&] {
        if (QThread::currentThread() == qApp->thread())
            return;
        std::unique_lock lock(mutex);
        inside = true;
        changed.notify_all();
        changed.wait(lock, [&] { return go; });
    });
    shell->OnTimer();
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return inside; });
    }
    shell.window.reset(); // returns although the library call does not
    {
        const std::lock_guard lock(mutex);
        go = true;
    }
    changed.notify_all();
    QThreadPool::globalInstance()->waitForDone();
}

namespace {

/// Each act() is one random action by user, bus or camera.
class RandomUser {
public:
    RandomUser(const Shell &shell, unsigned seed) : m_shell(shell), m_random(seed) {}

    void act()
    {
        switch (m_random() % 12) {
        case 0:
            m_shell->slotOpenCamera(static_cast<int>(m_random() % 3) - 1);
            break;
        case 1:
            m_shell->slotCloseCamera();
            break;
        case 2:
        case 3:
            m_shell->slotStartCamera();
            break;
        case 4:
            m_shell->slotStopCamera();
            break;
        case 5:
            m_shell->slotOneGrab();
            break;
        case 6:
            (void)m_shell->DiscoveryProc();
            break;
        case 7:
            m_shell.action("actionDrawCenter")->toggle();
            break;
        case 8:
            m_shell->slotZoomFit();
            break;
        default:
            deliver();
        }
        QCoreApplication::processEvents();
    }

private:
    void deliver()
    {
        m_records.push_back(
            {random32(), random32(), random32(), random32(), nullptr, nullptr, nullptr});
        const bool sane = m_random() % 2 == 0;
        (void)fakeorvalis::deliver(sane ? m_frame.record : m_records.back());
    }
    std::uint32_t random32() { return static_cast<std::uint32_t>(m_random()); }

    const Shell &m_shell;
    std::mt19937 m_random;
    std::deque<OImageFrame> m_records; // kept, because the viewer reads them after delivery
    Frame m_frame{16, 16, 50};
};

void addSeeds()
{
    QTest::addColumn<uint>("seed");
    for (const uint seed : {1U, 2U, 3U, 4U})
        QTest::addRow("%u", seed) << seed;
}

} // namespace

void LifetimeTest::framesAfterAFailedStopAreDiscarded()
{
    const Shell shell;
    shell.play();
    fakeorvalis::fail("OrvalisStopAcquisition");
    shell->slotStopCamera();
    Frame stale(64, 48, 200);
    QVERIFY(stale.deliver()); // the library may free it with the close
    fakeorvalis::fail("OrvalisStopAcquisition", ORVALIS_OK);
    shell->slotCloseCamera();
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    shell.play();
    Frame frame(64, 48, 60);
    QTRY_VERIFY((frame.deliver(), !shown.isEmpty()));
    const QImage first = shown.first().first().value<QPixmap>().toImage();
    QCOMPARE(first.pixel(0, 0), shell::gray(60));
}

void LifetimeTest::framesThatAreNotDisplayedUseNoMemory()
{
    constexpr int batches = 80;
    constexpr int batch = 5000;
    constexpr long allowedKiB = 8 * 1024; // queue entries alone would need more
    const Shell shell;
    shell.play();
    fakeorvalis::fail("OrvalisStopAcquisition");
    shell->slotStopCamera();
    Frame frame(64, 48, 60);
    long early = 0;
    for (int i = 0; i < batches; ++i) {
        int left = batch;
        (void)fakeorvalis::deliverEach([&] { return left-- > 0 ? &frame.record : nullptr; });
        QCoreApplication::processEvents(); // updates the counts in the status bar
        early = i == batches / 10 ? viewertest::processFigures().residentKiB : early;
    }
    QVERIFY(viewertest::processFigures().residentKiB - early < allowedKiB);
    fakeorvalis::fail("OrvalisStopAcquisition", ORVALIS_OK);
}

void LifetimeTest::aLateGuiThreadLimitsPendingImages()
{
    constexpr int side = 2048;
    constexpr int most = 64 / (4 * side * side / 1024 / 1024) + 1;
    const Shell shell([] { shell::setRegion(side, side); });
    shell.play();
    std::atomic<int> sent{0};
    QObject::connect(shell.window.get(), &MainWindow::sigDisplayFrame, [&sent] { ++sent; });
    Frame frame(side, side, 60);
    while (sent < most - 1) // the GUI thread processes no event
        frame.deliver();
    Frame newest(side, side, 61);
    for (int i = 0; i < 50; ++i) {
        newest.deliver();
        std::this_thread::sleep_for(std::chrono::milliseconds(10)); // the pace of a camera
    }
    QVERIFY2(sent <= most, qPrintable(QString::number(sent)));
    const QColor due(shell::gray(61));
    QTRY_COMPARE(shell.picture().isNull() ? QColor() : shell.picture().pixelColor(0, 0), due);
}

// The window waits for the tasks that it started; it did not start these.
void LifetimeTest::tasksCalledDirectlyLetTheWindowClose()
{
    Shell shell;
    shell.open();
    shell->slotOneGrab();
    shell->slotStopCamera(); // so that the task waits for no frame
    OneGrabThread(shell.window.get());
    DiscoveryThread(shell.window.get());
    shell.window.reset();
    QVERIFY(g_inst.load() == nullptr);
}

namespace {

/// The message box of a hidden window, null if there is none.
QMessageBox *notice()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        auto *box = qobject_cast<QMessageBox *>(widget);
        if (box != nullptr && box->isVisible())
            return box;
    }
    return nullptr;
}

/// Runs `act` on the message box as soon as it is visible.
class OnNotice : public QTimer {
public:
    explicit OnNotice(std::function<void(QMessageBox &)> act)
    {
        setInterval(5);
        connect(this, &QTimer::timeout, this, [this, act] {
            if (QMessageBox *box = notice()) {
                stop();
                said = box->text();
                act(*box);
            }
        });
        start();
    }
    QString said;
};

/// Arms saving, and returns when a save task has started.
bool saveOneFrame(const Shell &shell, Frame &frame, const QString &path)
{
    shell.child<QLineEdit>("edSavePath")->setText(path);
    shell.action("actionSave")->trigger();
    return QTest::qWaitFor(
        [&] { return frame.deliver() && !shell.action("actionSave")->isChecked(); });
}

} // namespace

void LifetimeTest::theUserMayGiveUpTheWaitForTheDisk()
{
    const QTemporaryDir directory;
    Shell shell;
    shell.play();
    BusyPool disk; // does not respond
    {
        Frame frame(64, 48, 3);
        QVERIFY(saveOneFrame(shell, frame, directory.path()));
    }
    QVERIFY(shell->bytesToSave() > 0);
    OnNotice giveUp([](QMessageBox &box) { box.buttons().first()->click(); });
    shell.window.reset(); // returns although the disk does not respond
    QVERIFY2(giveUp.said.contains("saved"), qPrintable(giveUp.said));
    QVERIFY(notice() == nullptr);
    disk.release();
    QThreadPool::globalInstance()->waitForDone(); // the job outlives the window
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files).size(), 1);
}

void LifetimeTest::theWaitForTheDiskEndsWhenAllIsSaved()
{
    const QTemporaryDir directory;
    Shell shell;
    shell.play();
    BusyPool disk; // does not respond
    {
        Frame frame(64, 48, 3);
        QVERIFY(saveOneFrame(shell, frame, directory.path()));
    }
    OnNotice wait([&](QMessageBox &) { disk.release(); });
    shell.window.reset();
    QVERIFY(!wait.said.isEmpty());
    QVERIFY(notice() == nullptr);
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files).size(), 1);
}

void LifetimeTest::randomUseOfAFailingLibrary_data() { addSeeds(); }

void LifetimeTest::randomUseOfAFailingLibrary()
{
    QFETCH(uint, seed);
    const Shell shell;
    QTimer boxes;
    dismissBoxes(&boxes);
    RandomUser user(shell, seed);
    std::mt19937 random(seed);
    for (int i = 0; i < 150; ++i) {
        fakeorvalis::failAll(random() % 3 == 0);
        user.act();
    }
    fakeorvalis::failAll(false);
    shell->slotCloseCamera();
    QVERIFY(!shell->isAcquiring());
}

void LifetimeTest::randomUseOfAHostileLibrary_data() { addSeeds(); }

void LifetimeTest::randomUseOfAHostileLibrary()
{
    QFETCH(uint, seed);
    const Shell shell;
    QTimer boxes;
    dismissBoxes(&boxes);
    RandomUser user(shell, seed);
    fakeorvalis::hostile(seed);
    for (int i = 0; i < 150; ++i)
        user.act();
    fakeorvalis::hostile(0);
    shell->slotCloseCamera();
    QVERIFY(!shell->isAcquiring());
}

ORVALIS_QTEST_MAIN(LifetimeTest)
#include "LifetimeTest.moc"
