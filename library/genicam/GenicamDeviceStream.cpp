// SPDX-License-Identifier: MIT
// One open real camera: its stream, single images, and what is tried when no picture comes.
#include "library/genicam/GenicamDevice.h"

#include <algorithm>

namespace orvalis {
namespace {

using namespace std::chrono_literals;

/// After so long without an image the camera is asked whether it is still there: Aravis itself
/// takes more than seven seconds to notice.
constexpr auto silenceLimit = 500ms;
/// A stream is tried with safer settings once it has brought no image for so long, but as many
/// frames in a row of which parts were missing.
constexpr auto damagedPatience = 900ms;
constexpr std::uint64_t damagedLimit = 3;
/// Control channel privilege of a GigE Vision camera: cheap to read, and every camera has it. One
/// of these bits is set while somebody controls the camera.
constexpr std::uint32_t privilegeRegister = 0x0A00;
constexpr guint32 controlPrivileges = 0x3;
constexpr int writeAttempts = 2;

} // namespace

OResult GenicamDevice::begin(Session &session, StreamUse use)
{
    const CameraLink::Turn turn = link_->turnUnlessGone();
    if (!turn) {
        return ORVALIS_ERROR_CONNECTION_LOST;
    }
    gige_.apply(link_->device());
    StreamCounters &counters = use == StreamUse::Continuous ? counters_ : grabCounters_;
    auto started = std::make_unique<StreamSession>(*link_, counters, order_);
    const OResult result = started->start(use);
    if (result == ORVALIS_OK) {
        session = std::move(started);
    }
    return result;
}

/// Stops the camera, which takes seconds if it does not answer, and takes the stream down.
void GenicamDevice::end(Session session)
{
    if (const CameraLink::Turn turn = link_->turnUnlessGone()) {
        session->stopCamera();
    }
    session->end();
}

OResult GenicamDevice::startStream()
{
    link_->forgetWake();
    counters_.reset();
    // First of all: buffers are as large as the picture is now, and must not become too small.
    nodes_.setStreaming(true);
    const OResult result = begin(session_, StreamUse::Continuous);
    if (result != ORVALIS_OK) {
        nodes_.setStreaming(false);
        return result;
    }
    since_ = heard_ = Clock::now();
    return ORVALIS_OK;
}

void GenicamDevice::stopStream()
{
    if (session_) {
        end(std::move(session_));
        nodes_.setStreaming(false);
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
            counters_.add(StreamCounters::Delivered);
            since_ = heard_ = Clock::now();
            climbBack();
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
    while (!link_->lost()) {
        if (session.take(image)) {
            return ORVALIS_OK;
        }
        const CameraLink::Event event = link_->waitForBuffer(deadline);
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
    if (const OResult result = lookForLife(); result != ORVALIS_OK) {
        return result;
    }
    heard_ = Clock::now();
    return isWrongWay() ? startAgain() : ORVALIS_OK;
}

/// True if there is evidence that packets get lost, and a safer setting; or if the last start
/// failed. That nothing comes is no evidence: the camera may expose, or wait for a trigger.
bool GenicamDevice::isWrongWay()
{
    if (!session_->isRunning()) {
        return true;
    }
    if (session_->isDeaf()) {
        return gige_.retreat(GigeWay::Evidence::DeafSocket);
    }
    return session_->damagedInARow() >= damagedLimit && Clock::now() >= since_ + damagedPatience &&
           gige_.retreat(GigeWay::Evidence::Damage);
}

/// With each image: back to the best setting if packets have not been lost for long.
void GenicamDevice::climbBack()
{
    if (session_->imageFollowsDamage()) {
        gige_.damaged();
    } else if (gige_.climb()) {
        startAgain(); // if that fails it is tried again after a while without an image
    }
}

OResult GenicamDevice::lookForLife()
{
    const CameraLink::Turn turn = link_->turnUnlessGone();
    return turn && hasControl() ? ORVALIS_OK : ORVALIS_ERROR_CONNECTION_LOST;
}

/// Whether a GigE Vision camera is there and still ours; lost if not. Whoever takes a camera over
/// has the same privilege, but only the present controller may write the register. Some cameras
/// refuse that to others, some do not answer: twice, while they answer what is read, is no
/// accident.
bool GenicamDevice::hasControl()
{
    ArvDevice *device = link_->device();
    if (!ARV_IS_GV_DEVICE(device)) {
        return true;
    }
    Failure failure;
    guint32 privilege = 0;
    arv_device_read_register(device, privilegeRegister, &privilege, failure.slot());
    if (failure) {
        return link_->resultOf(failure) != ORVALIS_ERROR_CONNECTION_LOST;
    }
    OResult result =
        (privilege & controlPrivileges) != 0 ? ORVALIS_ERROR_TIMEOUT : ORVALIS_ERROR_ACCESS_DENIED;
    for (int chance = 0; chance < writeAttempts && result == ORVALIS_ERROR_TIMEOUT; ++chance) {
        arv_device_write_register(device, privilegeRegister, privilege, failure.slot());
        result = link_->resultOf(failure);
    }
    if (result != ORVALIS_ERROR_ACCESS_DENIED && result != ORVALIS_ERROR_TIMEOUT) {
        return !link_->lost();
    }
    link_->markLost("this program does not control it any more");
    return false;
}

/// Ends the stream and starts it again the way that gige_ has chosen.
OResult GenicamDevice::startAgain()
{
    since_ = Clock::now();
    {
        const CameraLink::Turn turn = link_->turn();
        if (!turn) {
            return ORVALIS_ERROR_CONNECTION_LOST;
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
    Session session;
    if (const OResult result = begin(session, StreamUse::OneImage); result != ORVALIS_OK) {
        return result;
    }
    const OResult result = waitForImage(*session, image, deadline);
    if (result == ORVALIS_ERROR_TIMEOUT) {
        lookForLife();
    }
    end(std::move(session));
    return result;
}

} // namespace orvalis
