// SPDX-License-Identifier: MIT
// The features that are edited in an integer spin box and a slider.
#pragma once

#include "sdk/OrvalisAPI.h"
#include "ui_CameraCtrl.h"

#include <array>
#include <cstdint>

/// The widgets of a feature and the library calls that read and write it.
struct IntegerFeature {
    QSpinBox *Ui_CameraCtrl::*spin;
    QSlider *Ui_CameraCtrl::*slider;
    QLabel *Ui_CameraCtrl::*range;
    std::int32_t (*readBounds)(OCameraHandle, std::int32_t *, std::int32_t *);
    std::int32_t (*read)(OCameraHandle,
                         std::int32_t *);               ///< null: the feature has an automatic mode
    std::int32_t (*write)(OCameraHandle, std::int32_t); ///< null: likewise
    bool disabledByFailure; ///< a failing `read` disables the controls and leaves their value
};

namespace features {

extern const IntegerFeature gain;
extern const IntegerFeature rGain;
extern const IntegerFeature gGain;
extern const IntegerFeature bGain;
extern const IntegerFeature blackLevel;
extern const IntegerFeature contrast;
extern const IntegerFeature hue;
extern const IntegerFeature saturation;
extern const IntegerFeature sharpness;
extern const IntegerFeature autoExposure;

/// Red, green, blue.
extern const std::array<const IntegerFeature *, 3> colourGains;

} // namespace features
