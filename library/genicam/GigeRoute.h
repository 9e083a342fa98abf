// SPDX-License-Identifier: MIT
// The way to a GigE Vision camera: which interface, which address of it, which address of the
// camera.
#pragma once

#include "library/genicam/Glib.h"
#include "library/genicam/LocalInterfaces.h"

#include <cstdint>

namespace orvalis {

/// UDP port of a camera's control channel (GigE Vision, GVCP).
constexpr std::uint16_t gigeControlPort = 3956;

/// From an interface of this computer to a camera. Addresses are in network byte order.
struct GigeRoute {
    unsigned interfaceIndex = 0; ///< 0 if no interface leads there
    in_addr_t local = 0;         ///< address of the interface in the camera's subnet
    in_addr_t camera = 0;

    /// True if there is a way.
    explicit operator bool() const { return interfaceIndex != 0; }
};

/// The way to a camera through the interface that it was seen on, without any gateway. An empty one
/// if none of the interface's addresses is in the camera's subnet.
GigeRoute routeTo(in_addr_t camera, unsigned interfaceIndex,
                  const std::vector<InterfaceAddress> &interfaces);

/// Aravis' device for a camera at the end of that way, which has to be one. Null after a failure.
GPtr<ArvDevice> openAlong(const GigeRoute &route, Failure &failure);

/// The way that a GigE Vision device was opened by; an empty one for other devices.
GigeRoute routeOf(ArvDevice *device);

/// As long as this exists, sockets that its thread makes through GLib, as Aravis does, send along
/// that way. To be used around calls that make a stream.
class SocketsAlong {
public:
    /// Does nothing for an empty way.
    explicit SocketsAlong(const GigeRoute &route);
    ~SocketsAlong();
    SocketsAlong(const SocketsAlong &) = delete;
    SocketsAlong &operator=(const SocketsAlong &) = delete;
};

} // namespace orvalis
