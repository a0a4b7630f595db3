#include <cmath>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"

using Calls = std::vector<std::string>;

// A window of 200 by 200 pixels on the view from the origin along -z, and a glow of a green material in its
// middle, 5 away. 50 frames a second.
class Glow : public EngineTest
{
protected:
    Glow() : EngineTest(200, 200) {}

    void SetUp() override
    {
        EngineTest::SetUp();
        list.addMaterial(material = new Material);
        material->addDiffuseColor(&green);
        material->makeTextureFromColor();
        mesh.reset(makeMesh("glow", {{0, 0, -5}}, {{0, 0, 0}}));
        mesh->faceMaterials[0].materialIndex = 1;
        mesh->setSpecial(1);
        vrkInitMatrix();
        vrkSetFPS(50);
    }

    void frames(int count)
    {
        for (int i = 0; i < count; ++i)
            mesh->render(VRK_RENDER_SPECIAL, &list);
    }

    // A red wall over the left half of the window, z away.
    void drawWall(float z)
    {
        const std::unique_ptr<Mesh> wall(
            makeMesh("wall", {{-9, -9, 0}, {0.2f, -9, 0}, {0.2f, 9, 0}, {-9, 9, 0}}, {{0, 1, 2}, {0, 2, 3}}));
        Material* paint = new Material;
        TList paints;
        paints.addMaterial(paint);
        paint->addDiffuseColor(&red);
        paint->makeTextureFromColor();
        for (int i = 0; i < 4; ++i)
        {
            wall->calculatedVertices[i].z = z;
            wall->vertexColors[i] = {1, 1, 1, 1};
        }
        for (int i = 0; i < 2; ++i)
            wall->faceMaterials[i].materialIndex = 1;
        wall->sortFacesByMaterial();
        wall->renderNonTransparent(VRK_RENDER_SOLID, &paints);
    }

    Color green = {0, 1, 0, 1};
    Color red = {1, 0, 0, 1};
    TList list;
    Material* material = nullptr;
    std::unique_ptr<Mesh> mesh;
};

TEST_F(Glow, AsksTheDepthAtItsPlaceAndAddsAnImageThere)
{
    mesh->originalVertices[0] = {1, 0.5f, -5}; // a fifth of the way to the right, a tenth up
    mesh->specialFade = 0.5f;
    GLRecorder gl;
    EXPECT_EQ(mesh->renderSpecial(0, &list), 0);
    EXPECT_EQ(gl.only({"gluProject", "glReadPixels", "glBlendFunc", "glBindTexture", "glColor4f", "glBegin"})
                  .size(),
              6u);
    const Calls order =
        gl.only({"glReadPixels", "glBlendFunc", "glTranslatef", "glBindTexture", "glColor4f"});
    ASSERT_EQ(order.size(), 5u);
    EXPECT_EQ(gl.calls()[3].rfind("gluProject(1, 0.5, -5,", 0), 0u);
    EXPECT_EQ(order[0].substr(order[0].find(", 1, 1, ")), ", 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, ptr)");
    EXPECT_EQ(order[1], "glBlendFunc(GL_SRC_ALPHA, GL_ONE)");
    EXPECT_EQ(order[3],
              "glBindTexture(GL_TEXTURE_2D, " + std::to_string(material->firstTexture->textureIDs[0]) + ")");
    EXPECT_EQ(order[4], "glColor4f(1, 1, 1, 0.52)");
    EXPECT_EQ(gl.countExact("glVertex3f(-50, -50, 0)"), 1);
    EXPECT_EQ(gl.countExact("glVertex3f(50, 50, 0)"), 1);
    const Vertex3D& p = mesh->calculatedVertices[0];
    EXPECT_NEAR(p.x, 120, 1e-3f);
    EXPECT_NEAR(p.y, 110, 1e-3f); // from the bottom
    EXPECT_EQ(mesh->originalVertices[0].x, 1);
}

TEST_F(Glow, ComesUpInASecondAndGoesInHalfOfOne)
{
    frames(1);
    EXPECT_NEAR(mesh->specialFade, 0.02f, 1e-6f);
    frames(24);
    EXPECT_NEAR(mesh->specialFade, 0.5f, 1e-6f);
    frames(25);
    EXPECT_NEAR(mesh->specialFade, 1.0f, 1e-6f);
    frames(10);
    EXPECT_EQ(mesh->specialFade, 1.0f);

    drawWall(-2);
    frames(1);
    EXPECT_NEAR(mesh->specialFade, 0.96f, 1e-6f);
    frames(23);
    EXPECT_NEAR(mesh->specialFade, 0.04f, 1e-6f);
    frames(1);
    EXPECT_EQ(mesh->specialFade, 0.0f);
    GLRecorder gl;
    frames(1);
    EXPECT_EQ(mesh->specialFade, 0.0f);
    EXPECT_EQ(gl.count("glBlendFunc"), 0);
    EXPECT_EQ(gl.count("glBegin"), 0);
}

TEST_F(Glow, IsSeenBeforeAWallAndNotBehindIt)
{
    drawWall(-6);
    vrkInitMatrix();
    frames(25);
    // Half strength of the last frames added up over the wall; the image is 100 by 100 about the middle.
    EXPECT_GT(pixel(90, 90).g, 200);
    EXPECT_EQ(pixel(90, 90).r, 255);
    EXPECT_GT(pixel(149, 149).g, 200);
    EXPECT_EQ(pixel(149, 149).r, 0);
    EXPECT_GT(pixel(50, 50).g, 200);
    EXPECT_EQ(pixel(49, 100).g, 0);
    EXPECT_EQ(pixel(150, 100).g, 0);
    EXPECT_EQ(pixel(100, 49).g, 0);
    EXPECT_EQ(pixel(100, 150).g, 0);

    vrkClear();
    mesh->specialFade = 0;
    drawWall(-4);
    vrkInitMatrix();
    frames(25);
    EXPECT_TRUE(pixelIs(90, 90, {255, 0, 0, 255}));
    EXPECT_TRUE(pixelIs(120, 90, {0, 0, 0, 255}));
}

TEST_F(Glow, OneFrameAddsItsStrengthToThePicture)
{
    drawWall(-6);
    vrkInitMatrix();
    mesh->specialFade = 0.48f;
    frames(1);
    EXPECT_TRUE(pixelIs(90, 90, {255, 128, 0, 255}, 2));
    EXPECT_TRUE(pixelIs(120, 90, {0, 128, 0, 255}, 2));
}

TEST_F(Glow, IsGoneAtOnceOffTheWindow)
{
    const Vertex3D outside[] = {{-6, 0, -5}, {6, 0, -5}, {0, -6, -5}, {0, 6, -5}};
    for (const Vertex3D& place : outside)
    {
        mesh->originalVertices[0] = place;
        mesh->specialFade = 0.75f;
        GLRecorder gl;
        frames(1);
        EXPECT_EQ(mesh->specialFade, 0.0f);
        EXPECT_EQ(gl.count("glReadPixels"), 0);
        EXPECT_EQ(gl.count("glBegin"), 0);
    }
}

TEST_F(Glow, TheWindowEndsBeforeItsWidthAndHeight)
{
    mesh->originalVertices[0] = {1, 0.5f, -5}; // 120, 110
    frames(1);
    const Vertex3D p = mesh->calculatedVertices[0];
    for (float* side : {&vrkViewport.width, &vrkViewport.height})
    {
        const float whole = *side;
        *side = side == &vrkViewport.width ? p.x : p.y;
        mesh->specialFade = 0.5f;
        frames(1);
        EXPECT_EQ(mesh->specialFade, 0.0f);
        *side = std::nextafter(*side, 1000.0f);
        frames(1);
        EXPECT_GT(mesh->specialFade, 0.0f);
        *side = whole;
    }
}

// In front of the near plane it starts anew in every frame, seen as it is.
TEST_F(Glow, StaysAtItsFirstStepNearerThanTheNearPlane)
{
    mesh->originalVertices[0] = {0, 0, -0.005f};
    mesh->specialFade = 0.75f;
    frames(1);
    EXPECT_LT(mesh->calculatedVertices[0].z, 0);
    EXPECT_NEAR(mesh->specialFade, 0.02f, 1e-6f);
    frames(5);
    EXPECT_NEAR(mesh->specialFade, 0.02f, 1e-6f);
}

TEST_F(Glow, BehindTheEyeItFades)
{
    mesh->originalVertices[0] = {0, 0, 5};
    mesh->specialFade = 0.5f;
    frames(1);
    EXPECT_NEAR(mesh->specialFade, 0.46f, 1e-6f);
}

TEST_F(Glow, WithoutAFrameRateItComesAndGoesAtOnce)
{
    vrkSetFPS(0);
    frames(1);
    EXPECT_EQ(mesh->specialFade, 1.0f);
    drawWall(-2);
    frames(1);
    EXPECT_EQ(mesh->specialFade, 0.0f);
}

TEST_F(Glow, OnlyItsFlagDrawsIt)
{
    GLRecorder gl;
    mesh->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT | VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_EFFECT,
                 &list);
    EXPECT_EQ(gl.calls(), Calls{});

    // And under its flag no other pass runs, not even for one that was made visible again.
    mesh->visible = 1;
    mesh->sortFacesByMaterial();
    EXPECT_EQ(mesh->render(VRK_RENDER_SPECIAL | VRK_RENDER_SOLID, &list), 0);
    EXPECT_EQ(gl.count("gluProject"), 1);
    EXPECT_EQ(gl.count("glDrawElements"), 0);
    gl.clear();
    mesh->render(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(gl.count("glDrawElements"), 1);
    gl.clear();
    mesh->special = 0;
    mesh->render(VRK_RENDER_SPECIAL | VRK_RENDER_SOLID, &list);
    EXPECT_EQ(gl.count("gluProject"), 0);
    EXPECT_EQ(gl.count("glDrawElements"), 1);
}

TEST_F(Glow, OtherKindsOfSpecialMeshesDrawNothing)
{
    for (const int kind : {0, 2, -1})
    {
        mesh->setSpecial(kind);
        GLRecorder gl;
        frames(1);
        EXPECT_EQ(gl.calls(), Calls{});
        EXPECT_EQ(mesh->calculatedVertices[0].z, -5);
    }
}

TEST_F(Glow, OtherRasterizersDrawNone)
{
    for (const int number : {1, 7})
    {
        vrkSelectedRasterizer = number;
        GLRecorder gl;
        frames(1);
        mesh->renderSpecial(0, &list);
        EXPECT_EQ(gl.calls(), Calls{});
    }
}

TEST_F(Glow, LeavesItsBlendFunctionAndTheSwitchesAsTheyWere)
{
    vrkBlendFunc(VRK_ONE, VRK_ZERO);
    frames(1);
    EXPECT_FALSE(vrkIsEnabled(VRK_BLEND));
    EXPECT_TRUE(vrkIsEnabled(VRK_DEPTH_TEST));
    EXPECT_TRUE(vrkIsEnabled(VRK_CULL_FACE));
    EXPECT_TRUE(vrkIsEnabled(VRK_TEXTURE_2D));
    EXPECT_FALSE(vrkIsEnabled(VRK_FOG));
}

// The image call loads an identity; the mesh behind it in the group still finds the view.
TEST_F(Glow, ItsGroupGoesOnWithTheView)
{
    Camera camera;
    camera.eye = {0, 0, 0};
    camera.target = {0, 10, 0};
    OGroup group;
    TList* materials = new TList;
    Material* image = new Material;
    materials->addMaterial(image);
    image->addDiffuseColor(&green);
    image->makeTextureFromColor();
    group.addTList(materials);
    group.activeTList = materials;
    Mesh* glow = makeMesh("glow", {{0, 0, 0}}, {{0, 0, 0}}, {0, 5, 0});
    Mesh* square = makeMesh("square", {{-1, 0, -1}, {1, 0, -1}, {1, 0, 1}, {-1, 0, 1}},
                            {{0, 1, 2}, {0, 2, 3}}, {0, 8, 0});
    for (Mesh* each : {glow, square})
    {
        for (int i = 0; i < each->faceCount; ++i)
            each->faceMaterials[i].materialIndex = 1;
        for (int i = 0; i < each->vertexCount; ++i)
            each->vertexColors[i] = {1, 1, 1, 1};
        each->sortFacesByMaterial();
        group.addMesh(each);
    }
    glow->setSpecial(1);
    glow->specialFade = 1;
    vrkLookWithCamera(&camera);
    group.render(VRK_RENDER_SPECIAL | VRK_RENDER_SOLID, &camera);
    EXPECT_NEAR(glow->calculatedVertices[0].x, 100, 1e-3f); // by its position in the group
    EXPECT_NEAR(glow->calculatedVertices[0].y, 100, 1e-3f);
    EXPECT_NEAR(depth(100, 100), 0.99876f, 1e-4f); // of the square, 8 away
    EXPECT_EQ(depth(130, 100), 1.0f);
    EXPECT_TRUE(pixelIs(130, 130, {0, 255, 0, 255}, 1)); // of the glow
}

TEST_F(Glow, MissingPartsDrawNothing)
{
    mesh->specialFade = 0.5f;
    GLRecorder gl;
    mesh->renderSpecial(0, nullptr);
    mesh->faceMaterials[0].materialIndex = 77; // no such material
    frames(1);
    mesh->createFaces(0);
    frames(1);
    mesh->destroyFaces();
    frames(1);
    EXPECT_EQ(gl.count("glBegin"), 0);
    mesh->createVertices(0);
    frames(1);
    Mesh bare;
    bare.setSpecial(1);
    EXPECT_EQ(bare.renderSpecial(0, &list), 0);
    bare.vertexCount = 1;
    EXPECT_EQ(bare.renderSpecial(0, &list), 0);
}

TEST_F(Glow, LevelWithTheEyeItIsOffTheWindow)
{
    mesh->originalVertices[0] = {3, 2, 0};
    mesh->specialFade = 0.5f;
    GLRecorder gl;
    frames(1);
    EXPECT_EQ(mesh->specialFade, 0.0f);
    EXPECT_EQ(gl.count("glBegin"), 0);
}

TEST_F(Glow, APlaceThatIsNoNumberIsOffTheWindow)
{
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    mesh->originalVertices[0] = {nothing, 0, -5};
    mesh->specialFade = 0.5f;
    GLRecorder gl;
    frames(1);
    EXPECT_EQ(mesh->specialFade, 0.0f);
    EXPECT_EQ(gl.count("glBegin"), 0);
}
