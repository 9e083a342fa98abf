// SPDX-License-Identifier: MIT
// The least that a Qt program with a main window takes: what the viewer's start is held against.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("bare window"));
    window.resize(1370, 917); // as large as the viewer's
    window.showMaximized();
    return application.exec();
}
