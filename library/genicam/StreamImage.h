// SPDX-License-Identifier: MIT
// What has come in a buffer of a stream.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Glib.h"

namespace orvalis {

/// What a buffer that came back from a stream is good for.
enum class BufferContent {
    Image,
    Other,  ///< it arrived, but is no image that is understood
    Damaged ///< parts of it got lost
};

/// Looks into a buffer that has room for `room` bytes. An image is described in `image`, which
/// points into the buffer, or, where rows were followed by padding, has memory of its own. Of
/// several parts it is the first image; of chunks, the image before them; of a frame of fewer lines
/// than announced, those that came.
BufferContent contentOf(ArvBuffer *buffer, std::size_t room, RawImage &image);

} // namespace orvalis
