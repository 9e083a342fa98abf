// SPDX-License-Identifier: MIT
// One open real camera.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/AravisUse.h"
#include "library/genicam/CameraLink.h"
#include "library/genicam/GenicamNodeMap.h"
#include "library/genicam/GigeLink.h"
#include "library/genicam/StreamCounters.h"
#include "library/genicam/StreamSession.h"

#include <functional>
#include <memory>

namespace orvalis {

/// A GigE Vision or USB3 Vision camera, or Aravis' in-process test camera. CameraLink serialises
/// calls to Aravis; waiting for an image does not need its lock.
class GenicamDevice : public Device {
public:
    /// Takes ownership of the reference. Calls `onGone` when the camera has been disconnected.
    GenicamDevice(GPtr<ArvDevice> device, DeviceIdentity identity, std::function<void()> onGone);
    ~GenicamDevice() override;

    /// Returns a function that reports whether the camera is lost. It may outlive this object.
    std::function<bool()> lossProbe() const;

    const DeviceIdentity &identity() const override { return identity_; }
    NodeMap &nodes() override { return nodes_; }
    OResult startStream() override;
    OResult nextImage(RawImage &image, Clock::time_point deadline) override;
    void wake() override { link_->wake(); }
    void stopStream() override;
    OResult takeImage(RawImage &image, Clock::time_point deadline) override;
    OResult readRegister(std::uint32_t address, std::uint32_t &value) override;
    OResult writeRegister(std::uint32_t address, std::uint32_t value) override;
    OResult reset() override;

private:
    using Session = std::unique_ptr<StreamSession>;

    OResult begin(Session &session, StreamUse use);
    void end(Session session);
    OResult waitForImage(StreamSession &session, RawImage &image, Clock::time_point deadline);
    OResult checkSilence();
    OResult checkConnection();
    bool hasControl();
    bool mustRestart();
    void restoreTransport();
    OResult restart();
    bool servesRegister(std::uint32_t address) const;
    /// Takes the lock and calls access(device, error) if the camera has such a register.
    template <class Access> OResult atRegister(std::uint32_t address, Access access);

    const std::shared_ptr<AravisUse> aravis_ = AravisUse::instance();
    DeviceIdentity identity_;
    std::function<void()> onGone_;
    bool isFake_ = false;
    GigeLink gige_;                    // streaming thread only
    PixelOrder order_;                 // likewise
    std::shared_ptr<CameraLink> link_; // never null
    StreamCounters counters_;
    StreamCounters grabCounters_; // of the streams that serve grabs
    GenicamNodeMap nodes_;
    // Streaming thread only:
    Session session_;
    Clock::time_point lastProgress_; ///< last image, start of the stream, or change of transport
    Clock::time_point lastContact_;  ///< last image, or last answer
};

/// The identity of a camera: the given names, and what the camera's nodes report.
DeviceIdentity identityOf(ArvDevice *device, std::string id, std::string displayName);

} // namespace orvalis
