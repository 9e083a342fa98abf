// SPDX-License-Identifier: MIT
// The executable in a real window, with its own home folder.
#pragma once

#include "tests/e2e/Desktop.h"

#include <QRegularExpression>
#include <QTemporaryDir>

namespace e2e {

class ViewerSession {
public:
    ~ViewerSession();

    /// Sets a variable of the viewer's environment; call it before start(). LD_LIBRARY_PATH
    /// replaces the camera library.
    void setVariable(const QString &name, const QString &value) { m_variables.insert(name, value); }

    /// Starts display and viewer and waits for the window. Returns false, with the reason in
    /// error(), if one of them does not start.
    bool start(const QStringList &wrapper = {});
    QString error() const { return m_error; }

    Desktop &desktop() { return m_desktop; }
    QString title() const { return m_desktop.titleOf(m_window); }
    QImage icon() const { return m_desktop.iconOf(m_window); }
    QString documents() const { return m_home.filePath(QStringLiteral("Documents")); }
    QString output() { return QString::fromUtf8(m_viewer.readAll()); }
    bool isRunning() const { return m_viewer.state() == QProcess::Running; }

    /// Takes a screenshot and saves it as `name` for inspection.
    QImage keepScreenshot(const QString &name) const;

    /// Clicks the tool button with the icon of that file name, without ":/icons/". Returns false if
    /// no enabled button appears before the time-out.
    bool clickTool(const QString &icon);
    bool isToolEnabled(const QString &icon) const;

    /// Rows of the camera list on the screen.
    QList<QRect> cameraRows() const;

    /// Waits until the list has `count` rows.
    bool waitForCameras(int count);
    /// Double-clicks a row of the list and keeps a screenshot of the empty view.
    void openCamera(int row);
    /// True if most of the middle of the view has changed since openCamera().
    bool showsPicture() const;

    /// Waits for the viewer to exit. Returns the milliseconds until then, -1 after the time-out.
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

/// Part of the screen inside the live image: in the middle, outside every dock.
QRect pictureCentre();
/// The status bar on the screen.
QRect statusBar();

} // namespace e2e
