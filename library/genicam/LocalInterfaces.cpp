// SPDX-License-Identifier: MIT
// The network interfaces of this computer, and sending through one of them.
#include "library/genicam/LocalInterfaces.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>

namespace orvalis {
namespace {

/// IFF_LOWER_UP of <linux/if.h>, which conflicts with the C library's <net/if.h>. IFF_RUNNING
/// follows up to a second later.
constexpr unsigned lowerUp = 1U << 16;

in_addr_t addressOf(const sockaddr *address)
{
    return reinterpret_cast<const sockaddr_in *>(address)->sin_addr.s_addr;
}

} // namespace

std::vector<InterfaceAddress> localInterfaces()
{
    std::vector<InterfaceAddress> found;
    ifaddrs *first = nullptr;
    if (getifaddrs(&first) != 0)
        return found;
    for (const ifaddrs *item = first; item != nullptr; item = item->ifa_next) {
        if (item->ifa_addr == nullptr || item->ifa_netmask == nullptr ||
            item->ifa_addr->sa_family != AF_INET || (item->ifa_flags & IFF_UP) == 0)
            continue;
        InterfaceAddress entry;
        entry.name = item->ifa_name;
        if (const std::size_t colon = entry.name.find(':'); colon != std::string::npos)
            entry.name.resize(colon); // label of an additional address: "eth0:1"
        entry.index = if_nametoindex(entry.name.c_str());
        entry.address = addressOf(item->ifa_addr);
        entry.mask = addressOf(item->ifa_netmask);
        entry.linked = (item->ifa_flags & lowerUp) != 0;
        entry.loopback = (item->ifa_flags & IFF_LOOPBACK) != 0;
        entry.broadcasts = (item->ifa_flags & (IFF_BROADCAST | IFF_LOOPBACK)) != 0;
        found.push_back(std::move(entry));
    }
    freeifaddrs(first);
    return found;
}

std::string dotted(in_addr_t address)
{
    char text[INET_ADDRSTRLEN] = "";
    inet_ntop(AF_INET, &address, text, sizeof text);
    return text;
}

bool sendThrough(int socket, unsigned interfaceIndex)
{
    const std::uint32_t index = htonl(interfaceIndex); // network byte order
    return setsockopt(socket, IPPROTO_IP, IP_UNICAST_IF, &index, sizeof index) == 0;
}

} // namespace orvalis
