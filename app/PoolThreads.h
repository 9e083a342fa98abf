// SPDX-License-Identifier: MIT
// Threads for the tasks of the window.
#pragma once

/// Starts all threads of the global pool, and lets none of them end before the program does.
/// Returns at once. A task for which the pool could start no thread any more would never run, and
/// the frame that it should save would be lost.
void keepPoolThreads();

/// Whether the system has a descriptor left. Without one, a thread that the pool starts in addition
/// to those that it keeps would end the program.
bool mayStartPoolThread();
