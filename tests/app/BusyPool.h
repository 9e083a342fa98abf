// SPDX-License-Identifier: MIT
// A global thread pool whose threads all wait, as for a disk that does not respond.
#pragma once

#include <QFutureSynchronizer>
#include <QThreadPool>
#include <QtConcurrent>

#include <latch>
#include <utility>

namespace shell {

/// Occupies every thread of the pool until release() or destruction. Create it after the window,
/// whose icons Qt may convert on the pool.
class BusyPool {
public:
    BusyPool()
    {
        for (int i = 0; i < QThreadPool::globalInstance()->maxThreadCount(); ++i)
            m_tasks.addFuture(QtConcurrent::run([this] { m_end.wait(); }));
    }
    ~BusyPool() { release(); }
    BusyPool(const BusyPool &) = delete;
    BusyPool &operator=(const BusyPool &) = delete;

    void release()
    {
        if (!std::exchange(m_released, true))
            m_end.count_down();
        m_tasks.waitForFinished();
    }

private:
    std::latch m_end{1};
    bool m_released = false;
    QFutureSynchronizer<void> m_tasks;
};

} // namespace shell
