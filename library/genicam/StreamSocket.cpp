// SPDX-License-Identifier: MIT
// The socket that a GigE Vision stream is received through.
#include "library/genicam/StreamSocket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
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

} // namespace

bool growReceiveBuffer(std::uint16_t port, std::size_t bytes)
{
    std::error_code none;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd", none)) {
        const std::string name = entry.path().filename();
        int socket = -1;
        std::from_chars(name.data(), name.data() + name.size(), socket);
        if (socket >= 0 && receivesAt(socket, port)) {
            const int size = static_cast<int>(bytes);
            return setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &size, sizeof(size)) == 0;
        }
    }
    return false;
}

} // namespace orvalis
