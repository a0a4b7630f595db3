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

/// A view from a raised corner that shows all faces of the group, tightly, in a picture of this aspect.
/// @param upAxis  'x', 'y' or 'z'
View framedView(OGroup* group, float aspect, char upAxis);

/// Sets the engine's projection for the view, with clip distances that fit the group.
void setProjection(OGroup* group, const View& view);

/// Sets the engine's model-view matrix.
void lookThrough(View* view);
