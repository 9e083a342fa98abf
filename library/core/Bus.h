// SPDX-License-Identifier: MIT
// The back ends that cameras are looked for on.
#pragma once

#include "library/core/Device.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

using Backends = std::vector<std::unique_ptr<Backend>>;
using BackendFactory = std::function<Backends()>;

/// The back ends that `list` names, as ORVALIS_BACKENDS does: real cameras first, so that
/// simulated ones are never in their way. Unknown names are left out.
Backends makeBackends(std::string_view list);

/// All back ends in use. Outlives every camera that was opened on it. Any thread.
class Bus {
public:
    explicit Bus(Backends backends);

    /// Number of back ends; an index below is smaller than that.
    std::size_t size() const { return seats_.size(); }
    /// As Backend::discoversAtOnce().
    bool discoversAtOnce(std::size_t index) const;
    /// What is there now; false if the back end failed, `found` is unchanged then.
    bool discover(std::size_t index, std::vector<DeviceDescription> &found);
    /// Opens the camera on the first back end that knows the ID. Results as of Backend::open().
    OResult open(const std::string &id, std::unique_ptr<Device> &device);

private:
    struct Seat {
        std::unique_ptr<Backend> backend;
        std::mutex discovering; // one discover() at a time
    };
    std::vector<std::unique_ptr<Seat>> seats_;
};

} // namespace orvalis
