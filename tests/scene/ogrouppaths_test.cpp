// What a group does with its path lists.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

class GroupPaths : public ::testing::Test
{
protected:
    GroupPaths()
    {
        group->addMesh(mesh = makeMesh("M", {}, {}));
        group->addMesh(other = makeMesh("N", {}, {}));
        mesh->pivot = other->pivot = {0, 0, 0};
        group->addPathList(list = new PathList);
    }
    VRKPath* addPath(Object* object, int kind)
    {
        VRKPath* path = new VRKPath(2, VRK_NODE_OBJECT, kind, object);
        list->addPath(path);
        return path;
    }

    LogCapture log;
    std::unique_ptr<OGroup> group{new OGroup};
    Mesh *mesh, *other;
    PathList* list;
};

TEST_F(GroupPaths, FirstListBecomesActiveWithoutItsFrames)
{
    PathList* second = new PathList;
    list->frameCount = 50;
    EXPECT_EQ(group->addPathList(second), 0);
    EXPECT_EQ(group->pathListCount, 2);
    EXPECT_EQ(group->activePathList, list);
    EXPECT_EQ(group->frameCount, 0);
}

TEST_F(GroupPaths, FullListReports)
{
    while (group->pathListCount < 64)
        EXPECT_EQ(group->addPathList(new PathList), 0);
    const std::unique_ptr<PathList> extra(new PathList);
    EXPECT_EQ(group->addPathList(extra.get()), 32);
    EXPECT_EQ(group->pathListCount, 64);
    EXPECT_EQ(log.text(),
              "PathList is full (VRKPath) create another PathList or increase number of maxPaths\n");
}

TEST_F(GroupPaths, ActiveListGivesItsFramesAndPivots)
{
    PathList* second = new PathList;
    group->addPathList(second);
    second->firstFrame = 5;
    second->lastFrame = 25;
    second->frameCount = 20;
    second->stopAtEnd = 1;
    second->initPivots(3);
    const Vertex3D a = {1, 2, 3}, b = {4, 5, 6};
    second->addPivotPoint(mesh, &a);
    second->addPivotPoint(nullptr, &b);
    second->addPivotPoint(other, &b);
    EXPECT_EQ(group->setActivePathList(1), 0);
    EXPECT_EQ(group->activePathList, second);
    EXPECT_EQ(group->firstFrame, 5);
    EXPECT_EQ(group->lastFrame, 25);
    EXPECT_EQ(group->frameCount, 20);
    EXPECT_EQ(group->stopAtEnd, 1);
    EXPECT_EQ(mesh->pivot.y, 2.0f);
    EXPECT_EQ(other->pivot.z, 6.0f);
}

TEST_F(GroupPaths, EmptySlotKeepsTheActiveList)
{
    for (const int index : {1, 63, 64, -1})
        EXPECT_EQ(group->setActivePathList(index), 34);
    EXPECT_EQ(group->activePathList, list);
    EXPECT_EQ(log.text().substr(0, 39), "PathList used in functioncall is NULL!\n");
}

TEST_F(GroupPaths, ClearDestroysTheLists)
{
    group->animated = group->stopAtEnd = 1;
    EXPECT_EQ(group->clear(), 0);
    EXPECT_EQ(group->pathListCount, 0);
    EXPECT_EQ(group->pathLists[0], nullptr);
    EXPECT_EQ(group->activePathList, nullptr);
    EXPECT_EQ(group->animated, 1);
    EXPECT_EQ(group->stopAtEnd, 1);
}

TEST_F(GroupPaths, OfTwoNeighbouringPathsOfADeletedMeshTheSecondStays)
{
    addPath(mesh, 0);
    VRKPath* rotation = addPath(mesh, 1);
    addPath(other, 0);
    addPath(mesh, 0);
    EXPECT_EQ(group->delMesh(mesh), 0);
    EXPECT_EQ(list->paths[0], rotation);
    EXPECT_EQ(list->paths[1]->object, other);
    EXPECT_EQ(list->paths[2], nullptr);
    EXPECT_EQ(group->meshCount, 1);
}

TEST_F(GroupPaths, StrangersLoseTheirPathsToo)
{
    Mesh stranger;
    addPath(&stranger, 0);
    EXPECT_EQ(group->delMesh(&stranger), 39);
    EXPECT_EQ(list->paths[0], nullptr);
    EXPECT_EQ(log.text(), "Object not found from OGroup given!\n");
}

TEST_F(GroupPaths, NothingLeadsToADeletedMesh)
{
    Light* light = new Light;
    group->addLight(light);
    other->parent = light->parent = mesh;
    list->initPivots(1);
    const Vertex3D pivot = {1, 1, 1};
    list->addPivotPoint(mesh, &pivot);
    group->delMesh(mesh);
    EXPECT_EQ(other->parent, nullptr);
    EXPECT_EQ(light->parent, nullptr);
    EXPECT_EQ(group->setActivePathList(0), 0);
}

TEST_F(GroupPaths, OverridingPinsAnObject)
{
    VRKPath* position = addPath(mesh, VRK_TRACK_POSITION);
    VRKPath* rotation = addPath(mesh, VRK_TRACK_ROTATION);
    VRKPath* second = addPath(mesh, VRK_TRACK_POSITION);
    position->set(0, 9, 9, 9, 4);
    const Vertex3D place = {1, 2, 3};
    group->overrideObjectPosition("M", &place, nullptr);
    EXPECT_EQ(position->keyCount, 1);
    EXPECT_EQ(position->keys[0].position[0], 1.0f);
    EXPECT_EQ(position->keys[0].position[2], 3.0f);
    EXPECT_EQ(position->keys[0].frame, 4);
    EXPECT_EQ(rotation->keyCount, 3);
    EXPECT_EQ(second->keyCount, 3);

    const Vertex4D turn = {4, 5, 6, 90};
    group->overrideObjectPosition("M", &place, &turn);
    EXPECT_EQ(rotation->keyCount, 1);
    EXPECT_EQ(rotation->keys[0].rotation[0], 4.0f);
    EXPECT_EQ(rotation->keys[0].rotation[3], 90.0f);
}

TEST_F(GroupPaths, OverridingWithoutObjectListOrTrackDoesNothing)
{
    const Vertex3D place = {1, 2, 3};
    const Vertex4D turn = {4, 5, 6, 90};
    group->overrideObjectPosition("None", &place, &turn);
    group->overrideObjectPosition("M", &place, &turn);
    VRKPath* position = addPath(mesh, VRK_TRACK_POSITION);
    group->overrideObjectPosition("M", nullptr, nullptr);
    EXPECT_EQ(position->keyCount, 3);
    group->activePathList = nullptr;
    group->overrideObjectPosition("M", &place, &turn);
    EXPECT_EQ(position->keyCount, 3);
}
