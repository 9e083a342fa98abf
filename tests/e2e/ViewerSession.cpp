// SPDX-License-Identifier: MIT
// The executable in a real window, with its own home folder.
#include "tests/e2e/ViewerSession.h"

#include "tests/e2e/Pixels.h"

#include <QDir>
#include <QElapsedTimer>
#include <QtTest>

namespace e2e {

namespace {

constexpr int patience = 30000; // ms, time-out of every wait

constexpr int listRight = 290; // a column inside the camera list, right of its texts

/// The icon at the size of the tool bar.
QImage iconImage(const QString &icon)
{
    constexpr int side = 20;
    const QImage image(QStringLiteral(E2E_ICONS "/") + icon);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// Menu bar and tool bar, with the frame that the window manager draws above them.
QRect toolArea() { return {0, 0, Desktop::width, 80}; }

} // namespace

QRect pictureCentre() { return {Desktop::width / 2 - 150, Desktop::height / 2 - 150, 300, 200}; }

QRect statusBar()
{
    return {Desktop::width / 2, Desktop::height - 24, Desktop::width / 2 - 20, 20};
}

ViewerSession::~ViewerSession()
{
    if (m_viewer.state() == QProcess::NotRunning)
        return;
    m_viewer.kill();
    m_viewer.waitForFinished();
}

bool ViewerSession::fail(const QString &reason)
{
    m_error = reason + (m_viewer.isOpen() ? QLatin1Char('\n') + output() : QString());
    return false;
}

void ViewerSession::prepareHome() const
{
    for (const char *folder : {"Documents", ".config", ".cache"})
        QDir(m_home.path()).mkpath(QLatin1String(folder));
}

bool ViewerSession::start(const QStringList &wrapper)
{
    if (!m_desktop.start())
        return fail(m_desktop.error());
    prepareHome();
    QProcessEnvironment environment = m_desktop.environment();
    environment.insert(QStringLiteral("HOME"), m_home.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                       m_home.filePath(QStringLiteral(".config")));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), m_home.filePath(QStringLiteral(".cache")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home.path());
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("*.debug=false"));
    environment.insert(QStringLiteral("ORVALIS_BACKENDS"), QStringLiteral("simulated"));
    for (auto variable = m_variables.cbegin(); variable != m_variables.cend(); ++variable)
        environment.insert(variable.key(), variable.value());
    m_viewer.setProcessEnvironment(environment);
    m_viewer.setProcessChannelMode(QProcess::MergedChannels);
    QStringList command = wrapper;
    command.append(QStringLiteral(E2E_VIEWER));
    const QString program = command.takeFirst();
    m_viewer.start(program, command);
    if (!m_viewer.waitForStarted(patience))
        return fail(m_viewer.errorString());
    const auto windowIsThere = [this] {
        m_window = m_desktop.windowOf(m_viewer.processId(), QStringLiteral("OrvalisViewer"));
        return !m_window.isEmpty();
    };
    return QTest::qWaitFor(windowIsThere, patience) || fail(QStringLiteral("no window"));
}

QImage ViewerSession::keepScreenshot(const QString &name) const
{
    const QImage screen = m_desktop.screenshot();
    QDir().mkpath(QStringLiteral(E2E_SCREENSHOTS));
    screen.save(QStringLiteral(E2E_SCREENSHOTS "/%1.png").arg(name));
    return screen;
}

bool ViewerSession::isToolEnabled(const QString &icon) const
{
    return findIcon(m_desktop.screenshot(), iconImage(icon), toolArea()).has_value();
}

bool ViewerSession::clickTool(const QString &icon)
{
    std::optional<QRect> place;
    const auto found = [&] {
        place = findIcon(m_desktop.screenshot(), iconImage(icon), toolArea());
        return place.has_value();
    };
    if (!QTest::qWaitFor(found, patience))
        return false;
    m_desktop.click(place->center());
    // Move away from the button, whose highlight would change the icon in the next screenshot.
    m_desktop.moveTo({Desktop::width / 2, Desktop::height / 2});
    return true;
}

QList<QRect> ViewerSession::cameraRows() const
{
    const QImage screen = m_desktop.screenshot();
    const QRect list = listAt(screen, listRight, toolArea().bottom(), 30);
    return list.isEmpty() ? QList<QRect>()
                          : textLines(screen, {20, list.top(), 180, list.height()});
}

bool ViewerSession::waitForCameras(int count)
{
    return QTest::qWaitFor([&] { return cameraRows().size() == count; }, patience);
}

void ViewerSession::openCamera(int row)
{
    const QList<QRect> rows = cameraRows();
    QVERIFY(row < rows.size());
    m_withoutPicture = m_desktop.screenshot();
    m_desktop.doubleClick(rows.at(row).center());
}

bool ViewerSession::showsPicture() const
{
    const QRect area = pictureCentre();
    return differences(m_withoutPicture, m_desktop.screenshot(), area) >
           area.width() * area.height() / 2;
}

int ViewerSession::waitForExit()
{
    QElapsedTimer clock;
    clock.start();
    return m_viewer.waitForFinished(patience) ? static_cast<int>(clock.elapsed()) : -1;
}

} // namespace e2e
