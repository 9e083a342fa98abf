// SPDX-License-Identifier: MIT
// Counts what a stretch of code takes from the heap.
#pragma once

/// Counts the calls of operator new on this thread while it lives. The program links
/// CountedAllocations.cpp, which replaces operator new and operator delete.
class CountedAllocations {
public:
    CountedAllocations();
    ~CountedAllocations();
    CountedAllocations(const CountedAllocations &) = delete;
    CountedAllocations &operator=(const CountedAllocations &) = delete;

    int count() const;
};
