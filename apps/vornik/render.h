// vornik render: a picture of a scene.
#pragma once

#include <string>

#include "apps/vornik/lights.h"
#include "apps/vornik/loadscene.h"

struct RenderOptions
{
    std::string scene;
    std::string output;
    LoadOptions load;
    LightOptions light;
    int width = 1280;
    int height = 720;
    int camera = -1; ///< from 1 as the file has them; 0 frames the scene, -1 takes the first or frames
    int samples = 3; ///< along each side of a pixel
    std::string background = "30343c";
    char upAxis = 'z';
    int flags = 0; ///< VRK_RENDER_... bits of style
    bool partial = false;
    bool quiet = false;
};

/// "1280x720" to two numbers from 1 to 8192. @return false if it is something else
bool parseSize(const std::string& text, int* width, int* height);

/// "RRGGBB" or a colour's name. @return false if it is neither
bool parseColor(const std::string& text, Color* color);

/// @return the exit status
int render(const RenderOptions& options);
