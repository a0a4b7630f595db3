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
    float fov = 35.0f;  ///< of the picture's height, degrees
};

/// Right-handed axes of a model: to the right of and away from a viewer who looks at its front, and up.
struct Axes
{
    Vertex3D right, away, up;
};

/// @param upAxis  'x', 'y' or 'z'
Axes axesOf(char upAxis);

/// The direction that turns by heading around the up axis from "away" and rises by pitch; degrees.
Vertex3D directionAt(const Axes& axes, float heading, float pitch);

/// A box along the axes.
struct Bounds
{
    Vertex3D low, high;

    Vertex3D middle() const;
    float diagonal() const { return isEmpty() ? 0.0f : float(high - low); }
    bool isEmpty() const { return low.x > high.x; }
    void add(const Bounds& other);
};

/// Around nothing.
Bounds emptyBounds();

/// Around all visible faces, as the group stands at its current frame.
Bounds boundsOf(OGroup* group);

/// Around the bulk of them: without the twentieth of the corners that lies farthest out on each side, where
/// skies and far hills are.
Bounds coreOf(OGroup* group);

/// Is there anything to draw?
bool hasVisibleFaces(OGroup* group);

/// A view that shows all visible faces of the group, tightly, in a picture of this aspect.
View framedView(OGroup* group, float aspect, const Framing& framing);

/// Sets the engine's projection for the view, with clip distances that fit the group.
void setProjection(OGroup* group, const View& view, float aspect);

/// Sets the engine's model-view matrix.
void lookThrough(View* view);
