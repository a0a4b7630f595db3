#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"

using Calls = std::vector<std::string>;

static const int solid = VRK_RENDER_SOLID | VRK_RENDER_BASIC;

// A square of four units across in the plane y = 0, seen from below y, in one colour and with one material.
static Mesh* makeSquare(const char* name, Color color, int material = 0)
{
    Mesh* mesh = makeMesh(name, {{-2, 0, -2}, {2, 0, -2}, {2, 0, 2}, {-2, 0, 2}}, {{0, 1, 2}, {0, 2, 3}});
    for (int i = 0; i < 4; i++)
        mesh->vertexColors[i] = color;
    for (int i = 0; i < 2; i++)
        mesh->faceMaterials[i].materialIndex = material;
    mesh->sortFacesByMaterial();
    return mesh;
}

static const Color red = {1, 0, 0, 1}, green = {0, 1, 0, 1};

namespace
{
class GroupRender : public EngineTest
{
protected:
    Scene scene;
    OGroup* group = nullptr;
    Camera* camera = nullptr;

    void SetUp() override
    {
        EngineTest::SetUp();
        group = addGroup();
        camera = new Camera;
        camera->eye = {0, -4, 0};
        camera->target = {0, 0, 0};
        camera->rotation = {30, 90, 0, 0};
        camera->fov = 90;
        group->addCamera(camera);
        scene.setCamera(group, 0);
    }

    // A group with a list of its default material and of number 1, half transparent.
    OGroup* addGroup()
    {
        OGroup* made = scene.groups[scene.groupCount++] = new OGroup;
        TList* list = new TList;
        Material* material = new Material;
        material->transparency = 0.5f;
        list->addMaterial(material);
        made->addTList(list);
        return made;
    }

    Mesh* add(Mesh* mesh)
    {
        group->addMesh(mesh);
        return mesh;
    }
};
} // namespace

// Hosts keep words of flags as numbers, in scripts and files.
TEST(RenderFlags, HaveTheirNumbers)
{
    EXPECT_EQ(VRK_RENDER_WIRE, 0x1);
    EXPECT_EQ(VRK_RENDER_FLAT, 0x2);
    EXPECT_EQ(VRK_RENDER_TWOSIDED, 0x4);
    EXPECT_EQ(VRK_RENDER_NOTEXTURE, 0x8);
    EXPECT_EQ(VRK_RENDER_TRANSPARENT, 0x10);
    EXPECT_EQ(VRK_RENDER_SOLID, 0x20);
    EXPECT_EQ(VRK_RENDER_ANIMATE_TEXTURES, 0x40);
    EXPECT_EQ(VRK_RENDER_NO_ANIMATION, 0x80);
    EXPECT_EQ(VRK_RENDER_SPECIAL, 0x100);
    EXPECT_EQ(VRK_RENDER_EFFECT, 0x200);
    EXPECT_EQ(VRK_RENDER_COMPILE_LIST, 0x400);
    EXPECT_EQ(VRK_RENDER_CALL_LIST, 0x1000);
    EXPECT_EQ(VRK_RENDER_BASIC, 0x2000);
    EXPECT_EQ(VRK_RENDER_CULL, 0x8000);
    EXPECT_EQ(VRK_RENDER_TRANSPARENT_NOW, 0x10000);
    EXPECT_EQ(VRK_RENDER_ANIMATE_CAMERA, 0x20000);
}

TEST_F(GroupRender, OtherBitsOfTheFlagsDoNothing)
{
    add(makeSquare("a", red));
    GLRecorder gl;
    group->render(solid, camera);
    const Calls plain = gl.calls();
    gl.clear();
    group->render(solid | 0x800 | 0x4000 | 0x40000 | 0x40000000, camera);
    EXPECT_EQ(gl.calls(), plain);
}

static const Calls matrixCalls = {"glPushMatrix", "glPopMatrix", "glTranslatef", "glRotatef"};

TEST_F(GroupRender, SetsEachMeshUpByItsStaticTransform)
{
    Mesh* mesh = add(makeSquare("a", red));
    mesh->position = {1, 2, 3};
    mesh->pivot = {4, 5, 6};
    mesh->rotation = {10, 20, 30, 40};
    Mesh* straight = add(makeSquare("b", red));
    straight->position = {7, 0, 0};
    GLRecorder gl;
    EXPECT_EQ(group->render(solid, camera), 0);
    EXPECT_EQ(gl.only(matrixCalls),
              (Calls{"glPushMatrix()", "glTranslatef(1, 2, 3)", "glTranslatef(-4, -5, -6)",
                     "glRotatef(30, 0, 0, 1)", "glRotatef(20, 0, 1, 0)", "glRotatef(10, 1, 0, 0)",
                     "glTranslatef(4, 5, 6)", "glPopMatrix()", "glPushMatrix()", "glTranslatef(7, 0, 0)",
                     "glTranslatef(-0, -0, -0)", "glTranslatef(0, 0, 0)", "glPopMatrix()"}));
}

TEST_F(GroupRender, LeavesTheMatrixAsItWas)
{
    add(makeSquare("a", red))->position = {1, 2, 3};
    float before[16], after[16];
    vrkInitMatrix();
    vrkLookWithCamera(camera);
    vrkGetModelViewMatrix(before);
    group->render(solid, camera);
    group->renderObject(group->meshes[0], solid);
    vrkGetModelViewMatrix(after);
    EXPECT_TRUE(std::equal(before, before + 16, after));
}

TEST_F(GroupRender, DrawsWithTheActiveListOfTheGroup)
{
    add(makeSquare("a", red));
    scene.render(solid);
    EXPECT_TRUE(pixelIs(32, 32, {255, 0, 0, 255}));

    // In another list number 0 may be transparent: nothing in the solid pass.
    vrkClear();
    group->addTList(new TList);
    group->setActiveTList(1);
    group->activeTList->getMaterial(0)->transparency = 0.5f;
    scene.render(solid);
    EXPECT_EQ(drawnPixels(), 0);
}

TEST_F(GroupRender, WithoutACameraMeshesAreWalkedButNothingIsDrawnOrCompiled)
{
    Mesh* mesh = add(makeSquare("a", red));
    add(makeSquare("b", red));
    mesh->createDisplayList();
    mesh->billboard = 1;
    GLRecorder gl;
    EXPECT_EQ(group->render(VRK_RENDER_SOLID | VRK_RENDER_BASIC | VRK_RENDER_COMPILE_LIST, nullptr), 0);
    EXPECT_EQ(gl.count("glPushMatrix"), 2);
    EXPECT_EQ(gl.count("glPopMatrix"), 2);
    for (const char* drawing :
         {"glBegin", "glDrawElements", "glNewList", "glCallList", "glDisable", "glEnable"})
        EXPECT_EQ(gl.count(drawing), 0) << drawing;
    EXPECT_EQ(mesh->rotation.z, 0.0f);
}

TEST_F(GroupRender, HiddenMeshesStillGetTheirMatrix)
{
    add(makeSquare("a", red))->visible = 0;
    GLRecorder gl;
    group->render(solid, camera);
    EXPECT_EQ(gl.count("glPushMatrix"), 1);
    EXPECT_EQ(gl.count("glBegin"), 0);
}

TEST_F(GroupRender, AllPassesOfAMeshComeBeforeTheNextMesh)
{
    for (const char* name : {"a", "b"})
    {
        Mesh* mesh = add(makeSquare(name, red));
        mesh->faceMaterials[1].materialIndex = 1;
        mesh->sortFacesByMaterial();
    }
    GLRecorder gl;
    group->render(solid | VRK_RENDER_TRANSPARENT_NOW, camera);
    const Calls calls = gl.only({"glPushMatrix", "glPopMatrix", "glEnable", "glDisable", "glBegin"});
    Calls order;
    for (const std::string& call : calls)
        if (call == "glPushMatrix()" || call == "glPopMatrix()" || call == "glEnable(GL_BLEND)" ||
            call == "glDisable(GL_BLEND)" || call.starts_with("glBegin"))
            order.push_back(call.substr(0, call.find('(')));
    const Calls oneMesh = {"glPushMatrix", "glDisable", "glBegin", "glEnable", "glBegin", "glPopMatrix"};
    Calls both = oneMesh;
    both.insert(both.end(), oneMesh.begin(), oneMesh.end());
    EXPECT_EQ(order, both);
}

TEST_F(GroupRender, BillboardsTakeTheCamerasHeading)
{
    Mesh* mesh = add(makeSquare("a", red));
    mesh->billboard = 1;
    Mesh* other = add(makeSquare("b", red));
    GLRecorder gl;
    group->render(solid, camera);
    EXPECT_EQ(gl.countExact("glRotatef(30, 0, 0, 1)"), 1);
    EXPECT_EQ(mesh->rotation.z, 30.0f);
    EXPECT_EQ(other->rotation.z, 0.0f);

    // It stays, and drawing the one mesh knows no camera.
    camera->rotation.x = 50;
    gl.clear();
    group->renderObject(mesh, solid);
    EXPECT_EQ(gl.countExact("glRotatef(30, 0, 0, 1)"), 1);
    EXPECT_EQ(mesh->rotation.z, 30.0f);
}

TEST_F(GroupRender, AGroupWithoutMeshesDrawsNothing)
{
    GLRecorder gl;
    EXPECT_EQ(group->render(solid, camera), 0);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(GroupRender, RenderDoesNotAdvanceTheAnimation)
{
    add(makeSquare("a", red));
    group->animated = 1;
    group->frameCount = 10;
    group->currentFrame = 3;
    group->render(solid, camera);
    EXPECT_EQ(group->currentFrame, 3);
}

TEST_F(GroupRender, ObjectsAreDrawnAlone)
{
    Mesh* mesh = add(makeSquare("a", red));
    mesh->position = {1, 2, 3};
    add(makeSquare("b", red));
    GLRecorder gl;
    EXPECT_EQ(group->renderObject(mesh, solid), 0);
    EXPECT_EQ(gl.only(matrixCalls),
              (Calls{"glPushMatrix()", "glTranslatef(1, 2, 3)", "glTranslatef(-0, -0, -0)",
                     "glTranslatef(0, 0, 0)", "glPopMatrix()"}));
    EXPECT_EQ(gl.count("glBegin"), 1);
}

TEST_F(GroupRender, OnlyMeshesOfTheGroupAreObjectsToDraw)
{
    Light* light = new Light;
    group->addLight(light);
    Mesh stranger;
    GLRecorder gl;
    EXPECT_EQ(group->renderObject(nullptr, solid), 38);
    EXPECT_EQ(group->renderObject(light, solid), 39);
    EXPECT_EQ(group->renderObject(camera, solid), 39);
    EXPECT_EQ(group->renderObject(&stranger, solid), 39);
    EXPECT_EQ(gl.calls(), Calls{});
    EXPECT_TRUE(logged("Object is NULL, cannot use this!"));
    EXPECT_TRUE(logged("Object not found from OGroup given!"));
}

TEST_F(GroupRender, DrawingAnObjectAdvancesAnAnimatedGroup)
{
    Mesh* mesh = add(makeSquare("a", red));
    group->frameCount = 2;
    group->renderObject(mesh, solid);
    EXPECT_EQ(group->currentFrame, 0); // not animated

    group->animated = 1;
    for (int expected : {1, 2, 0, 1})
    {
        group->renderObject(mesh, solid);
        EXPECT_EQ(group->currentFrame, expected);
    }
    group->renderObject(mesh, solid | VRK_RENDER_NO_ANIMATION);
    EXPECT_EQ(group->currentFrame, 1);
    group->currentFrame = INT32_MAX;
    group->renderObject(mesh, solid);
    EXPECT_EQ(group->currentFrame, 0);
    group->frameCount = INT32_MAX;
    group->currentFrame = INT32_MAX - 1;
    group->renderObject(mesh, solid);
    EXPECT_EQ(group->currentFrame, INT32_MAX);

    // Errors leave the frame alone.
    group->currentFrame = 1;
    group->renderObject(nullptr, solid);
    EXPECT_EQ(group->currentFrame, 1);
}

TEST_F(GroupRender, ASceneSetsTheViewAndDrawsAllGroups)
{
    add(makeSquare("a", red))->position = {-2.5f, 0, 0};
    group = addGroup();
    add(makeSquare("b", green))->position = {2.5f, 0, 0};
    GLRecorder gl;
    EXPECT_EQ(scene.render(solid), 0);
    EXPECT_EQ(gl.calls().at(0), "glLoadIdentity()");
    EXPECT_EQ(gl.count("gluLookAt"), 1);
    EXPECT_TRUE(pixelIs(12, 32, {255, 0, 0, 255}));
    EXPECT_TRUE(pixelIs(52, 32, {0, 255, 0, 255}));
}

TEST_F(GroupRender, ASceneDrawsOneGroupByNumber)
{
    add(makeSquare("a", red));
    group = addGroup();
    add(makeSquare("b", green));
    EXPECT_EQ(scene.render(1, solid), 0);
    EXPECT_TRUE(pixelIs(32, 32, {0, 255, 0, 255}));
    vrkClear();
    for (int slot : {2, 255, 256, -1, 1000000})
    {
        GLRecorder gl;
        EXPECT_EQ(scene.render(slot, solid), 0);
        EXPECT_EQ(gl.count("gluLookAt"), 1);
        EXPECT_EQ(gl.count("glPushMatrix"), 0);
    }
    EXPECT_EQ(drawnPixels(), 0);
}

TEST_F(GroupRender, ASceneWithoutGroupsStillSetsTheView)
{
    Scene empty;
    empty.camera = camera;
    GLRecorder gl;
    EXPECT_EQ(empty.render(solid), 0);
    EXPECT_EQ(gl.count("glLoadIdentity"), 1);
    EXPECT_EQ(gl.count("gluLookAt"), 1);
}

TEST_F(GroupRender, ASceneWithoutCameraReportsEveryFrameAndDrawsNothing)
{
    add(makeSquare("a", red));
    scene.camera = nullptr;
    const std::string line = "Camera used in functioncall is NULL!\n", before = log();
    EXPECT_EQ(scene.render(solid), 0);
    EXPECT_EQ(scene.render(0, solid), 0);
    EXPECT_EQ(log(), before + line + line);
    EXPECT_EQ(drawnPixels(), 0);
}

TEST_F(GroupRender, DeletingTheGroupOfTheCameraLeavesNothingToSee)
{
    OGroup* other = addGroup();
    other->addMesh(makeSquare("b", green));
    scene.deleteOGroup(group);
    scene.render(solid);
    EXPECT_EQ(drawnPixels(), 0);
}

// A group whose meshes move 10 units a frame along x.
class AnimatedGroupRender : public GroupRender
{
protected:
    void SetUp() override
    {
        GroupRender::SetUp();
        group->addPathList(new PathList);
        group->animated = 1;
        group->frameCount = 100;
        addTrack(mesh = add(makeSquare("a", red)), VRK_NODE_OBJECT);
    }
    void addTrack(Object* object, int nodeType)
    {
        VRKPath* path = new VRKPath(2, nodeType, VRK_TRACK_POSITION, object);
        path->set(0, 0, 0, 0, 0);
        path->set(1, 0, 0, 100, 10);
        group->activePathList->addPath(path);
    }
    Mesh* mesh = nullptr;
};

TEST_F(AnimatedGroupRender, TracksReplaceTheStaticPlace)
{
    mesh->position = {7, 8, 9};
    group->setCurrentFrame(3);
    GLRecorder gl;
    group->render(solid, camera);
    EXPECT_EQ(gl.only(matrixCalls), (Calls{"glPushMatrix()", "glTranslatef(30, 0, 0)", "glPopMatrix()"}));
    gl.clear();
    group->renderObject(mesh, solid);
    EXPECT_EQ(gl.only(matrixCalls), (Calls{"glPushMatrix()", "glTranslatef(30, 0, 0)", "glPopMatrix()"}));
    gl.clear();
    group->renderObject(mesh, solid | VRK_RENDER_NO_ANIMATION);
    EXPECT_EQ(gl.countExact("glTranslatef(7, 8, 9)"), 1);
    gl.clear();
    group->render(solid | VRK_RENDER_NO_ANIMATION, camera); // of drawing one object only
    EXPECT_EQ(gl.countExact("glTranslatef(7, 8, 9)"), 0);
}

TEST_F(AnimatedGroupRender, ParentsAreFoundInTheSameFrame)
{
    Mesh* child = add(makeSquare("b", red));
    addTrack(child, VRK_NODE_OBJECT);
    child->parent = mesh;
    group->setCurrentFrame(2);
    GLRecorder gl;
    group->render(solid, camera);
    EXPECT_EQ(gl.only(matrixCalls),
              (Calls{"glPushMatrix()", "glTranslatef(20, 0, 0)", "glPopMatrix()", "glPushMatrix()",
                     "glTranslatef(20, 0, 0)", "glTranslatef(20, 0, 0)", "glPopMatrix()"}));
}

TEST_F(AnimatedGroupRender, WithoutAPathListEveryMeshReports)
{
    group->activePathList = nullptr;
    GLRecorder gl;
    EXPECT_EQ(group->render(solid, camera), 0);
    EXPECT_TRUE(logged("PathList used in functioncall is NULL!"));
    EXPECT_EQ(gl.count("glBegin"), 1); // and is drawn where the stack stands
}

TEST_F(AnimatedGroupRender, CameraFliesAndTheViewIsSetAgain)
{
    addTrack(camera, VRK_NODE_CAMERA);
    group->setCurrentFrame(1);
    GLRecorder gl;
    group->render(solid | VRK_RENDER_ANIMATE_CAMERA, camera);
    EXPECT_EQ(camera->eye.x, 10.0f);
    EXPECT_EQ(gl.calls()[0], "glLoadIdentity()");
    EXPECT_EQ(gl.count("gluLookAt"), 1);
    gl.clear();
    group->setCurrentFrame(5);
    group->render(solid, camera);
    EXPECT_EQ(camera->eye.x, 10.0f);
    EXPECT_EQ(gl.count("gluLookAt"), 0);
    group->render(VRK_RENDER_ANIMATE_CAMERA, nullptr); // no camera, no flags
}

TEST_F(GroupRender, CullingSkipsMeshesOutsideTheView)
{
    Mesh* seen = add(makeSquare("a", red));
    Mesh* behind = add(makeSquare("b", red));
    behind->position = {0, -50, 0};
    seen->radius = behind->radius = 3;
    behind->billboard = 1;
    GLRecorder gl;
    group->render(solid | VRK_RENDER_CULL, camera);
    EXPECT_EQ(gl.count("glPushMatrix"), 1);
    EXPECT_EQ(gl.count("glBegin"), 1);
    EXPECT_EQ(behind->rotation.z, 0.0f);
    behind->radius = 100; // reaches into the view
    gl.clear();
    group->render(solid | VRK_RENDER_CULL, camera);
    EXPECT_EQ(gl.count("glPushMatrix"), 2);
    gl.clear();
    group->render(solid | VRK_RENDER_CULL, nullptr);
    EXPECT_EQ(gl.count("glPushMatrix"), 2);
}

TEST_F(AnimatedGroupRender, CullingGoesByTheStaticPlace)
{
    mesh->radius = 3;
    mesh->position = {0, -50, 0}; // behind the camera, wherever the tracks put it
    GLRecorder gl;
    group->render(solid | VRK_RENDER_CULL, camera);
    EXPECT_EQ(gl.count("glBegin"), 0);
}

TEST_F(AnimatedGroupRender, CullingGoesByWhereTheCameraHasFlown)
{
    group->animated = 0;
    mesh->position = {-20, 0, 0};
    mesh->radius = 3;
    addTrack(camera, VRK_NODE_CAMERA);
    group->setCurrentFrame(5); // at x = 50, looking back at the origin; it stood at y = -4
    Mesh* formerlySeen = add(makeSquare("b", red));
    formerlySeen->position = {0, 200, 0};
    formerlySeen->radius = 3;
    GLRecorder gl;
    group->render(solid | VRK_RENDER_CULL, camera);
    EXPECT_EQ(gl.countExact("glTranslatef(0, 200, 0)"), 1);
    EXPECT_EQ(gl.countExact("glTranslatef(-20, 0, 0)"), 0);
    gl.clear();
    group->render(solid | VRK_RENDER_CULL | VRK_RENDER_ANIMATE_CAMERA, camera);
    EXPECT_EQ(gl.countExact("glTranslatef(0, 200, 0)"), 0);
    EXPECT_EQ(gl.countExact("glTranslatef(-20, 0, 0)"), 1);
}

TEST_F(GroupRender, TexturesStepOnceACall)
{
    Texture* texture = new Texture;
    texture->frameCount = 3;
    group->activeTList->first->addFirstTexture(texture);
    Mesh* mesh = add(makeSquare("a", red));
    add(makeSquare("b", red));
    group->render(solid | VRK_RENDER_ANIMATE_TEXTURES, camera);
    EXPECT_EQ(texture->currentFrame, 1);
    group->render(solid, camera);
    EXPECT_EQ(texture->currentFrame, 1);
    group->renderObject(mesh, solid | VRK_RENDER_ANIMATE_TEXTURES);
    EXPECT_EQ(texture->currentFrame, 2);
    group->render(VRK_RENDER_ANIMATE_TEXTURES, nullptr); // the flag is gone with the camera
    EXPECT_EQ(texture->currentFrame, 2);
}
