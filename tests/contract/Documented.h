// SPDX-License-Identifier: MIT
// Finds the results that OrvalisAPI.h documents for each function.
#pragma once

#include <cstdint>
#include <string>

namespace contract {

/// True if the header lists the code at `function`, at its group, at the function that it refers
/// to, or in the conventions of all functions.
bool isDocumented(const std::string &function, std::int32_t result);

} // namespace contract
