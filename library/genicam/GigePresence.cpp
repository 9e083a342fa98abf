// SPDX-License-Identifier: MIT
// Short questions to a GigE Vision camera: is it there, and who controls it?
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

constexpr int refusalPatience = 50; // milliseconds; a refusal comes as fast as an answer
constexpr int answerPatience = 200; // milliseconds, what GigE Vision gives a camera for an answer
/// The second chance: so many questions, and so long for the answer to each.
constexpr int chancesToAnswer = 5;
constexpr int chancePatience = 300; // milliseconds

/// "Who are you?", which every camera answers to everybody, also while another program controls it
/// (GigE Vision, DISCOVERY_CMD): key, "please acknowledge", command, no payload, number of the
/// request.
constexpr std::array<std::uint8_t, 8> whoAreYou{0x42, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x01};
/// Asks for the control channel privilege: key, "please acknowledge", READREG, four bytes of
/// payload, number of the request, address of the register.
constexpr std::array<std::uint8_t, 12> whoControlsYou{0x42, 0x01, 0x00, 0x80, 0x00, 0x04,
                                                      0x00, 0x01, 0x00, 0x00, 0x0A, 0x00};
/// What follows the status in the answer to that: READREG's answer, four bytes of payload, number
/// of the request. Then comes the register.
constexpr std::array<std::uint8_t, 6> privilegeHead{0x00, 0x81, 0x00, 0x04, 0x00, 0x01};

constexpr unsigned statusAccessDenied = 0x8006; // of GigE Vision 2.0, as the two below
constexpr unsigned statusBusy = 0x8007;
constexpr unsigned exclusiveOrControl = 0x3; // bits of the control channel privilege

/// The head of an answer, or why there is none.
struct Answer {
    enum class Kind { Some, Refused, None };
    Kind kind = Kind::None;
    std::size_t size = 0; ///< bytes that came; no more than there is room for
    std::array<std::uint8_t, 12> bytes{};
};

/// True if the answer to `whoControlsYou` names somebody. Cameras that somebody has for himself
/// alone may refuse to say.
bool saysHeld(const Answer &answer)
{
    const auto &bytes = answer.bytes;
    const unsigned status = bytes[0] * 256U + bytes[1];
    if (answer.size >= 8 && (status == statusAccessDenied || status == statusBusy)) {
        return true;
    }
    return answer.size == bytes.size() && status == 0 &&
           std::equal(privilegeHead.begin(), privilegeHead.end(), bytes.begin() + 2) &&
           (bytes[11] & exclusiveOrControl) != 0;
}

sockaddr_in socketAddress(in_addr_t address, std::uint16_t port)
{
    return {AF_INET, htons(port), {address}, {}};
}

/// A socket from which packets go to the camera, and which hears when they cannot; -1 if there is
/// no way.
int openSocket(const GigeRoute &route)
{
    const int made = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_in local = socketAddress(route.local, 0);
    const int on = 1;
    if (made >= 0 && sendThrough(made, route.interfaceIndex) &&
        setsockopt(made, IPPROTO_IP, IP_RECVERR, &on, sizeof on) == 0 &&
        bind(made, reinterpret_cast<const sockaddr *>(&local), sizeof local) == 0) {
        return made;
    }
    if (made >= 0) {
        close(made);
    }
    return -1;
}

/// Asks once and waits for `patience` milliseconds.
Answer ask(const GigeRoute &route, std::span<const std::uint8_t> question, int patience)
{
    Answer answer;
    const int probe = openSocket(route);
    if (probe < 0) {
        return answer;
    }
    const sockaddr_in camera = socketAddress(route.camera, gigeControlPort);
    pollfd event{probe, POLLIN, 0};
    if (sendto(probe, question.data(), question.size(), 0,
               reinterpret_cast<const sockaddr *>(&camera), sizeof camera) >= 0 &&
        poll(&event, 1, patience) == 1) {
        const ssize_t size = recv(probe, answer.bytes.data(), answer.bytes.size(), MSG_DONTWAIT);
        answer.kind = size >= 0               ? Answer::Kind::Some
                      : errno == ECONNREFUSED ? Answer::Kind::Refused
                                              : Answer::Kind::None;
        answer.size = size > 0 ? static_cast<std::size_t>(size) : 0;
    }
    close(probe);
    return answer;
}

/// True if the interface with that address is gone, switched off, or without a link.
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
    if (!route_) {
        return nullptr;
    }
    if (hasNoLink(route_)) {
        return "the network interface has no link";
    }
    return ask(route_, whoAreYou, refusalPatience).kind == Answer::Kind::Refused
               ? "nobody listens at the camera's address"
               : nullptr;
}

bool GigePresence::answers() const
{
    for (int i = 0; i < chancesToAnswer && !hasNoLink(route_); ++i) {
        const Answer answer = ask(route_, whoAreYou, chancePatience);
        if (answer.kind != Answer::Kind::None) {
            return answer.kind == Answer::Kind::Some;
        }
    }
    return false;
}

bool GigePresence::isHeldByOther() const
{
    return route_ && saysHeld(ask(route_, whoControlsYou, answerPatience));
}

} // namespace orvalis
