#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/scene/object.h"

class PathListTest : public ::testing::Test
{
protected:
    VRKPath* add(Object* object, int kind = 0)
    {
        VRKPath* path = new VRKPath(1, 5, kind, object);
        EXPECT_EQ(list->addPath(path), 0);
        return path;
    }
    LogCapture log;
    std::unique_ptr<PathList> list{new PathList};
    Object a, b;
};

TEST_F(PathListTest, BeginsEmpty)
{
    for (const VRKPath* path : list->paths)
        EXPECT_EQ(path, nullptr);
    EXPECT_EQ(list->pivots, nullptr);
    EXPECT_EQ(list->pathCount, 0);
    EXPECT_EQ(list->pivotCount, 0);
    EXPECT_EQ(list->firstFrame, 0);
    EXPECT_EQ(list->lastFrame, 0);
    EXPECT_EQ(list->frameCount, 0);
    EXPECT_EQ(list->stopAtEnd, 0);
}

TEST_F(PathListTest, FindsTheFirstOfAnObject)
{
    add(&b);
    VRKPath* rotation = add(&a, VRK_TRACK_ROTATION);
    add(&a, VRK_TRACK_POSITION);
    EXPECT_EQ(list->findPath(&a), rotation);
    Object stranger;
    EXPECT_EQ(list->findPath(&stranger), nullptr);
}

TEST_F(PathListTest, FullListReports)
{
    for (int i = 0; i < 4096; ++i)
        add(&a);
    VRKPath extra(1, 5, 0, &b);
    EXPECT_EQ(list->addPath(&extra), 32);
    EXPECT_EQ(list->pathCount, 4096);
    EXPECT_EQ(list->findPath(&b), nullptr);
    EXPECT_EQ(log.text(),
              "PathList is full (VRKPath) create another PathList or increase number of maxPaths\n");
    EXPECT_EQ(list->delPath(4095), 0);
    EXPECT_EQ(list->delPath(0), 0); // moves all others
    EXPECT_EQ(list->paths[4094], nullptr);
    EXPECT_EQ(list->paths[4095], nullptr);
}

TEST_F(PathListTest, DeletionClosesTheGapAndKeepsTheLength)
{
    add(&a);
    VRKPath* second = add(&b);
    VRKPath* third = add(&a);
    EXPECT_EQ(list->delPath(0), 0);
    EXPECT_EQ(list->paths[0], second);
    EXPECT_EQ(list->paths[1], third);
    EXPECT_EQ(list->paths[2], nullptr);
    EXPECT_EQ(list->pathCount, 3);
    EXPECT_EQ(list->findPath(&a), third); // walks over the empty slot
}

TEST_F(PathListTest, DeletionOfTheOnlyPath)
{
    add(&a);
    EXPECT_EQ(list->delPath(0), 0);
    EXPECT_EQ(list->pathCount, 1);
    EXPECT_EQ(list->paths[0], nullptr);
    EXPECT_EQ(list->delPath(0), 33);
    EXPECT_EQ(list->delPath(-1), 33);
    EXPECT_EQ(list->delPath(4096), 33);
    EXPECT_EQ(log.text().substr(0, 35), "Path used in functioncall is NULL!\n");
}

TEST_F(PathListTest, PivotsFillTheirRoom)
{
    const Vertex3D first = {1, 2, 3}, second = {4, 5, 6};
    list->addPivotPoint(&a, &first); // no room yet
    EXPECT_EQ(list->pivotCount, 0);
    list->initPivots(2);
    ASSERT_NE(list->pivots, nullptr);
    list->addPivotPoint(&a, &first);
    list->addPivotPoint(&b, &second);
    list->addPivotPoint(&a, &second);
    EXPECT_EQ(list->pivotCount, 2);
    EXPECT_EQ(list->pivots[1].object, &b);
    EXPECT_EQ(list->pivots[1].pivot.y, 5.0f);
    list->initPivots(1);
    EXPECT_EQ(list->pivotCount, 0);
    EXPECT_EQ(list->pivots[0].object, nullptr);
    list->initPivots(-4);
    list->addPivotPoint(&a, &first);
    EXPECT_EQ(list->pivotCount, 0);
}
