// SPDX-License-Identifier: MIT
// The main window's form: actions, icons, menus, wiring, docks.
#include "tests/app/Shell.h"

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
    void aThemeWithSimilarNamesKeepsOurIcons();
    void aThemeWithOurNamesReplacesOurIcons();
    void theApplicationIconIsDrawn();
    void theWindowIsAsDesigned();
    void everyUsableActionIsInAMenu();
    void shortcutsAreUnique();
    void docksLieInTheirAreas();
    void onlyOpenIsUsableAtTheStart();
};

namespace {

struct Design {
    const char *name;
    const char *text;
    const char *toolTip; ///< as displayed: Qt uses the text if the form has none
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
    // A disconnect by signature succeeds once for each connection by signature.
    if (wired) {
        QVERIFY(QObject::disconnect(action, signal, shell.window.get(), slot));
        QVERIFY(!QObject::disconnect(action, signal, shell.window.get(), slot));
    }
    QVERIFY(!QObject::disconnect(action, nullptr, shell.window.get(), nullptr));
}

namespace {

/// An icon theme with the given names; every icon is filled with one colour.
class IconTheme {
public:
    explicit IconTheme(const QStringList &names)
    {
        QDir().mkpath(m_themes.filePath("desk/20x20/actions"));
        QFile index(m_themes.filePath("desk/index.theme"));
        if (index.open(QIODevice::WriteOnly))
            index.write("[Icon Theme]\nName=desk\nDirectories=20x20/actions\n"
                        "[20x20/actions]\nSize=20\nType=Fixed\n");
        index.close();
        QImage picture(20, 20, QImage::Format_ARGB32);
        picture.fill(colour);
        for (const QString &name : names)
            picture.save(m_themes.filePath(QString("desk/20x20/actions/%1.png").arg(name)));
        QIcon::setThemeSearchPaths(QStringList(m_themes.path()) + m_before);
        QIcon::setThemeName("desk");
    }
    ~IconTheme()
    {
        QIcon::setThemeName(QString());
        QIcon::setThemeSearchPaths(m_before);
    }

    static constexpr Qt::GlobalColor colour = Qt::magenta;

private:
    QTemporaryDir m_themes;
    const QStringList m_before = QIcon::themeSearchPaths();
};

/// Whether the action has the theme's icon.
bool isThemed(const Shell &shell, const char *action)
{
    const QImage icon = shell.action(action)->icon().pixmap(20, 20).toImage();
    return !icon.isNull() && icon.pixelColor(icon.rect().center()) == QColor(IconTheme::colour);
}

/// The icon's name in a theme: the name of its file, except for "Exit".
QString themeName(const Design &design)
{
    const QString stem = QFileInfo(design.icon).baseName();
    return stem == "window-close" ? QString("windows-close") : stem;
}

} // namespace

// Qt must not use "camera" of the theme for "camera-play".
void ShellFormTest::aThemeWithSimilarNamesKeepsOurIcons()
{
    const IconTheme theme({"camera", "window-close", "draw", "camera-web"});
    QVERIFY(QIcon::hasThemeIcon("camera"));
    const Shell shell;
    for (const Design &design : designs)
        QVERIFY2(!isThemed(shell, design.name), design.name);
}

void ShellFormTest::aThemeWithOurNamesReplacesOurIcons()
{
    QStringList names;
    for (const Design &design : designs)
        names << themeName(design);
    const IconTheme theme(names);
    const Shell shell;
    for (const Design &design : designs) {
        if (*design.icon != '\0')
            QVERIFY2(isThemed(shell, design.name), design.name);
    }
}

void ShellFormTest::theApplicationIconIsDrawn()
{
    const QIcon icon(":/OrvalisViewer.ico");
    QVERIFY(!icon.availableSizes().isEmpty());
    for (const QSize &size : icon.availableSizes()) {
        const QImage drawn = icon.pixmap(size).toImage();
        QCOMPARE(drawn.size(), size);
        int seen = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x)
                seen += qAlpha(drawn.pixel(x, y)) > 127 ? 1 : 0;
        }
        QVERIFY2(4 * seen > drawn.width() * drawn.height(), "mostly transparent");
    }
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

ORVALIS_QTEST_MAIN(ShellFormTest)
#include "ShellFormTest.moc"
