// SPDX-License-Identifier: MIT
// What a pixel format means to the viewer: the only place that interprets names and codes of
// formats.
#include "capture/PixelMeaning.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace {

bool contains(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

std::string lowerCase(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return lower;
}

} // namespace

PixelMeaning meaningOf(std::string_view name, std::uint32_t code)
{
    PixelMeaning meaning;
    meaning.color = !contains(name, "Mono");
    meaning.bayer = meaning.color && contains(name, "Bayer");
    meaning.previewRgb = contains(name, "Bayer") || contains(name, "YUV");
    meaning.twelveBits = contains(name, "12");
    meaning.hasNoColor = contains(lowerCase(name), "mono");
    meaning.plane = displayPlane(meaning.color, code);
    return meaning;
}
