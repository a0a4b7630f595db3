#include "rasterizer/d3d/packedcolor.h"

#include <initializer_list>

#include "rasterizer/truncate.h"

static uint32_t scaled(float channel, float factor)
{
    return static_cast<uint32_t>(truncated(channel * factor));
}

uint32_t packLimited(Color* c)
{
    for (float* channel : {&c->a, &c->r, &c->g, &c->b})
        if (*channel >= 1.0f)
            *channel = 1.0f;
    for (float* channel : {&c->a, &c->r, &c->g, &c->b})
        if (*channel < 0.0f)
            *channel = 0.0f;
    const float factor = 252.0f;
    return (scaled(c->a, factor) & 255) << 24 | (scaled(c->r, factor) & 255) << 16 |
           (scaled(c->g, factor) & 255) << 8 | (scaled(c->b, factor) & 255);
}

uint32_t packUnlimited(const Color& c)
{
    const float factor = 255.0f;
    return scaled(c.a, factor) << 24 | scaled(c.r, factor) << 16 | scaled(c.g, factor) << 8 |
           scaled(c.b, factor);
}

uint32_t packForWindow(const Color& c)
{
    const float factor = 255.0f;
    return (scaled(c.b, factor) & 255) << 16 | (scaled(c.g, factor) & 255) << 8 | (scaled(c.r, factor) & 255);
}
