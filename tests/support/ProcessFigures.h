// SPDX-License-Identifier: MIT
// Resource usage of the running process, for tests that repeat a step many times.
#pragma once

#include <functional>

namespace viewertest {

struct ProcessFigures {
    long residentKiB = 0; ///< resident memory
    long peakKiB = 0;     ///< largest resident memory so far
    int threads = 0;
    int descriptors = 0; ///< open files, sockets and the like
};

/// Current figures of this process. A figure that the system does not report is 0.
ProcessFigures processFigures();

/// Prints `what` and `figures` as one line and flushes.
void printFigures(const char *what, const ProcessFigures &figures);

/// Calls `step` that many times and prints figures at ten points in between.
/// @param what name of the step, for the print
void repeat(const char *what, long times, const std::function<void()> &step);

} // namespace viewertest
