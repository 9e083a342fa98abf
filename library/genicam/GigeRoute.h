// SPDX-License-Identifier: MIT
// The route to a GigE Vision camera: interface, local address, camera address.
#pragma once

#include "library/genicam/Glib.h"
#include "library/genicam/LocalInterfaces.h"

#include <cstdint>

namespace orvalis {

/// UDP port of a camera's control channel (GigE Vision, GVCP).
constexpr std::uint16_t gigeControlPort = 3956;

/// A route from an interface of this computer to a camera. Addresses are in network byte order.
struct GigeRoute {
    unsigned interfaceIndex = 0; ///< 0 if there is no route
    in_addr_t local = 0;         ///< address of the interface in the camera's subnet
    in_addr_t camera = 0;

    /// True if there is a route.
    explicit operator bool() const { return interfaceIndex != 0; }
};

/// The route to a camera through the interface on which it was found, without a gateway. Empty if
/// none of the interface's addresses is in the camera's subnet.
GigeRoute routeTo(in_addr_t camera, unsigned interfaceIndex,
                  const std::vector<InterfaceAddress> &interfaces);

/// Opens a camera along `route`, which must not be empty. Null after a failure.
GPtr<ArvDevice> openThrough(const GigeRoute &route, Failure &failure);

/// The route of an open GigE Vision device; empty for other devices.
GigeRoute routeOf(ArvDevice *device);

/// While this exists, sockets that its thread creates through GLib, as Aravis does, send along the
/// route. Use it around calls that create a stream.
class SocketRouting {
public:
    /// Does nothing for an empty route.
    explicit SocketRouting(const GigeRoute &route);
    ~SocketRouting();
    SocketRouting(const SocketRouting &) = delete;
    SocketRouting &operator=(const SocketRouting &) = delete;
};

} // namespace orvalis
