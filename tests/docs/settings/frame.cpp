// Inside the loop of a host.
#include <stdio.h>
#include <stdlib.h>

#include "vornik/vornik.h"

void frame(Scene& scene, OGroup* group, Camera* camera, ParticleSource* fountain, Mesh* mesh, Light* lamp,
           const char* file, int flags)
{
    // block
}
