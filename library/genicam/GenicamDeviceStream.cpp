// SPDX-License-Identifier: MIT
// One open real camera: its stream, single images, and what to do when no image arrives.
#include "library/genicam/GenicamDevice.h"

#include <algorithm>

namespace orvalis {
namespace {

using namespace std::chrono_literals;

/// After this time without an image, check whether the camera is still there: Aravis itself takes
/// more than seven seconds to notice.
constexpr auto silenceLimit = 500ms;
/// Change to a safer transport after this time without an image, and at least this many damaged
/// frames in a row.
constexpr auto damagedTimeout = 900ms;
constexpr std::uint64_t damagedLimit = 3;
/// The control channel privilege of a GigE Vision camera: every camera has this register and
/// reading it is cheap. One of these bits is set while a program controls the camera.
constexpr std::uint32_t privilegeRegister = 0x0A00;
constexpr guint32 controlPrivileges = 0x3;
constexpr int writeAttempts = 2;

} // namespace

OResult GenicamDevice::begin(Session &session, StreamUse use)
{
    const CameraLink::Lock lock = link_->acquireUnlessGone();
    if (!lock)
        return ORVALIS_ERROR_CONNECTION_LOST;
    gige_.apply(link_->device());
    StreamCounters &counters = use == StreamUse::Continuous ? counters_ : grabCounters_;
    auto started = std::make_unique<StreamSession>(*link_, counters, order_);
    const OResult result = started->start(use);
    if (result == ORVALIS_OK)
        session = std::move(started);
    return result;
}

/// Stops the camera, which takes seconds if it does not answer, and ends the stream.
void GenicamDevice::end(Session session)
{
    if (const CameraLink::Lock lock = link_->acquireUnlessGone())
        session->stopCamera();
    session->end();
}

OResult GenicamDevice::startStream()
{
    link_->clearWake();
    counters_.reset();
    // Lock the size first: buffers are allocated for the present image size.
    nodes_.setStreaming(true);
    const OResult result = begin(session_, StreamUse::Continuous);
    if (result != ORVALIS_OK) {
        nodes_.setStreaming(false);
        return result;
    }
    lastProgress_ = lastContact_ = Clock::now();
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
    if (!session_)
        return ORVALIS_ERROR_ABORTED;
    for (;;) {
        const OResult result =
            waitForImage(*session_, image, std::min(deadline, lastContact_ + silenceLimit));
        if (result != ORVALIS_OK && result != ORVALIS_ERROR_TIMEOUT)
            return result;
        // Check even if there is an image: a process that was suspended may find old images,
        // although the camera was lost meanwhile.
        if (const OResult there = checkSilence(); there != ORVALIS_OK)
            return there;
        if (result == ORVALIS_OK) {
            counters_.add(StreamCounters::Delivered);
            lastProgress_ = lastContact_ = Clock::now();
            restoreTransport();
            return ORVALIS_OK;
        }
        if (Clock::now() >= deadline)
            return ORVALIS_ERROR_TIMEOUT;
    }
}

OResult GenicamDevice::waitForImage(StreamSession &session, RawImage &image,
                                    Clock::time_point deadline)
{
    while (!link_->lost()) {
        if (session.take(image))
            return ORVALIS_OK;
        const CameraLink::Event event = link_->waitForBuffer(deadline);
        if (event == CameraLink::Event::Wake)
            return ORVALIS_ERROR_ABORTED;
        if (event == CameraLink::Event::Timeout)
            return ORVALIS_ERROR_TIMEOUT;
    }
    return ORVALIS_ERROR_CONNECTION_LOST;
}

/// After a time without an image, checks the connection, and restarts the stream if the transport
/// must change.
OResult GenicamDevice::checkSilence()
{
    if (Clock::now() < lastContact_ + silenceLimit)
        return ORVALIS_OK;
    if (const OResult result = checkConnection(); result != ORVALIS_OK)
        return result;
    lastContact_ = Clock::now();
    return mustRestart() ? restart() : ORVALIS_OK;
}

/// True if packets are provably lost and a safer transport is left, or if the last start failed.
/// The absence of frames is not evidence: the camera may be exposing or waiting for a trigger.
bool GenicamDevice::mustRestart()
{
    if (!session_->isRunning())
        return true;
    if (session_->hasSilentSocket())
        return gige_.fallBack(GigeTransport::Evidence::SilentSocket);
    return session_->damagedInARow() >= damagedLimit &&
           Clock::now() >= lastProgress_ + damagedTimeout &&
           gige_.fallBack(GigeTransport::Evidence::Damage);
}

/// Called for each image: returns to the best transport after a grace period without loss.
void GenicamDevice::restoreTransport()
{
    if (session_->imageFollowsDamage())
        gige_.damaged();
    else if (gige_.restore())
        restart(); // after a failure, checkSilence() tries again
}

OResult GenicamDevice::checkConnection()
{
    const CameraLink::Lock lock = link_->acquireUnlessGone();
    return lock && hasControl() ? ORVALIS_OK : ORVALIS_ERROR_CONNECTION_LOST;
}

/// Whether a GigE Vision camera is there and still controlled by this program; marks it lost
/// otherwise. Another program that takes control sets the same privilege bits, but only the
/// controller may write the register. Some cameras reject such a write, some do not answer it: two
/// missing answers while reads are answered are proof.
bool GenicamDevice::hasControl()
{
    ArvDevice *device = link_->device();
    if (!ARV_IS_GV_DEVICE(device))
        return true;
    Failure failure;
    guint32 privilege = 0;
    arv_device_read_register(device, privilegeRegister, &privilege, failure.slot());
    if (failure)
        return link_->resultOf(failure) != ORVALIS_ERROR_CONNECTION_LOST;
    OResult result =
        (privilege & controlPrivileges) != 0 ? ORVALIS_ERROR_TIMEOUT : ORVALIS_ERROR_ACCESS_DENIED;
    for (int attempt = 0; attempt < writeAttempts && result == ORVALIS_ERROR_TIMEOUT; ++attempt) {
        arv_device_write_register(device, privilegeRegister, privilege, failure.slot());
        result = link_->resultOf(failure);
    }
    if (result != ORVALIS_ERROR_ACCESS_DENIED && result != ORVALIS_ERROR_TIMEOUT)
        return !link_->lost();
    link_->markLost("this program no longer controls it");
    return false;
}

/// Ends the stream and starts it again with the transport that gige_ has chosen.
OResult GenicamDevice::restart()
{
    lastProgress_ = Clock::now();
    {
        const CameraLink::Lock lock = link_->acquire();
        if (!lock)
            return ORVALIS_ERROR_CONNECTION_LOST;
        session_->stopCamera();
        session_->end();
    }
    Session next;
    const OResult result = begin(next, StreamUse::Continuous);
    if (result == ORVALIS_OK)
        session_ = std::move(next);
    return result;
}

OResult GenicamDevice::takeImage(RawImage &image, Clock::time_point deadline)
{
    Session session;
    if (const OResult result = begin(session, StreamUse::OneImage); result != ORVALIS_OK)
        return result;
    const OResult result = waitForImage(*session, image, deadline);
    if (result == ORVALIS_ERROR_TIMEOUT)
        checkConnection();
    end(std::move(session));
    return result;
}

} // namespace orvalis
