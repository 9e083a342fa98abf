// SPDX-License-Identifier: MIT
// The socket that a GigE Vision stream is received through.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvalis {

/// Makes room for `bytes` in the receive buffer of this process' UDP socket at a port, as far as
/// the system permits (net.core.rmem_max). False if there is no such socket.
///
/// Aravis does the same, but not before the first packets have come; by then a fast camera has
/// overrun the buffer that sockets have by default.
bool growReceiveBuffer(std::uint16_t port, std::size_t bytes);

/// True if packets wait in this process' UDP socket at a port.
bool hasUnreadPackets(std::uint16_t port);

} // namespace orvalis
