// SPDX-License-Identifier: MIT
// Fuzzes the viewer with frame records whose sizes do not match their planes.
#include "capture/FramePixels.h"
#include "capture/FrameSaveJob.h"
#include "capture/Picture.h"
#include "control/SensorCanvas.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Widgets.h"
#include "tests/support/ByteTape.h"

namespace {

using viewertest::ByteTape;

constexpr std::uint32_t largestEdge = 64;

/// Mostly a size that planes can be allocated for, sometimes any number.
std::uint32_t edge(ByteTape &tape)
{
    return tape.below(4) == 0 ? tape.number<std::uint32_t>() : tape.below(largestEdge + 1);
}

std::int32_t regionEdge(ByteTape &tape)
{
    return tape.below(8) == 0 ? tape.number<std::int16_t>()
                              : static_cast<std::int32_t>(tape.below(2 * largestEdge));
}

/// A record and planes of the sizes that the library guarantees, if they are small enough.
struct Record {
    explicit Record(ByteTape &tape);

    OImageFrame frame{};
    std::uint32_t format = 0; ///< code of the pixel format
    std::vector<std::uint8_t> raw, rgb, mono8;

private:
    std::size_t wholeRawPlane() const
    {
        return (std::size_t{frame.width} * frame.height * (format >> 16 & 0xFF) + 7) / 8;
    }
};

Record::Record(ByteTape &tape)
{
    frame.width = edge(tape);
    frame.height = edge(tape);
    frame.bitsPerPixel =
        tape.below(2) == 0 ? 8 * (1 + tape.below(4)) : tape.number<std::uint32_t>();
    format = 0x01080001;
    if (tape.below(2) == 0)
        format = 0x01100005;
    raw.resize(tape.number<std::uint16_t>());
    frame.rawSize = static_cast<std::uint32_t>(raw.size());
    if (raw.empty() && frame.width <= largestEdge && frame.height <= largestEdge)
        raw.resize(wholeRawPlane()); // size not stated
    frame.raw = tape.below(8) == 0 || raw.empty() ? nullptr : raw.data();
    if (frame.width > largestEdge || frame.height > largestEdge)
        return; // no library could allocate these planes
    rgb.resize(std::size_t{3} * frame.width * frame.height);
    mono8.resize(std::size_t{frame.width} * frame.height);
    frame.rgb = tape.below(8) == 0 ? nullptr : rgb.data();
    frame.mono8 = tape.below(8) == 0 ? nullptr : mono8.data();
}

void checkSaved(const Record &record, const Picture &picture, ByteTape &tape)
{
    const SaveFormat formats[] = {SaveFormat::Bmp, SaveFormat::Jpg, SaveFormat::Png,
                                  SaveFormat::Tif, SaveFormat::Raw, SaveFormat::Rgb};
    const auto job =
        makeSaveJob(picture, formats[tape.below(static_cast<std::uint32_t>(std::size(formats)))]);
    FUZZ_CHECK(job->raw == nullptr || static_cast<std::size_t>(job->size) <= record.raw.size());
    FUZZ_CHECK(job->rgb == nullptr || static_cast<std::size_t>(job->size) == record.rgb.size());
    FUZZ_CHECK(job->ownedBytes.size() == job->size);
    FUZZ_CHECK(heldBytes(*job) >= static_cast<std::size_t>(job->size));
}

/// A picture is made exactly of the frames that have their pixels, and can be saved.
void checkShown(const Record &record, ByteTape &tape)
{
    OImageFrame frame = record.frame;
    const std::int32_t width = regionEdge(tape);
    const std::uint64_t region = regionPixels(width, regionEdge(tape));
    for (const char *format : {"RGB8", "Mono8", "Mono12"}) {
        StreamInfo info;
        info.pixelFormat = record.format;
        const PixelMeaning meaning = meaningOf(format, record.format);
        PictureMaker maker(info, meaning);
        const Rows rows = tape.below(2) == 0 ? Rows::Packed : Rows::AlignedTo4;
        const PicturePtr picture = maker.make({&frame, {}}, rows, region);
        FUZZ_CHECK((picture != nullptr) ==
                   (displayedPixels(frame, meaning.plane, region) != nullptr));
        if (picture == nullptr)
            continue;
        FUZZ_CHECK(std::uint64_t{picture->width()} * picture->height() <= region);
        FUZZ_CHECK(picture->sampleBytes() <= record.raw.size());
        checkSaved(record, *picture, tape);
    }
}

/// The preview grabs into its own buffers; only the sizes in the record come from the library.
void checkPainted(const Record &record, ByteTape &tape)
{
    SensorCanvas canvas;
    OSizeInfo size{};
    for (std::int32_t *number : {&size.offsetX, &size.offsetY, &size.maxWidth, &size.maxHeight})
        *number = regionEdge(tape);
    if (size.maxWidth > 512 || size.maxHeight > 512)
        return; // millions of pixels find nothing more than thousands
    canvas.fitTo(size);
    OImageFrame *grabbed = canvas.frame();
    grabbed->width = record.frame.width;
    grabbed->height = record.frame.height;
    if (canvas.isEmpty())
        return;
    canvas.paintRgb(size);
    canvas.paintGrey(size);
    canvas.paintWords(size, static_cast<int>(tape.below(20)));
    FUZZ_CHECK(canvas.image().size() == QSize(size.maxWidth, size.maxHeight));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::needApplication();
    ByteTape tape(data, size);
    const Record record(tape);
    const std::size_t readable = rawPlaneBytes(record.frame, record.format);
    FUZZ_CHECK(readable <= record.raw.size());
    FUZZ_CHECK(record.frame.raw != nullptr || readable == 0);
    checkShown(record, tape);
    checkPainted(record, tape);
    return 0;
}
