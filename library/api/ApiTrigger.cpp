// SPDX-License-Identifier: MIT
// Entry points: trigger and strobe.
#include "library/api/ApiCall.h"

using namespace orvalis;
using namespace orvalis::api;

std::int32_t OrvalisRunSoftwareTrigger(OCameraHandle handle)
{
    return writing(
        handle, true,
        [](Camera &camera) {
            return camera.features().fireSoftwareTrigger(camera.acquisition().streaming());
        });
}

std::int32_t OrvalisGetTriggerEnable(OCameraHandle handle, bool *enable)
{
    return getSwitch(handle, Switch::TriggerEnable, enable);
}

std::int32_t OrvalisSetTriggerEnable(OCameraHandle handle, bool enable)
{
    return setSwitch(handle, Switch::TriggerEnable, enable);
}

std::int32_t OrvalisGetStrobeEnable(OCameraHandle handle, bool *enable)
{
    return getSwitch(handle, Switch::StrobeEnable, enable);
}

std::int32_t OrvalisSetStrobeEnable(OCameraHandle handle, bool enable)
{
    return setSwitch(handle, Switch::StrobeEnable, enable);
}

std::int32_t OrvalisGetTriggerModeStr(OCameraHandle handle, char *name)
{
    return presentName(handle, Choice::TriggerMode, name);
}

std::int32_t OrvalisSetTriggerModeStr(OCameraHandle handle, const char *name)
{
    return choose(handle, Choice::TriggerMode, name);
}

std::int32_t OrvalisGetNumAvailableTriggerModes(OCameraHandle handle, std::int32_t *count)
{
    return countOf(handle, Choice::TriggerMode, count);
}

std::int32_t OrvalisGetAvailableTriggerModesIdxToStr(OCameraHandle handle, std::int32_t index,
                                                     char *name)
{
    return nameAt(handle, Choice::TriggerMode, index, name);
}

std::int32_t OrvalisGetTriggerSourceStr(OCameraHandle handle, char *name)
{
    return presentName(handle, Choice::TriggerSource, name);
}

std::int32_t OrvalisSetTriggerSourceStr(OCameraHandle handle, const char *name)
{
    return choose(handle, Choice::TriggerSource, name);
}

std::int32_t OrvalisGetNumAvailableTriggerSources(OCameraHandle handle, std::int32_t *count)
{
    return countOf(handle, Choice::TriggerSource, count);
}

std::int32_t OrvalisGetAvailableTriggerSourcesIdxToStr(OCameraHandle handle, std::int32_t index,
                                                       char *name)
{
    return nameAt(handle, Choice::TriggerSource, index, name);
}

std::int32_t OrvalisGetTriggerPolarityStr(OCameraHandle handle, char *name)
{
    return presentName(handle, Choice::TriggerPolarity, name);
}

std::int32_t OrvalisSetTriggerPolarityStr(OCameraHandle handle, const char *name)
{
    return choose(handle, Choice::TriggerPolarity, name);
}

std::int32_t OrvalisGetNumAvailableTriggerPolaritys(OCameraHandle handle, std::int32_t *count)
{
    return countOf(handle, Choice::TriggerPolarity, count);
}

std::int32_t OrvalisGetAvailableTriggerPolaritysIdxToStr(OCameraHandle handle, std::int32_t index,
                                                         char *name)
{
    return nameAt(handle, Choice::TriggerPolarity, index, name);
}

std::int32_t OrvalisGetStrobeModeStr(OCameraHandle handle, char *name)
{
    return presentName(handle, Choice::StrobeMode, name);
}

std::int32_t OrvalisSetStrobeModeStr(OCameraHandle handle, const char *name)
{
    return choose(handle, Choice::StrobeMode, name);
}

std::int32_t OrvalisGetNumAvailableStrobeModes(OCameraHandle handle, std::int32_t *count)
{
    return countOf(handle, Choice::StrobeMode, count);
}

std::int32_t OrvalisGetAvailableStrobeModesIdxToStr(OCameraHandle handle, std::int32_t index,
                                                    char *name)
{
    return nameAt(handle, Choice::StrobeMode, index, name);
}

std::int32_t OrvalisGetStrobePolarityStr(OCameraHandle handle, char *name)
{
    return presentName(handle, Choice::StrobePolarity, name);
}

std::int32_t OrvalisSetStrobePolarityStr(OCameraHandle handle, const char *name)
{
    return choose(handle, Choice::StrobePolarity, name);
}

std::int32_t OrvalisGetNumAvailableStrobePolaritys(OCameraHandle handle, std::int32_t *count)
{
    return countOf(handle, Choice::StrobePolarity, count);
}

std::int32_t OrvalisGetAvailableStrobePolaritysIdxToStr(OCameraHandle handle, std::int32_t index,
                                                        char *name)
{
    return nameAt(handle, Choice::StrobePolarity, index, name);
}

std::int32_t OrvalisGetTriggerParameter(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::TriggerParameter, value);
}

std::int32_t OrvalisSetTriggerParameter(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::TriggerParameter, value);
}

std::int32_t OrvalisGetTriggerDelay(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::TriggerDelay, value);
}

std::int32_t OrvalisSetTriggerDelay(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::TriggerDelay, value);
}

std::int32_t OrvalisGetTriggerNoiseFilter(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::TriggerNoiseFilter, value);
}

std::int32_t OrvalisSetTriggerNoiseFilter(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::TriggerNoiseFilter, value);
}

std::int32_t OrvalisGetStrobeDelay(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::StrobeDelay, value);
}

std::int32_t OrvalisSetStrobeDelay(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::StrobeDelay, value);
}

std::int32_t OrvalisGetStrobeDuration(OCameraHandle handle, std::int32_t *value)
{
    return getInteger(handle, Number::StrobeDuration, value);
}

std::int32_t OrvalisSetStrobeDuration(OCameraHandle handle, std::int32_t value)
{
    return setNumber(handle, Number::StrobeDuration, value);
}
