// SPDX-License-Identifier: MIT
// Aravis is shut down when nothing uses it any more.
#pragma once

#include <memory>

namespace orvalis {

/// Held by the back end, by every open camera, and by the program until it exits: the last one to
/// let go shuts Aravis down, which has threads and lists of its own. Any thread.
class AravisUse {
public:
    /// The one of the process.
    static std::shared_ptr<AravisUse> instance();
    AravisUse() = default;
    ~AravisUse();
    AravisUse(const AravisUse &) = delete;
    AravisUse &operator=(const AravisUse &) = delete;
};

} // namespace orvalis
