// SPDX-License-Identifier: MIT
// One image of a camera, immutable and shared by the view, saving and whatever reads pixels.
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
/// read.
class Picture {
public:
    std::uint32_t width() const { return m_width; }               ///< pixels
    std::uint32_t height() const { return m_height; }             ///< pixels
    const StreamInfo &stream() const { return m_stream; }         ///< region and formats
    const PixelMeaning &meaning() const { return m_meaning; }     ///< of the pixel format
    const FrameStamp &stamp() const { return m_stamp; }           ///< index and times
    std::uint32_t bitsPerPixel() const { return m_bitsPerPixel; } ///< of a sample, padding included

    /// The original samples with all their bits: rows without padding, 16-bit little-endian words
    /// where the format is deeper than 8 bits. Null if the frame had none.
    const std::uint8_t *samples() const { return m_samples.empty() ? nullptr : m_samples.data(); }
    /// Bytes of samples(), with whatever the camera appends.
    std::size_t sampleBytes() const { return m_samples.size(); }

    /// For the screen. Shares its pixels with screenImage().
    const QPixmap &screen() const { return m_screen; }
    /// Format_RGB32, made once.
    const QImage &screenImage() const { return m_screenImage; }

    /// The displayed image in the depth that is saved: Format_RGB888 or Format_Grayscale8. Made at
    /// each call; null without memory.
    QImage displayedImage() const;
    /// width x height x 3 bytes R, G, B; empty if the frame has no colour or there is no memory.
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
        m_plane; ///< the displayed plane, where the screen's rows are not those of the frame
    QImage m_screenImage;
    QPixmap m_screen;
};

using PicturePtr = std::shared_ptr<const Picture>;
Q_DECLARE_METATYPE(PicturePtr)

/// How the rows of the displayed plane are read.
enum class Rows {
    AlignedTo4, ///< Deliberate for streams: Qt's default alignment, which shears widths that are no
                ///< multiple of 4
    Packed,     ///< without padding, as they are
};

/// Makes pictures of frames in memory that is used again. Belongs to one thread; the pictures may
/// go to any.
class PictureMaker {
public:
    /// @param info of the stream that the frames belong to
    /// @param meaning of its pixel format
    PictureMaker(const StreamInfo &info, const PixelMeaning &meaning);

    /// Reads the frame's memory: samples once, and the displayed plane once. The picture keeps
    /// nothing of it.
    /// @param mostPixels larger frames are left alone
    /// @return null if the pixels to be displayed are missing, do not fit, or there is no memory
    /// for the screen's
    /// @throws std::bad_alloc without memory for the samples
    PicturePtr make(const PublishedFrame &published, Rows rows, std::uint64_t mostPixels);

private:
    std::shared_ptr<Picture> unused();
    QImage shownImage(const OImageFrame &frame, const std::uint8_t *pixels, Rows rows,
                      Picture *picture);

    StreamInfo m_info;
    PixelMeaning m_meaning;
    ScreenImages m_screenImages;
    std::array<std::shared_ptr<Picture>, 3>
        m_pictures; ///< those that nobody else holds are used again
};
