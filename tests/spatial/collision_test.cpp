#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "spatial/packedtree.h"
#include "tests/spatial/randomgroup.h"
#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/scene/material.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

// The query as it is defined, on lists of its own.
static bool plainCollision(Vertex3D* position, const Vertex3D& old, float radius, OGroup* group, bool slide,
                           Vertex3D* normal, int iterations)
{
    std::vector<octreeNode*> leaves(27);
    leaves.resize(static_cast<size_t>(group->octree->traverseNearest(position, radius, leaves.data(), 27)));
    std::vector<const Plane*> hit;
    struct Found
    {
        float t;
        const Plane* plane;
    };
    for (int pass = 0; pass < iterations; ++pass)
    {
        std::vector<Found> found;
        for (const octreeNode* leaf : leaves)
            for (const Plane* plane = leaf->planes; plane; plane = plane->next)
            {
                if (std::find(hit.begin(), hit.end(), plane) != hit.end())
                    continue;
                const Vertex3D m = *position - old;
                const float nd = m * plane->normal, d = (old - plane->point) * plane->normal;
                if (!(std::fabs(d) > radius) || nd == 0)
                    continue;
                float t = ((plane->point - old) * plane->normal + radius) / nd;
                const Mesh* mesh = plane->faces[0].mesh;
                const Material* material =
                    group->activeTList->getMaterial(mesh->faceMaterials[plane->faces[0].face].materialIndex);
                const Vertex3D back = -plane->normal;
                const float t2 = ((plane->point - old) * back + radius) / (m * back);
                if (material && material->twoSided && t2 < t && t2 >= 0)
                    t = t2;
                if (t >= 0 && t <= 1)
                    found.push_back({t, plane});
            }
        std::stable_sort(found.begin(), found.end(),
                         [](const Found& a, const Found& b) { return a.t < b.t; });

        bool done = false;
        for (const Found& candidate : found)
        {
            for (int i = 0; i < candidate.plane->faceCount && !done; ++i)
            {
                const PlaneList& member = candidate.plane->faces[i];
                const Facelist& f = member.mesh->faces[member.face];
                const EdgeNormal& e = member.mesh->edgeNormals[member.face];
                const Vertex3D a = member.mesh->calculatedVertex(f.a), b = member.mesh->calculatedVertex(f.b),
                               c = member.mesh->calculatedVertex(f.c);
                const Vertex3D& p = *position;
                if (!((p - a) * e.edgeNormal[0] < radius && (p - b) * e.edgeNormal[1] < radius &&
                      (p - c) * e.edgeNormal[2] < radius && (p - b) * e.cornerNormal[0] < radius &&
                      (p - c) * e.cornerNormal[1] < radius && (p - a) * e.cornerNormal[2] < radius))
                    continue;
                *normal = calcNormal(&a, &b, &c);
                if (slide && pass + 1 < iterations)
                {
                    Vertex3D m = *position - old, into = *normal;
                    into *= m * *normal;
                    *position = old + (m - into);
                }
                else
                    *position = old;
                hit.push_back(candidate.plane);
                done = true;
            }
            if (done)
                break;
        }
    }
    return !hit.empty();
}

static void expectNoFlags(const octreeNode* node)
{
    for (const Plane* plane = node->planes; plane; plane = plane->next)
        EXPECT_EQ(plane->flag, 0);
    for (const octreeNode* child : node->child)
        if (child)
            expectNoFlags(child);
}

class Collision : public EngineTest
{
protected:
    // A square wall in the plane x = at that looks towards -x.
    Mesh* addWall(float at, bool alongY = false, int material = 0)
    {
        Mesh* mesh =
            makeMesh("W", {{at, -5, -5}, {at, -5, 5}, {at, 5, 5}, {at, 5, -5}}, {{0, 1, 2}, {0, 2, 3}});
        if (alongY)
            for (int i = 0; i < 4; ++i)
            {
                Vertex3D& v = mesh->calculatedVertices[i];
                v = {-v.y, at, v.z}; // looks towards -y
            }
        mesh->pivot = {0, 0, 0};
        mesh->rotation = {0, 0, 0, 0};
        for (int i = 0; i < 2; ++i)
            mesh->faceMaterials[i].materialIndex = material;
        mesh->calcEdgeNormals();
        group->addMesh(mesh);
        return mesh;
    }
    void build()
    {
        TList* list = new TList;
        Material* twoSided = new Material;
        twoSided->twoSided = 1;
        list->addMaterial(twoSided);
        group->addTList(list);
        group->constructOctree();
    }
    bool move(Vertex3D from, Vertex3D to, int iterations = 3, bool slide = true)
    {
        position = to;
        normal = {9, 9, 9};
        const bool result =
            vrkCheckCollision(&position, &from, 0.5f, group.get(), slide, &normal, iterations);
        expectNoFlags(group->octree);
        return result;
    }
    void expectPosition(float x, float y, float z) const
    {
        EXPECT_NEAR(position.x, x, 1e-5);
        EXPECT_NEAR(position.y, y, 1e-5);
        EXPECT_NEAR(position.z, z, 1e-5);
    }

    std::unique_ptr<OGroup> group{new OGroup};
    Vertex3D position = {}, normal = {};
};

TEST_F(Collision, SphereSlidesAlongAWall)
{
    addWall(3);
    build();
    EXPECT_TRUE(move({1, 0, 0}, {2.8f, 1, 0}));
    expectPosition(1, 1, 0); // what led along the wall is left
    EXPECT_NEAR(normal.x, -1, 1e-6);
}

TEST_F(Collision, SphereThatDoesNotReachItGoesOn)
{
    addWall(3);
    build();
    EXPECT_FALSE(move({1, 0, 0}, {2.4f, 1, 0}));
    expectPosition(2.4f, 1, 0);
    EXPECT_EQ(normal.x, 9.0f);                // untouched
    EXPECT_FALSE(move({1, 0, 0}, {1, 4, 0})); // alongside
}

TEST_F(Collision, LastPassPutsTheSphereBack)
{
    addWall(3);
    build();
    EXPECT_TRUE(move({1, 0, 0}, {2.8f, 1, 0}, 1, true));
    expectPosition(1, 0, 0);
    EXPECT_TRUE(move({1, 0, 0}, {2.8f, 1, 0}, 3, false));
    expectPosition(1, 0, 0);
    EXPECT_FALSE(move({1, 0, 0}, {2.8f, 1, 0}, 0));
    EXPECT_FALSE(move({1, 0, 0}, {2.8f, 1, 0}, -2));
    expectPosition(2.8f, 1, 0);
}

TEST_F(Collision, CornerOfTwoWallsStopsBothWays)
{
    addWall(3);
    addWall(3, true);
    build();
    EXPECT_TRUE(move({1, 1, 0}, {2.8f, 2.9f, 0.2f}));
    expectPosition(1, 1, 0.2f); // only up is left
}

TEST_F(Collision, PlaneThatTheOldPlaceTouchesIsNoObstacle)
{
    addWall(3);
    build();
    EXPECT_FALSE(move({2.6f, 0, 0}, {2.9f, 0, 0}));
    EXPECT_FALSE(move({2.5f, 0, 0}, {2.9f, 0, 0})); // just touches it
    EXPECT_TRUE(move({2.49f, 0, 0}, {2.9f, 0, 0}));
}

TEST_F(Collision, PlaneIsMetAtTheVeryEndOfAMove)
{
    addWall(3);
    build();
    EXPECT_TRUE(move({1, 0, 0}, {2.5f, 0, 0}));
    EXPECT_FALSE(move({1, 0, 0}, {2.49f, 0, 0}));
}

TEST_F(Collision, PointersMayBeNull)
{
    addWall(3);
    build();
    Vertex3D old = {1, 0, 0};
    position = {2.8f, 1, 0};
    EXPECT_FALSE(vrkCheckCollision(nullptr, &old, 0.5f, group.get(), true, &normal, 3));
    EXPECT_FALSE(vrkCheckCollision(&position, nullptr, 0.5f, group.get(), true, &normal, 3));
    EXPECT_TRUE(vrkCheckCollision(&position, &old, 0.5f, group.get(), true, nullptr, 3));
    expectPosition(1, 1, 0);
}

TEST_F(Collision, WallsStopFromBehindWhenTheirMaterialHasTwoSides)
{
    addWall(3);
    build();
    EXPECT_FALSE(move({5, 0, 0}, {2.8f, 0, 0})); // not half a metre through yet
    EXPECT_TRUE(move({5, 0, 0}, {2.3f, 0, 0}));  // right through, to the radius in front of it
    group->meshes[0]->faceMaterials[0].materialIndex = group->meshes[0]->faceMaterials[1].materialIndex = 1;
    EXPECT_TRUE(move({5, 0, 0}, {3.2f, 0, 0}));
}

TEST_F(Collision, TriangleIsGrownByTheRadius)
{
    addWall(3);
    addWall(-40); // so that the tree reaches around the first
    build();
    EXPECT_TRUE(move({1, 5.4f, 0}, {2.8f, 5.4f, 0}));
    EXPECT_FALSE(move({1, 4.9f, 0}, {2.8f, 5.6f, 0}));
    EXPECT_FALSE(move({1, 5.5f, 0}, {2.8f, 5.5f, 0})); // by less than the radius
}

TEST_F(Collision, OutsideOfTheTreeThereIsNothing)
{
    addWall(3);
    build();
    EXPECT_FALSE(move({1, 0, 0}, {300, 0, 0}));
    EXPECT_FALSE(vrkCheckCollision(&position, &position, 1, nullptr, true, &normal, 3));
    OGroup empty;
    EXPECT_FALSE(vrkCheckCollision(&position, &position, 1, &empty, true, &normal, 3));
}

// Moves a sphere from and to any places, and demands the bits of the plain query. @return was anything hit?
static bool expectPlainMove(std::mt19937& random, OGroup* group)
{
    Vertex3D old = anyPoint(random, 8);
    const Vertex3D to = old + anyPoint(random, 3);
    const float radius = 0.05f + std::fabs(anyNumber(random, 1));
    const bool slide = random() % 4 != 0;
    const int iterations = static_cast<int>(random() % 6);
    Vertex3D fast = to, plain = to, fastNormal = {1, 2, 3}, plainNormal = {1, 2, 3};
    const bool fastHit = vrkCheckCollision(&fast, &old, radius, group, slide, &fastNormal, iterations);
    const bool plainHit = plainCollision(&plain, old, radius, group, slide, &plainNormal, iterations);
    EXPECT_EQ(fastHit, plainHit);
    EXPECT_EQ(std::memcmp(static_cast<void*>(&fast), &plain, sizeof fast), 0);
    EXPECT_EQ(std::memcmp(static_cast<void*>(&fastNormal), &plainNormal, sizeof fast), 0);
    return fastHit;
}

TEST_F(Collision, RandomMovesEndAsInThePlainQuery)
{
    const bool before = packedLanesAreWide;
    std::mt19937 random(41);
    int hits = 0;
    for (int round = 0; round < 20; ++round)
    {
        packedLanesAreWide = before && round < 15;
        const std::unique_ptr<OGroup> any = makeRandomGroup(random, 4, 40);
        for (int i = 0; i < 300; ++i)
            hits += expectPlainMove(random, any.get());
        expectNoFlags(any->octree);
    }
    packedLanesAreWide = before;
    EXPECT_GT(hits, 200);
}

TEST_F(Collision, ChangesBetweenMovesAreSeenAsByThePlainQuery)
{
    std::mt19937 random(42);
    int hits = 0;
    for (int round = 0; round < 10; ++round)
    {
        const std::unique_ptr<OGroup> any = makeRandomGroup(random, 3, 40);
        for (int i = 0; i < 300; ++i)
        {
            Mesh* mesh = any->meshes[random() % 3];
            const unsigned number = random();
            if (i % 10 == 0)
                mesh->position = mesh->position + anyPoint(random, 0.3f);
            if (i % 10 == 3)
                mesh->rotation.y += anyNumber(random, 5);
            if (i % 10 == 4)
                mesh->pivot = anyPoint(random, 1);
            if (i % 10 == 5)
                mesh->calculatedVertices[number % static_cast<unsigned>(mesh->vertexCount)] =
                    anyPoint(random, 10);
            if (i % 10 == 7)
                mesh->faceMaterials[number % static_cast<unsigned>(mesh->faceCount)].materialIndex =
                    static_cast<int>(number % 4);
            if (i % 50 == 9)
                mesh->calcEdgeNormals();
            hits += expectPlainMove(random, any.get());
        }
    }
    EXPECT_GT(hits, 100);
}
