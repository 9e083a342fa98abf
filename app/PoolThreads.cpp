// SPDX-License-Identifier: MIT
// Makes sure that pool tasks get a thread.
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
    // No task ends before all have begun, so the pool starts a thread for each.
    for (int i = 0; i < threads; ++i)
        QtConcurrent::run(pool, [begun, threads] {
            begun->release();
            if (begun->tryAcquire(threads, longestWaitMs))
                begun->release(threads);
        });
}

bool mayStartPoolThread()
{
    // The event dispatcher of each thread needs a descriptor.
    const int descriptor = eventfd(0, EFD_CLOEXEC);
    return descriptor >= 0 && close(descriptor) == 0;
}
