// SPDX-License-Identifier: MIT
// Pictures for the screen, made in memory that is used again.
#include "capture/ScreenImages.h"

#include <QtEndian>

#include <atomic>
#include <cstddef>

namespace {

void grayRow(const uchar *__restrict in, int width, QRgb *__restrict out)
{
    for (int x = 0; x < width; ++x)
        out[x] = qRgb(in[x], in[x], in[x]);
}

void rgbRow(const uchar *__restrict in, int width, QRgb *__restrict out)
{
    constexpr QRgb opaque = 0xFF000000;
    const int last = width - 1;
    // One read for all three bytes takes the first of the next pixel as well.
    for (int x = 0; x < last; ++x)
        out[x] = opaque | qFromBigEndian<quint32>(in + 3 * x) >> 8;
    out[last] = qRgb(in[3 * last], in[3 * last + 1], in[3 * last + 2]);
}

void convert(const QImage &image, QImage *out)
{
    const auto convertRow = image.format() == QImage::Format_RGB888 ? rgbRow : grayRow;
    uchar *rows = out->bits();
    for (int y = 0; y < image.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(rows + std::ptrdiff_t{y} * out->bytesPerLine());
        convertRow(image.constScanLine(y), image.width(), row);
    }
}

} // namespace

QImage &ScreenImages::unusedImage()
{
    for (QImage &image : m_images) {
        if (!image.isDetached())
            continue; // null, or shared with a pixmap
        // Behind the last look that another thread took at the pixels.
        std::atomic_thread_fence(std::memory_order_acquire);
        return image;
    }
    QImage &oldest = m_images[m_oldest++ % m_images.size()];
    oldest = QImage(); // lives on with its pixmap
    return oldest;
}

QPixmap ScreenImages::pixmapOf(const QImage &image)
{
    QImage &filled = unusedImage();
    if (filled.size() != image.size())
        filled = QImage(image.size(), QImage::Format_RGB32);
    if (filled.isNull())
        return {}; // no memory
    convert(image, &filled);
    return QPixmap::fromImage(filled);
}
