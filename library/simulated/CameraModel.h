// SPDX-License-Identifier: MIT
// The fixed properties of the four built-in cameras.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace orvalis::simulated {

/// PFNC codes of the formats that the built-in cameras send.
namespace format {
constexpr std::uint32_t kMono8 = 0x01080001;
constexpr std::uint32_t kMono12 = 0x01100005;
constexpr std::uint32_t kBayerGR8 = 0x01080008;
constexpr std::uint32_t kBayerGR12 = 0x01100010;
constexpr std::uint32_t kRgb8 = 0x02180014;
constexpr std::uint32_t kYuv422 = 0x02100032;
} // namespace format

/// True for the formats without colour.
constexpr bool isMono(std::uint32_t code)
{
    return code == format::kMono8 || code == format::kMono12;
}

/// True for the formats whose samples are 12 bits in 16-bit words.
constexpr bool isDeep(std::uint32_t code)
{
    return code == format::kMono12 || code == format::kBayerGR12;
}

/// Bytes of one pixel: the third byte of a PFNC code is the number of bits.
constexpr std::uint32_t bytesPerPixel(std::uint32_t code) { return ((code >> 16) & 0xFF) / 8; }

/// Smallest region and its steps, in pixels.
constexpr std::uint32_t kSmallestWidth = 64;
constexpr std::uint32_t kSmallestHeight = 8;
constexpr std::uint32_t kRegionStep = 8;

/// The maximum number of sensor pixels, in a row or a column, that binning and decimation reduce to
/// one.
constexpr std::uint32_t kLargestReduction = 8;

/// One built-in camera. The values here are defaults.
struct CameraModel {
    std::string_view id;
    std::string_view displayName;
    std::string_view model;
    std::string_view serialNumber;
    bool color = false;
    bool thermal = false;
    std::uint32_t width;                    ///< pixels of the sensor
    std::uint32_t height;                   ///< rows of the sensor
    std::span<const std::uint32_t> formats; ///< PFNC codes, the default one first
    double lineTime;                        ///< read-out time of a row in microseconds
    double overhead = 50;                   ///< microseconds between two read-outs
    double linkRate = 450;                  ///< bandwidth of the link in bytes per microsecond
    double maximumRate = 2000;              ///< maximum frames per second of any region
    double exposureMinimum = 50;            ///< microseconds
    double exposureDefault = 10000;         ///< microseconds; a good exposure at 0 dB
    double rateDefault = 30;                ///< frames per second
    double gammaMaximum = 1;                ///< the exponent's upper bound
};

/// The built-in cameras, in the order of discovery.
std::span<const CameraModel> cameraModels();

/// Shortest time between two frames of a region, in microseconds.
double shortestPeriod(const CameraModel &model, std::uint32_t width, std::uint32_t height,
                      std::uint32_t pixelFormat);

} // namespace orvalis::simulated
