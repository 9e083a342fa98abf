// SPDX-License-Identifier: MIT
// Quick proof that a GigE Vision camera is gone.
#include "library/genicam/GigePresence.h"

#include <ifaddrs.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>

namespace orvalis {
namespace {

constexpr std::uint16_t controlPort = 3956;
/// IFF_LOWER_UP of <linux/if.h>, which does not go together with the C library's <net/if.h>.
/// IFF_RUNNING follows up to a second later.
constexpr unsigned lowerUp = 1U << 16;
constexpr int answerPatience = 50; // milliseconds; a refusal comes as fast as an answer

/// Asks for the control channel privilege, which every camera tells everybody: key, "please
/// acknowledge", READREG, four bytes of payload, number of the request, address of the register.
constexpr std::array<std::uint8_t, 12> question{0x42, 0x01, 0x00, 0x80, 0x00, 0x04,
                                                0x00, 0x01, 0x00, 0x00, 0x0A, 0x00};

bool takeAddress(GInetAddress *from, std::uint16_t port, sockaddr_in &to)
{
    const GPtr<GSocketAddress> address(g_inet_socket_address_new(from, port));
    return g_inet_address_get_family(from) == G_SOCKET_FAMILY_IPV4 &&
           g_socket_address_to_native(address.get(), &to, sizeof to, nullptr);
}

GInetAddress *hostOf(GSocketAddress *address)
{
    return g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(address));
}

/// True if the interface with that address is gone, switched off, or without a link.
bool hasNoLink(in_addr_t address)
{
    ifaddrs *first = nullptr;
    if (getifaddrs(&first) != 0) {
        return false;
    }
    bool linked = false;
    for (const ifaddrs *item = first; item != nullptr; item = item->ifa_next) {
        if (item->ifa_addr != nullptr && item->ifa_addr->sa_family == AF_INET &&
            reinterpret_cast<const sockaddr_in *>(item->ifa_addr)->sin_addr.s_addr == address) {
            linked = linked || (item->ifa_flags & lowerUp) != 0;
        }
    }
    freeifaddrs(first);
    return !linked;
}

/// True if the other end says that there is nobody at the camera's port.
bool isRefused(const sockaddr_in &local, const sockaddr_in &camera)
{
    const int probe = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (probe < 0) {
        return false;
    }
    pollfd answer{probe, POLLIN, 0};
    std::array<std::uint8_t, 64> reply;
    const bool asked =
        bind(probe, reinterpret_cast<const sockaddr *>(&local), sizeof local) == 0 &&
        connect(probe, reinterpret_cast<const sockaddr *>(&camera), sizeof camera) == 0 &&
        send(probe, question.data(), question.size(), 0) >= 0;
    const bool refused = asked && poll(&answer, 1, answerPatience) == 1 &&
                         recv(probe, reply.data(), reply.size(), MSG_DONTWAIT) < 0 &&
                         errno == ECONNREFUSED;
    close(probe);
    return refused;
}

} // namespace

GigePresence::GigePresence(ArvDevice *device)
{
    if (ARV_IS_GV_DEVICE(device)) {
        ArvGvDevice *gige = ARV_GV_DEVICE(device);
        *this = GigePresence(hostOf(arv_gv_device_get_interface_address(gige)),
                             hostOf(arv_gv_device_get_device_address(gige)));
    }
}

GigePresence::GigePresence(GInetAddress *local, GInetAddress *camera)
    : gige_(takeAddress(local, 0, local_) && takeAddress(camera, controlPort, camera_))
{
}

const char *GigePresence::whyGone() const
{
    if (!gige_) {
        return nullptr;
    }
    if (hasNoLink(local_.sin_addr.s_addr)) {
        return "the network interface has no link";
    }
    return isRefused(local_, camera_) ? "nobody listens at the camera's address" : nullptr;
}

} // namespace orvalis
