// The viewer's own eye: turning around a point, flying, and the angles behind both.
//
// All of it is arithmetic on records, so that it is tested without a window.
#pragma once

#include "apps/vornik/camera.h"

struct FreeCamera
{
    Vertex3D eye = {0, 0, 0};
    float heading = 0.0f;  ///< degrees, see directionAt()
    float pitch = 0.0f;    ///< degrees above level, -89 to 89
    float distance = 1.0f; ///< to the point that orbiting goes around, straight ahead
};

/// An eye that looks as another does. A target straight above or below keeps the heading at 0.
FreeCamera freeCameraAt(const Vertex3D& eye, const Vertex3D& target, const Axes& axes, float distance);

Vertex3D forwardOf(const FreeCamera& camera, const Axes& axes);
/// The point that orbiting goes around.
Vertex3D centreOf(const FreeCamera& camera, const Axes& axes);

/// Turns the head.
void look(FreeCamera* camera, float turn, float rise);
/// Turns around the centre.
void orbit(FreeCamera* camera, const Axes& axes, float turn, float rise);
/// Moves eye and centre along the picture.
void pan(FreeCamera* camera, const Axes& axes, float right, float up);
/// Moves the eye to a multiple of its distance from the centre, never nearer than nearest.
void zoom(FreeCamera* camera, const Axes& axes, float factor, float nearest);
/// Moves the eye along its sight, to its right, and along the up axis.
void fly(FreeCamera* camera, const Axes& axes, float forward, float right, float up);

View viewOf(const FreeCamera& camera, const Axes& axes, float fov);

struct ClipRange
{
    float nearest, farthest;
};

/// Clip distances that show all of a box from an eye, with room for what moves about it.
/// @param closest  what must not be cut however far the box reaches; 0 for nothing in particular
ClipRange clipRange(const Bounds& bounds, const Vertex3D& eye, float closest);
