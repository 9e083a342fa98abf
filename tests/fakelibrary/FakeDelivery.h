// SPDX-License-Identifier: MIT
// Tells whether the caller is a thread on which the recording library runs a frame callback.
#pragma once

namespace fakeorvalis {

bool isInsideCallback();

} // namespace fakeorvalis
