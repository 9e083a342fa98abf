// SPDX-License-Identifier: MIT
// States of the main window: start, enabled actions, docks and dialogs, status bar.
#include "tests/app/Shell.h"

#include <QDialog>

using shell::Shell;

class ShellStatesTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void theStartIsLogged();
    void theStartCallsTheLibraryInOrder();
    void theStatusBarStartsAtZero();
    void uiStatus_data();
    void uiStatus();
    void actionsShowTheirDocks_data();
    void actionsShowTheirDocks();
    void treeSignalsReachThePanel_data();
    void treeSignalsReachThePanel();
    void statusTexts_data();
    void statusTexts();
    void statusOfUnknownKindsIsIgnored();
    void dialogsStartHidden();
    void theCrossDialogFollowsItsAction();
    void registerAccessNeedsACamera();
    void theLogoIsDisplayedWithoutACamera();
};

void ShellStatesTest::theStartIsLogged()
{
    const Shell shell;
    QCOMPARE(shell.log(), QStringList("Start orvalisviewer"));
}

void ShellStatesTest::theStartCallsTheLibraryInOrder()
{
    const Shell shell;
    QCOMPARE(shell::texts(fakeorvalis::calls()),
             QStringList({"OrvalisInit()", "OrvalisNumberOfCameras()", "OrvalisGetDisplayName(0)",
                          "OrvalisGetDisplayName(1)"}));
    QCOMPARE(shell.list()->count(), 2);
    QCOMPARE(g_inst.load(), shell.window.get());
    const auto *timer = shell->findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(timer != nullptr);
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 3000);
}

void ShellStatesTest::theStatusBarStartsAtZero()
{
    const Shell shell;
    QCOMPARE(shell.rateLabel()->text(), QString("                         0.0 fps (0.0 MB/s)"));
    QCOMPARE(shell.recvLabel()->text(), QString("Recv :                 0"));
}

void ShellStatesTest::uiStatus_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("stages"); // +: as the argument, -: its negation, blank: unchanged
    QTest::newRow("open") << "actionOpen"
                          << "-- ";
    QTest::newRow("close") << "actionClose"
                           << "++ ";
    QTest::newRow("register") << "actionRegisterAccess_2"
                              << "++ ";
    QTest::newRow("control") << "actionControl"
                             << "++ ";
    QTest::newRow("reset") << "actionCameraReset"
                           << "++ ";
    QTest::newRow("single shot") << "actionOneGrab"
                                 << "++-";
    QTest::newRow("play") << "actionPlay"
                          << "++-";
    QTest::newRow("stop") << "actionStop"
                          << "+-+";
    QTest::newRow("save") << "actionSave"
                          << "+ +";
    QTest::newRow("zoom 100") << "actionZoom100"
                              << "+ +";
    QTest::newRow("zoom fit") << "actionZoomFIT"
                              << "+ +";
    QTest::newRow("zoom in") << "actionZoomIN"
                             << "+ +";
    QTest::newRow("zoom out") << "actionZoomOUT"
                              << "+ +";
    QTest::newRow("cross") << "actionDrawCenter"
                           << "+ +";
    for (const char *other : {"actionRegisterAccess", "actionExit", "actionAbout_Orvalis",
                              "actionShowCameraList", "actionShowCameraControl",
                              "actionShowLogStatus", "actionShowXMLControl", "actionDiscovery"})
        QTest::newRow(other) << other << "   ";
}

void ShellStatesTest::uiStatus()
{
    QFETCH(QString, name);
    QFETCH(QString, stages);
    const Shell shell;
    QAction *action = shell.action(name.toLatin1());
    const QList<int> numbers{0, 1, 2, 3, -1};
    for (const int stage : numbers) {
        const QChar rule = stages.at(stage == 0 || stage == 1 ? stage : 2);
        for (const bool on : {false, true}) {
            for (const bool before : {false, true}) {
                action->setEnabled(before);
                shell->UpdateUIStatus(on, stage);
                const bool expected = rule == ' ' ? before : (rule == '+') == on;
                QVERIFY2(action->isEnabled() == expected, qPrintable(QString::number(stage)));
            }
        }
    }
}

void ShellStatesTest::actionsShowTheirDocks_data()
{
    QTest::addColumn<QString>("dock");
    QTest::addColumn<QString>("action");
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("list") << "CameraList"
                          << "actionShowCameraList" << QByteArray("slotShowCameraList");
    QTest::newRow("tree") << "XMLCtrl"
                          << "actionShowXMLControl" << QByteArray("slotShowXMLCtrl");
    QTest::newRow("panel") << "CameraCtrl"
                           << "actionShowCameraControl" << QByteArray("slotShowCameraCtrl");
    QTest::newRow("log") << "LogStatus"
                         << "actionShowLogStatus" << QByteArray("slotShowLogStatus");
}

void ShellStatesTest::actionsShowTheirDocks()
{
    QFETCH(QString, dock);
    QFETCH(QString, action);
    QFETCH(QByteArray, slot);
    const Shell shell;
    shell->show();
    QDockWidget *widget = shell.dock(dock.toLatin1());
    widget->hide();
    shell.action(action.toLatin1())->trigger();
    QVERIFY(widget->isVisible());
    QMetaObject::invokeMethod(shell.window.get(), slot, Q_ARG(bool, false));
    QVERIFY(widget->isVisible());
    widget->hide();
    QMetaObject::invokeMethod(shell.window.get(), slot, Q_ARG(bool, false));
    QVERIFY(!widget->isVisible());
    QMetaObject::invokeMethod(shell.window.get(), slot, Q_ARG(bool, true));
    QVERIFY(widget->isVisible());
    const QByteArray signature = "1" + slot + "(bool)";
    QVERIFY(QObject::disconnect(widget->toggleViewAction(), SIGNAL(triggered(bool)),
                                shell.window.get(), signature));
}

void ShellStatesTest::treeSignalsReachThePanel_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("features") << QByteArray("2sigUpdateFeatureInfo(bool)")
                              << QByteArray("1loadFeatureValue(bool)");
    QTest::newRow("video") << QByteArray("2sigUpdateVideoInfo()") << QByteArray("1loadVideoInfo()");
    QTest::newRow("trigger") << QByteArray("2sigUpdateTriggerInfo()")
                             << QByteArray("1loadTriggerValue()");
    QTest::newRow("strobe") << QByteArray("2sigUpdateStrobeInfo()")
                            << QByteArray("1loadStrobeValue()");
    QTest::newRow("user sets") << QByteArray("2sigUpdateUSerSetInfo()")
                               << QByteArray("1loadUserSet()");
}

void ShellStatesTest::treeSignalsReachThePanel()
{
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);
    const Shell shell;
    QVERIFY(QObject::disconnect(shell.dock("XMLCtrl"), signal, shell.dock("CameraCtrl"), slot));
}

void ShellStatesTest::statusTexts_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<QString>("text");
    const QString recv = "Recv :                 ";
    const QString rate = QString(24, ' ');
    QTest::newRow("count") << 0 << 42.0 << 0.0 << recv + "42";
    QTest::newRow("count is cut") << 0 << 42.999 << 0.0 << recv + "42";
    QTest::newRow("large count") << 0 << 9007199254740992.0 << 0.0 << recv + "9007199254740992";
    QTest::newRow("count beyond 64 bits") << 0 << 1e30 << 0.0 << recv + "9200000000000000000";
    QTest::newRow("no count") << 0 << qQNaN() << 0.0 << recv + "0";
    QTest::newRow("rate") << 1 << 29.97 << 143.53 << rate + "30.0 fps (143.5 MB/s)";
    QTest::newRow("slow") << 1 << 5.04 << 0.05 << rate + " 5.0 fps (0.1 MB/s)";
    QTest::newRow("31 characters") << 1 << 1e12 << 1e12 << rate + "1000000000000.0 fps (1000000000";
    QTest::newRow("endless") << 1 << qInf() << 0.0 << rate + " inf fps (0.0 MB/s)";
}

void ShellStatesTest::statusTexts()
{
    QFETCH(int, kind);
    QFETCH(double, a);
    QFETCH(double, b);
    const Shell shell;
    shell->slotStatusBar(kind, a, b);
    QTEST(kind == 0 ? shell.recvLabel()->text() : shell.rateLabel()->text(), "text");
}

void ShellStatesTest::statusOfUnknownKindsIsIgnored()
{
    const Shell shell;
    const QString rate = shell.rateLabel()->text();
    const QString recv = shell.recvLabel()->text();
    for (const int kind : {-1, 2, 3, 1000})
        shell->slotStatusBar(kind, 7, 7);
    QCOMPARE(shell.rateLabel()->text(), rate);
    QCOMPARE(shell.recvLabel()->text(), recv);
}

void ShellStatesTest::dialogsStartHidden()
{
    const Shell shell;
    shell->show();
    const auto dialogs = shell->findChildren<QDialog *>();
    QCOMPARE(dialogs.size(), 2);
    for (const QDialog *dialog : dialogs)
        QVERIFY(!dialog->isVisible());
    shell.action("actionAbout_Orvalis")->trigger();
    QVERIFY(shell.child<QDialog>("AboutDialog")->isVisible());
}

void ShellStatesTest::theCrossDialogFollowsItsAction()
{
    const Shell shell;
    shell->show();
    shell.open();
    shell->slotStartCamera(); // enables the action
    QDialog *dialog = nullptr;
    const auto dialogs = shell->findChildren<QDialog *>();
    for (QDialog *candidate : dialogs) {
        if (candidate->windowTitle() == "Draw Center")
            dialog = candidate;
    }
    QVERIFY(dialog != nullptr);
    QAction *action = shell.action("actionDrawCenter");
    action->trigger();
    QVERIFY(dialog->isVisible());
    QVERIFY(!dialog->isModal());
    dialog->close();
    QVERIFY(action->isChecked());
    action->trigger();
    QVERIFY(!dialog->isVisible());
    action->trigger();
    QVERIFY(dialog->isVisible());
}

void ShellStatesTest::registerAccessNeedsACamera()
{
    const Shell shell;
    shell->show();
    shell->slotAccessRegister(); // no dialog yet
    QCOMPARE(shell->findChildren<QDialog *>().size(), 2);
    shell.open();
    QCOMPARE(shell->findChildren<QDialog *>().size(), 3);
    QDialog *dialog = shell.child<QDialog>("AccessRegister");
    QVERIFY(!dialog->isVisible());
    shell.action("actionRegisterAccess_2")->trigger();
    QVERIFY(dialog->isVisible());
}

void ShellStatesTest::theLogoIsDisplayedWithoutACamera()
{
    const Shell shell;
    QCOMPARE(shell.picture(), QPixmap(":/icons/logo.png").toImage());
    QCOMPARE(shell.view()->alignment(), Qt::AlignCenter);
    QCOMPARE(shell.view()->dragMode(), QGraphicsView::ScrollHandDrag);
}

ORVALIS_QTEST_MAIN(ShellStatesTest)
#include "ShellStatesTest.moc"
