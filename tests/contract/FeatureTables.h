// SPDX-License-Identifier: MIT
// Typed features, grouped by the kind of their entry points.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstdint>
#include <ostream>

namespace contract {

using GetInteger = std::int32_t (*)(OCameraHandle, std::int32_t *);
using GetBounds = std::int32_t (*)(OCameraHandle, std::int32_t *, std::int32_t *);
using SetInteger = std::int32_t (*)(OCameraHandle, std::int32_t);
using GetName = std::int32_t (*)(OCameraHandle, char *);
using SetName = std::int32_t (*)(OCameraHandle, const char *);
using NameAt = std::int32_t (*)(OCameraHandle, std::int32_t, char *);

inline std::int32_t getGain(OCameraHandle handle, std::int32_t *value)
{
    bool automatic = false;
    return OrvalisGetGain(handle, value, &automatic);
}

inline std::int32_t setGain(OCameraHandle handle, std::int32_t value)
{
    return OrvalisSetGain(handle, value, false);
}

struct IntegerFeature {
    const char *name;
    GetInteger get;
    GetBounds bounds;
    SetInteger set;
};

inline constexpr IntegerFeature kIntegers[] = {
    {"Gain", getGain, OrvalisGetGainMinMax, setGain},
    {"AutoExposure", OrvalisGetAutoExposure, OrvalisGetAutoExposureMinMax, OrvalisSetAutoExposure},
    {"BlackLevel", OrvalisGetBlackLevel, OrvalisGetBlackLevelMinMax, OrvalisSetBlackLevel},
    {"Contrast", OrvalisGetContrast, OrvalisGetContrastMinMax, OrvalisSetContrast},
    {"Hue", OrvalisGetHue, OrvalisGetHueMinMax, OrvalisSetHue},
    {"Saturation", OrvalisGetSaturation, OrvalisGetSaturationMinMax, OrvalisSetSaturation},
    {"Sharpness", OrvalisGetSharpness, OrvalisGetSharpnessMinMax, OrvalisSetSharpness},
    {"RGain", OrvalisGetRGain, OrvalisGetRGainMinMax, OrvalisSetRGain},
    {"GGain", OrvalisGetGGain, OrvalisGetGGainMinMax, OrvalisSetGGain},
    {"BGain", OrvalisGetBGain, OrvalisGetBGainMinMax, OrvalisSetBGain},
};

struct ListFeature {
    const char *name;
    GetInteger count;
    NameAt at;
    GetName get;
    SetName set;
};

inline constexpr ListFeature kLists[] = {
    {"PixelFormat", OrvalisGetNumAvailablePixelFormats, OrvalisGetAvailablePixelFormatsIdxToStr,
     OrvalisGetPixelFormatStr, OrvalisSetPixelFormatStr},
    {"WhiteBalance", OrvalisGetNumAvailableWhiteBalances, OrvalisGetAvailableWhiteBalancesIdxToStr,
     OrvalisGetWhiteBalanceStr, OrvalisSetWhiteBalanceStr},
    {"TriggerMode", OrvalisGetNumAvailableTriggerModes, OrvalisGetAvailableTriggerModesIdxToStr,
     OrvalisGetTriggerModeStr, OrvalisSetTriggerModeStr},
    {"TriggerSource", OrvalisGetNumAvailableTriggerSources,
     OrvalisGetAvailableTriggerSourcesIdxToStr, OrvalisGetTriggerSourceStr,
     OrvalisSetTriggerSourceStr},
    {"TriggerPolarity", OrvalisGetNumAvailableTriggerPolaritys,
     OrvalisGetAvailableTriggerPolaritysIdxToStr, OrvalisGetTriggerPolarityStr,
     OrvalisSetTriggerPolarityStr},
    {"StrobeMode", OrvalisGetNumAvailableStrobeModes, OrvalisGetAvailableStrobeModesIdxToStr,
     OrvalisGetStrobeModeStr, OrvalisSetStrobeModeStr},
    {"StrobePolarity", OrvalisGetNumAvailableStrobePolaritys,
     OrvalisGetAvailableStrobePolaritysIdxToStr, OrvalisGetStrobePolarityStr,
     OrvalisSetStrobePolarityStr},
};

struct NumberFeature {
    const char *name;
    GetInteger get;
    SetInteger set;
};

inline constexpr NumberFeature kNumbers[] = {
    {"TriggerParameter", OrvalisGetTriggerParameter, OrvalisSetTriggerParameter},
    {"TriggerDelay", OrvalisGetTriggerDelay, OrvalisSetTriggerDelay},
    {"TriggerNoiseFilter", OrvalisGetTriggerNoiseFilter, OrvalisSetTriggerNoiseFilter},
    {"StrobeDelay", OrvalisGetStrobeDelay, OrvalisSetStrobeDelay},
    {"StrobeDuration", OrvalisGetStrobeDuration, OrvalisSetStrobeDuration},
};

template <class Feature> void show(const Feature &feature, std::ostream *out)
{
    *out << feature.name;
}
inline void PrintTo(const IntegerFeature &feature, std::ostream *out) { show(feature, out); }
inline void PrintTo(const ListFeature &feature, std::ostream *out) { show(feature, out); }
inline void PrintTo(const NumberFeature &feature, std::ostream *out) { show(feature, out); }

} // namespace contract
