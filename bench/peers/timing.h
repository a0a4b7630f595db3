// Times for a machine that has other work, too.
#pragma once

#include <time.h>

#include <algorithm>
#include <vector>

// Seconds of processor time that the program has used, which others disturb less than the time of day.
inline double processorSeconds()
{
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + 1e-9 * double(now.tv_nsec);
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}
