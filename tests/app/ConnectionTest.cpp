// SPDX-License-Identifier: MIT
// Opening, closing and rebooting a camera, and finding cameras.
#include "tests/app/Shell.h"

#include <QDialog>
#include <QThreadPool>
#include <QtConcurrent>

#include <condition_variable>
#include <mutex>
#include <thread>

using shell::BoxAnswer;
using shell::Shell;

class ConnectionTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void openMakesItsCallsInOrder();
    void openTellsEveryone();
    void openWithoutASelectionDoesNothing();
    void openTakesTheSelectedRow();
    void aDoubleClickedRowIsOpened();
    void openWithACameraOpenOnlyClosesIt();
    void openOfAnotherCameraClosesTheFirst();
    void openOfAnotherCameraEndsTheStream();
    void aFailedOpenIsReported();
    void anIdThatFillsItsBufferIsRead();
    void aFailedSizeIsNotReported();
    void thermalCamerasHaveNoPanel();
    void theRegisterDialogIsMadeAnew();
    void closeMakesItsCallsInOrder();
    void closeWithNothingOpenStillLogs();
    void closeEndsAStream();
    void closePutsTheLogoBack();
    void resetAsks_data();
    void resetAsks();
    void resetOfACameraThatLeftDuringTheQuestionDoesNothing();
    void aFailedCallDuringCloseIsNotReported_data();
    void aFailedCallDuringCloseIsNotReported();
    void exitClosesTheCamera();

    void aVanishedCameraIsClosed_data();
    void aVanishedCameraIsClosed();
    void aCameraSwappedForAnotherGoesUnnoticed();
    void theCheckGoesOnAfterAClose();
    void refreshCountsCameras();
    void anEmptyBusIsPublished();
    void anAbsurdNumberOfCamerasIsCut();
    void passesOnOtherThreadsCloseOnTheGuiThread();
    void aCloseThatComesLateSparesANewCamera();
    void passesThatHangDoNotPileUp();
    void listsGiveWayToNewerOnes();

private:
    static void runPassOnAnotherThread(const Shell &shell)
    {
        std::thread([&] { (void)shell->DiscoveryProc(); }).join();
    }
};

namespace {

const std::vector<fakeorvalis::Camera> both{{"CAM-A", "Camera A"}, {"CAM-B", "Camera B"}};

} // namespace

void ConnectionTest::openMakesItsCallsInOrder()
{
    const Shell shell;
    fakeorvalis::clearCalls();
    shell->slotOpenCamera(1);
    QStringList calls = shell::texts(fakeorvalis::calls());
    QCOMPARE(calls.mid(0, 3), QStringList({"OrvalisGetCameraID(1)", "OrvalisOpenCamera(\"CAM-B\")",
                                           "OrvalisGetSizeInfo(h1)"}));
    const int tree = calls.indexOf("OrvalisGetNodeList(h1, \"Root\")");
    const int probe = calls.indexOf("OrvalisGetNodeString(h1, \"NUCMode\")");
    const int panel = calls.indexOf("OrvalisGetNumAvailablePixelFormats(h1)");
    QVERIFY2(2 < tree && tree < probe && probe < panel, qPrintable(calls.join('\n')));
    QTRY_VERIFY(!fakeorvalis::callsOf({"OrvalisGrabRGBData", "OrvalisGrabRAWData"}).empty());
}

void ConnectionTest::openTellsEveryone()
{
    const Shell shell;
    QSignalSpy opened(shell.window.get(), SIGNAL(sigCameraOpened(bool)));
    shell.open();
    QCOMPARE(opened, (QList<QVariantList>{{true}}));
    QVERIFY(!shell.list()->isEnabled());
    QCOMPARE(shell->windowTitle(), QString("OrvalisViewer - CAM-A 64x48"));
    QCOMPARE(shell.lastLog(), QString("Success open camera[CAM-A] 64x48"));
    QVERIFY(!shell.action("actionOpen")->isEnabled());
    QVERIFY(shell.action("actionClose")->isEnabled());
    QVERIFY(shell.action("actionControl")->isEnabled());
    QVERIFY(shell.action("actionPlay")->isEnabled());
    for (const char *name : {"actionStop", "actionSave", "actionZoomIN", "actionDrawCenter"})
        QVERIFY2(!shell.action(name)->isEnabled(), name);
}

void ConnectionTest::openWithoutASelectionDoesNothing()
{
    const Shell shell([] { shell::setCameras({{"CAM-A", "Camera A"}}); });
    fakeorvalis::clearCalls();
    shell.action("actionOpen")->trigger();
    QCOMPARE(shell::lifeCalls(), QStringList());
    QVERIFY(fakeorvalis::callsOf({"OrvalisGetCameraID"}).empty());
    shell->slotOpenCamera(-2);
    QVERIFY(fakeorvalis::openHandles().empty());
    QCOMPARE(shell.log(), QStringList("Start orvalisviewer"));
}

void ConnectionTest::openTakesTheSelectedRow()
{
    const Shell shell;
    shell.list()->setCurrentRow(1);
    shell.action("actionOpen")->trigger();
    QCOMPARE(shell.lastLog(), QString("Success open camera[CAM-B] 64x48"));
}

void ConnectionTest::aDoubleClickedRowIsOpened()
{
    const Shell shell;
    QMetaObject::invokeMethod(shell.dock("CameraList"), "sigOpenCamera", Q_ARG(int, 1));
    QCOMPARE(shell.lastLog(), QString("Success open camera[CAM-B] 64x48"));
}

void ConnectionTest::openWithACameraOpenOnlyClosesIt()
{
    const Shell shell;
    shell.open();
    shell->slotOpenCamera();
    QCOMPARE(shell::calls(), QStringList({"OrvalisStopAcquisition(h1)", "OrvalisCloseCamera(h1)"}));
    QVERIFY(shell.action("actionOpen")->isEnabled());
    QVERIFY(!shell.action("actionPlay")->isEnabled());
    QVERIFY(shell.list()->isEnabled());
}

void ConnectionTest::openOfAnotherCameraClosesTheFirst()
{
    const Shell shell;
    shell.open();
    shell->slotOpenCamera(1);
    QCOMPARE(shell::lifeCalls().mid(0, 3),
             QStringList({"OrvalisStopAcquisition(h1)", "OrvalisCloseCamera(h1)",
                          "OrvalisOpenCamera(\"CAM-B\")"}));
    QCOMPARE(fakeorvalis::openHandles(), std::vector<std::string>{"h2"});
    QVERIFY(!shell.list()->isEnabled());
}

void ConnectionTest::openOfAnotherCameraEndsTheStream()
{
    const Shell shell;
    shell.play();
    shell->slotOpenCamera(1);
    QVERIFY(!shell->isStreaming());
    QVERIFY(fakeorvalis::callback() == nullptr);
    QCOMPARE(shell::lifeCalls().count("OrvalisStopAcquisition(h1)"), 1);
    shell->slotStartCamera();
    QVERIFY(shell->isStreaming());
}

void ConnectionTest::aFailedOpenIsReported()
{
    const Shell shell;
    fakeorvalis::fail("OrvalisOpenCamera");
    BoxAnswer box(QMessageBox::Ok);
    QStringList logWhileAsked;
    box.beforeAnswer = [&] { logWhileAsked = shell.log(); };
    shell->slotOpenCamera(0);
    QVERIFY(box.asked);
    QCOMPARE(box.title, QString("error"));
    QCOMPARE(box.text, QString("CAM-A open error"));
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(box.icon, QMessageBox::Critical);
    QCOMPARE(logWhileAsked.last(), QString("Start orvalisviewer"));
    QCOMPARE(shell.lastLog(), QString("CAM-A open error"));
    QVERIFY(shell.action("actionOpen")->isEnabled());
    QVERIFY(shell.list()->isEnabled());
    QCOMPARE(shell->windowTitle(), QString("OrvalisViewer"));
    shell->slotCloseCamera();
    QCOMPARE(shell.lastLog(), QString("close Camera[]"));
}

void ConnectionTest::anIdThatFillsItsBufferIsRead()
{
    const Shell shell;
    shell::setCameras({{std::string(64, 'x'), "long"}}); // an ID that fills its buffer
    BoxAnswer box(QMessageBox::Ok);
    fakeorvalis::fail("OrvalisOpenCamera", ORVALIS_ERROR_BUSY);
    shell->slotOpenCamera(0);
    QVERIFY(box.text.endsWith("x open error"));
}

void ConnectionTest::aFailedSizeIsNotReported()
{
    const Shell shell;
    fakeorvalis::fail("OrvalisGetSizeInfo");
    shell.open();
    QCOMPARE(shell.lastLog(), QString("Success open camera[CAM-A] 0x0"));
}

void ConnectionTest::thermalCamerasHaveNoPanel()
{
    const Shell shell;
    shell->show();
    shell->slotShowCameraCtrl();
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.nodes["NUCMode"].type = ORVALIS_NODE_STRING;
        state.nodes["NUCMode"].text = "Auto";
    });
    shell->slotOpenCamera(0);
    QVERIFY(!shell.dock("CameraCtrl")->isVisible());
    QVERIFY(!shell.action("actionControl")->isEnabled());
    QVERIFY(shell.action("actionPlay")->isEnabled());
    QVERIFY(fakeorvalis::callsOf({"OrvalisGetNumAvailablePixelFormats"}).empty());
    fakeorvalis::withState([](fakeorvalis::State &state) { state.nodes.erase("NUCMode"); });
    shell->slotCloseCamera();
    QVERIFY(!fakeorvalis::callsOf({"OrvalisCloseCamera"}).empty());
    shell->slotOpenCamera(0);
    QVERIFY(shell.action("actionControl")->isEnabled());
    QVERIFY(!fakeorvalis::callsOf({"OrvalisGetNumAvailablePixelFormats"}).empty());
}

void ConnectionTest::theRegisterDialogIsMadeAnew()
{
    const Shell shell;
    shell->show();
    shell.open();
    const QPointer<QDialog> first = shell.child<QDialog>("AccessRegister");
    shell->slotAccessRegister();
    QVERIFY(first->isVisible());
    shell->slotCloseCamera();
    QVERIFY(first.isNull());
    shell.open();
    QVERIFY(!shell.child<QDialog>("AccessRegister")->isVisible());
}

void ConnectionTest::closeMakesItsCallsInOrder()
{
    const Shell shell;
    shell->show();
    shell.open();
    shell->slotShowCameraCtrl();
    QSignalSpy opened(shell.window.get(), SIGNAL(sigCameraOpened(bool)));
    shell->slotCloseCamera();
    QCOMPARE(shell::calls(), QStringList("OrvalisCloseCamera(h1)"));
    QVERIFY(!shell.dock("CameraCtrl")->isVisible());
    QCOMPARE(opened, (QList<QVariantList>{{false}}));
    QVERIFY(shell.list()->isEnabled());
    QVERIFY(shell.action("actionOpen")->isEnabled());
    QVERIFY(!shell.action("actionClose")->isEnabled());
    QCOMPARE(shell.lastLog(), QString("close Camera[CAM-A]"));
}

void ConnectionTest::closeWithNothingOpenStillLogs()
{
    const Shell shell;
    shell->slotCloseCamera();
    QCOMPARE(shell.lastLog(), QString("close Camera[]"));
    shell.open();
    shell->slotCloseCamera();
    fakeorvalis::clearCalls();
    shell->slotCloseCamera();
    QCOMPARE(shell::calls(), QStringList());
    QCOMPARE(shell.log().count("close Camera[CAM-A]"), 2);
}

void ConnectionTest::closeEndsAStream()
{
    const Shell shell;
    shell.play();
    shell->slotCloseCamera();
    QCOMPARE(shell::calls(), QStringList({"OrvalisStopAcquisition(h1)", "OrvalisCloseCamera(h1)"}));
    QVERIFY(!shell->isStreaming());
    QCOMPARE(shell.log().mid(shell.log().size() - 2),
             QStringList({"stop steam Camera[CAM-A]", "close Camera[CAM-A]"}));
}

void ConnectionTest::closePutsTheLogoBack()
{
    const Shell shell;
    shell.play();
    shell.view()->scale(3, 3);
    QVERIFY(shell.item()->pixmap().isNull());
    shell->slotCloseCamera();
    QCOMPARE(shell.picture(), QPixmap(":/icons/logo.png").toImage());
    QVERIFY(shell.view()->transform().isIdentity());
}

void ConnectionTest::resetAsks_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("yes") << int(QMessageBox::Yes)
                         << QStringList({"OrvalisCameraReset(h1)", "OrvalisCloseCamera(h1)"});
    QTest::newRow("no") << int(QMessageBox::No) << QStringList();
}

void ConnectionTest::resetAsks()
{
    QFETCH(int, answer);
    QFETCH(QStringList, calls);
    const Shell shell;
    shell.open();
    BoxAnswer box(static_cast<QMessageBox::StandardButton>(answer));
    shell.action("actionCameraReset")->trigger();
    QVERIFY(box.asked);
    QCOMPARE(box.title, QString("Confirm"));
    QCOMPARE(box.text, QString("Do you want to reboot camera?"));
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No));
    QCOMPARE(box.icon, QMessageBox::Question);
    QCOMPARE(shell::calls(), calls);
    QCOMPARE(shell.action("actionOpen")->isEnabled(), answer == QMessageBox::Yes);
}

void ConnectionTest::resetOfACameraThatLeftDuringTheQuestionDoesNothing()
{
    const Shell shell;
    shell.open();
    BoxAnswer box(QMessageBox::Yes);
    box.beforeAnswer = [&] { shell->slotCloseCamera(); };
    shell->slotResetCamera();
    QCOMPARE(shell::calls(), QStringList("OrvalisCloseCamera(h1)"));
}

void ConnectionTest::aFailedCallDuringCloseIsNotReported_data()
{
    QTest::addColumn<QString>("function");
    for (const char *name : {"OrvalisStopAcquisition", "OrvalisCloseCamera"})
        QTest::newRow(name) << name;
}

void ConnectionTest::aFailedCallDuringCloseIsNotReported()
{
    QFETCH(QString, function);
    const Shell shell;
    shell.play();
    fakeorvalis::fail(function.toStdString());
    shell->slotCloseCamera();
    QCOMPARE(shell::calls(), QStringList({"OrvalisStopAcquisition(h1)", "OrvalisCloseCamera(h1)"}));
    QVERIFY(shell.action("actionOpen")->isEnabled());
}

void ConnectionTest::exitClosesTheCamera()
{
    const Shell shell;
    shell.play();
    QTimer::singleShot(0, shell.action("actionExit"), &QAction::trigger);
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(fakeorvalis::openHandles().empty());
}

void ConnectionTest::aVanishedCameraIsClosed_data()
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

void ConnectionTest::aVanishedCameraIsClosed()
{
    QFETCH(int, opened);
    QFETCH(QStringList, left);
    QFETCH(bool, closed);
    const Shell shell;
    QCOMPARE(shell->DiscoveryProc(), 0); // the count so far
    shell.open(opened);
    std::vector<fakeorvalis::Camera> cameras;
    for (const QString &id : left)
        cameras.push_back({id.toStdString(), "name"});
    shell::setCameras(cameras);
    QCOMPARE(shell->DiscoveryProc(), 0);
    QCOMPARE(fakeorvalis::openHandles().empty(), closed);
    QCOMPARE(shell.list()->count(), left.size());
}

void ConnectionTest::aCameraSwappedForAnotherGoesUnnoticed()
{
    const Shell shell;
    shell->DiscoveryProc();
    shell.open();
    shell::setCameras({{"CAM-X", "x"}, {"CAM-Y", "y"}});
    shell->DiscoveryProc();
    QVERIFY(!fakeorvalis::openHandles().empty());
    QVERIFY(fakeorvalis::callsOf({"OrvalisGetCameraID"}).empty());
}

void ConnectionTest::theCheckGoesOnAfterAClose()
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

void ConnectionTest::refreshCountsCameras()
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

void ConnectionTest::anEmptyBusIsPublished()
{
    const Shell shell;
    QSignalSpy lists(shell.window.get(), SIGNAL(sigUpdateCameraList(QStringList)));
    shell::setCameras({});
    shell.action("actionDiscovery")->trigger();
    QCOMPARE(lists, (QList<QVariantList>{{QStringList()}}));
    QCOMPARE(shell.list()->count(), 0);
}

void ConnectionTest::anAbsurdNumberOfCamerasIsCut()
{
    const Shell shell;
    shell::setCameras(std::vector<fakeorvalis::Camera>(5000, {"X", "x"}));
    int count = 0;
    shell->slotRefreshCamera(&count);
    QCOMPARE(count, 1024);
}

void ConnectionTest::passesOnOtherThreadsCloseOnTheGuiThread()
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

void ConnectionTest::aCloseThatComesLateSparesANewCamera()
{
    const Shell shell;
    runPassOnAnotherThread(shell);
    shell.open();
    shell::setCameras({{"CAM-B", "Camera B"}});
    runPassOnAnotherThread(shell); // asks for the close of CAM-A
    shell->slotCloseCamera();
    QTRY_COMPARE(shell.list()->count(), 1);
    shell.open(0);
    QCoreApplication::processEvents();
    QCOMPARE(fakeorvalis::openHandles().size(), std::size_t{1});
}

void ConnectionTest::passesThatHangDoNotPileUp()
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
        // Save tasks and the single shot are not held up by them.
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

void ConnectionTest::listsGiveWayToNewerOnes()
{
    const Shell shell;
    QSignalSpy lists(shell.window.get(), SIGNAL(sigUpdateCameraList(QStringList)));
    runPassOnAnotherThread(shell);
    shell::setCameras({{"CAM-A", "only one"}});
    runPassOnAnotherThread(shell);
    QCoreApplication::processEvents();
    QCOMPARE(lists, (QList<QVariantList>{{QStringList("only one")}}));
}

ORVALIS_QTEST_MAIN(ConnectionTest)
#include "ConnectionTest.moc"
