#include "apps/vornik/camera.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

// Calls use(position) with the world position of every corner of every visible face.
template <typename Use>
static void forEachCorner(OGroup* group, Use use)
{
    for (int i = 0; i < group->meshCount; ++i)
    {
        Mesh* mesh = group->meshes[i];
        if (!mesh->visible)
            continue;
        for (int face = 0; face < mesh->faceCount; ++face)
            for (const int corner : {mesh->faces[face].a, mesh->faces[face].b, mesh->faces[face].c})
            {
                const Vertex3D position = mesh->calculatedVertex(corner);
                if (std::isfinite(position.x) && std::isfinite(position.y) && std::isfinite(position.z))
                    use(position);
            }
    }
}

static Vertex3D scaled(Vertex3D v, float factor)
{
    v *= factor;
    return v;
}

View cameraView(OGroup* group, int index, bool classic)
{
    View view;
    view.camera = *group->cameras[index];
    Camera& camera = view.camera;
    if (!classic)
    {
        const float half = vrkRad(camera.fov) / 2.0f;
        camera.fov = vrkUnRad(2.0f * std::atan(std::tan(half) * 0.75f));
    }
    camera.fov = std::clamp(camera.fov, 1.0f, 170.0f);

    // Straight up or down there is no level to hold on to: look a little aside.
    const Vertex3D direction = camera.target - camera.eye;
    if (std::hypot(direction.x, direction.y) <= 1e-4f * std::fabs(direction.z))
        camera.target.y += std::max(1e-3f * std::fabs(direction.z), FLT_MIN);
    return view;
}

View framedView(OGroup* group, float aspect, char upAxis)
{
    // Right-handed axes of the model: to the right, away from the viewer, up.
    Vertex3D right = {1, 0, 0}, away = {0, 1, 0}, up = {0, 0, 1};
    if (upAxis == 'y')
        right = {1, 0, 0}, away = {0, 0, -1}, up = {0, 1, 0};
    else if (upAxis == 'x')
        right = {0, 1, 0}, away = {0, 0, 1}, up = {1, 0, 0};

    const Vertex3D forward =
        scaled(right, 0.5f * 0.92f) + scaled(away, 0.8660254f * 0.92f) + scaled(up, -0.3919184f);
    Vertex3D side = forward ^ up;
    side.normalize();
    const Vertex3D above = side ^ forward;

    // For each axis of the picture the least distance at which the leftmost and the rightmost ray fit, and
    // where between them the eye has to stand.
    const float fov = 35.0f;
    const float margin = 0.92f;
    const float tanV = std::tan(vrkRad(fov) / 2.0f) * margin;
    const float tanH = tanV * aspect;
    float leftMost = -FLT_MAX, rightMost = -FLT_MAX, lowest = -FLT_MAX, highest = -FLT_MAX;
    bool any = false;
    forEachCorner(group,
                  [&](const Vertex3D& p)
                  {
                      const float depth = p * forward;
                      rightMost = std::max(rightMost, (p * side) / tanH - depth);
                      leftMost = std::max(leftMost, -(p * side) / tanH - depth);
                      highest = std::max(highest, (p * above) / tanV - depth);
                      lowest = std::max(lowest, -(p * above) / tanV - depth);
                      any = true;
                  });
    View view;
    view.up = up;
    view.camera.fov = fov;
    if (!any)
    {
        view.camera.eye = scaled(forward, -10.0f);
        return view;
    }

    const float distance = std::max((rightMost + leftMost) / 2.0f, (highest + lowest) / 2.0f);
    view.camera.eye = scaled(side, tanH * (rightMost - leftMost) / 2.0f) +
                      scaled(above, tanV * (highest - lowest) / 2.0f) - scaled(forward, distance);
    view.camera.target = view.camera.eye + forward;
    return view;
}

void setProjection(OGroup* group, const View& view)
{
    Vertex3D forward = view.camera.target - view.camera.eye;
    forward.normalize();
    float nearest = FLT_MAX, farthest = 0.0f;
    forEachCorner(group,
                  [&](const Vertex3D& p)
                  {
                      const float depth = (p - view.camera.eye) * forward;
                      if (depth > 0.0f)
                          nearest = std::min(nearest, depth);
                      farthest = std::max(farthest, depth);
                  });
    Viewport viewport = *vrkGetViewport();
    if (farthest > 0.0f)
    {
        viewport.farClip = farthest * 1.01f;
        viewport.nearClip = std::clamp(nearest * 0.99f, farthest * 3e-5f, farthest * 0.5f);
    }
    viewport.fov = view.camera.fov;
    vrkSetViewport(&viewport);
}

void lookThrough(View* view)
{
    vrkInitMatrix();
    if (view->up.z == 1.0f)
    {
        vrkLookWithCamera(&view->camera);
        return;
    }
    const Vertex3D& eye = view->camera.eye;
    const Vertex3D& target = view->camera.target;
    vrkLookAt(eye.x, eye.y, eye.z, target.x, target.y, target.z, view->up.x, view->up.y, view->up.z);
}
