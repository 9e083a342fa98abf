// SPDX-License-Identifier: MIT
// Short queries to a GigE Vision camera: is it there, and does another program control it?
#include "library/genicam/GigePresence.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <span>

namespace orvalis {
namespace {

constexpr int refusalTimeout = 50; // milliseconds; a refusal arrives as fast as an answer
constexpr int answerTimeout = 200; // milliseconds, the answer time of GigE Vision
/// Number of repeated queries, and the timeout of each.
constexpr int maxQueries = 5;
constexpr int retryTimeout = 300; // milliseconds

/// GigE Vision DISCOVERY_CMD, which a camera answers to every host, even while another program
/// controls it: key, acknowledge flag, command, no payload, request number.
constexpr std::array<std::uint8_t, 8> discoveryProbe{0x42, 0x01, 0x00, 0x02,
                                                     0x00, 0x00, 0x00, 0x01};
/// Reads the control channel privilege: key, acknowledge flag, READREG_CMD, payload of four bytes,
/// request number, register address.
constexpr std::array<std::uint8_t, 12> privilegeQuery{0x42, 0x01, 0x00, 0x80, 0x00, 0x04,
                                                      0x00, 0x01, 0x00, 0x00, 0x0A, 0x00};
/// What follows the status in the answer: READREG_ACK, payload of four bytes, request number. The
/// register value follows.
constexpr std::array<std::uint8_t, 6> privilegeHead{0x00, 0x81, 0x00, 0x04, 0x00, 0x01};

constexpr unsigned statusAccessDenied = 0x8006; // GigE Vision 2.0, as below
constexpr unsigned statusBusy = 0x8007;
constexpr unsigned exclusiveOrControl = 0x3;

/// The first bytes of an answer, or why there is none.
struct Answer {
    enum class Kind { Some, Refused, None };
    Kind kind = Kind::None;
    std::size_t size = 0; ///< bytes received, at most bytes.size()
    std::array<std::uint8_t, 12> bytes{};
};

/// True if the answer says that a program controls the camera. Cameras with exclusive access may
/// refuse to answer.
bool reportsController(const Answer &answer)
{
    const auto &bytes = answer.bytes;
    const unsigned status = bytes[0] * 256U + bytes[1];
    if (answer.size >= 8 && (status == statusAccessDenied || status == statusBusy))
        return true;
    return answer.size == bytes.size() && status == 0 &&
           std::equal(privilegeHead.begin(), privilegeHead.end(), bytes.begin() + 2) &&
           (bytes[11] & exclusiveOrControl) != 0;
}

sockaddr_in socketAddress(in_addr_t address, std::uint16_t port)
{
    return {AF_INET, htons(port), {address}, {}};
}

/// A socket that sends along the route and reports ICMP errors; -1 if there is no route.
int openSocket(const GigeRoute &route)
{
    const int made = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_in local = socketAddress(route.local, 0);
    const int on = 1;
    if (made >= 0 && sendThrough(made, route.interfaceIndex) &&
        setsockopt(made, IPPROTO_IP, IP_RECVERR, &on, sizeof on) == 0 &&
        bind(made, reinterpret_cast<const sockaddr *>(&local), sizeof local) == 0)
        return made;
    if (made >= 0)
        close(made);
    return -1;
}

/// Sends one query and waits `timeout` milliseconds for the answer.
Answer ask(const GigeRoute &route, std::span<const std::uint8_t> question, int timeout)
{
    Answer answer;
    const int probe = openSocket(route);
    if (probe < 0)
        return answer;
    const sockaddr_in camera = socketAddress(route.camera, gigeControlPort);
    pollfd event{probe, POLLIN, 0};
    if (sendto(probe, question.data(), question.size(), 0,
               reinterpret_cast<const sockaddr *>(&camera), sizeof camera) >= 0 &&
        poll(&event, 1, timeout) == 1) {
        const ssize_t size = recv(probe, answer.bytes.data(), answer.bytes.size(), MSG_DONTWAIT);
        answer.kind = size >= 0               ? Answer::Kind::Some
                      : errno == ECONNREFUSED ? Answer::Kind::Refused
                                              : Answer::Kind::None;
        answer.size = size > 0 ? static_cast<std::size_t>(size) : 0;
    }
    close(probe);
    return answer;
}

/// True if the interface with that address is removed, switched off, or without a link.
bool hasNoLink(const GigeRoute &route)
{
    const auto interfaces = localInterfaces();
    return std::none_of(interfaces.begin(), interfaces.end(), [&](const auto &interface) {
        return interface.address == route.local && interface.index == route.interfaceIndex &&
               interface.linked;
    });
}

} // namespace

const char *GigePresence::whyGone() const
{
    if (!route_)
        return nullptr;
    if (hasNoLink(route_))
        return "the network interface has no link";
    return ask(route_, discoveryProbe, refusalTimeout).kind == Answer::Kind::Refused
               ? "the camera's port is closed"
               : nullptr;
}

bool GigePresence::answers() const
{
    for (int i = 0; i < maxQueries && !hasNoLink(route_); ++i) {
        const Answer answer = ask(route_, discoveryProbe, retryTimeout);
        if (answer.kind != Answer::Kind::None)
            return answer.kind == Answer::Kind::Some;
    }
    return false;
}

bool GigePresence::isHeldByOther() const
{
    return route_ && reportsController(ask(route_, privilegeQuery, answerTimeout));
}

} // namespace orvalis
