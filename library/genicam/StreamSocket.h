// SPDX-License-Identifier: MIT
// The socket that receives a GigE Vision stream.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvalis {

/// Enlarges the receive buffer of this process' UDP socket at a port to `bytes`, as far as the
/// system permits (net.core.rmem_max). False if there is no such socket.
/// | Aravis does the same, but only after the first packets have arrived; by then a fast camera has
/// overrun the default buffer.
bool growReceiveBuffer(std::uint16_t port, std::size_t bytes);

/// True if this process' UDP socket at a port has unread packets.
bool hasUnreadPackets(std::uint16_t port);

} // namespace orvalis
