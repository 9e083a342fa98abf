// SPDX-License-Identifier: MIT
// Destroys closed cameras on a thread of its own.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

namespace orvalis {

/// Something that a Reaper can destroy.
class Reapable {
public:
    virtual ~Reapable() = default;

private:
    friend class Reaper;
    Reapable *next_ = nullptr; // in the reaper's list
};

/// A camera that is gone may take seconds to say good-bye to, and its last reference may be held by
/// the very thread that has to be joined. So neither callers of the library nor delivery threads
/// destroy a camera, but this thread does.
class Reaper {
public:
    Reaper() = default;
    /// Destroys what is left and ends the thread.
    ~Reaper();
    Reaper(const Reaper &) = delete;
    Reaper &operator=(const Reaper &) = delete;

    /// Makes sure that the thread runs. Throws std::bad_alloc if it cannot.
    void start();
    /// Takes over `object`, after start(). Any thread; never fails.
    void take(Reapable *object) noexcept;

private:
    void run();

    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    Reapable *first_ = nullptr;
    bool ending_ = false;
    std::thread thread_;
};

} // namespace orvalis
