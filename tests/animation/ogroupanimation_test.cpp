// Tracks onto the matrix stack, cameras and textures through their frames.

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <random>
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

using Calls = std::vector<std::string>;

class OGroupAnimation : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        group->addPathList(new PathList);
        mesh = addMesh("M");
    }
    Mesh* addMesh(const char* name)
    {
        Mesh* made = makeMesh(name, {{1, 0, 0}, {0, 2, 0}, {0, 0, 3}}, {{0, 1, 2}});
        made->pivot = {0, 0, 0};
        made->rotation = {0, 0, 0, 0};
        group->addMesh(made);
        return made;
    }
    // A track of positions (x, 0, 0), with keys {frame, x}.
    VRKPath* addPositions(Object* object, const std::vector<std::pair<int, float>>& keys, int nodeType = 5)
    {
        VRKPath* path = new VRKPath(static_cast<int>(keys.size()), nodeType, VRK_TRACK_POSITION, object);
        for (size_t k = 0; k < keys.size(); ++k)
            path->set(static_cast<int>(k), 0, 0, keys[k].second, keys[k].first);
        group->activePathList->addPath(path);
        return path;
    }
    // Turns about x, with keys {frame, degrees}.
    VRKPath* addTurns(Object* object, const std::vector<std::pair<int, float>>& keys)
    {
        VRKPath* path = new VRKPath(static_cast<int>(keys.size()), 5, VRK_TRACK_ROTATION, object);
        for (size_t k = 0; k < keys.size(); ++k)
            path->set(static_cast<int>(k), 0, 0, 1, keys[k].second, keys[k].first);
        group->activePathList->addPath(path);
        return path;
    }
    // What one object's tracks tell OpenGL at a frame.
    Calls objectCalls(Object* object, int frame, bool* result = nullptr, Object* self = nullptr)
    {
        group->currentFrame = frame;
        GLRecorder gl(GLRecorder::swallow);
        const bool hasTurns = group->doObjectAnim(object, self ? self : object);
        if (result)
            *result = hasTurns;
        return gl.calls();
    }
    Calls objectCalls(int frame) { return objectCalls(mesh, frame); }

    static std::string moved(const std::string& x) { return "glTranslatef(" + x + ", 0, 0)"; }
    static std::string turned(const std::string& angle) { return "glRotatef(" + angle + ", -1, -0, -0)"; }
    static const std::string noPivot;

    std::unique_ptr<OGroup> group{new OGroup};
    Mesh* mesh = nullptr;
};

const std::string OGroupAnimation::noPivot = "glTranslatef(-0, -0, -0)";

TEST_F(OGroupAnimation, FramesWrapWithTheirSign)
{
    group->frameCount = 100;
    for (const auto& [asked, got] :
         {std::pair{0, 0}, {99, 99}, {100, 0}, {250, 50}, {-1, -1}, {-250, -50}, {INT_MIN, -48}})
    {
        group->setCurrentFrame(asked);
        EXPECT_EQ(group->currentFrame, got);
    }
    group->frameCount = 0;
    group->setCurrentFrame(7);
    EXPECT_EQ(group->currentFrame, 0);
    group->frameCount = -1;
    group->setCurrentFrame(INT_MIN);
    EXPECT_EQ(group->currentFrame, 0);
}

TEST_F(OGroupAnimation, StoppedFramesEndOneBelowTheCount)
{
    group->stopAtEnd = 1;
    group->frameCount = 100;
    for (const auto& [asked, got] : {std::pair{100, 100}, {101, 99}, {5000, 99}, {-5, -5}})
    {
        group->setCurrentFrame(asked);
        EXPECT_EQ(group->currentFrame, got);
    }
    group->frameCount = 0;
    group->setCurrentFrame(1);
    EXPECT_EQ(group->currentFrame, -1);
    group->setCurrentFrame(0);
    EXPECT_EQ(group->currentFrame, 0);
}

TEST_F(OGroupAnimation, SingleKeyHoldsAtEveryFrame)
{
    addPositions(mesh, {{50, 4}});
    addTurns(mesh, {{50, 30}});
    for (const int frame : {-10, 0, 50, 70000})
        EXPECT_EQ(objectCalls(frame), (Calls{moved("4"), turned("30"), noPivot})) << frame;
}

TEST_F(OGroupAnimation, PositionsGoStraightBetweenKeys)
{
    addPositions(mesh, {{0, 0}, {10, 20}, {20, 100}});
    EXPECT_EQ(objectCalls(1), Calls{moved("2")});
    EXPECT_EQ(objectCalls(10), Calls{moved("20")});
    EXPECT_EQ(objectCalls(15), Calls{moved("60")});
    EXPECT_EQ(objectCalls(20), Calls{moved("100")});
}

TEST_F(OGroupAnimation, UpToTheFirstKeyTheClosingOneHolds)
{
    addPositions(mesh, {{5, 1}, {10, 20}});
    EXPECT_EQ(objectCalls(5), Calls{moved("20")});
    EXPECT_EQ(objectCalls(0), Calls{moved("20")});
    EXPECT_EQ(objectCalls(-3), Calls{moved("20")});
    EXPECT_EQ(objectCalls(6), Calls{moved("4.8")});
}

TEST_F(OGroupAnimation, BehindTheLastKeyItHolds)
{
    addPositions(mesh, {{0, 1}, {10, 20}});
    for (const int frame : {11, 65535, 65536, INT_MAX})
        EXPECT_EQ(objectCalls(frame), Calls{moved("20")});
}

TEST_F(OGroupAnimation, KeysOfOneFrameDoNotDivideByNought)
{
    VRKPath* path = addPositions(mesh, {{0, 1}, {10, 20}, {10, 30}, {20, 40}});
    EXPECT_EQ(objectCalls(10), Calls{moved("20")});
    EXPECT_EQ(objectCalls(11), Calls{moved("31")});
    path->keys[0].frame = path->keys[1].frame = -5; // the walk can still stop at the second
    path->keys[2].frame = -5;
    EXPECT_EQ(objectCalls(-5), Calls{moved("40")});
}

TEST_F(OGroupAnimation, TurnsAddUpNewestFirst)
{
    addTurns(mesh, {{0, 10}, {10, 20}, {20, 40}});
    EXPECT_EQ(objectCalls(-1), Calls{noPivot}); // in front of the first key nothing turns
    EXPECT_EQ(objectCalls(0), (Calls{turned("0"), turned("10"), noPivot}));
    EXPECT_EQ(objectCalls(5), (Calls{turned("10"), turned("10"), noPivot}));
    EXPECT_EQ(objectCalls(10), (Calls{turned("0"), turned("20"), turned("10"), noPivot}));
    EXPECT_EQ(objectCalls(15), (Calls{turned("20"), turned("20"), turned("10"), noPivot}));
}

TEST_F(OGroupAnimation, ClosingTurnBeginsBehindTheLastKey)
{
    addTurns(mesh, {{0, 10}, {35, 65500}});
    EXPECT_EQ(objectCalls(36), (Calls{turned("1"), turned("65500"), turned("10"), noPivot}));
    EXPECT_EQ(objectCalls(65535), (Calls{turned("65500"), turned("65500"), turned("10"), noPivot}));
}

TEST_F(OGroupAnimation, AxesAreTakenBackwards)
{
    VRKPath* path = addTurns(mesh, {{0, 10}});
    path->set(0, 3, 2, 1, 10, 0);
    EXPECT_EQ(objectCalls(0), (Calls{"glRotatef(10, -1, -2, -3)", noPivot}));
}

TEST_F(OGroupAnimation, OwnRotationComesBetweenTheTracks)
{
    addPositions(mesh, {{0, 4}});
    addTurns(mesh, {{0, 30}});
    mesh->rotation = {1, 2, 3, 9};
    mesh->pivot = {5, 6, 7};
    EXPECT_EQ(objectCalls(0), (Calls{moved("4"), "glRotatef(3, 0, 0, 1)", "glRotatef(2, 0, 1, 0)",
                                     "glRotatef(1, 1, 0, 0)", turned("30"), "glTranslatef(-5, -6, -7)"}));
}

TEST_F(OGroupAnimation, WithoutTurnsThePivotStays)
{
    bool result = true;
    addPositions(mesh, {{0, 4}});
    EXPECT_EQ(objectCalls(mesh, 0, &result), Calls{moved("4")});
    EXPECT_FALSE(result);
    addTurns(mesh, {{0, 30}});
    objectCalls(mesh, 0, &result);
    EXPECT_TRUE(result);
}

TEST_F(OGroupAnimation, WithoutTracksNothingMoves)
{
    mesh->position = {1, 2, 3};
    EXPECT_EQ(objectCalls(0), Calls{});
    EXPECT_FALSE(group->doObjectAnim(nullptr, nullptr));
    addPositions(mesh, {})->initKeys(0);
    group->activePathList->paths[0]->keyCount = 0;
    EXPECT_EQ(objectCalls(0), Calls{});
}

TEST_F(OGroupAnimation, ParentsComeFirstAndKeepTheirPivot)
{
    Mesh* child = addMesh("C");
    child->parent = mesh;
    mesh->pivot = child->pivot = {5, 0, 0};
    addPositions(mesh, {{0, 1}});
    addTurns(mesh, {{0, 10}});
    addPositions(child, {{0, 2}});
    addTurns(child, {{0, 20}});
    GLRecorder gl(GLRecorder::swallow);
    EXPECT_EQ(group->doAnimation(child, child), 0);
    EXPECT_EQ(gl.calls(),
              (Calls{moved("1"), turned("10"), moved("2"), turned("20"), "glTranslatef(-5, -0, -0)"}));
}

TEST_F(OGroupAnimation, HierarchyInACircleEndsWhereItCloses)
{
    std::vector<Mesh*> chain = {mesh};
    addPositions(mesh, {{0, 0}});
    for (int i = 1; i < 7; ++i)
    {
        chain.push_back(addMesh("C"));
        addPositions(chain.back(), {{0, static_cast<float>(i)}});
        chain[static_cast<size_t>(i - 1)]->parent = chain.back();
    }
    for (size_t closes = 0; closes < 7; ++closes)
    {
        chain[6]->parent = chain[closes];
        GLRecorder gl(GLRecorder::swallow);
        EXPECT_EQ(group->doAnimation(mesh, mesh), 0);
        EXPECT_EQ(gl.calls(), (Calls{moved("6"), moved("5"), moved("4"), moved("3"), moved("2"), moved("1"),
                                     moved("0")}));
    }
    mesh->parent = mesh;
    GLRecorder gl(GLRecorder::swallow);
    group->doAnimation(mesh, mesh);
    EXPECT_EQ(gl.calls(), Calls{moved("0")});
}

TEST_F(OGroupAnimation, WithoutAnActiveListTheErrorIsLogged)
{
    group->activePathList = nullptr;
    GLRecorder gl(GLRecorder::swallow);
    EXPECT_EQ(group->doAnimation(mesh, mesh), 34);
    EXPECT_TRUE(logged("PathList used in functioncall is NULL!"));
    EXPECT_EQ(gl.calls(), Calls{});
    Camera camera;
    group->doCameraAnim(&camera);
    EXPECT_FALSE(group->doObjectAnim(mesh, mesh));
}

class CameraAnimation : public OGroupAnimation
{
protected:
    void play(int frame)
    {
        group->currentFrame = frame;
        group->doCameraAnim(&camera);
    }
    Camera camera;
};

TEST_F(CameraAnimation, EyeAndTargetGoStraightBetweenKeys)
{
    addPositions(&camera, {{0, 0}, {10, 20}}, VRK_NODE_TARGET);
    addPositions(&camera, {{0, 100}, {10, 200}}, VRK_NODE_CAMERA);
    play(5);
    EXPECT_EQ(camera.eye.x, 150.0f);
    EXPECT_EQ(camera.target.x, 10.0f);
    play(70000);
    EXPECT_EQ(camera.eye.x, 200.0f);
    EXPECT_EQ(camera.target.x, 20.0f);
}

TEST_F(CameraAnimation, UpToTheFirstKeyItHolds)
{
    addPositions(&camera, {{5, 100}, {10, 200}}, VRK_NODE_CAMERA);
    for (const int frame : {-100, 0, 5})
    {
        camera.eye.x = 1;
        play(frame);
        EXPECT_EQ(camera.eye.x, 100.0f);
    }
}

TEST_F(CameraAnimation, RollIsATrackOfItsOwn)
{
    VRKPath* roll = new VRKPath(2, VRK_NODE_OBJECT, VRK_TRACK_SCALAR, &camera);
    roll->set(0, 10.0f, 0);
    roll->set(1, 30.0f, 10);
    group->activePathList->addPath(roll);
    camera.roll = 77;
    play(0);
    EXPECT_EQ(camera.roll, 77.0f); // outside of any two keys it stays
    play(5);
    EXPECT_EQ(camera.roll, 20.0f);
    play(100);
    EXPECT_EQ(camera.roll, 30.0f);
    camera.roll = 77;
    play(65536);
    EXPECT_EQ(camera.roll, 77.0f);
}

TEST_F(CameraAnimation, WithoutTracksTheCameraStays)
{
    camera.eye = {1, 2, 3};
    addPositions(&camera, {{0, 9}}, VRK_NODE_OBJECT); // of another kind of node
    play(3);
    EXPECT_EQ(camera.eye.x, 1.0f);
    group->doCameraAnim(nullptr);
}

TEST_F(OGroupAnimation, WorldVerticesOfAStaticGroup)
{
    mesh->position = {10, 20, 30};
    mesh->rotation.z = 90;
    addPositions(mesh, {{0, 500}});
    group->transformVertices(mesh);
    for (int i = 0; i < 3; ++i)
    {
        const Vertex3D expected = mesh->calculatedVertex(i);
        EXPECT_EQ(mesh->transformedVertices[i].x, expected.x);
        EXPECT_EQ(mesh->transformedVertices[i].y, expected.y);
        EXPECT_EQ(mesh->transformedVertices[i].z, expected.z);
    }
}

TEST_F(OGroupAnimation, WorldVerticesOfAnAnimatedGroup)
{
    group->animated = 1;
    mesh->pivot = {1, 0, 0};
    addPositions(mesh, {{0, 50}});
    VRKPath* turns = addTurns(mesh, {{0, 0}});
    turns->set(0, -1, 0, 0, 90, 0); // about z
    group->transformVertices(mesh);
    EXPECT_NEAR(mesh->transformedVertices[0].x, 50, 1e-5); // on the pivot
    EXPECT_NEAR(mesh->transformedVertices[1].x, 48, 1e-5); // (-1, 2, 0) turned
    EXPECT_NEAR(mesh->transformedVertices[1].y, -1, 1e-5);
    float m[16];
    vrkTranslate(9, 9, 9); // does not matter
    group->getObjectAnimatedMatrix(mesh, m);
    EXPECT_NEAR(m[12], 50, 1e-5);
    EXPECT_NEAR(m[13], -1, 1e-5);
}

TEST_F(OGroupAnimation, MatricesUnderAView)
{
    vrkInitMatrix();
    vrkTranslate(100, 0, 0);
    mesh->position = {1, 2, 3};
    float modelView[16], projection[16], expected[16];
    int viewport[4];
    group->getObjectAnimatedMatrixWithCamera(mesh, modelView, projection, viewport);
    EXPECT_EQ(modelView[12], 101.0f);
    EXPECT_EQ(modelView[13], 2.0f);
    vrkGetProjectionMatrix(expected);
    EXPECT_EQ(projection[0], expected[0]);
    EXPECT_EQ(viewport[2], 64);
    vrkGetModelViewMatrix(modelView);
    EXPECT_EQ(modelView[12], 100.0f); // as the caller set it
}

TEST_F(OGroupAnimation, SilentEngineTransformsByNothing)
{
    vrkSelectedRasterizer = 7;
    mesh->position = {10, 20, 30};
    group->transformVertices(mesh);
    EXPECT_EQ(mesh->transformedVertices[1].y, 2.0f);
    group->transformVertices(nullptr);
    group->getObjectAnimatedMatrix(nullptr, nullptr);
    group->getObjectAnimatedMatrixWithCamera(nullptr, nullptr, nullptr, nullptr);
    vrkSelectedRasterizer = 0;
}

TEST_F(OGroupAnimation, TexturesStepAndWrap)
{
    EXPECT_EQ(group->animateTextures(), 0); // no list
    TList* list = new TList;
    group->addTList(list);
    Material* material = new Material;
    list->addMaterial(material);
    Texture* slots[4];
    for (Texture*& slot : slots)
    {
        slot = new Texture;
        slot->frameCount = 3;
    }
    slots[3]->frameCount = 1;
    material->addFirstTexture(slots[0]);
    material->addSecondTexture(slots[1]);
    material->addOpacityTexture(slots[2]);
    material->addReflectionTexture(slots[3]);
    for (const int expected : {1, 2, 0, 1})
    {
        EXPECT_EQ(group->animateTextures(), 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(slots[i]->currentFrame, expected);
        EXPECT_EQ(slots[3]->currentFrame, 0);
    }
    slots[0]->frameCount = 2; // the fewest that step
    slots[1]->currentFrame = INT_MAX;
    slots[2]->currentFrame = -2;
    group->animateTextures();
    EXPECT_EQ(slots[0]->currentFrame, 0);
    EXPECT_EQ(slots[1]->currentFrame, 0);
    EXPECT_EQ(slots[2]->currentFrame, -1);
    group->animateTextures();
    EXPECT_EQ(slots[0]->currentFrame, 1);
    for (Texture* slot : slots)
        slot->frameCount = 0;
}

TEST_F(OGroupAnimation, TextureInTwoSlotsStepsTwice)
{
    TList* list = new TList;
    group->addTList(list);
    Texture texture;
    texture.frameCount = 5;
    Material* material = list->first;
    material->firstTexture = material->secondTexture = &texture;
    group->animateTextures();
    EXPECT_EQ(texture.currentFrame, 2);
    material->firstTexture = material->secondTexture = nullptr;
    texture.frameCount = 0;
}
