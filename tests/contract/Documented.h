// SPDX-License-Identifier: MIT
// Which results OrvalisAPI.h documents for which function.
#pragma once

#include <cstdint>
#include <string>

namespace contract {

/// True for a code that the header names at `function`, at its group, at the function that it
/// refers to, or in the conventions that hold for every function.
bool isDocumented(const std::string &function, std::int32_t result);

} // namespace contract
