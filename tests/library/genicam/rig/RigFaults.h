// SPDX-License-Identifier: MIT
// Deviations of a rig camera from the standard.
#pragma once

#include <atomic>
#include <cstdint>

namespace genicamtest {

/// Faults that a test can switch at any time, in any combination. Any thread.
struct RigFaults {
    // --- control: answers to commands
    /// Answers and sends nothing, as if the camera's firmware hung.
    std::atomic<bool> frozen{false};
    /// Delays each answer.
    std::atomic<unsigned> answerDelayMs{0};
    /// Announces with PENDING_ACK that an answer is delayed (GigE Vision 1.1 and later).
    std::atomic<bool> announcesDelay{false};
    /// Status of every answer to a register access outside the bootstrap registers (below 0xA01),
    /// such as RigStatus::accessDenied. For one address: RigCamera::refuse().
    std::atomic<std::uint16_t> refusal{0};
    /// Control channel privilege of another program: 2 control (reads are permitted), 1 exclusive
    /// (not even reads), 0 none.
    std::atomic<std::uint32_t> heldElsewhere{0};
    /// The duration of a command, until its register reads 0 again. See RigCamera::addCommand().
    std::atomic<unsigned> commandTakesMs{0};

    // --- stream: sent frames
    /// Delay of the first frame after a start, in addition to the exposure.
    std::atomic<unsigned> firstFrameAfterMs{0};
    /// Sends frames only for RigCamera::sendFrame().
    std::atomic<bool> waitsForTrigger{false};
    /// Lost packets with image data, per million.
    std::atomic<std::uint32_t> losesPerMillion{0};
    /// Larger packets are lost, test packets included; 0: none. Bytes including IP and UDP headers.
    std::atomic<unsigned> largestPacket{0};
    /// Skips one frame number after this many frames; 0: never.
    std::atomic<unsigned> skipsFrameEvery{0};
    /// Padding bytes after each row, also stated in the leader.
    std::atomic<unsigned> linePadding{0};
    /// Uses 64-bit block IDs and 32-bit packet IDs (GigE Vision 2).
    std::atomic<bool> extendedIds{false};
    /// Sends 16-bit pixels in big-endian order, as some early cameras do.
    std::atomic<bool> bigEndianPixels{false};
    /// The payload type of frames.
    enum class Payload : int {
        Image,
        ImageWithChunks, ///< type 0x4001: the image, then chunks
        ExtendedChunks,  ///< type 0x0005: likewise, with the image as a chunk
        Chunks,          ///< type 0x0004: chunks, without image information in the leader
        Raw,             ///< type 0x0002
        Multipart,       ///< type 0x000A: the image and a second part of half its height
    };
    std::atomic<Payload> payload{Payload::Image};
    /// The number of lines actually sent, as the trailer states; 0: all. Line scan cameras do this.
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
