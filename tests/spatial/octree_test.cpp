#include "vornik/spatial/octree.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include "tests/spatial/randomgroup.h"
#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "tests/support/workingfolder.h"
#include "vornik/scene/ogroup.h"

// The private operations, for tests.
struct OctreeProbe
{
    static bool pointInside(octreeNode& node, Vertex3D* p) { return node.pointInside(p); }
    static bool polyInside(octreeNode& node, Vertex3D* t) { return node.polyInside(t); }
    static int setBounds(octreeNode& node, int axis) { return node.setBounds(axis, -1, 2); }
    static int checkBounds(octreeNode& node, Vertex3D* v) { return node.checkBounds(v); }
    static void combine(octreeNode& node, octreeNode* root) { node.combinePlanes(root, 0.001f); }
};

using Leaves = std::vector<octreeNode*>;

static void collectLeaves(octreeNode* node, Leaves* leaves)
{
    if (!node->hasChildren)
    {
        leaves->push_back(node);
        return;
    }
    for (octreeNode* child : node->child)
        collectLeaves(child, leaves);
}

static Leaves leavesOf(octreeNode* root)
{
    Leaves leaves;
    collectLeaves(root, &leaves);
    return leaves;
}

class Octree : public EngineTest
{
protected:
    // Small faces around points, and a root that holds them all.
    octreeNode* plant(const std::vector<Vertex3D>& places, int maxFaces = 5, int maxDepth = 5)
    {
        std::vector<Vertex3D> vertices;
        std::vector<Facelist> faces;
        for (const Vertex3D& p : places)
        {
            const uint16_t first = static_cast<uint16_t>(vertices.size());
            vertices.insert(vertices.end(), {p, p + Vertex3D{0.01f, 0, 0}, p + Vertex3D{0, 0.01f, 0}});
            faces.push_back({first, static_cast<uint16_t>(first + 1), static_cast<uint16_t>(first + 2)});
        }
        mesh.reset(makeMesh("M", vertices, faces));
        root.reset(new octreeNode);
        for (int i = 0; i < mesh->faceCount; ++i)
            EXPECT_EQ(root->insert(mesh.get(), i, true), 0);
        root->adjustSize();
        EXPECT_EQ(root->split(maxFaces, maxDepth, nullptr), 0);
        return root.get();
    }
    static std::vector<Vertex3D> grid(int side)
    {
        std::vector<Vertex3D> places;
        for (int i = 0; i < side * side * side; ++i)
            places.push_back({static_cast<float>(i % side), static_cast<float>(i / side % side),
                              static_cast<float>(i / side / side)});
        return places;
    }
    static Leaves leavesOf(octreeNode* node) { return ::leavesOf(node); }

    std::unique_ptr<Mesh> mesh;
    std::unique_ptr<octreeNode> root;
};

TEST_F(Octree, NewNode)
{
    const octreeNode node;
    EXPECT_EQ(node.polys.size, 0);
    EXPECT_EQ(node.radius, 0.0f);
    EXPECT_FALSE(node.hasChildren);
    EXPECT_EQ(node.depth, 0);
    EXPECT_EQ(node.planes, nullptr);
    EXPECT_EQ(node.min.y, FLT_MAX);
    EXPECT_EQ(node.max.z, FLT_MIN);
    for (const octreeNode* child : node.child)
        EXPECT_EQ(child, nullptr);
}

// Calls on null nodes are part of the interface, though the language knows none.
__attribute__((noipa, no_sanitize("undefined"))) static void askNullNode(octreeNode* none)
{
    Vertex3D point = {0, 0, 0};
    octreeNode* out[30];
    Mesh mesh;
    OTPolyData poly = {&mesh, 0};
    EXPECT_EQ(none->insert(&mesh, 0, true), 1);
    EXPECT_EQ(none->insert(&poly, true), 1);
    EXPECT_EQ(none->split(5, 5, nullptr), 1);
    EXPECT_EQ(none->traverse(&point), nullptr);
    EXPECT_EQ(none->traverseNearest(&point, 1, out, 30), 0);
    EXPECT_EQ(none->traverseSphere(&point, 1, out, 30), 0);
    EXPECT_EQ(none->traverseRay(&point, &point, out, 30), 0);
    EXPECT_EQ(none->traverseRayOLD(&point, &point, out, 30), 0);
}

TEST_F(Octree, NullNodesAnswer)
{
    askNullNode(nullptr);
}

TEST_F(Octree, NullArguments)
{
    octreeNode node;
    EXPECT_EQ(node.insert(nullptr, 0, true), 2);
    EXPECT_EQ(node.insert(static_cast<OTPolyData*>(nullptr), true), 2);
    EXPECT_EQ(OctreeProbe::checkBounds(node, nullptr), 2);
    EXPECT_EQ(OctreeProbe::setBounds(node, 3), 2);
    EXPECT_EQ(OctreeProbe::setBounds(node, -1), 2);
    EXPECT_EQ(OctreeProbe::setBounds(node, 1), 0);
    EXPECT_EQ(node.min.y, -1.0f);
    EXPECT_EQ(node.max.y, 2.0f);
    EXPECT_FALSE(OctreeProbe::pointInside(node, nullptr));
    EXPECT_FALSE(OctreeProbe::polyInside(node, nullptr));
    EXPECT_EQ(node.split(0, 5, nullptr), 2);
    EXPECT_EQ(node.split(5, 0, nullptr), 2);
    octreeNode* out[30];
    Vertex3D point = {0, 0, 0};
    EXPECT_EQ(node.traverse(nullptr), nullptr);
    EXPECT_EQ(node.traverseNearest(&point, 1, nullptr, 30), 0);
    EXPECT_EQ(node.traverseSphere(nullptr, 1, out, 30), 0);
    EXPECT_EQ(node.traverseRay(&point, nullptr, out, 30), 0);
    EXPECT_EQ(node.traverseRayOLD(&point, &point, out, 0), 0);
}

TEST_F(Octree, BoundsGrowFromTheOrigin)
{
    plant({{-5, -6, -7}, {-1, -2, -3}});
    octreeNode fresh;
    fresh.insert(mesh.get(), 0, true);
    EXPECT_EQ(fresh.min.x, -5.0f);
    EXPECT_EQ(fresh.max.x, FLT_MIN); // a little above nought
    EXPECT_FLOAT_EQ(fresh.radius, 3 * 2.5f * 2.5f);
    octreeNode still;
    still.insert(mesh.get(), 0, false);
    EXPECT_EQ(still.polys.size, 1);
    EXPECT_EQ(still.min.x, FLT_MAX);
}

TEST_F(Octree, FacesArePlacedByPositionAlone)
{
    plant({{1, 2, 3}});
    mesh->position = {10, 20, 30};
    mesh->rotation = {45, 45, 45, 0};
    octreeNode node;
    node.insert(mesh.get(), 0, true);
    EXPECT_EQ(node.min.x, 11.0f);
    EXPECT_EQ(node.max.z, 33.0f);
}

TEST_F(Octree, RoomForFacesDoubles)
{
    plant(grid(2));
    octreeNode node;
    std::vector<int> rooms;
    for (int i = 0; i < 6; ++i)
    {
        node.insert(mesh.get(), i, false);
        rooms.push_back(node.polys.room);
    }
    EXPECT_EQ(rooms, (std::vector<int>{1, 2, 4, 4, 8, 8}));
}

TEST_F(Octree, TextsAreAppendedToTheLog)
{
    // The drive, or a folder of its name where there are no drives.
    const WorkingFolder inside(folder.root());
    if (!std::filesystem::exists("c:/"))
        std::filesystem::create_directory("c:");
    std::filesystem::remove("c:/octree.log");
    octreeNode node;
    node.logWrite("one,");
    node.logWrite("two");
    node.logWrite(nullptr);
    std::ifstream log("c:/octree.log");
    std::string text;
    std::getline(log, text, '\0');
    EXPECT_EQ(text, "one,two");
    log.close();
    std::filesystem::remove("c:/octree.log");
}

TEST_F(Octree, FacesThatDoNotExistAreLeftOut)
{
    plant({{1, 2, 3}});
    octreeNode node;
    EXPECT_EQ(node.insert(mesh.get(), 1, true), 0);
    EXPECT_EQ(node.insert(mesh.get(), -1, true), 0);
    mesh->faces[0].b = 900;
    EXPECT_EQ(node.insert(mesh.get(), 0, true), 0);
    EXPECT_EQ(node.polys.size, 0);
}

TEST_F(Octree, SizeBecomesThatOfACube)
{
    octreeNode node;
    node.min = {0, 10, -1};
    node.max = {2, 18, 1};
    node.adjustSize();
    EXPECT_EQ(node.min.x, -3.0f);
    EXPECT_EQ(node.max.x, 5.0f);
    EXPECT_EQ(node.min.y, 10.0f);
    EXPECT_EQ(node.max.z, 4.0f);
    EXPECT_EQ(node.radius, 48.0f);
}

TEST_F(Octree, FiveFacesStayTogetherAndSixDivide)
{
    EXPECT_FALSE(plant({{0, 0, 0}, {9, 0, 0}, {0, 9, 0}, {9, 9, 0}, {0, 0, 9}})->hasChildren);
    octreeNode* node = plant({{0, 0, 0}, {9, 0, 0}, {0, 9, 0}, {9, 9, 0}, {0, 0, 9}, {9, 9, 9}});
    EXPECT_TRUE(node->hasChildren);
    EXPECT_EQ(node->polys.size, 0);
    EXPECT_EQ(node->maxDepth, 5);
    EXPECT_EQ(node->child[7]->depth, 1);
    EXPECT_EQ(node->child[7]->polys.size, 1);
    EXPECT_EQ(node->child[5]->min.x, node->child[0]->max.x);
    EXPECT_EQ(node->child[5]->min.y, node->min.y);
    EXPECT_EQ(node->child[5]->min.z, node->child[0]->max.z);
}

TEST_F(Octree, DepthEndsTheDivision)
{
    octreeNode* node = plant(std::vector<Vertex3D>(20, {1, 1, 1}));
    Vertex3D point = {1.001f, 1.001f, 1};
    const octreeNode* leaf = node->traverse(&point);
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(leaf->depth, 6);
    EXPECT_EQ(leaf->polys.size, 20);
    EXPECT_NEAR(leaf->max.x - leaf->min.x, (node->max.x - node->min.x) / 64, 1e-6);
    EXPECT_EQ(node->split(5, 5, nullptr), 0); // has nothing left to divide
}

TEST_F(Octree, StraddlingFacesAreInEveryLeafThatTheyTouch)
{
    std::mt19937 random(3);
    for (int round = 0; round < 10; ++round)
    {
        const std::unique_ptr<OGroup> group = makeRandomGroup(random, 1, 60);
        const Mesh* m = group->meshes[0];
        for (octreeNode* leaf : leavesOf(group->octree))
        {
            std::multiset<int> held;
            for (int i = 0; i < leaf->polys.size; ++i)
                held.insert(leaf->polys.items[i].face);
            for (int face = 0; face < m->faceCount; ++face)
            {
                Vertex3D corners[3];
                const uint16_t indices[3] = {m->faces[face].a, m->faces[face].b, m->faces[face].c};
                for (int i = 0; i < 3; ++i)
                    corners[i] = m->calculatedVertices[indices[i]] + m->position;
                EXPECT_TRUE(!held.count(face) || triangleIntersectsBox(corners, &leaf->min, &leaf->max));
                EXPECT_LE(held.count(face), 1u);
            }
        }
    }
}

static std::vector<int> reported;

TEST_F(Octree, ProgressCountsTheChildrenOfThisNode)
{
    plant(grid(4));
    octreeNode node;
    for (int i = 0; i < mesh->faceCount; ++i)
        node.insert(mesh.get(), i, true);
    node.adjustSize();
    reported.clear();
    node.split(2, 5, [](int i) { reported.push_back(i); });
    EXPECT_EQ(reported, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7}));
}

TEST_F(Octree, PointsOnBordersBelongToTheLowestChild)
{
    octreeNode* node = plant(grid(4));
    Vertex3D middle = {(node->min.x + node->max.x) * 0.5f, node->min.y, node->min.z};
    octreeNode* leaf = node->traverse(&middle);
    ASSERT_NE(leaf, nullptr);
    EXPECT_EQ(leaf->max.x, middle.x);
    Vertex3D outside = {node->max.x + 1, 0, 0}, none = {std::nanf(""), 0, 0};
    EXPECT_EQ(node->traverse(&outside), nullptr);
    EXPECT_EQ(node->traverse(&none), nullptr);
}

TEST_F(Octree, NearestLeavesAreThoseAtTwentySevenPoints)
{
    octreeNode* node = plant(grid(6), 2);
    std::mt19937 random(8);
    for (int round = 0; round < 200; ++round)
    {
        Vertex3D point = anyPoint(random, 4) + Vertex3D{3, 3, 3};
        const float distance = std::fabs(anyNumber(random, 3));
        Leaves expected;
        for (int x = -1; x <= 1; ++x)
            for (int y = -1; y <= 1; ++y)
                for (int z = -1; z <= 1; ++z)
                {
                    const auto at = [&](float c, int step) {
                        return step < 0 ? c - distance : step > 0 ? c + distance : c;
                    };
                    Vertex3D sample = {at(point.x, x), at(point.y, y), at(point.z, z)};
                    octreeNode* leaf = node->traverse(&sample);
                    if (leaf && (expected.empty() || expected.back() != leaf))
                        expected.push_back(leaf);
                }
        if (!node->traverse(&point))
            expected.clear();
        octreeNode* out[27];
        const int count = node->traverseNearest(&point, distance, out, 27);
        EXPECT_EQ(Leaves(out, out + count), expected);
    }
    octreeNode* out[27];
    Vertex3D inside = {1, 1, 1};
    EXPECT_EQ(node->traverseNearest(&inside, 1, out, 26), 0);
}

TEST_F(Octree, SpheresFindLeavesByTheSumOfSquares)
{
    octreeNode* node = plant(grid(6), 2);
    std::mt19937 random(9);
    const Leaves all = leavesOf(node);
    for (int round = 0; round < 100; ++round)
    {
        Vertex3D centre = anyPoint(random, 2.4f) + Vertex3D{2.5f, 2.5f, 2.5f};
        const float distance = 0.01f + std::fabs(anyNumber(random, 3));
        const auto passes = [&](const octreeNode& n)
        {
            const Vertex3D middle = {(n.min.x + n.max.x) * 0.5f, (n.min.y + n.max.y) * 0.5f,
                                     (n.min.z + n.max.z) * 0.5f};
            return distance * distance + n.radius > vrkFakeDistance(&centre, &middle);
        };
        Leaves out(all.size() + 1);
        const int count = node->traverseSphere(&centre, distance, out.data(), static_cast<int>(out.size()));
        out.resize(static_cast<size_t>(count));
        Leaves expected; // a node that is left out takes all below with it
        const std::function<void(octreeNode*)> visit = [&](octreeNode* n)
        {
            if (!passes(*n))
                return;
            if (!n->hasChildren)
                expected.push_back(n);
            for (int i = 0; n->hasChildren && i < 8; ++i)
                visit(n->child[i]);
        };
        visit(node);
        EXPECT_EQ(out, expected);
        octreeNode* one = nullptr;
        EXPECT_EQ(node->traverseSphere(&centre, distance, &one, 1), count > 0 ? 1 : 0);
        EXPECT_EQ(one, count > 0 ? out[0] : nullptr);
    }
    octreeNode* out[4];
    Vertex3D centre = {1, 1, 1}, outside = {100, 0, 0};
    EXPECT_EQ(node->traverseSphere(&centre, 0, out, 4), 0);
    EXPECT_EQ(node->traverseSphere(&outside, 500, out, 4), 0);
    octreeNode* undivided = plant({{0, 0, 0}, {9, 9, 9}});
    Vertex3D corner = {9, 9, 9};
    EXPECT_EQ(undivided->traverseSphere(&corner, 0.0001f, out, 4), 1);
    EXPECT_EQ(out[0], undivided);
}

TEST_F(Octree, RaysFindTheLeavesThatTheyPass)
{
    octreeNode* node = plant(grid(6), 2);
    std::mt19937 random(10);
    const Leaves all = leavesOf(node);
    for (int round = 0; round < 200; ++round)
    {
        Vertex3D start = anyPoint(random, 2.4f) + Vertex3D{2.5f, 2.5f, 2.5f}, end = anyPoint(random, 8);
        if (round % 10 == 0)
            end = start;
        Leaves out(all.size());
        out.resize(
            static_cast<size_t>(node->traverseRay(&start, &end, out.data(), static_cast<int>(out.size()))));
        Leaves expected;
        for (octreeNode* leaf : all) // in the order of child numbers
            if (segmentIntersectsBox(&start, &end, &leaf->min, &leaf->max))
                expected.push_back(leaf);
        EXPECT_EQ(out, expected);
        EXPECT_FALSE(out.empty());
        octreeNode* one = nullptr;
        EXPECT_EQ(node->traverseRay(&start, &end, &one, 1), 1);
    }
    octreeNode* out[4];
    Vertex3D outside = {100, 0, 0}, inside = {1, 1, 1};
    EXPECT_EQ(node->traverseRay(&outside, &inside, out, 4), 0);
}

TEST_F(Octree, OldWalkGoesAlongTheRay)
{
    octreeNode* node = plant(grid(6), 2);
    std::mt19937 random(11);
    for (int round = 0; round < 100; ++round)
    {
        Vertex3D start = anyPoint(random, 2.4f) + Vertex3D{2.5f, 2.5f, 2.5f};
        Vertex3D end = anyPoint(random, 2.4f) + Vertex3D{2.5f, 2.5f, 2.5f};
        octreeNode* out[600];
        const int count = node->traverseRayOLD(&start, &end, out, 600);
        ASSERT_GT(count, 0);
        EXPECT_EQ(out[0], node->traverse(&start));
        float before = -1e9f;
        const Vertex3D d = end - start;
        for (int i = 0; i < count; ++i)
        {
            EXPECT_TRUE(segmentIntersectsBox(&start, &end, &out[i]->min, &out[i]->max));
            const float far = (out[i]->max - start) * d, near = (out[i]->min - start) * d;
            EXPECT_GE(std::fmax(far, near) + 1.0f * std::sqrt(d * d), before);
            before = std::fmin(far, near);
        }
        EXPECT_EQ(node->traverseRayOLD(&start, &end, out, 1), 1);
        EXPECT_EQ(node->traverseRayOLD(&start, &start, out, 600), 0);
    }
    Vertex3D outside = {100, 0, 0}, inside = {1, 1, 1};
    octreeNode* out[4];
    EXPECT_EQ(node->traverseRayOLD(&outside, &inside, out, 4), 0);
    EXPECT_EQ(node->traverseRayOLD(&inside, &outside, out, 4), 0);
}

TEST_F(Octree, EmptyTreeFindsNothing)
{
    octreeNode node;
    node.adjustSize();
    EXPECT_GT(node.min.x, node.max.x);
    octreeNode* out[30];
    Vertex3D point = {0, 0, 0};
    EXPECT_EQ(node.traverse(&point), nullptr);
    EXPECT_EQ(node.traverseSphere(&point, 1, out, 30), 0);
    EXPECT_EQ(node.traverseRay(&point, &point, out, 30), 0);
    EXPECT_EQ(node.traverseNearest(&point, 1, out, 30), 0);
    node.makePlanes(0.001f);
    EXPECT_EQ(node.planes, nullptr);
    EXPECT_EQ(node.destroyPlanes(), 0);
}

TEST(CubeGeometry, SegmentsAgainstTheCube)
{
    const auto hits = [](Vertex3D p, Vertex3D q) { return segmentIntersectsCube(&p, &q); };
    EXPECT_TRUE(hits({0, 0, 0}, {0.1f, 0, 0})); // wholly inside
    EXPECT_TRUE(hits({0, 0, 0}, {0, 0, 0}));
    EXPECT_TRUE(hits({-2, 0, 0}, {2, 0, 0}));
    EXPECT_TRUE(hits({-2, 0.5f, 0.5f}, {2, 0.5f, 0.5f})); // along an edge
    EXPECT_FALSE(hits({-2, 0.51f, 0}, {2, 0.51f, 0}));
    EXPECT_FALSE(hits({-2, 0, 0}, {-0.6f, 0, 0}));
    EXPECT_FALSE(hits({0.6f, 0, 0}, {2, 0, 0}));
    EXPECT_TRUE(hits({-1, 0, 0}, {0, 1, 0})); // touches an edge
    EXPECT_FALSE(hits({-1.1f, 0, 0}, {0, 1.1f, 0}));
}

// A point of the triangle in the cube, found by a fine net: a hit that can't be denied.
static bool hasNetPointInCube(const Vertex3D* t, float half)
{
    const int n = 40;
    for (int i = 0; i <= n; ++i)
        for (int j = 0; i + j <= n; ++j)
        {
            const float u = float(i) / n, v = float(j) / n, w = 1 - u - v;
            const Vertex3D p = {t[0].x * w + t[1].x * u + t[2].x * v, t[0].y * w + t[1].y * u + t[2].y * v,
                                t[0].z * w + t[1].z * u + t[2].z * v};
            if (std::fabs(p.x) <= half && std::fabs(p.y) <= half && std::fabs(p.z) <= half)
                return true;
        }
    return false;
}

TEST(CubeGeometry, TrianglesAgainstTheCube)
{
    std::mt19937 random(5);
    int hits = 0, misses = 0;
    for (int round = 0; round < 4000; ++round)
    {
        const Vertex3D t[3] = {anyPoint(random, 2), anyPoint(random, 2), anyPoint(random, 2)};
        const Vertex3D normal = calcPlaneNormal(&t[0], &t[1], &t[2]);
        const bool result = polygonIntersectsCube(t, &normal);
        ++(result ? hits : misses);
        EXPECT_TRUE(result || !hasNetPointInCube(t, 0.499f));
        EXPECT_TRUE(!result || hasNetPointInCube(t, 0.65f));
    }
    EXPECT_GT(hits, 500);
    EXPECT_GT(misses, 500);
    const Vertex3D point[3] = {{2, 2, 2}, {2, 2, 2}, {2, 2, 2}}, none = {0, 0, 0};
    EXPECT_FALSE(polygonIntersectsCube(point, &none));
}

// Without any shortcut.
static bool plainTriangleIntersectsBox(const Vertex3D* t, const Vertex3D& min, const Vertex3D& max)
{
    const float w = max.x - min.x;
    if (w == 0)
        return false;
    const float s = 1 / (w * 1.01f);
    const Vertex3D c = {(min.x + max.x) * 0.5f, (min.y + max.y) * 0.5f, (min.z + max.z) * 0.5f};
    Vertex3D moved[3];
    for (int i = 0; i < 3; ++i)
        moved[i] = {(t[i].x - c.x) * s, (t[i].y - c.y) * s, (t[i].z - c.z) * s};
    const Vertex3D normal = calcPlaneNormal(&t[0], &t[1], &t[2]);
    return polygonIntersectsCube(moved, &normal);
}

TEST(CubeGeometry, BoxesAnswerAsWithoutShortcuts)
{
    std::mt19937 random(15);
    int hits = 0;
    for (int round = 0; round < 200000; ++round)
    {
        const float size = round % 3 == 0 ? 0.001f : round % 3 == 1 ? 1.0f : 50.0f;
        const Vertex3D low = anyPoint(random, 5), about = low + anyPoint(random, 2) + anyPoint(random, size);
        const float width = 0.001f + std::fabs(anyNumber(random, 3));
        const Vertex3D high = {low.x + width, low.y + width, low.z + width};
        Vertex3D t[3] = {about + anyPoint(random, size), about + anyPoint(random, size),
                         about + anyPoint(random, size)};
        if (round % 17 == 0)
            t[1] = t[0];
        if (round % 5 == 0)
            t[0].z = t[1].z = t[2].z = high.z; // on a side
        const bool result = triangleIntersectsBox(t, &low, &high);
        ASSERT_EQ(result, plainTriangleIntersectsBox(t, low, high)) << round;
        hits += result;
    }
    EXPECT_GT(hits, 10000);
}

// Dividing as it is defined, one child after the other.
static void expectPlainDivision(octreeNode* node, const std::vector<OTPolyData>& held)
{
    if (held.size() <= 5 || node->depth > 5)
    {
        EXPECT_FALSE(node->hasChildren);
        ASSERT_EQ(node->polys.size, static_cast<int>(held.size()));
        for (size_t i = 0; i < held.size(); ++i)
        {
            EXPECT_EQ(node->polys.items[i].mesh, held[i].mesh);
            EXPECT_EQ(node->polys.items[i].face, held[i].face);
        }
        return;
    }
    ASSERT_TRUE(node->hasChildren);
    EXPECT_EQ(node->polys.size, 0);
    EXPECT_EQ(node->maxDepth, 5);
    for (int i = 0; i < 8; ++i)
    {
        std::vector<OTPolyData> below;
        for (const OTPolyData& poly : held)
        {
            const Facelist& f = poly.mesh->faces[poly.face];
            const Vertex3D* v = poly.mesh->calculatedVertices;
            const Vertex3D corners[3] = {v[f.a] + poly.mesh->position, v[f.b] + poly.mesh->position,
                                         v[f.c] + poly.mesh->position};
            if (plainTriangleIntersectsBox(corners, node->child[i]->min, node->child[i]->max))
                below.push_back(poly);
        }
        expectPlainDivision(node->child[i], below);
    }
}

static void expectPlainDivision(const std::vector<Vertex3D>& corners, float away)
{
    std::vector<Facelist> faces;
    for (uint16_t i = 0; i < corners.size(); i = static_cast<uint16_t>(i + 3))
        faces.push_back({i, static_cast<uint16_t>(i + 1), static_cast<uint16_t>(i + 2)});
    const std::unique_ptr<Mesh> mesh(makeMesh("M", corners, faces, {away, 0, -away}));
    octreeNode root;
    std::vector<OTPolyData> all;
    for (int i = 0; i < mesh->faceCount; ++i)
    {
        root.insert(mesh.get(), i, true);
        all.push_back({mesh.get(), i});
    }
    root.adjustSize();
    root.split(5, 5, nullptr);
    expectPlainDivision(&root, all);
}

// Large and small faces, slivers, faces without area, and floors and walls on the borders of cubes and near
// them.
TEST_F(Octree, DividesAsFaceByFace)
{
    std::mt19937 random(16);
    for (int round = 0; round < 60; ++round)
    {
        std::vector<Vertex3D> corners;
        for (int face = 0; face < 150; ++face)
        {
            const float sizes[] = {0.001f, 0.1f, 1.0f, 8.0f};
            const float size = sizes[random() % 4];
            const Vertex3D middle = anyPoint(random, 8);
            Vertex3D t[3] = {middle + anyPoint(random, size), middle + anyPoint(random, size),
                             middle + anyPoint(random, size)};
            if (face % 5 == 0)
                t[2] = t[0] + (t[1] - t[0]) + anyPoint(random, size * 1e-5f);
            if (face % 31 == 0)
                t[1] = t[0];
            if (face % 3 == 0) // one axis is that of a wall
                for (Vertex3D& corner : t)
                    (face % 2 ? corner.x : corner.z) = static_cast<float>(face % 9 - 4) +
                                                       anyNumber(random, 0.02f) * (face % 2 ? 0.0f : 1.0f);
            corners.insert(corners.end(), t, t + 3);
        }
        // The cube of the tree is that from -16 to 16, away from the origin.
        corners.insert(corners.end(), {{-16, -16, -16}, {-16, -16, -16}, {16, 16, 16}});
        expectPlainDivision(corners, round % 3 == 0 ? 0.0f : round % 3 == 1 ? 16.0f : 5000.0f);
    }
}

TEST(CubeGeometry, WindingsAroundAPoint)
{
    const Vertex3D t[3] = {{0, 0, 0}, {4, 0, 0}, {0, 4, 0}};
    Vertex3D inside = {1, 1, 9}, outside = {3, 3, 0}, up = {0, 0, 1}, down = {0, 0, -1};
    EXPECT_NE(polygonContainsPoint(t, &up, &inside), 0); // along the normal
    EXPECT_NE(polygonContainsPoint(t, &down, &inside), 0);
    EXPECT_EQ(polygonContainsPoint(t, &up, &outside), 0);
    // Of equal components the later axis is dropped: x and y here, z is left out.
    const Vertex3D slanted[3] = {{0, 0, 0}, {4, 0, -4}, {0, 4, 0}};
    Vertex3D normal = {1, 0, 1};
    EXPECT_NE(polygonContainsPoint(slanted, &normal, &inside), 0);
}

TEST(CubeGeometry, BoxesAreTakenOnePerCentWider)
{
    const Vertex3D low = {0, 0, 0}, high = {10, 10, 10};
    Vertex3D a = {10.04f, 5, 5}, b = {20, 5, 5}, c = {10.06f, 5, 5};
    EXPECT_TRUE(segmentIntersectsBox(&a, &b, &low, &high));
    EXPECT_FALSE(segmentIntersectsBox(&c, &b, &low, &high));
    const Vertex3D touching[3] = {{10.04f, 5, 5}, {12, 5, 5}, {12, 6, 5}};
    const Vertex3D apart[3] = {{10.06f, 5, 5}, {12, 5, 5}, {12, 6, 5}};
    EXPECT_TRUE(triangleIntersectsBox(touching, &low, &high));
    EXPECT_FALSE(triangleIntersectsBox(apart, &low, &high));
    EXPECT_FALSE(segmentIntersectsBox(&a, &b, &low, &low)); // no width
    EXPECT_FALSE(triangleIntersectsBox(touching, &low, &low));
}

class OctreePlanes : public Octree
{
protected:
    // A leaf of these faces, each of three corners, with materials.
    octreeNode* leafOf(const std::vector<Vertex3D>& corners, const std::vector<int>& materials)
    {
        std::vector<Facelist> faces;
        for (uint16_t i = 0; i < corners.size(); i = static_cast<uint16_t>(i + 3))
            faces.push_back({i, static_cast<uint16_t>(i + 1), static_cast<uint16_t>(i + 2)});
        mesh.reset(makeMesh("M", corners, faces));
        mesh->pivot = {0, 0, 0};
        mesh->rotation = {0, 0, 0, 0};
        for (size_t i = 0; i < materials.size(); ++i)
            mesh->faceMaterials[i].materialIndex = materials[i];
        root.reset(new octreeNode);
        for (int i = 0; i < mesh->faceCount; ++i)
            root->insert(mesh.get(), i, true);
        root->adjustSize();
        root->makePlanes(0.001f);
        return root.get();
    }
    static std::vector<int> sizes(const octreeNode* node)
    {
        std::vector<int> all;
        for (const Plane* plane = node->planes; plane; plane = plane->next)
            all.push_back(plane->faceCount);
        return all;
    }
};

static const Vertex3D p0 = {0, 0, 0}, p1 = {1, 0, 0}, p2 = {0, 1, 0}, q0 = {5, 5, 0}, q1 = {6, 5, 0},
                      q2 = {5, 6, 0};

TEST_F(OctreePlanes, OneFaceIsOnePlane)
{
    const octreeNode* leaf = leafOf({p1, p2, p0}, {3});
    ASSERT_EQ(sizes(leaf), std::vector<int>{1});
    EXPECT_EQ(leaf->planes->faces[0].face, 0);
    EXPECT_EQ(leaf->planes->faces[0].mesh, mesh.get());
    EXPECT_EQ(leaf->planes->point.x, 1.0f);
    EXPECT_EQ(leaf->planes->normal.z, 1.0f);
    EXPECT_EQ(leaf->planes->flag, 0);
    EXPECT_EQ(leaf->planes->id, 0);
}

TEST_F(OctreePlanes, DestroyedPlanesAreGone)
{
    octreeNode* leaf = leafOf({p1, p2, p0}, {3});
    EXPECT_EQ(leaf->destroyPlanes(), 0);
    EXPECT_EQ(leaf->planes, nullptr);
    EXPECT_EQ(leaf->destroyPlanes(), 0);
}

TEST_F(OctreePlanes, FacesThatLookTheSameWayStayApart)
{
    EXPECT_EQ(sizes(leafOf({p0, p1, p2, q0, q1, q2}, {0, 0})), (std::vector<int>{1, 1}));
}

TEST_F(OctreePlanes, FacesBackToBackJoin)
{
    const octreeNode* leaf = leafOf({p0, p2, p1, q0, q1, q2}, {0, 0});
    EXPECT_EQ(sizes(leaf), std::vector<int>{2});
    EXPECT_EQ(leaf->planes->normal.z, -1.0f); // of the first
    EXPECT_EQ(leaf->planes->faces[1].face, 1);
    EXPECT_EQ(sizes(leafOf({p0, p2, p1, q0, q1, q2}, {0, 1})), (std::vector<int>{1, 1})); // other materials
    EXPECT_EQ(sizes(leafOf({p0, p2, p1, q0 + Vertex3D{0, 0, 0.002f}, q1, q2}, {0, 0})),
              (std::vector<int>{1, 1})); // not in the plane
}

TEST_F(OctreePlanes, FacesWithoutNormalJoinAnyPlaneTheyLieIn)
{
    EXPECT_EQ(sizes(leafOf({p0, p1, p2, q0, q0, q1}, {0, 0})), std::vector<int>{2});
    EXPECT_EQ(sizes(leafOf({p0, p1, p2, q0, q0, q1 + Vertex3D{0, 0, 1}}, {0, 0})), (std::vector<int>{1, 1}));
}

// The grouping face by face, as it is defined.
static std::vector<std::vector<int>> plainGroups(const octreeNode* leaf)
{
    const auto corner = [&](int i, int k)
    {
        const OTPolyData& poly = leaf->polys.items[i];
        const Facelist& f = poly.mesh->faces[poly.face];
        return poly.mesh->calculatedVertex(k == 0 ? f.a : k == 1 ? f.b : f.c);
    };
    const auto normal = [&](int i)
    {
        const Vertex3D a = corner(i, 0), b = corner(i, 1), c = corner(i, 2);
        return calcNormal(&a, &b, &c);
    };
    const auto material = [&](int i)
    { return leaf->polys.items[i].mesh->faceMaterials[leaf->polys.items[i].face].materialIndex; };
    std::vector<std::vector<int>> groups;
    std::vector<bool> taken(static_cast<size_t>(leaf->polys.size));
    for (int i = 0; i < leaf->polys.size; ++i)
    {
        if (taken[static_cast<size_t>(i)])
            continue;
        taken[static_cast<size_t>(i)] = true;
        std::vector<int> group = {i};
        for (int j = 0; j < leaf->polys.size; ++j)
        {
            bool joins = !taken[static_cast<size_t>(j)] && material(i) == material(j) &&
                         normal(i) * normal(j) < 0.0001f;
            for (int k = 0; k < 3; ++k)
                joins = joins && std::fabs((corner(j, k) - corner(i, 0)) * normal(i)) < 0.001f;
            if (!joins)
                continue;
            taken[static_cast<size_t>(j)] = true;
            group.push_back(j);
        }
        groups.push_back(group);
    }
    return groups;
}

static void expectPlainGroups(const octreeNode* leaf)
{
    const Plane* plane = leaf->planes;
    for (const std::vector<int>& members : plainGroups(leaf))
    {
        ASSERT_NE(plane, nullptr);
        ASSERT_EQ(plane->faceCount, static_cast<int>(members.size()));
        for (size_t i = 0; i < members.size(); ++i)
        {
            EXPECT_EQ(plane->faces[i].face, leaf->polys.items[members[i]].face);
            EXPECT_EQ(plane->faces[i].mesh, leaf->polys.items[members[i]].mesh);
        }
        plane = plane->next;
    }
    EXPECT_EQ(plane, nullptr);
}

static int nextId(const octreeNode* node, int id)
{
    for (const Plane* plane = node->planes; plane; plane = plane->next)
        EXPECT_EQ(plane->id, id++);
    for (const octreeNode* child : node->child)
        if (child)
            id = nextId(child, id);
    return id;
}

TEST_F(OctreePlanes, RandomScenesHaveThePlainGroupsAndNumbersInOrder)
{
    std::mt19937 random(6);
    for (int round = 0; round < 12; ++round)
    {
        const std::unique_ptr<OGroup> group = makeRandomGroup(random, 3, 40);
        for (const octreeNode* leaf : leavesOf(group->octree))
        {
            expectPlainGroups(leaf);
        }
        EXPECT_GT(nextId(group->octree, 0), 10);
    }
}

// Corners on a coarse grid, which share planes, corners anywhere, near and far, faces without an extent, and
// corners that are no numbers or too far for products.
TEST_F(OctreePlanes, ALeafOfManyFacesHasThePlainGroups)
{
    std::mt19937 random(11);
    for (const float range : {3.0f, 0.002f, 1e6f, 1e19f})
    {
        std::vector<Vertex3D> corners;
        std::vector<int> materials;
        for (int face = 0; face < 700; ++face)
        {
            const int kind = static_cast<int>(random() % 8);
            for (int corner = 0; corner < 3; ++corner)
            {
                const Vertex3D any = anyPoint(random, range);
                const Vertex3D grid = {std::round(any.x / range) * range, std::round(any.y / range) * range,
                                       std::round(any.z / range) * range};
                corners.push_back(kind < 4 ? grid : any);
            }
            if (kind == 6)
                corners.back() = corners[corners.size() - 2];
            if (face % 97 == 5)
                corners.back().y = face % 2 ? NAN : INFINITY;
            if (face % 89 == 7)
                corners.back().z = 3e38f;
            materials.push_back(static_cast<int>(random() % 3));
        }
        expectPlainGroups(leafOf(corners, materials));
    }
}

TEST_F(OctreePlanes, CombiningUnitesNumbersAcrossNodes)
{
    std::unique_ptr<octreeNode> other;
    leafOf({p0, p2, p1}, {0});
    root->planes->id = 7;
    std::unique_ptr<Mesh> first = std::move(mesh);
    other = std::move(root);
    leafOf({q0, q1, q2}, {0});
    EXPECT_EQ(root->planes->id, 0);
    OctreeProbe::combine(*root, other.get()); // looks away from it, in the same plane
    EXPECT_EQ(root->planes->id, 7);
    root->planes->id = 0;
    OctreeProbe::combine(*root, root.get()); // itself: the same way
    EXPECT_EQ(root->planes->id, 0);
}
