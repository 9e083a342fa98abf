// SPDX-License-Identifier: MIT
// A wall clock that a test can set. Linking this file replaces the system's clock in the program.
#pragma once

#include <chrono>

namespace faults {

/// Sets the offset of the wall clock from the system's. Monotonic clocks do not change.
void setClockOff(std::chrono::milliseconds offset);

} // namespace faults
