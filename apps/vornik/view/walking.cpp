// The body is two spheres above the height of a step, one behind the other on the way. Below them the feet
// follow the highest ground that a step reaches. Slopes never push the spheres up or down: only the ground
// raises the feet, so a slope that is too steep is a wall to slide along.

#include "apps/vornik/view/walking.h"

#include <algorithm>
#include <cmath>

#include "apps/vornik/directions.h"

static const float stepSeconds = 1.0f / walkStepsASecond;
static const float noGround = -999999.0f; // z of vrkCheckHeight's answer where nothing is hit

static Vertex3D raised(Vertex3D v, float height)
{
    v.z += height;
    return v;
}

Body bodyFor(const Bounds& bounds, float scale)
{
    const Vertex3D extent = bounds.isEmpty() ? Vertex3D{1, 1, 1} : bounds.high - bounds.low;
    const float level = std::hypot(extent.x, extent.y);
    // A fortieth of the way across; in a flat scene as it is, in a narrow one no taller than half of it.
    float height = level / 40.0f;
    if (height <= 0.0f)
        height = std::max(extent.z / 40.0f, 1e-6f);
    height *= scale;

    Body body;
    body.eyeHeight = height;
    body.radius = 0.25f * height;
    body.step = 0.25f * height;
    body.speed = 2.5f * height;
    body.gravity = 6.0f * height;
    body.leap = 2.2f * height;
    return body;
}

// Keeps a place within the tree, outside of which queries find nothing.
static Vertex3D insideTree(Vertex3D place, const octreeNode& tree)
{
    const float margin = 1e-4f * (tree.max.z - tree.min.z);
    place.z = std::clamp(place.z, tree.min.z + margin, std::max(tree.max.z - margin, tree.min.z + margin));
    return place;
}

// The highest ground between two heights over a place.
static bool groundBetween(OGroup* group, const Vertex3D& place, float high, float low, float* ground)
{
    Vertex3D from = {place.x, place.y, high}, to = {place.x, place.y, low};
    from = insideTree(from, *group->octree);
    if (from.z <= low)
        return false;
    *ground = vrkCheckHeight(&from, &to, group).z;
    return *ground > noGround && *ground >= low && *ground <= high;
}

// Where a sphere comes to on its level way, along whatever is in it.
static Vertex3D slide(const Vertex3D& from, const Vertex3D& wanted, float radius, OGroup* group)
{
    Vertex3D old = from, place = wanted, normal = {0, 0, 0};
    const float way = float(wanted - from);
    if (way <= 0.0f)
        return from;
    if (!vrkCheckCollision(&place, &old, radius, group, true, &normal, 3))
    {
        // A wall that the sphere touches already lets it pass; none lets its middle pass.
        Vertex3D ahead = wanted;
        return vrkRayScene(&old, &ahead, way + 0.1f * radius, group) ? from : wanted;
    }
    if (std::fabs(place.z - from.z) <= 1e-3f * way)
        return {place.x, place.y, from.z};

    // The engine went along a slope: go along its foot instead.
    normal.z = 0.0f;
    normal.normalize();
    const Vertex3D move = wanted - from;
    place = from + (move - scaled(normal, move * normal));
    return vrkCheckCollision(&place, &old, radius, group, false, &normal, 1) ? from : place;
}

static void walkLevel(Walker* walker, const Body& body, const Stride& stride, OGroup* group)
{
    const float length = float(stride.direction);
    if (length <= 0.0f)
        return;
    const float speed = body.speed * (stride.run ? 2.5f : 1.0f) / std::max(length, 1.0f);
    Vertex3D move = scaled(stride.direction, speed * stepSeconds);
    move.z = 0.0f;

    const float heights[] = {0.53f * body.eyeHeight, 0.8f * body.eyeHeight, 0.53f * body.eyeHeight};
    for (const float height : heights)
    {
        const Vertex3D sphere = raised(walker->feet, height);
        move = slide(sphere, sphere + move, body.radius, group) - sphere;
    }
    move.z = 0.0f;
    walker->feet += move;
}

static void land(Walker* walker, float ground)
{
    // What was climbed or stepped down at once, the eye does smoothly.
    if (walker->onGround)
        walker->lag += ground - walker->feet.z;
    walker->feet.z = ground;
    walker->rising = 0.0f;
    walker->onGround = true;
    walker->foothold = walker->feet;
}

static bool bumpsHead(const Walker& walker, const Body& body, float rise, OGroup* group)
{
    Vertex3D head = raised(walker.feet, body.eyeHeight), above = raised(head, rise + body.radius);
    return vrkRayScene(&head, &above, rise + body.radius, group);
}

static void fallOrClimb(Walker* walker, const Body& body, OGroup* group)
{
    float ground = 0.0f;
    const float high = walker->feet.z + body.step;
    if (walker->onGround)
    {
        if (groundBetween(group, walker->feet, high, walker->feet.z - body.step, &ground))
            return land(walker, ground);
        walker->onGround = false; // over an edge
    }
    walker->rising = std::max(walker->rising - body.gravity * stepSeconds, -40.0f * body.eyeHeight);
    const float rise = walker->rising * stepSeconds;
    if (rise > 0.0f)
    {
        if (bumpsHead(*walker, body, rise, group))
            walker->rising = 0.0f;
        else
            walker->feet.z += rise;
        return;
    }
    if (groundBetween(group, walker->feet, high, walker->feet.z + rise, &ground))
        return land(walker, ground);
    walker->feet.z += rise;
}

void walkStep(Walker* walker, const Body& body, const Stride& stride, OGroup* group)
{
    if (!group || !group->octree)
        return;
    walkLevel(walker, body, stride, group);
    if (stride.jump && walker->onGround)
    {
        walker->onGround = false;
        walker->rising = body.leap;
    }
    fallOrClimb(walker, body, group);
    walker->lag *= 0.9f;

    if (walker->feet.z < group->octree->min.z - 2.0f * body.eyeHeight)
    {
        walker->feet = walker->foothold;
        walker->rising = walker->lag = 0.0f;
    }
}

static bool standsUnder(OGroup* group, const Vertex3D& place, const Bounds& bounds, Vertex3D* foothold)
{
    const float margin = 0.01f * bounds.diagonal();
    if (!groundBetween(group, place, place.z, bounds.low.z - margin, &foothold->z))
        return false;
    foothold->x = place.x;
    foothold->y = place.y;
    return true;
}

bool findFoothold(OGroup* group, const Bounds& bounds, const Body& body, const Vertex3D& eye,
                  const Vertex3D& forward, Vertex3D* foothold)
{
    if (!group || !group->octree || bounds.isEmpty())
        return false;
    if (standsUnder(group, eye, bounds, foothold))
        return true;

    // Down from the line of sight, as far as the scene goes.
    const float reach = float(eye - bounds.middle()) + bounds.diagonal();
    const int samples = 64;
    for (int i = 1; i <= samples; ++i)
    {
        const Vertex3D place =
            eye + scaled(forward, reach * static_cast<float>(i) / static_cast<float>(samples));
        if (standsUnder(group, raised(place, body.eyeHeight), bounds, foothold))
            return true;
    }
    // From above, on a grid.
    const int cells = 16;
    for (int i = 0; i < cells * cells; ++i)
    {
        const int column = i % cells, line = i / cells;
        const float x = (static_cast<float>(column) + 0.5f) / static_cast<float>(cells);
        const float y = (static_cast<float>(line) + 0.5f) / static_cast<float>(cells);
        const Vertex3D extent = bounds.high - bounds.low;
        const Vertex3D place = {bounds.low.x + x * extent.x, bounds.low.y + y * extent.y,
                                bounds.high.z + body.eyeHeight};
        if (standsUnder(group, place, bounds, foothold))
            return true;
    }
    return false;
}

void Walk::begin(const Body& newBody, const Vertex3D& feet)
{
    body = newBody;
    now = {};
    now.feet = now.foothold = feet;
    before = now;
    rest = 0.0;
}

void Walk::advance(double seconds, const Stride& stride, OGroup* group)
{
    const double longest = 0.25; // a machine that is slower than that walks in slow motion
    rest += std::clamp(seconds, 0.0, longest);
    const int steps = static_cast<int>(rest * walkStepsASecond);
    rest -= static_cast<double>(steps) / walkStepsASecond;
    for (int i = 0; i < steps; ++i)
    {
        before = now;
        walkStep(&now, body, stride, group);
    }
}

Vertex3D Walk::eye() const
{
    const float part = static_cast<float>(rest * walkStepsASecond);
    const Vertex3D from = raised(before.feet, body.eyeHeight - before.lag);
    const Vertex3D to = raised(now.feet, body.eyeHeight - now.lag);
    // Back from a fall: no flight across the scene.
    if (float(to - from) > body.eyeHeight)
        return to;
    return from + scaled(to - from, part);
}
