#include "apps/vornik/camera.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <vector>

#include "apps/vornik/directions.h"

// Calls use(position) with the world position of every corner of every visible face, as the group stands at
// its current frame.
template <typename Use>
static void forEachCorner(OGroup* group, Use use)
{
    for (int i = 0; i < group->meshCount; ++i)
    {
        Mesh* mesh = group->meshes[i];
        if (!mesh->visible)
            continue;
        if (group->animated)
            group->transformVertices(mesh);
        for (int face = 0; face < mesh->faceCount; ++face)
            for (const int corner : {mesh->faces[face].a, mesh->faces[face].b, mesh->faces[face].c})
            {
                const Vertex3D position =
                    group->animated ? mesh->transformedVertices[corner] : mesh->calculatedVertex(corner);
                if (std::isfinite(position.x) && std::isfinite(position.y) && std::isfinite(position.z))
                    use(position);
            }
    }
}

View cameraView(OGroup* group, int index, bool classic)
{
    View view;
    Camera& camera = view.camera;
    const Camera& own = *group->cameras[index];
    // Without its name, which a copy would share at the cost of memory for every picture.
    camera.eye = own.eye;
    camera.target = own.target;
    camera.roll = own.roll;
    camera.lens = own.lens;
    camera.fov = own.fov;
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

bool hasVisibleFaces(OGroup* group)
{
    bool any = false;
    forEachCorner(group, [&any](const Vertex3D&) { any = true; });
    return any;
}

Vertex3D Bounds::middle() const
{
    return scaled(low, 0.5f) + scaled(high, 0.5f);
}

void Bounds::add(const Bounds& other)
{
    low = {std::min(low.x, other.low.x), std::min(low.y, other.low.y), std::min(low.z, other.low.z)};
    high = {std::max(high.x, other.high.x), std::max(high.y, other.high.y), std::max(high.z, other.high.z)};
}

Bounds emptyBounds()
{
    return {{FLT_MAX, FLT_MAX, FLT_MAX}, {-FLT_MAX, -FLT_MAX, -FLT_MAX}};
}

Bounds boundsOf(OGroup* group)
{
    Bounds bounds = emptyBounds();
    forEachCorner(group, [&bounds](const Vertex3D& p) { bounds.add({p, p}); });
    return bounds;
}

Bounds coreOf(OGroup* group)
{
    std::vector<float> along[3];
    forEachCorner(group,
                  [&along](const Vertex3D& p)
                  {
                      along[0].push_back(p.x);
                      along[1].push_back(p.y);
                      along[2].push_back(p.z);
                  });
    if (along[0].empty())
        return emptyBounds();
    const auto at = [](std::vector<float>& values, size_t part)
    {
        const auto place = values.begin() + static_cast<std::ptrdiff_t>((values.size() - 1) * part / 20);
        std::nth_element(values.begin(), place, values.end());
        return *place;
    };
    Bounds core;
    core.low = {at(along[0], 1), at(along[1], 1), at(along[2], 1)};
    core.high = {at(along[0], 19), at(along[1], 19), at(along[2], 19)};
    return core;
}

Axes axesOf(char upAxis)
{
    if (upAxis == 'y')
        return {{1, 0, 0}, {0, 0, -1}, {0, 1, 0}};
    if (upAxis == 'x')
        return {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}};
    return {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
}

Vertex3D directionAt(const Axes& axes, float heading, float pitch)
{
    const Vertex3D level = scaled(axes.right, vrkDSin(heading)) + scaled(axes.away, vrkDCos(heading));
    return scaled(level, vrkDCos(pitch)) + scaled(axes.up, vrkDSin(pitch));
}

/// A point as seen along the direction of sight.
struct Sighting
{
    float right, above, depth;
};

// The distance from which all points fit between two opposite edges of the picture, when the eye stands where
// both are touched. @param tangent  of half the angle between the edges
static float leastDistance(const std::vector<Sighting>& points, float Sighting::*across, float tangent)
{
    float high = 0.0f, low = 0.0f;
    for (const Sighting& point : points)
    {
        high = std::max(high, point.*across / tangent - point.depth);
        low = std::max(low, -(point.*across) / tangent - point.depth);
    }
    return (high + low) / 2.0f;
}

// Where the eye has to stand across the direction of sight, so that what is seen reaches equally far to both
// sides.
static float balance(const std::vector<Sighting>& points, float Sighting::*across, float distance)
{
    float from = 0.0f, to = 0.0f;
    for (const Sighting& point : points)
    {
        from = std::min(from, point.*across);
        to = std::max(to, point.*across);
    }
    for (int step = 0; step < 24; ++step)
    {
        const float place = (from + to) / 2.0f;
        float least = FLT_MAX, most = -FLT_MAX;
        for (const Sighting& point : points)
        {
            const float seen = (point.*across - place) / (distance + point.depth);
            least = std::min(least, seen);
            most = std::max(most, seen);
        }
        (least + most > 0.0f ? from : to) = place;
    }
    return (from + to) / 2.0f;
}

View framedView(OGroup* group, float aspect, const Framing& framing)
{
    const Axes axes = axesOf(framing.upAxis);
    const Vertex3D& up = axes.up;
    const Vertex3D forward = directionAt(axes, 30.0f + framing.turn, -framing.tilt);
    Vertex3D side = forward ^ up;
    side.normalize();
    const Vertex3D above = side ^ forward;

    const Vertex3D middle = boundsOf(group).middle();
    std::vector<Sighting> points;
    forEachCorner(group,
                  [&](const Vertex3D& corner)
                  {
                      const Vertex3D p = corner - middle;
                      points.push_back({p * side, p * above, p * forward});
                  });

    const float margin = 0.92f;
    const float tangent = std::tan(vrkRad(framing.fov) / 2.0f) * margin;
    const float distance = std::max({leastDistance(points, &Sighting::right, tangent * aspect),
                                     leastDistance(points, &Sighting::above, tangent), FLT_MIN});
    float deepest = 0.0f;
    for (const Sighting& point : points)
        deepest = std::max(deepest, point.depth);

    View view;
    view.up = up;
    view.camera.fov = framing.fov;
    view.camera.eye = middle + scaled(side, balance(points, &Sighting::right, distance)) +
                      scaled(above, balance(points, &Sighting::above, distance)) - scaled(forward, distance);
    view.camera.target = view.camera.eye + scaled(forward, distance + deepest);
    return view;
}

void setProjection(OGroup* group, const View& view, float aspect)
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
    viewport.aspect = aspect;
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
