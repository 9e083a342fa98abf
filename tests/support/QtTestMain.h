// SPDX-License-Identifier: MIT
// The main function of Qt tests: a widget application in which a Qt warning fails the test.
#pragma once

#include <QApplication>
#include <QRegularExpression>
#include <QtTest>

namespace viewertest {

/// From here on any Qt warning or critical message fails the running test function, as "No matching
/// signal for on_..." should. Messages that match a pattern given to expectWarning() are let
/// through.
void installWarningTrap();

/// Lets warnings that match `pattern` pass until the end of the running test function.
void expectWarning(const QRegularExpression &pattern);

/// Warnings caught since the last call. A test's cleanup() may compare it with an empty list.
QStringList takeWarnings();

} // namespace viewertest

/// In place of QTEST_MAIN.
#define ORVALIS_QTEST_MAIN(TestObject)                                                             \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        QApplication application(argc, argv);                                                      \
        application.setApplicationName(QStringLiteral("OrvalisViewer"));                           \
        viewertest::installWarningTrap();                                                          \
        TestObject test;                                                                           \
        const int failures = QTest::qExec(&test, argc, argv);                                      \
        const QStringList warnings = viewertest::takeWarnings();                                   \
        for (const QString &warning : warnings)                                                    \
            fprintf(stderr, "FAIL!  : unexpected warning: %s\n", qPrintable(warning));             \
        return failures + static_cast<int>(warnings.size());                                       \
    }
