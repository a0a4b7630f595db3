// A city, and rays in its streets and over its roofs: level ground in blocks of four houses with upright
// walls and flat roofs. A block has 1,000 triangles, and the more there are, the narrower are the streets.
#pragma once

#include <algorithm>

#include "bench/tiledscene.h"

constexpr float houseFrom = 0.1f, houseTo = 0.4f; // in half blocks; the rest is street

// Height of a house: number 0 to 3 of a block. The same at each call.
inline float houseHeight(int column, int row, int number, float side)
{
    std::minstd_rand random(unsigned(column * 4001 + row * 37 + number + 1));
    random.discard(3);
    return std::min(side, 80.0f) * (0.3f + 1.2f * static_cast<float>(random() % 1024) / 1024);
}

// Height of the ground or the roof at x, y.
inline float cityHeightAt(int triangles, float x, float y)
{
    const float side = worldSide / static_cast<float>(tilesAlongSide(triangles));
    const int column = int(x / side), row = int(y / side);
    const float u = x / side - float(column), v = y / side - float(row);
    const int right = u >= 0.5f, upper = v >= 0.5f;
    const auto inside = [](float place, int half)
    { return place - 0.5f * float(half) >= houseFrom && place - 0.5f * float(half) <= houseTo; };
    return inside(u, right) && inside(v, upper) ? houseHeight(column, row, upper * 2 + right, side) : 0.0f;
}

// Adds a rectangle of columns by rows squares from a corner; its front is where along x up comes from.
inline void addRectangle(const Vertex3D& corner, const Vertex3D& along, const Vertex3D& up, int columns,
                         int rows, std::vector<Vertex3D>* vertices, std::vector<Facelist>* faces)
{
    const size_t first = vertices->size();
    for (int j = 0; j <= rows; ++j)
        for (int i = 0; i <= columns; ++i)
        {
            Vertex3D right = along, above = up;
            right *= float(i) / float(columns);
            above *= float(j) / float(rows);
            vertices->push_back(corner + right + above);
        }
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i)
        {
            const uint16_t a = uint16_t(first + size_t(j * (columns + 1) + i)), c = uint16_t(a + columns + 1);
            faces->push_back({a, uint16_t(a + 1), c});
            faces->push_back({uint16_t(a + 1), uint16_t(c + 1), c});
        }
}

inline Mesh* makeBlock(int column, int row, float side)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    const float x = float(column) * side, y = float(row) * side;
    addRectangle({x, y, 0}, {side, 0, 0}, {0, side, 0}, 10, 10, &vertices, &faces);
    for (int number = 0; number < 4; ++number)
    {
        const float low = houseFrom * side, width = (houseTo - houseFrom) * side;
        const float height = houseHeight(column, row, number, side);
        const float left = x + low + float(number % 2) * side / 2,
                    front = y + low + float(number / 2) * side / 2;
        const float right = left + width, back = front + width;
        const Vertex3D up = {0, 0, height};
        addRectangle({left, front, 0}, {width, 0, 0}, up, 4, 5, &vertices, &faces);
        addRectangle({right, front, 0}, {0, width, 0}, up, 4, 5, &vertices, &faces);
        addRectangle({right, back, 0}, {-width, 0, 0}, up, 4, 5, &vertices, &faces);
        addRectangle({left, back, 0}, {0, -width, 0}, up, 4, 5, &vertices, &faces);
        addRectangle({left, front, height}, {width, 0, 0}, {0, width, 0}, 4, 5, &vertices, &faces);
    }
    return standingMesh("block", vertices, faces);
}

// Groups are made once, without their tree.
inline OGroup* cityOf(int triangles)
{
    static std::map<int, std::unique_ptr<OGroup>> made;
    std::unique_ptr<OGroup>& group = made[triangles];
    if (!group)
        group = makeTiledGroup(triangles, makeBlock);
    return group.get();
}

inline std::vector<Ray> makeCityRays(int triangles, RayKind kind)
{
    return makeRaysAbove(
        kind, [triangles](float x, float y) { return cityHeightAt(triangles, x, y); }, 60);
}
