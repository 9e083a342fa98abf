// SPDX-License-Identifier: MIT
// Entry points: image features.
#include "library/api/ApiCall.h"

using namespace orvalis;
using namespace orvalis::api;

std::int32_t OrvalisGetGain(OCameraHandle handle, std::int32_t *value, bool *automatic)
{
    return readNumber(
        handle, Number::Gain, NumberPart::Value, value && automatic,
        [&](const NumberValue &now) {
            *value = toInt32(now.value);
            *automatic = now.automatic;
        });
}

std::int32_t OrvalisGetGainMinMax(OCameraHandle handle, std::int32_t *minimum,
                                  std::int32_t *maximum)
{
    return getBounds(handle, Number::Gain, minimum, maximum);
}

std::int32_t OrvalisSetGain(OCameraHandle handle, std::int32_t value, bool automatic)
{
    return setNumber(handle, Number::Gain, value, automatic);
}

std::int32_t OrvalisGetShutter(OCameraHandle handle, std::uint32_t *value, bool *automatic)
{
    return readNumber(
        handle, Number::Shutter, NumberPart::Value, value && automatic,
        [&](const NumberValue &now) {
            *value = toUint32(now.value);
            *automatic = now.automatic;
        });
}

std::int32_t OrvalisGetShutterMinMax(OCameraHandle handle, std::uint32_t *minimum,
                                     std::uint32_t *maximum)
{
    return readNumber(
        handle, Number::Shutter, NumberPart::Bounds, minimum && maximum,
        [&](const NumberValue &now) {
            *minimum = toUint32(now.minimum);
            *maximum = toUint32(now.maximum);
        });
}

std::int32_t OrvalisSetShutter(OCameraHandle handle, std::uint32_t value, bool automatic)
{
    return setNumber(handle, Number::Shutter, value, automatic);
}

std::int32_t OrvalisGetGamma(OCameraHandle handle, float *value)
{
    return getFloat(handle, Number::Gamma, value);
}

std::int32_t OrvalisGetGammaMinMax(OCameraHandle handle, float *minimum, float *maximum)
{
    return getBounds(handle, Number::Gamma, minimum, maximum);
}

std::int32_t OrvalisSetGamma(OCameraHandle handle, float value)
{
    return setNumber(handle, Number::Gamma, static_cast<double>(value));
}

std::int32_t OrvalisGetAutoExposure(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::AutoExposure, value);
}

std::int32_t OrvalisGetAutoExposureMinMax(OCameraHandle handle, std::int32_t *minimum,
                                          std::int32_t *maximum)
{
    return getBounds(handle, Number::AutoExposure, minimum, maximum);
}

std::int32_t OrvalisSetAutoExposure(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::AutoExposure, value);
}

std::int32_t OrvalisGetBlackLevel(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::BlackLevel, value);
}

std::int32_t OrvalisGetBlackLevelMinMax(OCameraHandle handle, std::int32_t *minimum,
                                        std::int32_t *maximum)
{
    return getBounds(handle, Number::BlackLevel, minimum, maximum);
}

std::int32_t OrvalisSetBlackLevel(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::BlackLevel, value);
}

std::int32_t OrvalisGetContrast(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::Contrast, value);
}

std::int32_t OrvalisGetContrastMinMax(OCameraHandle handle, std::int32_t *minimum,
                                      std::int32_t *maximum)
{
    return getBounds(handle, Number::Contrast, minimum, maximum);
}

std::int32_t OrvalisSetContrast(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::Contrast, value);
}

std::int32_t OrvalisGetHue(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::Hue, value);
}

std::int32_t OrvalisGetHueMinMax(OCameraHandle handle, std::int32_t *minimum, std::int32_t *maximum)
{
    return getBounds(handle, Number::Hue, minimum, maximum);
}

std::int32_t OrvalisSetHue(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::Hue, value);
}

std::int32_t OrvalisGetSaturation(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::Saturation, value);
}

std::int32_t OrvalisGetSaturationMinMax(OCameraHandle handle, std::int32_t *minimum,
                                        std::int32_t *maximum)
{
    return getBounds(handle, Number::Saturation, minimum, maximum);
}

std::int32_t OrvalisSetSaturation(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::Saturation, value);
}

std::int32_t OrvalisGetSharpness(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::Sharpness, value);
}

std::int32_t OrvalisGetSharpnessMinMax(OCameraHandle handle, std::int32_t *minimum,
                                       std::int32_t *maximum)
{
    return getBounds(handle, Number::Sharpness, minimum, maximum);
}

std::int32_t OrvalisSetSharpness(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::Sharpness, value);
}

std::int32_t OrvalisGetRGain(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::RedGain, value);
}

std::int32_t OrvalisGetRGainMinMax(OCameraHandle handle, std::int32_t *minimum,
                                   std::int32_t *maximum)
{
    return getBounds(handle, Number::RedGain, minimum, maximum);
}

std::int32_t OrvalisSetRGain(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::RedGain, value);
}

std::int32_t OrvalisGetGGain(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::GreenGain, value);
}

std::int32_t OrvalisGetGGainMinMax(OCameraHandle handle, std::int32_t *minimum,
                                   std::int32_t *maximum)
{
    return getBounds(handle, Number::GreenGain, minimum, maximum);
}

std::int32_t OrvalisSetGGain(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::GreenGain, value);
}

std::int32_t OrvalisGetBGain(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::BlueGain, value);
}

std::int32_t OrvalisGetBGainMinMax(OCameraHandle handle, std::int32_t *minimum,
                                   std::int32_t *maximum)
{
    return getBounds(handle, Number::BlueGain, minimum, maximum);
}

std::int32_t OrvalisSetBGain(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::BlueGain, value);
}
