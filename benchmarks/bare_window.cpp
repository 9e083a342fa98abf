// SPDX-License-Identifier: MIT
// A Qt program with an empty main window: the reference for the start of the viewer.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("bare window"));
    window.resize(1370, 917); // size of the viewer's window
    window.showMaximized();
    return application.exec();
}
