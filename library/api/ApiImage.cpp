// SPDX-License-Identifier: MIT
// Entry points: region, pixel format, frame rate, white balance, user sets.
#include "library/api/ApiCall.h"

using namespace orvalis;
using namespace orvalis::api;

std::int32_t OrvalisGetSizeInfo(OCameraHandle handle, OSizeInfo *size)
{
    return reading(
        handle, size, [&](Camera &camera) { return camera.features().getRegion(*size); });
}

std::int32_t OrvalisSetSizeInfo(OCameraHandle handle, OSizeInfo size)
{
    return writing(
        handle, true, [&](Camera &camera) { return camera.features().setRegion(size); });
}

std::int32_t OrvalisGetPixelFormatStr(OCameraHandle handle, char *name)
{
    return presentName(handle, Choice::PixelFormat, name);
}

std::int32_t OrvalisSetPixelFormatStr(OCameraHandle handle, const char *name)
{
    return choose(handle, Choice::PixelFormat, name);
}

std::int32_t OrvalisGetNumAvailablePixelFormats(OCameraHandle handle, std::int32_t *count)
{
    return countOf(handle, Choice::PixelFormat, count);
}

std::int32_t OrvalisGetAvailablePixelFormatsIdxToStr(OCameraHandle handle, std::int32_t index,
                                                     char *name)
{
    return nameAt(handle, Choice::PixelFormat, index, name);
}

std::int32_t OrvalisGetFrameRate(OCameraHandle handle, float *rate)
{
    return getFloat(handle, Number::FrameRate, rate);
}

std::int32_t OrvalisGetFrameRateMinMax(OCameraHandle handle, float *minimum, float *maximum)
{
    return getBounds(handle, Number::FrameRate, minimum, maximum);
}

std::int32_t OrvalisSetFrameRate(OCameraHandle handle, float rate)
{
    return setNumber(handle, Number::FrameRate, static_cast<double>(rate));
}

std::int32_t OrvalisGetNumAvailableWhiteBalances(OCameraHandle handle, std::int32_t *count)
{
    return countOf(handle, Choice::WhiteBalance, count);
}

std::int32_t OrvalisGetAvailableWhiteBalancesIdxToStr(OCameraHandle handle, std::int32_t index,
                                                      char *name)
{
    return nameAt(handle, Choice::WhiteBalance, index, name);
}

std::int32_t OrvalisGetWhiteBalanceStr(OCameraHandle handle, char *name)
{
    return presentName(handle, Choice::WhiteBalance, name);
}

std::int32_t OrvalisSetWhiteBalanceStr(OCameraHandle handle, const char *name)
{
    return choose(handle, Choice::WhiteBalance, name);
}

std::int32_t OrvalisSetUserDefault(OCameraHandle handle)
{
    return writing(
        handle, true, [](Camera &camera) { return camera.loadDefaults(); });
}
