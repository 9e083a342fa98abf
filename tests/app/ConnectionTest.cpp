// SPDX-License-Identifier: MIT
// Opening, closing and rebooting a camera.
#include "tests/app/Shell.h"

#include <QDialog>

using shell::BoxAnswer;
using shell::Shell;

class ConnectionTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void openMakesItsCallsInOrder();
    void openUpdatesTheWindow();
    void openWithoutASelectionDoesNothing();
    void openUsesTheSelectedRow();
    void aDoubleClickedRowIsOpened();
    void openWithACameraOpenOnlyClosesIt();
    void openOfAnotherCameraClosesTheFirst();
    void openOfAnotherCameraEndsTheStream();
    void aFailedOpenIsReported();
    void anIdThatFillsItsBufferIsRead();
    void aFailedSizeIsNotReported();
    void thermalCamerasHaveNoPanel();
    void everyOpenCreatesARegisterDialog();
    void closeMakesItsCallsInOrder();
    void closeWithNothingOpenStillLogs();
    void closeEndsAStream();
    void closeDisplaysTheLogo();
    void resetAsksTheUser_data();
    void resetAsksTheUser();
    void resetOfACameraThatLeftDuringTheQuestionDoesNothing();
    void aFailedCallDuringCloseIsNotReported_data();
    void aFailedCallDuringCloseIsNotReported();
    void openNotifiesInOrder();
    void aRefusedResetStillCloses();
    void resetWithoutACameraDoesNothing();
    void resetInsideACloseDoesNothing();
    void exitClosesTheCamera();
};

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

void ConnectionTest::openUpdatesTheWindow()
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

void ConnectionTest::openUsesTheSelectedRow()
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

void ConnectionTest::everyOpenCreatesARegisterDialog()
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

void ConnectionTest::closeDisplaysTheLogo()
{
    const Shell shell;
    shell.play();
    shell.view()->scale(3, 3);
    QVERIFY(shell.item()->pixmap().isNull());
    shell->slotCloseCamera();
    QCOMPARE(shell.picture(), QPixmap(":/icons/logo.png").toImage());
    QVERIFY(shell.view()->transform().isIdentity());
}

void ConnectionTest::resetAsksTheUser_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("yes") << int(QMessageBox::Yes)
                         << QStringList({"OrvalisCameraReset(h1)", "OrvalisCloseCamera(h1)"});
    QTest::newRow("no") << int(QMessageBox::No) << QStringList();
}

void ConnectionTest::resetAsksTheUser()
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

void ConnectionTest::openNotifiesInOrder()
{
    QStringList events;
    const Shell shell;
    const QObject *context = shell.window.get();
    connect(shell.window.get(), &MainWindow::sigCameraOpened, context,
            [&](bool opened) { events << (opened ? "opened" : "closed"); });
    connect(shell.window.get(), &QWidget::windowTitleChanged, context, [&] { events << "title"; });
    connect(shell.window.get(), &MainWindow::sigTraceLog, context, [&] { events << "log"; });
    connect(shell.action("actionPlay"), &QAction::changed, context, [&] { events << "actions"; });
    fakeorvalis::onCall("OrvalisGetNodeString", [&] {
        if (QThread::currentThread() == qApp->thread())
            events << "probe";
    });
    shell->slotOpenCamera(0);
    events.removeDuplicates();
    QCOMPARE(events, QStringList({"opened", "title", "log", "actions", "probe"}));
}

void ConnectionTest::aRefusedResetStillCloses()
{
    const Shell shell;
    shell.open();
    fakeorvalis::fail("OrvalisCameraReset");
    BoxAnswer box(QMessageBox::Yes);
    shell->slotResetCamera();
    QCOMPARE(shell::calls(), QStringList({"OrvalisCameraReset(h1)", "OrvalisCloseCamera(h1)"}));
    QCOMPARE(shell.lastLog(), QString("close Camera[CAM-A]"));
    QVERIFY(shell.action("actionOpen")->isEnabled());
}

void ConnectionTest::resetWithoutACameraDoesNothing()
{
    const Shell shell;
    fakeorvalis::clearCalls();
    BoxAnswer box(QMessageBox::Yes);
    shell->slotResetCamera();
    QVERIFY(!box.asked);
    QCOMPARE(shell::calls(), QStringList());
    QCOMPARE(shell.lastLog(), QString("Start orvalisviewer"));
}

void ConnectionTest::resetInsideACloseDoesNothing()
{
    const Shell shell;
    shell.open();
    BoxAnswer box(QMessageBox::Yes);
    // The close processes events when it replaces the scene; during the call, the handle is still
    // set.
    QTimer::singleShot(0, shell.window.get(), SLOT(slotResetCamera()));
    fakeorvalis::onCall("OrvalisCloseCamera", [&] { shell->slotResetCamera(); });
    shell->slotCloseCamera();
    QVERIFY(!box.asked);
    QCOMPARE(shell::calls(), QStringList("OrvalisCloseCamera(h1)"));
    QCOMPARE(shell.log().count("close Camera[CAM-A]"), 1);
}

void ConnectionTest::exitClosesTheCamera()
{
    const Shell shell;
    shell.play();
    QTimer::singleShot(0, shell.action("actionExit"), &QAction::trigger);
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(fakeorvalis::openHandles().empty());
}

ORVALIS_QTEST_MAIN(ConnectionTest)
#include "ConnectionTest.moc"
