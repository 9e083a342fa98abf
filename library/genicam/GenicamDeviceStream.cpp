// SPDX-License-Identifier: MIT
// One open real camera: its stream, single images, and what is tried when no picture comes.
#include "library/genicam/GenicamDevice.h"

#include <algorithm>

namespace orvalis {
namespace {

using namespace std::chrono_literals;

/// Callers are promised a second.
constexpr auto stopPatience = 800ms;
/// After so long without an image the camera is asked whether it is still there: Aravis itself
/// takes more than seven seconds to notice.
constexpr auto silenceLimit = 500ms;
/// A stream that has brought nothing by then is tried with safer settings.
constexpr auto firstImageLimit = 900ms;
/// So is one that has worked, once as many frames have come in a row of which parts were missing.
constexpr std::uint64_t damagedLimit = 3;
/// Control channel privilege of a GigE Vision camera: cheap to read, and every camera has it. One
/// of these bits is set while somebody controls the camera.
constexpr std::uint32_t privilegeRegister = 0x0A00;
constexpr guint32 controlPrivileges = 0x3;

bool triggerIsOn(ArvDevice *device)
{
    if (!ARV_IS_GC_ENUMERATION(arv_device_get_feature(device, "TriggerMode"))) {
        return false;
    }
    Failure ignored;
    return textOf(arv_device_get_string_feature_value(device, "TriggerMode", ignored.slot())) ==
           "On";
}

} // namespace

/// One stream at a time: waits until a stream that was stopped before is really gone.
OResult GenicamDevice::claimStream()
{
    std::unique_lock lock(core_->mutex);
    while (core_->stream == Stream::Ending && !core_->link.lost()) {
        core_->ended.wait_for(lock, 50ms); // the loss of the camera is not told here
    }
    if (core_->link.lost()) {
        return ORVALIS_ERROR_CONNECTION_LOST;
    }
    if (core_->stream != Stream::None) {
        return ORVALIS_ERROR_BUSY;
    }
    core_->stream = Stream::Active;
    return ORVALIS_OK;
}

void GenicamDevice::releaseStream(Core &core)
{
    const std::lock_guard lock(core.mutex);
    core.stream = Stream::None;
    core.ended.notify_all();
}

OResult GenicamDevice::begin(Session &session, StreamUse use)
{
    const CameraLink::Turn turn = turnUnlessGone();
    if (!turn) {
        return ORVALIS_ERROR_CONNECTION_LOST;
    }
    core_->gige.apply(core_->link.device());
    StreamCounters &counters = use == StreamUse::Continuous ? core_->counters : core_->grabCounters;
    session = std::make_shared<StreamSession>(core_->link, counters);
    const OResult result = session->start(use);
    if (result != ORVALIS_OK) {
        session.reset();
    }
    return result;
}

/// Stops the camera and takes the stream down, in the background if the camera is slow.
void GenicamDevice::end(Session session)
{
    {
        const std::lock_guard lock(core_->mutex);
        core_->stream = Stream::Ending;
    }
    const auto job = [core = core_, session = std::move(session)] {
        if (const CameraLink::Turn turn = core->link.turn()) {
            session->stopCamera();
        }
        session->end();
        releaseStream(*core);
    };
    // A camera that is gone does not answer: nothing is worth waiting for.
    background_->run(job, isGone(*core_) ? 0ms : stopPatience);
}

OResult GenicamDevice::startStream()
{
    if (const OResult result = claimStream(); result != ORVALIS_OK) {
        return result;
    }
    core_->link.forgetWake();
    core_->counters.reset();
    // First of all: buffers are as large as the picture is now, and must not become too small.
    core_->nodes.setStreaming(true);
    if (const OResult result = begin(session_, StreamUse::Continuous); result != ORVALIS_OK) {
        core_->nodes.setStreaming(false);
        releaseStream(*core_);
        return result;
    }
    since_ = heard_ = Clock::now();
    return ORVALIS_OK;
}

void GenicamDevice::stopStream()
{
    core_->nodes.setStreaming(false);
    if (session_) {
        end(std::move(session_));
    }
}

OResult GenicamDevice::nextImage(RawImage &image, Clock::time_point deadline)
{
    if (!session_) {
        return ORVALIS_ERROR_ABORTED;
    }
    for (;;) {
        const OResult result =
            waitForImage(*session_, image, std::min(deadline, heard_ + silenceLimit));
        if (result != ORVALIS_OK && result != ORVALIS_ERROR_TIMEOUT) {
            return result;
        }
        // With an image too: a program that has been stopped for a while finds old images, and may
        // have lost the camera meanwhile.
        if (const OResult there = checkSilence(); there != ORVALIS_OK) {
            return there;
        }
        if (result == ORVALIS_OK) {
            core_->counters.add(StreamCounters::Delivered);
            since_ = heard_ = Clock::now();
            return ORVALIS_OK;
        }
        if (Clock::now() >= deadline) {
            return ORVALIS_ERROR_TIMEOUT;
        }
    }
}

OResult GenicamDevice::waitForImage(StreamSession &session, RawImage &image,
                                    Clock::time_point deadline)
{
    while (!core_->link.lost()) {
        if (session.take(image)) {
            core_->proven = true;
            return ORVALIS_OK;
        }
        const CameraLink::Event event = core_->link.waitForBuffer(deadline);
        if (event == CameraLink::Event::Wake) {
            return ORVALIS_ERROR_ABORTED;
        }
        if (event == CameraLink::Event::Timeout) {
            return ORVALIS_ERROR_TIMEOUT;
        }
    }
    return ORVALIS_ERROR_CONNECTION_LOST;
}

/// After a while without an image: is the camera there, and if so, is it the way its packets
/// travel?
OResult GenicamDevice::checkSilence()
{
    if (Clock::now() < heard_ + silenceLimit) {
        return ORVALIS_OK;
    }
    bool triggered = false;
    if (const OResult result = lookForLife(triggered); result != ORVALIS_OK) {
        return result;
    }
    heard_ = Clock::now();
    return isWrongWay(*session_, since_, triggered) ? tryAnotherWay() : ORVALIS_OK;
}

/// True if nothing has come since the beginning, though it should; or if frames come, one after the
/// other, and none of them complete: the way to the camera may have changed. Or if the last try did
/// not begin at all.
bool GenicamDevice::isWrongWay(const StreamSession &session, Clock::time_point since,
                               bool triggered) const
{
    if (Clock::now() < since + firstImageLimit) {
        return false;
    }
    return session.damagedInARow() >= damagedLimit || (!core_->proven && !triggered) ||
           !session.isRunning();
}

OResult GenicamDevice::lookForLife(bool &waitsForTrigger)
{
    const CameraLink::Turn turn = turnUnlessGone();
    if (!turn || !hasControl()) {
        return ORVALIS_ERROR_CONNECTION_LOST;
    }
    waitsForTrigger = triggerIsOn(core_->link.device());
    return ORVALIS_OK;
}

/// Whether a GigE Vision camera is there and still ours; lost if not. Whoever takes a camera over
/// has the same privilege, but only the present controller may write the register.
bool GenicamDevice::hasControl()
{
    ArvDevice *device = core_->link.device();
    if (!ARV_IS_GV_DEVICE(device)) {
        return true;
    }
    Failure failure;
    guint32 privilege = 0;
    arv_device_read_register(device, privilegeRegister, &privilege, failure.slot());
    if (failure) {
        return core_->link.resultOf(failure) != ORVALIS_ERROR_CONNECTION_LOST;
    }
    if ((privilege & controlPrivileges) != 0) {
        arv_device_write_register(device, privilegeRegister, privilege, failure.slot());
        if (core_->link.resultOf(failure) != ORVALIS_ERROR_ACCESS_DENIED) {
            return !core_->link.lost();
        }
    }
    core_->link.markLost("this program does not control it any more");
    return false;
}

/// Starts the stream anew with safer settings, if there are any left.
OResult GenicamDevice::tryAnotherWay()
{
    since_ = Clock::now();
    {
        const CameraLink::Turn turn = core_->link.turn();
        if (!turn) {
            return ORVALIS_ERROR_CONNECTION_LOST;
        }
        if (!core_->gige.retreat(session_->damagedInARow() > 0) && session_->isRunning()) {
            return ORVALIS_OK;
        }
        session_->stopCamera();
        session_->end();
    }
    Session next;
    const OResult result = begin(next, StreamUse::Continuous);
    if (result == ORVALIS_OK) {
        session_ = std::move(next);
    }
    return result;
}

OResult GenicamDevice::takeImage(RawImage &image, Clock::time_point deadline)
{
    if (const OResult result = claimStream(); result != ORVALIS_OK) {
        return result;
    }
    const Clock::time_point started = Clock::now();
    Session session;
    if (const OResult result = begin(session, StreamUse::OneImage); result != ORVALIS_OK) {
        releaseStream(*core_);
        return result;
    }
    const OResult result = waitForImage(*session, image, deadline);
    bool triggered = false;
    if (result == ORVALIS_ERROR_TIMEOUT && lookForLife(triggered) == ORVALIS_OK &&
        isWrongWay(*session, started, triggered)) {
        const CameraLink::Turn turn = core_->link.turn();
        core_->gige.retreat(session->damagedInARow() > 0); // for the next one
    }
    end(std::move(session));
    return result;
}

} // namespace orvalis
