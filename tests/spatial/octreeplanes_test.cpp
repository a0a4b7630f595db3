// Faces of a leaf grouped by their planes.

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "tests/spatial/octreeprobe.h"
#include "tests/spatial/randomgroup.h"
#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"

class OctreePlanes : public EngineTest
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
    std::unique_ptr<Mesh> mesh;
    std::unique_ptr<octreeNode> root;
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

TEST_F(OctreePlanes, PlanesMadeAnewFollowThoseThatAreThere)
{
    octreeNode* leaf = leafOf({p1, p2, p0, q0, q1, q2}, {0, 1});
    leaf->makePlanes(0.001f);
    EXPECT_EQ(sizes(leaf), (std::vector<int>{1, 1, 1, 1}));
    EXPECT_EQ(leaf->planes->next->next->next->id, 3);
}

// Faces stand where their mesh's whole transform puts them, and the planes stay there.
TEST_F(OctreePlanes, PlanesAreThoseOfTheWorld)
{
    leafOf({p0, p1, p2}, {0});
    mesh->position = {10, 20, 30};
    root->destroyPlanes();
    root->makePlanes(0.001f);
    EXPECT_EQ(root->planes->point.x, 10.0f);
    EXPECT_EQ(root->planes->point.z, 30.0f);
    mesh->rotation = {180, 0, 0, 0};
    root->destroyPlanes();
    root->makePlanes(0.001f);
    EXPECT_NEAR(root->planes->normal.z, -1, 1e-6f);
    mesh->position.z = 99;
    EXPECT_EQ(root->planes->point.z, 30.0f);
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
    std::vector<Vertex3D> corners, normals;
    for (int i = 0; i < leaf->polys.size; ++i)
    {
        const OTPolyData& poly = leaf->polys.items[i];
        const Facelist& f = poly.mesh->faces[poly.face];
        for (const uint16_t vertex : {f.a, f.b, f.c})
            corners.push_back(poly.mesh->calculatedVertex(vertex));
        const Vertex3D* last = &corners[corners.size() - 3];
        normals.push_back(calcNormal(last, last + 1, last + 2));
    }
    const auto corner = [&](int i, int k) -> const Vertex3D&
    { return corners[static_cast<size_t>(3 * i + k)]; };
    const auto normal = [&](int i) -> const Vertex3D& { return normals[static_cast<size_t>(i)]; };
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
    const std::pair<float, int> kinds[] = {{3.0f, 700},  {0.002f, 700}, {1e6f, 700},
                                           {1e19f, 700}, {3.0f, 5000},  {0.002f, 5000}};
    for (const auto& [range, faces] : kinds)
    {
        std::vector<Vertex3D> corners;
        std::vector<int> materials;
        for (int face = 0; face < faces; ++face)
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

// A tree of three planes: one of its root, one of a child, one of a child's child.
static void makeChain(octreeNode* top, const Vertex3D& normal, float offset, int firstId)
{
    for (int i = 0; i < 3; ++i)
    {
        Plane* plane = top->planes = new Plane;
        plane->normal = normal;
        plane->point = {0, 0, 0};
        plane->point += Vertex3D{normal.x * offset, normal.y * offset, normal.z * offset};
        plane->id = firstId + i;
        if (i < 2)
            top = top->child[i + 3] = new octreeNode;
    }
}

static std::vector<int> idsOf(const octreeNode* node)
{
    std::vector<int> ids;
    for (const Plane* plane = node->planes; plane; plane = plane->next)
        ids.push_back(plane->id);
    for (const octreeNode* child : node->child)
        if (child)
            for (const int id : idsOf(child))
                ids.push_back(id);
    return ids;
}

// Every plane of the tree at hand takes the number of the last one of the other tree that it faces, in the
// order of that tree.
TEST_F(OctreePlanes, CombiningReachesAllNodesOfBothTrees)
{
    const auto combined = [](const Vertex3D& normal, float offset)
    {
        octreeNode numbers, takers;
        makeChain(&numbers, {0, 0, 1}, 2, 10);
        makeChain(&takers, normal, offset, 20);
        OctreeProbe::combine(takers, &numbers);
        EXPECT_EQ(idsOf(&numbers), (std::vector<int>{10, 11, 12}));
        return idsOf(&takers);
    };
    const std::vector<int> theirs = {12, 12, 12}, own = {20, 21, 22};
    EXPECT_EQ(combined({0, 0, -1}, -2), theirs);
    EXPECT_EQ(combined({0, 0, 1}, 2), own); // looks the same way
    EXPECT_EQ(combined({0, 0, -1}, -2.0009f), theirs);
    EXPECT_EQ(combined({0, 0, -1}, -2.0011f), own); // not in one plane
    // A hundred thousandth decides, and distances are along the taker's normal.
    EXPECT_EQ(combined({-1, 0, 0.000009f}, 0), theirs);
    EXPECT_EQ(combined({-1, 0, 0.000011f}, 0), own);
    EXPECT_EQ(combined({0, 0, 0}, 0), theirs);
}

TEST_F(OctreePlanes, CombiningTakesPlanesApartByTheToleranceForTwo)
{
    octreeNode numbers, takers;
    makeChain(&numbers, {0, 0, 1}, 0, 10);
    makeChain(&takers, {0, 0, -1}, 0, 20);
    for (octreeNode* node = &takers; node; node = node == &takers ? node->child[3] : nullptr)
        node->planes->point.z = 0.001f; // exactly
    OctreeProbe::combine(takers, &numbers);
    EXPECT_EQ(idsOf(&takers), (std::vector<int>{20, 21, 12}));
}

// Corners may lie a thousandth from the plane of a group, and no more, on either side.
TEST_F(OctreePlanes, ToleranceOfAGroupIsAThousandth)
{
    for (int corner = 0; corner < 3; ++corner)
        for (const float off : {0.0009f, -0.0009f, 0.0011f, -0.0011f, 0.001f, -0.001f})
        {
            Vertex3D moved[3] = {q0, q2, q1}; // seen from below
            moved[corner].z = off;
            const std::unique_ptr<OGroup> group(new OGroup);
            Mesh* both = makeMesh("M", {p0, p1, p2, moved[0], moved[1], moved[2]}, {{0, 1, 2}, {3, 4, 5}});
            both->pivot = {0, 0, 0};
            both->rotation = {0, 0, 0, 0};
            group->addMesh(both);
            ASSERT_EQ(group->constructOctree(), 0);
            EXPECT_EQ(sizes(group->octree).size(), std::fabs(off) < 0.001f ? 1u : 2u) << corner << " " << off;
        }
}
