// SPDX-License-Identifier: MIT
// Whether the calling thread is one on which the recording library runs a frame callback.
#pragma once

namespace fakeorvalis {

bool isInsideCallback();

} // namespace fakeorvalis
