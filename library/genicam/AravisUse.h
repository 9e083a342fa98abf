// SPDX-License-Identifier: MIT
// Shuts Aravis down after its last use.
#pragma once

#include <memory>

namespace orvalis {

/// A shared reference held by the back end, by every open camera, and by the process until it
/// exits. Aravis has threads and lists of its own; the last holder shuts it down. Any thread.
class AravisUse {
public:
    /// The process-wide instance.
    static std::shared_ptr<AravisUse> instance();
    AravisUse() = default;
    ~AravisUse();
    AravisUse(const AravisUse &) = delete;
    AravisUse &operator=(const AravisUse &) = delete;
};

} // namespace orvalis
