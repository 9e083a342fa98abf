// SPDX-License-Identifier: MIT
// A GigE Vision camera that a test describes, with faults that the test controls.
#pragma once

#include "tests/library/genicam/rig/CameraDescription.h"
#include "tests/library/genicam/rig/RigControl.h"
#include "tests/library/genicam/rig/RigFaults.h"
#include "tests/library/genicam/rig/RigMemory.h"
#include "tests/library/genicam/rig/RigStream.h"

#include <string>

namespace genicamtest {

// clang-format off: keeps the lines of the example
/// The rig: a camera on a loopback address, served by threads of the test's own process. It needs a
/// separate network, so its tests belong to genicam_rig_test (label gige) and use GigeFixture:
///
///     TEST_F(Rig, gainIsSet)                           // class Rig : public GigeFixture
///     {
///         CameraDescription description;               // features in addition to the stream's
///         description.addFloat("Gain", 0x1000, 0, 24);
///         RigCamera camera(description);               // listens from now on; camera RIG1
///         camera.memory.setFloat(0x1000, 6);           // registers, by address
///         backend_->discover();
///         const auto device = openCamera(*backend_, camera.id());
///         camera.faults.frozen = true;                 // faults, at any time: RigFaults
///         EXPECT_EQ(camera.memory.writes(0x1000), 0U); // accesses are counted for each address
///     }
///
/// The description always has Width, Height, PixelFormat, PayloadSize, AcquisitionMode,
/// AcquisitionStart, AcquisitionStop and TLParamsLocked, in registers of RigAddress, and, unless
/// RigOptions disables them, AcquisitionFrameRate and ExposureTime. It starts with 64 x 48 Mono8 at
/// 50 frames a second. Frames contain the slope that isWhole() of the fixture checks.
///
/// Several cameras: RigCamera(description, {.number = 2}). Camera N is RIGN at 127.0.0.N.
// clang-format on
struct RigOptions {
    unsigned number = 1;        ///< determines address and serial number
    std::string address = {};   ///< replaces 127.0.0.<number>
    bool offersResend = true;   ///< supports resending packets
    bool describesTimes = true; ///< has AcquisitionFrameRate and ExposureTime
    bool bigEndian = true;      ///< byte order in the device mode register
    std::string userName = {};  ///< DeviceUserID, in the bootstrap registers
};

/// See RigOptions. Faults, registers and counters: any thread.
class RigCamera {
public:
    explicit RigCamera(CameraDescription description, RigOptions options = {});
    RigCamera(const RigCamera &) = delete;
    RigCamera &operator=(const RigCamera &) = delete;

    /// The ID of the camera in discovery.
    std::string id() const { return "Rig-Described-" + serial_; }

    RigFaults faults;
    RigMemory memory;

    /// Closes its sockets, as if its process had ended: the host reports closed ports.
    void vanish();
    /// Reverses vanish(), like a restart: no program controls the camera and it does not acquire.
    void comeBack() { control_.open(); }
    /// Gives control of the camera to another program.
    void takeAway() { faults.heldElsewhere = 2; }

    /// Answers every access to `address` with `status` (RigStatus) from now on; 0 for none.
    void refuse(std::uint32_t address, std::uint16_t status) { control_.refuse(address, status); }
    /// Makes the register at `address` a command: it reads 0 when the command is done, at once or
    /// after faults.commandTakesMs.
    void addCommand(std::uint32_t address) { memory.clearAfterWrite(address); }
    /// Sends frames while faults.waitsForTrigger. For a described trigger:
    /// camera.memory.onWrite(address, [&](auto) { camera.sendFrame(); }).
    void sendFrame(unsigned count = 1) { stream_.sendFrame(count); }

    bool acquires() const { return acquires_; }
    std::uint64_t framesSent() const { return stream_.framesSent(); }
    std::uint64_t packetsSent() const { return stream_.packetsSent(); } ///< including lost ones
    std::uint64_t packetsLost() const { return stream_.packetsLost(); }
    std::uint64_t testPackets() const { return stream_.testPackets(); }
    std::uint64_t commands() const { return control_.commands(); }
    std::uint64_t resendRequests() const { return control_.resendRequests(); }

private:
    void fillBootstrap(const RigOptions &options);
    void react();

    std::string serial_;
    in_addr address_{};
    std::atomic<bool> acquires_{false};
    RigStream stream_;
    RigControl control_; // last: its thread uses everything else
};

} // namespace genicamtest
