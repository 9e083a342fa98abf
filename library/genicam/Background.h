// SPDX-License-Identifier: MIT
// Work that may take longer than a caller can wait.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

namespace orvalis {

/// Runs each job on a thread of its own and joins all of them in the end. Whoever uses it, the back
/// end and every open camera, holds it, and so does the program until it exits: the last one to let
/// go waits for what still runs, and then shuts Aravis down.
class Background {
public:
    /// The one of the process.
    static std::shared_ptr<Background> instance();
    Background() = default;
    ~Background();
    Background(const Background &) = delete;
    Background &operator=(const Background &) = delete;

    /// Runs `job`, which throws nothing, and waits for its end, `patience` at most. True if it has
    /// ended.
    bool run(std::function<void()> job, std::chrono::milliseconds patience);

private:
    struct Job {
        std::atomic<bool> ended{false};
        std::thread thread;
    };
    void joinEnded();

    std::mutex mutex_; // guards jobs_
    std::list<std::shared_ptr<Job>> jobs_;
};

} // namespace orvalis
