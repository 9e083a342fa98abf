// SPDX-License-Identifier: MIT
// A frame callback that runs whatever a test gives it.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <functional>

namespace orvalis::test {

/// Set only while nothing streams.
inline std::function<void(OImageFrame *)> onFrame;

inline void frameCallback(OImageFrame *frame)
{
    if (onFrame)
        onFrame(frame);
}

} // namespace orvalis::test
