// The octree and its queries on any geometry: infinities, no-numbers and degenerate faces among it, moved and
// turned anyhow, and changed between queries.

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <vector>

#include "fuzz/harness.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

// One number in four is any bit pattern; the others lie on a small grid, where faces meet.
static float anyFloat(FuzzedDataProvider* input)
{
    const auto kind = input->ConsumeIntegral<uint8_t>();
    if (kind % 4 != 0)
        return static_cast<float>(static_cast<int8_t>(kind)) * 0.25f;
    const auto bits = input->ConsumeIntegral<uint32_t>();
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

static Vertex3D anyVertex(FuzzedDataProvider* input)
{
    const float x = anyFloat(input), y = anyFloat(input);
    return {x, y, anyFloat(input)};
}

static Mesh* anyMesh(FuzzedDataProvider* input)
{
    std::vector<Vertex3D> vertices(input->ConsumeIntegralInRange<size_t>(0, 24));
    for (Vertex3D& v : vertices)
        v = anyVertex(input);
    std::vector<Facelist> faces(input->ConsumeIntegralInRange<size_t>(0, 40));
    for (Facelist& face : faces)
        face = {input->ConsumeIntegralInRange<uint16_t>(0, 24),
                input->ConsumeIntegralInRange<uint16_t>(0, 24),
                input->ConsumeIntegralInRange<uint16_t>(0, 24)};
    Mesh* mesh = makeMesh("M", vertices, faces);
    mesh->position = anyVertex(input);
    mesh->pivot = anyVertex(input);
    mesh->rotation = {anyFloat(input), anyFloat(input), anyFloat(input), 0};
    if (input->ConsumeBool())
        mesh->calcEdgeNormals();
    return mesh;
}

static void walk(octreeNode* tree, Vertex3D* from, Vertex3D* to, float radius)
{
    octreeNode* leaves[64];
    tree->traverse(from);
    tree->traverseNearest(from, radius, leaves, 27);
    tree->traverseSphere(from, radius, leaves, 3);
    tree->traverseRay(from, to, leaves, 64);
    tree->traverseRayOLD(from, to, leaves, 64);
}

static void ask(OGroup* group, FuzzedDataProvider* input)
{
    Vertex3D from = anyVertex(input), to = anyVertex(input), point = {0, 0, 0};
    const float radius = anyFloat(input);
    vrkRaySceneDistance(&from, &to, group);
    vrkRayScene(&from, &to, radius, group);
    vrkCheckHeight(&from, &to, group);
    vrkCheckHeight2(&from, &to, group);
    vrkCheckNegativeHeight(&from, &to, group);
    if (group->meshCount > 0)
    {
        group->transformVertices(group->meshes[0]);
        vrkRayBox(&from, &to, group->meshes[0], &point);
    }
    Vertex3D position = to;
    vrkCheckCollision(&position, &from, radius, group, input->ConsumeBool(), &point,
                      input->ConsumeIntegralInRange(-1, 6));
    if (group->octree)
        walk(group->octree, &from, &to, radius);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    startSilentEngine();
    FuzzedDataProvider input(data, size);
    OGroup group;
    group.addTList(new TList);
    const int meshes = input.ConsumeIntegralInRange(0, 3);
    for (int i = 0; i < meshes; ++i)
        group.addMesh(anyMesh(&input));
    group.constructOctree();
    for (int i = 0; i < 3; ++i)
    {
        ask(&group, &input);
        if (group.meshCount > 0 && group.meshes[0]->vertexCount > 0)
            group.meshes[0]->calculatedVertices[0] = anyVertex(&input);
    }
    if (group.meshCount > 1)
        group.delMesh(group.meshes[0]);
    ask(&group, &input);
    return 0;
}
