// SPDX-License-Identifier: MIT
// Controls the pause of the display thread, to exclude it from measurements.
#pragma once

#include <ctime>

/// Pause.cpp replaces usleep() in the program that links it: the pause of the display thread lasts
/// until endPause(). Any thread.
namespace pausing {

/// Makes pauses last until endPause(). This is the default.
void holdPauses();

/// Waits until the display thread pauses.
void waitForPause();

/// The clock of the display thread's processor time; valid once it has paused.
clockid_t displayThreadClock();

/// Ends the current pause, or the next one.
void endPause();

/// Makes the display thread run without pauses, so that it can be joined.
void letPausesGo();

} // namespace pausing
