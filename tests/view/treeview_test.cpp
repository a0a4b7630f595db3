#include "apps/vornik/view/treeview.h"

#include "tests/view/rooms.h"

static int leavesWithFaces(const octreeNode* node)
{
    if (!node->hasChildren)
        return node->polys.size > 0;
    int count = 0;
    for (const octreeNode* child : node->child)
        count += leavesWithFaces(child);
    return count;
}

TEST_F(StageTest, TreeViewHasABoxForEachLeafWithFaces)
{
    TreeView leaves;
    leaves.build(nullptr);
    EXPECT_EQ(leaves.boxes(), 0);
    show(boxScene());
    ASSERT_EQ(stage.group->constructOctree(), 0);
    leaves.build(stage.group->octree);
    EXPECT_EQ(leaves.boxes(), leavesWithFaces(stage.group->octree));
    View view = stage.firstView;
    leaves.draw(&view, stage.group->activeTList);
    leaves.draw(&view, nullptr);
    leaves.clear();
    EXPECT_EQ(leaves.boxes(), 0);
    leaves.draw(&view, stage.group->activeTList);
}

TEST_F(StageTest, TreeViewFollowsTheSplit)
{
    Scene3ds scene;
    scene.meshes = {floorGrid("floor", 0, -10, 10, 40)};
    show(scene);
    ASSERT_EQ(stage.group->constructOctree(), 0);
    TreeView leaves;
    leaves.build(stage.group->octree);
    EXPECT_GT(leaves.boxes(), 4);
    EXPECT_EQ(leaves.boxes(), leavesWithFaces(stage.group->octree));
}
