// SPDX-License-Identifier: MIT
// Which cameras there are, without ever making a caller wait for a slow bus.
#pragma once

#include "library/core/Bus.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvalis {

/// Cameras in a stable order. Never changes once it is made.
using Snapshot = std::shared_ptr<const std::vector<DeviceDescription>>;

/// Looks at the slow back ends again and again on a thread of its own, which may outlive this
/// object by one pass, and at the quick ones when it is asked. Any thread.
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
    /// beginStop()
    ~Discovery();
    Discovery(const Discovery &) = delete;
    Discovery &operator=(const Discovery &) = delete;

    /// Takes a snapshot, and pins it for the calling thread. Waits only while nothing is known and
    /// the first pass is under way.
    Snapshot take();
    /// The snapshot that the calling thread reads names from.
    Snapshot present();
    /// Ends all waits, and the looking after the pass that runs now.
    void beginStop();
    /// After beginStop(): waits for the end of that pass, until `limit` at most. A bus may hang.
    void waitUntilStopped(Clock::time_point limit);

private:
    class Watch;

    std::vector<DeviceDescription> merge();

    const std::shared_ptr<Bus> bus_;
    const Now now_;
    const std::uint64_t id_; // tells this object's snapshots from those of an earlier one
    const std::shared_ptr<Watch> watch_;

    std::mutex mutex_; // guards newest_
    Snapshot newest_;
};

} // namespace orvalis
