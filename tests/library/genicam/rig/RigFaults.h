// SPDX-License-Identifier: MIT
// How a rig camera deviates from the camera of the standard.
#pragma once

#include <atomic>
#include <cstdint>

namespace genicamtest {

/// What a test switches on while a rig camera runs; all at once where it likes. Any thread.
struct RigFaults {
    // --- control: how commands are answered
    /// Nothing is answered and nothing is sent, as if the camera's program hung.
    std::atomic<bool> frozen{false};
    /// Each answer comes so much later.
    std::atomic<unsigned> answerDelayMs{0};
    /// Announces with PENDING_ACK that the answer takes longer (GigE Vision 1.1 and later).
    std::atomic<bool> announcesDelay{false};
    /// Status of every answer to a read or write of registers other than the bootstrap's (below
    /// 0xA01), such as RigStatus::accessDenied. For one address: RigCamera::refuse().
    std::atomic<std::uint16_t> refusal{0};
    /// Another program's control channel privilege: 2 control (we may read), 1 exclusive (we may
    /// not even read), 0 nobody's.
    std::atomic<std::uint32_t> heldElsewhere{0};
    /// How long a command runs before its register reads 0 again. See RigCamera::addCommand().
    std::atomic<unsigned> commandTakesMs{0};

    // --- stream: what is sent
    /// From a start to its first frame, in addition to the exposure.
    std::atomic<unsigned> firstFrameAfterMs{0};
    /// Frames are sent only when RigCamera::sendFrame() asks for one.
    std::atomic<bool> waitsForTrigger{false};
    /// Of each million packets with image data so many are lost.
    std::atomic<std::uint32_t> losesPerMillion{0};
    /// Larger packets do not arrive, test packets included; 0: all arrive. Bytes with IP and UDP.
    std::atomic<unsigned> largestPacket{0};
    /// After each so-manieth frame one frame number is left out; 0: never.
    std::atomic<unsigned> skipsFrameEvery{0};
    /// Bytes behind each row, with that number in the leader.
    std::atomic<unsigned> linePadding{0};
    /// Block IDs of 64 bits and packet IDs of 32 bits (GigE Vision 2).
    std::atomic<bool> extendedIds{false};
    /// Pixels of 16 bits are big-endian, as some cameras of the first years send them.
    std::atomic<bool> bigEndianPixels{false};
    /// What a frame is said to consist of.
    enum class Payload : int {
        Image,
        ImageWithChunks, ///< type 0x4001: the image, then chunks
        ExtendedChunks,  ///< type 0x0005: the same, with the image as a chunk of its own
        Chunks,          ///< type 0x0004: chunks, without a word about the image in the leader
        Raw,             ///< type 0x0002
        Multipart,       ///< type 0x000A: the image and a second part of half its height
    };
    std::atomic<Payload> payload{Payload::Image};
    /// Lines that are really sent, as the trailer says; 0: all. Line-scan cameras do that.
    std::atomic<unsigned> realHeight{0};
};

/// Status codes of GigE Vision control answers.
namespace RigStatus {
constexpr std::uint16_t notImplemented = 0x8001;
constexpr std::uint16_t invalidParameter = 0x8002;
constexpr std::uint16_t invalidAddress = 0x8003;
constexpr std::uint16_t accessDenied = 0x8006;
constexpr std::uint16_t busy = 0x8007;
} // namespace RigStatus

} // namespace genicamtest
