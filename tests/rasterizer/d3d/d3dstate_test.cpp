#include "vornik/rasterizer/state.h"

#include <bit>
#include <cmath>

#include "rasterizer/d3d/constants.h"
#include "tests/support/d3drecorder.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/faces.h"
#include "vornik/rasterizer/fog.h"
#include "vornik/rasterizer/font.h"
#include "vornik/rasterizer/frustum.h"
#include "vornik/rasterizer/screenshot.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/transparent.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"

using Calls = std::vector<std::string>;

class D3DStateTest : public D3DRecorderTest
{
protected:
    void SetUp() override
    {
        D3DRecorderTest::SetUp();
        ASSERT_EQ(start(), 0);
        script.calls.clear();
    }

    // What a call makes the device hear.
    template <class Call>
    Calls heardBy(Call call)
    {
        script.calls.clear();
        call();
        return script.calls;
    }
};

static std::string bits(float value)
{
    return std::to_string(std::bit_cast<uint32_t>(value));
}

TEST_F(D3DStateTest, MatricesGoToTheStack)
{
    float m[16];
    vrkInitMatrix();
    vrkTranslate(10, 20, 30);
    vrkScale(2, 3, 4);
    vrkPushMatrix();
    vrkRotate(90, 0, 0, 5);
    vrkGetModelViewMatrix(m);
    EXPECT_NEAR(m[1], 3.0f, 1e-6f); // x turned to y, thrice as long
    EXPECT_NEAR(m[4], -2.0f, 1e-6f);
    EXPECT_EQ(m[12], 10.0f);
    vrkPopMatrix();
    double wide[16];
    vrkGetModelViewMatrix(wide);
    EXPECT_EQ(wide[0], 2.0);
    EXPECT_EQ(wide[5], 3.0);
    EXPECT_EQ(wide[14], 30.0);
    EXPECT_EQ(script.calls, Calls{}); // the device gets it with the next mesh
}

TEST_F(D3DStateTest, StagesTakeThreeStatesEach)
{
    EXPECT_EQ(d3d->setColorStage(1, d3d::selectArg1, d3d::argDiffuse, d3d::argTexture), 1);
    EXPECT_EQ(d3d->setAlphaStage(1, d3d::modulate, d3d::argTexture, d3d::argDiffuse), 1);
    const auto state = [](uint32_t kind, uint32_t value)
    { return "stage 1 " + std::to_string(kind) + " " + std::to_string(value); };
    EXPECT_EQ(script.calls,
              (Calls{state(d3d::colorArg1, d3d::argDiffuse), state(d3d::colorOp, d3d::selectArg1),
                     state(d3d::colorArg2, d3d::argTexture), state(d3d::alphaArg1, d3d::argTexture),
                     state(d3d::alphaOp, d3d::modulate), state(d3d::alphaArg2, d3d::argDiffuse)}));
}

TEST_F(D3DStateTest, MultMatrixTakesTheFirstSixteenFloats)
{
    float block[4][4][4];
    for (int i = 0; i < 64; ++i)
        block[i / 16][i / 4 % 4][i % 4] = static_cast<float>(i);
    vrkInitMatrix();
    vrkMultMatrix(block);
    float m[16];
    vrkGetModelViewMatrix(m);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(m[i], static_cast<float>(i));
    vrkMultMatrix(nullptr);
}

TEST_F(D3DStateTest, WhatHasNoMatrixLeavesTheBuffer)
{
    float f[16] = {5};
    double d[16] = {6};
    int v[4] = {7};
    vrkGetProjectionMatrix(f);
    vrkGetProjectionMatrix(d);
    vrkGetViewportMatrix(v);
    EXPECT_EQ(f[0], 5.0f);
    EXPECT_EQ(d[0], 6.0);
    EXPECT_EQ(v[0], 7);
}

TEST_F(D3DStateTest, AttributesAndMatrixTypesAreOpenGLs)
{
    EXPECT_EQ(heardBy(
                  []
                  {
                      vrkSetMatrixType(VRK_TEXTURE);
                      vrkPushAttrib(VRK_ENABLE_BIT);
                      vrkPopAttrib();
                  }),
              Calls{});
    vrkInitMatrix();
    vrkTranslate(1, 0, 0);
    float m[16];
    vrkGetModelViewMatrix(m);
    EXPECT_EQ(m[12], 1.0f); // still the one stack
}

TEST_F(D3DStateTest, CameraSetsTheViewWithoutItsRoll)
{
    Camera camera;
    camera.eye = {10, 0, 0};
    camera.target = {20, 0, 0};
    camera.roll = 45.0f;
    EXPECT_EQ(vrkLookWithCamera(&camera), 0);
    EXPECT_EQ(script.calls, (Calls{"transform 2"}));
    const std::vector<float> expected = {0, 0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -10, 1};
    for (int i = 0; i < 16; ++i)
        EXPECT_NEAR(script.transforms[d3d::view][size_t(i)], expected[size_t(i)], 1e-6f) << i;
    EXPECT_NEAR(d3d->viewMatrix[14], -10.0f, 1e-6f);
}

TEST_F(D3DStateTest, CameraOnItsTargetIsMoved)
{
    Camera camera;
    camera.eye = camera.target = {4, 5, 6};
    vrkLookWithCamera(&camera);
    EXPECT_EQ(camera.eye.x, 0.0f);
    EXPECT_EQ(camera.target.x, 5.0f);
    EXPECT_EQ(camera.target.z, 6.0f);
}

TEST_F(D3DStateTest, NullCameraIsReportedAndSetsNothing)
{
    EXPECT_EQ(vrkLookWithCamera(nullptr), 24);
    EXPECT_EQ(log(), "Camera used in functioncall is NULL!\n");
    EXPECT_EQ(script.calls, Calls{});
}

TEST_F(D3DStateTest, LookAtTakesItsOwnUp)
{
    vrkLookAt(0, 0, 0, 0, 0, 5, 0, 1, 0);
    EXPECT_EQ(script.transforms[d3d::view],
              (std::vector<float>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
}

TEST_F(D3DStateTest, FieldOfViewBuildsTheProjection)
{
    vrkViewport.aspect = 2.0f;
    vrkViewport.nearClip = 1.0f;
    vrkViewport.farClip = 3.0f;
    vrkSetFOV(90.0f);
    EXPECT_EQ(script.calls, (Calls{"transform 3"}));
    const std::vector<float>& m = script.transforms[d3d::projection];
    EXPECT_NEAR(m[0], 0.5f, 1e-6f);
    EXPECT_NEAR(m[5], 1.0f, 1e-6f);
    EXPECT_NEAR(m[10], 1.5f, 1e-6f);
    EXPECT_EQ(m[11], 1.0f);
    EXPECT_NEAR(m[14], -1.5f, 1e-6f);
    EXPECT_EQ(m[15], 0.0f);
}

TEST_F(D3DStateTest, ImpossibleProjectionIsSetAsItWas)
{
    const std::vector<float> before = script.transforms[d3d::projection];
    vrkSetFOV(0.0f);
    EXPECT_EQ(script.calls, (Calls{"transform 3"}));
    EXPECT_EQ(script.transforms[d3d::projection], before);
    EXPECT_EQ(vrkGetFOV(), 0.0f);
}

TEST_F(D3DStateTest, ViewportRebuildsTheProjectionOnly)
{
    const Viewport wide = {1000, 10, 100, 1, 10, 60};
    EXPECT_EQ(heardBy([&] { vrkSetViewport(&wide); }), (Calls{"transform 3"}));
}

TEST_F(D3DStateTest, SwitchesTakeTheIndex)
{
    const std::pair<int, std::pair<Calls, Calls>> expected[] = {
        {VRK_TEXTURE, {{}, {"texture 0 none"}}},           {VRK_TEXTURE_2D, {{}, {}}},
        {VRK_FOG, {{"state 28 1"}, {"state 28 0"}}},       {VRK_BLEND, {{"state 27 1"}, {"state 27 0"}}},
        {VRK_CULL_FACE, {{"state 22 3"}, {"state 22 1"}}}, {VRK_ALPHA_TEST, {{"state 15 1"}, {"state 15 0"}}},
        {VRK_DEPTH_TEST, {{"state 7 1"}, {"state 7 0"}}},
    };
    for (int index = 0; index < VRK_CONSTANT_COUNT; ++index)
    {
        Calls on, off;
        for (const auto& [constant, calls] : expected)
            if (constant == index)
                std::tie(on, off) = calls;
        EXPECT_EQ(heardBy([=] { EXPECT_EQ(vrkEnable(index), 0); }), on) << index;
        EXPECT_EQ(heardBy([=] { EXPECT_EQ(vrkDisable(index), 0); }), off) << index;
    }
}

TEST_F(D3DStateTest, SwitchesAreReadByTheTranslatedValue)
{
    for (int index = 0; index < VRK_CONSTANT_COUNT; ++index)
        vrkEnable(index);
    for (const int index : {VRK_FOG, VRK_BLEND, VRK_CULL_FACE, VRK_DEPTH_TEST})
    {
        EXPECT_TRUE(vrkIsEnabled(index)) << index;
        vrkDisable(index);
        EXPECT_FALSE(vrkIsEnabled(index)) << index;
        vrkEnable(index);
    }
    // The alpha test is on, yet its constant translates to 15, which is nothing's number.
    EXPECT_EQ(script.renderStates[d3d::alphaTestEnable], 1u);
    EXPECT_FALSE(vrkIsEnabled(VRK_ALPHA_TEST));
    EXPECT_FALSE(vrkIsEnabled(VRK_TEXTURE));
    EXPECT_FALSE(vrkIsEnabled(VRK_TEXTURE_2D));
    // Constants that translate to a switch's number ask that switch.
    EXPECT_TRUE(vrkIsEnabled(VRK_SRC_ALPHA)); // 5, blending
    EXPECT_TRUE(vrkIsEnabled(VRK_GEQUAL));    // 7, culling
    vrkDisable(VRK_BLEND);
    EXPECT_FALSE(vrkIsEnabled(VRK_SRC_ALPHA));
    for (const int outside : {-1, 34, 1 << 30})
        EXPECT_FALSE(vrkIsEnabled(outside));
}

TEST_F(D3DStateTest, AlphaTestIsReadByTheNumberTen)
{
    vrkConvertCapTableOGL[15] = 10; // a free place of the table, which the next start fills anew
    vrkEnable(VRK_ALPHA_TEST);
    EXPECT_TRUE(vrkIsEnabled(15));
    vrkDisable(VRK_ALPHA_TEST);
    EXPECT_FALSE(vrkIsEnabled(15));
}

TEST_F(D3DStateTest, OnlyExactlyOneCountsAsOn)
{
    for (const auto& [constant, state] : {std::pair{VRK_FOG, d3d::fogEnable},
                                          {VRK_BLEND, d3d::alphaBlendEnable},
                                          {VRK_DEPTH_TEST, d3d::zEnable}})
    {
        script.renderStates[state] = 2;
        EXPECT_FALSE(vrkIsEnabled(constant));
    }
    script.renderStates[d3d::cullMode] = 2;
    EXPECT_FALSE(vrkIsEnabled(VRK_CULL_FACE));
}

TEST_F(D3DStateTest, StatesTakeTranslatedConstants)
{
    EXPECT_EQ(heardBy([] { vrkShadeModel(VRK_FLAT); }), (Calls{"state 9 1"}));
    EXPECT_EQ(heardBy([] { vrkShadeModel(VRK_SMOOTH); }), (Calls{"state 9 2"}));
    EXPECT_EQ(heardBy([] { vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA); }),
              (Calls{"state 19 5", "state 20 6"}));
    EXPECT_EQ(heardBy([] { vrkBlendFunc(VRK_DST_COLOR, VRK_ZERO); }), (Calls{"state 19 9", "state 20 1"}));
    EXPECT_EQ(heardBy([] { vrkBlendFunc(VRK_DST_ALPHA, VRK_SRC_COLOR); }),
              (Calls{"state 19 7", "state 20 3"}));
    EXPECT_EQ(heardBy([] { vrkDepthFunc(VRK_LEQUAL); }), (Calls{"state 23 4"}));
    EXPECT_EQ(heardBy([] { vrkDepthFunc(VRK_EQUAL); }), (Calls{"state 23 3"}));
    EXPECT_EQ(heardBy([] { vrkDepthFunc(VRK_GEQUAL); }), (Calls{"state 23 7"}));
    EXPECT_EQ(heardBy([] { vrkDepthMask(VRK_FALSE); }), (Calls{"state 14 0"}));
    EXPECT_EQ(heardBy([] { vrkDepthMask(VRK_TRUE); }), (Calls{"state 14 1"}));
    EXPECT_EQ(heardBy(
                  []
                  {
                      vrkShadeModel(-1);
                      vrkBlendFunc(VRK_ONE, 34);
                      vrkBlendFunc(99, VRK_ONE);
                      vrkDepthFunc(34);
                      vrkDepthMask(-5);
                      vrkAlphaFunc(77, 0.5f);
                  }),
              Calls{});
}

TEST_F(D3DStateTest, AlphaReferenceIsCutAndLimitedAsUnsigned)
{
    const std::pair<float, std::string> references[] = {{0.5f, "127"},  {1.0f, "255"},  {2.0f, "255"},
                                                        {-1.0f, "255"}, {-0.001f, "0"}, {0.0f, "0"},
                                                        {NAN, "0"},     {1e30f, "255"}};
    for (const auto& [reference, text] : references)
        EXPECT_EQ(heardBy([&, r = reference] { vrkAlphaFunc(VRK_GREATER, r); }),
                  (Calls{"state 24 " + text, "state 25 5"}))
            << reference;
}

TEST_F(D3DStateTest, ClearColorForcesTheRecord)
{
    Color c = {2.0f, -1.0f, 0.5f, 3.0f};
    vrkSetClearColor(&c);
    EXPECT_EQ(c.r, 1.0f);
    EXPECT_EQ(c.g, 0.0f);
    EXPECT_EQ(c.b, 0.5f);
    EXPECT_EQ(c.a, 1.0f);
    EXPECT_EQ(heardBy([] { vrkClear(); }), (Calls{"clear 3 fcfc007e 1"}));
    c = {std::nextafter(1.0f, 2.0f), -1e-30f, 0.0f, 1.0f};
    vrkSetClearColor(&c);
    EXPECT_EQ(c.r, 1.0f);
    EXPECT_EQ(c.g, 0.0f);
    EXPECT_EQ(heardBy([] { vrkClear(); }), (Calls{"clear 3 fcfc0000 1"}));
    vrkSetClearColor(nullptr);
}

TEST_F(D3DStateTest, LinearFog)
{
    EXPECT_EQ(heardBy(
                  [] {
                      EXPECT_EQ(vrkSetFog({1.0f, 0.5f, 0.0f, 1.0f}, 10.0f, 20.0f), 0);
                  }),
              (Calls{"state 28 1", "state 28 1", "state 140 0", "state 35 3", "state 36 " + bits(10.0f),
                     "state 37 " + bits(20.0f), "state 34 " + std::to_string(0xFFFF7F00u)}));
}

TEST_F(D3DStateTest, FogByDensity)
{
    EXPECT_EQ(heardBy(
                  [] {
                      EXPECT_EQ(vrkSetFog({0.0f, 0.0f, 1.0f, 0.0f}, 0.25f), 0);
                  }),
              (Calls{"state 28 1", "state 28 1", "state 140 0", "state 35 2", "state 38 " + bits(0.25f),
                     "state 34 255"}));
}

TEST_F(D3DStateTest, FogEndSetsTheStart)
{
    EXPECT_EQ(heardBy([] { vrkSetFogDensity(0.5f); }), (Calls{"state 38 " + bits(0.5f)}));
    EXPECT_EQ(heardBy([] { vrkSetFogStart(3.0f); }), (Calls{"state 36 " + bits(3.0f)}));
    EXPECT_EQ(heardBy([] { vrkSetFogEnd(4.0f); }), (Calls{"state 36 " + bits(4.0f)}));
}

TEST_F(D3DStateTest, FacesListsAndReadingAreOpenGLs)
{
    char buffer[16] = "as it was";
    EXPECT_EQ(heardBy(
                  [&]
                  {
                      EXPECT_EQ(vrkGenLists(3), 0);
                      EXPECT_EQ(vrkIsList(0), 0);
                      EXPECT_EQ(vrkIsList(1), 0);
                      vrkNewList(1, VRK_COMPILE);
                      vrkEndList();
                      vrkCallList(1);
                      vrkDeleteLists(1, 1);
                      vrkRenderList(nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
                      vrkRenderBasic(nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0);
                      vrkGetBuffer(buffer, 2, 2);
                      EXPECT_FALSE(vrkIsVisible(1, 1, 0));
                      EXPECT_EQ(vrkInitFont(), 0);
                  }),
              Calls{});
    EXPECT_STREQ(buffer, "as it was");
}

TEST_F(D3DStateTest, TransparentStackIsDroppedUnderItsSwitches)
{
    Color colors[3] = {};
    Vertex2D coords[3] = {};
    Vertex3D vertices[3] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, normals[3] = {}, origin = {};
    Facelist face = {0, 1, 2};
    Material material;
    Camera camera;
    camera.eye = {0, 0, 5};
    vrkInitTransparentPlaneStack(4);
    vrkAddTransparentFace(colors, coords, vertices, normals, &face, 0, 0, &material, &origin);
    EXPECT_EQ(heardBy([&] { vrkDrawTransparentPlanes(&camera); }),
              (Calls{"state 22 1", "state 27 1", "state 19 5", "state 20 6", "state 22 3"}));
    vrkUnInitTransparentPlaneStack();
}

TEST_F(D3DStateTest, TextIsTheWindowSystems)
{
    Color c = {1.0f, 0.5f, 0.0f, 0.0f};
    EXPECT_EQ(heardBy([&] { vrkWrite(3.9f, 7.2f, &c, "%d words", 2); }), (Calls{"text 3 7 32767 2 words"}));
    EXPECT_EQ(heardBy([&] { vrkWrite(0, 0, &c, "%s", std::string(3000, 'x').c_str()); }).front().size(),
              std::string("text 0 0 32767 ").size() + 1024);
}
