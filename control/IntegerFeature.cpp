// SPDX-License-Identifier: MIT
// The table of integer features.
#include "control/IntegerFeature.h"

namespace features {

using Ui = Ui_CameraCtrl;

const IntegerFeature gain{&Ui::spiGain, &Ui::sliGain, &Ui::laGain, OrvalisGetGainMinMax,
                          nullptr,      nullptr,      false};
const IntegerFeature rGain{&Ui::spiRGain,   &Ui::sliRGain,   &Ui::laRGain, OrvalisGetRGainMinMax,
                           OrvalisGetRGain, OrvalisSetRGain, true};
const IntegerFeature gGain{&Ui::spiGGain,   &Ui::sliGGain,   &Ui::laGGain, OrvalisGetGGainMinMax,
                           OrvalisGetGGain, OrvalisSetGGain, true};
const IntegerFeature bGain{&Ui::spiBGain,   &Ui::sliBGain,   &Ui::laBGain, OrvalisGetBGainMinMax,
                           OrvalisGetBGain, OrvalisSetBGain, true};
const IntegerFeature blackLevel{
    &Ui::spiBlackLevel,   &Ui::sliBlackLevel,   &Ui::laBlack, OrvalisGetBlackLevelMinMax,
    OrvalisGetBlackLevel, OrvalisSetBlackLevel, false};
const IntegerFeature contrast{
    &Ui::spiContrast,   &Ui::sliContrast,   &Ui::laCont, OrvalisGetContrastMinMax,
    OrvalisGetContrast, OrvalisSetContrast, true};
const IntegerFeature hue{&Ui::spiHue,   &Ui::sliHue,   &Ui::laHue, OrvalisGetHueMinMax,
                         OrvalisGetHue, OrvalisSetHue, true};
const IntegerFeature saturation{&Ui::spiSaturation,
                                &Ui::sliSaturation,
                                &Ui::laSaturation,
                                OrvalisGetSaturationMinMax,
                                OrvalisGetSaturation,
                                OrvalisSetSaturation,
                                true};
const IntegerFeature sharpness{
    &Ui::spiSharp,       &Ui::sliSharp,       &Ui::laSharp, OrvalisGetSharpnessMinMax,
    OrvalisGetSharpness, OrvalisSetSharpness, true};
const IntegerFeature autoExposure{&Ui::spiAutoExp,
                                  &Ui::sliAutoExp,
                                  &Ui::laAutoExp,
                                  OrvalisGetAutoExposureMinMax,
                                  OrvalisGetAutoExposure,
                                  OrvalisSetAutoExposure,
                                  true};

const std::array<const IntegerFeature *, 3> colourGains{&rGain, &gGain, &bGain};

} // namespace features
