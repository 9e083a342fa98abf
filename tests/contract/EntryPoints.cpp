// SPDX-License-Identifier: MIT
// All entry points with a handle, called with arguments generated from the signature.
#include "tests/contract/EntryPoints.h"

#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

namespace contract {

namespace {

/// Large enough for any record, and for the planes of any camera's grab.
constexpr std::size_t kRecordBytes = 64 * 1024;
constexpr std::size_t kPlaneBytes = std::size_t{96} << 20;

void ignoreFrame(OImageFrame *) {}

/// Generates arguments one after the other; the n-th pointer is null if requested.
class Arguments {
public:
    explicit Arguments(std::size_t nullPointer) : nullPointer_(nullPointer) {}

    template <class T> T make()
    {
        if constexpr (std::is_same_v<T, OFrameCallback>)
            return isNull() ? nullptr : &ignoreFrame;
        else if constexpr (std::is_same_v<T, const char *>)
            return isNull() ? nullptr : "Width";
        else if constexpr (std::is_same_v<T, OImageFrame *>)
            return isNull() ? nullptr : frame();
        else if constexpr (std::is_pointer_v<T>)
            return isNull() ? nullptr : reinterpret_cast<T>(record());
        else if constexpr (std::is_same_v<T, OSizeInfo>)
            return OSizeInfo{0, 0, 64, 64, 0, 0};
        else if constexpr (std::is_same_v<T, bool>)
            return false;
        else
            return T{4};
    }

private:
    bool isNull() { return pointer_++ == nullPointer_; }

    void *record()
    {
        records_.emplace_back(kRecordBytes / sizeof(std::max_align_t));
        return records_.back().data();
    }

    OImageFrame *frame()
    {
        static thread_local std::vector<std::uint8_t> plane(kPlaneBytes);
        frame_.raw = frame_.rgb = plane.data();
        return &frame_;
    }

    std::size_t nullPointer_;
    std::size_t pointer_ = 0;
    std::vector<std::vector<std::max_align_t>> records_;
    OImageFrame frame_{};
};

template <class... Args>
std::int32_t callIt(std::int32_t (*function)(OCameraHandle, Args...), OCameraHandle handle,
                    std::size_t nullPointer)
{
    Arguments arguments(nullPointer);
    // Braces guarantee evaluation from left to right.
    std::tuple<OCameraHandle, Args...> all{handle, arguments.make<Args>()...};
    return std::apply(function, all);
}

template <class... Args>
EntryPoint entryPoint(const char *name, std::int32_t (*function)(OCameraHandle, Args...))
{
    constexpr std::size_t kNone = ~std::size_t{0};
    return {name, [=](OCameraHandle handle) { return callIt(function, handle, kNone); },
            [=](OCameraHandle handle, std::size_t n) { return callIt(function, handle, n); },
            (std::size_t{0} + ... + (std::is_pointer_v<Args> ? 1U : 0U))};
}

const EntryPoint kEntryPoints[] = {
    entryPoint("OrvalisCloseCamera", &OrvalisCloseCamera),
    entryPoint("OrvalisCameraReset", &OrvalisCameraReset),
    entryPoint("OrvalisGetCamInfo", &OrvalisGetCamInfo),
    entryPoint("OrvalisSetBayerConversion", &OrvalisSetBayerConversion),
    entryPoint("OrvalisStartAcquisition", &OrvalisStartAcquisition),
    entryPoint("OrvalisStopAcquisition", &OrvalisStopAcquisition),
    entryPoint("OrvalisGrabRGBData", &OrvalisGrabRGBData),
    entryPoint("OrvalisGrabRAWData", &OrvalisGrabRAWData),
    entryPoint("OrvalisGetSizeInfo", &OrvalisGetSizeInfo),
    entryPoint("OrvalisSetSizeInfo", &OrvalisSetSizeInfo),
    entryPoint("OrvalisGetPixelFormatStr", &OrvalisGetPixelFormatStr),
    entryPoint("OrvalisSetPixelFormatStr", &OrvalisSetPixelFormatStr),
    entryPoint("OrvalisGetNumAvailablePixelFormats", &OrvalisGetNumAvailablePixelFormats),
    entryPoint("OrvalisGetAvailablePixelFormatsIdxToStr", &OrvalisGetAvailablePixelFormatsIdxToStr),
    entryPoint("OrvalisGetFrameRate", &OrvalisGetFrameRate),
    entryPoint("OrvalisGetFrameRateMinMax", &OrvalisGetFrameRateMinMax),
    entryPoint("OrvalisSetFrameRate", &OrvalisSetFrameRate),
    entryPoint("OrvalisGetGain", &OrvalisGetGain),
    entryPoint("OrvalisGetGainMinMax", &OrvalisGetGainMinMax),
    entryPoint("OrvalisSetGain", &OrvalisSetGain),
    entryPoint("OrvalisGetShutter", &OrvalisGetShutter),
    entryPoint("OrvalisGetShutterMinMax", &OrvalisGetShutterMinMax),
    entryPoint("OrvalisSetShutter", &OrvalisSetShutter),
    entryPoint("OrvalisGetAutoExposure", &OrvalisGetAutoExposure),
    entryPoint("OrvalisGetAutoExposureMinMax", &OrvalisGetAutoExposureMinMax),
    entryPoint("OrvalisSetAutoExposure", &OrvalisSetAutoExposure),
    entryPoint("OrvalisGetBlackLevel", &OrvalisGetBlackLevel),
    entryPoint("OrvalisGetBlackLevelMinMax", &OrvalisGetBlackLevelMinMax),
    entryPoint("OrvalisSetBlackLevel", &OrvalisSetBlackLevel),
    entryPoint("OrvalisGetGamma", &OrvalisGetGamma),
    entryPoint("OrvalisGetGammaMinMax", &OrvalisGetGammaMinMax),
    entryPoint("OrvalisSetGamma", &OrvalisSetGamma),
    entryPoint("OrvalisGetContrast", &OrvalisGetContrast),
    entryPoint("OrvalisGetContrastMinMax", &OrvalisGetContrastMinMax),
    entryPoint("OrvalisSetContrast", &OrvalisSetContrast),
    entryPoint("OrvalisGetHue", &OrvalisGetHue),
    entryPoint("OrvalisGetHueMinMax", &OrvalisGetHueMinMax),
    entryPoint("OrvalisSetHue", &OrvalisSetHue),
    entryPoint("OrvalisGetSaturation", &OrvalisGetSaturation),
    entryPoint("OrvalisGetSaturationMinMax", &OrvalisGetSaturationMinMax),
    entryPoint("OrvalisSetSaturation", &OrvalisSetSaturation),
    entryPoint("OrvalisGetSharpness", &OrvalisGetSharpness),
    entryPoint("OrvalisGetSharpnessMinMax", &OrvalisGetSharpnessMinMax),
    entryPoint("OrvalisSetSharpness", &OrvalisSetSharpness),
    entryPoint("OrvalisGetRGain", &OrvalisGetRGain),
    entryPoint("OrvalisGetRGainMinMax", &OrvalisGetRGainMinMax),
    entryPoint("OrvalisSetRGain", &OrvalisSetRGain),
    entryPoint("OrvalisGetGGain", &OrvalisGetGGain),
    entryPoint("OrvalisGetGGainMinMax", &OrvalisGetGGainMinMax),
    entryPoint("OrvalisSetGGain", &OrvalisSetGGain),
    entryPoint("OrvalisGetBGain", &OrvalisGetBGain),
    entryPoint("OrvalisGetBGainMinMax", &OrvalisGetBGainMinMax),
    entryPoint("OrvalisSetBGain", &OrvalisSetBGain),
    entryPoint("OrvalisGetNumAvailableWhiteBalances", &OrvalisGetNumAvailableWhiteBalances),
    entryPoint("OrvalisGetAvailableWhiteBalancesIdxToStr",
               &OrvalisGetAvailableWhiteBalancesIdxToStr),
    entryPoint("OrvalisGetWhiteBalanceStr", &OrvalisGetWhiteBalanceStr),
    entryPoint("OrvalisSetWhiteBalanceStr", &OrvalisSetWhiteBalanceStr),
    entryPoint("OrvalisGetTriggerEnable", &OrvalisGetTriggerEnable),
    entryPoint("OrvalisSetTriggerEnable", &OrvalisSetTriggerEnable),
    entryPoint("OrvalisGetTriggerModeStr", &OrvalisGetTriggerModeStr),
    entryPoint("OrvalisSetTriggerModeStr", &OrvalisSetTriggerModeStr),
    entryPoint("OrvalisGetTriggerSourceStr", &OrvalisGetTriggerSourceStr),
    entryPoint("OrvalisSetTriggerSourceStr", &OrvalisSetTriggerSourceStr),
    entryPoint("OrvalisGetTriggerPolarityStr", &OrvalisGetTriggerPolarityStr),
    entryPoint("OrvalisSetTriggerPolarityStr", &OrvalisSetTriggerPolarityStr),
    entryPoint("OrvalisGetTriggerParameter", &OrvalisGetTriggerParameter),
    entryPoint("OrvalisSetTriggerParameter", &OrvalisSetTriggerParameter),
    entryPoint("OrvalisGetTriggerDelay", &OrvalisGetTriggerDelay),
    entryPoint("OrvalisSetTriggerDelay", &OrvalisSetTriggerDelay),
    entryPoint("OrvalisGetTriggerNoiseFilter", &OrvalisGetTriggerNoiseFilter),
    entryPoint("OrvalisSetTriggerNoiseFilter", &OrvalisSetTriggerNoiseFilter),
    entryPoint("OrvalisGetNumAvailableTriggerModes", &OrvalisGetNumAvailableTriggerModes),
    entryPoint("OrvalisGetAvailableTriggerModesIdxToStr", &OrvalisGetAvailableTriggerModesIdxToStr),
    entryPoint("OrvalisGetNumAvailableTriggerSources", &OrvalisGetNumAvailableTriggerSources),
    entryPoint("OrvalisGetAvailableTriggerSourcesIdxToStr",
               &OrvalisGetAvailableTriggerSourcesIdxToStr),
    entryPoint("OrvalisGetNumAvailableTriggerPolaritys", &OrvalisGetNumAvailableTriggerPolaritys),
    entryPoint("OrvalisGetAvailableTriggerPolaritysIdxToStr",
               &OrvalisGetAvailableTriggerPolaritysIdxToStr),
    entryPoint("OrvalisRunSoftwareTrigger", &OrvalisRunSoftwareTrigger),
    entryPoint("OrvalisGetStrobeEnable", &OrvalisGetStrobeEnable),
    entryPoint("OrvalisSetStrobeEnable", &OrvalisSetStrobeEnable),
    entryPoint("OrvalisGetStrobeModeStr", &OrvalisGetStrobeModeStr),
    entryPoint("OrvalisSetStrobeModeStr", &OrvalisSetStrobeModeStr),
    entryPoint("OrvalisGetStrobePolarityStr", &OrvalisGetStrobePolarityStr),
    entryPoint("OrvalisSetStrobePolarityStr", &OrvalisSetStrobePolarityStr),
    entryPoint("OrvalisGetStrobeDelay", &OrvalisGetStrobeDelay),
    entryPoint("OrvalisSetStrobeDelay", &OrvalisSetStrobeDelay),
    entryPoint("OrvalisGetStrobeDuration", &OrvalisGetStrobeDuration),
    entryPoint("OrvalisSetStrobeDuration", &OrvalisSetStrobeDuration),
    entryPoint("OrvalisGetNumAvailableStrobeModes", &OrvalisGetNumAvailableStrobeModes),
    entryPoint("OrvalisGetAvailableStrobeModesIdxToStr", &OrvalisGetAvailableStrobeModesIdxToStr),
    entryPoint("OrvalisGetNumAvailableStrobePolaritys", &OrvalisGetNumAvailableStrobePolaritys),
    entryPoint("OrvalisGetAvailableStrobePolaritysIdxToStr",
               &OrvalisGetAvailableStrobePolaritysIdxToStr),
    entryPoint("OrvalisSetUserDefault", &OrvalisSetUserDefault),
    entryPoint("OrvalisGetNodeList", &OrvalisGetNodeList),
    entryPoint("OrvalisGetNodeInfo", &OrvalisGetNodeInfo),
    entryPoint("OrvalisGetNodeInt", &OrvalisGetNodeInt),
    entryPoint("OrvalisSetNodeInt", &OrvalisSetNodeInt),
    entryPoint("OrvalisGetNodeFloat", &OrvalisGetNodeFloat),
    entryPoint("OrvalisSetNodeFloat", &OrvalisSetNodeFloat),
    entryPoint("OrvalisGetNodeBoolean", &OrvalisGetNodeBoolean),
    entryPoint("OrvalisSetNodeBoolean", &OrvalisSetNodeBoolean),
    entryPoint("OrvalisGetNodeEnum", &OrvalisGetNodeEnum),
    entryPoint("OrvalisSetNodeEnum", &OrvalisSetNodeEnum),
    entryPoint("OrvalisGetNodeString", &OrvalisGetNodeString),
    entryPoint("OrvalisSetNodeString", &OrvalisSetNodeString),
    entryPoint("OrvalisSetNodeCommand", &OrvalisSetNodeCommand),
    entryPoint("OrvalisReadRegister", &OrvalisReadRegister),
    entryPoint("OrvalisWriteRegiser", &OrvalisWriteRegiser),
};

} // namespace

const std::vector<EntryPoint> &entryPoints()
{
    static const std::vector<EntryPoint> all(std::begin(kEntryPoints), std::end(kEntryPoints));
    return all;
}

} // namespace contract
