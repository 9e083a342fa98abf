// SPDX-License-Identifier: MIT
// The control channel of a rig camera: answers GigE Vision control commands.
#include "tests/library/genicam/rig/RigControl.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace genicamtest {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Bytes = RigControl::Bytes;

constexpr std::uint16_t controlPort = 3956;
constexpr std::size_t headerSize = 8;
constexpr std::uint8_t commandKey = 0x42;
constexpr std::uint8_t extendedIdsFlag = 0x10; // flag of a resend request
constexpr std::size_t discoverySize = 0xF8;
constexpr std::uint32_t firstRefusableRegister = 0x0A01;
/// The maximum time until a loop checks whether it must end.
constexpr int attention = 10; // ms

// Command codes; the code of the answer is one higher.
constexpr std::uint16_t discoveryCommand = 0x0002;
constexpr std::uint16_t resendCommand = 0x0040;
constexpr std::uint16_t readRegisterCommand = 0x0080;
constexpr std::uint16_t writeRegisterCommand = 0x0082;
constexpr std::uint16_t readMemoryCommand = 0x0084;
constexpr std::uint16_t writeMemoryCommand = 0x0086;
constexpr std::uint16_t pendingAnswer = 0x0089;

std::uint32_t word(const std::uint8_t *bytes)
{
    return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 |
           std::uint32_t{bytes[2]} << 8 | bytes[3];
}

std::uint16_t half(const std::uint8_t *bytes)
{
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

void appendHalf(Bytes &bytes, unsigned value)
{
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
    bytes.push_back(static_cast<std::uint8_t>(value));
}

void appendWord(Bytes &bytes, std::uint32_t value)
{
    appendHalf(bytes, value >> 16);
    appendHalf(bytes, value & 0xFFFF);
}

int boundSocket(in_addr address)
{
    const int made = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const int on = 1;
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_port = htons(controlPort);
    local.sin_addr = address;
    setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    setsockopt(made, SOL_SOCKET, SO_BROADCAST, &on, sizeof on);
    if (bind(made, reinterpret_cast<const sockaddr *>(&local), sizeof local) != 0) {
        const int reason = errno;
        ::close(made);
        throw std::system_error(reason, std::generic_category(), "rig camera");
    }
    return made;
}

/// The broadcast address of the network that contains `address`.
in_addr broadcastAddress(in_addr address)
{
    in_addr broadcast{address.s_addr | htonl(0x00FFFFFF)};
    ifaddrs *first = nullptr;
    getifaddrs(&first);
    for (const ifaddrs *item = first; item != nullptr; item = item->ifa_next) {
        if (item->ifa_addr == nullptr || item->ifa_addr->sa_family != AF_INET ||
            item->ifa_netmask == nullptr) {
            continue;
        }
        const auto own = reinterpret_cast<const sockaddr_in *>(item->ifa_addr)->sin_addr.s_addr;
        const auto mask = reinterpret_cast<const sockaddr_in *>(item->ifa_netmask)->sin_addr.s_addr;
        if ((own & mask) == (address.s_addr & mask)) {
            broadcast.s_addr = address.s_addr | ~mask;
        }
    }
    freeifaddrs(first);
    return broadcast;
}

} // namespace

RigControl::RigControl(in_addr address, RigMemory &memory, RigFaults &faults, Resend resend)
    : address_(address), memory_(memory), faults_(faults), resend_(std::move(resend))
{
}

void RigControl::open()
{
    controller_ = {};
    memory_.set(RigAddress::privilege, 0);
    memory_.set(RigAddress::hostPort, 0);
    for (const in_addr place :
         {address_, broadcastAddress(address_), in_addr{htonl(INADDR_BROADCAST)}}) {
        sockets_.push_back(boundSocket(place));
    }
    ends_ = false;
    thread_ = std::thread([this] { run(); });
}

void RigControl::close()
{
    ends_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
    for (const int socket : std::exchange(sockets_, {})) {
        ::close(socket);
    }
}

void RigControl::refuse(std::uint32_t address, std::uint16_t status)
{
    const std::lock_guard lock(mutex_);
    refused_[address] = status;
}

void RigControl::run()
{
    std::vector<pollfd> waiting;
    for (const int socket : sockets_) {
        waiting.push_back({socket, POLLIN, 0});
    }
    while (!ends_) {
        poll(waiting.data(), waiting.size(), attention);
        for (const pollfd &ready : waiting) {
            if ((ready.revents & POLLIN) != 0) {
                receive(ready.fd);
            }
        }
        watchHeartbeat();
    }
}

void RigControl::receive(int socket)
{
    std::uint8_t bytes[2048];
    Command command{};
    socklen_t length = sizeof command.from;
    const ssize_t size = recvfrom(socket, bytes, sizeof bytes, MSG_DONTWAIT,
                                  reinterpret_cast<sockaddr *>(&command.from), &length);
    if (size < static_cast<ssize_t>(headerSize) || bytes[0] != commandKey || faults_.frozen) {
        return;
    }
    // Send answers from the camera's own address, also answers to broadcasts.
    command.socket = sockets_.front();
    command.extendedIds = (bytes[1] & extendedIdsFlag) != 0;
    command.code = half(bytes + 2);
    command.id = half(bytes + 6);
    command.data = bytes + headerSize;
    command.size =
        std::min<std::size_t>(half(bytes + 4), static_cast<std::size_t>(size) - headerSize);
    handle(command);
}

void RigControl::handle(const Command &command)
{
    if (command.code == discoveryCommand) {
        discovery(command);
        return;
    }
    ++commands_;
    if (command.code == resendCommand) {
        resend(command);
        return;
    }
    heard_ = isController(command) ? Clock::now() : heard_;
    if (command.code == readRegisterCommand) {
        readRegisters(command);
    } else if (command.code == writeRegisterCommand) {
        writeRegisters(command);
    } else if (command.code == readMemoryCommand) {
        readMemory(command);
    } else if (command.code == writeMemoryCommand) {
        writeMemory(command);
    } else {
        answer(command, RigStatus::notImplemented, {});
    }
}

void RigControl::answer(const Command &command, std::uint16_t status, const Bytes &data)
{
    const auto send = [&](std::uint16_t code, std::uint16_t result, const Bytes &content) {
        Bytes bytes;
        appendHalf(bytes, result);
        appendHalf(bytes, code);
        appendHalf(bytes, static_cast<unsigned>(content.size()));
        appendHalf(bytes, command.id);
        bytes.insert(bytes.end(), content.begin(), content.end());
        sendto(command.socket, bytes.data(), bytes.size(), 0,
               reinterpret_cast<const sockaddr *>(&command.from), sizeof command.from);
    };
    const auto delay = std::chrono::milliseconds(faults_.answerDelayMs.load());
    if (delay > 0ms && faults_.announcesDelay && command.code != discoveryCommand) {
        Bytes announced;
        appendHalf(announced, 0);
        appendHalf(announced, static_cast<unsigned>(delay.count()) + 500U);
        send(pendingAnswer, 0, announced);
    }
    for (const auto due = Clock::now() + delay; Clock::now() < due && !ends_;) {
        std::this_thread::sleep_for(1ms);
    }
    if (!faults_.frozen) {
        send(static_cast<std::uint16_t>(command.code + 1), status, data);
    }
}

void RigControl::discovery(const Command &command)
{
    answer(command, 0, memory_.readBytes(0, discoverySize));
}

bool RigControl::isController(const Command &command) const
{
    return controller_.sin_port != 0 && controller_.sin_port == command.from.sin_port &&
           controller_.sin_addr.s_addr == command.from.sin_addr.s_addr;
}

std::uint16_t RigControl::refusalFor(const Command &command, std::uint32_t address, bool write)
{
    constexpr std::uint32_t exclusive = 1;
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = refused_.find(address); found != refused_.end() && found->second) {
            return found->second;
        }
    }
    if (address >= firstRefusableRegister && faults_.refusal != 0) {
        return faults_.refusal;
    }
    const std::uint32_t elsewhere = faults_.heldElsewhere;
    const bool ours = isController(command) && elsewhere == 0;
    const std::uint32_t held = elsewhere != 0 ? elsewhere : memory_.at(RigAddress::privilege);
    if (write) {
        const bool takes = address == RigAddress::privilege && held == 0;
        return ours || takes ? 0 : RigStatus::accessDenied;
    }
    return !ours && (held & exclusive) != 0 ? RigStatus::accessDenied : std::uint16_t{0};
}

void RigControl::readRegisters(const Command &command)
{
    Bytes data;
    for (std::size_t at = 0; at + 4 <= command.size; at += 4) {
        const std::uint32_t address = word(command.data + at);
        if (const std::uint16_t status = refusalFor(command, address, false)) {
            answer(command, status, {});
            return;
        }
        const std::uint32_t elsewhere = faults_.heldElsewhere;
        const bool isTheirs = address == RigAddress::privilege && elsewhere != 0;
        const std::uint32_t value = memory_.read(address);
        appendWord(data, isTheirs ? elsewhere : value);
    }
    answer(command, 0, data);
}

void RigControl::writeWord(const Command &command, std::uint32_t address, std::uint32_t value)
{
    if (address == RigAddress::privilege) {
        controller_ = value != 0 ? command.from : sockaddr_in{};
        heard_ = Clock::now();
    }
    memory_.setClearDelay(faults_.commandTakesMs);
    memory_.write(address, value);
}

void RigControl::writeRegisters(const Command &command)
{
    unsigned written = 0;
    std::uint16_t status = 0;
    for (std::size_t at = 0; at + 8 <= command.size && status == 0; at += 8) {
        const std::uint32_t address = word(command.data + at);
        status = refusalFor(command, address, true);
        if (status == 0) {
            writeWord(command, address, word(command.data + at + 4));
            ++written;
        }
    }
    Bytes data;
    appendHalf(data, 0);
    appendHalf(data, written);
    answer(command, status, data);
}

void RigControl::readMemory(const Command &command)
{
    if (command.size < 8) {
        return;
    }
    const std::uint32_t address = word(command.data);
    if (const std::uint16_t status = refusalFor(command, address, false)) {
        answer(command, status, {});
        return;
    }
    const Bytes bytes = memory_.readBytes(address, half(command.data + 6));
    Bytes data;
    appendWord(data, address);
    data.insert(data.end(), bytes.begin(), bytes.end());
    answer(command, 0, data);
}

void RigControl::writeMemory(const Command &command)
{
    if (command.size < 4) {
        return;
    }
    const std::uint32_t address = word(command.data);
    const std::uint16_t status = refusalFor(command, address, true);
    for (std::size_t at = 4; at + 4 <= command.size && status == 0; at += 4) {
        writeWord(command, static_cast<std::uint32_t>(address + at - 4), word(command.data + at));
    }
    Bytes data;
    appendHalf(data, 0);
    appendHalf(data, static_cast<unsigned>(command.size - 4));
    answer(command, status, data);
}

void RigControl::resend(const Command &command)
{
    ++resendRequests_;
    constexpr std::uint32_t resendsPackets = 1U << 2;
    const std::size_t needed = command.extendedIds ? 20 : 12;
    if ((memory_.at(RigAddress::capability) & resendsPackets) == 0 || command.size < needed) {
        return;
    }
    const std::uint8_t *data = command.data;
    const std::uint64_t block = command.extendedIds
                                    ? std::uint64_t{word(data + 12)} << 32 | word(data + 16)
                                    : half(data + 2);
    const std::uint32_t mask = command.extendedIds ? 0xFFFFFFFF : 0x00FFFFFF;
    resend_(block, word(data + 4) & mask, word(data + 8) & mask);
}

/// Releases control if the controller is silent for the heartbeat timeout.
void RigControl::watchHeartbeat()
{
    const auto patience = std::chrono::milliseconds(memory_.at(RigAddress::heartbeatTimeout));
    if (controller_.sin_port != 0 && Clock::now() > heard_ + patience && !faults_.frozen) {
        controller_ = {};
        memory_.set(RigAddress::privilege, 0);
        memory_.set(RigAddress::hostPort, 0);
    }
}

} // namespace genicamtest
