// Geometry without measure: the tree stays of a size that memory holds, and its queries answer.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/octree.h"
#include "vornik/spatial/queries.h"

class OctreeLimits : public ::testing::Test
{
protected:
    OctreeLimits()
    {
        vrkInitErrorLog(3);
        vrkSelectRasterizer(7);
        group.addTList(new TList);
    }
    ~OctreeLimits() override { vrkSelectRasterizer(0); }

    // Faces that all cut through each other, each as large as the scene.
    static Mesh* crossingFaces(int count, float size)
    {
        std::vector<Vertex3D> vertices;
        std::vector<Facelist> faces;
        for (int i = 0; i < count; ++i)
        {
            const float angle = 3.0f * static_cast<float>(i) / static_cast<float>(count);
            const float x = size * std::cos(angle), y = size * std::sin(angle);
            const auto first = static_cast<uint16_t>(vertices.size());
            vertices.insert(vertices.end(), {{-x, -y, -size}, {x, y, -size}, {0, 0, size}});
            faces.push_back({first, static_cast<uint16_t>(first + 1), static_cast<uint16_t>(first + 2)});
        }
        return makeMesh("crossing", vertices, faces);
    }

    static long long referencesBelow(const octreeNode* node)
    {
        long long sum = node->polys.size;
        for (const octreeNode* child : node->child)
            if (child)
                sum += referencesBelow(child);
        return sum;
    }

    OGroup group;
};

TEST_F(OctreeLimits, AnEndlessNodeIsNotDivided)
{
    std::vector<Facelist> faces(40, Facelist{0, 1, 2});
    group.addMesh(makeMesh("endless", {{0, 0, 0}, {HUGE_VALF, 0, 0}, {0, 1, -HUGE_VALF}}, faces));
    ASSERT_EQ(group.constructOctree(), 0);
    EXPECT_FALSE(group.octree->hasChildren);
    EXPECT_EQ(group.octree->polys.size, 40);
    Vertex3D from = {0, 0, 1}, to = {1, 1, -1};
    vrkRaySceneDistance(&from, &to, &group);
    vrkCheckHeight(&from, &to, &group);
}

TEST_F(OctreeLimits, AFewFacesMakeABoundedNumberOfReferences)
{
    group.addMesh(crossingFaces(1000, 100));
    ASSERT_EQ(group.constructOctree(), 0);
    const long long references = referencesBelow(group.octree);
    EXPECT_GT(references, VRK_OCTREE_REFERENCES / 2);
    EXPECT_LE(references, VRK_OCTREE_REFERENCES);
    Vertex3D from = {0, -90, 0}, to = {1, 90, 0};
    EXPECT_LT(vrkRaySceneDistance(&from, &to, &group), 200);
}

TEST_F(OctreeLimits, CoincidingFacesStopAtTheLimitHoweverDeepTheTreeMayGrow)
{
    const std::vector<Facelist> faces(100, Facelist{0, 1, 2});
    group.addMesh(makeMesh("same", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, faces));
    octreeNode tree;
    for (int i = 0; i < 100; ++i)
        tree.insert(group.meshes[0], i, true);
    tree.adjustSize();
    EXPECT_EQ(tree.split(5, 1000, nullptr), 0);
    EXPECT_TRUE(tree.hasChildren);
    EXPECT_LE(referencesBelow(&tree), VRK_OCTREE_REFERENCES);
}
