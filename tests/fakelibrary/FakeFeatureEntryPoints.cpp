// SPDX-License-Identifier: MIT
// Entry points of the recording camera library: the families of numbers, switches and lists.
#include "tests/fakelibrary/FakeLibrary.h"

#include <algorithm>

using fakeorvalis::Call;
using fakeorvalis::State;

namespace {

using Result = std::int32_t;

/// Calls `use` with the entry of `features` named `name`; answers "not supported" if there is none.
template <typename Feature, typename Use>
Result withFeature(std::map<std::string, Feature> &features, const char *name, const Use &use)
{
    const auto found = features.find(name);
    if (found == features.end())
        return ORVALIS_ERROR_NOT_SUPPORTED;
    return use(found->second);
}

auto &featuresOf(State &state, const std::int32_t *) { return state.integers; }
auto &featuresOf(State &state, const std::uint32_t *) { return state.integers; }
auto &featuresOf(State &state, const float *) { return state.floats; }

template <typename Value>
Result getNumber(Call &&call, const char *name, Value *value, bool *automatic = nullptr)
{
    return call.answer([=](State &state) {
        return withFeature(featuresOf(state, value), name, [=](const auto &feature) -> Result {
            *value = static_cast<Value>(feature.value);
            if constexpr (!std::is_same_v<Value, float>) {
                if (automatic)
                    *automatic = feature.automatic;
            }
            return ORVALIS_OK;
        });
    });
}

template <typename Value>
Result getBounds(Call &&call, const char *name, Value *minimum, Value *maximum)
{
    return call.out(minimum).out(maximum).answer([=](State &state) {
        return withFeature(featuresOf(state, minimum), name, [=](const auto &feature) -> Result {
            *minimum = static_cast<Value>(feature.minimum);
            *maximum = static_cast<Value>(feature.maximum);
            return ORVALIS_OK;
        });
    });
}

template <typename Value> Result setNumber(Call &&call, const char *name, Value value)
{
    return call.in(value).answer([=](State &state) {
        return withFeature(featuresOf(state, &value), name, [=](auto &feature) -> Result {
            // Compare bounds in the caller's type: 0.1f does not exceed a maximum of 0.1.
            if (!(value >= static_cast<Value>(feature.minimum) &&
                  value <= static_cast<Value>(feature.maximum)))
                return ORVALIS_ERROR_OUT_OF_RANGE;
            feature.value = value;
            return ORVALIS_OK;
        });
    });
}

template <typename Value>
Result setAutomatic(Call &&call, const char *name, Value value, bool automatic)
{
    return call.in(value).in(automatic).answer([=](State &state) {
        return withFeature(state.integers, name, [=](auto &feature) -> Result {
            if (!automatic && (value < feature.minimum || value > feature.maximum))
                return ORVALIS_ERROR_OUT_OF_RANGE;
            feature.automatic = automatic;
            if (!automatic)
                feature.value = value;
            return ORVALIS_OK;
        });
    });
}

Result getSwitch(Call &&call, const char *name, bool *on)
{
    return call.out(on).answer([=](State &state) {
        return withFeature(state.switches, name, [=](bool value) -> Result {
            *on = value;
            return ORVALIS_OK;
        });
    });
}

Result setSwitch(Call &&call, const char *name, bool on)
{
    return call.in(on).answer([=](State &state) {
        return withFeature(state.switches, name, [=](bool &value) -> Result {
            value = on;
            return ORVALIS_OK;
        });
    });
}

Result countEntries(Call &&call, const char *name, std::int32_t *count)
{
    return call.out(count).answer([=](State &state) {
        return withFeature(state.lists, name, [=](const auto &list) -> Result {
            *count = static_cast<std::int32_t>(list.entries.size());
            return ORVALIS_OK;
        });
    });
}

Result entryAt(Call &&call, const char *name, std::int32_t index, char *text)
{
    return call.in(index).textOut(text, ORVALIS_NAME_SIZE).answer([=](State &state) {
        return withFeature(state.lists, name, [=](const auto &list) -> Result {
            if (index < 0 || static_cast<std::size_t>(index) >= list.entries.size())
                return ORVALIS_ERROR_NOT_FOUND;
            fakeorvalis::putText(text, ORVALIS_NAME_SIZE,
                                 list.entries[static_cast<std::size_t>(index)]);
            return ORVALIS_OK;
        });
    });
}

Result currentEntry(Call &&call, const char *name, char *text)
{
    return call.textOut(text, ORVALIS_NAME_SIZE).answer([=](State &state) {
        return withFeature(state.lists, name, [=](const auto &list) -> Result {
            fakeorvalis::putText(text, ORVALIS_NAME_SIZE, list.current);
            return ORVALIS_OK;
        });
    });
}

/// Keeps the code returned by OrvalisGetCamInfo() in step with the name.
void followPixelFormat(State &state)
{
    static const std::map<std::string, std::uint32_t> codes{
        {"Mono8", 0x01080001},     {"Mono12", 0x01100005}, {"BayerGR8", 0x01080008},
        {"BayerGR12", 0x01100010}, {"RGB8", 0x02180014},   {"YUV422_8", 0x02100032}};
    const auto found = codes.find(state.lists["PixelFormat"].current);
    if (found != codes.end())
        state.info.pixelFormat = state.info.sensorPixelFormat = found->second;
}

Result chooseEntry(Call &&call, const std::string &name, const char *entry)
{
    return call.in(entry).answer([=](State &state) {
        return withFeature(state.lists, name.c_str(), [&](auto &list) -> Result {
            if (std::find(list.entries.begin(), list.entries.end(), entry) == list.entries.end())
                return ORVALIS_ERROR_NOT_FOUND;
            list.current = entry;
            if (name == "PixelFormat")
                followPixelFormat(state);
            return ORVALIS_OK;
        });
    });
}

} // namespace

// Each macro defines the entry points of one family; the feature's name is its key in the state.
#define FAKE_CALL(function) Call(#function).handle(handle)

#define FAKE_VALUE(name, Value)                                                                    \
    int32_t OrvalisGet##name(OCameraHandle handle, Value *value)                                   \
    {                                                                                              \
        return getNumber(std::move(FAKE_CALL(OrvalisGet##name).out(value)), #name, value);         \
    }                                                                                              \
    int32_t OrvalisSet##name(OCameraHandle handle, Value value)                                    \
    {                                                                                              \
        return setNumber(std::move(FAKE_CALL(OrvalisSet##name)), #name, value);                    \
    }

#define FAKE_BOUNDS(name, Value)                                                                   \
    int32_t OrvalisGet##name##MinMax(OCameraHandle handle, Value *minimum, Value *maximum)         \
    {                                                                                              \
        return getBounds(std::move(FAKE_CALL(OrvalisGet##name##MinMax)), #name, minimum, maximum); \
    }

#define FAKE_AUTOMATIC_VALUE(name, Value)                                                          \
    int32_t OrvalisGet##name(OCameraHandle handle, Value *value, bool *automatic)                  \
    {                                                                                              \
        return getNumber(std::move(FAKE_CALL(OrvalisGet##name).out(value).out(automatic)), #name,  \
                         value, automatic);                                                        \
    }                                                                                              \
    int32_t OrvalisSet##name(OCameraHandle handle, Value value, bool automatic)                    \
    {                                                                                              \
        return setAutomatic(std::move(FAKE_CALL(OrvalisSet##name)), #name, value, automatic);      \
    }                                                                                              \
    FAKE_BOUNDS(name, Value)

#define FAKE_BOUNDED_VALUE(name, Value)                                                            \
    FAKE_VALUE(name, Value)                                                                        \
    FAKE_BOUNDS(name, Value)

#define FAKE_SWITCH(name)                                                                          \
    int32_t OrvalisGet##name(OCameraHandle handle, bool *enable)                                   \
    {                                                                                              \
        return getSwitch(std::move(FAKE_CALL(OrvalisGet##name)), #name, enable);                   \
    }                                                                                              \
    int32_t OrvalisSet##name(OCameraHandle handle, bool enable)                                    \
    {                                                                                              \
        return setSwitch(std::move(FAKE_CALL(OrvalisSet##name)), #name, enable);                   \
    }

#define FAKE_ENTRIES(feature, plural)                                                              \
    int32_t OrvalisGetNumAvailable##plural(OCameraHandle handle, int32_t *count)                   \
    {                                                                                              \
        return countEntries(std::move(FAKE_CALL(OrvalisGetNumAvailable##plural)), #feature,        \
                            count);                                                                \
    }                                                                                              \
    int32_t OrvalisGetAvailable##plural##IdxToStr(OCameraHandle handle, int32_t index, char *name) \
    {                                                                                              \
        return entryAt(std::move(FAKE_CALL(OrvalisGetAvailable##plural##IdxToStr)), #feature,      \
                       index, name);                                                               \
    }

#define FAKE_CHOICE(feature)                                                                       \
    int32_t OrvalisGet##feature##Str(OCameraHandle handle, char *name)                             \
    {                                                                                              \
        return currentEntry(std::move(FAKE_CALL(OrvalisGet##feature##Str)), #feature, name);       \
    }                                                                                              \
    int32_t OrvalisSet##feature##Str(OCameraHandle handle, const char *name)                       \
    {                                                                                              \
        return chooseEntry(std::move(FAKE_CALL(OrvalisSet##feature##Str)), #feature, name);        \
    }

FAKE_AUTOMATIC_VALUE(Gain, int32_t)
FAKE_AUTOMATIC_VALUE(Shutter, uint32_t)
FAKE_BOUNDED_VALUE(AutoExposure, int32_t)
FAKE_BOUNDED_VALUE(BlackLevel, int32_t)
FAKE_BOUNDED_VALUE(Gamma, float)
FAKE_BOUNDED_VALUE(Contrast, int32_t)
FAKE_BOUNDED_VALUE(Hue, int32_t)
FAKE_BOUNDED_VALUE(Saturation, int32_t)
FAKE_BOUNDED_VALUE(Sharpness, int32_t)
FAKE_BOUNDED_VALUE(RGain, int32_t)
FAKE_BOUNDED_VALUE(GGain, int32_t)
FAKE_BOUNDED_VALUE(BGain, int32_t)
FAKE_BOUNDED_VALUE(FrameRate, float)
FAKE_VALUE(TriggerParameter, int32_t)
FAKE_VALUE(TriggerDelay, int32_t)
FAKE_VALUE(TriggerNoiseFilter, int32_t)
FAKE_VALUE(StrobeDelay, int32_t)
FAKE_VALUE(StrobeDuration, int32_t)

FAKE_SWITCH(TriggerEnable)
FAKE_SWITCH(StrobeEnable)

FAKE_CHOICE(PixelFormat)
FAKE_CHOICE(WhiteBalance)
FAKE_CHOICE(TriggerMode)
FAKE_CHOICE(TriggerSource)
FAKE_CHOICE(TriggerPolarity)
FAKE_CHOICE(StrobeMode)
FAKE_CHOICE(StrobePolarity)

FAKE_ENTRIES(PixelFormat, PixelFormats)
FAKE_ENTRIES(WhiteBalance, WhiteBalances)
FAKE_ENTRIES(TriggerMode, TriggerModes)
FAKE_ENTRIES(TriggerSource, TriggerSources)
FAKE_ENTRIES(TriggerPolarity, TriggerPolaritys)
FAKE_ENTRIES(StrobeMode, StrobeModes)
FAKE_ENTRIES(StrobePolarity, StrobePolaritys)
