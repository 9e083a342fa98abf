// SPDX-License-Identifier: MIT
// The socket that receives a GigE Vision stream.
#include "library/genicam/StreamSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <charconv>
#include <filesystem>
#include <string>
#include <system_error>

namespace orvalis {
namespace {

bool receivesAt(int socket, std::uint16_t port)
{
    sockaddr_in address{};
    socklen_t length = sizeof(address);
    int type = 0;
    socklen_t typeLength = sizeof(type);
    return getsockname(socket, reinterpret_cast<sockaddr *>(&address), &length) == 0 &&
           address.sin_family == AF_INET && ntohs(address.sin_port) == port &&
           getsockopt(socket, SOL_SOCKET, SO_TYPE, &type, &typeLength) == 0 && type == SOCK_DGRAM;
}

/// This process' UDP socket at a port; -1 if there is none.
int socketAt(std::uint16_t port)
{
    std::error_code none;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd", none)) {
        const std::string name = entry.path().filename();
        int socket = -1;
        std::from_chars(name.data(), name.data() + name.size(), socket);
        if (socket >= 0 && receivesAt(socket, port))
            return socket;
    }
    return -1;
}

} // namespace

bool growReceiveBuffer(std::uint16_t port, std::size_t bytes)
{
    const int socket = socketAt(port);
    const int size = static_cast<int>(bytes);
    return socket >= 0 && setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &size, sizeof(size)) == 0;
}

bool hasUnreadPackets(std::uint16_t port)
{
    const int socket = socketAt(port);
    int bytes = 0;
    return socket >= 0 && ioctl(socket, FIONREAD, &bytes) == 0 && bytes > 0;
}

} // namespace orvalis
