// SPDX-License-Identifier: MIT
// The back ends in use, as one bus.
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

/// Creates the back ends in `list`, a value of ORVALIS_BACKENDS: real cameras first, so that they
/// take precedence over simulated ones. Unknown names are ignored.
Backends makeBackends(std::string_view list);

/// All back ends in use. Must outlive every camera opened on it. Any thread.
class Bus {
public:
    explicit Bus(Backends backends);

    /// Number of back ends. `index` below must be less.
    std::size_t size() const { return entries_.size(); }
    /// As Backend::discoversAtOnce().
    bool discoversAtOnce(std::size_t index) const;
    /// Lists the cameras present now. False if the back end failed; `found` is unchanged then.
    bool discover(std::size_t index, std::vector<DeviceDescription> &found);
    /// Opens the camera on the first back end that recognises the ID. Results as of
    /// Backend::open().
    OResult open(const std::string &id, std::unique_ptr<Device> &device);

private:
    struct Entry {
        std::unique_ptr<Backend> backend;
        std::mutex discovering; // one discover() at a time
    };
    std::vector<std::unique_ptr<Entry>> entries_;
};

} // namespace orvalis
