// SPDX-License-Identifier: MIT
// Finds cameras, now and every three seconds, and notices when the open one has left the bus.
#include "app/DiscoveryLink.h"
#include "app/ExitNotice.h"
#include "app/MainWindow.h"
#include "app/PoolThreads.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrent>

#include <chrono>

namespace {

constexpr int discoveryPeriodMs = 3000;
constexpr std::chrono::milliseconds longestWaitAtExit{3000};

/// Passes that hang in the library at a time; beyond that a tick starts none.
constexpr int mostPasses = 8;

std::mutex currentMutex; // guards currentLink
std::shared_ptr<DiscoveryLink> currentLink;

std::shared_ptr<DiscoveryLink> linkOf(void *mainWindow)
{
    const std::lock_guard lock(currentMutex);
    return currentLink != nullptr && currentLink->owner == mainWindow ? currentLink : nullptr;
}

bool onGuiThread() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }

/// Runs `deliver` on the GUI thread, unless the window goes away before.
template <typename Function> void post(MainWindow *window, Function deliver)
{
    QMetaObject::invokeMethod(window, std::move(deliver), Qt::QueuedConnection);
}

// Lists that the GUI has no time for give way to newer ones.
void publishList(const std::shared_ptr<DiscoveryLink> &link, const QStringList &names)
{
    std::unique_lock lock(link->mutex);
    MainWindow *window = link->window;
    if (window == nullptr)
        return;
    if (onGuiThread()) {
        lock.unlock();
        emit window->sigUpdateCameraList(names);
        return;
    }
    link->names = names;
    if (std::exchange(link->listPosted, true))
        return;
    post(window, [link, window] {
        std::unique_lock taking(link->mutex);
        link->listPosted = false;
        const QStringList newest = std::exchange(link->names, {});
        taking.unlock();
        emit window->sigUpdateCameraList(newest);
    });
}

void closeIfStill(const std::shared_ptr<DiscoveryLink> &link, MainWindow *window,
                  const CameraId &missing)
{
    {
        const std::lock_guard lock(link->mutex);
        link->closePosted = false;
        if (link->cameraId != missing)
            return;
    }
    window->loseCamera();
}

void closeMissing(const std::shared_ptr<DiscoveryLink> &link, const CameraId &missing)
{
    std::unique_lock lock(link->mutex);
    MainWindow *window = link->window;
    if (window == nullptr)
        return;
    if (onGuiThread()) {
        lock.unlock();
        window->loseCamera();
        return;
    }
    if (!std::exchange(link->closePosted, true))
        post(window, [link, window, missing] { closeIfStill(link, window, missing); });
}

bool isOnBus(const CameraId &id, int count)
{
    const int position = cameraPosition(id, count);
    if (position < 0)
        return false;
    qDebug() << "open camera" << cameraIdText(id) << "found again at" << position;
    return true;
}

bool isAbandoned(DiscoveryLink &link)
{
    const std::lock_guard lock(link.mutex);
    return link.window == nullptr;
}

/// Works on the link alone, as the window may go away during any call of the library.
void runPass(const std::shared_ptr<DiscoveryLink> &link)
{
    if (isAbandoned(*link))
        return;
    const QStringList names = cameraNames();
    const auto count = static_cast<int>(names.size());
    publishList(link, names);

    std::unique_lock lock(link->mutex);
    const CameraId opened = link->cameraId;
    const bool changed = count != link->previousCount;
    lock.unlock();
    if (changed && opened.front() != '\0' && !isOnBus(opened, count))
        closeMissing(link, opened);
    lock.lock();
    link->previousCount = count;
}

} // namespace

void DiscoveryThread(void *mainWindow)
{
    const std::shared_ptr<DiscoveryLink> link = linkOf(mainWindow);
    if (link == nullptr)
        return;
    // A pass mostly waits for the library; save tasks should not wait for it.
    QThreadPool::globalInstance()->releaseThread();
    runPass(link);
    QThreadPool::globalInstance()->reserveThread();
}

int MainWindow::DiscoveryProc()
{
    runPass(m_discovery);
    return 0;
}

void MainWindow::slotRefreshCamera(int *count)
{
    const QStringList names = cameraNames();
    emit sigUpdateCameraList(names);
    if (count != nullptr)
        *count = static_cast<int>(names.size());
}

void MainWindow::startDiscovery()
{
    m_discovery->owner = this;
    {
        const std::lock_guard lock(m_discovery->mutex);
        m_discovery->window = this;
    }
    {
        const std::lock_guard lock(currentMutex);
        currentLink = m_discovery;
    }
    m_pTimer = new QTimer(this);
    connect(m_pTimer, SIGNAL(timeout()), this, SLOT(OnTimer()));
    m_pTimer->start(discoveryPeriodMs);
}

void MainWindow::OnTimer()
{
    // A pass makes room for one more thread of the pool.
    if (m_discovery->passes.running() >= mostPasses || !mayStartPoolThread())
        return;
    m_discovery->passes.begin();
    m_discoveryWatcher.setFuture(QtConcurrent::run([link = m_discovery, window = this] {
        DiscoveryThread(window); // its address alone: the window may be gone
        link->passes.end();
    }));
}

void MainWindow::leaveDiscovery()
{
    m_pTimer->stop();
    const std::lock_guard lock(m_discovery->mutex);
    m_discovery->window = nullptr;
}

void MainWindow::endPoolTasks()
{
    hide(); // the window would not answer while the rest is saved
    m_bOneGrabDone = true;
    m_grabPool.waitForDone();
    awaitSaves(m_saveLimiter);
    (void)m_discovery->passes.waitIdle(longestWaitAtExit);
    const std::lock_guard lock(currentMutex);
    currentLink.reset();
}
