// Light for a picture: the file's own lamps, and enough more that nothing is lost in the dark.
#pragma once

#include "apps/vornik/camera.h"

struct LightOptions
{
    bool classic = false; ///< takes the lamps as the engine read them
    bool shadows = false;
    bool twoSided = false; ///< all faces are drawn from both sides
    float ambient = 0.25f; ///< light that reaches every vertex, more from above than from below
};

/// Lights all meshes of the group for a look from the view. A group without lights gets one that stands over
/// the viewer's shoulder.
void lightScene(OGroup* group, const View& view, const LightOptions& options);
