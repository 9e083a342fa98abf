// SPDX-License-Identifier: MIT
// Byte order of the pixels of old GigE Vision cameras.
#include "library/genicam/PixelOrder.h"

#include "library/convert/PixelFormat.h"
#include "library/core/Debug.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace orvalis {
namespace {

// Bootstrap registers of GigE Vision: version, in its upper half the major one; device mode.
constexpr guint64 versionRegister = 0x0000;
constexpr guint64 modeRegister = 0x0004;
constexpr guint32 bigEndianBit = 1U << 31;

/// Pixels that are looked at, in each direction.
constexpr std::size_t sampleRows = 64;
constexpr std::size_t sampleColumns = 256;
/// So many times as alike must neighbours be.
constexpr double clearly = 4;

bool isOldBigEndian(ArvDevice *device)
{
    if (!ARV_IS_GV_DEVICE(device)) {
        return false;
    }
    Failure failure;
    guint32 version = 0;
    guint32 mode = 0;
    return arv_device_read_register(device, versionRegister, &version, failure.slot()) &&
           version >> 16 <= 1 &&
           arv_device_read_register(device, modeRegister, &mode, failure.slot()) &&
           (mode & bigEndianBit) != 0;
}

/// What samples look like with one order of bytes.
class Look {
public:
    void add(int value, int neighbour)
    {
        bits_ |= value;
        least_ = std::min(least_, value);
        most_ = std::max(most_, value);
        difference_ += std::abs(value - neighbour);
        ++count_;
    }
    bool fits(unsigned depth) const { return bits_ >> depth == 0; }
    /// Mean difference of neighbours, as a share of the whole range; 0 of a flat image.
    double roughness() const
    {
        const int range = most_ - least_;
        return range > 0 ? difference_ / static_cast<double>(count_) / range : 0;
    }

private:
    int bits_ = 0;
    int least_ = 0xFFFF;
    int most_ = 0;
    double difference_ = 0;
    std::size_t count_ = 0;
};

bool isClearly(const Look &right, const Look &wrong, unsigned depth)
{
    if (right.fits(depth) != wrong.fits(depth)) {
        return right.fits(depth);
    }
    return right.roughness() > 0 && right.roughness() * clearly < wrong.roughness();
}

void look(const RawImage &image, Look &little, Look &big)
{
    constexpr std::size_t apart = 2; // the next pixel of the same colour
    const std::size_t rowStep = std::max<std::size_t>(image.height / sampleRows, 1);
    const std::size_t columnStep = std::max<std::size_t>(image.width / sampleColumns, 1);
    for (std::size_t y = 0; y < image.height; y += rowStep) {
        const std::uint8_t *row = image.data + y * image.width * 2;
        for (std::size_t x = 0; x + apart < image.width; x += columnStep) {
            const std::uint8_t *one = row + x * 2;
            const std::uint8_t *next = one + apart * 2;
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
        !(format->isMono() || format->isBayer())) {
        return;
    }
    if (order_ == Order::Unknown) {
        Look little;
        Look big;
        look(image, little, big);
        if (isClearly(big, little, format->depth)) {
            debugPrint("this camera sends pixels of 16 bits big-endian");
            order_ = Order::Big;
        } else if (isClearly(little, big, format->depth)) {
            order_ = Order::Little;
        }
    }
    if (order_ == Order::Big) {
        swapBytes(image);
    }
}

} // namespace orvalis
