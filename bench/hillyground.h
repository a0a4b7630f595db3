// The scene that is asked: hilly ground in tiles of 1,000 triangles on a square of 1,000 units, and rays in
// it.
#pragma once

#include <cmath>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/ogroup.h"

constexpr float worldSide = 1000.0f;

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
    Mesh* mesh = makeMesh("tile", vertices, faces);
    mesh->pivot = {0, 0, 0};
    mesh->rotation = {0, 0, 0, 0};
    mesh->calcEdgeNormals();
    return mesh;
}

// Groups are made once, without their tree.
inline OGroup* groundOf(int triangles)
{
    static std::map<int, std::unique_ptr<OGroup>> made;
    std::unique_ptr<OGroup>& group = made[triangles];
    if (group)
        return group.get();
    vrkSelectRasterizer(7); // nothing is drawn
    group = std::make_unique<OGroup>();
    group->addTList(new TList);
    const int side = static_cast<int>(std::lround(std::sqrt(triangles / 1000.0)));
    const float tile = worldSide / static_cast<float>(side);
    for (int i = 0; i < side * side; ++i)
        group->addMesh(makeTile(float(i % side) * tile, float(i / side) * tile, tile, tile));
    return group.get();
}

struct Ray
{
    Vertex3D start, end;
};

enum RayKind
{
    shortRays,
    longRays,
    raysDown
};

inline std::vector<Ray> makeRays(RayKind kind)
{
    std::mt19937 random(1);
    const auto any = [&](float low, float high)
    { return low + (high - low) * static_cast<float>(random() % 65536) / 65536; };
    std::vector<Ray> rays;
    for (int i = 0; i < 1024; ++i)
    {
        Ray ray;
        ray.start = {any(20, 980), any(20, 980), 0};
        ray.start.z = heightAt(ray.start.x, ray.start.y) + any(1, 15);
        ray.end = {any(20, 980), any(20, 980), any(-10, 30)};
        if (kind == shortRays)
        {
            Vertex3D step = ray.end - ray.start;
            step.normalize();
            step *= 10;
            ray.end = ray.start + step;
        }
        if (kind == raysDown)
            ray.end = {ray.start.x, ray.start.y, -50};
        rays.push_back(ray);
    }
    return rays;
}
