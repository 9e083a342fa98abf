// SPDX-License-Identifier: MIT
// All entry points, called as a program would call them on an unknown camera.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace contract {

/// Uses one entry point: reads, or sets another value, reads it back and restores the old one.
/// Names, nodes and registers are written unchanged, so that every camera can succeed. Returns
/// ORVALIS_ERROR_NOT_SUPPORTED if the camera lacks the feature.
struct Probe {
    std::string name; ///< of the entry point
    std::function<std::int32_t(OCameraHandle)> use;
};

/// Probes of all entry points with a handle, in the order of OrvalisAPI.h, except that those that
/// disconnect the camera are last.
std::vector<Probe> probes();

} // namespace contract
