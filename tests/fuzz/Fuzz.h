// SPDX-License-Identifier: MIT
// Shared by all fuzzers: the function called for each input, and a check that ends the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Called once for each input; always returns 0. Must not keep state that affects later inputs.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace fuzz {

[[noreturn]] inline void fail(const char *condition, const char *file, int line)
{
    std::fprintf(stderr, "%s:%d: not true: %s\n", file, line, condition);
    std::abort();
}

} // namespace fuzz

/// Reports a finding unless `condition` holds, in every build type, unlike assert().
#define FUZZ_CHECK(condition)                                                                      \
    ((condition) ? static_cast<void>(0) : fuzz::fail(#condition, __FILE__, __LINE__))
