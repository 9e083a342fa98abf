// SPDX-License-Identifier: MIT
// A machine that refuses large allocations: replaces functions of the C library.
#include "tests/faults/Shortage.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <limits>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
}

namespace {

constexpr std::size_t everything = std::numeric_limits<std::size_t>::max();
std::atomic<std::size_t> smallestRefused{everything};
std::atomic<int> refusals{0};

bool isRefused(std::size_t size)
{
    if (size < smallestRefused)
        return false;
    ++refusals;
    errno = ENOMEM;
    return true;
}

} // namespace

namespace faults {

NoMemory::NoMemory(std::size_t smallest)
{
    refusals = 0;
    smallestRefused = smallest;
}

NoMemory::~NoMemory() { smallestRefused = everything; }

int NoMemory::refused() { return refusals; }

} // namespace faults

extern "C" {

__attribute__((visibility("default"))) void *malloc(std::size_t size)
{
    return isRefused(size) ? nullptr : __libc_malloc(size);
}

__attribute__((visibility("default"))) void *calloc(std::size_t count, std::size_t size)
{
    return isRefused(count * size) ? nullptr : __libc_calloc(count, size);
}

__attribute__((visibility("default"))) void *realloc(void *memory, std::size_t size)
{
    return isRefused(size) ? nullptr : __libc_realloc(memory, size);
}
}
