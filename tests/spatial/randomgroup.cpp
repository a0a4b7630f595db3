#include "tests/spatial/randomgroup.h"

#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"
#include "vornik/scene/ogroup.h"

float anyNumber(std::mt19937& random, float range)
{
    return (static_cast<float>(random() % 20001) / 10000.0f - 1) * range;
}

Vertex3D anyPoint(std::mt19937& random, float range)
{
    return {anyNumber(random, range), anyNumber(random, range), anyNumber(random, range)};
}

static Mesh* makeAnyMesh(std::mt19937& random, int faceCount)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int i = 0; i < faceCount; ++i)
    {
        const uint16_t first = static_cast<uint16_t>(vertices.size());
        const Vertex3D middle = anyPoint(random, 10);
        const float size = random() % 10 == 0 ? 8.0f : 1.0f;
        for (int corner = 0; corner < 3; ++corner)
            vertices.push_back(middle + anyPoint(random, size));
        faces.push_back({first, static_cast<uint16_t>(first + 1), static_cast<uint16_t>(first + 2)});
        if (random() % 8 == 0) // its back
            faces.push_back({first, static_cast<uint16_t>(first + 2), static_cast<uint16_t>(first + 1)});
        if (random() % 15 == 0)
            faces.push_back({first, first, static_cast<uint16_t>(first + 1)});
        if (random() % 6 == 0) // level ground
            for (size_t v = first; v < vertices.size(); ++v)
                vertices[v].z = -9;
    }
    Mesh* mesh = makeMesh("M", vertices, faces, anyPoint(random, 3));
    mesh->pivot = anyPoint(random, 2);
    mesh->rotation = {0, 0, 0, 0};
    if (random() % 2)
        mesh->rotation = {anyNumber(random, 5), anyNumber(random, 5), anyNumber(random, 5), 0};
    for (int i = 0; i < mesh->faceCount; ++i)
        mesh->faceMaterials[i].materialIndex = static_cast<int>(random() % 4);
    mesh->calcEdgeNormals();
    return mesh;
}

std::unique_ptr<OGroup> makeRandomGroup(std::mt19937& random, int meshes, int faces)
{
    std::unique_ptr<OGroup> group(new OGroup);
    TList* list = new TList;
    for (int i = 0; i < 2; ++i)
        list->addMaterial(new Material);
    list->getMaterial(1)->twoSided = 1;
    list->getMaterial(2)->addOpacityTexture(new Texture);
    group->addTList(list);
    for (int i = 0; i < meshes; ++i)
        group->addMesh(makeAnyMesh(random, faces));
    group->meshes[0]->visible = meshes == 1 || random() % 4 != 0;
    group->constructOctree();
    return group;
}
