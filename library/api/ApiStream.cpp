// SPDX-License-Identifier: MIT
// Entry points: streaming and grabs.
#include "library/api/ApiCall.h"

using namespace orvalis;
using namespace orvalis::api;

std::int32_t OrvalisSetBayerConversion(OCameraHandle handle, std::int32_t enable)
{
    return reading(
        handle, true,
        [&](Camera &camera) {
            camera.acquisition().setBayerConversion(enable != 0);
            return ORVALIS_OK;
        });
}

std::int32_t OrvalisStartAcquisition(OCameraHandle handle, OFrameCallback callback)
{
    return reading(
        handle, callback,
        [&](Camera &camera) { return Library::instance().start(camera, callback); });
}

std::int32_t OrvalisStopAcquisition(OCameraHandle handle)
{
    return guarded([&] { return Library::instance().stop(handle); });
}

std::int32_t OrvalisGrabRGBData(OCameraHandle handle, OImageFrame *frame, std::uint32_t timeoutMs)
{
    return reading(
        handle, frame && frame->rgb,
        [&](Camera &camera) { return camera.grabRgb(*frame, timeoutMs); });
}

std::int32_t OrvalisGrabRAWData(OCameraHandle handle, OImageFrame *frame, std::uint32_t timeoutMs)
{
    return reading(
        handle, frame && frame->raw,
        [&](Camera &camera) { return camera.grabRaw(*frame, timeoutMs); });
}
