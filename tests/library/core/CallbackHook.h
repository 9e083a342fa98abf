// SPDX-License-Identifier: MIT
// A frame callback that runs a test's function.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <functional>

namespace orvalis::test {

/// Set it only while no camera streams.
inline std::function<void(OImageFrame *)> onFrame;

inline void frameCallback(OImageFrame *frame)
{
    if (onFrame)
        onFrame(frame);
}

} // namespace orvalis::test
