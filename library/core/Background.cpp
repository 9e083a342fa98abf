// SPDX-License-Identifier: MIT
// Threads that outlive the calls that start them.
#include "library/core/Background.h"

#include <new>
#include <system_error>
#include <utility>

namespace orvalis {

Background &Background::instance()
{
    static Background background;
    return background;
}

Background::~Background()
{
    for (Job &job : jobs_)
        if (job.thread.get_id() == std::this_thread::get_id())
            job.thread.detach(); // exit() was called on this thread: it cannot join itself
        else
            job.thread.join();
}

void Background::run(std::function<void()> job)
{
    Jobs added(1);
    Job &entry = added.front();
    try {
        entry.thread = std::thread([job = std::move(job), &entry]() mutable {
            job();
            job = nullptr; // release captures now: the thread object lives on until a join
            entry.ended = true;
        });
    } catch (const std::system_error &) {
        throw std::bad_alloc();
    }
    {
        const std::lock_guard lock(mutex_);
        jobs_.splice(jobs_.end(), added);
        added = takeEnded();
    }
    for (Job &ended : added)
        ended.thread.join();
}

/// Removes finished jobs from the list. Under the lock.
Background::Jobs Background::takeEnded()
{
    Jobs ended;
    for (auto job = jobs_.begin(); job != jobs_.end();) {
        const auto next = std::next(job);
        if (job->ended)
            ended.splice(ended.end(), jobs_, job);
        job = next;
    }
    return ended;
}

} // namespace orvalis
