// From where a scene is seen.
#pragma once

#include <string>

#include "vornik/vornik.h"

struct View
{
    Camera camera;
    Vertex3D up = {0, 0, 1};
};

/// A camera of the group as the file has it. @param index  from 0, valid
/// @param classic  takes the field of view as the engine's own; otherwise as the width of a 4:3 picture
View cameraView(OGroup* group, int index, bool classic);

/// From which side a scene is framed.
struct Framing
{
    char upAxis = 'z';  ///< of the model: 'x', 'y' or 'z'
    float turn = 0.0f;  ///< degrees around the up axis from the usual side, left of the front
    float tilt = 28.0f; ///< degrees above level, -85 to 85
};

/// Is there anything to draw?
bool hasVisibleFaces(OGroup* group);

/// A view that shows all visible faces of the group, tightly, in a picture of this aspect.
View framedView(OGroup* group, float aspect, const Framing& framing);

/// Sets the engine's projection for the view, with clip distances that fit the group.
void setProjection(OGroup* group, const View& view, float aspect);

/// Sets the engine's model-view matrix.
void lookThrough(View* view);
