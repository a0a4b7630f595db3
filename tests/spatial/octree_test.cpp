#include "vornik/spatial/octree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <vector>

#include "tests/spatial/octreeprobe.h"
#include "tests/spatial/plaincube.h"
#include "tests/spatial/randomgroup.h"
#include "tests/support/allocations.h"
#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "tests/support/workingfolder.h"
#include "vornik/scene/ogroup.h"

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
    EXPECT_EQ(OctreeProbe::setBounds(*none, 0), 1);
    EXPECT_EQ(OctreeProbe::checkBounds(*none, &point), 1);
    EXPECT_FALSE(OctreeProbe::pointInside(*none, &point));
    const Vertex3D triangle[3] = {point, point, point};
    EXPECT_FALSE(OctreeProbe::polyInside(*none, const_cast<Vertex3D*>(triangle)));
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
    EXPECT_EQ(node.traverse(nullptr), nullptr);
}

TEST_F(Octree, WalksWithoutAPlaceToBeginOrToStoreFindNothing)
{
    octreeNode* node = plant(grid(4));
    octreeNode* out[30] = {};
    Vertex3D a = {1, 1, 1}, b = {2, 2, 2};
    EXPECT_EQ(node->traverseNearest(nullptr, 1, out, 30), 0);
    EXPECT_EQ(node->traverseNearest(&a, 1, nullptr, 30), 0);
    EXPECT_EQ(node->traverseSphere(nullptr, 1, out, 30), 0);
    EXPECT_EQ(node->traverseSphere(&a, 1, nullptr, 30), 0);
    EXPECT_EQ(node->traverseSphere(&a, 1, out, 0), 0);
    for (const auto walk : {&octreeNode::traverseRay, &octreeNode::traverseRayOLD})
    {
        EXPECT_EQ((node->*walk)(nullptr, &b, out, 30), 0);
        EXPECT_EQ((node->*walk)(&a, nullptr, out, 30), 0);
        EXPECT_EQ((node->*walk)(&a, &b, nullptr, 30), 0);
        EXPECT_EQ((node->*walk)(&a, &b, out, 0), 0);
        EXPECT_EQ((node->*walk)(&a, &b, out, -1), 0);
    }
    octreeNode leaf; // stores itself, if there is room
    leaf.min = {0, 0, 0};
    leaf.max = {4, 4, 4};
    EXPECT_EQ(leaf.traverseSphere(&a, 1, out, 0), 0);
    EXPECT_EQ(leaf.traverseSphere(&a, 1, nullptr, 4), 0);
    EXPECT_EQ(out[0], nullptr);
}

TEST_F(Octree, NodesHoldWhatLiesOnTheirSides)
{
    octreeNode node;
    node.min = {1, 2, 3};
    node.max = {5, 7, 9};
    for (Vertex3D p : {node.min, node.max, Vertex3D{1, 7, 9}, Vertex3D{5, 2, 3}})
        EXPECT_TRUE(OctreeProbe::pointInside(node, &p));
    for (int axis = 0; axis < 3; ++axis)
        for (const float beyond : {-10.0f, 10.0f})
        {
            Vertex3D p = {3, 4, 5};
            (&p.x)[axis] += beyond;
            EXPECT_FALSE(OctreeProbe::pointInside(node, &p));
            (&p.x)[axis] = std::nanf("");
            EXPECT_FALSE(OctreeProbe::pointInside(node, &p));
        }
}

TEST_F(Octree, BoundsGrowFromTheOrigin)
{
    plant({{-5, -6, -7}, {-1, -2, -3}});
    octreeNode fresh;
    fresh.insert(mesh.get(), 0, true);
    EXPECT_EQ(fresh.min.x, -5.0f);
    EXPECT_EQ(fresh.max.x, FLT_MIN); // a little above nought
    EXPECT_FLOAT_EQ(fresh.radius, 3 * 2.5f * 2.5f);
    EXPECT_EQ(fresh.min.y, -6.0f);
    EXPECT_EQ(fresh.min.z, -7.0f);
    Vertex3D higher = {1, 2, 3}, within = {0, 0, 0};
    EXPECT_EQ(OctreeProbe::checkBounds(fresh, &higher), 0);
    EXPECT_EQ(OctreeProbe::checkBounds(fresh, &within), 0);
    EXPECT_EQ(fresh.min.z, -7.0f);
    EXPECT_EQ(fresh.max.x, 1.0f);
    EXPECT_EQ(fresh.max.y, 2.0f);
    EXPECT_EQ(fresh.max.z, 3.0f);
    EXPECT_EQ(fresh.radius, 27.0f);
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
    for (int axis = 0; axis < 3; ++axis)
    {
        octreeNode flat;
        flat.min = {2, 2, 2};
        flat.max = {3, 3, 3};
        (&flat.max.x)[axis] = 12;
        flat.adjustSize();
        for (int other = 0; other < 3; ++other)
        {
            EXPECT_EQ((&flat.min.x)[other], other == axis ? 2.0f : -2.5f);
            EXPECT_EQ((&flat.max.x)[other], other == axis ? 12.0f : 7.5f);
        }
        EXPECT_EQ(flat.radius, 75.0f);
    }
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
    const float half = (node->child[7]->max.x - node->child[7]->min.x) * 0.5f;
    EXPECT_FLOAT_EQ(node->child[7]->radius, 3 * half * half);
    EXPECT_GE(node->polys.room, 6); // the storage stays
    EXPECT_NE(node->polys.items, nullptr);
    for (const octreeNode* child : node->child) // also where nothing lies
        EXPECT_NE(child, nullptr);
    EXPECT_EQ(node->child[5]->min.x, node->child[0]->max.x);
    EXPECT_EQ(node->child[5]->min.y, node->min.y);
    EXPECT_EQ(node->child[5]->min.z, node->child[0]->max.z);
}

TEST_F(Octree, DividingAgainReplacesTheChildren)
{
    octreeNode* node = plant(grid(3));
    ASSERT_TRUE(node->hasChildren);
    EXPECT_EQ(node->split(5, 5, nullptr), 0); // holds no faces itself
    Vertex3D place = {2, 2, 2};
    EXPECT_EQ(node->traverse(&place)->polys.size, 1);
    const long long held = heldBytes();
    for (int round = 0; round < 3; ++round)
    {
        for (int i = 0; i < mesh->faceCount; ++i)
            node->insert(mesh.get(), i, true);
        EXPECT_EQ(node->split(5, 5, nullptr), 0);
        EXPECT_EQ(node->polys.size, 0);
        EXPECT_EQ(node->traverse(&place)->polys.size, 1);
        EXPECT_EQ(heldBytes(), held);
    }
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
    node.split(2, 5, [](int i) { reported.push_back(i); });
    EXPECT_EQ(reported.size(), 8u); // it is divided already
}

static const octreeNode* watched;
static std::vector<int> heldByChildren; // when the first of them is done

TEST_F(Octree, ProgressSeesTheFacesOfTheChildrenThatAreStillToDivide)
{
    plant(grid(4));
    octreeNode node;
    for (int i = 0; i < mesh->faceCount; ++i)
        node.insert(mesh.get(), i, true);
    node.adjustSize();
    watched = &node;
    heldByChildren.clear();
    node.split(2, 5,
               [](int i)
               {
                   for (int child = 0; i == 0 && child < 8; ++child)
                       heldByChildren.push_back(watched->child[child]->polys.size);
               });
    ASSERT_EQ(heldByChildren.size(), 8u);
    for (int child = 1; child < 8; ++child)
    {
        int touching = 0;
        for (int face = 0; face < mesh->faceCount; ++face)
        {
            Vertex3D corners[3];
            const uint16_t indices[3] = {mesh->faces[face].a, mesh->faces[face].b, mesh->faces[face].c};
            for (int i = 0; i < 3; ++i)
                corners[i] = mesh->calculatedVertices[indices[i]] + mesh->position;
            touching += triangleIntersectsBox(corners, &node.child[child]->min, &node.child[child]->max);
        }
        EXPECT_EQ(heldByChildren[static_cast<size_t>(child)], touching) << child;
    }
}

// Down to the first child that holds the point, level by level.
static octreeNode* plainLeaf(octreeNode* node, const Vertex3D& p)
{
    const auto holds = [&p](const octreeNode& n)
    {
        return p.x >= n.min.x && p.x <= n.max.x && p.y >= n.min.y && p.y <= n.max.y && p.z >= n.min.z &&
               p.z <= n.max.z;
    };
    if (!holds(*node))
        return nullptr;
    while (node && node->hasChildren)
    {
        octreeNode** first =
            std::find_if(node->child, node->child + 8, [&](octreeNode* n) { return holds(*n); });
        node = first == node->child + 8 ? nullptr : *first;
    }
    return node;
}

TEST_F(Octree, PointsAreFoundInTheFirstChildrenThatHoldThem)
{
    octreeNode* node = plant(grid(6), 2);
    std::mt19937 random(18);
    const Leaves all = leavesOf(node);
    for (int round = 0; round < 3000; ++round)
    {
        // Coordinates of corners of leaves, which are borders of others.
        Vertex3D p;
        for (int axis = 0; axis < 3; ++axis)
        {
            const octreeNode& leaf = *all[random() % all.size()];
            (&p.x)[axis] = (&(random() % 2 ? leaf.min : leaf.max).x)[axis];
            if (random() % 4 == 0)
                (&p.x)[axis] = anyNumber(random, 8);
        }
        ASSERT_EQ(node->traverse(&p), plainLeaf(node, p)) << round;
    }
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
    // What is just out of reach: centres are 4 apart, and 2 * 2 + 12 is not more than 4 * 4.
    octreeNode eight;
    eight.min = {0, 0, 0};
    eight.max = {8, 8, 8};
    eight.adjustSize();
    for (int i = 0; i < 6; ++i)
        eight.insert(mesh.get(), i, false);
    ASSERT_EQ(eight.split(5, 1, nullptr), 0);
    ASSERT_FALSE(eight.child[7]->hasChildren);
    Vertex3D there = {2, 6, 6};
    Leaves found(64);
    found.resize(static_cast<size_t>(eight.traverseSphere(&there, 2, found.data(), 64)));
    EXPECT_EQ(std::count(found.begin(), found.end(), eight.child[6]), 1);
    EXPECT_EQ(std::count(found.begin(), found.end(), eight.child[7]), 0);
    found.resize(64);
    found.resize(static_cast<size_t>(eight.traverseSphere(&there, 2.01f, found.data(), 64)));
    EXPECT_EQ(std::count(found.begin(), found.end(), eight.child[7]), 1);
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

TEST_F(Octree, RaysFindNoNodeWithoutWidth)
{
    octreeNode flat;
    flat.min = flat.max = {1, 1, 1};
    octreeNode* out[4];
    Vertex3D here = {1, 1, 1}, there = {2, 2, 2};
    EXPECT_EQ(flat.traverse(&here), &flat);
    EXPECT_EQ(flat.traverseRay(&here, &here, out, 4), 0);
    EXPECT_EQ(flat.traverseRay(&here, &there, out, 4), 0);
    EXPECT_EQ(flat.traverseRayOLD(&here, &here, out, 4), 0);
}

// The samples of the old walk, one by one.
static Leaves plainOldWalk(octreeNode* node, const Vertex3D& start, const Vertex3D& end, size_t most)
{
    const float step = (node->max.x - node->min.x) / static_cast<float>(1 << (node->maxDepth + 3));
    const float d[3] = {(end.x - start.x) / step, (end.y - start.y) / step, (end.z - start.z) / step};
    float p[3] = {start.x / step, start.y / step, start.z / step}, by[3];
    const float m = maximum(d[0], d[1], d[2]);
    int along = 2;
    for (int axis = 2; axis >= 0; --axis)
        if (m == d[axis])
            along = axis;
    for (int axis = 0; axis < 3; ++axis)
    {
        by[axis] = axis == along ? 1.0f : std::fabs(d[axis] / d[along]);
        if (d[axis] < 0)
            by[axis] = -by[axis];
    }
    Leaves found;
    for (int i = 0; m != 0 && static_cast<float>(i) < std::fabs(m); ++i)
    {
        Vertex3D sample = {p[0] * step, p[1] * step, p[2] * step};
        octreeNode* leaf = node->traverse(&sample);
        if (leaf && (found.empty() || found.back() != leaf))
        {
            if (found.size() == most)
                break;
            found.push_back(leaf);
        }
        for (int axis = 0; axis < 3; ++axis)
            p[axis] += by[axis];
    }
    return found;
}

TEST_F(Octree, OldWalkFindsTheLeavesOfItsSamples)
{
    octreeNode* node = plant(grid(6), 2);
    std::mt19937 random(19);
    const auto onSide = [&] { return random() % 2 ? node->min.x : node->max.x; };
    size_t longest = 0;
    for (int round = 0; round < 600; ++round)
    {
        Vertex3D start = anyPoint(random, 2.4f) + Vertex3D{2.5f, 2.5f, 2.5f};
        Vertex3D end = anyPoint(random, 2.4f) + Vertex3D{2.5f, 2.5f, 2.5f};
        if (round % 3 == 0) // along an axis, and equally fast along two
            end = {start.x, start.y + (round % 2 ? 1.0f : -1.0f), start.z + (round % 6 ? 1.0f : 0.0f)};
        if (round % 7 == 0) // from sides of the tree, where rounding leaves it
            (&start.x)[round % 3] = onSide();
        if (round % 5 == 0)
            (&end.x)[round % 3] = onSide();
        if (!node->traverse(&start) || !node->traverse(&end))
            continue;
        for (const int most : {600, 3})
        {
            Leaves out(600);
            out.resize(static_cast<size_t>(node->traverseRayOLD(&start, &end, out.data(), most)));
            ASSERT_EQ(out, plainOldWalk(node, start, end, static_cast<size_t>(most))) << round;
            longest = std::max(longest, out.size());
        }
    }
    EXPECT_GT(longest, 10u);
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

TEST_F(Octree, OldWalkOfATreeWithoutALimitOfDepthFindsNothing)
{
    octreeNode* node = plant(grid(2), 1, INT_MAX);
    ASSERT_EQ(node->maxDepth, INT_MAX);
    Vertex3D start = {0, 0, 0}, end = {1, 1, 1}; // steps between them would have no length
    octreeNode* out[4];
    EXPECT_EQ(node->traverseRayOLD(&start, &end, out, 4), 0);
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
