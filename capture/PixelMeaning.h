// SPDX-License-Identifier: MIT
// What a pixel format means to the viewer: the only place that interprets names and codes of
// formats.
#pragma once

#include "capture/FramePixels.h"

#include <cstdint>
#include <string_view>

/// Everything that the viewer derives from a pixel format. Names are compared case-sensitively
/// unless stated otherwise.
struct PixelMeaning {
    bool color = false; ///< displayed in colour: the name lacks "Mono"
    bool bayer = false; ///< a colour mosaic that the library converts: "Bayer" in a colour format
    bool previewRgb = false; ///< the sensor preview grabs RGB: the name contains "Bayer" or "YUV"
    bool twelveBits = false; ///< the sensor preview reduces 12 bits: the name contains "12"
    bool hasNoColor = false; ///< no white balance: the name contains "mono" in any case
    FramePlane plane = FramePlane::Raw; ///< the plane that is displayed
};

/// @param name as the camera library returns it
/// @param code PFNC code of the delivered frames; 0 if only the name matters
PixelMeaning meaningOf(std::string_view name, std::uint32_t code = 0);
