// SPDX-License-Identifier: MIT
// Finds cameras without blocking callers on a slow bus.
#pragma once

#include "library/core/Bus.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace orvalis {

/// Cameras in a stable order. Immutable.
using Snapshot = std::shared_ptr<const std::vector<DeviceDescription>>;

/// Queries the slow back ends periodically on a background thread, which may outlive this object by
/// one pass, and the fast ones on request. Any thread.
class Discovery {
public:
    /// How long the first take() waits for slow back ends.
    static constexpr std::chrono::milliseconds kFirstPassTimeout{1500};
    /// How long present() returns the snapshot that the calling thread took.
    static constexpr std::chrono::milliseconds kPinned{500};
    /// A clock that tests can replace.
    using Now = std::function<Clock::time_point()>;

    /// Starts the first pass at once. `now` measures how long snapshots stay pinned.
    explicit Discovery(std::shared_ptr<Bus> bus, Now now = &Clock::now);
    /// Calls beginStop().
    ~Discovery();
    Discovery(const Discovery &) = delete;
    Discovery &operator=(const Discovery &) = delete;

    /// Takes a snapshot, and pins it for the calling thread. Waits only while no camera is known
    /// and the first pass is running.
    Snapshot take();
    /// The snapshot from which the calling thread reads names.
    Snapshot present();
    /// Ends all waits, and ends discovery after the current pass.
    void beginStop();
    /// After beginStop(): waits until `limit` at most for the end of the current pass. A bus may
    /// hang.
    void waitUntilStopped(Clock::time_point limit);

private:
    class Watch;

    std::vector<DeviceDescription> merge();

    const std::shared_ptr<Bus> bus_;
    const Now now_;
    const std::uint64_t id_; // distinguishes this object's snapshots from those of an earlier one
    const std::shared_ptr<Watch> watch_;

    std::mutex mutex_; // guards newest_
    Snapshot newest_;
};

} // namespace orvalis
