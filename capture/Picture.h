// SPDX-License-Identifier: MIT
// One image of a camera, immutable and shared by the view, saving and all code that reads pixels.
#pragma once

#include "capture/FrameTap.h"
#include "capture/PixelMeaning.h"
#include "capture/ScreenImages.h"

#include <QByteArray>
#include <QImage>
#include <QMetaType>
#include <QPixmap>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// The samples as the camera library delivered them, and the image for the screen. Any thread may
/// read it.
class Picture {
public:
    std::uint32_t width() const { return m_width; }               ///< pixels
    std::uint32_t height() const { return m_height; }             ///< pixels
    const StreamInfo &stream() const { return m_stream; }         ///< region and formats
    const PixelMeaning &meaning() const { return m_meaning; }     ///< of the pixel format
    const FrameStamp &stamp() const { return m_stamp; }           ///< index and times
    std::uint32_t bitsPerPixel() const { return m_bitsPerPixel; } ///< of a sample, padding included

    /// The original samples with all bits: rows without padding, 16-bit little-endian words if the
    /// format has more than 8 bits. Null if the frame had none.
    const std::uint8_t *samples() const { return m_samples.empty() ? nullptr : m_samples.data(); }
    /// Bytes of samples(), including data that the camera appends.
    std::size_t sampleBytes() const { return m_samples.size(); }

    /// For the screen. Shares its pixels with screenImage().
    const QPixmap &screen() const { return m_screen; }
    /// Format_RGB32, made once.
    const QImage &screenImage() const { return m_screenImage; }

    /// The displayed image in the depth in which it is saved: Format_RGB888 or Format_Grayscale8.
    /// Each call creates a new image; null if memory runs out.
    QImage displayedImage() const;
    /// width x height x 3 bytes R, G, B; empty if the frame has no colour or memory runs out.
    QByteArray rgb() const;

private:
    friend class PictureMaker;

    std::uint32_t m_width = 0;
    std::uint32_t m_height = 0;
    std::uint32_t m_bitsPerPixel = 0;
    StreamInfo m_stream;
    PixelMeaning m_meaning;
    FrameStamp m_stamp;
    std::vector<std::uint8_t> m_samples;
    std::vector<std::uint8_t>
        m_plane; ///< copy of the displayed plane if the screen reads its rows differently
    QImage m_screenImage;
    QPixmap m_screen;
};

using PicturePtr = std::shared_ptr<const Picture>;
Q_DECLARE_METATYPE(PicturePtr)

/// How the rows of the displayed plane are read.
enum class Rows {
    AlignedTo4, ///< Deliberate: streams use Qt's default alignment, which shears images whose width
                ///< is not a multiple of 4
    Packed,     ///< without padding, as in the frame
};

/// Makes pictures of frames and reuses their memory. Use it from one thread; any thread may use the
/// pictures.
class PictureMaker {
public:
    /// @param info of the stream that the frames belong to
    /// @param meaning of its pixel format
    PictureMaker(const StreamInfo &info, const PixelMeaning &meaning);

    /// Copies the frame: reads the samples once and the displayed plane once. The picture does not
    /// refer to the frame's memory.
    /// @param maxPixels larger frames are refused
    /// @return null if the displayed pixels are missing or too many, or if there is no memory for
    /// the screen image
    /// @throws std::bad_alloc if there is no memory for the samples
    PicturePtr make(const PublishedFrame &published, Rows rows, std::uint64_t maxPixels);

private:
    std::shared_ptr<Picture> unused();
    QImage displayedPlane(const OImageFrame &frame, const std::uint8_t *pixels, Rows rows,
                          Picture *picture);

    StreamInfo m_info;
    PixelMeaning m_meaning;
    ScreenImages m_screenImages;
    std::array<std::shared_ptr<Picture>, 3> m_pictures; ///< reused once no caller holds them
};
