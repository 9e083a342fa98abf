// SPDX-License-Identifier: MIT
// The display thread's pause under the program's own control, so that its length is not measured.
#pragma once

#include <ctime>

/// The program that links Pause.cpp has a usleep() of its own: the pause of the display thread ends
/// when it is told to. Any thread.
namespace pausing {

/// From now on a pause lasts until endPause(). So it is in the beginning.
void holdPauses();

/// Waits until the display thread pauses.
void waitForPause();

/// The clock of the display thread's processor time, once it has paused.
clockid_t displayThreadClock();

/// Ends the present pause, or the next one.
void endPause();

/// From now on the display thread runs without a pause, so that it can be joined.
void letPausesGo();

} // namespace pausing
