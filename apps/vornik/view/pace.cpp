#include "apps/vornik/view/pace.h"

#include <algorithm>

// A little faster than the display, so that waits for it and these never add up. What is late is not made up
// for by a burst of pictures.
double Pace::next(double now, int refreshRate)
{
    const double interval = 1.0 / (1.1 * std::max(refreshRate, 60));
    due = std::max(due + interval, now - interval);
    return due - now;
}
