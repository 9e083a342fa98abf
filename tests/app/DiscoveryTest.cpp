// SPDX-License-Identifier: MIT
// Discovery of cameras, and loss of the open one.
#include "tests/app/Shell.h"

#include <QThreadPool>
#include <QtConcurrent>

#include <condition_variable>
#include <mutex>
#include <thread>

using shell::Shell;

class DiscoveryTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void aVanishedCameraIsClosed_data();
    void aVanishedCameraIsClosed();
    void aSwapOfCamerasIsNotDetected();
    void theCheckContinuesAfterAClose();
    void refreshCountsCameras();
    void anEmptyBusIsPublished();
    void anAbsurdNumberOfCamerasIsClamped();
    void passesOnOtherThreadsCloseOnTheGuiThread();
    void aLateLossKeepsANewCamera();
    void hangingPassesAreLimited();
    void pendingListsAreCoalesced();

private:
    static void runPassOnAnotherThread(const Shell &shell)
    {
        std::thread([&] { (void)shell->DiscoveryProc(); }).join();
    }
};

namespace {

const std::vector<fakeorvalis::Camera> both{{"CAM-A", "Camera A"}, {"CAM-B", "Camera B"}};

} // namespace

void DiscoveryTest::aVanishedCameraIsClosed_data()
{
    QTest::addColumn<int>("opened");
    QTest::addColumn<QStringList>("left");
    QTest::addColumn<bool>("closed");
    QTest::newRow("it went") << 0 << QStringList{"CAM-B"} << true;
    QTest::newRow("another went") << 1 << QStringList{"CAM-B"} << false;
    QTest::newRow("all went") << 0 << QStringList() << true;
    QTest::newRow("one came") << 0 << QStringList{"CAM-C", "CAM-A", "CAM-B"} << false;
    QTest::newRow("longer name") << 0 << QStringList{"CAM-A2"} << true;
}

void DiscoveryTest::aVanishedCameraIsClosed()
{
    QFETCH(int, opened);
    QFETCH(QStringList, left);
    QFETCH(bool, closed);
    const Shell shell;
    QCOMPARE(shell->DiscoveryProc(), 0); // the previous count
    shell.open(opened);
    std::vector<fakeorvalis::Camera> cameras;
    for (const QString &id : left)
        cameras.push_back({id.toStdString(), "name"});
    shell::setCameras(cameras);
    QCOMPARE(shell->DiscoveryProc(), 0);
    QCOMPARE(fakeorvalis::openHandles().empty(), closed);
    QCOMPARE(shell.list()->count(), left.size());
}

void DiscoveryTest::aSwapOfCamerasIsNotDetected()
{
    const Shell shell;
    shell->DiscoveryProc();
    shell.open();
    shell::setCameras({{"CAM-X", "x"}, {"CAM-Y", "y"}});
    shell->DiscoveryProc();
    QVERIFY(!fakeorvalis::openHandles().empty());
    QVERIFY(fakeorvalis::callsOf({"OrvalisGetCameraID"}).empty());
}

void DiscoveryTest::theCheckContinuesAfterAClose()
{
    const Shell shell;
    shell->DiscoveryProc();
    shell.open();
    shell->slotCloseCamera();
    shell::setCameras({});
    shell->DiscoveryProc();
    QCOMPARE(shell.log().count("close Camera[CAM-A]"), 2);
    shell::setCameras(both);
    shell->DiscoveryProc();
    QCOMPARE(shell.log().count("close Camera[CAM-A]"), 2);
}

void DiscoveryTest::refreshCountsCameras()
{
    const Shell shell;
    int count = -1;
    fakeorvalis::clearCalls();
    shell->slotRefreshCamera(&count);
    QCOMPARE(count, 2);
    QCOMPARE(shell::texts(fakeorvalis::calls()),
             QStringList({"OrvalisNumberOfCameras()", "OrvalisGetDisplayName(0)",
                          "OrvalisGetDisplayName(1)"}));
    fakeorvalis::fail("OrvalisNumberOfCameras");
    shell->slotRefreshCamera(&count);
    QCOMPARE(count, 0);
}

void DiscoveryTest::anEmptyBusIsPublished()
{
    const Shell shell;
    QSignalSpy lists(shell.window.get(), SIGNAL(sigUpdateCameraList(QStringList)));
    shell::setCameras({});
    shell.action("actionDiscovery")->trigger();
    QCOMPARE(lists, (QList<QVariantList>{{QStringList()}}));
    QCOMPARE(shell.list()->count(), 0);
}

void DiscoveryTest::anAbsurdNumberOfCamerasIsClamped()
{
    const Shell shell;
    shell::setCameras(std::vector<fakeorvalis::Camera>(5000, {"X", "x"}));
    int count = 0;
    shell->slotRefreshCamera(&count);
    QCOMPARE(count, 1024);
}

void DiscoveryTest::passesOnOtherThreadsCloseOnTheGuiThread()
{
    const Shell shell;
    runPassOnAnotherThread(shell);
    shell.open();
    QThread *closedOn = nullptr;
    fakeorvalis::onCall("OrvalisCloseCamera", [&] { closedOn = QThread::currentThread(); });
    shell::setCameras({});
    runPassOnAnotherThread(shell);
    QVERIFY(!fakeorvalis::openHandles().empty());
    QTRY_VERIFY(fakeorvalis::openHandles().empty());
    QCOMPARE(closedOn, qApp->thread());
    QCOMPARE(shell.list()->count(), 0);
}

void DiscoveryTest::aLateLossKeepsANewCamera()
{
    const Shell shell;
    runPassOnAnotherThread(shell);
    shell.open();
    shell::setCameras({{"CAM-B", "Camera B"}});
    runPassOnAnotherThread(shell); // reports the loss of CAM-A
    shell->slotCloseCamera();
    QTRY_COMPARE(shell.list()->count(), 1);
    shell.open(0);
    QCoreApplication::processEvents();
    QCOMPARE(fakeorvalis::openHandles().size(), std::size_t{1});
}

void DiscoveryTest::hangingPassesAreLimited()
{
    std::mutex mutex;
    std::condition_variable changed;
    int inside = 0;
    bool go = false;
    {
        const Shell shell;
        fakeorvalis::onCall("OrvalisNumberOfCameras", [&] {
            if (QThread::currentThread() == qApp->thread())
                return;
            std::unique_lock lock(mutex);
            ++inside;
            changed.wait(lock, [&] { return go; });
        });
        for (int i = 0; i < 30; ++i)
            shell->OnTimer();
        QTRY_VERIFY((std::lock_guard(mutex), inside) >= 2); // passes overlap
        // They do not delay save tasks and the single shot.
        bool ran = false;
        QtConcurrent::run([&] { ran = true; }).waitForFinished();
        QVERIFY(ran);
        QSignalSpy lists(shell.window.get(), SIGNAL(sigUpdateCameraList(QStringList)));
        {
            const std::lock_guard lock(mutex);
            QVERIFY(inside <= 8);
            go = true;
        }
        changed.notify_all();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QVERIFY(lists.size() >= 1);
    }
    fakeorvalis::reset();
}

void DiscoveryTest::pendingListsAreCoalesced()
{
    const Shell shell;
    QSignalSpy lists(shell.window.get(), SIGNAL(sigUpdateCameraList(QStringList)));
    runPassOnAnotherThread(shell);
    shell::setCameras({{"CAM-A", "only one"}});
    runPassOnAnotherThread(shell);
    QCoreApplication::processEvents();
    QCOMPARE(lists, (QList<QVariantList>{{QStringList("only one")}}));
}

ORVALIS_QTEST_MAIN(DiscoveryTest)
#include "DiscoveryTest.moc"
