// SPDX-License-Identifier: MIT
// Threads for the tasks of the window.
#pragma once

class QThreadPool;

/// Starts all threads of `pool`, and lets none of them end before the pool does. Returns at once. A
/// task for which the pool could start no thread any more would never run: a frame that it should
/// save would be lost.
void keepPoolThreads(QThreadPool *pool);

/// Whether the system has a descriptor left. Without one, a thread that the pool starts in addition
/// to those that it keeps would end the program.
bool mayStartPoolThread();
