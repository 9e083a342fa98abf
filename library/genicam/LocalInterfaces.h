// SPDX-License-Identifier: MIT
// The network interfaces of this computer, and how packets are sent through one of them.
#pragma once

#include <netinet/in.h>

#include <string>
#include <vector>

namespace orvalis {

/// One IPv4 address of a network interface that is switched on. An interface may have several.
struct InterfaceAddress {
    std::string name;        ///< "eth0"
    unsigned index = 0;      ///< the system's number of the interface
    in_addr_t address = 0;   ///< network byte order, as the mask
    in_addr_t mask = 0;      ///< ones for the subnet
    bool linked = false;     ///< a cable is plugged in, and the other end is there
    bool broadcasts = false; ///< can reach all of its subnet at once; loopback counts
    bool loopback = false;

    /// True if the address lies in this one's subnet.
    bool reaches(in_addr_t other) const { return ((other ^ address) & mask) == 0; }
};

/// All that are switched on.
std::vector<InterfaceAddress> localInterfaces();

/// "10.0.0.1".
std::string dotted(in_addr_t address);

/// From now on the UDP socket, which is not connected, sends through that interface, whichever the
/// routes say: two interfaces in one subnet have one route. Needs no privilege.
bool sendThrough(int socket, unsigned interfaceIndex);

} // namespace orvalis
