// SPDX-License-Identifier: MIT
// Destroys closed cameras on a thread of its own.
#include "library/core/Reaper.h"

#include <new>
#include <system_error>
#include <utility>

namespace orvalis {

Reaper::~Reaper()
{
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        changed_.notify_all();
    }
    if (thread_.joinable())
        thread_.join();
}

void Reaper::start()
{
    const std::lock_guard lock(mutex_);
    if (thread_.joinable())
        return;
    try {
        thread_ = std::thread(&Reaper::run, this);
    } catch (const std::system_error &) {
        throw std::bad_alloc();
    }
}

void Reaper::take(Reapable *object) noexcept
{
    const std::lock_guard lock(mutex_);
    object->next_ = std::exchange(first_, object);
    changed_.notify_all();
}

void Reaper::run()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return first_ || ending_; });
        if (!first_)
            return;
        Reapable *object = std::exchange(first_, first_->next_);
        lock.unlock();
        delete object;
        lock.lock();
    }
}

} // namespace orvalis
