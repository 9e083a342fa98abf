// SPDX-License-Identifier: MIT
// Every entry point that takes a handle, called with arguments made up for its signature.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace contract {

struct EntryPoint {
    const char *name;
    /// Calls it with good arguments of no special meaning.
    std::function<std::int32_t(OCameraHandle)> call;
    /// Calls it with null for its n-th pointer and good arguments else.
    std::function<std::int32_t(OCameraHandle, std::size_t)> callWithNull;
    std::size_t pointers; ///< arguments that are pointers, the handle not counted
};

const std::vector<EntryPoint> &entryPoints();

} // namespace contract
