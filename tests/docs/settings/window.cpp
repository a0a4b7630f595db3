// A host on X11 around its loop.
#include "vornik/vornik.h"

bool handleEvents();

int show(Scene& scene, void* display, unsigned long window)
{
    {
        // block
    }
    return 0;
}
