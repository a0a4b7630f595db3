// vornik bake: light traced into the vertices of a scene, kept in a file.
#pragma once

#include <string>

#include "apps/vornik/lights.h"
#include "apps/vornik/loadscene.h"

struct BakeOptions
{
    std::string scene;
    std::string output;
    LoadOptions load;
    LightOptions light;
    bool quiet = false;
};

/// @return the exit status
int bake(const BakeOptions& options);
