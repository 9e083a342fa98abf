// SPDX-License-Identifier: MIT
// Fuzzes the conversion of a camera's data to the planes of a frame and of a grab: images with too
// little data, unknown formats, implausible sizes.
#include "library/core/Frame.h"
#include "library/core/GrabConversion.h"
#include "tests/fuzz/Formats.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/library/convert/Encode.h"
#include "tests/support/ByteTape.h"

namespace {

using converttest::Exact;
using orvalis::PixelFormat;
using viewertest::ByteTape;
using Bytes = Exact<std::uint8_t>;

/// Reads all of a plane, so that a sanitizer reports one that is too short.
void touch(const std::uint8_t *plane, std::size_t size)
{
    volatile unsigned sum = 0; // volatile, so that the reads are not optimised away
    for (std::size_t i = 0; i < size; ++i)
        sum = sum + plane[i];
}

std::uint32_t edge(ByteTape &tape)
{
    return tape.below(8) == 0 ? tape.number<std::uint32_t>() : tape.below(48);
}

void checkRecord(const OImageFrame &record)
{
    const std::size_t pixels = std::size_t{record.width} * record.height;
    FUZZ_CHECK(record.raw != nullptr);
    FUZZ_CHECK(record.rawSize == (pixels * record.bitsPerPixel + 7) / 8);
    touch(record.raw, record.rawSize);
    if (record.rgb != nullptr)
        touch(record.rgb, pixels * 3);
    if (record.mono8 != nullptr)
        touch(record.mono8, pixels);
}

/// Reuses one frame for all inputs, like a stream.
void checkFrame(const Bytes &memory, const PixelFormat *format, OImageFrame size, ByteTape &tape)
{
    static orvalis::Frame frame;
    orvalis::RawImage image;
    image.data = tape.below(16) == 0 ? nullptr : memory.data();
    image.size = memory.size();
    image.width = size.width;
    image.height = size.height;
    image.pixelFormat = format == nullptr ? tape.number<std::uint32_t>() : format->code;
    if (tape.below(2) == 0)
        image.owner = std::shared_ptr<const void>(std::shared_ptr<void>(), memory.data());
    if (orvalis::fillFrame(frame, image, tape.below(2) == 0))
        checkRecord(frame.record);
    frame.source = {};
}

void checkGrab(const Bytes &memory, const PixelFormat *format, OImageFrame size, ByteTape &tape)
{
    const orvalis::GrabbedImage image{format,     memory.data(), memory.size(),
                                      size.width, size.height,   {}};
    const std::size_t mostPixels = tape.below(2) == 0 ? 48 * 48 : tape.below(48);
    Bytes raw(mostPixels * 2);
    Bytes rgb(mostPixels * 3);
    OImageFrame frame{};
    frame.raw = raw.data();
    frame.rgb = rgb.data();
    if (writeGrabbedRgb(image, mostPixels, frame) == ORVALIS_OK)
        FUZZ_CHECK(frame.rawSize <= rgb.size() && frame.bitsPerPixel == 24);
    if (writeGrabbedRaw(image, mostPixels, frame) == ORVALIS_OK)
        FUZZ_CHECK(frame.rawSize <= raw.size());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const auto formats = fuzz::allFormats();
    ByteTape tape(data, size);
    const auto choice = tape.below(static_cast<std::uint32_t>(formats.size()) + 1);
    const PixelFormat *format = choice < formats.size() ? formats[choice] : nullptr;
    OImageFrame claimed{};
    claimed.width = edge(tape);
    claimed.height = edge(tape);
    const Bytes memory(tape.below(4) == 0 ? tape.number<std::uint16_t>() : 48 * 48 * 3);
    checkFrame(memory, format, claimed, tape);
    checkGrab(memory, format, claimed, tape);
    return 0;
}
