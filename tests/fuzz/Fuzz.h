// SPDX-License-Identifier: MIT
// What every fuzzer shares: the entry that is called for each input, and a check that ends the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Called once for each input; always returns 0. Keeps nothing that a later input could notice.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace fuzz {

[[noreturn]] inline void fail(const char *condition, const char *file, int line)
{
    std::fprintf(stderr, "%s:%d: not true: %s\n", file, line, condition);
    std::abort();
}

} // namespace fuzz

/// A finding unless `condition` holds; in every build type, as assert() would not be.
#define FUZZ_CHECK(condition)                                                                      \
    ((condition) ? static_cast<void>(0) : fuzz::fail(#condition, __FILE__, __LINE__))
