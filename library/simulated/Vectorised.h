// SPDX-License-Identifier: MIT
// Loops that use the vector units of the processor that they meet.
#pragma once

#ifdef __has_feature
#define ORVALIS_HAS_FEATURE(feature) __has_feature(feature)
#else
#define ORVALIS_HAS_FEATURE(feature) 0
#endif

/// In front of a function: the compiler makes two of it, one for processors with AVX2 and one for
/// all others, and the dynamic linker takes the right one. The choice is made before the thread
/// sanitizer is ready to watch it.
#if defined(__x86_64__) && defined(__gnu_linux__) && !defined(__SANITIZE_THREAD__) &&              \
    !ORVALIS_HAS_FEATURE(thread_sanitizer)
#define ORVALIS_VECTORISED __attribute__((target_clones("avx2", "default")))
#else
#define ORVALIS_VECTORISED
#endif
