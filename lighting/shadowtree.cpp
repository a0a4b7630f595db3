// Shadow rays of the vertex lighting.
//
// A face blocks if intersect2 hits it on the ray from the light, if none of its corners shares an x, y or z
// with the vertex, and if its centroid is nearer to the light than the vertex. The ray has no end: a face hit
// behind the vertex blocks when its centroid lies in front.
//
// The tree has to give the same answer for every face, rounding of intersect2 included, so a face may be
// passed over only where the float arithmetic must reject it. All rays of a tree start at the light, which
// makes that provable face by face. With s = light - a, e1 = b - a, e2 = c - a and the ray's d, intersect2
// computes
//     det = (d x e2) . e1,  U = s . (d x e2),  V = (s x e1) . d,  T = (s x e1) . e2
// each with an error below 9 eps times the product of the three lengths (eps 2^-24). Exactly,
//     det s + T d - U e1 - V e2 = 0,
// so for the computed values the ray at T / det misses the point (U, V) / det of the face by at most
// 36 eps |s||d||e1||e2| / det. As that point is no farther from the light than |s| + |e1| + |e2| = reach, det
// is at least T |d| / reach, and the miss at most about 36 eps |s||e1||e2| / T * reach, whatever the ray. The
// boxes grow by that much. Where the light stands nearly in the plane of the face, T is too small for that,
// and the face is tested by every ray. T itself belongs to the face: below zero beyond its error, the light
// is behind the face.

#include "lighting/shadowtree.h"

#include <math.h>

#include <algorithm>

#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/queries.h"

// Up to here the products of intersect2 stay far from the largest float.
static const float coordinateLimit = 1e10f;
static const double eps = 1.0 / (1 << 24);
static const size_t leafSize = 4;

static bool isBounded(const Vertex3D& v)
{
    return fabsf(v.x) <= coordinateLimit && fabsf(v.y) <= coordinateLimit && fabsf(v.z) <= coordinateLimit;
}

ShadowTarget shadowTarget(const Light& light, const Vertex3D* vertex, const Vertex3D& offset)
{
    ShadowTarget target;
    target.vertex = vertex;
    target.position = *vertex + offset;
    target.distance = vrkDistance(&light.location, &target.position);
    return target;
}

// A vertex with the mesh's position added once for each corner that names it: the position is added corner by
// corner, and corners that name one vertex move it together.
static Vertex3D corner(const Mesh& mesh, const Facelist& face, uint16_t index)
{
    Vertex3D v = mesh.calculatedVertices[index];
    for (uint16_t other : {face.a, face.b, face.c})
        if (other == index)
            v += mesh.position;
    return v;
}

// Reads a face of a mesh. False for one that names vertices which the mesh doesn't have.
static bool readFace(const Mesh& mesh, int number, ShadowFace* out)
{
    const Facelist& face = mesh.faces[number];
    if (std::max({face.a, face.b, face.c}) >= mesh.vertexCount)
        return false;
    *out = {corner(mesh, face, face.a), corner(mesh, face, face.b), corner(mesh, face, face.c),
            mesh.calculatedVertices, face};
    return true;
}

static bool uses(const ShadowFace& face, const Vertex3D* vertex)
{
    return vertex == face.vertices + face.indices.a || vertex == face.vertices + face.indices.b ||
           vertex == face.vertices + face.indices.c;
}

static bool sharesCoordinate(const Vertex3D& corner, const Vertex3D& v)
{
    return corner.x == v.x || corner.y == v.y || corner.z == v.z;
}

static float centroidDistance(const Light& light, const ShadowFace& face)
{
    Vertex3D centroid = face.a + face.b + face.c;
    centroid *= 0.33333334f;
    return vrkDistance(&light.location, &centroid);
}

// All of faceBlocks but the distance.
static bool isCandidate(const Light& light, const ShadowTarget& target, const ShadowFace& face)
{
    if (!(intersect2(&light.location, &target.position, &face.a, &face.b, &face.c) >= 0.0f))
        return false;
    // A vertex isn't shadowed by its own faces. Any other corner that is aligned with it on one axis lets the
    // light through as well.
    return !uses(face, target.vertex) && !sharesCoordinate(face.a, target.position) &&
           !sharesCoordinate(face.b, target.position) && !sharesCoordinate(face.c, target.position);
}

bool faceBlocks(const Light& light, const ShadowTarget& target, const ShadowFace& face)
{
    return isCandidate(light, target, face) && centroidDistance(light, face) < target.distance;
}

// Calls visit with every face of a group until it returns true.
template <class Visit>
static bool anyFace(const OGroup& group, Visit visit)
{
    ShadowFace face;
    for (int m = 0; m < group.meshCount; m++)
    {
        const Mesh* mesh = group.meshes[m];
        if (!mesh || !mesh->faces || !mesh->calculatedVertices)
            continue;
        for (int f = 0; f < mesh->faceCount; f++)
            if (readFace(*mesh, f, &face) && visit(face))
                return true;
    }
    return false;
}

bool groupBlocks(const OGroup& group, const Light& light, const ShadowTarget& target)
{
    return anyFace(group, [&](const ShadowFace& face) { return faceBlocks(light, target, face); });
}

namespace
{
struct Vector // in double precision
{
    double x, y, z;

    Vector(const Vertex3D& v) : x(v.x), y(v.y), z(v.z) {}
    Vector(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}
    double dot(const Vector& b) const { return x * b.x + y * b.y + z * b.z; }
    Vector cross(const Vector& b) const { return {y * b.z - z * b.y, z * b.x - x * b.z, x * b.y - y * b.x}; }
    double length() const { return sqrt(dot(*this)); }
};
} // namespace

static const double neverHit = -1.0;
static const double anywhere = HUGE_VAL;

// Is the point within the box around a face, grown by the margin?
static bool isNear(const Vertex3D& point, const ShadowFace& face, double margin)
{
    auto within = [margin](float p, float a, float b, float c) {
        return std::min({a, b, c}) - margin <= p && p <= std::max({a, b, c}) + margin;
    };
    return within(point.x, face.a.x, face.b.x, face.c.x) && within(point.y, face.a.y, face.b.y, face.c.y) &&
           within(point.z, face.a.z, face.b.z, face.c.z);
}

// How far a ray may pass from a face that intersect2 reports as hit. neverHit: no ray of this light hits the
// face. anywhere: no bound can be given.
static double hitMargin(const Light& light, const ShadowFace& face)
{
    const Vector s(light.location - face.a), e1(face.b - face.a), e2(face.c - face.a);
    const double area = e1.length() * e2.length();
    if (area == 0.0)
        return neverHit;
    const double volume = s.length() * area;
    const double t = s.cross(e1).dot(e2);
    // The second term: T times the inverse of det mustn't vanish into -0, which counts as a hit.
    if (t < -(16.0 * eps * volume + 1e-30 * area))
        return neverHit;

    const double reach = s.length() + e1.length() + e2.length();
    const double rounding = 16.0 * eps * reach; // of s, e1, e2 and of the limits 0 and 1
    // The miss adds to the reach, hence the quotient. 40 for 36, as the float T may lie that far below.
    if (volume > 0.0 && t >= 80.0 * eps * volume)
    {
        const double share = 40.0 * eps * volume / t;
        return share / (1.0 - share) * reach + rounding;
    }

    // A light exactly in the plane of an axis-aligned face, as at the height of a floor: T and one component
    // of all products are exactly 0. Any hit is then at the light itself.
    const bool flat = (s.x == 0.0 && e1.x == 0.0 && e2.x == 0.0) ||
                      (s.y == 0.0 && e1.y == 0.0 && e2.y == 0.0) ||
                      (s.z == 0.0 && e1.z == 0.0 && e2.z == 0.0);
    const double crossed = e1.cross(e2).length();
    if (!flat || crossed < 64.0 * eps * area)
        return anywhere;
    const double margin = 32.0 * eps * volume / crossed + rounding;
    return isNear(light.location, face, margin) ? margin : neverHit;
}

static float roundedDown(double v)
{
    return nextafterf(float(v), -HUGE_VALF);
}

static float roundedUp(double v)
{
    return nextafterf(float(v), HUGE_VALF);
}

ShadowTree::ShadowTree(const Light& lamp, OGroup* const* sceneGroups, int sceneGroupCount)
    : light(lamp), groups(sceneGroups), groupCount(sceneGroupCount), bounded(isBounded(lamp.location))
{
    if (!bounded)
        return;
    std::vector<Item> items;
    for (int g = 0; g < groupCount; g++)
        if (groups[g])
            anyFace(*groups[g],
                    [&](const ShadowFace& face)
                    {
                        sortIn({face, centroidDistance(light, face)}, items);
                        return false;
                    });
    if (items.empty())
        return;

    build(items, 0, items.size());
    std::vector<Caster> sorted;
    sorted.reserve(items.size());
    for (const Item& item : items)
        sorted.push_back(casters[size_t(item.caster)]);
    casters.swap(sorted);
}

void ShadowTree::sortIn(const Caster& caster, std::vector<Item>& items)
{
    // No vertex is farther away than that; this drops faces with a coordinate that is no finite number.
    if (!isfinite(caster.distance))
        return;
    const ShadowFace& face = caster.face;
    if (!isBounded(face.a) || !isBounded(face.b) || !isBounded(face.c))
    {
        alwaysTested.push_back(caster);
        return;
    }
    const double margin = hitMargin(light, face);
    if (margin == neverHit)
        return;
    if (margin == anywhere)
    {
        alwaysTested.push_back(caster);
        return;
    }

    const Vector l(light.location), a(face.a), b(face.b), c(face.c);
    Item item;
    item.caster = int32_t(casters.size());
    item.box = {{roundedDown(std::min({a.x, b.x, c.x}) - l.x - margin),
                 roundedDown(std::min({a.y, b.y, c.y}) - l.y - margin),
                 roundedDown(std::min({a.z, b.z, c.z}) - l.z - margin)},
                {roundedUp(std::max({a.x, b.x, c.x}) - l.x + margin),
                 roundedUp(std::max({a.y, b.y, c.y}) - l.y + margin),
                 roundedUp(std::max({a.z, b.z, c.z}) - l.z + margin)}};
    items.push_back(item);
    casters.push_back(caster);
}

void ShadowTree::build(std::vector<Item>& items, size_t first, size_t last)
{
    const size_t node = nodes.size();
    Node made = {items[first].box, HUGE_VALF, int32_t(first), int32_t(last - first)};
    float lowCentre[3], highCentre[3];
    auto centre = [](const Item& item, int axis) { return item.box.low[axis] + item.box.high[axis]; };
    for (int axis = 0; axis < 3; axis++)
    {
        lowCentre[axis] = HUGE_VALF;
        highCentre[axis] = -HUGE_VALF;
        for (size_t i = first; i < last; i++)
        {
            made.box.low[axis] = std::min(made.box.low[axis], items[i].box.low[axis]);
            made.box.high[axis] = std::max(made.box.high[axis], items[i].box.high[axis]);
            lowCentre[axis] = std::min(lowCentre[axis], centre(items[i], axis));
            highCentre[axis] = std::max(highCentre[axis], centre(items[i], axis));
        }
    }
    for (size_t i = first; i < last; i++)
        made.nearest = std::min(made.nearest, casters[size_t(items[i].caster)].distance);
    nodes.push_back(made);
    if (last - first <= leafSize)
        return;

    int axis = 0;
    for (int other = 1; other < 3; other++)
        if (highCentre[other] - lowCentre[other] > highCentre[axis] - lowCentre[axis])
            axis = other;
    const size_t middle = first + (last - first) / 2;
    std::nth_element(items.begin() + ptrdiff_t(first), items.begin() + ptrdiff_t(middle),
                     items.begin() + ptrdiff_t(last),
                     [&](const Item& a, const Item& b) { return centre(a, axis) < centre(b, axis); });
    build(items, first, middle);
    nodes[node].first = int32_t(nodes.size());
    nodes[node].count = 0;
    build(items, middle, last);
}

bool ShadowTree::blocks(const ShadowTarget& target) const
{
    if (!bounded || !isBounded(target.position))
    {
        for (int g = 0; g < groupCount; g++)
            if (groups[g] && groupBlocks(*groups[g], light, target))
                return true;
        return false;
    }
    for (const Caster& caster : alwaysTested)
        if (caster.distance < target.distance && isCandidate(light, target, caster.face))
            return true;
    return !nodes.empty() && treeBlocks(target);
}

namespace
{
// The ray that intersect2 sees: its direction is the rounded difference.
struct Ray
{
    double inverse[3];

    explicit Ray(const Vertex3D& d) : inverse{invert(d.x), invert(d.y), invert(d.z)} {}

    // A component of 0 stays within a box or outside it for good; a huge inverse says the same.
    static double invert(float d) { return d == 0.0f ? 1e300 : 1.0 / double(d); }

    bool meets(const float* low, const float* high) const
    {
        double enter = 0.0, leave = HUGE_VAL;
        for (int axis = 0; axis < 3; axis++)
        {
            double a = double(low[axis]) * inverse[axis], b = double(high[axis]) * inverse[axis];
            enter = std::max(enter, std::min(a, b));
            leave = std::min(leave, std::max(a, b));
        }
        return enter <= leave;
    }
};
} // namespace

bool ShadowTree::treeBlocks(const ShadowTarget& target) const
{
    const Ray ray(target.position - light.location);
    int32_t waiting[64]; // halving 2^31 faces goes no deeper
    int depth = 0;
    waiting[depth++] = 0;
    while (depth > 0)
    {
        const int32_t at = waiting[--depth];
        const Node& node = nodes[size_t(at)];
        if (!(node.nearest < target.distance) || !ray.meets(node.box.low, node.box.high))
            continue;
        if (node.count == 0)
        {
            waiting[depth++] = node.first;
            waiting[depth++] = at + 1;
            continue;
        }
        for (int32_t i = node.first; i < node.first + node.count; i++)
        {
            const Caster& caster = casters[size_t(i)];
            if (caster.distance < target.distance && isCandidate(light, target, caster.face))
                return true;
        }
    }
    return false;
}
