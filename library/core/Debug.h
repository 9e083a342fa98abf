// SPDX-License-Identifier: MIT
// What the library does, on standard error, for whoever sets ORVALIS_DEBUG=1.
#pragma once

namespace orvalis {

/// True if the environment asks for messages; read once.
bool debugEnabled();

/// Prints one line (printf form, without a newline) if messages are asked for. Any thread.
[[gnu::format(printf, 1, 2)]] void debugPrint(const char *format, ...);

} // namespace orvalis
