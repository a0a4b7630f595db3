#include "tests/spatial/plaincube.h"

#include <cmath>

// Vectors as arrays.
struct Array
{
    float at[3];
    explicit Array(const Vertex3D& v) : at{v.x, v.y, v.z} {}
    float operator[](int i) const { return at[i]; }
};

int plainWindings(const Vertex3D* triangle, const Vertex3D& normal, const Vertex3D& point)
{
    const Array n(normal), p(point);
    // The axis that is dropped; x only if it beats both, y only if it beats z.
    int k = 2;
    if (std::fabs(n[1]) > std::fabs(n[2]) && !(std::fabs(n[0]) > std::fabs(n[1])))
        k = 1;
    if (std::fabs(n[0]) > std::fabs(n[1]) && std::fabs(n[0]) > std::fabs(n[2]))
        k = 0;
    int u = (k + 1) % 3, v = (k + 2) % 3;
    if (!(n[k] >= 0))
        u = (k + 2) % 3, v = (k + 1) % 3;
    int sum = 0;
    for (int i = 0; i < 3; ++i)
    {
        const Array a(triangle[i]), b(triangle[(i + 1) % 3]);
        const int s = (p[u] < b[u] ? 1 : 0) - (p[u] < a[u] ? 1 : 0);
        if (s == 0)
            continue;
        const float f = static_cast<float>(s);
        const bool crosses = (p[v] < b[v]) != (p[v] < a[v]);
        if (crosses ? (p[v] - a[v]) * (b[u] - a[u]) * f >= (b[v] - a[v]) * (p[u] - a[u]) * f : a[v] <= p[v])
            sum += s;
    }
    return sum;
}

bool plainSegmentIntersectsCube(const Vertex3D& from, const Vertex3D& to)
{
    const Array p(from), q(to);
    float e[3], sign[3];
    for (int i = 0; i < 3; ++i)
    {
        e[i] = q[i] - p[i];
        sign[i] = e[i] >= 0 ? 1.0f : -1.0f;
    }
    for (int i = 0; i < 3; ++i)
        if (sign[i] * p[i] > 0.5f || sign[i] * q[i] < -0.5f)
            return false;
    const int pairs[3][2] = {{1, 2}, {2, 0}, {0, 1}};
    for (const auto& [i, j] : pairs)
    {
        const float left = p[i] * e[j] - p[j] * e[i], right = 0.5f * (sign[j] * e[i] + sign[i] * e[j]);
        if (right * right < left * left)
            return false;
    }
    return true;
}

bool plainPolygonIntersectsCube(const Vertex3D* triangle, const Vertex3D& normal)
{
    for (int i = 0; i < 3; ++i)
        if (plainSegmentIntersectsCube(triangle[i], triangle[(i + 1) % 3]))
            return true;
    const Array n(normal), first(triangle[0]);
    if (n[0] == 0 && n[1] == 0 && n[2] == 0)
        return false;
    float sign[3];
    for (int i = 0; i < 3; ++i)
        sign[i] = n[i] >= 0 ? 1.0f : -1.0f;
    const float t = (first[0] * n[0] + first[1] * n[1] + first[2] * n[2]) /
                    (sign[0] * n[0] + sign[1] * n[1] + sign[2] * n[2]);
    if ((t + 0.5f) * (t - 0.5f) > 0)
        return false;
    return plainWindings(triangle, normal, {sign[0] * t, sign[1] * t, sign[2] * t}) != 0;
}

// Brings a point to the unit cube.
static Vertex3D scaled(const Vertex3D& p, const Vertex3D& min, const Vertex3D& max)
{
    const float s = 1 / ((max.x - min.x) * 1.01f);
    const Vertex3D c = {(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f};
    return {(p.x - c.x) * s, (p.y - c.y) * s, (p.z - c.z) * s};
}

bool plainTriangleIntersectsBox(const Vertex3D* t, const Vertex3D& min, const Vertex3D& max)
{
    if (max.x - min.x == 0)
        return false;
    const Vertex3D moved[3] = {scaled(t[0], min, max), scaled(t[1], min, max), scaled(t[2], min, max)};
    return plainPolygonIntersectsCube(moved, calcPlaneNormal(&t[0], &t[1], &t[2]));
}

bool plainSegmentIntersectsBox(const Vertex3D& a, const Vertex3D& b, const Vertex3D& min, const Vertex3D& max)
{
    return max.x - min.x != 0 && plainSegmentIntersectsCube(scaled(a, min, max), scaled(b, min, max));
}
