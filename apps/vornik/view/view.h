// vornik view: a scene in a window, to look at, to play and to walk through.
#pragma once

#include <string>

#include "apps/vornik/drawing.h"
#include "apps/vornik/view/stage.h"

struct ViewOptions : StageOptions
{
    std::string scene; ///< empty for an empty stage
    int width = 1280;
    int height = 720;
    int flags = 0; ///< VRK_RENDER_... bits of style, and VRK_RENDER_CULL
    Transparency transparency = Transparency::sorted;
    Color background = {0.19f, 0.2f, 0.235f, 1.0f};
};

/// Runs until the window is closed. @return the exit status
int view(const ViewOptions& options);
