// SPDX-License-Identifier: MIT
// The real executable in a real window, with a home folder of its own.
#pragma once

#include "tests/e2e/Desktop.h"

#include <QRegularExpression>
#include <QTemporaryDir>

namespace e2e {

class ViewerSession {
public:
    ~ViewerSession();

    /// A variable of the viewer's environment; before start(). LD_LIBRARY_PATH puts another camera
    /// library in its place.
    void setVariable(const QString &name, const QString &value) { m_variables.insert(name, value); }

    /// Starts display and viewer and waits for the window. False, with the reason in error(), if
    /// one of them does not come.
    bool start(const QStringList &wrapper = {});
    QString error() const { return m_error; }

    Desktop &desktop() { return m_desktop; }
    QString title() const { return m_desktop.titleOf(m_window); }
    QImage icon() const { return m_desktop.iconOf(m_window); }
    QString documents() const { return m_home.filePath(QStringLiteral("Documents")); }
    QString output() { return QString::fromUtf8(m_viewer.readAll()); }
    bool isRunning() const { return m_viewer.state() == QProcess::Running; }

    /// Takes the screenshot and keeps it under `name` for a person to look at.
    QImage keepScreenshot(const QString &name) const;

    /// Clicks the tool button with the icon of that file name (":/icons/" left out). False if it is
    /// not to be seen as enabled within the time that a helper program gets.
    bool clickTool(const QString &icon);
    bool isToolEnabled(const QString &icon) const;

    /// Rows of the camera list as they stand on the screen.
    QList<QRect> cameraRows() const;

    /// Waits until the list has `count` rows.
    bool waitForCameras(int count);
    /// Double-clicks a row of the list and remembers the view without a picture.
    void openCamera(int row);
    /// True if most of the view's middle is not what it was before the camera was opened.
    bool showsPicture() const;

    /// Waits for the viewer to end by itself; milliseconds that took, -1 if it did not.
    int waitForExit();
    int exitCode() const { return m_viewer.exitCode(); }
    bool exitedNormally() const { return m_viewer.exitStatus() == QProcess::NormalExit; }

private:
    bool fail(const QString &reason);
    void prepareHome() const;

    Desktop m_desktop;
    QTemporaryDir m_home;
    QProcess m_viewer;
    QImage m_withoutPicture;
    QMap<QString, QString> m_variables;
    QString m_window;
    QString m_error;
};

/// Where live pictures stand on the screen: in the middle, clear of every dock.
QRect pictureCentre();
/// The strip of the status bar.
QRect statusBar();

} // namespace e2e
