// SPDX-License-Identifier: MIT
// A pool of reusable frame buffers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace orvalis::simulated {

/// Provides buffers of one size and reuses them after the last reference is released: allocates no
/// pixels once as many buffers exist as are used at the same time. Buffers may outlive the pool.
/// Any thread.
class FramePool {
public:
    FramePool();

    /// Returns an uninitialised buffer. Frees buffers of another size when they are returned.
    /// @throws std::bad_alloc
    std::shared_ptr<std::uint8_t> take(std::size_t bytes);

    /// Number of existing buffers.
    std::size_t size() const;

private:
    using Memory = std::unique_ptr<std::uint8_t[]>;
    struct State;

    std::shared_ptr<State> state_;
};

} // namespace orvalis::simulated
