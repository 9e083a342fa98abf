// SPDX-License-Identifier: MIT
// What Qt tests share: a main function for the test classes of a program, in which a Qt warning
// fails the test.
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

/// Makes a test class known to the program's main function.
class Registration {
public:
    using Make = QObject *(*)();
    /// Both live as long as the program; `make` returns a new object of the class `name`.
    Registration(const char *name, Make make);
};

} // namespace viewertest

/// In place of QTEST_MAIN: the program runs the classes that its first arguments name, all of them
/// without arguments; the others are those of Qt Test.
#define ORVALIS_QTEST_MAIN(TestObject)                                                             \
    static const viewertest::Registration registered##TestObject(                                  \
        #TestObject, []() -> QObject * { return new TestObject; });
