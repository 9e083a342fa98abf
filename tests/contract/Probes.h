// SPDX-License-Identifier: MIT
// Every entry point, called the way that a program would use it on a camera that it does not know.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace contract {

/// Uses one entry point in earnest: reads, or sets another value, reads it back and puts the old
/// one back; names, nodes and registers are written as they were read, so that every camera can say
/// yes. Returns ORVALIS_ERROR_NOT_SUPPORTED if the camera has nothing that it is for.
struct Probe {
    std::string name; ///< of the entry point
    std::function<std::int32_t(OCameraHandle)> use;
};

/// Of everything that needs a handle, in the order of OrvalisAPI.h, but what ends the camera last.
std::vector<Probe> probes();

} // namespace contract
