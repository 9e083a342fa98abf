// SPDX-License-Identifier: MIT
// Debug messages on standard error, enabled by ORVALIS_DEBUG=1.
#pragma once

namespace orvalis {

/// True if the environment enables messages; read once.
bool debugEnabled();

/// Prints one line (printf format, without a newline) if messages are enabled. Any thread.
[[gnu::format(printf, 1, 2)]] void debugPrint(const char *format, ...);

} // namespace orvalis
