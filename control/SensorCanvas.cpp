// SPDX-License-Identifier: MIT
// Buffers and painting of the sensor preview.
#include "control/SensorCanvas.h"

#include "capture/RawConversion.h"

#include <QPainter>

#include <algorithm>
#include <new>

namespace {

constexpr int maxSide = 32767; // limit of QPainter
constexpr std::size_t maxPixels = 200'000'000;

bool isPlausible(int width, int height)
{
    return 0 < width && width <= maxSide && 0 < height && height <= maxSide &&
           static_cast<std::size_t>(width) * static_cast<std::size_t>(height) <= maxPixels;
}

} // namespace

bool SensorCanvas::fitTo(const OSizeInfo &size)
{
    const int width = size.maxWidth;
    const int height = size.maxHeight;
    if (!isEmpty() && m_canvas.width() == width && m_canvas.height() == height)
        return false;
    clear();
    if (!isPlausible(width, height))
        return false;
    const auto pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    try {
        m_raw.resize(pixels * 2);
        m_rgb.resize(pixels * 3);
    } catch (const std::bad_alloc &) {
        clear();
        return false;
    }
    m_canvas = QImage(width, height, QImage::Format_RGB888);
    m_canvas.fill(Qt::white);
    return !isEmpty();
}

void SensorCanvas::clear()
{
    m_canvas = QImage();
    m_raw = {};
    m_rgb = {};
}

OImageFrame *SensorCanvas::frame()
{
    m_frame = {};
    m_frame.raw = m_raw.data();
    m_frame.rgb = m_rgb.data();
    return &m_frame;
}

int SensorCanvas::rowsIn(std::size_t capacity, std::size_t bytesPerRow) const
{
    if (bytesPerRow == 0)
        return 0;
    const std::size_t rows = std::min<std::size_t>(m_frame.height, capacity / bytesPerRow);
    return static_cast<int>(std::min<std::size_t>(rows, maxSide));
}

void SensorCanvas::paintRgb(const OSizeInfo &size) { paint(size, m_rgb.data(), m_rgb.size(), 3); }

void SensorCanvas::paintGrey(const OSizeInfo &size) { paint(size, m_raw.data(), m_raw.size(), 1); }

void SensorCanvas::paintWords(const OSizeInfo &size, int bits)
{
    const int rows = rowsIn(m_raw.size(), std::size_t{m_frame.width} * 2);
    if (rows > 0)
        rawToGray8(m_rgb.data(), m_raw.data(), static_cast<int>(m_frame.width), rows, bits);
    paint(size, m_rgb.data(), m_raw.size() / 2, 1);
}

void SensorCanvas::paint(const OSizeInfo &size, const std::uint8_t *pixels, std::size_t capacity,
                         int depth)
{
    m_canvas.fill(Qt::white);
    const std::size_t stride = std::size_t{m_frame.width} * static_cast<std::size_t>(depth);
    const int rows = rowsIn(capacity, stride);
    const QRect sensor = m_canvas.rect();
    if (rows == 0 || !sensor.contains(size.offsetX, size.offsetY))
        return;
    // Pass the stride: rows have no padding, and QImage would assume rows aligned to 4 bytes.
    const int columns = std::min(static_cast<int>(m_frame.width), sensor.width());
    const QImage image(pixels, columns, std::min(rows, sensor.height()), static_cast<int>(stride),
                       depth == 3 ? QImage::Format_RGB888 : QImage::Format_Grayscale8);
    QPainter painter(&m_canvas);
    painter.drawImage(QPointF(size.offsetX, size.offsetY), image);
}
