// SPDX-License-Identifier: MIT
// Makes sure that pool tasks get a thread.
#pragma once

class QThreadPool;

/// Starts all threads of `pool` and keeps them until the pool is destroyed. Returns at once. If the
/// pool started threads on demand and the system refused one, its task would never run, and the
/// frame that it saves would be lost.
void keepPoolThreads(QThreadPool *pool);

/// Whether a file descriptor is available. Without one, the program ends when the pool starts a
/// thread in addition to those that it keeps.
bool mayStartPoolThread();
