// SPDX-License-Identifier: MIT
// Catches Qt's warnings before Qt Test's own message handler.
#include "tests/support/QtTestMain.h"

#include <QMutex>

namespace {

QMutex trapMutex; // guards caught and expected
QStringList caught;
QList<QRegularExpression> expected;

/// Warnings about the offscreen and minimal platforms themselves, on machines without a display.
bool isAboutThePlatform(const QString &message)
{
    return message.contains(QLatin1String("propagateSizeHints")) ||
           message.contains(QLatin1String("XDG_RUNTIME_DIR")) ||
           message.contains(QLatin1String("This plugin does not support"));
}

void trap(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg)
        abort();
    if ((type != QtWarningMsg && type != QtCriticalMsg) || isAboutThePlatform(message))
        return;
    const QMutexLocker lock(&trapMutex);
    for (const QRegularExpression &pattern : qAsConst(expected)) {
        if (pattern.match(message).hasMatch())
            return;
    }
    caught.append(message);
}

} // namespace

namespace viewertest {

void installWarningTrap()
{
    // During qExec(), Qt Test installs its own handler, which passes messages on to this one.
    qInstallMessageHandler(trap);
}

void expectWarning(const QRegularExpression &pattern)
{
    const QMutexLocker lock(&trapMutex);
    expected.append(pattern);
}

QStringList takeWarnings()
{
    const QMutexLocker lock(&trapMutex);
    expected.clear();
    return std::exchange(caught, {});
}

} // namespace viewertest
