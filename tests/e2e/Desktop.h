// SPDX-License-Identifier: MIT
// A display of the test's own: an X server in memory with a window manager, a mouse and a keyboard.
#pragma once

#include <QImage>
#include <QPoint>
#include <QProcess>
#include <QString>

namespace e2e {

/// Starts with a free display number and ends with the object. GUI-less: no Qt window lives here.
class Desktop {
public:
    static constexpr int width = 1600;
    static constexpr int height = 1000;

    Desktop() = default;
    ~Desktop();
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    /// False, with the reason in error(), if the X server or the window manager does not start.
    bool start();
    QString error() const { return m_error; }

    /// The environment of programs that shall appear here.
    QProcessEnvironment environment() const;

    /// The whole screen; null if it cannot be taken.
    QImage screenshot() const;

    void click(QPoint position) const;
    void doubleClick(QPoint position) const;
    void moveTo(QPoint position) const;
    /// Turns the wheel by `steps` notches at the mouse, away from the user if positive.
    void wheel(int steps) const;
    /// A key or chord as the keyboard tool names it: "ctrl+o", "alt+F4", "Down".
    void key(const QString &chord) const;
    void type(const QString &text) const;

    /// Window of `process` whose title begins with `title`; empty if there is none at present.
    QString windowOf(qint64 process, const QString &title) const;
    QString titleOf(const QString &window) const;
    /// The first picture that `window` gives for its icon; null if it gives none.
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
