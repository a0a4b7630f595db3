#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/scene/ogroup.h"

// The walk that defines the result, vertices squared.
static void weldPlainly(std::vector<Vertex3D>& v, float e)
{
    for (const Vertex3D& s : v)
        for (Vertex3D& t : v)
            if (t.x - e < s.x && s.x < t.x + e && t.y - e < s.y && s.y < t.y + e && t.z - e < s.z &&
                s.z < t.z + e)
                t = s;
}

// A cube of the wanted size keeps e at percent itself, whatever the first mesh holds within it.
static Mesh* boxAround(float size)
{
    return makeMesh("box", {{-size, -size, -size}, {size, size, size}}, {});
}

static void expectLikePlainWalk(const std::vector<Vertex3D>& cloud, float e, float boxSize)
{
    auto group = std::make_unique<OGroup>();
    Mesh* mesh = makeMesh("cloud", cloud, {});
    group->addMesh(mesh);
    group->addMesh(boxAround(boxSize));
    group->closeCombine(e);

    std::vector<Vertex3D> expected = cloud;
    weldPlainly(expected, e);
    ASSERT_EQ(memcmp(mesh->originalVertices, expected.data(), expected.size() * sizeof(Vertex3D)), 0)
        << cloud.size() << " vertices, e " << e;
}

using Random = std::mt19937;

static std::vector<Vertex3D> makeCloud(Random& random, int count,
                                       const std::function<float(Random&)>& coordinate)
{
    std::vector<Vertex3D> cloud;
    for (int i = 0; i < count; i++)
    {
        float x = coordinate(random), y = coordinate(random), z = coordinate(random);
        cloud.push_back({x, y, z});
    }
    return cloud;
}

static float uniform(Random& random, float low, float high)
{
    return std::uniform_real_distribution<float>(low, high)(random);
}

TEST(CloseCombine, MovesLaterVerticesOntoEarlierOnes)
{
    auto group = std::make_unique<OGroup>();
    Mesh* mesh = makeMesh("a", {{0, 0, 0}, {0.5f, 0, 0}, {1.25f, 0, 0}, {100, 100, 100}}, {});
    group->addMesh(mesh);
    group->closeCombine(1.0f);
    // The second took the place of the first; the third was out of its reach then.
    EXPECT_EQ(mesh->originalVertices[1].x, 0.0f);
    EXPECT_EQ(mesh->originalVertices[2].x, 1.25f);
}

TEST(CloseCombine, MovesEarlierVerticesToo)
{
    auto group = std::make_unique<OGroup>();
    Mesh* mesh = makeMesh("a", {{0, 0, 0}, {0.5f, 0, 0}, {-0.75f, 0, 0}, {100, 100, 100}}, {});
    group->addMesh(mesh);
    group->closeCombine(0.625f);
    // Vertex 0 takes in vertex 1, and nothing else is near.
    EXPECT_EQ(mesh->originalVertices[0].x, 0.0f);
    EXPECT_EQ(mesh->originalVertices[1].x, 0.0f);
    EXPECT_EQ(mesh->originalVertices[2].x, -0.75f);

    group->closeCombine(0.8f);
    // Now vertex 0 reaches vertex 2.
    EXPECT_EQ(mesh->originalVertices[2].x, 0.0f);
}

TEST(CloseCombine, DistanceItselfIsTooFar)
{
    auto group = std::make_unique<OGroup>();
    Mesh* mesh = makeMesh("a", {{0, 0, 0}, {0.5f, 0, 0}, {100, 100, 100}}, {});
    group->addMesh(mesh);
    group->closeCombine(0.5f);
    EXPECT_EQ(mesh->originalVertices[1].x, 0.5f);
}

TEST(CloseCombine, NeedsAllThreeAxes)
{
    auto group = std::make_unique<OGroup>();
    Mesh* mesh = makeMesh("a", {{0, 0, 0}, {0.1f, 5, 0}, {0.1f, 0.1f, 5}, {5, 0, 0.1f}, {100, 100, 100}}, {});
    group->addMesh(mesh);
    group->closeCombine(0.5f);
    EXPECT_EQ(mesh->originalVertices[1].x, 0.1f);
    EXPECT_EQ(mesh->originalVertices[2].x, 0.1f);
    EXPECT_EQ(mesh->originalVertices[3].z, 0.1f);
}

// Does closeCombine(0.5) in a box of these sizes weld two vertices this far apart?
static bool welds(Vertex3D box, float distance)
{
    auto group = std::make_unique<OGroup>();
    Mesh* mesh = makeMesh("a", {{0, 0, 0}, {distance, 0, 0}}, {});
    group->addMesh(mesh);
    group->addMesh(makeMesh("box", {{0, 0, 0}, box}, {}));
    group->closeCombine(0.5f);
    return mesh->originalVertices[1].x == 0.0f;
}

TEST(CloseCombine, DistanceIsAPercentageOfTheLongestAxisOfAllMeshes)
{
    for (Vertex3D box : {Vertex3D{200, 100, 100}, Vertex3D{100, 200, 100}, Vertex3D{100, 100, 200}})
    {
        EXPECT_TRUE(welds(box, 0.999f));
        EXPECT_FALSE(welds(box, 1.0f));
    }
}

TEST(CloseCombine, DistanceIsPercentItselfWhereNoAxisIsStrictlyLongest)
{
    for (Vertex3D box : {Vertex3D{100, 100, 100}, Vertex3D{200, 200, 100}, Vertex3D{100, 200, 200}})
    {
        EXPECT_TRUE(welds(box, 0.499f));
        EXPECT_FALSE(welds(box, 0.5f));
    }
}

TEST(CloseCombine, WeldsTheFirstMeshOnlyAndItsOriginalVerticesOnly)
{
    auto group = std::make_unique<OGroup>();
    Mesh* first = makeMesh("a", {{0, 0, 0}, {0.1f, 0, 0}, {100, 100, 100}}, {});
    Mesh* second = makeMesh("b", {{0.2f, 0, 0}, {0.3f, 0, 0}}, {});
    group->addMesh(first);
    group->addMesh(second);
    group->closeCombine(0.5f);
    EXPECT_EQ(first->originalVertices[1].x, 0.0f);
    EXPECT_EQ(first->calculatedVertices[1].x, 0.1f);
    EXPECT_EQ(second->originalVertices[0].x, 0.2f);
    EXPECT_EQ(second->originalVertices[1].x, 0.3f);
}

TEST(CloseCombine, GroupsWithoutMeshesOrVerticesStayAsTheyAre)
{
    auto group = std::make_unique<OGroup>();
    group->closeCombine(0.5f);
    group->addMesh(new Mesh);
    group->closeCombine(0.5f);
    EXPECT_EQ(group->meshCount, 1);
}

TEST(CloseCombine, NothingIsWithinNoDistance)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (float e : {0.0f, -1.0f, -1000.0f, nan})
        expectLikePlainWalk({{0, 0, 0}, {0, 0, 0}, {0.25f, 0, 0}, {-0.0f, 0, 0}}, e, 100.0f);
}

TEST(CloseCombine, GivesTheBitsOfThePlainWalkOnRandomClouds)
{
    Random random(7);
    for (int round = 0; round < 60; round++)
    {
        auto cloud = makeCloud(random, 300, [](Random& r) { return uniform(r, -10.0f, 10.0f); });
        expectLikePlainWalk(cloud, uniform(random, 0.01f, 3.0f), 20.0f);
    }
}

TEST(CloseCombine, GivesTheBitsOfThePlainWalkOnChainsAndLattices)
{
    Random random(11);
    for (float e : {0.1f, 0.249f, 0.25f, 0.2500001f, 0.5f, 0.51f, 1.0f, 7.0f})
    {
        auto lattice = makeCloud(random, 400, [](Random& r) { return 0.25f * float(int(r() % 9) - 4); });
        expectLikePlainWalk(lattice, e, 20.0f);
        std::vector<Vertex3D> chain;
        for (int i = 0; i < 200; i++)
            chain.push_back({0.25f * float(i), 0.0f, 0.0f});
        std::shuffle(chain.begin(), chain.end(), random);
        expectLikePlainWalk(chain, e, 100.0f);
    }
}

TEST(CloseCombine, GivesTheBitsOfThePlainWalkWhereRoundingDecides)
{
    Random random(13);
    for (int round = 0; round < 200; round++)
    {
        // Neighbouring floats around several magnitudes, with distances of a few units in the last place.
        float base = std::ldexp(1.0f, int(random() % 60) - 30) * (random() % 2 ? 1.0f : -1.0f);
        float unit = std::fabs(std::nextafter(base, 2.0f * base) - base);
        auto cloud =
            makeCloud(random, 120, [=](Random& r) { return base + unit * 0.5f * float(int(r() % 17) - 8); });
        float e = unit * 0.25f * float(1 + random() % 24);
        expectLikePlainWalk(cloud, e, 1e15f);
    }
}

TEST(CloseCombine, GivesTheBitsOfThePlainWalkAcrossAllMagnitudes)
{
    Random random(17);
    auto coordinate = [](Random& r)
    {
        float v = std::ldexp(uniform(r, -1.0f, 1.0f), int(r() % 40) - 20);
        switch (r() % 12)
        {
        case 0:
            return 0.0f;
        case 1:
            return -0.0f;
        case 2:
            return std::numeric_limits<float>::infinity();
        case 3:
            return -std::numeric_limits<float>::infinity();
        case 4:
            return std::numeric_limits<float>::quiet_NaN();
        case 5:
            return std::numeric_limits<float>::max();
        case 6:
            return std::numeric_limits<float>::denorm_min();
        default:
            return v;
        }
    };
    const float infinity = std::numeric_limits<float>::infinity();
    for (float e : {1e-30f, 1e-3f, 1.0f, 50.0f, 1e6f, 1e30f, 3e38f, infinity})
        for (int round = 0; round < 12; round++)
            expectLikePlainWalk(makeCloud(random, 150, coordinate), e, 3e38f);
}

TEST(CloseCombine, TellsZeroFromMinusZero)
{
    expectLikePlainWalk({{-0.0f, 0.0f, 0.0f}, {0.0f, -0.0f, 0.0f}, {0.0f, 0.0f, 3.0f}}, 0.5f, 100.0f);
    expectLikePlainWalk({{0.0f, 0.0f, 0.0f}, {-0.0f, -0.0f, 0.0f}, {0.0f, 0.0f, 3.0f}}, 1e-45f, 100.0f);
}

// The plain walk would compare 40,000,000,000 pairs. @return how many positions are left
static size_t weldMany(std::vector<Vertex3D> cloud, float e)
{
    auto group = std::make_unique<OGroup>();
    Mesh* mesh = makeMesh("cloud", cloud, {});
    group->addMesh(mesh);
    group->addMesh(boxAround(4e9f));
    const std::clock_t start = std::clock(); // the processor's time, which a busy machine leaves alone
    group->closeCombine(e);
    EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);

    std::set<std::array<float, 3>> positions;
    for (int i = 0; i < mesh->vertexCount; i++)
        positions.insert(
            {mesh->originalVertices[i].x, mesh->originalVertices[i].y, mesh->originalVertices[i].z});
    return positions.size();
}

TEST(CloseCombine, StaysQuickInDenseClusters)
{
    Random random(19);
    const int count = 200000;
    EXPECT_EQ(weldMany(std::vector<Vertex3D>(count, Vertex3D{1, 2, 3}), 0.5f), 1u);
    // All of them in reach of each other.
    EXPECT_EQ(weldMany(makeCloud(random, count, [](Random& r) { return uniform(r, 0.0f, 1.0f); }), 2.0f), 1u);
    // Clusters in neighbouring cells.
    auto clusters =
        makeCloud(random, count, [](Random& r) { return float(r() % 3) + uniform(r, 0.0f, 0.25f); });
    EXPECT_EQ(weldMany(clusters, 0.5f), 27u);
    // On one axis the distance is lost in rounding, so that nothing welds although all lie in one cell.
    std::vector<Vertex3D> flat = makeCloud(random, count, [](Random& r) { return uniform(r, 0.0f, 1.0f); });
    for (Vertex3D& v : flat)
        v.x = 1e9f;
    EXPECT_GT(weldMany(flat, 2.0f), 190000u);
}
