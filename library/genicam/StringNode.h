// SPDX-License-Identifier: MIT
// String nodes, whatever length their registers claim. All of it needs the camera's turn.
#pragma once

#include "library/genicam/Glib.h"

namespace orvalis {

/// Reads the first ORVALIS_TEXT_SIZE bytes, up to the NUL. `text` is unchanged after a failure,
/// which is in the result or in `failure`; here and below for a sound node (NodeReach).
OResult readText(ArvGcFeatureNode *node, std::string &text, Failure &failure);

/// ORVALIS_ERROR_OUT_OF_RANGE for a text that does not fit the camera's register. Of a register
/// longer than ORVALIS_TEXT_SIZE only the beginning is written, with a NUL behind the text.
OResult writeText(ArvGcFeatureNode *node, const std::string &text, Failure &failure);

} // namespace orvalis
