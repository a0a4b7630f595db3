// vornik render: pictures of a scene.
#pragma once

#include <functional>
#include <string>

#include "apps/vornik/lights.h"
#include "apps/vornik/loadscene.h"
#include "apps/vornik/picture.h"

/// Frames of a scene's animation.
struct FrameRange
{
    int first = 0;
    int last = 0;
    int step = 1;
    bool asked = false;       ///< the scene is to be played
    bool isFilm = false;      ///< several pictures: numbered files, or one .apng
    int picturesASecond = 15; ///< of a .apng

    int count() const { return (last - first) / step + 1; }
};

struct RenderOptions
{
    std::string scene;
    std::string output;
    std::string lights; ///< file of baked light; empty to light the scene
    LoadOptions load;
    LightOptions light;
    PictureOptions picture;
    Framing framing;
    FrameRange frames;
    int camera = -1; ///< from 1 as the file has them; 0 frames the scene, -1 takes the first or frames
    bool partial = false;
    bool quiet = false;
    std::function<void(OGroup*)> loaded = {};     ///< called once, behind the load
    std::function<void(OGroup*, int)> moved = {}; ///< called for every frame in front of its drawing
};

/// @return the exit status
int render(const RenderOptions& options);
