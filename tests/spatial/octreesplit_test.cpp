// Dividing the tree, beside asking every face about every child.

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "tests/spatial/plaincube.h"
#include "tests/spatial/randomgroup.h"
#include "tests/support/testmesh.h"
#include "vornik/spatial/octree.h"

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

static void expectPlainDivision(const std::vector<Vertex3D>& corners, float away, bool isCube = true)
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
    if (isCube)
        root.adjustSize();
    root.split(5, 5, nullptr);
    expectPlainDivision(&root, all);
}

// Large and small faces, slivers, faces without area, and floors and walls on the borders of cubes and near
// them.
TEST(OctreeSplit, DividesAsFaceByFace)
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

// Boxes are asked by their width along x whatever they are along the others.
TEST(OctreeSplit, DividesNodesThatAreNoCubes)
{
    std::mt19937 random(17);
    for (const Vertex3D& size : {Vertex3D{16, 4, 4}, Vertex3D{4, 16, 1}, Vertex3D{8, 8, 0.5f}})
    {
        std::vector<Vertex3D> corners;
        for (int i = 0; i < 3 * 400; ++i)
        {
            const Vertex3D about = i % 3 == 0 ? anyPoint(random, 1) : corners[corners.size() - 1];
            const Vertex3D near = anyPoint(random, 0.05f);
            corners.push_back(i % 3 == 0 ? Vertex3D{about.x * size.x, about.y * size.y, about.z * size.z}
                                         : about + near);
        }
        expectPlainDivision(corners, 0, false);
    }
}
