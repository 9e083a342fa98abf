// SPDX-License-Identifier: MIT
// The main function of Qt tests: a widget application that runs the requested classes.
#include "tests/support/QtTestMain.h"

#include <QApplication>

#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

using Classes = std::map<std::string, viewertest::Registration::Make>;

/// Created on first use, because static objects of other files fill it before main().
Classes &classes()
{
    static Classes all;
    return all;
}

int run(viewertest::Registration::Make make, const QStringList &arguments)
{
    const std::unique_ptr<QObject> test(make());
    const int failures = QTest::qExec(test.get(), arguments);
    const QStringList warnings = viewertest::takeWarnings();
    for (const QString &warning : warnings)
        fprintf(stderr, "FAIL!  : unexpected warning: %s\n", qPrintable(warning));
    return failures + static_cast<int>(warnings.size());
}

/// Removes the names of classes from the front of `arguments`.
std::vector<viewertest::Registration::Make> chosen(QStringList *arguments)
{
    std::vector<viewertest::Registration::Make> wanted;
    while (arguments->size() > 1) {
        const auto found = classes().find(arguments->at(1).toStdString());
        if (found == classes().end())
            break;
        wanted.push_back(found->second);
        arguments->removeAt(1);
    }
    if (wanted.empty())
        for (const auto &[name, make] : classes())
            wanted.push_back(make);
    return wanted;
}

} // namespace

namespace viewertest {

Registration::Registration(const char *name, Make make) { classes().emplace(name, make); }

} // namespace viewertest

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    application.setApplicationName(QStringLiteral("OrvalisViewer"));
    viewertest::installWarningTrap();
    QStringList arguments = QCoreApplication::arguments();
    int failures = 0;
    for (const viewertest::Registration::Make make : chosen(&arguments))
        failures += run(make, arguments);
    return failures;
}
