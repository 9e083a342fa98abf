// SPDX-License-Identifier: MIT
// Interprets the content of a stream buffer.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Glib.h"

namespace orvalis {

/// The content of a finished buffer.
enum class BufferContent {
    Image,
    Other,  ///< complete, but not an image that the library supports
    Damaged ///< incomplete
};

/// Interprets a buffer of `room` bytes. Describes an image in `image`, which points into the
/// buffer, or, if rows have padding, has its own memory. Takes the first image of several parts,
/// the image before chunks, and the received lines of a frame with fewer lines than announced.
BufferContent contentOf(ArvBuffer *buffer, std::size_t room, RawImage &image);

} // namespace orvalis
