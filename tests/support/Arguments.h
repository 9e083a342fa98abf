// SPDX-License-Identifier: MIT
// Arguments of the form "--name value" for programs that are short as a test and longer manually.
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>

namespace viewertest {

/// The text after "--name", else `usual`.
inline std::string textArgument(int argc, char *const *argv, std::string_view name,
                                std::string usual)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::string_view(argv[i]).substr(0, 2) == "--" &&
            std::string_view(argv[i]).substr(2) == name)
            return argv[i + 1];
    }
    return usual;
}

/// The integer after "--name", else `usual`.
inline long argument(int argc, char *const *argv, std::string_view name, long usual)
{
    const std::string text = textArgument(argc, argv, name, std::to_string(usual));
    return std::strtol(text.c_str(), nullptr, 10);
}

} // namespace viewertest
