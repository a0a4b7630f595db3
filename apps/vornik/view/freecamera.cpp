#include "apps/vornik/view/freecamera.h"

#include <algorithm>
#include <cmath>

#include "apps/vornik/directions.h"

static const float steepest = 89.0f;

FreeCamera freeCameraAt(const Vertex3D& eye, const Vertex3D& target, const Axes& axes, float distance)
{
    Vertex3D forward = target - eye;
    forward.normalize();
    const float right = forward * axes.right, away = forward * axes.away, up = forward * axes.up;
    FreeCamera camera;
    camera.eye = eye;
    camera.distance = distance;
    const float level = std::hypot(right, away);
    if (level > 1e-4f)
        camera.heading = vrkUnRad(std::atan2(right, away));
    camera.pitch = std::clamp(vrkUnRad(std::atan2(up, level)), -steepest, steepest);
    return camera;
}

Vertex3D forwardOf(const FreeCamera& camera, const Axes& axes)
{
    return directionAt(axes, camera.heading, camera.pitch);
}

Vertex3D centreOf(const FreeCamera& camera, const Axes& axes)
{
    return camera.eye + scaled(forwardOf(camera, axes), camera.distance);
}

void look(FreeCamera* camera, float turn, float rise)
{
    camera->heading = std::remainder(camera->heading + turn, 360.0f);
    camera->pitch = std::clamp(camera->pitch + rise, -steepest, steepest);
}

void orbit(FreeCamera* camera, const Axes& axes, float turn, float rise)
{
    const Vertex3D centre = centreOf(*camera, axes);
    look(camera, turn, rise);
    camera->eye = centre - scaled(forwardOf(*camera, axes), camera->distance);
}

static Vertex3D rightOf(const FreeCamera& camera, const Axes& axes)
{
    return directionAt(axes, camera.heading + 90.0f, 0.0f);
}

void pan(FreeCamera* camera, const Axes& axes, float right, float up)
{
    const Vertex3D side = rightOf(*camera, axes);
    const Vertex3D above = side ^ forwardOf(*camera, axes);
    camera->eye += scaled(side, right) + scaled(above, up);
}

void zoom(FreeCamera* camera, const Axes& axes, float factor, float nearest)
{
    const Vertex3D centre = centreOf(*camera, axes);
    camera->distance = std::max(camera->distance * factor, nearest);
    camera->eye = centre - scaled(forwardOf(*camera, axes), camera->distance);
}

void fly(FreeCamera* camera, const Axes& axes, float forward, float right, float up)
{
    camera->eye += scaled(forwardOf(*camera, axes), forward) + scaled(rightOf(*camera, axes), right) +
                   scaled(axes.up, up);
}

View viewOf(const FreeCamera& camera, const Axes& axes, float fov)
{
    View view;
    view.up = axes.up;
    view.camera.fov = fov;
    view.camera.eye = camera.eye;
    // Far enough that the target differs from the eye in 32 bits, wherever the scene lies.
    const float reach = std::max(camera.distance, 1e-3f * float(camera.eye));
    view.camera.target = camera.eye + scaled(forwardOf(camera, axes), reach);
    return view;
}

ClipRange clipRange(const Bounds& bounds, const Vertex3D& eye, float closest)
{
    if (bounds.isEmpty())
        return {0.01f, 1000.0f};
    const float radius = float(bounds.high - bounds.low) / 2.0f;
    const float distance = float(eye - bounds.middle());
    const float farthest = std::max(1.1f * (distance + radius), 1e-6f);
    // A depth buffer of 24 bits tells surfaces apart well down to this share.
    const float finest = farthest * 1e-4f;
    float nearest = std::max(0.5f * (distance - 1.5f * radius), finest);
    if (closest > 0.0f)
        nearest = std::max(std::min(nearest, closest), farthest * 1e-5f);
    return {nearest, farthest};
}
