// SPDX-License-Identifier: MIT
// Which cameras there are, without ever making a caller wait for a slow bus.
#pragma once

#include "library/core/Bus.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orvalis {

/// Cameras in a stable order. Never changes once it is made.
using Snapshot = std::shared_ptr<const std::vector<DeviceDescription>>;

/// Looks at the slow back ends again and again on a thread of its own, and at the quick ones when
/// it is asked. Any thread.
class Discovery {
public:
    /// How long the first look waits for back ends that have not answered yet.
    static constexpr std::chrono::milliseconds kFirstPassPatience{1500};
    /// How long present() shows a thread the list that it took.
    static constexpr std::chrono::milliseconds kPinned{500};
    /// The time, for tests to set.
    using Now = std::function<Clock::time_point()>;

    /// Begins to look at once. `now` tells for how long snapshots stay pinned.
    explicit Discovery(std::shared_ptr<Bus> bus, Now now = &Clock::now);
    /// stop()
    ~Discovery();
    Discovery(const Discovery &) = delete;
    Discovery &operator=(const Discovery &) = delete;

    /// Takes a snapshot, and pins it for the calling thread. Waits only while nothing is known and
    /// the first pass is under way.
    Snapshot take();
    /// The snapshot that the calling thread reads names from.
    Snapshot present();
    /// Ends the thread; all waits end.
    void stop();

private:
    /// What one slow back end showed last.
    struct Known {
        std::vector<DeviceDescription> cameras;
        std::vector<std::string> order; // IDs in the order in which they were first seen
    };

    void run();
    void pass();
    bool keep(std::size_t index, std::vector<DeviceDescription> found);
    std::vector<DeviceDescription> merge();

    const std::shared_ptr<Bus> bus_;
    const Now now_;
    const std::uint64_t id_; // tells this object's snapshots from those of an earlier one

    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    std::vector<Known> known_; // one for each back end; of quick ones unused
    bool firstPassDone_ = false;
    bool stopping_ = false;
    Snapshot newest_;
    std::thread thread_;
};

} // namespace orvalis
