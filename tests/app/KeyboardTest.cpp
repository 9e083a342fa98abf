// SPDX-License-Identifier: MIT
// Every control has a name for screen readers and can be reached with the keyboard.
#include "dialogs/AccessRegister.h"
#include "tests/app/Shell.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QSet>
#include <QSlider>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>

using shell::Shell;

class KeyboardTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void everyControlHasAName();
    void everyDialogHasNames();
    void tabReachesEveryControl_data();
    void tabReachesEveryControl();
    void controlAndTabChangeTheTab();
    void tabReachesEveryControlOfTheDialogs_data();
    void tabReachesEveryControlOfTheDialogs();
    void theMenusReachEveryAction();
    void theFocusStartsInTheCameraList();
    void returnOpensTheCamera();
    void returnWithoutCamerasOpensNothing();
    void theFocusSelectsNoSingleCamera();
    void theKeyboardSelectsASingleCamera();
    void returnSelectsTheNode();
    void showingADockMovesTheFocus_data();
    void showingADockMovesTheFocus();
};

namespace {

struct Names {
    int focusable = 0;
    QStringList nameless;
};

/// An editor inside a spin box or a combo box has the name of that box.
bool isPartOfAnother(const QObject *object)
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget != nullptr && widget->focusProxy() != nullptr;
}

void collectNames(QAccessibleInterface *element, Names *names)
{
    if (element == nullptr)
        return;
    if (element->state().focusable && !isPartOfAnother(element->object())) {
        ++names->focusable;
        if (element->text(QAccessible::Name).trimmed().isEmpty()) {
            const QObject *object = element->object();
            names->nameless << (object ? object->metaObject()->className() + QString(" ") +
                                             object->objectName()
                                       : QString("an item"));
        }
    }
    for (int child = 0; child < element->childCount(); ++child)
        collectNames(element->child(child), names);
}

Names namesIn(QWidget *window)
{
    Names names;
    collectNames(QAccessible::queryAccessibleInterface(window), &names);
    return names;
}

bool isControl(const QWidget *widget)
{
    // Menus replace the buttons of tool bars and dock titles, the arrow keys those of tab bars; the
    // header has only one column and no function.
    if (qobject_cast<const QToolButton *>(widget) || qobject_cast<const QScrollBar *>(widget) ||
        qobject_cast<const QHeaderView *>(widget) || widget->inherits("QDockWidgetTitleButton") ||
        widget->focusProxy() != nullptr)
        return false;
    return qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QAbstractSpinBox *>(widget) ||
           qobject_cast<const QAbstractSlider *>(widget) ||
           qobject_cast<const QComboBox *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QAbstractItemView *>(widget) ||
           qobject_cast<const QTabBar *>(widget) || qobject_cast<const QGraphicsView *>(widget);
}

QSet<QWidget *> controlsIn(const QWidget *window)
{
    QSet<QWidget *> controls;
    for (QWidget *widget : window->findChildren<QWidget *>()) {
        if (isControl(widget) && widget->isVisible() && widget->isEnabled() &&
            widget->window() == window)
            controls << widget;
    }
    return controls;
}

/// Presses Tab until the focus returns to a widget that it has reached before.
QSet<QWidget *> reachedByTab(QWidget *window)
{
    if (window->focusWidget() == nullptr)
        QTest::keyClick(window, Qt::Key_Tab);
    QSet<QWidget *> reached;
    QWidget *current = window->focusWidget();
    while (current != nullptr && !reached.contains(current)) {
        reached << current;
        QTest::keyClick(current, Qt::Key_Tab);
        current = window->focusWidget();
    }
    return reached;
}

QString namesOf(const QSet<QWidget *> &widgets)
{
    QStringList names;
    for (const QWidget *widget : widgets)
        names << widget->metaObject()->className() + QString(" ") + widget->objectName();
    return names.join("; ");
}

bool activate(QWidget *window)
{
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

QTabWidget *tabsOf(const Shell &shell)
{
    return shell.dock("CameraCtrl")->findChild<QTabWidget *>("tabWidget");
}

} // namespace

void KeyboardTest::everyControlHasAName()
{
    const Shell shell;
    shell->show();
    shell.play();
    shell.action("actionControl")->trigger();
    const Names names = namesIn(shell.window.get());
    QCOMPARE(names.nameless.join("; "), QString());
    QVERIFY2(names.focusable > 60, qPrintable(QString::number(names.focusable)));
}

void KeyboardTest::everyDialogHasNames()
{
    const Shell shell;
    shell->show();
    shell.open();
    const auto dialogs = shell->findChildren<QDialog *>();
    QCOMPARE(dialogs.size(), 3);
    for (QDialog *dialog : dialogs) {
        const Names names = namesIn(dialog);
        QCOMPARE(names.nameless.join("; "), QString());
        QVERIFY2(names.focusable > 0, qPrintable(dialog->windowTitle()));
    }
}

void KeyboardTest::tabReachesEveryControl_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("atLeast"); // minimum number of controls
    QTest::newRow("features") << 0 << 24;
    QTest::newRow("video") << 1 << 12;
    QTest::newRow("trigger") << 2 << 16;
    QTest::newRow("miscellaneous") << 3 << 11;
}

void KeyboardTest::tabReachesEveryControl()
{
    QFETCH(int, tab);
    QFETCH(int, atLeast);
    const Shell shell;
    QVERIFY(activate(shell.window.get()));
    shell.open();
    shell.action("actionControl")->trigger();
    tabsOf(shell)->setCurrentIndex(tab);
    const QSet<QWidget *> controls = controlsIn(shell.window.get());
    QVERIFY2(controls.size() >= atLeast, qPrintable(namesOf(controls)));
    QCOMPARE(namesOf(controls - reachedByTab(shell.window.get())), QString());
}

void KeyboardTest::controlAndTabChangeTheTab()
{
    const Shell shell;
    QVERIFY(activate(shell.window.get()));
    shell.open();
    shell.action("actionControl")->trigger();
    shell.child<QWidget>("spiGain")->setFocus();
    QTest::keyClick(shell->focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(tabsOf(shell)->currentIndex(), 1);
}

void KeyboardTest::tabReachesEveryControlOfTheDialogs_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"AboutDialog", "AccessRegister", "DrawCenterDlg"})
        QTest::newRow(name) << name;
}

void KeyboardTest::tabReachesEveryControlOfTheDialogs()
{
    QFETCH(QString, name);
    const Shell shell;
    shell->show();
    shell.open();
    auto *dialog = shell.child<QDialog>(qPrintable(name));
    QVERIFY(activate(dialog));
    QSet<QWidget *> controls = controlsIn(dialog);
    controls.remove(dialog->findChild<QWidget *>("btnGoZEB")); // an image without function
    QVERIFY(!controls.isEmpty());
    QCOMPARE(namesOf(controls - reachedByTab(dialog)), QString());
}

// Alt opens the menu bar, the arrow keys reach every entry.
void KeyboardTest::theMenusReachEveryAction()
{
    const Shell shell;
    QVERIFY(activate(shell.window.get()));
    const auto actions = shell->findChildren<QAction *>(QRegularExpression("^action[A-Z]"));
    for (QAction *action : actions)
        action->setEnabled(true);

    QTest::keyClick(shell.window.get(), Qt::Key_Alt, Qt::AltModifier);
    QMenuBar *bar = shell->menuBar();
    QVERIFY(bar->activeAction() != nullptr);
    QTest::keyClick(bar, Qt::Key_Down);
    QSet<QAction *> reached;
    for (int menu = 0; menu < bar->actions().size(); ++menu) {
        auto *popup = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(popup != nullptr);
        for (int row = 0; row < popup->actions().size(); ++row) {
            reached << popup->activeAction();
            QTest::keyClick(popup, Qt::Key_Down);
        }
        QTest::keyClick(popup, Qt::Key_Right);
    }
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->close();

    QStringList missing;
    for (QAction *action : actions) {
        if (!reached.contains(action) && action->objectName() != "actionRegisterAccess")
            missing << action->objectName(); // actionRegisterAccess is in no menu
    }
    QCOMPARE(missing, QStringList());
}

void KeyboardTest::theFocusStartsInTheCameraList()
{
    const Shell shell;
    QVERIFY(activate(shell.window.get()));
    QCOMPARE(shell->focusWidget(), static_cast<QWidget *>(shell.list()));
}

void KeyboardTest::returnOpensTheCamera()
{
    const Shell shell;
    QVERIFY(activate(shell.window.get()));
    QTest::keyClick(shell.list(), Qt::Key_Down);
    QTest::keyClick(shell.list(), Qt::Key_Return);
    QVERIFY(shell.lastLog().startsWith("Success open camera[CAM-B]"));
}

void KeyboardTest::returnWithoutCamerasOpensNothing()
{
    const Shell shell([] { shell::setCameras({}); });
    QVERIFY(activate(shell.window.get()));
    QTest::keyClick(shell.list(), Qt::Key_Return);
    QCOMPARE(shell.log(), QStringList("Start orvalisviewer"));
}

void KeyboardTest::theFocusSelectsNoSingleCamera()
{
    const Shell shell([] { shell::setCameras({{"CAM-A", "Camera A"}}); });
    QVERIFY(activate(shell.window.get()));
    QCOMPARE(shell.list()->currentRow(), -1);
    for (int round = 0; round < 2; ++round) {
        shell.view()->setFocus();
        shell.list()->setFocus();
        QVERIFY(shell.list()->hasFocus());
        QCOMPARE(shell.list()->currentRow(), -1);
        QVERIFY(shell.list()->selectedItems().isEmpty());
        shell.action("actionDiscovery")->trigger();
    }
    shell.action("actionOpen")->trigger();
    QCOMPARE(shell.log(), QStringList("Start orvalisviewer"));
    // A new list, displayed before the list gets the focus.
    shell::setCameras({{"CAM-C", "Camera C"}});
    shell.action("actionDiscovery")->trigger();
    shell.view()->setFocus();
    shell.list()->setFocus();
    QCOMPARE(shell.list()->currentRow(), -1);
}

void KeyboardTest::theKeyboardSelectsASingleCamera()
{
    const Shell shell([] { shell::setCameras({{"CAM-A", "Camera A"}}); });
    QVERIFY(activate(shell.window.get()));
    QTest::keyClick(shell.list(), Qt::Key_Down);
    QCOMPARE(shell.list()->currentRow(), 0);
    shell.action("actionOpen")->trigger();
    QVERIFY(shell.lastLog().startsWith("Success open camera[CAM-A]"));
}

void KeyboardTest::returnSelectsTheNode()
{
    const Shell shell;
    QVERIFY(activate(shell.window.get()));
    shell.open();
    auto *tree = shell.child<QTreeView>("treeXML");
    tree->setFocus();
    tree->setCurrentIndex(tree->model()->index(0, 0));
    fakeorvalis::clearCalls();
    QTest::keyClick(tree, Qt::Key_Return);
    const QStringList asked = shell::texts(fakeorvalis::callsOf({"OrvalisGetNodeInfo"}));
    QCOMPARE(asked.size(), 1);
    QVERIFY(asked.first().contains(tree->currentIndex().data().toString()));
}

void KeyboardTest::showingADockMovesTheFocus_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("dock");
    QTest::newRow("list") << "actionShowCameraList"
                          << "CameraList";
    QTest::newRow("tree") << "actionShowXMLControl"
                          << "XMLCtrl";
    QTest::newRow("panel") << "actionShowCameraControl"
                           << "CameraCtrl";
    QTest::newRow("log") << "actionShowLogStatus"
                         << "LogStatus";
}

void KeyboardTest::showingADockMovesTheFocus()
{
    QFETCH(QString, action);
    QFETCH(QString, dock);
    const Shell shell;
    QVERIFY(activate(shell.window.get()));
    shell.view()->setFocus();
    shell.action(qPrintable(action))->trigger();
    QVERIFY(shell.dock(qPrintable(dock))->isAncestorOf(shell->focusWidget()));
}

ORVALIS_QTEST_MAIN(KeyboardTest)
#include "KeyboardTest.moc"
