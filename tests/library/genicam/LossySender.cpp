// SPDX-License-Identifier: MIT
// Loaded into the process of a GigE Vision test camera (LD_PRELOAD): loses packets with image data
// on their way out, as many as the test wants, and counts them. The camera's own loss is in whole
// packets per thousand, which is coarse, and is told to nobody.
#include "tests/library/genicam/LossySender.h"

#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <random>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

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

/// The stream protocol: status, number of the frame (2 bytes each), kind of packet, its number.
constexpr std::size_t headerSize = 8;
constexpr std::uint8_t imageData = 3;
constexpr std::size_t smallestImagePacket = 100; // control packets are no longer

/// Sent by one thread.
bool isLost(const void *data, std::size_t size)
{
    static LossyLink *const link = openLink();
    static std::mt19937 random(1);
    static int lastFrame = -1;
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    if (link == nullptr || size < smallestImagePacket || size < headerSize ||
        (bytes[4] & 0x7F) != imageData) {
        return false;
    }
    ++link->sent;
    if (random() % 1000000 >= link->perMillion) {
        return false;
    }
    const int frame = bytes[2] << 8 | bytes[3];
    link->frames += frame != lastFrame ? 1U : 0U;
    lastFrame = frame;
    ++link->lost;
    return true;
}

template <class Function> Function next(const char *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

ssize_t sendmsg(int socket, const msghdr *message, int flags)
{
    static const auto real = next<ssize_t (*)(int, const msghdr *, int)>("sendmsg");
    if (message->msg_iovlen == 1 &&
        isLost(message->msg_iov[0].iov_base, message->msg_iov[0].iov_len)) {
        return static_cast<ssize_t>(message->msg_iov[0].iov_len);
    }
    return real(socket, message, flags);
}

ssize_t sendto(int socket, const void *data, size_t size, int flags, const sockaddr *to,
               socklen_t length)
{
    static const auto real =
        next<ssize_t (*)(int, const void *, size_t, int, const sockaddr *, socklen_t)>("sendto");
    return isLost(data, size) ? static_cast<ssize_t>(size)
                              : real(socket, data, size, flags, to, length);
}
}
