// Triangles and segments against cubes.

#include <algorithm>
#include <cmath>

#include "spatial/octreegeometry.h"
#include "vornik/spatial/octree.h"

static float component(const Vertex3D& v, int axis)
{
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

static float signOf(float value)
{
    return value >= 0.0f ? 1.0f : -1.0f;
}

// The axis of the largest component; of two equal ones the later.
static int largestAxis(const Vertex3D& v)
{
    const float x = std::fabs(v.x), y = std::fabs(v.y), z = std::fabs(v.z);
    if (x > y)
        return x > z ? 0 : 2;
    return y > z ? 1 : 2;
}

int polygonContainsPoint(const Vertex3D* triangle, const Vertex3D* normal, const Vertex3D* point)
{
    const int k = largestAxis(*normal);
    const bool forward = component(*normal, k) >= 0.0f;
    const int u = (k + (forward ? 1 : 2)) % 3;
    const int v = (k + (forward ? 2 : 1)) % 3;
    const float pu = component(*point, u), pv = component(*point, v);

    int windings = 0;
    for (int i = 0; i < 3; ++i)
    {
        const Vertex3D &a = triangle[i], &b = triangle[(i + 1) % 3];
        const float au = component(a, u), av = component(a, v);
        const float bu = component(b, u), bv = component(b, v);
        const int s = static_cast<int>(pu < bu) - static_cast<int>(pu < au);
        if (s == 0)
            continue;
        const float sign = static_cast<float>(s);
        if ((pv < bv) != (pv < av))
        {
            if ((pv - av) * (bu - au) * sign >= (bv - av) * (pu - au) * sign)
                windings += s;
        }
        else if (av <= pv)
            windings += s;
    }
    return windings;
}

bool segmentIntersectsCube(const Vertex3D* p, const Vertex3D* q)
{
    const float from[3] = {p->x, p->y, p->z}, to[3] = {q->x, q->y, q->z};
    float edge[3], sign[3];
    for (int i = 0; i < 3; ++i)
    {
        edge[i] = to[i] - from[i];
        sign[i] = signOf(edge[i]);
        if (sign[i] * from[i] > 0.5f || sign[i] * to[i] < -0.5f)
            return false;
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        const int i = (axis + 1) % 3, j = (axis + 2) % 3;
        const float lhs = from[i] * edge[j] - from[j] * edge[i];
        const float rhs = 0.5f * (sign[j] * edge[i] + sign[i] * edge[j]);
        if (rhs * rhs < lhs * lhs)
            return false;
    }
    return true;
}

bool polygonIntersectsCube(const Vertex3D* triangle, const Vertex3D* normal)
{
    for (int i = 0; i < 3; ++i)
        if (segmentIntersectsCube(&triangle[i], &triangle[(i + 1) % 3]))
            return true;
    if (normal->x == 0.0f && normal->y == 0.0f && normal->z == 0.0f)
        return false;
    // No edge in the cube: a large triangle may still cut the diagonal that lies most along its normal.
    const Vertex3D sign = {signOf(normal->x), signOf(normal->y), signOf(normal->z)};
    const float t = (triangle[0] * *normal) / (sign * *normal);
    if ((t + 0.5f) * (t - 0.5f) > 0.0f)
        return false;
    const Vertex3D point = {sign.x * t, sign.y * t, sign.z * t};
    return polygonContainsPoint(triangle, normal, &point) != 0;
}

// Brings points to the unit cube around the origin.
struct ToUnitCube
{
    Vertex3D middle;
    float scale;

    ToUnitCube(const Vertex3D& min, const Vertex3D& max)
        : middle{(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f},
          // A little wider, so that what lies exactly on a border is in both neighbours.
          scale(1.0f / ((max.x - min.x) * 1.01f))
    {
    }
    Vertex3D operator()(const Vertex3D& p) const
    {
        return {(p.x - middle.x) * scale, (p.y - middle.y) * scale, (p.z - middle.z) * scale};
    }
};

AskedTriangle::AskedTriangle(const Vertex3D* triangle)
    : corners(triangle), normal(calcPlaneNormal(&triangle[0], &triangle[1], &triangle[2]))
{
    along = largestAxis(normal);
    u = (along + 1) % 3;
    v = (along + 2) % 3;
}

// polygonIntersectsCube finds a triangle without an edge in the cube by a point of its plane. Where all
// corners lie beyond one side of the cube the plane above that point does, too, but for rounding. With the
// sine of the corner at least a 64th the normal turns by less than 2e-5; with coordinates below 4096 widths
// corners move by less than 1e-3 of a width. All that, on a triangle of a few widths and a slope of at
// most 1.5, comes to less than half of a 64th.
float AskedTriangle::leastWidth() const
{
    const Vertex3D e1 = corners[0] - corners[1], e2 = corners[0] - corners[2];
    const float product = (e1 * e1) * (e2 * e2);
    if (!(product > 1e-20f && normal * normal * 4000.0f > product))
        return HUGE_VALF;
    float largest = 0.0f;
    for (int i = 0; i < 3; ++i)
        for (int axis = 0; axis < 3; ++axis)
            largest = std::max(largest, std::fabs(component(corners[i], axis)));
    return largest / 4096.0f;
}

// Do all corners lie beyond one side of the unit cube along an axis?
static bool isBeside(const Vertex3D* moved, int axis)
{
    const float a = component(moved[0], axis), b = component(moved[1], axis), c = component(moved[2], axis);
    return (a > 0.5f && b > 0.5f && c > 0.5f) || (a < -0.5f && b < -0.5f && c < -0.5f);
}

// A triangle beside the cube along an axis of its projection has no edge in it, and winds around no point of
// it. Along the third axis that is not as sure: there the whole test decides.
bool AskedTriangle::intersects(const Vertex3D& min, const Vertex3D& max) const
{
    if (max.x - min.x == 0.0f)
        return false;
    const ToUnitCube move(min, max);
    const Vertex3D moved[3] = {move(corners[0]), move(corners[1]), move(corners[2])};
    return !isBeside(moved, u) && !isBeside(moved, v) && polygonIntersectsCube(moved, &normal);
}

bool triangleIntersectsBox(const Vertex3D* triangle, const Vertex3D* min, const Vertex3D* max)
{
    return AskedTriangle(triangle).intersects(*min, *max);
}

bool segmentIntersectsBox(const Vertex3D* a, const Vertex3D* b, const Vertex3D* min, const Vertex3D* max)
{
    if (max->x - min->x == 0.0f)
        return false;
    const ToUnitCube move(*min, *max);
    const Vertex3D from = move(*a), to = move(*b);
    return segmentIntersectsCube(&from, &to);
}

AskedChildren::Ends AskedChildren::scaledEnds(float from, float to, float middle, float scale)
{
    Ends ends = {(from - middle) * scale, (to - middle) * scale, false};
    const float sign = signOf(ends.to - ends.from);
    ends.isBeside = sign * ends.from > 0.5f || sign * ends.to < -0.5f;
    return ends;
}

AskedChildren::AskedChildren(const Vertex3D& start, const Vertex3D& end, const Vertex3D (&low)[2],
                             const Vertex3D (&high)[2])
{
    for (int half = 0; half < 2; ++half)
    {
        hasWidth[half] = high[half].x - low[half].x != 0.0f;
        const float scale = ToUnitCube(low[half], high[half]).scale;
        x[half] = scaledEnds(start.x, end.x, (low[half].x + high[half].x) * 0.5f, scale);
        for (int other = 0; other < 2; ++other)
        {
            y[half][other] = scaledEnds(start.y, end.y, (low[other].y + high[other].y) * 0.5f, scale);
            z[half][other] = scaledEnds(start.z, end.z, (low[other].z + high[other].z) * 0.5f, scale);
        }
    }
}

bool AskedChildren::isPassed(int child) const
{
    const int half = child & 1;
    const Ends &ex = x[half], &ey = y[half][child >> 1 & 1], &ez = z[half][child >> 2 & 1];
    if (!hasWidth[half] || ex.isBeside || ey.isBeside || ez.isBeside)
        return false;
    const Vertex3D from = {ex.from, ey.from, ez.from}, to = {ex.to, ey.to, ez.to};
    return segmentIntersectsCube(&from, &to);
}
