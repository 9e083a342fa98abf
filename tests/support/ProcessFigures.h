// SPDX-License-Identifier: MIT
// What the running program takes of the machine: for tests that repeat something many times.
#pragma once

#include <functional>

namespace viewertest {

struct ProcessFigures {
    long residentKiB = 0; ///< memory that is in use now
    long peakKiB = 0;     ///< the most that ever was
    int threads = 0;
    int descriptors = 0; ///< open files, sockets and the like
};

/// Of this process, now. Everything is 0 where the system does not tell.
ProcessFigures processFigures();

/// Prints `figures` behind `what` as one line, at once.
void printFigures(const char *what, const ProcessFigures &figures);

/// Calls `step` so many times, and prints figures ten times on the way.
/// @param what is repeated, for the print
void repeat(const char *what, long times, const std::function<void()> &step);

} // namespace viewertest
