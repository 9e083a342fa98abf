// SPDX-License-Identifier: MIT
// Discovery passes: list the cameras on the bus, and detect the loss of the one opened last.
#include "app/CameraFinder.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

#include <utility>

namespace {

bool isOnBus(const CameraId &id, int count)
{
    const int position = cameraPosition(id, count);
    if (position < 0)
        return false;
    qDebug() << "open camera" << cameraIdText(id) << "found again at" << position;
    return true;
}

bool onGuiThread() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }

} // namespace

void CameraFinder::attach(Listener listener)
{
    const std::lock_guard lock(m_mutex);
    m_listener = std::move(listener);
}

void CameraFinder::detach() { attach({}); }

void CameraFinder::setOpened(const CameraId &id)
{
    const std::lock_guard lock(m_mutex);
    m_opened = id;
}

bool CameraFinder::isAttached()
{
    const std::lock_guard lock(m_mutex);
    return m_listener.context != nullptr;
}

// Uses no member of the window, which may be destroyed during any call of the library.
void CameraFinder::run()
{
    if (!isAttached())
        return;
    const QStringList names = cameraNames();
    const auto count = static_cast<int>(names.size());
    publish(names);

    std::unique_lock lock(m_mutex);
    const CameraId opened = m_opened;
    const bool changed = count != m_previousCount;
    lock.unlock();
    if (changed && opened.front() != '\0' && !isOnBus(opened, count))
        reportLost(opened);
    lock.lock();
    m_previousCount = count;
}

// Coalesces pending lists: the GUI may be slower than discovery.
void CameraFinder::publish(const QStringList &names)
{
    std::unique_lock lock(m_mutex);
    if (m_listener.context == nullptr)
        return;
    if (onGuiThread()) {
        const auto found = m_listener.found;
        lock.unlock();
        return found(names);
    }
    m_names = names;
    if (!std::exchange(m_listPosted, true))
        QMetaObject::invokeMethod(
            m_listener.context, [self = shared_from_this()] { self->deliverNewest(); },
            Qt::QueuedConnection);
}

void CameraFinder::deliverNewest()
{
    std::unique_lock lock(m_mutex);
    m_listPosted = false;
    const QStringList newest = std::exchange(m_names, {});
    const auto found = m_listener.found;
    lock.unlock();
    if (found)
        found(newest);
}

void CameraFinder::reportLost(const CameraId &missing)
{
    std::unique_lock lock(m_mutex);
    if (m_listener.context == nullptr)
        return;
    if (onGuiThread()) {
        const auto lost = m_listener.lost;
        lock.unlock();
        return lost();
    }
    if (!std::exchange(m_lossPosted, true))
        QMetaObject::invokeMethod(
            m_listener.context,
            [self = shared_from_this(), missing] { self->reportIfStillLost(missing); },
            Qt::QueuedConnection);
}

void CameraFinder::reportIfStillLost(const CameraId &missing)
{
    std::unique_lock lock(m_mutex);
    m_lossPosted = false;
    const auto lost = m_opened == missing ? m_listener.lost : nullptr;
    lock.unlock();
    if (lost)
        lost();
}
