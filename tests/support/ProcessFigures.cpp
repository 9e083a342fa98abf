// SPDX-License-Identifier: MIT
// Resource usage of the running process, read from the kernel.
#include "tests/support/ProcessFigures.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

namespace viewertest {

namespace {

int openDescriptors()
{
    std::error_code none;
    const std::filesystem::directory_iterator all("/proc/self/fd", none);
    // Without the descriptor of this directory.
    return none ? 0 : static_cast<int>(std::distance(begin(all), end(all))) - 1;
}

} // namespace

ProcessFigures processFigures()
{
    ProcessFigures figures;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos)
            continue;
        const std::string_view name = std::string_view(line).substr(0, colon);
        const long value = std::strtol(line.c_str() + colon + 1, nullptr, 10);
        if (name == "VmRSS")
            figures.residentKiB = value;
        else if (name == "VmHWM")
            figures.peakKiB = value;
        else if (name == "Threads")
            figures.threads = static_cast<int>(value);
    }
    figures.descriptors = openDescriptors();
    return figures;
}

void printFigures(const char *what, const ProcessFigures &figures)
{
    std::printf("%-32s %7.1f MiB resident, %7.1f MiB peak, %3d threads, %3d descriptors\n", what,
                static_cast<double>(figures.residentKiB) / 1024,
                static_cast<double>(figures.peakKiB) / 1024, figures.threads, figures.descriptors);
    (void)std::fflush(stdout);
}

void repeat(const char *what, long times, const std::function<void()> &step)
{
    const long part = std::max(1L, times / 10);
    for (long i = 1; i <= times; ++i) {
        step();
        if (i % part == 0)
            printFigures((std::to_string(i) + ' ' + what).c_str(), processFigures());
    }
}

} // namespace viewertest
