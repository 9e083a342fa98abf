// SPDX-License-Identifier: MIT
// Threads that outlive the calls that start them.
#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace orvalis {

/// Runs jobs that may block on a camera or a network, each on its own thread, so that callers of
/// the library do not wait. The destructor joins all threads. Any thread.
class Background {
public:
    /// The process-wide instance; destroyed after the Library.
    static Background &instance();
    Background() = default;
    /// Waits for all jobs.
    ~Background();
    Background(const Background &) = delete;
    Background &operator=(const Background &) = delete;

    /// Starts `job`, which must not throw. Throws std::bad_alloc if the system cannot create a
    /// thread.
    void run(std::function<void()> job);

private:
    struct Job {
        std::atomic<bool> ended{false};
        std::thread thread;
    };
    using Jobs = std::list<Job>;
    Jobs takeEnded();

    std::mutex mutex_; // guards jobs_
    Jobs jobs_;
};

} // namespace orvalis
