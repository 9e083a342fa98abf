// SPDX-License-Identifier: MIT
// Writes TIFF files where Qt has no plugin that can.
#include "capture/TiffWriter.h"

#include <QDataStream>

#include <limits>

namespace {

enum Type : quint16 { Short = 3, Long = 4 };

struct Field {
    quint16 tag;
    Type type;
    quint32 count;
    quint32 value; // the offset of the values if they take more than 4 bytes
};

constexpr quint32 headerBytes = 8;
constexpr quint16 fieldCount = 9;
constexpr quint32 directoryBytes = 2 + fieldCount * 12 + 4;
constexpr quint32 depthsAt = headerBytes + directoryBytes;
constexpr quint32 pixelsAt = depthsAt + 3 * 2;

QDataStream &operator<<(QDataStream &stream, const Field &field)
{
    stream << field.tag << static_cast<quint16>(field.type) << field.count;
    // A short stands in the first two of four bytes; little-endian, it is the same as a long.
    return stream << field.value;
}

void writeDirectory(QDataStream *stream, const QImage &image, quint32 channels, quint32 bytes)
{
    const auto width = static_cast<quint32>(image.width());
    const auto height = static_cast<quint32>(image.height());
    const bool grey = channels == 1;
    const Field fields[fieldCount] = {
        {256, Long, 1, width},
        {257, Long, 1, height},
        {258, Short, channels, grey ? 8 : depthsAt},
        {259, Short, 1, 1},              // no compression
        {262, Short, 1, grey ? 1U : 2U}, // 0 is black; RGB
        {273, Long, 1, pixelsAt},
        {277, Short, 1, channels},
        {278, Long, 1, height}, // one strip
        {279, Long, 1, bytes},
    };
    *stream << fieldCount;
    for (const Field &field : fields)
        *stream << field;
    *stream << quint32{0}; // no further picture
}

} // namespace

QByteArray tiffFile(const QImage &image)
{
    const bool grey = image.format() == QImage::Format_Grayscale8;
    const QImage pixels =
        image.convertToFormat(grey ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    const int channels = grey ? 1 : 3;
    const qint64 bytes = qint64{pixels.width()} * channels * pixels.height();
    if (pixels.isNull() || bytes > std::numeric_limits<int>::max() - qint64{pixelsAt})
        return {};
    QByteArray file;
    file.reserve(static_cast<int>(bytes) + static_cast<int>(pixelsAt));
    QDataStream stream(&file, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("II\x2A\0", 4);
    stream << headerBytes;
    writeDirectory(&stream, pixels, static_cast<quint32>(channels), static_cast<quint32>(bytes));
    stream << quint16{8} << quint16{8} << quint16{8};
    for (int row = 0; row < pixels.height(); ++row)
        stream.writeRawData(reinterpret_cast<const char *>(pixels.constScanLine(row)),
                            pixels.width() * channels);
    return file;
}
