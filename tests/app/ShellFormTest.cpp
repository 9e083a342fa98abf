// SPDX-License-Identifier: MIT
// The main window's form, wiring, docks and states.
#include "tests/app/Shell.h"

#include <QDialog>
#include <QDir>
#include <QGridLayout>
#include <QIcon>
#include <QMenuBar>
#include <QTemporaryDir>
#include <QToolBar>

using shell::Shell;

class ShellFormTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void actionsAreInOrder();
    void actionsAreAsDesigned_data();
    void actionsAreAsDesigned();
    void everyActionIsWired_data();
    void everyActionIsWired();
    void iconsAreOursWhateverTheTheme();
    void theWindowIsAsDesigned();
    void everyUsableActionIsInAMenu();
    void shortcutsAreUnique();
    void docksLieInTheirAreas();
    void theStartIsLogged();
    void theStartCallsTheLibraryInOrder();
    void onlyOpenIsUsableAtTheStart();
    void theStatusBarStartsAtZero();
    void uiStatus_data();
    void uiStatus();
    void docksAreShownByTheirActions_data();
    void docksAreShownByTheirActions();
    void treeSignalsReachThePanel_data();
    void treeSignalsReachThePanel();
    void statusTexts_data();
    void statusTexts();
    void statusOfUnknownKindsIsIgnored();
    void dialogsStartHidden();
    void theCrossDialogFollowsItsAction();
    void registerAccessNeedsACamera();
    void theLogoIsShownWithoutACamera();
};

namespace {

struct Design {
    const char *name;
    const char *text;
    const char *toolTip; ///< as shown: Qt takes the text where the form has none
    const char *icon;
    bool checkable;
    const char *slot;
};

constexpr Design designs[] = {
    {"actionRegisterAccess", "Register Access", "Register Access", "", false, ""},
    {"actionExit", "Exit", "Exit", ":/icons/32x32/actions/window-close.png", false, "slotExit()"},
    {"actionRegisterAccess_2", "Register Access", "Register Access",
     ":/icons/32x32/actions/camera-register.png", false, "slotAccessRegister()"},
    {"actionControl", "Control", "View Camera Control window", ":/icons/20x20/camera-control.png",
     false, "slotShowCameraCtrl()"},
    {"actionPlay", "Play", "Play Camera", ":/icons/20x20/camera-play.png", true,
     "slotStartCamera()"},
    {"actionStop", "Stop", "Stop Camera", ":/icons/20x20/camera-stop.png", false,
     "slotStopCamera()"},
    {"actionAbout_Orvalis", "About Orvalis", "About Orvalis", "", false, "slotShowAboutDlg()"},
    {"actionShowCameraList", "Show Camera List", "Show Camera List", "", false,
     "slotShowCameraList()"},
    {"actionShowCameraControl", "Show Camera Control", "Show Camera Control", "", false,
     "slotShowCameraCtrl()"},
    {"actionShowLogStatus", "Show Log Status", "Show Log Status", "", false, "slotShowLogStatus()"},
    {"actionShowXMLControl", "Show XML Control", "Show XML Control", "", false,
     "slotShowXMLCtrl()"},
    {"actionDiscovery", "Refresh", "Refresh devices", "", false, "slotRefreshCamera()"},
    {"actionOpen", "Open", "Open Camera", ":/icons/32x32/actions/camera-open.png", false,
     "slotOpenCamera()"},
    {"actionClose", "Close", "Close Camera", ":/icons/32x32/actions/camera-close.png", false,
     "slotCloseCamera()"},
    {"actionZoomIN", "Zoom IN", "Zoom IN", ":/icons/20x20/camera-zin.png", false, "slotZoomIn()"},
    {"actionZoomOUT", "Zoom OUT", "Zoom OUT", ":/icons/20x20/camera-zout.png", false,
     "slotZoomOut()"},
    {"actionZoomFIT", "Zoom FIT", "Fit to Window", ":/icons/20x20/camera-fit.png", false,
     "slotZoomFit()"},
    {"actionZoom100", "Zoom 100", "Zoom 100%", ":/icons/20x20/camera-z100.png", false,
     "slotZoom100()"},
    {"actionOneGrab", "Single Shot", "Single Shot", ":/icons/20x20/camera-grab.png", false,
     "slotOneGrab()"},
    {"actionSave", "Save", "Save Image", ":/icons/20x20/camera-save.png", true,
     "slotSaveImg(bool)"},
    {"actionCameraReset", "Camera Reset", "Reset Camera", ":/icons/20x20/camera-reset.png", false,
     "slotResetCamera()"},
    {"actionDrawCenter", "Draw Center", "Draw Center", ":/icons/20x20/draw-center.png", true,
     "slotShowDrawCenterDlg(bool)"},
};

void addDesigns()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < int(std::size(designs)); ++row)
        QTest::newRow(designs[row].name) << row;
}

} // namespace

void ShellFormTest::actionsAreInOrder()
{
    const Shell shell;
    QStringList names;
    const auto children = shell->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QAction *action : children) {
        if (action->objectName().startsWith("action"))
            names << action->objectName();
    }
    QStringList expected;
    for (const Design &design : designs)
        expected << design.name;
    QCOMPARE(names, expected);
}

void ShellFormTest::actionsAreAsDesigned_data() { addDesigns(); }

void ShellFormTest::actionsAreAsDesigned()
{
    QFETCH(int, row);
    const Design &design = designs[row];
    const Shell shell;
    const QAction *action = shell.action(design.name);
    QCOMPARE(action->text(), QString(design.text));
    QCOMPARE(action->toolTip(), QString(design.toolTip));
    QCOMPARE(action->iconText(), QString(design.text));
    QCOMPARE(action->isCheckable(), design.checkable);
    QCOMPARE(action->icon().isNull(), *design.icon == '\0');
    if (*design.icon == '\0')
        return;
    const QPixmap drawn(design.icon);
    QVERIFY(!drawn.isNull());
    QCOMPARE(action->icon().pixmap(drawn.size()).toImage().convertToFormat(QImage::Format_ARGB32),
             drawn.toImage().convertToFormat(QImage::Format_ARGB32));
}

void ShellFormTest::everyActionIsWired_data() { addDesigns(); }

void ShellFormTest::everyActionIsWired()
{
    QFETCH(int, row);
    const Design &design = designs[row];
    const Shell shell;
    const QByteArray name = design.name;
    const QByteArray slot = QByteArray("1") + design.slot;
    QAction *action = shell.action(design.name);
    const char *signal = "2triggered()";
    if (name == "actionSave")
        signal = "2triggered(bool)";
    if (name == "actionDrawCenter")
        signal = "2toggled(bool)";
    const bool wired = *design.slot != '\0';
    // A disconnect by signature succeeds once for a connection made by signature.
    if (wired) {
        QVERIFY(QObject::disconnect(action, signal, shell.window.get(), slot));
        QVERIFY(!QObject::disconnect(action, signal, shell.window.get(), slot));
    }
    QVERIFY(!QObject::disconnect(action, nullptr, shell.window.get(), nullptr));
}

void ShellFormTest::iconsAreOursWhateverTheTheme()
{
    QTemporaryDir themes;
    QDir().mkpath(themes.filePath("desk/16x16/devices"));
    QFile index(themes.filePath("desk/index.theme"));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=desk\nDirectories=16x16/devices\n"
                "[16x16/devices]\nSize=16\nType=Fixed\n");
    index.close();
    QImage foreign(16, 16, QImage::Format_ARGB32);
    foreign.fill(Qt::magenta);
    for (const char *name : {"camera", "window-close", "draw", "camera-web"})
        QVERIFY(foreign.save(themes.filePath(QString("desk/16x16/devices/%1.png").arg(name))));
    const QStringList paths = QIcon::themeSearchPaths();
    QIcon::setThemeSearchPaths(QStringList(themes.path()) + paths);
    QIcon::setThemeName("desk");
    QVERIFY(QIcon::hasThemeIcon("camera"));
    const Shell shell;
    for (const Design &design : designs) {
        const QImage icon = shell.action(design.name)->icon().pixmap(20, 20).toImage();
        QVERIFY2(icon.isNull() || icon.pixelColor(icon.rect().center()) != QColor(Qt::magenta),
                 design.name);
    }
    QIcon::setThemeName(QString());
    QIcon::setThemeSearchPaths(paths);
}

void ShellFormTest::theWindowIsAsDesigned()
{
    const Shell shell;
    QCOMPARE(shell->windowTitle(), QString("OrvalisViewer"));
    QCOMPARE(shell->size(), QSize(1370, 917));
    QStringList menus;
    const auto bar = shell->menuBar()->actions();
    for (const QAction *menu : bar)
        menus << menu->text();
    QCOMPARE(menus, QStringList({"Orvalis", "Camera", "View", "Help"}));
    const auto *tools = shell.child<QToolBar>("mainToolBar");
    QCOMPARE(shell->toolBarArea(const_cast<QToolBar *>(tools)), Qt::TopToolBarArea);
    QVERIFY(!tools->isMovable());
    QVERIFY(!tools->isFloatable());
    QCOMPARE(tools->iconSize(), QSize(20, 20));
    auto *layout = qobject_cast<QGridLayout *>(shell->centralWidget()->layout());
    QVERIFY(layout != nullptr);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAtPosition(0, 0)->widget(), static_cast<QWidget *>(shell.view()));
    QCOMPARE(shell.view()->metaObject()->className(), "ZoomGraphicsView");
}

void ShellFormTest::everyUsableActionIsInAMenu()
{
    const Shell shell;
    for (const Design &design : designs) {
        const auto places = shell.action(design.name)->associatedWidgets();
        const bool inMenu = std::any_of(places.begin(), places.end(), [](const QWidget *widget) {
            return qobject_cast<const QMenu *>(widget) != nullptr;
        });
        QCOMPARE(inMenu, *design.slot != '\0');
    }
}

void ShellFormTest::shortcutsAreUnique()
{
    const Shell shell;
    QStringList keys;
    for (const Design &design : designs) {
        const QString key = shell.action(design.name)->shortcut().toString();
        QVERIFY2(key.isEmpty() || !keys.contains(key), design.name);
        keys << key;
    }
}

void ShellFormTest::docksLieInTheirAreas()
{
    const Shell shell;
    shell->show();
    QCOMPARE(shell->dockWidgetArea(shell.dock("LogStatus")), Qt::BottomDockWidgetArea);
    QCOMPARE(shell->dockWidgetArea(shell.dock("CameraList")), Qt::LeftDockWidgetArea);
    QCOMPARE(shell->dockWidgetArea(shell.dock("XMLCtrl")), Qt::LeftDockWidgetArea);
    QCOMPARE(shell->dockWidgetArea(shell.dock("CameraCtrl")), Qt::RightDockWidgetArea);
    QVERIFY(shell.dock("XMLCtrl")->y() > shell.dock("CameraList")->y());
    QVERIFY(shell.dock("CameraList")->isVisible());
    QVERIFY(shell.dock("LogStatus")->isVisible());
    QVERIFY(shell.dock("XMLCtrl")->isVisible());
    QVERIFY(!shell.dock("CameraCtrl")->isVisible());
}

void ShellFormTest::theStartIsLogged()
{
    const Shell shell;
    QCOMPARE(shell.log(), QStringList("Start orvalisviewer"));
}

void ShellFormTest::theStartCallsTheLibraryInOrder()
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

void ShellFormTest::onlyOpenIsUsableAtTheStart()
{
    const Shell shell;
    QStringList usable;
    for (const Design &design : designs) {
        if (shell.action(design.name)->isEnabled())
            usable << design.name;
    }
    QCOMPARE(usable,
             QStringList({"actionRegisterAccess", "actionExit", "actionAbout_Orvalis",
                          "actionShowCameraList", "actionShowCameraControl", "actionShowLogStatus",
                          "actionShowXMLControl", "actionDiscovery", "actionOpen"}));
}

void ShellFormTest::theStatusBarStartsAtZero()
{
    const Shell shell;
    QCOMPARE(shell.rateLabel()->text(), QString("                         0.0 fps (0.0 MB/s)"));
    QCOMPARE(shell.recvLabel()->text(), QString("Recv :                 0"));
}

void ShellFormTest::uiStatus_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("stages"); // +: as the argument, -: its negation, blank: left alone
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

void ShellFormTest::uiStatus()
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

void ShellFormTest::docksAreShownByTheirActions_data()
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

void ShellFormTest::docksAreShownByTheirActions()
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

void ShellFormTest::treeSignalsReachThePanel_data()
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

void ShellFormTest::treeSignalsReachThePanel()
{
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, slot);
    const Shell shell;
    QVERIFY(QObject::disconnect(shell.dock("XMLCtrl"), signal, shell.dock("CameraCtrl"), slot));
}

void ShellFormTest::statusTexts_data()
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

void ShellFormTest::statusTexts()
{
    QFETCH(int, kind);
    QFETCH(double, a);
    QFETCH(double, b);
    const Shell shell;
    shell->slotStatusBar(kind, a, b);
    QTEST(kind == 0 ? shell.recvLabel()->text() : shell.rateLabel()->text(), "text");
}

void ShellFormTest::statusOfUnknownKindsIsIgnored()
{
    const Shell shell;
    const QString rate = shell.rateLabel()->text();
    const QString recv = shell.recvLabel()->text();
    for (const int kind : {-1, 2, 3, 1000})
        shell->slotStatusBar(kind, 7, 7);
    QCOMPARE(shell.rateLabel()->text(), rate);
    QCOMPARE(shell.recvLabel()->text(), recv);
}

void ShellFormTest::dialogsStartHidden()
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

void ShellFormTest::theCrossDialogFollowsItsAction()
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

void ShellFormTest::registerAccessNeedsACamera()
{
    const Shell shell;
    shell->show();
    shell->slotAccessRegister(); // nothing to show
    QCOMPARE(shell->findChildren<QDialog *>().size(), 2);
    shell.open();
    QCOMPARE(shell->findChildren<QDialog *>().size(), 3);
    QDialog *dialog = shell.child<QDialog>("AccessRegister");
    QVERIFY(!dialog->isVisible());
    shell.action("actionRegisterAccess_2")->trigger();
    QVERIFY(dialog->isVisible());
}

void ShellFormTest::theLogoIsShownWithoutACamera()
{
    const Shell shell;
    QCOMPARE(shell.picture(), QPixmap(":/icons/logo.png").toImage());
    QCOMPARE(shell.view()->alignment(), Qt::AlignCenter);
    QCOMPARE(shell.view()->dragMode(), QGraphicsView::ScrollHandDrag);
}

ORVALIS_QTEST_MAIN(ShellFormTest)
#include "ShellFormTest.moc"
