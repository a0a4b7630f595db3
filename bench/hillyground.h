// Hilly ground, and rays in it.
#pragma once

#include "bench/tiledscene.h"

inline float heightAt(float x, float y)
{
    return 20.0f * std::sin(x * 0.021f) * std::cos(y * 0.017f) + 2.0f * std::sin(x * 0.3f + y * 0.2f);
}

// A tile of 25 by 20 squares whose lower left corner is at x, y.
inline Mesh* makeTile(float x, float y, float width, float height)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int j = 0; j <= 20; ++j)
        for (int i = 0; i <= 25; ++i)
        {
            const float px = x + width * float(i) / 25, py = y + height * float(j) / 20;
            vertices.push_back({px, py, heightAt(px, py)});
        }
    for (uint16_t j = 0; j < 20; ++j)
        for (uint16_t i = 0; i < 25; ++i)
        {
            const uint16_t a = uint16_t(j * 26 + i), c = uint16_t(a + 26);
            faces.push_back({a, uint16_t(a + 1), c});
            faces.push_back({uint16_t(a + 1), uint16_t(c + 1), c});
        }
    return standingMesh("tile", vertices, faces);
}

// Groups are made once, without their tree.
inline OGroup* groundOf(int triangles)
{
    static std::map<int, std::unique_ptr<OGroup>> made;
    std::unique_ptr<OGroup>& group = made[triangles];
    if (!group)
        group = makeTiledGroup(triangles, [](int column, int row, float side)
                               { return makeTile(float(column) * side, float(row) * side, side, side); });
    return group.get();
}

inline std::vector<Ray> makeRays(RayKind kind)
{
    return makeRaysAbove(kind, heightAt, 30);
}
