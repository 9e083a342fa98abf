// SPDX-License-Identifier: MIT
// The stream of a rig camera: creates and sends frames.
#include "tests/library/genicam/rig/RigStream.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>

namespace genicamtest {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::size_t maxKeptFrames = 8; // frames

} // namespace

RigStream::RigStream(in_addr address, RigMemory &memory, RigFaults &faults)
    : memory_(memory), faults_(faults), socket_(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_addr = address;
    bind(socket_, reinterpret_cast<const sockaddr *>(&local), sizeof local);
    thread_ = std::thread([this] { run(); });
}

RigStream::~RigStream()
{
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    thread_.join();
    close(socket_);
}

void RigStream::start()
{
    const std::lock_guard lock(mutex_);
    runs_ = true;
    isFirst_ = true;
    number_ = 1;
    changed_.notify_all();
}

void RigStream::stop()
{
    const std::lock_guard lock(mutex_);
    runs_ = false;
    asked_ = 0;
    changed_.notify_all();
}

void RigStream::sendFrame(unsigned count)
{
    const std::lock_guard lock(mutex_);
    asked_ += count;
    changed_.notify_all();
}

/// The time until the next frame: limited by exposure and rate; a fault may delay the first frame.
std::chrono::nanoseconds RigStream::period() const
{
    const double rate = std::max(double{memory_.floatAt(RigAddress::frameRate)}, 0.001);
    const double exposure = memory_.floatAt(RigAddress::exposureTime) * 1e-6;
    const double seconds =
        isFirst_ ? exposure + faults_.firstFrameAfterMs * 1e-3 : std::max(1 / rate, exposure);
    return std::chrono::nanoseconds(static_cast<std::int64_t>(seconds * 1e9));
}

/// False if acquisition has ended.
bool RigStream::waitForFrame()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return ends_ || runs_; });
    if (ends_) {
        return false;
    }
    if (faults_.waitsForTrigger) {
        changed_.wait_for(lock, 10ms, [this] { return ends_ || !runs_ || asked_ > 0; });
        if (!runs_ || ends_ || asked_ == 0) {
            return false;
        }
        --asked_;
        return true;
    }
    const auto due = Clock::now() + period();
    changed_.wait_until(lock, due, [this] { return ends_ || !runs_ || faults_.waitsForTrigger; });
    return runs_ && !ends_ && !faults_.waitsForTrigger;
}

void RigStream::run()
{
    for (;;) {
        const bool sends = waitForFrame() && !faults_.frozen;
        if (sends) {
            sendOne();
        }
        const std::lock_guard lock(mutex_);
        if (ends_) {
            return;
        }
    }
}

RigFrame RigStream::nextFrame() const
{
    RigFrame frame;
    {
        const std::lock_guard lock(mutex_);
        frame.number = number_;
    }
    frame.width = memory_.at(RigAddress::width);
    frame.height = memory_.at(RigAddress::height);
    frame.pixelFormat = memory_.at(RigAddress::pixelFormat);
    frame.padding = faults_.linePadding;
    frame.lines =
        faults_.realHeight != 0 ? std::min(faults_.realHeight.load(), frame.height) : frame.height;
    frame.payload = faults_.payload;
    frame.extendedIds = faults_.extendedIds || frame.payload == RigFaults::Payload::Multipart;
    return frame;
}

void RigStream::sendOne()
{
    RigFrame frame = nextFrame();
    {
        const std::lock_guard lock(mutex_);
        ++framesSent_; // before its packets: a test may look as soon as the frame has arrived
    }
    frame.pixels = slope(frame, faults_.bigEndianPixels);
    Packets packets = packetsOf(frame, memory_.at(RigAddress::packetSize) & 0xFFFF);
    for (const auto &packet : packets) {
        if (isLost(packet.size(), &packet == &packets.front(), &packet == &packets.back())) {
            ++packetsLost_;
        } else {
            send(packet);
        }
        ++packetsSent_;
    }
    const std::lock_guard lock(mutex_);
    kept_.emplace_back(frame.number, std::move(packets));
    if (kept_.size() > maxKeptFrames) {
        kept_.pop_front();
    }
    isFirst_ = false;
    const unsigned every = faults_.skipsFrameEvery;
    number_ += every != 0 && framesSent_ % every == 0 ? 2 : 1;
    if (!frame.extendedIds && number_ > 0xFFFF) {
        number_ = 1; // 0 is not a valid block ID
    }
}

bool RigStream::isLost(std::size_t size, bool first, bool last)
{
    const unsigned largest = faults_.largestPacket;
    if (largest != 0 && size + ipAndUdp > largest) {
        return true;
    }
    return !first && !last && random_() % 1000000 < faults_.losesPerMillion;
}

void RigStream::send(const std::vector<std::uint8_t> &packet)
{
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<std::uint16_t>(memory_.at(RigAddress::hostPort)));
    to.sin_addr.s_addr = htonl(memory_.at(RigAddress::hostAddress));
    if (to.sin_port != 0) {
        sendto(socket_, packet.data(), packet.size(), 0, reinterpret_cast<const sockaddr *>(&to),
               sizeof to);
    }
}

void RigStream::sendTestPacket(std::uint32_t packetSize)
{
    ++testPackets_;
    const unsigned largest = faults_.largestPacket;
    if (packetSize > ipAndUdp && (largest == 0 || packetSize <= largest)) {
        send(std::vector<std::uint8_t>(packetSize - ipAndUdp));
    }
}

void RigStream::resend(std::uint64_t block, std::uint32_t first, std::uint32_t last)
{
    constexpr std::uint8_t sentAgain = 0x01; // second byte of status 0x0100
    const std::lock_guard lock(mutex_);
    for (const auto &[number, packets] : kept_) {
        const std::uint64_t known =
            packets.front().size() > 0 && !faults_.extendedIds ? number & 0xFFFF : number;
        for (std::size_t i = first; known == block && i <= last && i < packets.size(); ++i) {
            std::vector<std::uint8_t> packet = packets[i];
            packet[0] = sentAgain;
            send(packet);
        }
    }
}

} // namespace genicamtest
