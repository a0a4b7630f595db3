#include "vornik/scene/mesh.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <random>

#include <gtest/gtest.h>

#include "tests/scene/plainmesh.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using MeshPtr = std::unique_ptr<Mesh>;

static MeshPtr make(const std::vector<Vertex3D>& vertices, const std::vector<Facelist>& faces)
{
    return MeshPtr(makeMesh("mesh", vertices, faces));
}

static void expectVertex(const Vertex3D& v, float x, float y, float z)
{
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
    EXPECT_EQ(v.z, z);
}

static std::vector<Vertex3D> cubeCorners()
{
    std::vector<Vertex3D> corners;
    for (int i = 0; i < 8; ++i)
        corners.push_back(
            {static_cast<float>(i & 1), static_cast<float>(i >> 1 & 1), static_cast<float>(i >> 2)});
    return corners;
}

// Two faces a side, sides in pairs.
static const std::vector<Facelist> cubeFaces = {{0, 2, 3}, {0, 3, 1}, {4, 5, 7}, {4, 7, 6},
                                                {0, 1, 5}, {0, 5, 4}, {2, 6, 7}, {2, 7, 3},
                                                {0, 4, 6}, {0, 6, 2}, {1, 3, 7}, {1, 7, 5}};

TEST(Mesh, StartsEmpty)
{
    const Mesh mesh;
    expectVertex(mesh.position, 0, 0, 0);
    expectVertex(mesh.pivot, 0, 0, 0);
    expectVertex(mesh.location, 0, 0, 0);
    EXPECT_EQ(mesh.rotation.x, 0.0f);
    EXPECT_EQ(mesh.rotation.w, 0.0f);
    EXPECT_EQ(mesh.visible, 1);
    EXPECT_EQ(mesh.attachMark, 1);
    EXPECT_EQ(mesh.billboard, 0);
    EXPECT_EQ(mesh.vertexCount, 0);
    EXPECT_EQ(mesh.faceCount, 0);
    EXPECT_EQ(mesh.virtualVertexCount, 0);
    EXPECT_EQ(mesh.virtualFaceCount, 0);
    EXPECT_EQ(mesh.displayList, 0u);
    EXPECT_EQ(mesh.radius, 0.0f);
    EXPECT_EQ(mesh.originalVertices, nullptr);
    EXPECT_EQ(mesh.faces, nullptr);
    EXPECT_EQ(mesh.materialFaces, nullptr);
    EXPECT_EQ(mesh.d3dMesh, nullptr);
    EXPECT_EQ(mesh.parent, nullptr);
    EXPECT_EQ(mesh.name, nullptr);
}

TEST(Mesh, CreateVerticesGivesClearedArrays)
{
    Mesh mesh;
    mesh.createVertices(5);
    mesh.originalVertices[4] = {1, 2, 3};
    mesh.createVertices(5);
    EXPECT_EQ(mesh.vertexCount, 5);
    for (const Vertex3D* array : {mesh.originalVertices, mesh.calculatedVertices, mesh.transformedVertices})
        expectVertex(array[4], 0, 0, 0);
    EXPECT_EQ(mesh.textureCoords[4].x, 0.0f);
    EXPECT_EQ(mesh.lightColors[4].a, 0.0f);
    EXPECT_EQ(mesh.vertexColors[4].r, 0.0f);
    EXPECT_NE(mesh.originalNormals, nullptr);
    EXPECT_NE(mesh.calculatedNormals, nullptr);
    mesh.createVertices(-3);
    EXPECT_EQ(mesh.vertexCount, 0);
}

TEST(Mesh, DestroyVerticesKeepsTheCountAndMayRunTwice)
{
    Mesh mesh;
    mesh.createVertices(5);
    mesh.destroyVertices();
    mesh.destroyVertices();
    EXPECT_EQ(mesh.vertexCount, 5);
    EXPECT_EQ(mesh.originalVertices, nullptr);
    EXPECT_EQ(mesh.vertexColors, nullptr);
}

TEST(Mesh, CreateFacesMakesEachFaceItsOwnGroup)
{
    Mesh mesh;
    mesh.createFaces(3);
    EXPECT_EQ(mesh.faceCount, 3);
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(mesh.smoothingGroups[i], static_cast<uint32_t>(i));
        EXPECT_EQ(mesh.faces[i].b, 0);
        EXPECT_EQ(mesh.faceMaterials[i].materialIndex, 0);
        EXPECT_EQ(mesh.faceFlags[i], 0);
        expectVertex(mesh.edgeNormals[i].cornerNormal[2], 0, 0, 0);
    }
}

TEST(Mesh, DestroyFacesLeavesTheFlags)
{
    Mesh mesh;
    mesh.createFaces(3);
    mesh.faceFlags[2] = 7;
    mesh.destroyFaces();
    EXPECT_EQ(mesh.faces, nullptr);
    EXPECT_EQ(mesh.faceMaterials, nullptr);
    EXPECT_EQ(mesh.smoothingGroups, nullptr);
    EXPECT_EQ(mesh.edgeNormals, nullptr);
    ASSERT_NE(mesh.faceFlags, nullptr);
    EXPECT_EQ(mesh.faceFlags[2], 7);
    EXPECT_EQ(mesh.faceCount, 3);
}

TEST(Mesh, SortFacesByMaterialMakesRangesInOrderOfAppearance)
{
    const MeshPtr mesh = make(cubeCorners(), {{0, 1, 2}, {1, 2, 3}, {2, 3, 4}, {3, 4, 5}});
    const int materials[] = {3, 1, 3, 2};
    for (int i = 0; i < 4; ++i)
    {
        mesh->faceMaterials[i].materialIndex = materials[i];
        mesh->faceFlags[i] = static_cast<uint8_t>(i);
    }
    mesh->sortFacesByMaterial();
    ASSERT_EQ(mesh->materialFaces->count, 3);
    const MaterialFaceRange* ranges = mesh->materialFaces->ranges;
    EXPECT_EQ(ranges[0].first, 0);
    EXPECT_EQ(ranges[0].last, 1);
    EXPECT_EQ(ranges[1].first, 2);
    EXPECT_EQ(ranges[1].last, 2);
    EXPECT_EQ(ranges[2].first, 3);
    EXPECT_EQ(ranges[2].last, 3);
    const int firstCorners[] = {0, 2, 1, 3};
    const int sorted[] = {3, 3, 1, 2};
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(mesh->faces[i].a, firstCorners[i]);
        EXPECT_EQ(mesh->faceMaterials[i].materialIndex, sorted[i]);
        // These keep the old order.
        EXPECT_EQ(mesh->faceFlags[i], i);
        EXPECT_EQ(mesh->smoothingGroups[i], static_cast<uint32_t>(i));
    }
}

TEST(Mesh, SortFacesByMaterialDoesNothingWithoutFaces)
{
    Mesh mesh;
    mesh.sortFacesByMaterial();
    EXPECT_EQ(mesh.materialFaces, nullptr);
    mesh.createFaces(0);
    mesh.sortFacesByMaterial();
    ASSERT_NE(mesh.materialFaces, nullptr);
    EXPECT_EQ(mesh.materialFaces->count, 0);
    mesh.faceCount = -1;
    mesh.sortFacesByMaterial();
    mesh.faceCount = 0;
}

static Mesh* makeCube(const std::vector<uint32_t>& groups)
{
    Mesh* mesh = makeMesh("cube", cubeCorners(), cubeFaces);
    for (size_t i = 0; i < groups.size(); ++i)
        mesh->smoothingGroups[i] = groups[i];
    return mesh;
}

TEST(Mesh, SmoothingSplitsACubeOfSixGroupsIntoItsSides)
{
    const MeshPtr mesh(makeCube({1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6}));
    for (int i = 0; i < 8; ++i)
        mesh->textureCoords[i] = {static_cast<float>(i), 0};
    mesh->prepareSmoothing();
    EXPECT_EQ(mesh->vertexCount, 24);
    mesh->calcNormals();
    for (int i = 0; i < mesh->faceCount; ++i)
    {
        // Each side has corners of its own, with the side's normal.
        const Vertex3D normal =
            calcNormal(&mesh->originalVertices[mesh->faces[i].a], &mesh->originalVertices[mesh->faces[i].b],
                       &mesh->originalVertices[mesh->faces[i].c]);
        for (const int corner : {mesh->faces[i].a, mesh->faces[i].b, mesh->faces[i].c})
        {
            expectVertex(mesh->originalNormals[corner], normal.x, normal.y, normal.z);
            const Vertex3D& v = mesh->originalVertices[corner];
            EXPECT_EQ(mesh->textureCoords[corner].x, v.x + 2 * v.y + 4 * v.z);
        }
    }
}

TEST(Mesh, SmoothingLeavesOneGroupAlone)
{
    const MeshPtr mesh(makeCube(std::vector<uint32_t>(12, 5)));
    mesh->prepareSmoothing();
    EXPECT_EQ(mesh->vertexCount, 8);
    for (int i = 0; i < 12; ++i)
        EXPECT_EQ(mesh->faces[i].a, cubeFaces[static_cast<size_t>(i)].a);
}

TEST(Mesh, WithoutSmoothingDataEveryFaceGetsItsOwnCorners)
{
    const MeshPtr mesh(makeCube({}));
    mesh->prepareSmoothing();
    EXPECT_EQ(mesh->vertexCount, 36);
}

TEST(Mesh, SmoothingGroupsAreComparedWholeNotAsBits)
{
    const MeshPtr mesh = make({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {{0, 1, 2}, {2, 1, 3}});
    mesh->smoothingGroups[0] = 1;
    mesh->smoothingGroups[1] = 3;
    mesh->prepareSmoothing();
    EXPECT_EQ(mesh->vertexCount, 6);
}

static Mesh* makeFan(int faces)
{
    std::vector<Vertex3D> vertices = {{0, 0, 0}};
    std::vector<Facelist> list;
    for (int i = 0; i <= faces; ++i)
        vertices.push_back(
            {std::cos(static_cast<float>(i) * 0.01f), std::sin(static_cast<float>(i) * 0.01f), 1});
    for (int i = 0; i < faces; ++i)
        list.push_back({0, static_cast<uint16_t>(i + 1), static_cast<uint16_t>(i + 2)});
    return makeMesh("fan", vertices, list);
}

TEST(Mesh, SmoothingGivesUpOnAVertexOfMoreThan512Faces)
{
    const MeshPtr full(makeFan(512));
    full->prepareSmoothing();
    EXPECT_EQ(full->vertexCount, 514 + 511 + 511);
    const MeshPtr over(makeFan(513));
    over->prepareSmoothing();
    EXPECT_EQ(over->vertexCount, 515);
    EXPECT_EQ(over->faces[512].a, 0);
}

TEST(Mesh, SmoothingGivesUpAlsoForAVertexInsideOneGroup)
{
    const auto split = [](int facesOfHub)
    {
        MeshPtr mesh(makeFan(facesOfHub + 1));
        std::fill_n(mesh->smoothingGroups, mesh->faceCount, 1u);
        mesh->faces[0].a = 300;
        mesh->smoothingGroups[0] = 2;
        const int before = mesh->vertexCount;
        mesh->prepareSmoothing();
        return mesh->vertexCount - before;
    };
    EXPECT_EQ(split(512), 2); // the corner on the rim and its neighbour at 2; 1 has only the face apart
    EXPECT_EQ(split(513), 0);
}

TEST(Mesh, AVertexWithoutFacesTakesRoomAway)
{
    // One split is needed, but the two idle vertices have used up its room.
    const MeshPtr none =
        make({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {5, 5, 5}, {6, 6, 6}}, {{0, 1, 2}, {0, 1, 2}});
    none->prepareSmoothing();
    EXPECT_EQ(none->vertexCount, 6);
    EXPECT_EQ(none->faces[1].a, 5);
    EXPECT_EQ(none->faces[1].b, 1);
    EXPECT_EQ(none->faces[1].c, 2);
}

TEST(Mesh, SmoothingNeverSplitsBeyondWhatFacesCanName)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int i = 0; i + 2 < 65000; i += 1)
        faces.push_back(
            {static_cast<uint16_t>(i), static_cast<uint16_t>(i + 1), static_cast<uint16_t>(i + 2)});
    for (int i = 0; i < 65000; ++i)
        vertices.push_back({static_cast<float>(i), 0, 0});
    const MeshPtr mesh = make(vertices, faces);
    mesh->prepareSmoothing();
    EXPECT_EQ(mesh->vertexCount, 65536);
}

TEST(Mesh, CenterMovesTheBoxToTheOrigin)
{
    const MeshPtr mesh = make({{0, 0, 0}, {2, 4, 6}}, {});
    mesh->pivot = {7, 7, 7};
    mesh->center();
    expectVertex(mesh->position, 1, 2, 3);
    expectVertex(mesh->pivot, 7, 7, 7);
    expectVertex(mesh->originalVertices[0], -1, -2, -3);
    expectVertex(mesh->originalVertices[1], 1, 2, 3);
    expectVertex(mesh->calculatedVertices[1], 2, 4, 6);

    mesh->originalToCalculated();
    mesh->restoreToWorldCoordinates();
    expectVertex(mesh->position, 0, 0, 0);
    expectVertex(mesh->originalVertices[1], 2, 4, 6);
    expectVertex(mesh->calculatedVertices[0], 0, 0, 0);
}

TEST(Mesh, CenterOfNothingIsTheOrigin)
{
    Mesh mesh;
    mesh.position = {1, 1, 1};
    mesh.center(); // not even arrays
    expectVertex(mesh.position, 0, 0, 0);
    mesh.createVertices(0);
    mesh.position = {1, 1, 1};
    mesh.center();
    expectVertex(mesh.position, 0, 0, 0);
}

TEST(Mesh, NormalsAverageTheFacesAround)
{
    // A roof: its ridge points up.
    const MeshPtr mesh =
        make({{0, -1, 0}, {0, 1, 0}, {-1, 0, -1}, {1, 0, -1}, {9, 9, 9}}, {{0, 1, 2}, {1, 0, 3}});
    mesh->originalNormals[4] = {4, 5, 6};
    mesh->calcNormals();
    EXPECT_NEAR(mesh->originalNormals[0].x, 0, 1e-6f);
    EXPECT_NEAR(mesh->originalNormals[0].z, 1, 1e-6f);
    EXPECT_NEAR(mesh->originalNormals[2].x, -std::sqrt(0.5f), 1e-6f);
    expectVertex(mesh->originalNormals[4], 4, 5, 6); // no face, no change
}

TEST(Mesh, DegenerateFacesCountButAddNothing)
{
    const MeshPtr mesh = make({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}, {0, 1, 1}});
    mesh->calcNormals();
    expectVertex(mesh->originalNormals[0], 0, 0, 1);
    const MeshPtr flat = make({{0, 0, 0}, {1, 0, 0}}, {{0, 1, 1}});
    flat->calcNormals();
    expectVertex(flat->originalNormals[0], 0, 0, 0);
}

TEST(Mesh, OriginalToCalculatedCopiesPositionsAndNormals)
{
    const MeshPtr mesh = make({{1, 2, 3}}, {});
    mesh->originalVertices[0] = {4, 5, 6};
    mesh->originalNormals[0] = {0, 1, 0};
    mesh->originalToCalculated();
    expectVertex(mesh->calculatedVertices[0], 4, 5, 6);
    expectVertex(mesh->calculatedNormals[0], 0, 1, 0);
}

TEST(Mesh, RadiusReachesTheFarthestVertex)
{
    const MeshPtr mesh = make({{1, 0, 0}, {2, 3, 6}}, {});
    mesh->calcRadius();
    EXPECT_EQ(mesh->radius, 7.0f);
    Mesh empty;
    empty.calcRadius();
    EXPECT_EQ(empty.radius, FLT_MIN);
}

TEST(Mesh, ExpandGrowsEveryArrayAndClearsTheRest)
{
    const MeshPtr mesh = make({{1, 2, 3}}, {{0, 0, 0}});
    mesh->textureCoords[0] = {4, 5};
    mesh->lightColors[0] = {6, 0, 0, 0};
    mesh->vertexColors[0] = {7, 0, 0, 0};
    mesh->faceMaterials[0].materialIndex = 8;
    mesh->expandObject(3, 2);
    for (int i = 0; i < 3; ++i)
    {
        expectVertex(mesh->originalNormals[i], 0, 0, i == 0 ? 1.0f : 0.0f);
        expectVertex(mesh->calculatedNormals[i], 0, 0, i == 0 ? 1.0f : 0.0f);
        EXPECT_EQ(mesh->calculatedVertices[i].z, i == 0 ? 3.0f : 0.0f);
        EXPECT_EQ(mesh->textureCoords[i].y, i == 0 ? 5.0f : 0.0f);
        EXPECT_EQ(mesh->lightColors[i].r, i == 0 ? 6.0f : 0.0f);
        EXPECT_EQ(mesh->vertexColors[i].r, i == 0 ? 7.0f : 0.0f);
    }
    EXPECT_EQ(mesh->faceMaterials[0].materialIndex, 8);
    EXPECT_EQ(mesh->faceMaterials[1].materialIndex, 0);
    EXPECT_EQ(mesh->faces[1].c, 0);
    EXPECT_EQ(mesh->vertexCount, 3);
    EXPECT_EQ(mesh->faceCount, 2);
    expectVertex(mesh->originalVertices[0], 1, 2, 3);
    expectVertex(mesh->originalVertices[2], 0, 0, 0);
    expectVertex(mesh->transformedVertices[2], 0, 0, 0);
    EXPECT_EQ(mesh->smoothingGroups[1], 0u);
    EXPECT_EQ(mesh->faceFlags[1], 0);
    expectVertex(mesh->edgeNormals[1].edgeNormal[0], 0, 0, 0);
    mesh->expandObject(1, 1);
    EXPECT_EQ(mesh->vertexCount, 3);
    EXPECT_EQ(mesh->faceCount, 2);
}

TEST(Mesh, MinimizeTrimsToTheUsedCounts)
{
    const MeshPtr mesh = make({{1, 2, 3}, {4, 5, 6}}, {{0, 1, 0}});
    mesh->minimizeVirtualTriangleCount();
    EXPECT_EQ(mesh->virtualVertexCount, 0);
    EXPECT_EQ(mesh->virtualFaceCount, 0);
    mesh->expandObject(100, 50);
    mesh->virtualVertexCount = 100;
    mesh->virtualFaceCount = 50;
    mesh->vertexCount = 2;
    mesh->faceCount = 1;
    mesh->minimizeVirtualTriangleCount();
    EXPECT_EQ(mesh->virtualVertexCount, 2);
    EXPECT_EQ(mesh->virtualFaceCount, 1);
    expectVertex(mesh->originalVertices[1], 4, 5, 6);
    EXPECT_EQ(mesh->faces[0].b, 1);
}

TEST(Mesh, CopyHasArraysOfItsOwnAndSharesTheName)
{
    const MeshPtr mesh = make({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {{0, 1, 2}});
    mesh->position = {1, 1, 1};
    mesh->smoothingGroups[0] = 77;
    mesh->faceFlags[0] = 5;
    mesh->transformedVertices[0] = {9, 9, 9};
    mesh->lightColors[2] = {1, 0, 0, 1};
    mesh->vertexColors[2] = {0, 1, 0, 1};
    mesh->textureCoords[2] = {3, 4};
    mesh->originalNormals[2] = {5, 0, 0};
    mesh->calculatedNormals[2] = {6, 0, 0};
    mesh->faceMaterials[0].materialIndex = 7;
    mesh->edgeNormals[0].edgeNormal[0] = {1, 1, 1};
    mesh->pivot = {2, 2, 2};
    mesh->radius = 8;
    mesh->billboard = 1;
    mesh->displayList = 9;
    mesh->transparentDisplayList = 10;
    mesh->sortFacesByMaterial();
    const std::unique_ptr<Mesh> copy(static_cast<Mesh*>(mesh->copyObject()));
    EXPECT_EQ(copy->vertexColors[2].g, 1.0f);
    EXPECT_EQ(copy->textureCoords[2].y, 4.0f);
    expectVertex(copy->originalNormals[2], 5, 0, 0);
    expectVertex(copy->calculatedNormals[2], 6, 0, 0);
    EXPECT_EQ(copy->faceMaterials[0].materialIndex, 7);
    expectVertex(copy->edgeNormals[0].edgeNormal[0], 0, 0, 0);
    expectVertex(copy->pivot, 2, 2, 2);
    EXPECT_EQ(copy->radius, 8.0f);
    EXPECT_EQ(copy->billboard, 1);
    EXPECT_EQ(copy->displayList, 9u);
    EXPECT_EQ(copy->transparentDisplayList, 10u);
    copy->displayList = mesh->displayList = 0; // none of OpenGL's
    EXPECT_EQ(copy->name, mesh->name);
    expectVertex(copy->position, 1, 1, 1);
    EXPECT_EQ(copy->vertexCount, 3);
    EXPECT_EQ(copy->faceCount, 1);
    EXPECT_NE(copy->originalVertices, mesh->originalVertices);
    EXPECT_NE(copy->faces, mesh->faces);
    expectVertex(copy->originalVertices[2], 7, 8, 9);
    expectVertex(copy->calculatedVertices[2], 7, 8, 9);
    expectVertex(copy->transformedVertices[0], 0, 0, 0);
    EXPECT_EQ(copy->lightColors[2].r, 1.0f);
    EXPECT_EQ(copy->smoothingGroups[0], 0u);
    EXPECT_EQ(copy->faceFlags[0], 5);
    ASSERT_NE(copy->materialFaces, mesh->materialFaces);
    EXPECT_EQ(copy->materialFaces->count, 1);
    EXPECT_NE(copy->materialFaces->ranges, mesh->materialFaces->ranges);

    const Mesh empty;
    const std::unique_ptr<Mesh> emptyCopy(static_cast<Mesh*>(const_cast<Mesh&>(empty).copyObject()));
    EXPECT_EQ(emptyCopy->originalVertices, nullptr);
    EXPECT_EQ(emptyCopy->materialFaces, nullptr);
}

// A mesh that has everything that files have: shared and idle vertices, degenerate faces, faces that use a
// vertex twice, indices out of range, values that are no numbers.
static Mesh* makeRandom(std::mt19937& random, int vertices, int faces)
{
    const auto pick = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const float infinity = std::numeric_limits<float>::infinity();
    Mesh* mesh = makeMesh("random", {}, {});
    mesh->createVertices(vertices);
    mesh->createFaces(faces);
    for (int i = 0; i < vertices; ++i)
    {
        const auto value = [&]
        {
            switch (pick(200))
            {
            case 0:
                return std::nanf("");
            case 1:
                return infinity;
            case 2:
                return -0.0f;
            default:
                return static_cast<float>(pick(21) - 10) * (pick(2) ? 1.0f : 0.37f);
            }
        };
        mesh->originalVertices[i] = {value(), value(), value()};
        mesh->textureCoords[i] = {value(), value()};
        mesh->originalNormals[i] = {1, 2, 3};
    }
    const int groups = 1 + pick(5);
    const int others = 1 + pick(30); // one face in so many isn't in the group of its neighbours
    const int materials = 1 + pick(40);
    const int numbersApart = pick(2) ? 1 : 37;
    for (int i = 0; i < faces; ++i)
    {
        const int limit = pick(50) == 0 ? vertices + 20 : vertices;
        const int a = pick(limit);
        mesh->faces[i] = {static_cast<uint16_t>(a), static_cast<uint16_t>(pick(10) == 0 ? a : pick(limit)),
                          static_cast<uint16_t>(pick(limit))};
        mesh->smoothingGroups[i] = static_cast<uint32_t>(pick(others) == 0 ? pick(groups) : 4 * a / vertices);
        mesh->faceMaterials[i].materialIndex = (pick(materials) - materials / 3) * numbersApart;
    }
    return mesh;
}

template <typename T>
static bool sameBits(const T* a, const T* b, int count)
{
    return std::memcmp(static_cast<const void*>(a), static_cast<const void*>(b),
                       sizeof(T) * static_cast<size_t>(count)) == 0;
}

// The same bits, or no number in both: the sign of a NaN is left to the order in which the compiler takes the
// operands of a sum.
static bool sameNumbers(const Vertex3D* a, const Vertex3D* b, int count)
{
    const auto same = [](float x, float y)
    { return std::isnan(x) ? std::isnan(y) : std::memcmp(&x, &y, sizeof x) == 0; };
    for (int i = 0; i < count; ++i)
        if (!same(a[i].x, b[i].x) || !same(a[i].y, b[i].y) || !same(a[i].z, b[i].z))
            return false;
    return true;
}

static void expectSame(const Mesh& fast, const Mesh& plain)
{
    ASSERT_EQ(fast.vertexCount, plain.vertexCount);
    EXPECT_TRUE(sameBits(&fast.radius, &plain.radius, 1));
    EXPECT_TRUE(sameBits(fast.originalVertices, plain.originalVertices, fast.vertexCount));
    EXPECT_TRUE(sameNumbers(fast.originalNormals, plain.originalNormals, fast.vertexCount));
    EXPECT_TRUE(sameBits(fast.textureCoords, plain.textureCoords, fast.vertexCount));
    EXPECT_TRUE(sameBits(fast.faces, plain.faces, fast.faceCount));
    EXPECT_TRUE(sameBits(fast.faceMaterials, plain.faceMaterials, fast.faceCount));
    ASSERT_EQ(fast.materialFaces->count, plain.materialFaces->count);
    EXPECT_TRUE(sameBits(fast.materialFaces->ranges, plain.materialFaces->ranges, fast.materialFaces->count));
}

TEST(Mesh, LoadPassesHaveTheBitsOfThePlainScans)
{
    std::mt19937 random(2);
    for (int round = 0; round < 150; ++round)
    {
        const int vertices = 3 + static_cast<int>(random() % 120);
        const int faces = static_cast<int>(random() % 400);
        const unsigned seed = static_cast<unsigned>(random());
        std::mt19937 once(seed), again(seed);
        const MeshPtr fast(makeRandom(once, vertices, faces));
        const MeshPtr plain(makeRandom(again, vertices, faces));
        fast->prepareSmoothing();
        plainPrepareSmoothing(plain.get());
        fast->calcNormals();
        plainCalcNormals(plain.get());
        fast->sortFacesByMaterial();
        plainSortFacesByMaterial(plain.get());
        fast->originalToCalculated();
        fast->calcRadius();
        plainCalcRadius(plain.get());
        expectSame(*fast, *plain);
    }
}

class MeshMatrix : public EngineTest
{
protected:
    // A mesh with any static transform.
    MeshPtr makeMoved(std::mt19937& random)
    {
        const auto value = [&]
        { return static_cast<float>(static_cast<int>(random() % 2001) - 1000) * 0.137f; };
        MeshPtr mesh = make({{1, 2, 3}, {-4, 5, 0.5f}, {100, -7, 0}}, {{0, 1, 2}});
        mesh->position = {value(), value(), value()};
        mesh->pivot = {value(), value(), value()};
        mesh->rotation = {random() % 2 ? value() : 0, random() % 2 ? value() : 0, random() % 2 ? value() : 0,
                          value()};
        return mesh;
    }
};

TEST_F(MeshMatrix, WorldPositionsHaveTheBitsOfAWholeMatrixRound)
{
    std::mt19937 random(3);
    for (int round = 0; round < 50; ++round)
    {
        const MeshPtr mesh = makeMoved(random);
        for (int change = 0; change < 4; ++change)
        {
            for (int i = 0; i < 3; ++i)
            {
                const Vertex3D fast = mesh->calculatedVertex(i);
                const Vertex3D plain = plainCalculatedVertex(mesh.get(), i);
                EXPECT_TRUE(sameBits(&fast, &plain, 1));
            }
            // Whatever moves the mesh is seen by the next question.
            if (change == 0)
                mesh->position.y += 1;
            else if (change == 1)
                mesh->pivot.x -= 3;
            else
                mesh->rotation.z += 10;
        }
    }
}

TEST_F(MeshMatrix, TheMatrixIsAskedOnceForEachTransform)
{
    const MeshPtr mesh = make({{1, 2, 3}, {4, 5, 6}}, {});
    mesh->position = {5, 6, 7};
    GLRecorder gl;
    mesh->calculatedVertex(0);
    mesh->calculatedVertex(1);
    EXPECT_EQ(gl.count("glGetDoublev"), 1);
    EXPECT_EQ(gl.count("glPushMatrix"), 1);
    EXPECT_EQ(gl.count("glPopMatrix"), 1);
    mesh->rotation.x = 90;
    mesh->calculatedVertex(1);
    EXPECT_EQ(gl.count("glGetDoublev"), 2);
}

TEST_F(MeshMatrix, TheStaticTransformTurnsAboutThePivot)
{
    const MeshPtr mesh = make({{2, 0, 0}}, {});
    mesh->position = {10, 0, 0};
    mesh->pivot = {1, 0, 0};
    mesh->rotation.z = 90;
    // The vertex moves to the pivot's frame (3), turns to (0, 3) and moves back and out.
    const Vertex3D v = mesh->calculatedVertex(0);
    EXPECT_NEAR(v.x, 9, 1e-5f);
    EXPECT_NEAR(v.y, 3, 1e-5f);
    EXPECT_NEAR(v.z, 0, 1e-5f);
}

TEST_F(MeshMatrix, NormalsTurnWithoutMoving)
{
    const MeshPtr mesh = make({{1, 0, 0}}, {});
    mesh->position = {10, 20, 30};
    mesh->rotation.x = 90;
    mesh->calculatedNormals[0] = {0, 2, 0};
    Vertex3D vertex, normal;
    mesh->calculatedVertex(0, &vertex, &normal);
    EXPECT_NEAR(vertex.x, 11, 1e-5f);
    EXPECT_NEAR(normal.x, 0, 1e-6f);
    EXPECT_NEAR(normal.y, 0, 1e-6f);
    EXPECT_NEAR(normal.z, 2, 1e-6f);
}

TEST_F(MeshMatrix, OutsideTheArrayTheAnswerIsTheOrigin)
{
    const MeshPtr mesh = make({{1, 2, 3}}, {});
    expectVertex(mesh->calculatedVertex(-1), 0, 0, 0);
    expectVertex(mesh->calculatedVertex(1), 0, 0, 0);
    Vertex3D vertex, normal;
    mesh->calculatedVertex(7, &vertex, &normal);
    expectVertex(vertex, 0, 0, 0);
    expectVertex(normal, 0, 0, 0);
    Mesh empty;
    expectVertex(empty.calculatedVertex(0), 0, 0, 0);
}

TEST_F(MeshMatrix, WithoutARasterizerMeshesStandAsTheyAre)
{
    const MeshPtr mesh = make({{1, 2, 3}}, {});
    mesh->position = {10, 0, 0};
    vrkSelectRasterizer(5);
    expectVertex(mesh->calculatedVertex(0), 1, 2, 3);
    vrkSelectRasterizer(0);
    expectVertex(mesh->calculatedVertex(0), 11, 2, 3);
}

TEST_F(MeshMatrix, EdgeNormalsPointOutOfTheFaceInWorldDirections)
{
    const MeshPtr mesh = make({{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, {{0, 1, 2}, {0, 1, 1}});
    mesh->position = {100, 0, 0};
    mesh->calcEdgeNormals();
    const EdgeNormal& e = mesh->edgeNormals[0];
    expectVertex(e.edgeNormal[0], 0, -1, 0);
    EXPECT_NEAR(e.edgeNormal[1].x, std::sqrt(0.5f), 1e-6f);
    EXPECT_NEAR(e.edgeNormal[1].y, std::sqrt(0.5f), 1e-6f);
    expectVertex(e.edgeNormal[2], -1, 0, 0);
    Vertex3D corner = e.edgeNormal[0] + e.edgeNormal[1];
    corner.normalize();
    expectVertex(e.cornerNormal[0], corner.x, corner.y, corner.z);
    corner = e.edgeNormal[2] + e.edgeNormal[0];
    corner.normalize();
    expectVertex(e.cornerNormal[2], corner.x, corner.y, corner.z);
    for (int i = 0; i < 3; ++i)
    {
        expectVertex(mesh->edgeNormals[1].edgeNormal[i], 0, 0, 0);
        expectVertex(mesh->edgeNormals[1].cornerNormal[i], 0, 0, 0);
    }

    mesh->rotation.x = 90;
    mesh->calcEdgeNormals();
    EXPECT_NEAR(mesh->edgeNormals[0].edgeNormal[0].z, -1, 1e-6f);
}

TEST_F(MeshMatrix, WindowCoordinatesComeFromTheOriginalVertices)
{
    const MeshPtr mesh = make({{0, 0, -1}, {1, 1, -1}}, {});
    vrkInitMatrix();
    mesh->calcWindowCoords();
    EXPECT_NEAR(mesh->calculatedVertices[0].x, 32, 1e-3f);
    EXPECT_NEAR(mesh->calculatedVertices[0].y, 32, 1e-3f);
    EXPECT_NEAR(mesh->calculatedVertices[1].x, 64, 1e-3f);
    EXPECT_NEAR(mesh->calculatedVertices[1].y, 64, 1e-3f);
    expectVertex(mesh->originalVertices[0], 0, 0, -1);
}
