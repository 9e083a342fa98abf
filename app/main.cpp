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

// The viewer draws without OpenGL. Qt would load it with the first window, which takes a third of
// the start time.
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
    // Treat a limit of file sizes ("ulimit -f") like a full disk instead of ending the program.
    (void)std::signal(SIGXFSZ, SIG_IGN);
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("OrvalisViewer"));
    // Desktops take icon and title of the window from the installed desktop file.
    QApplication::setDesktopFileName(QStringLiteral("org.orvalis.OrvalisViewer"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/OrvalisViewer.ico")));
    applyAppearance();
    const int result = runViewer(&application);
    // Tasks that still run hang in the camera library, or on a disk that the user gave up waiting
    // for.
    if (!QThreadPool::globalInstance()->waitForDone(100))
        std::_Exit(result);
    return result;
}
