// vornik render: a picture of a scene.
#pragma once

#include <string>

#include "apps/vornik/lights.h"
#include "apps/vornik/loadscene.h"
#include "apps/vornik/picture.h"

struct RenderOptions
{
    std::string scene;
    std::string output;
    LoadOptions load;
    LightOptions light;
    PictureOptions picture;
    Framing framing;
    int camera = -1; ///< from 1 as the file has them; 0 frames the scene, -1 takes the first or frames
    bool partial = false;
    bool quiet = false;
};

/// @return the exit status
int render(const RenderOptions& options);
