// SPDX-License-Identifier: MIT
// A virtual display for a test: an X server in memory with a window manager, mouse and keyboard.
#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QString>

namespace e2e {

/// Uses a free display number and ends with the object. The test itself opens no window.
class Desktop {
public:
    static constexpr int width = 1600;
    static constexpr int height = 1000;

    Desktop() = default;
    ~Desktop();
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// Returns false, with the reason in error(), if the X server or the window manager does not
    /// start.
    bool start();
    QString error() const { return m_error; }

    /// Environment for programs on this display.
    QProcessEnvironment environment() const;

    /// An image of the whole screen; null on failure.
    QImage screenshot() const;

    void click(QPoint position) const;
    void doubleClick(QPoint position) const;
    void moveTo(QPoint position) const;
    /// Turns the mouse wheel by `steps` notches, away from the user if positive.
    void wheel(int steps) const;
    /// Presses a key or chord, in xdotool's notation: "ctrl+o", "alt+F4", "Down".
    void key(const QString &chord) const;
    void type(const QString &text) const;

    /// Window of `process` whose title begins with `title`; empty if there is none.
    QString windowOf(qint64 process, const QString &title) const;
    QString titleOf(const QString &window) const;
    /// The first icon image of `window`; null if it has none.
    QImage iconOf(const QString &window) const;

private:
    QByteArray run(const QString &program, const QStringList &arguments) const;
    void xdotool(const QStringList &arguments) const { run(QStringLiteral("xdotool"), arguments); }
    bool startProgram(QProcess &process, const QString &program, const QStringList &arguments);

    QProcess m_server;
    QProcess m_windowManager;
    QString m_display;
    QString m_error;
};

} // namespace e2e
