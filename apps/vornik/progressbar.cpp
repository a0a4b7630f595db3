#include "apps/vornik/progressbar.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <unistd.h>

static bool silent = false;
static int shownPercent = -1;
static void (*showElsewhere)(float) = nullptr;

void silenceProgress()
{
    silent = true;
}

void showProgressBy(void (*show)(float))
{
    showElsewhere = show;
}

static bool isVisible()
{
    static const bool terminal = isatty(STDERR_FILENO);
    return terminal && !silent;
}

void showProgress(float fraction)
{
    if (std::isnan(fraction))
        return;
    if (showElsewhere)
        return showElsewhere(fraction);
    if (!isVisible())
        return;
    const int percent = static_cast<int>(std::fmin(std::fmax(fraction, 0.0f), 1.0f) * 100.0f);
    if (percent == shownPercent)
        return;
    shownPercent = percent;
    const int width = 40;
    const size_t filled = static_cast<size_t>(percent * width / 100);
    const std::string bar = std::string(filled, '#') + std::string(width - filled, ' ');
    std::fprintf(stderr, "\r[%s] %3d %%", bar.c_str(), percent);
    std::fflush(stderr);
}

void clearProgress()
{
    if (shownPercent >= 0)
        std::fprintf(stderr, "\r%50s\r", "");
    shownPercent = -1;
}
