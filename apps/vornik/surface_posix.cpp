#include "apps/vornik/surface.h"

struct Surface::System
{
    VRKNativeWindow window;
};

Surface::Surface(int width, int height) : system(new System{{nullptr, 0, width, height}}) {}

Surface::~Surface() = default;

VRKWindow Surface::window() const
{
    return &system->window;
}
