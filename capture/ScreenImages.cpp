// SPDX-License-Identifier: MIT
// Converts frames to images for the screen and reuses their memory.
#include "capture/ScreenImages.h"

#include <opencv2/imgproc.hpp>

#include <atomic>
#include <cstddef>
#include <memory>

#include <sys/mman.h>

namespace {

/// Uses OpenCV because Qt converts large images on the thread pool, behind pending save tasks.
/// Format_RGB32 is B, G, R and 255 in memory.
void convert(const QImage &image, QImage *out)
{
    const bool color = image.format() == QImage::Format_RGB888;
    const cv::Mat pixels(image.height(), image.width(), color ? CV_8UC3 : CV_8UC1,
                         const_cast<uchar *>(image.constBits()),
                         static_cast<std::size_t>(image.bytesPerLine()));
    cv::Mat screen(out->height(), out->width(), CV_8UC4, out->bits(),
                   static_cast<std::size_t>(out->bytesPerLine()));
    cv::cvtColor(pixels, screen, color ? cv::COLOR_RGB2BGRA : cv::COLOR_GRAY2BGRA);
}

struct Mapping {
    void *address;
    std::size_t bytes;
};

void unmap(void *mapping)
{
    const std::unique_ptr<Mapping> owned(static_cast<Mapping *>(mapping));
    (void)munmap(owned->address, owned->bytes);
}

/// An image whose memory returns to the system with its last holder; the heap would keep the memory
/// of images that a lagging window held. Null if memory runs out.
QImage mappedImage(const QSize &size)
{
    const int stride = size.width() * static_cast<int>(sizeof(QRgb));
    const std::size_t bytes =
        static_cast<std::size_t>(stride) * static_cast<std::size_t>(size.height());
    void *address =
        mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (address == MAP_FAILED)
        return {};
    return {static_cast<uchar *>(address),
            size.width(),
            size.height(),
            stride,
            QImage::Format_RGB32,
            unmap,
            new Mapping{address, bytes}};
}

} // namespace

QImage &ScreenImages::unusedImage()
{
    for (QImage &image : m_images) {
        if (image.isNull())
            return image; // fill all first, so that memory does not grow when the window lags later
        if (!image.isDetached())
            continue; // shared with a pixmap
        // After the last read of the pixels by another thread.
        std::atomic_thread_fence(std::memory_order_acquire);
        return image;
    }
    QImage &oldest = m_images[m_oldest++ % m_images.size()];
    oldest = QImage(); // its pixmap keeps the memory
    return oldest;
}

QImage ScreenImages::imageOf(const QImage &image)
{
    QImage &filled = unusedImage();
    if (filled.size() != image.size())
        filled = mappedImage(image.size());
    if (filled.isNull())
        return {}; // no memory
    convert(image, &filled);
    return filled;
}
