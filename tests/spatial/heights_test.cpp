// Rays and heights through the octree, beside plain loops over the same leaves.

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "spatial/packedtree.h"
#include "tests/spatial/randomgroup.h"
#include "tests/support/allocations.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

static bool sameBits(const void* a, const void* b, size_t size)
{
    return std::memcmp(a, b, size) == 0;
}

// Every hit in the leaves along a ray, as the queries are defined.
struct PlainHit
{
    Vertex3D point;
    const Material* material;
};

static std::vector<PlainHit> plainHits(Vertex3D start, Vertex3D end, OGroup* group, int most)
{
    std::vector<octreeNode*> leaves(static_cast<size_t>(most));
    const int count = group->octree->traverseRay(&start, &end, leaves.data(), most);
    std::vector<PlainHit> hits;
    for (int leaf = 0; leaf < count; ++leaf)
        for (int i = 0; i < leaves[static_cast<size_t>(leaf)]->polys.size; ++i)
        {
            const OTPolyData& poly = leaves[static_cast<size_t>(leaf)]->polys.items[i];
            if (poly.face >= poly.mesh->faceCount)
                continue;
            const Facelist& f = poly.mesh->faces[poly.face];
            const Vertex3D a = poly.mesh->calculatedVertex(f.a), b = poly.mesh->calculatedVertex(f.b),
                           c = poly.mesh->calculatedVertex(f.c);
            if (intersect2(&start, &end, &a, &b, &c) >= 0)
                hits.push_back(
                    {findIntersectionPoint(&start, &end, &a, &b, &c),
                     group->activeTList->getMaterial(poly.mesh->faceMaterials[poly.face].materialIndex)});
        }
    return hits;
}

class Rays : public EngineTest
{
};

// What the rays of a test have met.
struct Met
{
    int found = 0, lower = 0;
};

// Asks one ray in every way, and demands the bits of the plain loops.
static void expectPlainAnswers(Vertex3D start, Vertex3D end, OGroup* group, unsigned seed, Met* met)
{
    const std::vector<PlainHit> near = plainHits(start, end, group, 1024);
    Vertex3D high = {0, 0, -999999}, low = {0, 0, 999999};
    float toBeat = -100000000, toUnder = 100000000, closest = FLT_MAX, distance = FLT_MAX;
    std::srand(seed);
    for (const PlainHit& hit : near)
    {
        const float d = vrkDistance(&start, &hit.point);
        closest = std::fmin(closest, d);
        if (d < distance && (!hit.material || !hit.material->opacityTexture || std::rand() % 1000 < 500))
            distance = d;
        if (hit.point.z > toBeat)
            high = hit.point, toBeat = hit.point.z;
        if (hit.point.z < toUnder)
            low = hit.point, toUnder = hit.point.z;
    }
    const int drawn = std::rand();
    std::srand(seed);
    const float answer = vrkRaySceneDistance(&start, &end, group);
    EXPECT_EQ(std::rand(), drawn); // as many draws, and the same
    EXPECT_TRUE(sameBits(&answer, &distance, sizeof answer));
    const Vertex3D highest = vrkCheckHeight(&start, &end, group);
    const Vertex3D depth = vrkCheckNegativeHeight(&start, &end, group);
    EXPECT_TRUE(sameBits(&highest, &high, sizeof high));
    EXPECT_TRUE(sameBits(&depth, &low, sizeof low));
    for (const float limit : {0.5f, 3.0f, 20.0f, closest, std::nextafter(closest, FLT_MAX)})
        EXPECT_EQ(vrkRayScene(&start, &end, limit, group), closest < limit) << closest << " " << limit;
    met->found += distance < FLT_MAX;
    met->lower += near.size() > 1 && low.z < high.z;
}

static void expectPlainAnswersToAny(std::mt19937& random, int rays, OGroup* group, Met* met)
{
    for (int i = 0; i < rays; ++i)
    {
        Vertex3D start = anyPoint(random, 8), end = anyPoint(random, 12);
        if (i % 3 == 0)
            end = {start.x, start.y, -14};
        expectPlainAnswers(start, end, group, static_cast<unsigned>(i), met);
    }
}

TEST_F(Rays, RandomScenesAnswerAsThePlainLoops)
{
    std::mt19937 random(31);
    Met met;
    for (int round = 0; round < 12; ++round)
    {
        const std::unique_ptr<OGroup> group = makeRandomGroup(random, 4, 50);
        expectPlainAnswersToAny(random, 120, group.get(), &met);
    }
    EXPECT_GT(met.found, 100);
    EXPECT_GT(met.lower, 20);
}

// While it lives, lanes are narrow, as on processors without wide ones.
class NarrowLanes
{
public:
    NarrowLanes() : before(packedLanesAreWide) { packedLanesAreWide = false; }
    NarrowLanes(const NarrowLanes&) = delete;
    NarrowLanes& operator=(const NarrowLanes&) = delete;
    ~NarrowLanes() { packedLanesAreWide = before; }

private:
    bool before;
};

TEST_F(Rays, NarrowLanesAnswerAsThePlainLoops)
{
    const NarrowLanes narrow;
    std::mt19937 random(33);
    Met met;
    for (int round = 0; round < 6; ++round)
    {
        const std::unique_ptr<OGroup> group = makeRandomGroup(random, 3, 60);
        expectPlainAnswersToAny(random, 80, group.get(), &met);
    }
    EXPECT_GT(met.found, 50);
}

// Level ground, gentle slopes and steps, of small faces and large ones.
static std::unique_ptr<OGroup> makeTerraces(std::mt19937& random, float scale, Vertex3D away)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    const uint16_t side = 24;
    for (uint16_t y = 0; y <= side; ++y)
        for (uint16_t x = 0; x <= side; ++x)
        {
            float z = static_cast<float>(x / 6) * (x % 3 == 0 ? 0.5f : 0.51f);
            if (y > 12)
                z = 0.001f * static_cast<float>(x * y) + anyNumber(random, 1e-4f);
            vertices.push_back(Vertex3D{static_cast<float>(x) - 12, static_cast<float>(y) - 12, z});
            vertices.back() *= scale;
            vertices.back() += away;
        }
    for (uint16_t y = 0; y < side; ++y)
        for (uint16_t x = 0; x < side; ++x)
        {
            const uint16_t a = static_cast<uint16_t>(y * (side + 1) + x),
                           c = static_cast<uint16_t>(a + side + 1);
            faces.push_back({a, static_cast<uint16_t>(a + 1), c});
            faces.push_back({static_cast<uint16_t>(a + 1), static_cast<uint16_t>(c + 1), c});
        }
    Mesh* mesh = makeMesh("T", vertices, faces);
    mesh->pivot = {0, 0, 0};
    mesh->rotation = {0, 0, 0, 0};
    std::unique_ptr<OGroup> group(new OGroup);
    group->addTList(new TList);
    group->addMesh(mesh);
    group->constructOctree();
    return group;
}

// Rays along faces, from their planes and their edges, at every size: where rounding decides what is hit, and
// where numbers come to the ends of float.
TEST_F(Rays, GrazingRaysAnswerAsThePlainLoopsAtEverySize)
{
    std::mt19937 random(34);
    Met met;
    for (const float scale : {1e-9f, 1e-5f, 0.01f, 1.0f, 1e4f, 1e8f, 3e11f, 1e17f})
        for (const float distance : {0.0f, 3.0f, 700.0f, 1e5f})
        {
            const Vertex3D away = {distance * scale, -distance * scale, distance * scale};
            const std::unique_ptr<OGroup> group = makeTerraces(random, scale, away);
            const Mesh& mesh = *group->meshes[0];
            const auto anyVertex = [&]
            { return mesh.calculatedVertices[random() % static_cast<unsigned>(mesh.vertexCount)]; };
            for (unsigned i = 0; i < 60; ++i)
            {
                Vertex3D start = anyVertex(), end = anyVertex();
                const float off[] = {0.0f, 1e-7f, 1e-4f, 0.01f, 1.0f};
                if (i % 2)
                    end.z = start.z;
                if (i % 7 == 0)
                    end = Vertex3D{start.x, start.y, start.z - scale * 9};
                if (i % 11 == 0)
                    end.x = start.x;
                start.z += off[random() % 5] * scale;
                end.z += off[random() % 5] * scale;
                if (i % 3 == 0)
                    start.z += scale;
                expectPlainAnswers(start, end, group.get(), i, &met);
            }
        }
    EXPECT_GT(met.found, 300);
}

// Rays that leave a slope by no more than rounding: faces are reported as hit by some that
// pass well beside them.
TEST_F(Rays, RaysAlmostAlongASlopeAnswerAsThePlainLoops)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    const uint16_t side = 40;
    const auto onSlope = [](float x, float y) { return Vertex3D{x, y, 0.37f * x + 0.21f * y}; };
    for (uint16_t y = 0; y <= side; ++y)
        for (uint16_t x = 0; x <= side; ++x)
            vertices.push_back(onSlope(static_cast<float>(x), static_cast<float>(y)));
    for (uint16_t y = 0; y < side; ++y)
        for (uint16_t x = 0; x < side; ++x)
        {
            const uint16_t a = static_cast<uint16_t>(y * (side + 1) + x);
            const uint16_t c = static_cast<uint16_t>(a + side + 1);
            faces.push_back({a, static_cast<uint16_t>(a + 1), c});
            faces.push_back({static_cast<uint16_t>(a + 1), static_cast<uint16_t>(c + 1), c});
        }
    Mesh* mesh = makeMesh("S", vertices, faces);
    mesh->pivot = {0, 0, 0};
    mesh->rotation = {0, 0, 0, 0};
    const std::unique_ptr<OGroup> group(new OGroup);
    group->addTList(new TList);
    group->addMesh(mesh);
    group->constructOctree();
    std::mt19937 random(36);
    const auto anywhere = [&] { return onSlope(20 + anyNumber(random, 19), 20 + anyNumber(random, 19)); };
    Met met;
    for (unsigned i = 0; i < 1500; ++i)
    {
        Vertex3D start = anywhere(), end = anywhere();
        const float heights[] = {0, 1e-6f, 4e-6f, 0.1f}, falls[] = {0, 1e-6f, 4e-6f, 2e-5f, 1e-4f};
        const float above = heights[random() % 4];
        start.z += above;
        end.z += above - falls[random() % 5];
        expectPlainAnswers(start, end, group.get(), i, &met);
    }
    EXPECT_GT(met.found, 20);
}

TEST_F(Rays, ValuesThatAreNoNumbersChangeNothing)
{
    std::mt19937 random(35);
    Met met;
    const std::unique_ptr<OGroup> group = makeRandomGroup(random, 3, 60);
    const float odd[] = {std::nanf(""), HUGE_VALF, -HUGE_VALF, 1e38f, 1e-42f};
    for (const float value : odd)
    {
        group->meshes[0]->calculatedVertices[5].y = value;
        group->meshes[1]->calculatedVertices[7].z = value;
        expectPlainAnswersToAny(random, 60, group.get(), &met);
        Vertex3D start = anyPoint(random, 5), end = {value, 1, 2};
        expectPlainAnswers(start, end, group.get(), 1, &met);
    }
    group->meshes[2]->position.x = std::nanf("");
    expectPlainAnswersToAny(random, 60, group.get(), &met);
    EXPECT_GT(met.found, 20);
}

// One of the things that hosts do to a mesh.
static void changeAnything(std::mt19937& random, Mesh* mesh)
{
    Vertex3D& vertex = mesh->calculatedVertices[random() % static_cast<unsigned>(mesh->vertexCount)];
    Facelist& face = mesh->faces[random() % static_cast<unsigned>(mesh->faceCount)];
    switch (random() % 9)
    {
    case 0:
        mesh->position = mesh->position + anyPoint(random, 1);
        break;
    case 1:
        mesh->pivot = anyPoint(random, 2);
        break;
    case 2:
        mesh->rotation.z += anyNumber(random, 20);
        break;
    case 3:
        vertex = vertex + anyPoint(random, 2);
        break;
    case 4:
        vertex.x = -vertex.x;
        break;
    case 5:
        std::swap(face.b, face.c);
        break;
    case 6:
        face.a = static_cast<uint16_t>(random() % static_cast<unsigned>(mesh->vertexCount));
        break;
    case 7: // another block of the same vertices
    {
        const size_t bytes = sizeof(Vertex3D) * static_cast<size_t>(mesh->vertexCount);
        void* copy = std::malloc(bytes);
        std::memcpy(copy, mesh->calculatedVertices, bytes);
        std::free(mesh->calculatedVertices);
        mesh->calculatedVertices = static_cast<Vertex3D*>(copy);
        break;
    }
    default:
        mesh->faceMaterials[0].materialIndex = static_cast<int>(random() % 4);
    }
}

TEST_F(Rays, ChangesBetweenQueriesAreSeenAsByThePlainLoops)
{
    std::mt19937 random(32);
    Met met;
    for (int round = 0; round < 12; ++round)
    {
        const std::unique_ptr<OGroup> group = makeRandomGroup(random, 3, 60);
        for (int change = 0; change < 30; ++change)
        {
            // Now and then one mesh is hidden meanwhile.
            Mesh* hidden = random() % 2 ? group->meshes[random() % 3] : nullptr;
            changeAnything(random, group->meshes[random() % 3]);
            const int faceCount = hidden ? std::exchange(hidden->faceCount, 0) : 0;
            expectPlainAnswersToAny(random, 8, group.get(), &met);
            if (!hidden)
                continue;
            hidden->faceCount = faceCount;
            expectPlainAnswersToAny(random, 8, group.get(), &met);
        }
    }
    EXPECT_GT(met.found, 200);
}

TEST_F(Rays, ChangedMeshesAreSeenByTheNextQuery)
{
    const std::unique_ptr<OGroup> group(new OGroup);
    group->addTList(new TList);
    // Two floors in one large leaf, so that the tree still finds them when they have moved.
    Mesh* floor = makeMesh("F", {{-5, -5, 0}, {5, -5, 0}, {5, 5, 0}, {-5, 5, 0}}, {{0, 1, 2}, {0, 2, 3}});
    floor->pivot = {0, 0, 0};
    floor->rotation = {0, 0, 0, 0};
    group->addMesh(floor);
    group->constructOctree();
    Vertex3D start = {1, 1, 3}, end = {1, 1, -3};
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 0.0f);
    floor->position.z = 2;
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 2.0f);
    floor->rotation.x = 180; // shows its back
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, -999999.0f);
    floor->rotation.x = 0;
    for (int i = 0; i < 4; ++i)
        floor->calculatedVertices[i].z = -1;
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 1.0f);
}

class Ground : public EngineTest
{
protected:
    OGroup* makeGround(float z, const char* name = "G")
    {
        group->addTList(new TList);
        Mesh* mesh = makeMesh(name, {{-5, -5, z}, {5, -5, z}, {5, 5, z}, {-5, 5, z}}, {{0, 1, 2}, {0, 2, 3}});
        mesh->pivot = {0, 0, 0};
        mesh->rotation = {0, 0, 0, 0};
        group->addMesh(mesh);
        return group.get();
    }
    std::unique_ptr<OGroup> group{new OGroup};
    Vertex3D start = {1, 2, 4}, end = {1, 2, -8};
};

TEST_F(Ground, WithoutATreeNothingIsHit)
{
    makeGround(0);
    for (OGroup* asked : {group.get(), static_cast<OGroup*>(nullptr)})
    {
        EXPECT_EQ(vrkRaySceneDistance(&start, &end, asked), FLT_MAX);
        EXPECT_FALSE(vrkRayScene(&start, &end, 100, asked));
        EXPECT_EQ(vrkCheckHeight(&start, &end, asked).z, -999999.0f);
        EXPECT_EQ(vrkCheckNegativeHeight(&start, &end, asked).z, 999999.0f);
    }
    EXPECT_EQ(vrkCheckHeight2(&start, &end, nullptr).z, 0.0f);
}

TEST_F(Ground, RaysThatBeginOutsideOfTheTreeHitNothing)
{
    makeGround(0)->constructOctree();
    start.z = 400;
    EXPECT_EQ(vrkRaySceneDistance(&start, &end, group.get()), FLT_MAX);
}

TEST_F(Ground, HeightIsThatOfTheHighestFaceSeenFromTheFront)
{
    makeGround(-3);
    makeGround(1)->constructOctree();
    const Vertex3D highest = vrkCheckHeight(&start, &end, group.get());
    EXPECT_EQ(highest.x, 1.0f);
    EXPECT_EQ(highest.y, 2.0f);
    EXPECT_EQ(highest.z, 1.0f);
    EXPECT_EQ(vrkCheckNegativeHeight(&start, &end, group.get()).z, -3.0f);
    EXPECT_EQ(vrkRaySceneDistance(&start, &end, group.get()), 3.0f);
    std::swap(start, end); // from below: backs only
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, -999999.0f);
}

TEST_F(Ground, HitsBeyondTheEndCountWhereTheirLeafIsSearched)
{
    makeGround(0)->constructOctree();
    end.z = 3;
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 0.0f);
}

TEST_F(Ground, SearchWithoutTheTreeSeesNothingAtNoughtAndBelow)
{
    makeGround(-5);
    EXPECT_EQ(vrkCheckHeight2(&start, &end, group.get()).z, 0.0f);
    EXPECT_EQ(vrkCheckHeight2(&start, &end, group.get()).x, 0.0f);
    makeGround(0);
    EXPECT_EQ(vrkCheckHeight2(&start, &end, group.get()).x, 0.0f);
    makeGround(2);
    const Vertex3D highest = vrkCheckHeight2(&start, &end, group.get());
    EXPECT_EQ(highest.z, 2.0f);
    EXPECT_EQ(highest.x, 1.0f);
}

TEST_F(Ground, HeightsAreSeenDownToMinusAHundredMillionAndUpToAHundredMillion)
{
    for (const float z : {2e6f, 2e8f})
    {
        const bool isSeen = z < 1e8f;
        group.reset(new OGroup);
        makeGround(-z)->constructOctree();
        start = {0.5f, 0.5f, group->octree->max.z};
        end = {0.5f, 0.5f, group->octree->min.z};
        EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, isSeen ? -z : -999999.0f);
        EXPECT_LT(vrkRaySceneDistance(&start, &end, group.get()), FLT_MAX);
        group.reset(new OGroup);
        makeGround(z)->constructOctree();
        start.z = group->octree->max.z;
        end.z = group->octree->min.z;
        EXPECT_EQ(vrkCheckNegativeHeight(&start, &end, group.get()).z, isSeen ? z : 999999.0f);
    }
}

TEST_F(Ground, RaysWithoutEndsHitNothing)
{
    makeGround(0)->constructOctree();
    Vertex3D* const ends[][2] = {{nullptr, &end}, {&start, nullptr}};
    for (const auto& [from, to] : ends)
    {
        EXPECT_EQ(vrkRaySceneDistance(from, to, group.get()), FLT_MAX);
        EXPECT_FALSE(vrkRayScene(from, to, 100, group.get()));
        EXPECT_EQ(vrkCheckHeight(from, to, group.get()).z, -999999.0f);
        EXPECT_EQ(vrkCheckNegativeHeight(from, to, group.get()).z, 999999.0f);
        EXPECT_EQ(vrkCheckHeight2(from, to, group.get()).z, 0.0f);
        EXPECT_FALSE(vrkRayBox(from, to, group->meshes[0], nullptr));
    }
    std::free(group->meshes[0]->transformedVertices);
    group->meshes[0]->transformedVertices = nullptr;
    EXPECT_FALSE(vrkRayBox(&start, &end, group->meshes[0], nullptr));
}

TEST_F(Ground, FacesWithAnOpacityImageStopHalfOfTheRays)
{
    makeGround(0)->constructOctree();
    group->activeTList->first->addOpacityTexture(new Texture);
    int stopped = 0;
    for (int i = 0; i < 1000; ++i)
        stopped += vrkRaySceneDistance(&start, &end, group.get()) < FLT_MAX;
    EXPECT_GT(stopped, 400);
    EXPECT_LT(stopped, 600);
    EXPECT_TRUE(vrkRayScene(&start, &end, 100, group.get())); // asks no material
}

TEST_F(Ground, MeshIsHitAtItsFirstFaceByNumber)
{
    Mesh* mesh = makeMesh("M", {{-5, -5, 0}, {5, -5, 0}, {0, 5, 0}, {-5, -5, 2}, {5, -5, 2}, {0, 5, 2}},
                          {{0, 1, 2}, {3, 4, 5}});
    group->addMesh(mesh);
    mesh->position = {100, 0, 0}; // plays no part
    std::memcpy(static_cast<void*>(mesh->transformedVertices), mesh->calculatedVertices,
                sizeof(Vertex3D) * 6);
    Vertex3D point = {9, 9, 9}, from = {0, 0, 4}, to = {0, 0, -4};
    EXPECT_TRUE(vrkRayBox(&from, &to, mesh, &point));
    EXPECT_EQ(point.z, 0.0f);
    EXPECT_TRUE(vrkRayBox(&from, &to, mesh, nullptr));
    from.x = to.x = 50;
    EXPECT_FALSE(vrkRayBox(&from, &to, mesh, &point));
    mesh->faces[0].a = 900;
    from.x = to.x = 0;
    EXPECT_TRUE(vrkRayBox(&from, &to, mesh, &point));
    EXPECT_EQ(point.z, 2.0f);
    mesh->createFaces(0);
    EXPECT_FALSE(vrkRayBox(&from, &to, mesh, &point));
    EXPECT_FALSE(vrkRayBox(&from, &to, nullptr, &point));
}

static void askEverything(Vertex3D start, Vertex3D end, OGroup* group)
{
    Vertex3D position = {0, 0, 0.1f}, old = {0, 0, 2}, normal;
    vrkRaySceneDistance(&start, &end, group);
    vrkRayScene(&start, &end, 5, group);
    vrkCheckHeight(&start, &end, group);
    vrkCheckNegativeHeight(&start, &end, group);
    vrkCheckHeight2(&start, &end, group);
    vrkRayBox(&start, &end, group->meshes[0], &normal);
    vrkCheckCollision(&position, &old, 0.5f, group, true, &normal, 3);
}

TEST_F(Ground, QueriesTakeNoMemoryAndAskTheRasterizerNothing)
{
    makeGround(-2);
    makeGround(0)->constructOctree();
    {
        GLRecorder gl;
        const long before = allocationCount();
        askEverything(start, end, group.get());
        EXPECT_EQ(gl.text(), "");
        EXPECT_EQ(allocationCount(), before);
    }
    // What has moved is laid out anew in place.
    group->meshes[0]->calculatedVertices[2].z = 1;
    const long before = allocationCount();
    askEverything(start, end, group.get());
    EXPECT_EQ(allocationCount(), before);
    // A matrix is asked for once.
    group->meshes[1]->rotation.z = 10;
    GLRecorder first;
    askEverything(start, end, group.get());
    EXPECT_EQ(first.count("glRotatef"), 1);
    GLRecorder second;
    askEverything(start, end, group.get());
    EXPECT_EQ(second.text(), "");
}

TEST_F(Ground, ChangedFacesAreAskedOneByOne)
{
    makeGround(0)->constructOctree();
    Mesh* mesh = group->meshes[0];
    std::swap(mesh->faces[0].b, mesh->faces[0].c);
    std::swap(mesh->faces[1].b, mesh->faces[1].c);
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, -999999.0f); // shows its back
    mesh->faceCount = 0;
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, -999999.0f);
    mesh->faceCount = 2;
    std::swap(mesh->faces[0].b, mesh->faces[0].c);
    std::swap(mesh->faces[1].b, mesh->faces[1].c);
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 0.0f);
    Vertex3D* vertices = mesh->calculatedVertices;
    mesh->calculatedVertices = nullptr; // all corners at the origin
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, -999999.0f);
    mesh->calculatedVertices = vertices;
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 0.0f);
}

// A mesh that has no faces for a while, as hosts hide one, and another one that moves aside meanwhile.
TEST_F(Ground, WhatMovesWhileAnotherMeshIsHiddenIsSeenWhenThatIsBack)
{
    makeGround(0);
    makeGround(-2)->constructOctree();
    Mesh *ground = group->meshes[0], *hidden = group->meshes[1];
    ASSERT_FALSE(group->octree->hasChildren); // both in one leaf
    const auto highest = [&] { return vrkCheckHeight(&start, &end, group.get()).z; };
    for (const float x : {20.0f, 0.0f})
    {
        hidden->faceCount = 0;
        ground->position.x = x;
        EXPECT_EQ(highest(), x > 0 ? -999999.0f : 0.0f);
        hidden->faceCount = 2;
        EXPECT_EQ(highest(), x > 0 ? -2.0f : 0.0f);
    }
    for (const float x : {20.0f, -20.0f})
    {
        hidden->faceCount = 0;
        for (int i = 0; i < ground->vertexCount; ++i)
            ground->calculatedVertices[i].x += x;
        EXPECT_EQ(highest(), x > 0 ? -999999.0f : 0.0f);
        hidden->faceCount = 2;
        EXPECT_EQ(highest(), x > 0 ? -2.0f : 0.0f);
    }
}

TEST_F(Ground, FacesInsertedLaterAreFound)
{
    makeGround(0);
    makeGround(2);
    group->meshes[1]->visible = 0;
    group->constructOctree();
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 0.0f);
    for (int face = 0; face < 2; ++face)
        group->octree->insert(group->meshes[1], face, true);
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 2.0f);
    group->octree->makePlanes(0.001f);
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 2.0f);
    EXPECT_EQ(group->octree->split(1, 3, nullptr), 0);
    EXPECT_TRUE(group->octree->hasChildren);
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 2.0f);
}

// A wall behind more leaves than most queries look into.
TEST_F(Ground, LeavesBeyondTheListsAreNotSearched)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int i = 0; i < 2500; ++i)
    {
        const Vertex3D p = {static_cast<float>(i), 0, 0};
        const uint16_t first = static_cast<uint16_t>(i * 3);
        vertices.insert(vertices.end(), {p, p + Vertex3D{0.1f, 0, 0}, p + Vertex3D{0, 0.1f, 0}});
        faces.push_back({first, static_cast<uint16_t>(first + 1), static_cast<uint16_t>(first + 2)});
    }
    vertices[7480] = {2490.5f, -3, -3};
    vertices[7481] = {2490.5f, 0, 3};
    vertices[7482] = {2490.5f, 3, -3};
    faces[2493] = {7480, 7481, 7482};
    Mesh* mesh = makeMesh("M", vertices, faces);
    mesh->pivot = {0, 0, 0};
    mesh->rotation = {0, 0, 0, 0};
    group->addTList(new TList);
    group->addMesh(mesh);
    group->octree = new octreeNode;
    for (int i = 0; i < mesh->faceCount; ++i)
        group->octree->insert(mesh, i, true);
    group->octree->adjustSize();
    group->octree->split(1, 13, nullptr);
    start = {0.5f, 0.05f, 0.05f};
    end = {2499, 0.05f, 0.05f};
    for (const bool isLaidOut : {false, true})
    {
        if (isLaidOut)
            group->octree->makePlanes(0.001f);
        ASSERT_TRUE(plainHits(start, end, group.get(), 1024).empty());
        ASSERT_FALSE(plainHits(start, end, group.get(), 32768).empty());
        EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, -999999.0f);
        EXPECT_EQ(vrkCheckNegativeHeight(&start, &end, group.get()).z, 999999.0f);
        EXPECT_FALSE(vrkRayScene(&start, &end, 5000, group.get()));
        EXPECT_EQ(vrkRaySceneDistance(&start, &end, group.get()), 2490.0f);
    }
}

TEST_F(Ground, DeletedMeshesLeaveTheTree)
{
    makeGround(0);
    makeGround(1)->constructOctree();
    group->delMesh(group->meshes[1]);
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 0.0f);
    Vertex3D position = {0, 0, 1}, old = {0, 0, 2}, normal;
    EXPECT_FALSE(vrkCheckCollision(&position, &old, 0.1f, group.get(), true, &normal, 3));
}

TEST_F(Ground, TreeNeedsMeshes)
{
    OGroup empty;
    EXPECT_EQ(empty.constructOctree(), 44);
    EXPECT_TRUE(logged("Cannot create octree for OGroup! Possible memory leak or OGroup is NULL!"));
    EXPECT_EQ(empty.octree, nullptr);
    makeGround(0);
    group->meshes[0]->visible = 0;
    EXPECT_EQ(group->constructOctree(), 0);
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, -999999.0f);
    group->clear();
    EXPECT_EQ(group->octree, nullptr);
}

static void expectSameTrees(const octreeNode& a, const octreeNode& b)
{
    ASSERT_EQ(a.hasChildren, b.hasChildren);
    EXPECT_TRUE(sameBits(&a.min, &b.min, sizeof a.min) && sameBits(&a.max, &b.max, sizeof a.max));
    ASSERT_EQ(a.polys.size, b.polys.size);
    for (int i = 0; i < a.polys.size; ++i)
    {
        EXPECT_EQ(a.polys.items[i].mesh, b.polys.items[i].mesh);
        EXPECT_EQ(a.polys.items[i].face, b.polys.items[i].face);
    }
    for (int i = 0; a.hasChildren && i < 8; ++i)
        expectSameTrees(*a.child[i], *b.child[i]);
}

TEST_F(Ground, TreeHoldsTheVisibleFacesFiveALeafAndDividesSixTimes)
{
    std::mt19937 random(37);
    for (int round = 0; round < 6; ++round)
    {
        const std::unique_ptr<OGroup> any = makeRandomGroup(random, 3, 200);
        Mesh* heap =
            makeMesh("H", {{1, 1, 1}, {1.01f, 1, 1}, {1, 1.01f, 1}}, std::vector<Facelist>(9, {0, 1, 2}));
        any->addMesh(heap);
        const std::unique_ptr<octreeNode> before(any->octree);
        ASSERT_EQ(any->constructOctree(), 0);
        ASSERT_NE(any->octree, before.get());
        EXPECT_TRUE(before->hasChildren); // the host's now
        octreeNode expected;
        for (int m = 0; m < any->meshCount; ++m)
            for (int face = 0; any->meshes[m]->visible && face < any->meshes[m]->faceCount; ++face)
                expected.insert(any->meshes[m], face, true);
        expected.adjustSize();
        expected.split(5, 5, nullptr);
        expectSameTrees(*any->octree, expected);
    }
}

TEST_F(Ground, MeasureIsTheLargestDifferenceAlongAnAxisOfAnyTwoCorners)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        float at[3] = {-2, 0, 2};
        do
        {
            Vertex3D corners[3] = {};
            for (int i = 0; i < 3; ++i)
                (&corners[i].x)[axis] = at[i];
            group.reset(new OGroup);
            Mesh* ruler = makeMesh("R", {corners[0], corners[1], corners[2]}, {{0, 1, 2}}, {1, 0, 0});
            group->addMesh(ruler);
            group->adjustSize(ruler, 8);
            EXPECT_EQ(ruler->position.x, 2.0f);
        } while (std::next_permutation(at, at + 3));
    }
}

TEST_F(Ground, AdjustedSizeScalesTheWholeGroup)
{
    makeGround(3);
    Mesh* other = makeMesh("R", {{0, 0, 0}, {2, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}, {7, 0, 0});
    other->pivot = {1, 1, 1};
    other->radius = 2;
    group->addMesh(other);
    Light* light = new Light;
    light->location = {1, 2, 3};
    group->addLight(light);
    Camera* camera = new Camera;
    camera->eye = {1, 0, 0};
    camera->target = {5, 0, 0};
    group->addCamera(camera);
    PathList* list = new PathList;
    group->addPathList(list);
    VRKPath* path = new VRKPath(1, 5, VRK_TRACK_POSITION, other);
    path->set(0, 1, 2, 3, 0);
    VRKPath* turns = new VRKPath(1, 5, VRK_TRACK_ROTATION, other);
    turns->set(0, 1, 2, 3, 90, 0);
    list->addPath(path);
    list->addPath(turns);
    list->initPivots(1);
    const Vertex3D pivot = {1, 1, 2};
    list->addPivotPoint(other, &pivot);

    group->adjustSize(nullptr, 5);
    EXPECT_EQ(light->location.x, 1.0f);
    group->adjustSize(other, 20); // its largest side is 2
    EXPECT_EQ(other->visible, 0);
    EXPECT_EQ(other->position.x, 70.0f);
    EXPECT_EQ(other->pivot.z, 10.0f);
    EXPECT_EQ(other->radius, 20.0f);
    EXPECT_EQ(other->calculatedVertices[1].x, 20.0f);
    EXPECT_EQ(other->originalVertices[1].x, 2.0f);
    EXPECT_EQ(light->location.z, 30.0f);
    EXPECT_EQ(camera->eye.x, 10.0f);
    EXPECT_EQ(camera->target.x, 5.0f);
    EXPECT_EQ(path->keys[0].position[0], 30.0f);
    EXPECT_EQ(path->keys[1].position[2], 10.0f);
    EXPECT_EQ(turns->keys[0].rotation[0], 3.0f);
    EXPECT_EQ(list->pivots[0].pivot.z, 20.0f);
    ASSERT_NE(group->octree, nullptr);
    start = {1, 2, 40};
    EXPECT_EQ(vrkCheckHeight(&start, &end, group.get()).z, 30.0f);
    other->createFaces(0);
    group->adjustSize(other, 5); // no extent, no measure
    EXPECT_EQ(light->location.z, 30.0f);
}

TEST(Wait, SpinsUntilTheTimeHasPassed)
{
    const auto before = std::chrono::steady_clock::now();
    wait(0u);
    wait(20u);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(20));
    const std::clock_t used = std::clock();
    wait(100u);
    EXPECT_GT(std::clock() - used, CLOCKS_PER_SEC / 500); // it doesn't sleep
}

TEST(FindIntersectionPoint, LineMeetsThePlane)
{
    const Vertex3D a = {0, 0, 2}, b = {1, 0, 2}, c = {0, 1, 2};
    Vertex3D start = {5, 6, 10}, end = {5, 6, 8};
    const Vertex3D point = findIntersectionPoint(&start, &end, &a, &b, &c);
    EXPECT_EQ(point.x, 5.0f);
    EXPECT_EQ(point.z, 2.0f);
    end = {8, 6, 10}; // parallel
    EXPECT_NO_FATAL_FAILURE(findIntersectionPoint(&start, &end, &a, &b, &c));
    start.z = end.z = 2; // in the plane: nought over the smallest float, not over nought
    EXPECT_EQ(findIntersectionPoint(&start, &end, &a, &b, &c).x, 5.0f);
    const Vertex3D o = {0, 0, 0}, x = {1, 0, 0}, y = {0, 1, 0};
    start.z = end.z = 3 * FLT_MIN;
    EXPECT_EQ(findIntersectionPoint(&start, &end, &o, &x, &y).x, 5.0f - 3 * 3);
}
