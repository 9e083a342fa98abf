// SPDX-License-Identifier: MIT
// A virtual display for a test: an X server in memory with a window manager, mouse and keyboard.
#include "tests/e2e/Desktop.h"

#include <QtTest>

namespace e2e {

namespace {

constexpr int patience = 30000; // ms, time-out of helper programs

void finish(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(patience))
        process.kill();
    process.waitForFinished();
}

} // namespace

Desktop::~Desktop()
{
    finish(m_windowManager);
    finish(m_server);
}

bool Desktop::startProgram(QProcess &process, const QString &program, const QStringList &arguments)
{
    process.setProcessEnvironment(environment());
    process.start(program, arguments);
    if (process.waitForStarted(patience))
        return true;
    m_error = program + QStringLiteral(": ") + process.errorString();
    return false;
}

bool Desktop::start()
{
    const QString screen = QStringLiteral("%1x%2x24").arg(width).arg(height);
    m_server.setStandardErrorFile(QProcess::nullDevice());
    // The server writes its display number to the given descriptor, standard output, once it
    // listens. Without -noreset it would restart after each of the first, short-lived clients.
    if (!startProgram(m_server, QStringLiteral("Xvfb"),
                      {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                       QStringLiteral("0"), screen, QStringLiteral("-nolisten"),
                       QStringLiteral("tcp"), QStringLiteral("-noreset")}))
        return false;
    while (!m_server.canReadLine()) {
        if (!m_server.waitForReadyRead(patience)) {
            m_error = QStringLiteral("Xvfb does not say its display number");
            return false;
        }
    }
    m_display = QLatin1Char(':') + QString::fromLatin1(m_server.readLine().trimmed());
    m_windowManager.setStandardErrorFile(QProcess::nullDevice());
    if (!startProgram(m_windowManager, QStringLiteral("openbox"), {QStringLiteral("--sm-disable")}))
        return false;
    const auto managed = [this] {
        return run(QStringLiteral("xprop"),
                   {QStringLiteral("-root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK")})
            .contains("window id");
    };
    if (!QTest::qWaitFor(managed, patience)) {
        m_error = QStringLiteral("no window manager");
        return false;
    }
    return true;
}

QProcessEnvironment Desktop::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "QT_SCALE_FACTOR",
                             "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "DESKTOP_SESSION"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("DISPLAY"), m_display);
    return environment;
}

QByteArray Desktop::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments);
    process.waitForFinished(patience);
    return process.readAllStandardOutput();
}

QImage Desktop::screenshot() const
{
    const QByteArray png =
        run(QStringLiteral("import"), {QStringLiteral("-silent"), QStringLiteral("-window"),
                                       QStringLiteral("root"), QStringLiteral("png:-")});
    return QImage::fromData(png, "PNG").convertToFormat(QImage::Format_RGB32);
}

void Desktop::moveTo(QPoint position) const
{
    xdotool({QStringLiteral("mousemove"), QStringLiteral("--sync"), QString::number(position.x()),
             QString::number(position.y())});
}

void Desktop::click(QPoint position) const
{
    moveTo(position);
    xdotool({QStringLiteral("click"), QStringLiteral("1")});
}

void Desktop::doubleClick(QPoint position) const
{
    moveTo(position);
    xdotool({QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
             QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
}

void Desktop::wheel(int steps) const
{
    xdotool({QStringLiteral("click"), QStringLiteral("--repeat"), QString::number(qAbs(steps)),
             QStringLiteral("--delay"), QStringLiteral("30"),
             steps > 0 ? QStringLiteral("4") : QStringLiteral("5")});
}

void Desktop::key(const QString &chord) const
{
    xdotool({QStringLiteral("key"), QStringLiteral("--clearmodifiers"), chord});
}

void Desktop::type(const QString &text) const
{
    xdotool({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("30"), text});
}

QString Desktop::windowOf(qint64 process, const QString &title) const
{
    const QByteArray found =
        run(QStringLiteral("xdotool"),
            {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--all"),
             QStringLiteral("--pid"), QString::number(process), QStringLiteral("--name"),
             QStringLiteral("^") + title});
    return QString::fromLatin1(found.split('\n').first());
}

QString Desktop::titleOf(const QString &window) const
{
    return QString::fromUtf8(
        run(QStringLiteral("xdotool"), {QStringLiteral("getwindowname"), window}).trimmed());
}

QImage Desktop::iconOf(const QString &window) const
{
    // Width, height, and a number for each pixel: 0xAARRGGBB.
    const QByteArray property =
        run(QStringLiteral("xprop"),
            {QStringLiteral("-notype"), QStringLiteral("-id"), window, QStringLiteral("-f"),
             QStringLiteral("_NET_WM_ICON"), QStringLiteral("32c"), QStringLiteral("=$0+\\n"),
             QStringLiteral("_NET_WM_ICON")});
    const QList<QByteArray> numbers = property.mid(property.indexOf('=') + 1).split(',');
    if (numbers.size() < 3)
        return {};
    const int columns = numbers.at(0).trimmed().toInt();
    const int rows = numbers.at(1).trimmed().toInt();
    if (columns < 1 || rows < 1 || numbers.size() - 2 < columns * rows)
        return {};
    QImage icon(columns, rows, QImage::Format_ARGB32);
    for (int i = 0; i < columns * rows; ++i)
        icon.setPixel(i % columns, i / columns, numbers.at(2 + i).trimmed().toUInt());
    return icon;
}

} // namespace e2e
