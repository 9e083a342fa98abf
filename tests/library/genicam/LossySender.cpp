// SPDX-License-Identifier: MIT
// Loaded into the process of a GigE Vision test camera (LD_PRELOAD): drops outgoing packets with
// image data at the rate that the test sets, and counts them. The camera's own loss setting is too
// coarse (whole packets per thousand) and not reported. Answers resend requests, which the camera
// itself does not support.
#include "tests/library/genicam/LossySender.h"

#include <cstdlib>
#include <cstring>
#include <deque>
#include <dlfcn.h>
#include <fcntl.h>
#include <random>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

using genicamtest::LossyLink;

namespace {

LossyLink *openLink()
{
    const char *path = std::getenv(genicamtest::lossyFileVariable);
    const int file = path != nullptr ? open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) {
        return nullptr;
    }
    void *memory = mmap(nullptr, sizeof(LossyLink), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return memory != MAP_FAILED ? static_cast<LossyLink *>(memory) : nullptr;
}

/// Stream protocol header: status, frame number (2 bytes each), packet type, packet number.
constexpr std::size_t headerSize = 8;
constexpr std::uint8_t imageData = 3;
constexpr std::size_t smallestImagePacket = 100; // larger than any control packet

/// Not synchronised: the camera has a single thread.
LossyLink *link()
{
    static LossyLink *const opened = openLink();
    return opened;
}

bool isLost(const void *data, std::size_t size)
{
    static std::mt19937 random(1);
    static int lastFrame = -1;
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    if (link() == nullptr || size < smallestImagePacket || size < headerSize ||
        (bytes[4] & 0x7F) != imageData) {
        return false;
    }
    ++link()->sent;
    if (random() % 1000000 >= link()->perMillion) {
        return false;
    }
    const int frame = bytes[2] << 8 | bytes[3];
    link()->frames += frame != lastFrame ? 1U : 0U;
    lastFrame = frame;
    ++link()->lost;
    return true;
}

template <class Function> Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

ssize_t reallySend(int socket, const msghdr *message, int flags)
{
    static const auto real = next<ssize_t (*)(int, const msghdr *, int)>("sendmsg");
    return real(socket, message, flags);
}

/// A dropped packet and its destination.
struct Kept {
    int socket;
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> to;

    unsigned frame() const { return unsigned(bytes[2] << 8 | bytes[3]); }
    unsigned number() const { return unsigned(bytes[5] << 16 | bytes[6] << 8 | bytes[7]); }
    void send()
    {
        bytes[0] = 0x01; // status of a resent packet
        iovec data{bytes.data(), bytes.size()};
        msghdr message{};
        message.msg_name = to.data();
        message.msg_namelen = static_cast<socklen_t>(to.size());
        message.msg_iov = &data;
        message.msg_iovlen = 1;
        reallySend(socket, &message, 0);
    }
};

constexpr std::size_t mostKept = 100;

std::deque<Kept> &keptPackets()
{
    static std::deque<Kept> packets;
    return packets;
}

void keep(int socket, const msghdr &message)
{
    const auto *data = static_cast<const std::uint8_t *>(message.msg_iov[0].iov_base);
    const auto *to = static_cast<const std::uint8_t *>(message.msg_name);
    keptPackets().push_back(
        {socket, {data, data + message.msg_iov[0].iov_len}, {to, to + message.msg_namelen}});
    if (keptPackets().size() > mostKept) {
        keptPackets().pop_front();
    }
}

unsigned number32(const std::uint8_t *bytes)
{
    return unsigned(bytes[0]) << 24 | unsigned(bytes[1]) << 16 | unsigned(bytes[2]) << 8 | bytes[3];
}

/// Answers a request: key, flags, PACKETRESEND, length, number; then frame, first and last packet.
void answerRequest(const std::uint8_t *bytes, std::size_t size)
{
    constexpr std::size_t requestSize = 20;
    if (link() == nullptr || !link()->resends || size < requestSize || bytes[0] != 0x42 ||
        bytes[3] != 0x40) {
        return;
    }
    ++link()->asked;
    const unsigned frame = number32(bytes + 8) & 0xFFFF;
    for (Kept &packet : keptPackets()) {
        if (packet.frame() == frame && packet.number() >= number32(bytes + 12) &&
            packet.number() <= number32(bytes + 16)) {
            packet.send();
            ++link()->resent;
        }
    }
}

} // namespace

extern "C" {

ssize_t sendmsg(int socket, const msghdr *message, int flags)
{
    if (message->msg_iovlen == 1 &&
        isLost(message->msg_iov[0].iov_base, message->msg_iov[0].iov_len)) {
        keep(socket, *message);
        return static_cast<ssize_t>(message->msg_iov[0].iov_len);
    }
    return reallySend(socket, message, flags);
}

ssize_t recvmsg(int socket, msghdr *message, int flags)
{
    static const auto real = next<ssize_t (*)(int, msghdr *, int)>("recvmsg");
    const ssize_t received = real(socket, message, flags);
    if (received > 0 && message->msg_iovlen > 0) {
        answerRequest(static_cast<const std::uint8_t *>(message->msg_iov[0].iov_base),
                      static_cast<std::size_t>(received));
    }
    return received;
}
}
