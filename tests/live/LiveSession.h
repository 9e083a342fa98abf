// SPDX-License-Identifier: MIT
// A viewer with simulated cameras, operated through its widgets like by a user.
#pragma once

#include "app/MainWindow.h"

#include <QAction>
#include <QGraphicsView>
#include <QTemporaryDir>
#include <QtTest>

#include <map>

/// One main window with one camera. Everything runs on the GUI thread. Functions that wait return
/// false after a time-out.
class LiveSession {
public:
    LiveSession();

    /// Opens the camera whose list entry contains `name`.
    bool open(const QString &name);
    bool play();
    void stop();

    /// The image in the view.
    QImage shown() const;
    /// Waits until `count` more images were displayed.
    bool waitForPictures(int count);

    /// A widget of the control panel or the tree dock by its object name; fatal if missing.
    template <typename Widget> Widget *widget(const char *name) const
    {
        auto *found = m_window.findChild<Widget *>(QLatin1String(name));
        Q_ASSERT_X(found, "LiveSession::widget", name);
        return found;
    }
    QAction *action(const char *name) const { return widget<QAction>(name); }
    MainWindow &window() { return m_window; }

    /// Value of a spin box of the panel, of any class.
    double value(const char *spinBoxName) const;
    /// Types a number into a spin box and presses Return.
    void typeInto(const char *spinBoxName, const QString &text);

    /// Chooses an entry of a combo box like a user.
    void choose(const char *comboName, const QString &entry);
    /// Clicks a node of the feature tree. Returns false if the tree has no such node.
    bool clickNode(const QString &name);
    /// Clicks a node, types `value` and presses the keypad's Enter.
    bool commitNode(const QString &name, const QString &value);
    /// Chooses an entry of an enumeration node in the tree dock.
    bool chooseNode(const QString &name, const QString &entry);
    /// Clicks a command node and its button.
    bool executeNode(const QString &name);

    /// Saves the next image as BMP and reads it back. Null if no complete file appears.
    QImage savedPicture();
    QString saveFolder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    MainWindow m_window;
};
