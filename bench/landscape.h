// What shadow light is traced on: hilly ground with boulders on it under one light, in meshes of at most
// 65,536 vertices.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

inline float height(float x, float y)
{
    return 6.0f * std::sin(x * 0.11f) * std::cos(y * 0.07f) + std::sin(x * 0.7f + y);
}

// Ground of 2 * side * side faces on a square of 200 units; side at most 255.
inline Mesh* makeGround(int side)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    const float step = 200.0f / float(side);
    for (int y = 0; y <= side; y++)
        for (int x = 0; x <= side; x++)
        {
            float px = float(x) * step - 100.0f, py = float(y) * step - 100.0f;
            vertices.push_back({px, py, height(px, py)});
        }
    for (int y = 0; y < side; y++)
        for (int x = 0; x < side; x++)
        {
            uint16_t a = uint16_t(y * (side + 1) + x), b = uint16_t(a + 1), c = uint16_t(a + side + 1);
            faces.push_back({a, b, c});
            faces.push_back({b, uint16_t(c + 1), c});
        }
    return makeMesh("ground", vertices, faces);
}

// A ball of 200 faces.
inline Mesh* makeBoulder(float radius, Vertex3D position)
{
    const int around = 10, up = 11;
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int j = 0; j <= up; j++)
        for (int i = 0; i < around; i++)
        {
            float tilt = 3.14159f * float(j) / float(up),
                  turn = 6.28318f * (float(i) + 0.5f * float(j)) / around;
            vertices.push_back({radius * std::sin(tilt) * std::cos(turn),
                                radius * std::sin(tilt) * std::sin(turn), -radius * std::cos(tilt)});
        }
    for (int j = 0; j < up; j++)
        for (int i = 0; i < around; i++)
        {
            uint16_t a = uint16_t(j * around + i), b = uint16_t(j * around + (i + 1) % around);
            uint16_t c = uint16_t(a + around), d = uint16_t(b + around);
            if (j > 0)
                faces.push_back({a, b, c});
            if (j < up - 1)
                faces.push_back({b, d, c});
        }
    return makeMesh("boulder", vertices, faces, position);
}

struct Landscape
{
    OGroup group;
    Light light;
    int faces = 0;
    int vertices = 0;

    explicit Landscape(int wantedFaces)
    {
        add(makeGround(std::min(250, int(std::sqrt(float(wantedFaces) * 0.25f)))));
        std::mt19937 random(42);
        std::uniform_real_distribution<float> place(-100.0f, 100.0f), size(0.5f, 4.0f);
        while (faces < wantedFaces - 100)
        {
            float x = place(random), y = place(random), radius = size(random);
            add(makeBoulder(radius, {x, y, height(x, y) + radius * 0.5f}));
        }
        light.location = {13.3f, -27.7f, 60.1f};
        light.color = {1.0f, 1.0f, 1.0f, 1.0f};
    }

    void add(Mesh* mesh)
    {
        group.addMesh(mesh);
        faces += mesh->faceCount;
        vertices += mesh->vertexCount;
    }
};

inline Landscape& landscape(int faces)
{
    static std::map<int, std::unique_ptr<Landscape>> made;
    std::unique_ptr<Landscape>& scene = made[faces];
    if (!scene)
        scene = std::make_unique<Landscape>(faces);
    return *scene;
}
