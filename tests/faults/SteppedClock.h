// SPDX-License-Identifier: MIT
// The wall clock of this process, as a test sets it. Linked in, it takes the place of the system's.
#pragma once

#include <chrono>

namespace faults {

/// From now on the wall clock is off by `offset`; clocks that only go forward are left alone.
void setClockOff(std::chrono::milliseconds offset);

} // namespace faults
