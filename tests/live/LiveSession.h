// SPDX-License-Identifier: MIT
// A viewer on the simulated cameras, used through its widgets as a person would use it.
#pragma once

#include "app/MainWindow.h"

#include <QAction>
#include <QGraphicsView>
#include <QTemporaryDir>
#include <QtTest>

#include <map>

/// One main window with one camera. Everything runs on the GUI thread. Functions that wait return
/// false when what they wait for did not come.
class LiveSession {
public:
    LiveSession();

    /// Opens the camera whose list entry contains `name`.
    bool open(const QString &name);
    bool play();
    void stop();

    /// The picture that the view shows.
    QImage shown() const;
    /// Waits until `count` more pictures were shown.
    bool waitForPictures(int count);

    /// A widget of the control panel or the tree dock by its object name; fails loudly if missing.
    template <typename Widget> Widget *widget(const char *name) const
    {
        auto *found = m_window.findChild<Widget *>(QLatin1String(name));
        Q_ASSERT_X(found, "LiveSession::widget", name);
        return found;
    }
    QAction *action(const char *name) const { return widget<QAction>(name); }
    MainWindow &window() { return m_window; }

    /// Value that a spin box of the panel shows, of whatever class it is.
    double value(const char *spinBoxName) const;
    /// Types a number into a spin box and ends with Return.
    void typeInto(const char *spinBoxName, const QString &text);

    /// Chooses an entry of a combo box as a user does.
    void choose(const char *comboName, const QString &entry);
    /// Clicks a node of the feature tree. False if the tree has no such node.
    bool clickNode(const QString &name);
    /// Clicks a node, types `value` and presses the keypad's Enter.
    bool commitNode(const QString &name, const QString &value);
    /// Chooses an entry of an enumeration node in the tree dock.
    bool chooseNode(const QString &name, const QString &entry);
    /// Clicks a command node and its button.
    bool executeNode(const QString &name);

    /// Saves the next picture as BMP and reads it back. Null if no complete file came.
    QImage savedPicture();
    QString saveFolder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    MainWindow m_window;
};
