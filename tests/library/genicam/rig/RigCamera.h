// SPDX-License-Identifier: MIT
// A GigE Vision camera that a test describes, and that misbehaves as the test likes.
#pragma once

#include "tests/library/genicam/rig/CameraDescription.h"
#include "tests/library/genicam/rig/RigControl.h"
#include "tests/library/genicam/rig/RigFaults.h"
#include "tests/library/genicam/rig/RigMemory.h"
#include "tests/library/genicam/rig/RigStream.h"

#include <string>

namespace genicamtest {

/// The rig: a camera on a loopback address, served by threads of the test's own process. It needs a
/// network of its own, so its tests belong to genicam_rig_test (label gige) and begin with
/// GigeFixture:
///
///     TEST_F(Rig, gainIsSet)                       // class Rig : public GigeFixture
///     {
///         CameraDescription description;           // what the camera has beside the stream's
///         nodes description.addFloat("Gain", 0x1000, 0, 24); RigCamera camera(description); //
///         listens from now on; rig camera RIG1 camera.memory.setFloat(0x1000, 6);       //
///         registers, by address backend_->discover(); const auto device = openCamera(*backend_,
///         camera.id()); camera.faults.frozen = true;             // faults, at any time: RigFaults
///         EXPECT_EQ(camera.memory.writes(0x1000), 0U); // accesses are counted per address
///     }
///
/// The description always has Width, Height, PixelFormat, PayloadSize, AcquisitionMode,
/// AcquisitionStart, AcquisitionStop and TLParamsLocked, in registers of RigAddress, and, unless
/// RigOptions says otherwise, AcquisitionFrameRate and ExposureTime. It starts as 64 x 48 Mono8 at
/// 50 frames a second. Frames show the slope that isWhole() of the fixture checks.
///
/// More than one camera: RigCamera(description, {.number = 2}). Camera N is RIGN at 127.0.0.N.
struct RigOptions {
    unsigned number = 1;        ///< of the address and the serial number
    std::string address = {};   ///< instead of 127.0.0.<number>
    bool offersResend = true;   ///< sends packets again when asked, and says so
    bool describesTimes = true; ///< has AcquisitionFrameRate and ExposureTime
    bool bigEndian = true;      ///< what the device mode register says of registers
    std::string userName = {};  ///< DeviceUserID, in the bootstrap registers
};

/// See above. Faults, registers and counters: any thread.
class RigCamera {
public:
    explicit RigCamera(CameraDescription description, RigOptions options = {});
    RigCamera(const RigCamera &) = delete;
    RigCamera &operator=(const RigCamera &) = delete;

    /// ID that discovery gives to it.
    std::string id() const { return "Rig-Described-" + serial_; }

    RigFaults faults;
    RigMemory memory;

    /// Closes its sockets, as if its program had ended: the computer says that nobody is there.
    void vanish();
    /// Comes back after vanish(), as after a restart: nobody controls it and it does not acquire.
    void comeBack() { control_.open(); }
    /// Another program takes the camera from its controller.
    void takeAway() { faults.heldElsewhere = 2; }

    /// `status` (RigStatus) answers every access to `address` from now on; 0 for none.
    void refuse(std::uint32_t address, std::uint16_t status) { control_.refuse(address, status); }
    /// From now on the register of a command at `address` reads 0 once the command is done, at once
    /// or after faults.commandTakesMs.
    void addCommand(std::uint32_t address) { memory.clearAfterWrite(address); }
    /// Sends frames while faults.waitsForTrigger. For a described trigger:
    /// camera.memory.onWrite(address, [&](auto) { camera.sendFrame(); }).
    void sendFrame(unsigned count = 1) { stream_.sendFrame(count); }

    bool acquires() const { return acquires_; }
    std::uint64_t framesSent() const { return stream_.framesSent(); }
    std::uint64_t packetsSent() const { return stream_.packetsSent(); } ///< the lost ones included
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
