// vornik info: what is in a scene.
#pragma once

#include <string>

#include "apps/vornik/loadscene.h"

struct InfoOptions
{
    std::string scene;
    LoadOptions load;
    bool json = false;
    bool octree = false; ///< tells its figures, too
};

/// @return the exit status
int info(const InfoOptions& options);
