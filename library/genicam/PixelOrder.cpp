// SPDX-License-Identifier: MIT
// Detects and corrects the byte order of pixels.
#include "library/genicam/PixelOrder.h"

#include "library/convert/PixelFormat.h"
#include "library/core/Debug.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace orvalis {
namespace {

// Bootstrap registers of GigE Vision: version (major version in the upper half) and device mode.
constexpr guint64 versionRegister = 0x0000;
constexpr guint64 modeRegister = 0x0004;
constexpr guint32 bigEndianBit = 1U << 31;

/// The number of sampled rows and columns.
constexpr std::size_t sampleRows = 64;
constexpr std::size_t sampleColumns = 256;
/// The roughness of the wrong order must exceed that of the right order by this factor.
constexpr double decisiveRatio = 4;

bool isOldBigEndian(ArvDevice *device)
{
    if (!ARV_IS_GV_DEVICE(device))
        return false;
    Failure failure;
    guint32 version = 0;
    guint32 mode = 0;
    return arv_device_read_register(device, versionRegister, &version, failure.slot()) &&
           version >> 16 <= 1 &&
           arv_device_read_register(device, modeRegister, &mode, failure.slot()) &&
           (mode & bigEndianBit) != 0;
}

/// Statistics of samples in one byte order.
class Statistics {
public:
    void add(int value, int neighbour)
    {
        bits_ |= value;
        minimum_ = std::min(minimum_, value);
        maximum_ = std::max(maximum_, value);
        difference_ += std::abs(value - neighbour);
        ++count_;
    }
    bool fits(unsigned depth) const { return bits_ >> depth == 0; }
    /// Mean difference of neighbours relative to the value range; 0 for a uniform image.
    double roughness() const
    {
        const int range = maximum_ - minimum_;
        return range > 0 ? difference_ / static_cast<double>(count_) / range : 0;
    }

private:
    int bits_ = 0;
    int minimum_ = 0xFFFF;
    int maximum_ = 0;
    double difference_ = 0;
    std::size_t count_ = 0;
};

bool isDecisive(const Statistics &right, const Statistics &wrong, unsigned depth)
{
    if (right.fits(depth) != wrong.fits(depth))
        return right.fits(depth);
    return right.roughness() > 0 && right.roughness() * decisiveRatio < wrong.roughness();
}

void sample(const RawImage &image, Statistics &little, Statistics &big)
{
    constexpr std::size_t distance = 2; // the next pixel of the same colour
    const std::size_t rowStep = std::max<std::size_t>(image.height / sampleRows, 1);
    const std::size_t columnStep = std::max<std::size_t>(image.width / sampleColumns, 1);
    for (std::size_t y = 0; y < image.height; y += rowStep) {
        const std::uint8_t *row = image.data + y * image.width * 2;
        for (std::size_t x = 0; x + distance < image.width; x += columnStep) {
            const std::uint8_t *one = row + x * 2;
            const std::uint8_t *next = one + distance * 2;
            little.add(one[0] | one[1] << 8, next[0] | next[1] << 8);
            big.add(one[0] << 8 | one[1], next[0] << 8 | next[1]);
        }
    }
}

void swapBytes(RawImage &image)
{
    auto swapped = std::make_shared<std::vector<std::uint8_t>>(image.size);
    for (std::size_t i = 0; i + 1 < image.size; i += 2) {
        (*swapped)[i] = image.data[i + 1];
        (*swapped)[i + 1] = image.data[i];
    }
    image.data = swapped->data();
    image.owner = std::move(swapped);
}

} // namespace

PixelOrder::PixelOrder(ArvDevice *device) : mayBeBig_(isOldBigEndian(device)) {}

void PixelOrder::correct(RawImage &image)
{
    const PixelFormat *format = mayBeBig_ ? findPixelFormat(image.pixelFormat) : nullptr;
    if (format == nullptr || format->packing != PixelPacking::Words ||
        !(format->isMono() || format->isBayer()))
        return;
    if (order_ == Order::Unknown) {
        Statistics little;
        Statistics big;
        sample(image, little, big);
        if (isDecisive(big, little, format->depth)) {
            debugPrint("this camera sends 16-bit pixels in big-endian order");
            order_ = Order::Big;
        } else if (isDecisive(little, big, format->depth)) {
            order_ = Order::Little;
        }
    }
    if (order_ == Order::Big)
        swapBytes(image);
}

} // namespace orvalis
