// SPDX-License-Identifier: MIT
// Finds GigE Vision cameras and the network interface of each.
#include "library/genicam/GigeDiscovery.h"

#include "library/genicam/GigeRoute.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>

namespace orvalis {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// Limits the memory that a faulty network can take.
constexpr std::size_t maxCameras = 1024;

/// Key, flags (acknowledge, broadcast permitted), DISCOVERY_CMD, no payload, request number.
/// Cameras in another subnet can answer only by broadcast.
constexpr std::array<std::uint8_t, 8> discoveryCommand{0x42, 0x11, 0x00, 0x02,
                                                       0x00, 0x00, 0x4F, 0x56};
/// Status success, DISCOVERY_ACK. Payload length and request number follow.
constexpr std::array<std::uint8_t, 4> discoveryAnswer{0x00, 0x00, 0x00, 0x03};
constexpr std::size_t headSize = 8;
constexpr std::size_t payloadSize = 248;

/// Offsets and sizes in the payload: those of the bootstrap registers.
struct Field {
    std::size_t at;
    std::size_t size;
};
constexpr Field hardwareAddressField{0x0A, 6};
constexpr Field addressField{0x24, 4};
constexpr Field vendorField{0x48, 32};
constexpr Field modelField{0x68, 32};
constexpr Field serialNumberField{0xD8, 16};
constexpr Field userNameField{0xE8, 16};

using Payload = std::array<std::uint8_t, payloadSize>;

/// Texts may fill their field without a NUL.
std::string textIn(const Payload &payload, Field field)
{
    const char *begin = reinterpret_cast<const char *>(payload.data()) + field.at;
    return {begin, strnlen(begin, field.size)};
}

std::string hardwareAddressIn(const Payload &payload)
{
    const std::uint8_t *byte = payload.data() + hardwareAddressField.at;
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", byte[0], byte[1], byte[2],
                  byte[3], byte[4], byte[5]);
    return text;
}

/// A socket that sends broadcasts and reports the interface of each answer.
class DiscoverySocket {
public:
    DiscoverySocket() : socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))
    {
        const int on = 1;
        setsockopt(socket_, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
        setsockopt(socket_, IPPROTO_IP, IP_PKTINFO, &on, sizeof on);
        const sockaddr_in any{AF_INET, 0, {INADDR_ANY}, {}};
        if (bind(socket_, reinterpret_cast<const sockaddr *>(&any), sizeof any) != 0)
            close(std::exchange(socket_, -1));
    }
    ~DiscoverySocket()
    {
        if (socket_ >= 0)
            close(socket_);
    }
    DiscoverySocket(const DiscoverySocket &) = delete;
    DiscoverySocket &operator=(const DiscoverySocket &) = delete;

    void ask(const InterfaceAddress &from) const
    {
        Message message;
        in_pktinfo info{};
        info.ipi_ifindex = static_cast<int>(from.index);
        info.ipi_spec_dst.s_addr = from.address;
        message.setInterface(info);
        std::copy(discoveryCommand.begin(), discoveryCommand.end(), message.bytes.begin());
        message.vector.iov_len = discoveryCommand.size();
        message.peer = {AF_INET, htons(gigeControlPort), {INADDR_BROADCAST}, {}};
        sendmsg(socket_, &message.head, 0); // may fail: no link
    }

    /// Takes the next received packet, without waiting; `found` is empty if it is not an
    /// answer.
    bool next(std::optional<GigeAnnouncement> &found) const
    {
        Message message;
        const ssize_t size = recvmsg(socket_, &message.head, 0);
        if (size < 0)
            return false;
        found = parseAnnouncement({message.bytes.data(), static_cast<std::size_t>(size)});
        if (found)
            found->interfaceIndex = message.interfaceIndex();
        return true;
    }

    void waitUntil(Clock::time_point limit) const
    {
        pollfd input{socket_, POLLIN, 0};
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now()).count();
        poll(&input, 1, static_cast<int>(std::clamp<long>(left, 0, 1000)));
    }

private:
    /// A packet with its network interface.
    struct Message {
        Message()
        {
            head.msg_name = &peer;
            head.msg_namelen = sizeof peer;
            head.msg_iov = &vector;
            head.msg_iovlen = 1;
            head.msg_control = control.data();
            head.msg_controllen = control.size();
        }
        Message(const Message &) = delete;
        Message &operator=(const Message &) = delete;

        void setInterface(const in_pktinfo &info)
        {
            cmsghdr *item = CMSG_FIRSTHDR(&head);
            item->cmsg_level = IPPROTO_IP;
            item->cmsg_type = IP_PKTINFO;
            item->cmsg_len = CMSG_LEN(sizeof info);
            std::memcpy(CMSG_DATA(item), &info, sizeof info);
        }
        unsigned interfaceIndex()
        {
            for (cmsghdr *item = CMSG_FIRSTHDR(&head); item; item = CMSG_NXTHDR(&head, item)) {
                if (item->cmsg_level == IPPROTO_IP && item->cmsg_type == IP_PKTINFO) {
                    in_pktinfo info;
                    std::memcpy(&info, CMSG_DATA(item), sizeof info);
                    return static_cast<unsigned>(info.ipi_ifindex);
                }
            }
            return 0;
        }

        std::array<std::uint8_t, 1024> bytes{};
        alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(in_pktinfo))> control{};
        sockaddr_in peer{};
        iovec vector{bytes.data(), bytes.size()};
        msghdr head{};
    };

    int socket_;
};

bool isSameCamera(const GigeAnnouncement &a, const GigeAnnouncement &b)
{
    return a.hardwareAddress == b.hardwareAddress && a.serialNumber == b.serialNumber &&
           a.address == b.address;
}

/// Lower is better: first a route in the camera's own subnet, then the lower interface number.
std::pair<bool, unsigned> rank(const GigeAnnouncement &camera,
                               const std::vector<InterfaceAddress> &interfaces)
{
    return {!routeTo(camera.address, camera.interfaceIndex, interfaces), camera.interfaceIndex};
}

void add(std::vector<GigeAnnouncement> &cameras, GigeAnnouncement camera,
         const std::vector<InterfaceAddress> &interfaces)
{
    const auto known = std::find_if(cameras.begin(), cameras.end(),
                                    [&](const auto &other) { return isSameCamera(camera, other); });
    if (known == cameras.end() && cameras.size() < maxCameras)
        cameras.push_back(std::move(camera));
    else if (known != cameras.end() && rank(camera, interfaces) < rank(*known, interfaces))
        *known = std::move(camera);
}

} // namespace

std::optional<GigeAnnouncement> parseAnnouncement(std::span<const std::uint8_t> packet)
{
    if (packet.size() < headSize + vendorField.at ||
        !std::equal(discoveryAnswer.begin(), discoveryAnswer.end(), packet.begin()))
        return std::nullopt;
    Payload payload{}; // missing fields are empty
    const auto sent = packet.subspan(headSize, std::min(packet.size() - headSize, payloadSize));
    std::copy(sent.begin(), sent.end(), payload.begin());
    GigeAnnouncement camera;
    std::memcpy(&camera.address, payload.data() + addressField.at, addressField.size);
    camera.hardwareAddress = hardwareAddressIn(payload);
    camera.vendor = textIn(payload, vendorField);
    camera.model = textIn(payload, modelField);
    camera.serialNumber = textIn(payload, serialNumberField);
    camera.userName = textIn(payload, userNameField);
    return camera;
}

std::vector<GigeAnnouncement> findGigeCameras(const std::vector<InterfaceAddress> &interfaces,
                                              std::chrono::milliseconds timeout)
{
    const DiscoverySocket socket;
    std::vector<GigeAnnouncement> cameras;
    const Clock::time_point begin = Clock::now();
    // Send twice: a lost command is not resent.
    for (const auto limit : {begin + timeout / 4, begin + timeout}) {
        for (const InterfaceAddress &interface : interfaces)
            if (interface.broadcasts)
                socket.ask(interface);
        while (Clock::now() < limit) {
            std::optional<GigeAnnouncement> found;
            if (!socket.next(found))
                socket.waitUntil(limit);
            else if (found)
                add(cameras, *std::move(found), interfaces);
        }
    }
    return cameras;
}

} // namespace orvalis
