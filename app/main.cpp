// SPDX-License-Identifier: MIT
// Entry point of the viewer.
#include "app/Appearance.h"
#include "app/MainWindow.h"

#include <QApplication>
#include <QIcon>
#include <QThreadPool>

#include <csignal>
#include <cstdlib>

namespace {

int runViewer(QApplication *application)
{
    MainWindow window;
    window.showMaximized();
    return application->exec();
}

// All drawing is done by the processor. Loading OpenGL, which Qt does with the first window, would
// take a third of the time to start.
void startWithoutOpenGl()
{
    constexpr char variable[] = "QT_XCB_GL_INTEGRATION";
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, "none");
}

} // namespace

int main(int argc, char *argv[])
{
    startWithoutOpenGl();
    // A limit of file sizes ("ulimit -f") is met like a full disk, not with the end of the program.
    (void)std::signal(SIGXFSZ, SIG_IGN);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("OrvalisViewer"));
    // Names the window to desktops that show icon and title of the installed desktop file.
    QApplication::setDesktopFileName(QStringLiteral("org.orvalis.OrvalisViewer"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/OrvalisViewer.ico")));
    applyAppearance();
    const int result = runViewer(&application);
    // What is left on the pool now hangs in the camera library; nothing else is lost by leaving it.
    if (!QThreadPool::globalInstance()->waitForDone(100))
        std::_Exit(result);
    return result;
}
