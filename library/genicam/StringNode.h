// SPDX-License-Identifier: MIT
// String nodes with registers of any length. All functions need the link's lock.
#pragma once

#include "library/genicam/Glib.h"

namespace orvalis {

/// Reads the first ORVALIS_TEXT_SIZE bytes, up to the NUL. Errors are in the result or in
/// `failure`; `text` is unchanged then. Both functions need a sound node (NodeReach).
OResult readText(ArvGcFeatureNode *node, std::string &text, Failure &failure);

/// ORVALIS_ERROR_OUT_OF_RANGE for a text that does not fit the camera's register. If the register
/// is longer than ORVALIS_TEXT_SIZE, writes only the text and a NUL.
OResult writeText(ArvGcFeatureNode *node, const std::string &text, Failure &failure);

} // namespace orvalis
