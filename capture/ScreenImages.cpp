// SPDX-License-Identifier: MIT
// Pictures for the screen, made in memory that is used again.
#include "capture/ScreenImages.h"

#include <opencv2/imgproc.hpp>

#include <atomic>
#include <cstddef>
#include <memory>

#include <sys/mman.h>

namespace {

/// Not by Qt, which converts large pictures on the pool, where they would wait behind files that
/// are being saved. Format_RGB32 is B, G, R and 255 in memory.
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

/// Memory that goes back to the system with the last holder. The heap would keep that of pictures
/// which a late window held for a while. Null without memory.
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
            return image; // all are made at once: memory does not grow when the window is late
        if (!image.isDetached())
            continue; // shared with a pixmap
        // Behind the last look that another thread took at the pixels.
        std::atomic_thread_fence(std::memory_order_acquire);
        return image;
    }
    QImage &oldest = m_images[m_oldest++ % m_images.size()];
    oldest = QImage(); // lives on with its pixmap
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
