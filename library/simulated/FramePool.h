// SPDX-License-Identifier: MIT
// Frame buffers that are used again, and again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace orvalis::simulated {

/// Hands out buffers of one size and takes them back when nobody holds them any more: no pixels are
/// allocated once as many buffers exist as are held at the same time. Buffers may outlive the pool.
/// Any thread.
class FramePool {
public:
    FramePool();

    /// A buffer of that many bytes with unknown content. Buffers of another size are given up as
    /// they come back. @throws std::bad_alloc
    std::shared_ptr<std::uint8_t> take(std::size_t bytes);

    /// Buffers that exist.
    std::size_t size() const;

private:
    using Memory = std::unique_ptr<std::uint8_t[]>;
    struct State;

    std::shared_ptr<State> state_;
};

} // namespace orvalis::simulated
