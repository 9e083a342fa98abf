// SPDX-License-Identifier: MIT
// The library calls of the sensor preview.
#include "control/SensorPreview.h"

#include "capture/PixelMeaning.h"
#include "control/SensorCanvas.h"

namespace {

constexpr std::uint32_t grabTimeoutMs = 1000;

/// Grabs one frame and paints it at the offset in `size`. Returns false and paints nothing if the
/// grab fails.
bool grabInto(SensorCanvas &canvas, const PreviewSource &source, const OSizeInfo &size)
{
    const PixelMeaning meaning = meaningOf(source.pixelFormat.toStdString());
    const auto grab = meaning.previewRgb ? OrvalisGrabRGBData : OrvalisGrabRAWData;
    if (grab(source.camera, canvas.frame(), grabTimeoutMs) != 0)
        return false;
    if (meaning.previewRgb)
        canvas.paintRgb(size);
    else if (meaning.twelveBits)
        canvas.paintWords(size, 12);
    else
        canvas.paintGrey(size);
    return true;
}

} // namespace

void refreshPreview(const PreviewSource &source, SensorCanvas &canvas,
                    const std::function<void(QImage)> &display)
{
    // Binning, decimation or a user set may have changed the size since the panel read it.
    OSizeInfo size{};
    if (source.camera == nullptr || OrvalisGetSizeInfo(source.camera, &size) != 0)
        return;
    if (canvas.fitTo(size))
        display(canvas.image());
    if (!canvas.isEmpty() && grabInto(canvas, source, size))
        display(canvas.image());
}
