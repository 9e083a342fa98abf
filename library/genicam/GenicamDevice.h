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

/// A GigE Vision or USB3 Vision camera, or Aravis' in-process test camera. Calls to Aravis take
/// turns (CameraLink), but waiting for an image does not need a turn.
class GenicamDevice : public Device {
public:
    /// Takes over the reference. `onGone` runs when the camera has been left for good.
    GenicamDevice(GPtr<ArvDevice> device, DeviceIdentity identity, std::function<void()> onGone);
    ~GenicamDevice() override;

    /// Tells whether the camera is lost, also after this object's end.
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
    OResult lookForLife();
    bool hasControl();
    bool isWrongWay();
    void climbBack();
    OResult startAgain();
    bool servesRegister(std::uint32_t address) const;
    /// Calls access(device, error) when it is this caller's turn, if there is such a register.
    template <class Access> OResult atRegister(std::uint32_t address, Access access);

    const std::shared_ptr<AravisUse> aravis_ = AravisUse::instance();
    DeviceIdentity identity_;
    std::function<void()> onGone_;
    bool isFake_ = false;
    GigeLink gige_;                    // of the thread that streams
    PixelOrder order_;                 // the same
    std::shared_ptr<CameraLink> link_; // never null
    StreamCounters counters_;
    StreamCounters grabCounters_; // of streams that nobody but us knows of
    GenicamNodeMap nodes_;
    // Of the thread that streams:
    Session session_;
    Clock::time_point since_; ///< last image, start of the stream, or last try of another way
    Clock::time_point heard_; ///< last image, or last sign of life
};

/// Who a camera is: what discovery saw, completed by what the camera says itself.
DeviceIdentity identityOf(ArvDevice *device, std::string id, std::string displayName);

} // namespace orvalis
