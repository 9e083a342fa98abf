// SPDX-License-Identifier: MIT
// Entry points of the recording camera library: cameras, streams, grabs, region, registers.
#include "tests/fakelibrary/FakeLibrary.h"

#include <algorithm>
#include <cstring>

using fakeorvalis::Call;
using fakeorvalis::Handle;
using fakeorvalis::Library;
using fakeorvalis::putText;
using fakeorvalis::State;

namespace {

using Lock = std::unique_lock<std::mutex>;

/// The hostile mode may refuse a call that otherwise has its real effect.
bool refusedAtRandom(Library &fake, const char *function)
{
    return fake.isHostile(function) && fake.hostile->chance(25);
}

bool isInUse(const Library &fake, const std::string &cameraId)
{
    return std::any_of(fake.handles.begin(), fake.handles.end(), [&](const Handle &handle) {
        return handle.open && handle.cameraId == cameraId;
    });
}

bool isOnBus(const Library &fake, const std::string &cameraId)
{
    const auto &cameras = fake.state.cameras;
    return fake.hostile || std::any_of(cameras.begin(), cameras.end(),
                                       [&](const auto &camera) { return camera.id == cameraId; });
}

/// An answer that calls `access` with the register's word, if there is such a register.
template <typename Access> auto atRegister(std::uint32_t address, Access access)
{
    return [address, access](State &state) -> std::int32_t {
        if (address % 4 != 0)
            return ORVALIS_ERROR_BAD_ARGUMENT;
        const auto found = state.registers.find(address);
        if (found == state.registers.end())
            return ORVALIS_ERROR_NOT_FOUND;
        access(found->second);
        return ORVALIS_OK;
    };
}

/// Handles are numbers that are never reused, not even after a reset.
OCameraHandle nextHandle()
{
    static std::uintptr_t last = 0x10000;
    last += 0x10;
    return reinterpret_cast<OCameraHandle>(last); // NOLINT(performance-no-int-to-ptr)
}

std::int32_t openCamera(Library &fake, const std::string &cameraId, OCameraHandle *handle)
{
    if (refusedAtRandom(fake, "OrvalisOpenCamera"))
        return ORVALIS_ERROR_DEVICE;
    if (!isOnBus(fake, cameraId))
        return ORVALIS_ERROR_NOT_FOUND;
    if (!fake.hostile && isInUse(fake, cameraId))
        return ORVALIS_ERROR_BUSY;
    *handle = nextHandle();
    fake.handles.push_back({*handle, cameraId, true});
    return ORVALIS_OK;
}

std::int32_t cameraText(const char *function, std::uint32_t index, char *text,
                        std::string fakeorvalis::Camera::*member)
{
    return Call(function).in(index).textOut(text, ORVALIS_NAME_SIZE).answer([=](State &state) {
        if (index >= state.cameras.size())
            return std::int32_t{ORVALIS_ERROR_NOT_FOUND};
        putText(text, ORVALIS_NAME_SIZE, state.cameras[index].*member);
        return std::int32_t{ORVALIS_OK};
    });
}

/// Copies `pixels` to the first `size` bytes of a plane and fills missing ones with 128.
void putPixels(std::uint8_t *plane, std::size_t size, const std::vector<std::uint8_t> &pixels)
{
    const std::size_t copied = std::min(size, pixels.size());
    std::copy_n(pixels.begin(), copied, plane);
    std::fill(plane + copied, plane + size, std::uint8_t{128});
}

std::int32_t grab(Library &fake, OImageFrame *frame, std::uint8_t *plane, std::uint32_t bits,
                  const std::vector<std::uint8_t> &pixels)
{
    if (!plane)
        return ORVALIS_ERROR_BAD_ARGUMENT;
    frame->width = static_cast<std::uint32_t>(fake.state.size.width);
    frame->height = static_cast<std::uint32_t>(fake.state.size.height);
    frame->bitsPerPixel = bits;
    frame->rawSize = frame->width * frame->height * bits / 8;
    putPixels(plane, frame->rawSize, pixels);
    return ORVALIS_OK;
}

/// Clamps the sizes, then the offsets, so that the region lies on the sensor.
void takeRegion(OSizeInfo &size, const OSizeInfo &wanted)
{
    size.width = std::clamp(wanted.width, 1, std::max(1, size.maxWidth));
    size.height = std::clamp(wanted.height, 1, std::max(1, size.maxHeight));
    size.offsetX = std::clamp(wanted.offsetX, 0, std::max(0, size.maxWidth - size.width));
    size.offsetY = std::clamp(wanted.offsetY, 0, std::max(0, size.maxHeight - size.height));
}

} // namespace

int32_t OrvalisInit(void)
{
    return Call("OrvalisInit").honest().answer([](State &) { return ORVALIS_OK; });
}

int32_t OrvalisUninit(void)
{
    return Call("OrvalisUninit").honest().answer([](State &) { return ORVALIS_OK; });
}

int32_t OrvalisNumberOfCameras(uint32_t *count)
{
    return Call("OrvalisNumberOfCameras").out(count).answer([=](State &state) {
        *count = static_cast<std::uint32_t>(state.cameras.size());
        return ORVALIS_OK;
    });
}

int32_t OrvalisGetDisplayName(uint32_t index, char *name)
{
    return cameraText("OrvalisGetDisplayName", index, name, &fakeorvalis::Camera::displayName);
}

int32_t OrvalisGetCameraID(uint32_t index, char *cameraId)
{
    return cameraText("OrvalisGetCameraID", index, cameraId, &fakeorvalis::Camera::id);
}

int32_t OrvalisOpenCamera(const char *cameraId, OCameraHandle *handle)
{
    if (!handle)
        return ORVALIS_ERROR_BAD_ARGUMENT;
    return Call("OrvalisOpenCamera").in(cameraId).honest().answerWith([=](Library &fake, Lock &) {
        return openCamera(fake, cameraId, handle);
    });
}

int32_t OrvalisCloseCamera(OCameraHandle handle)
{
    return Call("OrvalisCloseCamera")
        .handle(handle)
        .honest()
        .answerWith([=](Library &fake, Lock &lock) {
            fake.stop(lock, handle);
            if (Handle *known = fake.find(handle)) // a reset may have removed it meanwhile
                known->open = false;
            return ORVALIS_OK;
        });
}

int32_t OrvalisCameraReset(OCameraHandle handle)
{
    return Call("OrvalisCameraReset").handle(handle).answer([](State &) { return ORVALIS_OK; });
}

int32_t OrvalisGetCamInfo(OCameraHandle handle, OCameraInfo *info)
{
    return Call("OrvalisGetCamInfo").handle(handle).out(info).answer([=](State &state) {
        *info = state.info;
        return ORVALIS_OK;
    });
}

int32_t OrvalisSetBayerConversion(OCameraHandle handle, int32_t enable)
{
    return Call("OrvalisSetBayerConversion").handle(handle).in(enable).answer([](State &) {
        return ORVALIS_OK;
    });
}

int32_t OrvalisStartAcquisition(OCameraHandle handle, OFrameCallback callback)
{
    return Call("OrvalisStartAcquisition")
        .handle(handle)
        .in(callback)
        .honest()
        .answerWith([=](Library &fake, Lock &) -> std::int32_t {
            if (!callback)
                return ORVALIS_ERROR_BAD_ARGUMENT;
            if (fake.streaming)
                return ORVALIS_ERROR_BUSY;
            if (refusedAtRandom(fake, "OrvalisStartAcquisition"))
                return ORVALIS_ERROR_DEVICE;
            fake.streaming = handle;
            fake.callback = callback;
            return ORVALIS_OK;
        });
}

int32_t OrvalisStopAcquisition(OCameraHandle handle)
{
    return Call("OrvalisStopAcquisition")
        .handle(handle)
        .honest()
        .answerWith([=](Library &fake, Lock &lock) {
            fake.stop(lock, handle);
            return fake.isHostile("OrvalisStopAcquisition") ? fake.hostile->result() : ORVALIS_OK;
        });
}

int32_t OrvalisGrabRGBData(OCameraHandle handle, OImageFrame *frame, uint32_t timeoutMs)
{
    return Call("OrvalisGrabRGBData")
        .handle(handle)
        .out(frame)
        .in(timeoutMs)
        .answerWith(
            [=](Library &fake, Lock &) { return grab(fake, frame, frame->rgb, 24, fake.grabRgb); });
}

int32_t OrvalisGrabRAWData(OCameraHandle handle, OImageFrame *frame, uint32_t timeoutMs)
{
    return Call("OrvalisGrabRAWData")
        .handle(handle)
        .out(frame)
        .in(timeoutMs)
        .answerWith([=](Library &fake, Lock &) {
            const std::string &format = fake.state.lists["PixelFormat"].current;
            const bool deep = format.find("12") != std::string::npos;
            return grab(fake, frame, frame->raw, deep ? 16 : 8, fake.grabRaw);
        });
}

int32_t OrvalisGetSizeInfo(OCameraHandle handle, OSizeInfo *size)
{
    return Call("OrvalisGetSizeInfo").handle(handle).out(size).answer([=](State &state) {
        *size = state.size;
        return ORVALIS_OK;
    });
}

int32_t OrvalisSetSizeInfo(OCameraHandle handle, OSizeInfo size)
{
    return Call("OrvalisSetSizeInfo").handle(handle).in(size).answer([=](State &state) {
        takeRegion(state.size, size);
        return ORVALIS_OK;
    });
}

int32_t OrvalisRunSoftwareTrigger(OCameraHandle handle)
{
    return Call("OrvalisRunSoftwareTrigger").handle(handle).answer([](State &) {
        return ORVALIS_OK;
    });
}

int32_t OrvalisSetUserDefault(OCameraHandle handle)
{
    return Call("OrvalisSetUserDefault").handle(handle).answer([](State &) { return ORVALIS_OK; });
}

int32_t OrvalisReadRegister(OCameraHandle handle, uint32_t address, uint32_t *data)
{
    return Call("OrvalisReadRegister")
        .handle(handle)
        .in(address)
        .out(data)
        .answer(atRegister(address, [data](std::uint32_t &word) { *data = word; }));
}

int32_t OrvalisWriteRegiser(OCameraHandle handle, uint32_t address, uint32_t data)
{
    return Call("OrvalisWriteRegiser")
        .handle(handle)
        .in(address)
        .in(data)
        .answer(atRegister(address, [data](std::uint32_t &word) { word = data; }));
}
