// Mesh building: each shape brings its own vertices, so that texture coordinates never have to be shared, and
// one smoothing group for each surface that is to look round.

#include "samples/geometry.h"

#include <algorithm>
#include <cstring>

namespace sample
{

Frame Frame::within(const Frame& outer) const
{
    const Vec3 o = outer.origin;
    return {outer.point(origin), outer.point(x) - o, outer.point(y) - o, outer.point(z) - o};
}

Frame Frame::turned(Vec3 origin, float degrees)
{
    const float a = degrees * pi / 180;
    return {origin, {std::cos(a), std::sin(a), 0}, {-std::sin(a), std::cos(a), 0}, {0, 0, 1}};
}

float randomValue(uint32_t a, uint32_t b, uint32_t c)
{
    uint32_t h = a * 0x9E3779B1u ^ (b + 0x7F4A7C15u) * 0x85EBCA77u ^ (c + 0x165667B1u) * 0xC2B2AE3Du;
    h = (h ^ (h >> 15)) * 0x2C1B3C6Du;
    h = (h ^ (h >> 12)) * 0x297A2D39u;
    h ^= h >> 15;
    return static_cast<float>(h >> 8) / 16777216.0f;
}

Patch cellOf(int column, int row, int columns, int rows)
{
    const Vec2 size = {1.0f / static_cast<float>(columns), 1.0f / static_cast<float>(rows)};
    const Vec2 low = {static_cast<float>(column) * size.x, static_cast<float>(row) * size.y};
    return {low, low + size};
}

static int cellsFor(float extent, float cell)
{
    return std::clamp(static_cast<int>(std::ceil(extent / cell - 0.01f)), 1, 200);
}

int Builder::point(Vec3 p, Vec2 uv)
{
    Vec3 world = frame.point(p);
    if (mirrorShift > 0)
        world.z = -world.z;
    mesh.points.push_back(world);
    mesh.coords.push_back(uv);
    return static_cast<int>(mesh.points.size()) - 1;
}

void Builder::triangle(int a, int b, int c, uint32_t group)
{
    if (mirrorShift > 0)
        std::swap(b, c);
    const auto index = [](int i) { return static_cast<uint16_t>(i); };
    mesh.faces.push_back({index(a), index(b), index(c), material + mirrorShift, group});
}

void Builder::quad(int a, int b, int c, int d, uint32_t group)
{
    triangle(a, b, c, group);
    triangle(a, c, d, group);
}

void Builder::net(const std::vector<Vec3>& points, const std::vector<Vec2>& coords, int columns,
                  uint32_t group)
{
    const int rows = static_cast<int>(points.size()) / columns;
    std::vector<int> index;
    for (size_t i = 0; i < points.size(); ++i)
        index.push_back(point(points[i], coords[i]));
    for (int r = 0; r + 1 < rows; ++r)
    {
        for (int c = 0; c + 1 < columns; ++c)
        {
            const size_t i = static_cast<size_t>(r) * static_cast<size_t>(columns) + static_cast<size_t>(c);
            const size_t above = i + static_cast<size_t>(columns);
            quad(index[i], index[i + 1], index[above + 1], index[above], group);
        }
    }
}

void Builder::panel(Vec3 corner, Vec3 right, Vec3 up, Patch patch)
{
    const int columns = cellsFor(length(right), cell), rows = cellsFor(length(up), cell);
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (int r = 0; r <= rows; ++r)
    {
        for (int c = 0; c <= columns; ++c)
        {
            const float s = static_cast<float>(c) / static_cast<float>(columns);
            const float t = static_cast<float>(r) / static_cast<float>(rows);
            points.push_back(corner + right * s + up * t);
            coords.push_back(patch.at(s, t));
        }
    }
    net(points, coords, columns + 1, newGroup());
}

void Builder::tiledPanel(Vec3 corner, Vec3 right, Vec3 up, float tile, Vec2 shift)
{
    panel(corner, right, up, {shift, shift + Vec2{length(right) / tile, length(up) / tile}});
}

void Builder::gable(Vec3 corner, Vec3 right, Vec3 up, float tile, Vec2 shift)
{
    const float width = length(right), height = length(up);
    const int columns = cellsFor(width, cell), rows = cellsFor(height, cell);
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (int r = 0; r <= rows; ++r)
    {
        const float t = static_cast<float>(r) / static_cast<float>(rows);
        for (int c = 0; c <= columns; ++c)
        {
            const float across = static_cast<float>(c) / static_cast<float>(columns);
            const float s = 0.5f + (across - 0.5f) * (1 - t * 0.999f);
            points.push_back(corner + right * s + up * t);
            coords.push_back(shift + Vec2{s * width / tile, t * height / tile});
        }
    }
    net(points, coords, columns + 1, newGroup());
}

void Builder::box(Vec3 low, Vec3 high, float tile, const char* sides)
{
    const Vec3 size = high - low;
    const Vec3 ex = {size.x, 0, 0}, ey = {0, size.y, 0}, ez = {0, 0, size.z};
    const Vec2 shift = {std::abs(low.x + low.y) / tile, std::abs(low.z) / tile};
    for (const char* side = sides; *side; ++side)
    {
        switch (*side)
        {
        case 'y':
            tiledPanel(low, ex, ez, tile, shift);
            break;
        case 'Y':
            tiledPanel(low + ey + ex, ex * -1, ez, tile, shift);
            break;
        case 'x':
            tiledPanel(low + ey, ey * -1, ez, tile, shift);
            break;
        case 'X':
            tiledPanel(low + ex, ey, ez, tile, shift);
            break;
        case 'z':
            tiledPanel(low + ey, ex, ey * -1, tile, shift);
            break;
        default:
            tiledPanel(low + ez, ex, ey, tile, shift);
            break;
        }
    }
}

void Builder::crate(Vec3 low, Vec3 high, Patch patch, const char* sides)
{
    const Vec3 size = high - low;
    const Vec3 ex = {size.x, 0, 0}, ey = {0, size.y, 0}, ez = {0, 0, size.z};
    for (const char* side = sides; *side; ++side)
    {
        switch (*side)
        {
        case 'y':
            panel(low, ex, ez, patch);
            break;
        case 'Y':
            panel(low + ey + ex, ex * -1, ez, patch);
            break;
        case 'x':
            panel(low + ey, ey * -1, ez, patch);
            break;
        case 'X':
            panel(low + ex, ey, ez, patch);
            break;
        case 'z':
            panel(low + ey, ex, ey * -1, patch);
            break;
        default:
            panel(low + ez, ex, ey, patch);
            break;
        }
    }
}

// The rings share their vertices, also where an edge is sharp: the smoothing groups part the surfaces there.
void Builder::turned(Vec3 base, const std::vector<Ring>& rings, int segments, float uRepeat, float flat)
{
    std::vector<int> below;
    uint32_t group = newGroup();
    for (size_t r = 0; r < rings.size(); ++r)
    {
        std::vector<int> row;
        for (int s = 0; s <= segments; ++s)
        {
            const float turn = static_cast<float>(s) / static_cast<float>(segments);
            const float a = turn * 2 * pi;
            const float radius = rings[r].radius;
            row.push_back(point(base + Vec3{radius * std::cos(a), radius * std::sin(a) * flat, rings[r].z},
                                {turn * uRepeat, rings[r].v}));
        }
        // The seam repeats the first vertex for its texture coordinate, at the very same place.
        mesh.points[static_cast<size_t>(row.back())] = mesh.points[static_cast<size_t>(row.front())];
        for (int s = 0; r > 0 && s < segments; ++s)
        {
            const size_t i = static_cast<size_t>(s);
            if (rings[r - 1].radius > 0)
                triangle(below[i], below[i + 1], row[i + 1], group);
            if (rings[r].radius > 0)
                triangle(below[i], row[i + 1], row[i], group);
        }
        if (rings[r].sharp)
            group = newGroup();
        below = row;
    }
}

void Builder::disc(Vec3 middle, float radius, int segments, Patch patch)
{
    const uint32_t group = newGroup();
    const bool down = segments < 0;
    segments = std::abs(segments);
    const int centre = point(middle, patch.at(0.5f, 0.5f));
    int last = 0;
    for (int s = 0; s <= segments; ++s)
    {
        const float a = 2 * pi * static_cast<float>(s) / static_cast<float>(segments);
        const float cx = std::cos(a), cy = std::sin(a);
        const int next =
            point(middle + Vec3{cx * radius, cy * radius, 0}, patch.at(0.5f + cx * 0.5f, 0.5f + cy * 0.5f));
        if (s > 0)
            triangle(centre, down ? next : last, down ? last : next, group);
        last = next;
    }
}

void Builder::rod(Vec3 from, Vec3 to, float radiusFrom, float radiusTo, int sides, float tile)
{
    const Vec3 along = unit(to - from);
    const Vec3 helper = std::abs(along.z) > 0.9f ? Vec3{1, 0, 0} : Vec3{0, 0, 1};
    const Vec3 u = unit(cross(helper, along)), v = cross(along, u);
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (int end = 0; end < 2; ++end)
    {
        for (int s = 0; s <= sides; ++s)
        {
            const float turn = static_cast<float>(s % sides) / static_cast<float>(sides);
            const Vec3 out = u * std::cos(turn * 2 * pi) + v * std::sin(turn * 2 * pi);
            points.push_back((end ? to : from) + out * (end ? radiusTo : radiusFrom));
            coords.push_back(
                {static_cast<float>(s) / static_cast<float>(sides), end ? length(to - from) / tile : 0});
        }
    }
    net(points, coords, sides + 1, newGroup());
}

void Builder::ribbon(Vec3 from, Vec3 to, float width, Vec3 eye, Patch patch, float sag, int pieces)
{
    const Vec3 middle = mix(from, to, 0.5f);
    const Vec3 side = unit(cross(to - from, eye - middle)) * (width * 0.5f);
    std::vector<Vec3> points;
    std::vector<Vec2> coords;
    for (int i = 0; i <= pieces; ++i)
    {
        const float t = static_cast<float>(i) / static_cast<float>(pieces);
        const Vec3 p = mix(from, to, t) - Vec3{0, 0, sag * 4 * t * (1 - t)};
        points.push_back(p - side);
        points.push_back(p + side);
        coords.push_back(patch.at(0, t));
        coords.push_back(patch.at(1, t));
    }
    net(points, coords, 2, newGroup());
}

void Builder::card(Vec3 middle, Vec3 right, Vec3 up, Patch patch)
{
    panel(middle - right * 0.5f - up * 0.5f, right, up, patch);
}

void sortFarToNear(Mesh& mesh, Vec3 eye)
{
    const auto farness = [&](const Face& f)
    { return length((mesh.points[f.a] + mesh.points[f.b] + mesh.points[f.c]) * (1 / 3.0f) - eye); };
    std::stable_sort(mesh.faces.begin(), mesh.faces.end(),
                     [&](const Face& a, const Face& b) { return farness(a) > farness(b); });
}

} // namespace sample
