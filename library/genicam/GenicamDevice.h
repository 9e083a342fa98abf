// SPDX-License-Identifier: MIT
// One open real camera.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Background.h"
#include "library/genicam/CameraLink.h"
#include "library/genicam/GenicamNodeMap.h"
#include "library/genicam/GigeLink.h"
#include "library/genicam/GigePresence.h"
#include "library/genicam/StreamCounters.h"
#include "library/genicam/StreamSession.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace orvalis {

/// A GigE Vision or USB3 Vision camera, or Aravis' in-process test camera. Calls to Aravis take
/// turns (CameraLink), but waiting for an image does not need a turn. What may take seconds once
/// the camera is gone, to stop and to leave it, happens in the background, and the caller waits for
/// a part of a second only.
class GenicamDevice : public Device {
public:
    /// Takes over the reference. `onGone` runs when the camera has been left for good, maybe after
    /// this object's end, on any thread.
    GenicamDevice(GPtr<ArvDevice> device, DeviceIdentity identity, std::function<void()> onGone);
    ~GenicamDevice() override;

    /// Tells whether the camera is lost, also after this object's end.
    std::function<bool()> lossProbe() const;

    const DeviceIdentity &identity() const override { return identity_; }
    NodeMap &nodes() override { return core_->nodes; }
    OResult startStream() override;
    OResult nextImage(RawImage &image, Clock::time_point deadline) override;
    void wake() override { core_->link.wake(); }
    void stopStream() override;
    OResult takeImage(RawImage &image, Clock::time_point deadline) override;
    OResult readRegister(std::uint32_t address, std::uint32_t &value) override;
    OResult writeRegister(std::uint32_t address, std::uint32_t value) override;
    OResult reset() override;

private:
    using Session = std::shared_ptr<StreamSession>;
    enum class Stream { None, Active, Ending };

    /// What background jobs share with this object, and may outlive it in.
    struct Core {
        explicit Core(GPtr<ArvDevice> device)
            : gige(device.get()), presence(device.get()), link(device.release()),
              nodes(link, counters)
        {
        }
        GigeLink gige; // whoever has the turn
        const GigePresence presence;
        CameraLink link;
        StreamCounters counters;
        StreamCounters grabCounters; // of streams that nobody but us knows of
        GenicamNodeMap nodes;
        std::atomic<bool> proven{false}; // an image has come the way that `gige` has chosen

        std::mutex mutex; // guards stream
        std::condition_variable ended;
        Stream stream = Stream::None;
    };

    /// Looks whether the camera can be proven to be gone, and marks it lost then.
    static bool isGone(Core &core);
    CameraLink::Turn turnUnlessGone();
    OResult claimStream();
    static void releaseStream(Core &core);
    OResult begin(Session &session, StreamUse use);
    void end(Session session);
    OResult waitForImage(StreamSession &session, RawImage &image, Clock::time_point deadline);
    OResult checkSilence();
    OResult lookForLife(bool &waitsForTrigger);
    bool hasControl();
    bool isWrongWay(const StreamSession &session, Clock::time_point since, bool triggered) const;
    OResult tryAnotherWay();
    bool servesRegister(std::uint32_t address) const;
    /// Calls access(device, error) when it is this caller's turn, if there is such a register.
    template <class Access> OResult atRegister(std::uint32_t address, Access access);

    DeviceIdentity identity_;
    std::function<void()> onGone_;
    std::shared_ptr<Background> background_ = Background::instance();
    std::shared_ptr<Core> core_;
    // Of the thread that streams:
    Session session_;
    Clock::time_point since_; ///< last image, start of the stream, or last try of another way
    Clock::time_point heard_; ///< last image, or last sign of life
    bool isFake_ = false;
};

/// Who a camera is: what discovery saw, completed by what the camera says itself.
DeviceIdentity identityOf(ArvDevice *device, std::string id, std::string displayName);

} // namespace orvalis
