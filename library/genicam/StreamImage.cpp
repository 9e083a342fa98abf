// SPDX-License-Identifier: MIT
// Interprets the content of a stream buffer.
#include "library/genicam/StreamImage.h"

#include "library/convert/PixelFormat.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

namespace orvalis {
namespace {

/// The first part of a complete buffer that is an image.
std::optional<guint> imagePart(ArvBuffer *buffer)
{
    const ArvBufferPayloadType type = arv_buffer_get_payload_type(buffer);
    if (type != ARV_BUFFER_PAYLOAD_TYPE_IMAGE &&
        type != ARV_BUFFER_PAYLOAD_TYPE_EXTENDED_CHUNK_DATA &&
        type != ARV_BUFFER_PAYLOAD_TYPE_MULTIPART)
        return std::nullopt;
    for (guint part = 0; part < arv_buffer_get_n_parts(buffer); ++part)
        if (arv_buffer_get_part_data_type(buffer, part) == ARV_BUFFER_PART_DATA_TYPE_2D_IMAGE)
            return part;
    return std::nullopt;
}

/// The image as the camera announced it.
bool announcedImage(ArvBuffer *buffer, guint part, RawImage &image)
{
    size_t size = 0;
    image.data = static_cast<const std::uint8_t *>(arv_buffer_get_part_data(buffer, part, &size));
    image.size = size;
    const int width = arv_buffer_get_part_width(buffer, part);
    const int height = arv_buffer_get_part_height(buffer, part);
    image.width = static_cast<std::uint32_t>(std::max(width, 0));
    image.height = static_cast<std::uint32_t>(std::max(height, 0));
    image.pixelFormat = arv_buffer_get_part_pixel_format(buffer, part);
    return image.data != nullptr && image.width > 0 && image.height > 0;
}

/// Removes padding after rows; false for formats whose rows share bytes.
bool removePadding(RawImage &image, int padding)
{
    const PixelFormat *format = findPixelFormat(image.pixelFormat);
    const std::size_t bits =
        format != nullptr ? std::size_t{format->bitsPerPixel} * image.width : 1;
    const std::size_t row = bits / 8;
    const std::size_t stride = row + static_cast<std::size_t>(padding);
    image.height =
        static_cast<std::uint32_t>(std::min<std::size_t>(image.height, image.size / stride));
    if (bits % 8 != 0 || image.height == 0)
        return false;
    const auto rows = std::make_shared<std::vector<std::uint8_t>>(row * image.height);
    for (std::size_t y = 0; y < image.height; ++y)
        std::memcpy(rows->data() + y * row, image.data + y * stride, row);
    image.data = rows->data();
    image.size = rows->size();
    image.owner = rows;
    return true;
}

/// Removes what follows the image. A camera may also send fewer lines than announced: a line scan
/// camera whose trigger ended. False if it sent none, or if Aravis dropped lines that did not fit
/// the buffer.
bool cutToLines(RawImage &image, std::size_t room)
{
    const PixelFormat *format = findPixelFormat(image.pixelFormat);
    const std::size_t announced =
        format != nullptr ? imageBytes(*format, image.width, image.height) : 0;
    if (image.size >= announced) {
        image.size = announced > 0 ? announced : image.size;
        return true;
    }
    if (announced > room)
        return false;
    const std::size_t line = std::size_t{format->bitsPerPixel} * image.width;
    image.height = static_cast<std::uint32_t>(image.size * 8 / line);
    return image.height > 0;
}

} // namespace

BufferContent contentOf(ArvBuffer *buffer, std::size_t room, RawImage &image)
{
    const ArvBufferStatus status = arv_buffer_get_status(buffer);
    if (status == ARV_BUFFER_STATUS_TIMEOUT || status == ARV_BUFFER_STATUS_MISSING_PACKETS ||
        status == ARV_BUFFER_STATUS_WRONG_PACKET_ID)
        return BufferContent::Damaged;
    const auto part = status == ARV_BUFFER_STATUS_SUCCESS ? imagePart(buffer) : std::nullopt;
    RawImage found;
    if (!part || !announcedImage(buffer, *part, found))
        return BufferContent::Other;
    int paddingX = 0;
    int paddingY = 0;
    arv_buffer_get_part_padding(buffer, *part, &paddingX, &paddingY);
    if ((paddingX > 0 && !removePadding(found, paddingX)) || !cutToLines(found, room))
        return BufferContent::Other;
    image = std::move(found);
    return BufferContent::Image;
}

} // namespace orvalis
