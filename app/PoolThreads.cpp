// SPDX-License-Identifier: MIT
// Threads for the tasks of the window.
#include "app/PoolThreads.h"

#include <QSemaphore>
#include <QThreadPool>
#include <QtConcurrent>

#include <memory>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr int neverEnd = -1;
constexpr int longestWaitMs = 1000;

} // namespace

void keepPoolThreads(QThreadPool *pool)
{
    pool->setExpiryTimeout(neverEnd);
    const int threads = pool->maxThreadCount();
    const auto begun = std::make_shared<QSemaphore>();
    // None of these tasks ends before all have begun, so each has a thread of its own.
    for (int i = 0; i < threads; ++i)
        QtConcurrent::run(pool, [begun, threads] {
            begun->release();
            if (begun->tryAcquire(threads, longestWaitMs))
                begun->release(threads);
        });
}

bool mayStartPoolThread()
{
    // What each thread's event dispatcher takes.
    const int descriptor = eventfd(0, EFD_CLOEXEC);
    return descriptor >= 0 && close(descriptor) == 0;
}
