// SPDX-License-Identifier: MIT
// Work that may take longer than a caller can wait.
#include "library/genicam/Background.h"

#include <arv.h>

#include <future>
#include <system_error>

namespace orvalis {

std::shared_ptr<Background> Background::instance()
{
    static const std::shared_ptr<Background> background = std::make_shared<Background>();
    return background;
}

Background::~Background()
{
    for (const std::shared_ptr<Job> &job : jobs_) {
        job->thread.join();
    }
    arv_shutdown();
}

bool Background::run(std::function<void()> job, std::chrono::milliseconds patience)
{
    const auto ended = std::make_shared<std::promise<void>>();
    std::future<void> end = ended->get_future();
    const auto entry = std::make_shared<Job>();
    try {
        const std::lock_guard lock(mutex_);
        joinEnded();
        jobs_.push_back(entry);
        entry->thread = std::thread([job = std::move(job), ended, entry]() mutable {
            job();
            job = nullptr;
            entry->ended = true;
            ended->set_value();
        });
    } catch (const std::system_error &) {
        // No more threads. What the job holds cleans up after itself, here and now.
        const std::lock_guard lock(mutex_);
        jobs_.remove(entry);
        return false;
    }
    return end.wait_for(patience) == std::future_status::ready;
}

void Background::joinEnded()
{
    for (auto job = jobs_.begin(); job != jobs_.end();) {
        if ((*job)->ended) {
            (*job)->thread.join();
            job = jobs_.erase(job);
        } else {
            ++job;
        }
    }
}

} // namespace orvalis
