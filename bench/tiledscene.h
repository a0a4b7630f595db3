// What the scenes that are asked have in common: a square of 1,000 units in tiles of 1,000 triangles, and the
// rays in it.
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

inline int tilesAlongSide(int triangles)
{
    return std::max(1, static_cast<int>(std::lround(std::sqrt(triangles / 1000.0))));
}

// A mesh that stands where its vertices are, ready for collision.
inline Mesh* standingMesh(const char* name, const std::vector<Vertex3D>& vertices,
                          const std::vector<Facelist>& faces)
{
    Mesh* mesh = makeMesh(name, vertices, faces);
    mesh->pivot = {0, 0, 0};
    mesh->rotation = {0, 0, 0, 0};
    mesh->calcEdgeNormals();
    return mesh;
}

// A group of tiles, without its tree. @param makeTile  called with the tile's column, row and side
template <class MakeTile>
std::unique_ptr<OGroup> makeTiledGroup(int triangles, MakeTile makeTile)
{
    vrkSelectRasterizer(7); // nothing is drawn
    auto group = std::make_unique<OGroup>();
    group->addTList(new TList);
    const int side = tilesAlongSide(triangles);
    for (int i = 0; i < side * side; ++i)
        group->addMesh(makeTile(i % side, i / side, worldSide / static_cast<float>(side)));
    return group;
}

struct Ray
{
    Vertex3D start, end;
};

enum RayKind
{
    shortRays, // of 10 units
    longRays,  // across the scene
    raysDown
};

// 1,024 rays that start above the surface, whose height at x, y heightAt tells; those across end below top.
template <class HeightAt>
std::vector<Ray> makeRaysAbove(RayKind kind, HeightAt heightAt, float top)
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
        ray.end = {any(20, 980), any(20, 980), any(-10, top)};
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
