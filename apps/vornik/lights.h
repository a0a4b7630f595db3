// Light for a picture: the file's own lamps, and enough more that nothing is lost in the dark.
#pragma once

#include <string>

#include "apps/vornik/camera.h"

struct LightOptions
{
    bool classic = false; ///< takes the lamps as the engine read them
    bool shadows = false;
    bool turnsBacks = true; ///< lights the sides that the view sees of faces with two
    bool twoSided = false;  ///< all faces are drawn from both sides
    float ambient = 0.25f;  ///< light that reaches every vertex, more from above than from below
};

/// Lights all meshes of the group for a look from the view. A group without lights gets one that stands over
/// the viewer's shoulder.
void lightScene(OGroup* group, const View& view, const LightOptions& options);

/// Writes the light of all vertices. @return an empty text, or what went wrong
std::string saveBakedLight(OGroup* group, const std::string& path);
/// Takes the light of all vertices from a file. @return an empty text, or what is wrong with the file
std::string takeBakedLight(OGroup* group, const std::string& path);
