// Rays and heights through the octree, beside plain loops over the same leaves.

#include <gtest/gtest.h>

#include <cfloat>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "tests/spatial/randomgroup.h"
#include "tests/support/allocations.h"
#include "tests/support/engine.h"
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
        EXPECT_EQ(vrkRayScene(&start, &end, limit, group), closest < limit);
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
            changeAnything(random, group->meshes[random() % 3]);
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

TEST_F(Ground, QueriesTakeNoMemory)
{
    makeGround(0)->constructOctree();
    vrkRaySceneDistance(&start, &end, group.get());
    const long before = allocationCount();
    Vertex3D position = {0, 0, 0.1f}, old = {0, 0, 2}, normal;
    vrkRaySceneDistance(&start, &end, group.get());
    vrkRayScene(&start, &end, 5, group.get());
    vrkCheckHeight(&start, &end, group.get());
    vrkCheckCollision(&position, &old, 0.5f, group.get(), true, &normal, 3);
    EXPECT_EQ(allocationCount(), before);
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
}
