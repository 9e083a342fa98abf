// SPDX-License-Identifier: MIT
// The wait for frames that are still to be written when the window has closed.
#pragma once

class SaveLimiter;

/// Returns when every frame is written, or the user gives up. A wait of more than a moment shows a
/// message, as the disk may never answer, and lets events through. GUI thread.
void awaitSaves(SaveLimiter &limiter);
