// SPDX-License-Identifier: MIT
// Waits for pending save tasks after the window has closed.
#pragma once

class SaveLimiter;

/// Returns when every frame is saved, or when the user gives up. After 1.5 s it displays a message,
/// since the disk may never respond, and processes events from then on. GUI thread.
void awaitSaves(SaveLimiter &limiter);
