// SPDX-License-Identifier: MIT
// Counts heap allocations in a scope.
#include "tests/support/CountedAllocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool counting = false;
thread_local int allocations = 0;

} // namespace

void *operator new(std::size_t size)
{
    if (counting)
        ++allocations;
    if (void *memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }

CountedAllocations::CountedAllocations()
{
    allocations = 0;
    counting = true;
}

CountedAllocations::~CountedAllocations() { counting = false; }

int CountedAllocations::count() const { return allocations; }
