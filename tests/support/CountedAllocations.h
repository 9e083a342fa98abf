// SPDX-License-Identifier: MIT
// Counts heap allocations in a scope.
#pragma once

/// Counts the calls of operator new on this thread during its lifetime. The program must link
/// CountedAllocations.cpp, which replaces operator new and operator delete.
class CountedAllocations {
public:
    CountedAllocations();
    ~CountedAllocations();
    CountedAllocations(const CountedAllocations &) = delete;
    CountedAllocations &operator=(const CountedAllocations &) = delete;

    int count() const;
};
