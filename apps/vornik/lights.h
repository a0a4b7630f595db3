// Light for a picture: the file's own lamps, and enough more that nothing is lost in the dark.
#pragma once

#include "vornik/vornik.h"

struct LightOptions
{
    bool classic = false;
    bool shadows = false;
    float ambient = 0.25f; ///< light that reaches every vertex, more from above than from below
};

/// Lights all meshes of the group. A group without lights gets one at eye.
void lightScene(OGroup* group, const Vertex3D& eye, const Vertex3D& up, const LightOptions& options);
