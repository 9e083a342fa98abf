// SPDX-License-Identifier: MIT
// The network interfaces of this computer, and sending through one of them.
#pragma once

#include <netinet/in.h>

#include <string>
#include <vector>

namespace orvalis {

/// One IPv4 address of a network interface that is switched on. An interface may have several.
struct InterfaceAddress {
    std::string name;        ///< "eth0"
    unsigned index = 0;      ///< the system's number of the interface
    in_addr_t address = 0;   ///< network byte order, like the mask
    in_addr_t mask = 0;      ///< network mask
    bool linked = false;     ///< the interface has a link
    bool broadcasts = false; ///< supports broadcasts; true for loopback
    bool loopback = false;

    /// True if `other` is in the subnet of this address.
    bool reaches(in_addr_t other) const { return ((other ^ address) & mask) == 0; }
};

/// The IPv4 addresses of all interfaces that are switched on.
std::vector<InterfaceAddress> localInterfaces();

/// "10.0.0.1".
std::string dotted(in_addr_t address);

/// Makes an unconnected UDP socket send through this interface, regardless of the routing table:
/// two interfaces in one subnet have one route. Needs no privilege.
bool sendThrough(int socket, unsigned interfaceIndex);

} // namespace orvalis
