// SPDX-License-Identifier: MIT
// Shared by Qt tests: a main function for the test classes of a program, in which a Qt warning
// fails the test.
#pragma once

#include <QApplication>
#include <QRegularExpression>
#include <QtTest>

namespace viewertest {

/// Makes any Qt warning or critical message fail the running test function, for example "No
/// matching signal for on_...". Messages that match a pattern of expectWarning() are accepted.
void installWarningTrap();

/// Accepts warnings that match `pattern` until the end of the running test function.
void expectWarning(const QRegularExpression &pattern);

/// Warnings caught since the last call. A test's cleanup() may compare it with an empty list.
QStringList takeWarnings();

/// Registers a test class with the program's main function.
class Registration {
public:
    using Make = QObject *(*)();
    /// `make` returns a new object of the class `name`; both must be valid until the program ends.
    Registration(const char *name, Make make);
};

} // namespace viewertest

/// Replaces QTEST_MAIN: the program runs the classes named by its first arguments, or all of them
/// if there are none; Qt Test receives the other arguments.
#define ORVALIS_QTEST_MAIN(TestObject)                                                             \
    static const viewertest::Registration registered##TestObject(                                  \
        #TestObject, []() -> QObject * { return new TestObject; });
