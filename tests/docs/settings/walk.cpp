// One step of a walker.
#include "vornik/vornik.h"

void walk(OGroup* group, Camera* camera, Vertex3D step)
{
    // block
}
