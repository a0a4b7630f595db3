// A window that changes its size.
#include <GL/gl.h>

#include "vornik/vornik.h"

void resize(int width, int height)
{
    // block
}
