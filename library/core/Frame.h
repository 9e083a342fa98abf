// SPDX-License-Identifier: MIT
// One delivered frame: the record that a callback gets, and the memory of its planes.
#pragma once

#include "library/convert/PixelFormat.h"
#include "library/core/Device.h"

#include <atomic>
#include <memory>

namespace orvalis {

/// A growable buffer of uninitialised memory.
class Buffer {
public:
    /// Returns at least `size` bytes. Discards the contents if it grows. Throws std::bad_alloc.
    std::uint8_t *reserve(std::size_t size)
    {
        if (size > capacity_) {
            data_.reset(); // first, so that old and new memory are never allocated together
            capacity_ = 0;
            data_ = std::make_unique_for_overwrite<std::uint8_t[]>(size);
            capacity_ = size;
        }
        return data_.get();
    }
    /// Bytes.
    std::size_t capacity() const { return capacity_; }

private:
    std::unique_ptr<std::uint8_t[]> data_;
    std::size_t capacity_ = 0;
};

/// A frame and its memory. The camera's thread fills it; it stays unchanged until FrameRing reuses
/// it.
struct Frame {
    OImageFrame record{};
    const PixelFormat *format = nullptr; ///< of the raw plane, never a packed one
    RawImage source;                     ///< keeps record.raw valid if that is the camera's memory
    Buffer raw;
    Buffer rgb;
    Buffer mono8;
    Clock::time_point delivered{};
    std::atomic<bool> taken{false}; ///< a grab reads it: do not reuse

    /// Bytes of all planes.
    std::size_t bytes() const
    {
        return raw.capacity() + rgb.capacity() + mono8.capacity() + source.size;
    }
};

/// Fills `frame` from a camera image: raw (unpacked; no copy if the image has an owner), rgb
/// (colour formats, and Bayer if `bayerConversion`), mono8 (more than 8 bits). False for an image
/// that the library cannot deliver. Throws std::bad_alloc.
bool fillFrame(Frame &frame, const RawImage &image, bool bayerConversion);

} // namespace orvalis
