// SPDX-License-Identifier: MIT
// All entry points with a handle, called with arguments generated from the signature.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace contract {

struct EntryPoint {
    const char *name;
    /// Calls it with valid arguments of no special meaning.
    std::function<std::int32_t(OCameraHandle)> call;
    /// Calls it with null for its n-th pointer and valid arguments otherwise.
    std::function<std::int32_t(OCameraHandle, std::size_t)> callWithNull;
    std::size_t pointers; ///< number of pointer arguments, without the handle
};

const std::vector<EntryPoint> &entryPoints();

} // namespace contract
