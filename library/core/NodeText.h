// SPDX-License-Identifier: MIT
// Converts node values to text and back.
#pragma once

#include "library/core/NodeMap.h"

#include <string>
#include <string_view>

namespace orvalis {

/// The value of any node that has one: strings as they are, enumerations as the name of the entry,
/// numbers in decimal, booleans as 0 or 1. ORVALIS_ERROR_WRONG_TYPE for a node without a value.
OResult readAsText(NodeMap &nodes, std::string_view name, std::string &text);

/// The reverse. ORVALIS_ERROR_BAD_ARGUMENT for text that is no number for a number,
/// ORVALIS_ERROR_OUT_OF_RANGE for text too long for a string node or a number too large for any.
OResult writeAsText(NodeMap &nodes, std::string_view name, std::string_view text);

} // namespace orvalis
