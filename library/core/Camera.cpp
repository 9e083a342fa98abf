// SPDX-License-Identifier: MIT
// One open camera: its device, features and stream.
#include "library/core/Camera.h"

#include "library/convert/Convert.h"
#include "library/core/Background.h"
#include "library/core/GrabConversion.h"
#include "library/core/Records.h"

#include <algorithm>

namespace orvalis {

namespace {

constexpr std::uint32_t kMono12 = 0x01100005;

/// The pixel format code of delivered frames.
std::uint32_t deliveredCode(const PresentFormat &present)
{
    if (!present.format)
        return present.code;
    if (present.format->isMono() && present.format->depth > 8)
        return kMono12;
    const PixelFormat *delivered = unpackedFormat(*present.format);
    return delivered ? delivered->code : present.code;
}

} // namespace

std::shared_ptr<Camera> Camera::create(std::unique_ptr<Device> device,
                                       std::shared_ptr<const void> bus)
{
    std::unique_ptr<Camera> camera(new Camera(std::move(device), std::move(bus)));
    const auto gone = std::make_shared<std::promise<void>>();
    camera->gone_ = gone->get_future();
    Background::instance().run([served = camera.get(), gone] {
        served->acquisition_.serve();
        delete served;
        gone->set_value();
    });
    return {camera.release(), [](Camera *served) { served->acquisition_.leave(); }};
}

Camera::Camera(std::unique_ptr<Device> device, std::shared_ptr<const void> bus)
    : bus_(std::move(bus)), device_(std::move(device)), features_(device_->nodes(), nodesMutex_),
      acquisition_(*device_, lost_)
{
}

std::string Camera::spelling(std::string_view name)
{
    std::string spelled(name);
    const char *other = otherSpelling(spelled.c_str());
    NodeInfo info;
    if (other && device_->nodes().info(name, info) == ORVALIS_ERROR_NOT_FOUND)
        return other;
    return spelled;
}

OResult Camera::cameraInfo(OCameraInfo &info)
{
    PresentFormat present;
    if (const OResult result = features_.presentFormat(present); result != ORVALIS_OK)
        return result == ORVALIS_ERROR_CONNECTION_LOST ? result : ORVALIS_ERROR_DEVICE;
    const DeviceIdentity &who = identity();
    info = {};
    copyText(info.cameraId, who.id);
    copyText(info.displayName, who.displayName);
    copyText(info.vendor, who.vendor);
    copyText(info.model, who.model);
    copyText(info.serialNumber, who.serialNumber);
    copyText(info.firmware, who.firmware);
    info.sensorPixelFormat = present.code;
    info.pixelFormat = deliveredCode(present);
    return ORVALIS_OK;
}

OResult Camera::start(OFrameCallback callback, std::uint64_t session)
{
    return acquisition_.start(
        callback, session,
        [this]() -> OResult {
            PresentFormat present;
            const OResult result = features_.presentFormat(present);
            if (result == ORVALIS_ERROR_CONNECTION_LOST)
                return result;
            return result == ORVALIS_OK && !present.format ? ORVALIS_ERROR_NOT_SUPPORTED
                                                           : ORVALIS_OK;
        });
}

OResult Camera::reset()
{
    const OResult result = device_->reset();
    if (result == ORVALIS_OK)
        markLost();
    return result;
}

OResult Camera::loadDefaults()
{
    return acquisition_.streaming() ? ORVALIS_ERROR_ACCESS_DENIED : features_.loadDefaults();
}

OResult Camera::grabRgb(OImageFrame &frame, std::uint32_t timeoutMs)
{
    return grab(frame, timeoutMs, writeGrabbedRgb);
}

OResult Camera::grabRaw(OImageFrame &frame, std::uint32_t timeoutMs)
{
    return grab(frame, timeoutMs, writeGrabbedRaw);
}

OResult Camera::grab(OImageFrame &frame, std::uint32_t timeoutMs, Writer write)
{
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    GrabbedImage image;
    if (const OResult result = acquisition_.grab(image, deadline); result != ORVALIS_OK)
        return result;
    // The caller's buffers are as large as the sensor.
    OSizeInfo size{};
    if (const OResult result = features_.getRegion(size); result != ORVALIS_OK)
        return result;
    const auto width = static_cast<std::size_t>(std::max(size.maxWidth, 0));
    const auto height = static_cast<std::size_t>(std::max(size.maxHeight, 0));
    return write(image, width * height, frame);
}

} // namespace orvalis
