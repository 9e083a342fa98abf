// SPDX-License-Identifier: MIT
// Loops that use the processor's vector units.
#pragma once

#ifdef __has_feature
#define ORVALIS_HAS_FEATURE(feature) __has_feature(feature)
#else
#define ORVALIS_HAS_FEATURE(feature) 0
#endif

/// Attribute of a function: the compiler generates one version for processors with AVX2 and one for
/// all others, and the dynamic linker selects the right one. Not with the thread sanitizer, which
/// is not initialised yet when the dynamic linker selects.
#if defined(__x86_64__) && defined(__gnu_linux__) && !defined(__SANITIZE_THREAD__) &&              \
    !ORVALIS_HAS_FEATURE(thread_sanitizer)
#define ORVALIS_VECTORISED __attribute__((target_clones("avx2", "default")))
#else
#define ORVALIS_VECTORISED
#endif
