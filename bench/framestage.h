// The scenes whose frames are measured, and the camera that looks at them.
#pragma once

#include <memory>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

inline TList* makeMaterials(int count, float transparency)
{
    TList* list = new TList;
    for (int i = 0; i < count; i++)
    {
        Material* material = new Material;
        material->transparency = transparency;
        material->addFirstTexture(new Texture);
        list->addMaterial(material);
    }
    return list;
}

inline void finish(Mesh& mesh, int material)
{
    for (int i = 0; i < mesh.faceCount; i++)
        mesh.faceMaterials[i].materialIndex = material;
    mesh.sortFacesByMaterial();
    mesh.calcRadius();
}

// Ground of 2 * columns * rows triangles.
inline Mesh* makeGround(int columns, int rows, Vertex3D position)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int y = 0; y <= rows; y++)
        for (int x = 0; x <= columns; x++)
            vertices.push_back({float(x - columns / 2), float(y - rows / 2), 0.0f});
    for (int y = 0; y < rows; y++)
        for (int x = 0; x < columns; x++)
        {
            uint16_t a = uint16_t(y * (columns + 1) + x), b = uint16_t(a + 1), c = uint16_t(a + columns + 1);
            faces.push_back({a, b, c});
            faces.push_back({b, uint16_t(c + 1), c});
        }
    return makeMesh("ground", vertices, faces, position);
}

inline Mesh* makeBox(Vertex3D position)
{
    std::vector<Vertex3D> vertices;
    for (int i = 0; i < 8; i++)
        vertices.push_back({float(i & 1), float(i >> 1 & 1), float(i >> 2)});
    return makeMesh("box", vertices,
                    {{0, 2, 3},
                     {0, 3, 1},
                     {4, 5, 7},
                     {4, 7, 6},
                     {0, 1, 5},
                     {0, 5, 4},
                     {2, 6, 7},
                     {2, 7, 3},
                     {0, 4, 6},
                     {0, 6, 2},
                     {1, 3, 7},
                     {1, 7, 5}},
                    position);
}

// A group and a camera in its middle that looks along y, with 90 degrees from top to bottom.
struct Stage
{
    std::unique_ptr<OGroup> group = std::make_unique<OGroup>();
    Camera camera;

    explicit Stage(int materials, float transparency = 0.0f)
    {
        vrkSelectRasterizer(0);
        vrkViewport = {640.0f, 480.0f, 640.0f / 480.0f, 1.0f, 10000.0f, 90.0f};
        camera.rotation = {0.0f, 90.0f, 0.0f, 0.0f};
        camera.eye = {0.0f, 0.0f, 2.0f};
        camera.targetFromRotation(10.0f);
        group->addTList(makeMaterials(materials, transparency));
    }

    void render(int flags)
    {
        vrkInitMatrix();
        vrkLookWithCamera(&camera);
        group->render(flags, &camera);
    }
};

constexpr int boxCount = 4000;

// Boxes on a square of 640 units around the camera, which sees about a quarter of them.
inline void addBoxes(OGroup& group, int materials)
{
    for (int i = 0; i < boxCount; i++)
    {
        group.addMesh(makeBox({float(i % 64 - 32) * 10.0f, float(i / 64 - 32) * 10.0f, 0.0f}));
        finish(*group.meshes[i], 1 + i % materials);
    }
}
