// SPDX-License-Identifier: MIT
// Node tables: settings that change the image.
#include "library/simulated/NodeRows.h"

#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::array<EntrySpec, 3> kAutomaticWhite{{{"Off", 0}, {"Once", 1}, {"Continuous", 2}}};
constexpr std::array<EntrySpec, 3> kChannels{{{"Red", 0}, {"Green", 1}, {"Blue", 2}}};

constexpr std::string_view kAnalog = "AnalogControl";
constexpr std::string_view kProcessing = "ImageProcessingControl";
constexpr std::string_view kKnee = "LUTKneePointControls";

constexpr auto kPictureRows = std::to_array<NodeSpec>({
    category(kAnalog, "Root", "Gain, black level, gamma and white balance."),
    real("Gain", kAnalog, address::kGain, kReadWrite, {0, 24, 0, 0}, "dB",
         "Amplification of the sensor's signal. 6 dB double the brightness, and the noise becomes "
         "visible. Read-only while GainAuto is on."),
    integer("GainRaw", kAnalog, address::kGainRaw, kReadWrite, {0, 240, 1, 0}, "0.1 dB",
            "The gain in tenths of a decibel.", kExpert),
    enumeration("GainAuto", kAnalog, address::kGainAuto, kReadWrite, kAutomatic, 0,
                "Lets the camera find the gain for AutoExposureTargetBrightness."),
    integer("BlackLevel", kAnalog, address::kBlackLevel, kReadWrite, {0, 1023, 1, 64}, "",
            "Value of a pixel without light, in steps of 1/4095 of full scale."),
    real("Gamma", kAnalog, address::kGamma, kReadWrite, {0.3, 0, 0, 1}, "",
         "Exponent of the tone curve. Below 1 the dark parts become brighter."),
    boolean("GammaEnable", kAnalog, address::kGammaEnable, kReadWrite, true,
            "Switches the tone curve. Off: as with Gamma 1."),
    enumeration("BalanceRatioSelector", kAnalog, address::kBalanceSelector, kReadWrite, kChannels,
                0, "Colour that BalanceRatio belongs to.", kColorOnly),
    real("BalanceRatio", kAnalog, address::kBalanceRatio, kReadWrite, {0.0625, 3.999, 0, 1}, "",
         "Amplification of the selected colour. Read-only while BalanceWhiteAuto is "
         "\"Continuous\".",
         kColorOnly, Selector::Balance),
    enumeration("BalanceWhiteAuto", kAnalog, address::kBalanceWhiteAuto, kReadWrite,
                kAutomaticWhite, 0,
                "White balance: makes grey things grey. \"Once\" balances now and goes back to "
                "\"Off\".",
                kColorOnly),

    category(kProcessing, "Root", "Processing of the picture inside of the camera."),
    integer("Contrast", kProcessing, address::kContrast, kReadWrite, {0, 1016, 1, 508}, "",
            "Contrast about middle grey. 508 leaves the picture as it is, 1016 doubles the "
            "contrast."),
    integer("Hue", kProcessing, address::kHue, kReadWrite, {0, 1016, 1, 508}, "",
            "Turns all colours about the grey axis, by -90 to 90 degrees. 508 leaves them as "
            "they are.",
            kColorOnly),
    integer("Saturation", kProcessing, address::kSaturation, kReadWrite, {0, 1023, 1, 512}, "",
            "Strength of the colours: 0 is grey, 512 leaves them as they are.", kColorOnly),
    integer("Sharpness", kProcessing, address::kSharpness, kReadWrite, {10, 20, 1, 10}, "",
            "Emphasis of edges. 10 leaves the picture as it is."),
    category("SnowNoiseRemoveControls", kProcessing, "Reduction of noise."),
    boolean("SnowNoiseRemoveEnable", "SnowNoiseRemoveControls", address::kNoiseRemoveEnable,
            kReadWrite, false, "Switches the reduction of noise."),
    integer("SnowNoiseRemoveLevel", "SnowNoiseRemoveControls", address::kNoiseRemoveLevel,
            kReadWrite, {1, 4, 1, 2}, "", "How much of the noise is removed, in fifths."),
    category("WDGControl", kProcessing, "Wide dynamic range: brings light into the shadows."),
    boolean("WDGEnable", "WDGControl", address::kWideRangeEnable, kReadWrite, false,
            "Switches the lifting of shadows."),
    integer("WDGStrength", "WDGControl", address::kWideRangeStrength, kReadWrite, {0, 100, 1, 50},
            "%", "How far shadows are lifted."),

    category("LUTControl", "Root", "A tone curve of your own."),
    boolean("LUTEnable", "LUTControl", address::kLutEnable, kReadWrite, false,
            "Switches the curve through the two knee points."),
    category(kKnee, "LUTControl", "The two points that the curve bends at, in percent."),
    integer("LUTKneePoint1X", kKnee, address::kKneePoint1X, kReadWrite, {1, 49, 1, 25}, "%",
            "Input of the first knee point."),
    integer("LUTKneePoint1Y", kKnee, address::kKneePoint1Y, kReadWrite, {0, 100, 1, 25}, "%",
            "Output of the first knee point."),
    integer("LUTKneePoint2X", kKnee, address::kKneePoint2X, kReadWrite, {50, 99, 1, 75}, "%",
            "Input of the second knee point."),
    integer("LUTKneePoint2Y", kKnee, address::kKneePoint2Y, kReadWrite, {0, 100, 1, 75}, "%",
            "Output of the second knee point."),
});

} // namespace

std::span<const NodeSpec> pictureNodes() { return kPictureRows; }

} // namespace orvalis::simulated
