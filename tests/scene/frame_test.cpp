// Whole frames take no memory.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/allocations.h"
#include "tests/support/engine.h"
#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/transparent.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"

// Two hundred animated squares under one another, every third one transparent, and a camera that flies.
class Frame : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        scene.groups[scene.groupCount++] = group;
        TList* list = new TList;
        Material* clear = new Material;
        clear->transparency = 0.5f;
        list->addMaterial(clear);
        group->addTList(list);
        group->addPathList(new PathList);
        group->animated = 1;
        group->frameCount = 100;
        for (int i = 0; i < 200; ++i)
            addSquare(i);
        camera = new Camera;
        camera->eye = {0, -20, 0};
        group->addCamera(camera);
        addTrack(camera, VRK_NODE_CAMERA, 0);
        scene.setCamera(group, 0);
        vrkInitTransparentPlaneStack(400);
    }
    void TearDown() override
    {
        vrkUnInitTransparentPlaneStack();
        EngineTest::TearDown();
    }
    void addTrack(Object* object, int nodeType, float x)
    {
        VRKPath* path = new VRKPath(3, nodeType, VRK_TRACK_POSITION, object);
        for (int k = 0; k < 3; ++k)
            path->set(k, 0, nodeType == VRK_NODE_CAMERA ? -20.0f : 0, x + static_cast<float>(k), k * 20);
        group->activePathList->addPath(path);
    }
    void addSquare(int i)
    {
        Mesh* mesh =
            makeMesh("square", {{-1, 0, -1}, {1, 0, -1}, {1, 0, 1}, {-1, 0, 1}}, {{0, 1, 2}, {0, 2, 3}});
        for (int face = 0; face < 2; ++face)
            mesh->faceMaterials[face].materialIndex = i % 3 == 0;
        mesh->faceFlags[0] = mesh->faceFlags[1] = 7;
        for (int v = 0; v < 4; ++v)
            mesh->vertexColors[v] = {1, 1, 1, 1};
        mesh->sortFacesByMaterial();
        mesh->radius = 2;
        mesh->pivot = {0, 0, 0};
        mesh->rotation = {0, 0, 0, 0};
        mesh->parent = i % 10 && group->meshCount > 0 ? group->meshes[group->meshCount - 1] : nullptr;
        group->addMesh(mesh);
        addTrack(mesh, VRK_NODE_OBJECT, 0.1f);
        VRKPath* turns = new VRKPath(2, VRK_NODE_OBJECT, VRK_TRACK_ROTATION, mesh);
        turns->set(0, 0, 0, 1, 10, 0);
        turns->set(1, 0, 0, 1, 20, 30);
        group->activePathList->addPath(turns);
    }
    void draw(int frame, int flags)
    {
        group->setCurrentFrame(frame);
        vrkClear();
        scene.render(flags);
        vrkDrawTransparentPlanes(scene.camera);
        vrkSwapBuffers();
    }

    Scene scene;
    OGroup* group = new OGroup;
    Camera* camera = nullptr;
};

TEST_F(Frame, TakesNoMemory)
{
    const int flags[] = {VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT | VRK_RENDER_ANIMATE_CAMERA,
                         VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_EFFECT,
                         VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT | VRK_RENDER_CULL |
                             VRK_RENDER_ANIMATE_TEXTURES,
                         VRK_RENDER_WIRE | VRK_RENDER_SOLID | VRK_RENDER_BASIC | VRK_RENDER_FLAT};
    const auto play = [&]
    {
        for (int frame = 0; frame < 20; ++frame)
            draw(frame, flags[frame % 4]);
    };
    play(); // the driver compiles what it needs, with strings of this program
    const long before = allocationCount();
    play();
    EXPECT_EQ(allocationCount(), before);
    EXPECT_GT(drawnPixels(), 0);
    EXPECT_GT(allocationCount(), before); // which reads the picture into memory: it does count
}

TEST_F(Frame, WithMoreTransparentFacesThanForeseenTakesMemoryOnce)
{
    vrkInitTransparentPlaneStack(1);
    long before = allocationCount();
    draw(1, VRK_RENDER_TRANSPARENT);
    EXPECT_GT(allocationCount(), before);
    draw(2, VRK_RENDER_TRANSPARENT);
    before = allocationCount();
    draw(2, VRK_RENDER_TRANSPARENT);
    EXPECT_EQ(allocationCount(), before);
}

TEST_F(Frame, StaticGroupTakesNoMemory)
{
    group->animated = 0;
    group->renderObject(group->meshes[0], VRK_RENDER_SOLID);
    const long before = allocationCount();
    for (int i = 0; i < group->meshCount; ++i)
    {
        group->renderObject(group->meshes[i], VRK_RENDER_SOLID);
        group->transformVertices(group->meshes[i]);
        group->meshes[i]->calculatedVertex(0);
    }
    EXPECT_EQ(allocationCount(), before);
}
