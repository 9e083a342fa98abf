// SPDX-License-Identifier: MIT
// Threads that outlive the calls that began them.
#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace orvalis {

/// Runs what may wait for a camera or a network, each job on a thread of its own, so that no caller
/// of the library waits for it. All are joined in the end. Any thread.
class Background {
public:
    /// The one of the process; it ends after the library.
    static Background &instance();
    Background() = default;
    /// Waits for all jobs.
    ~Background();
    Background(const Background &) = delete;
    Background &operator=(const Background &) = delete;

    /// Begins `job`, which throws nothing. Throws std::bad_alloc if the system has no thread left.
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
