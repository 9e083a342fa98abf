// SPDX-License-Identifier: MIT
// The table of the built-in cameras.
#include "library/simulated/CameraModel.h"

#include <algorithm>
#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::array<std::uint32_t, 2> kMonoFormats{format::kMono8, format::kMono12};
constexpr std::array<std::uint32_t, 5> kColorFormats{
    format::kBayerGR8, format::kBayerGR12, format::kRgb8, format::kYuv422, format::kMono8};
constexpr std::array<std::uint32_t, 1> kFastFormats{format::kMono8};

constexpr std::array<CameraModel, 4> kModels{{
    {.id = "OV-SIM-1280M-0001",
     .displayName = "OV-SIM-1280M-0001 (mono 1280x1024)",
     .model = "OV-SIM-1280M",
     .serialNumber = "0001",
     .width = 1280,
     .height = 1024,
     .formats = kMonoFormats,
     .lineTime = 4.5},
    {.id = "OV-SIM-2448C-0002",
     .displayName = "OV-SIM-2448C-0002 (colour 2448x2048)",
     .model = "OV-SIM-2448C",
     .serialNumber = "0002",
     .color = true,
     .width = 2448,
     .height = 2048,
     .formats = kColorFormats,
     .lineTime = 5.0},
    {.id = "OV-SIM-0640F-0003",
     .displayName = "OV-SIM-0640F-0003 (fast 640x480)",
     .model = "OV-SIM-0640F",
     .serialNumber = "0003",
     .width = 640,
     .height = 480,
     .formats = kFastFormats,
     .lineTime = 2.0625,
     .overhead = 10,
     .linkRate = 1000,
     .maximumRate = 40000,
     .exposureMinimum = 5,
     .exposureDefault = 800,
     .rateDefault = 200,
     .gammaMaximum = 4.0},
    {.id = "OV-SIM-0640T-0004",
     .displayName = "OV-SIM-0640T-0004 (thermal 640x512)",
     .model = "OV-SIM-0640T",
     .serialNumber = "0004",
     .thermal = true,
     .width = 640,
     .height = 512,
     .formats = kMonoFormats,
     .lineTime = 32.0,
     .overhead = 200,
     .linkRate = 100,
     .maximumRate = 240,
     .exposureDefault = 8000},
}};

} // namespace

std::span<const CameraModel> cameraModels() { return kModels; }

double shortestPeriod(const CameraModel &model, std::uint32_t width, std::uint32_t height,
                      std::uint32_t pixelFormat)
{
    const double readOut = model.overhead + height * model.lineTime;
    const double bytes = double(width) * height * bytesPerPixel(pixelFormat);
    return std::max({readOut, bytes / model.linkRate, 1e6 / model.maximumRate});
}

} // namespace orvalis::simulated
