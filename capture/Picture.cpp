// SPDX-License-Identifier: MIT
// One image of a camera, immutable and shared by the view, saving and all code that reads pixels.
#include "capture/Picture.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <atomic>
#include <cstring>

namespace {

constexpr int rgbBytes = 3;

QImage::Format depthOf(FramePlane plane)
{
    return plane == FramePlane::Rgb ? QImage::Format_RGB888 : QImage::Format_Grayscale8;
}

cv::Mat matOf(const QImage &image, int type)
{
    return {image.height(), image.width(), type, const_cast<uchar *>(image.constBits()),
            static_cast<std::size_t>(image.bytesPerLine())};
}

/// Uses OpenCV because Qt converts large images on the thread pool, behind pending save tasks.
void toColor(const QImage &screen, cv::Mat *out)
{
    cv::cvtColor(matOf(screen, CV_8UC4), *out, cv::COLOR_BGRA2RGB);
}

bool isAligned(std::size_t rowBytes) { return rowBytes % 4 == 0; }

} // namespace

QImage Picture::displayedImage() const
{
    QImage image(m_screenImage.size(), depthOf(m_meaning.plane));
    if (image.isNull())
        return image;
    cv::Mat out = matOf(image, m_meaning.plane == FramePlane::Rgb ? CV_8UC3 : CV_8UC1);
    if (m_meaning.plane == FramePlane::Rgb)
        toColor(m_screenImage, &out);
    else
        cv::extractChannel(matOf(m_screenImage, CV_8UC4), out, 0); // all channels are the same grey
    return image;
}

QByteArray Picture::rgb() const
{
    if (m_meaning.plane != FramePlane::Rgb)
        return {};
    if (!m_plane.empty())
        return {reinterpret_cast<const char *>(m_plane.data()),
                static_cast<int>(std::size_t{rgbBytes} * m_width * m_height)};
    QByteArray bytes(rgbBytes * m_screenImage.width() * m_screenImage.height(), Qt::Uninitialized);
    cv::Mat out(m_screenImage.height(), m_screenImage.width(), CV_8UC3, bytes.data());
    toColor(m_screenImage, &out);
    return bytes;
}

PictureMaker::PictureMaker(const StreamInfo &info, const PixelMeaning &meaning)
    : m_info(info), m_meaning(meaning)
{
}

/// A picture that no caller holds, or a new one while the window lags behind.
std::shared_ptr<Picture> PictureMaker::unused()
{
    for (std::shared_ptr<Picture> &picture : m_pictures) {
        if (picture == nullptr)
            picture = std::make_shared<Picture>();
        if (picture.use_count() > 1)
            continue;
        std::atomic_thread_fence(
            std::memory_order_acquire); // after the last read by another thread
        picture->m_screen = {};
        picture->m_screenImage = {};
        return picture;
    }
    return std::make_shared<Picture>();
}

/// The displayed plane as an image that refers to the frame's memory if it reads the rows as they
/// are, else to a copy padded at its end so that aligned rows do not read beyond it.
QImage PictureMaker::displayedPlane(const OImageFrame &frame, const std::uint8_t *pixels, Rows rows,
                                    Picture *picture)
{
    const auto width = static_cast<int>(frame.width);
    const auto height = static_cast<int>(frame.height);
    const std::size_t rowBytes = pixelBytes(m_meaning.plane) * frame.width;
    picture->m_plane.clear();
    if (rows == Rows::Packed || isAligned(rowBytes))
        return {pixels, width, height, static_cast<int>(rowBytes), depthOf(m_meaning.plane)};
    const std::size_t alignedBytes = (rowBytes + 3) / 4 * 4 * frame.height;
    picture->m_plane.resize(alignedBytes);
    std::memcpy(picture->m_plane.data(), pixels, rowBytes * frame.height);
    return {picture->m_plane.data(), width, height, depthOf(m_meaning.plane)};
}

PicturePtr PictureMaker::make(const PublishedFrame &published, Rows rows, std::uint64_t maxPixels)
{
    const OImageFrame frame = *published.frame; // copied: the record may change meanwhile
    const std::uint8_t *pixels = displayedPixels(frame, m_meaning.plane, maxPixels);
    if (pixels == nullptr)
        return nullptr;
    const std::shared_ptr<Picture> picture = unused();
    picture->m_width = frame.width;
    picture->m_height = frame.height;
    picture->m_bitsPerPixel = frame.bitsPerPixel;
    picture->m_stream = m_info;
    picture->m_meaning = m_meaning;
    picture->m_stamp = published.stamp;
    const std::size_t bytes = rawPlaneBytes(frame, m_info.pixelFormat);
    picture->m_samples.resize(bytes);
    if (bytes > 0)
        std::memcpy(picture->m_samples.data(), frame.raw, bytes);
    picture->m_screenImage =
        m_screenImages.imageOf(displayedPlane(frame, pixels, rows, picture.get()));
    if (picture->m_screenImage.isNull())
        return nullptr;
    picture->m_screen = QPixmap::fromImage(picture->m_screenImage);
    return picture;
}
