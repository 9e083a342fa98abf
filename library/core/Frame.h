// SPDX-License-Identifier: MIT
// One delivered frame: the record that a callback gets, and whatever its planes live in.
#pragma once

#include "library/convert/PixelFormat.h"
#include "library/core/Device.h"

#include <atomic>
#include <memory>

namespace orvalis {

/// Memory that grows when it must and is never initialised.
class Buffer {
public:
    /// At least `size` bytes, contents lost when it has to grow. Throws std::bad_alloc.
    std::uint8_t *reserve(std::size_t size)
    {
        if (size > capacity_) {
            data_.reset(); // first, so that old and new memory never stand side by side
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

/// A frame and its memory. Filled by the delivery thread, unchanged from then on until FrameRing
/// gives it out again.
struct Frame {
    OImageFrame record{};
    const PixelFormat *format = nullptr; ///< of the raw plane, never a packed one
    RawImage source; ///< keeps record.raw alive where that is the camera's memory
    Buffer raw;
    Buffer rgb;
    Buffer mono8;
    Clock::time_point delivered{};
    std::atomic<bool> taken{false}; ///< a grab reads it: not to be filled again

    /// Bytes of all planes.
    std::size_t bytes() const
    {
        return raw.capacity() + rgb.capacity() + mono8.capacity() + source.size;
    }
};

/// Fills `frame` from what the camera sent: raw (unpacked, without a copy where the image can be
/// held), rgb (colour formats, and Bayer if `bayerConversion`), mono8 (deeper than 8 bits). False
/// for an image that the library cannot deliver. Throws std::bad_alloc.
bool fillFrame(Frame &frame, const RawImage &image, bool bayerConversion);

} // namespace orvalis
