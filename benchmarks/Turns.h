// SPDX-License-Identifier: MIT
// Statistics of alternating measurements, which other programs disturb equally.
#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

/// Median of `values`, 0 if there are none.
inline double median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The value that `percent` of `values` do not exceed.
inline double percentile(std::vector<double> values, unsigned percent)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, values.size() * percent / 100)];
}

/// Median of a[i] / b[i], for measurements that alternate.
inline double medianRatio(const std::vector<double> &a, const std::vector<double> &b)
{
    std::vector<double> ratios;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        ratios.push_back(a[i] / b[i]);
    return median(ratios);
}

/// Reads a clock in seconds: CLOCK_MONOTONIC, or CLOCK_THREAD_CPUTIME_ID for the processor time of
/// the calling thread, which other programs disturb less.
inline double secondsOf(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Duration of `work` on that clock, in seconds.
template <class Work> double timed(clockid_t clock, const Work &work)
{
    const double start = secondsOf(clock);
    work();
    return secondsOf(clock) - start;
}
