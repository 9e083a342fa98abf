// SPDX-License-Identifier: MIT
// Debug messages on standard error, enabled by ORVALIS_DEBUG=1.
#include "library/core/Debug.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace orvalis {

bool debugEnabled()
{
    static const bool enabled = [] {
        const char *value = std::getenv("ORVALIS_DEBUG");
        return value && *value && std::strcmp(value, "0") != 0;
    }();
    return enabled;
}

void debugPrint(const char *format, ...)
{
    if (!debugEnabled())
        return;
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    // One call for each line, so that lines of different threads do not mix.
    std::fprintf(stderr, "OrvalisAPI: %s\n", line);
}

} // namespace orvalis
