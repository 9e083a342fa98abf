// SPDX-License-Identifier: MIT
// Splits a frame of a rig camera into packets of the GigE Vision stream protocol.
#include "tests/library/genicam/rig/RigPackets.h"

#include <algorithm>

namespace genicamtest {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Payload = RigFaults::Payload;

constexpr unsigned partCount = 2;
constexpr std::uint32_t imageChunkId = 0x0A5A5A5A;
constexpr std::uint32_t otherChunkId = 0x12345678;
enum PacketKind : unsigned { Leader = 1, Trailer = 2, Data = 3, MultipartData = 7 };

void append(Bytes &bytes, std::uint64_t value, unsigned size)
{
    for (unsigned i = size; i-- > 0;) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

unsigned payloadType(Payload payload)
{
    switch (payload) {
    case Payload::Image:
        return 0x0001;
    case Payload::ImageWithChunks:
        return 0x4001;
    case Payload::ExtendedChunks:
        return 0x0005;
    case Payload::Chunks:
        return 0x0004;
    case Payload::Raw:
        return 0x0002;
    case Payload::Multipart:
        return 0x000A;
    }
    return 0;
}

/// Builds a packet header; `info` has a separate field in extended headers.
Bytes header(const RigFrame &frame, unsigned kind, std::size_t packet, unsigned info = 0)
{
    Bytes bytes;
    append(bytes, 0, 2); // status
    if (frame.extendedIds) {
        append(bytes, 0, 2);
        append(bytes, 0x80U | kind, 1);
        append(bytes, info, 3);
        append(bytes, frame.number, 8);
        append(bytes, packet, 4);
    } else {
        append(bytes, frame.number & 0xFFFF, 2);
        append(bytes, kind, 1);
        append(bytes, packet, 3);
    }
    return bytes;
}

void appendImageInfo(Bytes &bytes, const RigFrame &frame, std::uint32_t height)
{
    append(bytes, frame.width, 4);
    append(bytes, height, 4);
    append(bytes, 0, 8); // offsets
    append(bytes, frame.padding, 2);
    append(bytes, 0, 2);
}

/// Appends the information about a part, 48 bytes.
void appendPartInfo(Bytes &bytes, const RigFrame &frame, std::uint32_t height, std::size_t size,
                    unsigned purpose)
{
    append(bytes, 1, 2); // two-dimensional image
    append(bytes, size, 6);
    append(bytes, frame.pixelFormat, 4);
    append(bytes, 0, 2); // source
    append(bytes, purpose, 2);
    append(bytes, 0, 8); // region, zones
    appendImageInfo(bytes, frame, height);
    append(bytes, 0, 4);
}

Bytes leader(const RigFrame &frame)
{
    const bool multipart = frame.payload == Payload::Multipart;
    Bytes bytes = header(frame, Leader, 0, multipart ? partCount : 0);
    append(bytes, 0, 2);
    append(bytes, payloadType(frame.payload), 2);
    append(bytes, frame.number * 1000000, 8); // time stamp
    if (multipart) {
        appendPartInfo(bytes, frame, frame.height, frame.pixels.size(), 1);
        appendPartInfo(bytes, frame, frame.height / 2, frame.pixels.size() / 2, 2);
    } else if (frame.payload != Payload::Chunks) {
        append(bytes, frame.pixelFormat, 4);
        appendImageInfo(bytes, frame, frame.height);
    }
    return bytes;
}

Bytes trailer(const RigFrame &frame, std::size_t packet)
{
    Bytes bytes = header(frame, Trailer, packet);
    append(bytes, payloadType(frame.payload), 4);
    append(bytes, frame.lines, 4);
    return bytes;
}

void appendChunk(Bytes &bytes, std::uint32_t id, std::size_t size)
{
    append(bytes, id, 4);
    append(bytes, size, 4);
}

Bytes content(const RigFrame &frame)
{
    Bytes bytes = frame.pixels;
    if (frame.payload == Payload::ImageWithChunks || frame.payload == Payload::ExtendedChunks ||
        frame.payload == Payload::Chunks) {
        appendChunk(bytes, imageChunkId, frame.pixels.size());
        append(bytes, frame.number, 8);
        appendChunk(bytes, otherChunkId, 8);
    } else if (frame.payload == Payload::Multipart) {
        bytes.insert(bytes.end(), frame.pixels.begin(),
                     frame.pixels.begin() + static_cast<std::ptrdiff_t>(frame.pixels.size() / 2));
    }
    return bytes;
}

void appendPart(std::vector<Bytes> &packets, const RigFrame &frame, std::size_t data,
                const Bytes &bytes, std::size_t from, std::size_t to, unsigned part)
{
    for (std::size_t at = from; at < to; at += data) {
        Bytes packet = header(frame, MultipartData, packets.size());
        append(packet, part, 1);
        append(packet, 0, 1);
        append(packet, at - from, 6);
        const std::size_t end = std::min(at + data, to);
        packet.insert(packet.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                      bytes.begin() + static_cast<std::ptrdiff_t>(end));
        packets.push_back(std::move(packet));
    }
}

} // namespace

std::vector<std::uint8_t> slope(const RigFrame &frame, bool bigEndian)
{
    Bytes bytes;
    const std::size_t bits = bitsPerPixel(frame.pixelFormat);
    const std::size_t row = (bits * frame.width + 7) / 8;
    bytes.reserve((row + frame.padding) * frame.lines);
    for (std::size_t y = 0; y < frame.lines; ++y) {
        for (std::size_t x = 0; x < row; ++x) {
            const std::size_t value =
                bits == 16 ? (x / 2 + y + frame.number) << 4 & 0xFFFF : x + y + frame.number;
            const bool high = bits == 16 && (x % 2 == 0) == bigEndian;
            bytes.push_back(static_cast<std::uint8_t>(high ? value >> 8 : value));
        }
        bytes.insert(bytes.end(), frame.padding, 0xEE);
    }
    return bytes;
}

std::size_t payloadBytes(const RigFrame &frame)
{
    const std::size_t row = (bitsPerPixel(frame.pixelFormat) * frame.width + 7) / 8 + frame.padding;
    const std::size_t image = row * frame.height;
    switch (frame.payload) {
    case Payload::ImageWithChunks:
    case Payload::ExtendedChunks:
    case Payload::Chunks:
        return image + 24;
    case Payload::Multipart:
        return image + image / 2;
    case Payload::Image:
    case Payload::Raw:
        break;
    }
    return image;
}

std::vector<std::vector<std::uint8_t>> packetsOf(const RigFrame &frame, std::size_t packetSize)
{
    const bool multipart = frame.payload == Payload::Multipart;
    const std::size_t overhead = ipAndUdp + (frame.extendedIds ? 20 : 8) + (multipart ? 8 : 0);
    const std::size_t data = std::max<std::size_t>(packetSize, overhead + 64) - overhead;
    std::vector<Bytes> packets{leader(frame)};
    const Bytes bytes = content(frame);
    if (multipart) {
        appendPart(packets, frame, data, bytes, 0, frame.pixels.size(), 0);
        appendPart(packets, frame, data, bytes, frame.pixels.size(), bytes.size(), 1);
    } else {
        for (std::size_t at = 0; at < bytes.size(); at += data) {
            Bytes packet = header(frame, Data, packets.size());
            const std::size_t end = std::min(at + data, bytes.size());
            packet.insert(packet.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                          bytes.begin() + static_cast<std::ptrdiff_t>(end));
            packets.push_back(std::move(packet));
        }
    }
    packets.push_back(trailer(frame, packets.size()));
    return packets;
}

} // namespace genicamtest
