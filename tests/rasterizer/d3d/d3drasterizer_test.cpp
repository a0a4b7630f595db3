#include "rasterizer/d3d/d3drasterizer.h"

#include <algorithm>
#include <cmath>

#include "rasterizer/d3d/constants.h"
#include "tests/support/d3drecorder.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"

using Calls = std::vector<std::string>;
using D3DRasterizerTest = D3DRecorderTest;

static const int expectedTable[VRK_CONSTANT_COUNT] = {0, 1, 2, 3, 4, 5, 6, 7, 1, 2, 15, 11, 12, 13, 14, 0, 0,
                                                      0, 5, 7, 2, 6, 9, 3, 1, 3, 4, 7,  0,  1,  30, 31, 5, 0};

TEST_F(D3DRasterizerTest, BeginsUnready)
{
    EXPECT_EQ(d3d->ready, 0);
    EXPECT_EQ(d3d->active, 0);
    EXPECT_EQ(d3d->useDepthBuffer, 1);
    EXPECT_EQ(d3d->device, nullptr);
    EXPECT_FALSE(d3d->matrixStack);
    EXPECT_EQ(d3d->selectedDevice, nullptr);
}

TEST_F(D3DRasterizerTest, SelectingFillsTheTableAndKeepsTheObject)
{
    std::fill(std::begin(vrkConvertCapTableOGL), std::end(vrkConvertCapTableOGL), -1);
    EXPECT_EQ(vrkSelectRasterizer(1), 0);
    EXPECT_EQ(vrkDirect3D, d3d);
    for (int i = 0; i < VRK_CONSTANT_COUNT; ++i)
        EXPECT_EQ(vrkConvertCapTableOGL[i], expectedTable[i]) << "constant " << i;
}

TEST_F(D3DRasterizerTest, StartFillsTheTableAgain)
{
    std::fill(std::begin(vrkConvertCapTableOGL), std::end(vrkConvertCapTableOGL), 1);
    ASSERT_EQ(start(), 0);
    EXPECT_TRUE(std::equal(std::begin(expectedTable), std::end(expectedTable), vrkConvertCapTableOGL));
}

TEST_F(D3DRasterizerTest, StartMakesWindowedSurfacesWithDepth)
{
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(script.only({"create"}), (Calls{"create windowed plain"}));
    EXPECT_TRUE(script.request.depthBuffer);
    EXPECT_FALSE(script.request.stereo);
    EXPECT_EQ(d3d->ready, 1);
    EXPECT_EQ(d3d->active, 1);
    EXPECT_NE(d3d->device, nullptr);
    EXPECT_TRUE(d3d->matrixStack);
    EXPECT_EQ(d3d->backBufferDescription.width, 64u);
    EXPECT_EQ(d3d->backBufferDescription.format.bits, 32u);
}

TEST_F(D3DRasterizerTest, WithoutTheWishThereIsNoDepthBuffer)
{
    d3d->useDepthBuffer = 0;
    ASSERT_EQ(start(), 0);
    EXPECT_FALSE(script.request.depthBuffer);
}

TEST_F(D3DRasterizerTest, FullScreenTakesTheModeOfTheSize)
{
    script.drivers[0].modes.push_back({640, 480, 32, 85});
    ASSERT_EQ(start(true, 0, false), 0);
    EXPECT_EQ(script.only({"create"}), (Calls{"create full transform"}));
    EXPECT_EQ(script.request.record->fullScreenMode, (D3DMode{640, 480, 32, 85}));
    EXPECT_FALSE(script.request.record->windowed);
    EXPECT_EQ(d3d->useTnL, 1);
}

TEST_F(D3DRasterizerTest, UnlistedSizeRunsInTheDefaultMode)
{
    ASSERT_EQ(start(false, 0, false, 24), 0);
    EXPECT_EQ(script.request.record->fullScreenMode, (D3DMode{640, 480, 16, 60}));
}

TEST_F(D3DRasterizerTest, DefaultStateInItsOrder)
{
    ASSERT_EQ(start(), 0);
    const Calls expected = {
        "create windowed plain",
        "material 0 0 0 1 0 0 0 1",
        "transform 2",
        "transform 3",
        "state 139 0",         // ambient
        "state 19 2",          // blend one
        "state 20 2",          //
        "state 7 1",           // depth test
        "state 15 1",          // alpha test
        "state 24 127",        // alpha reference
        "state 25 5",          // greater
        "state 9 2",           // smooth
        "state 137 0",         // lighting
        "state 26 0",          // dither
        "state 29 0",          // specular
        "stage 0 2 2",         // texture
        "stage 0 1 4",         // modulated
        "stage 0 3 0",         // by diffuse
        "stage 0 5 2",         // alpha of texture
        "stage 0 4 2",         // alone
        "stage 0 6 0",         //
        "stage 0 17 2",        // minifying linear
        "stage 0 16 2",        // magnifying linear
        "stage 0 18 3",        // mip linear
        "stage 0 12 1",        // wrap
        "state 28 1",          // fog on
        "state 28 1",          //
        "state 140 0",         // no vertex fog
        "state 35 2",          // squared exponential
        "state 38 1008981770", // 0.01f
        "state 34 2139062143", // 0x7F7F7F7F
        "state 28 0",          // fog off
    };
    EXPECT_EQ(script.calls, expected) << script.text();

    const std::vector<float>& projection = script.transforms[d3d::projection];
    const double height = std::cos(0.785) / std::sin(0.785);
    EXPECT_NEAR(projection[0], height, 1e-5);
    EXPECT_NEAR(projection[5], height, 1e-5);
    EXPECT_NEAR(projection[10], 500.0 / 499.0, 1e-6);
    EXPECT_NEAR(projection[14], -500.0 / 499.0, 1e-6);
}

TEST_F(D3DRasterizerTest, MipFilterFollowsTheMipMapType)
{
    vrkSetMipMapType(0);
    ASSERT_EQ(start(), 0);
    EXPECT_TRUE(script.heard("stage 0 18 2"));
    EXPECT_FALSE(script.heard("stage 0 18 3"));
}

TEST_F(D3DRasterizerTest, ViewOfBeforeTheStartIsSet)
{
    vrkLookAt(0, 0, 0, 1, 0, 0, 0, 0, 1);
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(script.transforms[d3d::view][2], 1.0f);
    EXPECT_EQ(script.transforms[d3d::view][4], 1.0f);
}

TEST_F(D3DRasterizerTest, FailuresBeforeTheSurfacesAreShownAndReturned)
{
    const auto expectFailure = [this](uint32_t code, const char* text)
    {
        script.calls.clear();
        EXPECT_EQ(static_cast<uint32_t>(start()), code);
        EXPECT_EQ(script.calls, (Calls{"box Id3d"}));
        EXPECT_EQ(script.boxText, text + std::string("\n\nThis application will now exit."));
        EXPECT_FALSE(script.boxWarning);
        EXPECT_EQ(d3d->active, 0);
        EXPECT_EQ(script.surfacesAlive, 0);
    };
    script.noSurfaces = true;
    expectFailure(0x8007000E, "Not enough memory!");
    script.drivers[0].devices.resize(1);
    expectFailure(0x81000004, "Could not find any compatible Direct3D\ndevices.");
    script.drivers[0].devices.clear();
    expectFailure(0x81000003, "Could not find any compatible devices.\n\n");
    script.drivers.clear();
    expectFailure(0x81000002,
                  "Enumeration failed. Your system may be in an\nunstable state and need to be rebooted");
    script.enumerateResult = 0x80004005;
    expectFailure(0x80004005, "Generic application error.\n\nEnable debug output for detailed information.");
}

TEST_F(D3DRasterizerTest, FailedSurfacesAreShownReleasedAndAnswerFail)
{
    script.createResult = 0x82000004;
    EXPECT_EQ(static_cast<uint32_t>(start()), 0x80004005u);
    EXPECT_EQ(script.calls, (Calls{"create windowed plain", "box Id3d", "release"}));
    EXPECT_TRUE(script.boxText.ends_with("\nUnable to initialize 3D hardware"));
    EXPECT_TRUE(script.boxWarning);
    EXPECT_EQ(script.surfacesAlive, 0);
    EXPECT_EQ(d3d->ready, 0);
    EXPECT_EQ(d3d->active, 0);
    EXPECT_FALSE(d3d->surfaces);
}

TEST_F(D3DRasterizerTest, AnyFailureIsNumber53InTheLog)
{
    vrkInitErrorLog(folder.path("log").c_str());
    script.drivers.clear();
    EXPECT_EQ(vrkInitViewport(nullptr, 32, 8, 24, false, 0, true), 53);
    EXPECT_EQ(log(), "Fatal! DX has run out of memory!\n");
}

TEST_F(D3DRasterizerTest, StartSetsTheViewportAndTheProjection)
{
    vrkViewport.fov = 12.0f;
    EXPECT_EQ(vrkInitViewport(nullptr, 32, 8, 24, false, 0, true), 0);
    EXPECT_EQ(vrkViewport.nearClip, 0.01f);
    EXPECT_EQ(vrkViewport.farClip, 100000.0f);
    EXPECT_EQ(vrkViewport.fov, 90.0f);
    EXPECT_EQ(script.calls.back(), "transform 3");
    EXPECT_EQ(script.count("transform 3"), 2);
    EXPECT_NEAR(script.transforms[d3d::projection][5], 1.0f, 1e-6f);
}

TEST_F(D3DRasterizerTest, WhatTheHostAsksForReachesTheDevice)
{
    D3DDriverReport second = desktopDriver();
    second.primary = false;
    second.guid = {1, 2, 3, {}};
    script.drivers[0].modes = {{0, 0, 16, 1}, {0, 0, 32, 2}}; // a null window is 0 by 0
    script.drivers.push_back(second);
    ASSERT_EQ(vrkInitViewport(nullptr, 32, 16, 16, true, 0, false), 0);
    EXPECT_EQ(script.only({"create"}), (Calls{"create full transform"}));
    EXPECT_EQ(script.request.record->fullScreenMode, (D3DMode{0, 0, 32, 2}));
    EXPECT_EQ(d3d->useTnL, 1);
    EXPECT_EQ(d3d->secondaryDevice, 0);

    Console console;
    script.calls.clear();
    ASSERT_EQ(initVornik(1, nullptr, &console, 16, 32, 32, 25, false, 1, true), 0);
    EXPECT_EQ(script.only({"create"}), (Calls{"create windowed plain"}));
    ASSERT_NE(script.request.record->driver, nullptr);
    EXPECT_EQ(*script.request.record->driver, second.guid);
    EXPECT_EQ(d3d->useTnL, 0);
    EXPECT_EQ(d3d->secondaryDevice, 1);
    EXPECT_EQ(vrkGetFPS(), 25);
}

TEST_F(D3DRasterizerTest, SurfacesAreMadeForTheHostsWindow)
{
    char anything = 0;
    const VRKWindow window = reinterpret_cast<VRKWindow>(&anything); // is only handed on
    ASSERT_EQ(d3d->initialize(window, 640, 480, 32, false, 0, true), 0u);
    EXPECT_EQ(script.request.window, window);
    EXPECT_EQ(d3d->window, window);
}

TEST_F(D3DRasterizerTest, ShutdownReleasesOnceAndForgetsTheModes)
{
    ASSERT_EQ(start(), 0);
    const D3DDeviceRecord* record = d3d->selectedDevice;
    EXPECT_FALSE(record->modes.empty());
    script.calls.clear();
    vrkUnInit3D();
    EXPECT_EQ(script.calls, (Calls{"release"}));
    EXPECT_EQ(script.surfacesAlive, 0);
    EXPECT_TRUE(record->modes.empty());
    EXPECT_EQ(d3d->ready, 0);
    EXPECT_EQ(d3d->active, 0);
    EXPECT_EQ(d3d->device, nullptr);
    vrkUnInit3D();
    EXPECT_EQ(script.calls, (Calls{"release"}));
    EXPECT_EQ(d3d->shutdown(), 0u);
}

TEST_F(D3DRasterizerTest, ShutdownTellsOfReferencesThatAreLeft)
{
    ASSERT_EQ(start(), 0);
    script.releaseResult = 0x8200000C;
    EXPECT_EQ(d3d->shutdown(), 0x8200000Cu);
    EXPECT_EQ(d3d->shutdown(), 0u);
}

TEST_F(D3DRasterizerTest, StoppingWhatNeverStartedIsHarmless)
{
    vrkUnInit3D();
    EXPECT_EQ(script.calls, Calls{});
}

TEST_F(D3DRasterizerTest, StartingTwiceReleasesTheFirst)
{
    ASSERT_EQ(start(), 0);
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(script.surfacesAlive, 1);
    EXPECT_EQ(script.count("release"), 1);
}

TEST_F(D3DRasterizerTest, StartsAgainAfterAStop)
{
    for (int i = 0; i < 2; ++i)
    {
        ASSERT_EQ(start(), 0);
        EXPECT_EQ(d3d->active, 1);
        vrkUnInit3D();
    }
}

TEST_F(D3DRasterizerTest, OtherRasterizersLeaveItRunning)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    vrkSelectRasterizer(7);
    vrkUnInit3D();
    vrkClear();
    vrkSwapBuffers();
    vrkDXBeginScene();
    vrkDXEndScene();
    vrkDXRestoreSurfaces();
    EXPECT_EQ(script.calls, Calls{});
    vrkSelectRasterizer(1);
    vrkClear();
    EXPECT_EQ(script.calls, (Calls{"clear 3 0 1"}));
}

TEST_F(D3DRasterizerTest, ClearTakesTargetAndDepthOnly)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    d3d->clear(0xFF, 0.5f);
    d3d->clear(5, 1.0f);
    EXPECT_EQ(script.calls, (Calls{"clear 3 0 0.5", "clear 1 0 1"}));
}

TEST_F(D3DRasterizerTest, CallsBeforeTheStartDoNothing)
{
    Color c = {1, 1, 1, 1};
    vrkClear();
    vrkSwapBuffers();
    vrkDXBeginScene();
    vrkDXEndScene();
    vrkDXRestoreSurfaces();
    vrkEnable(VRK_FOG);
    vrkDisable(VRK_TEXTURE);
    EXPECT_FALSE(vrkIsEnabled(VRK_FOG));
    vrkPushMatrix();
    vrkTranslate(1, 2, 3);
    vrkPopMatrix();
    vrkSetFOV(50.0f);
    vrkSetTexture(nullptr);
    vrkSetClearColor(&c);
    d3d->write(0, 0, c, "text");
    float m[16] = {9};
    vrkGetModelViewMatrix(m);
    EXPECT_EQ(m[0], 9.0f);
    EXPECT_EQ(script.calls, Calls{});
    EXPECT_EQ(d3d->present(), 0x8200000Fu);
}

TEST_F(D3DRasterizerTest, LostSurfacesComeBackWithoutAMessage)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    script.presentResults = {d3d::surfaceLost};
    vrkSwapBuffers();
    vrkSwapBuffers();
    EXPECT_EQ(script.calls, (Calls{"present", "restore", "present"}));
}

TEST_F(D3DRasterizerTest, OtherFailuresOfPresentAreReturned)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    script.presentResults = {0x8200000F, d3d::surfaceLost};
    EXPECT_EQ(d3d->present(), 0x8200000Fu);
    script.restoreResult = 0x8876024B;
    EXPECT_EQ(d3d->present(), 0x8876024Bu);
    EXPECT_EQ(script.calls, (Calls{"present", "present", "restore"}));
}

TEST_F(D3DRasterizerTest, SceneBeginsAlsoWhereSomebodyHasTheScreen)
{
    ASSERT_EQ(start(), 0);
    for (const uint32_t level : {d3d::ok, d3d::noExclusiveMode, d3d::exclusiveModeAlreadySet})
    {
        script.calls.clear();
        script.cooperativeLevel = level;
        vrkDXBeginScene();
        vrkDXEndScene();
        EXPECT_EQ(script.calls, (Calls{"begin", "end"}));
    }
}

TEST_F(D3DRasterizerTest, SceneThatCannotBeginIsShown)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    script.beginResults = {0x80004005};
    vrkDXBeginScene();
    EXPECT_EQ(script.calls, (Calls{"begin", "box Id3d"}));
    EXPECT_EQ(script.boxText, "BeginScene failed");
}

TEST_F(D3DRasterizerTest, SurfacesLostAtTheBeginOfASceneAreShownAndComeBackWithTheSwap)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    script.beginResults = {d3d::surfaceLost};
    script.presentResults = {d3d::surfaceLost};
    vrkDXBeginScene();
    EXPECT_EQ(script.calls, (Calls{"begin", "box Id3d"}));
    vrkSwapBuffers();
    EXPECT_TRUE(script.heard("restore"));
}

TEST_F(D3DRasterizerTest, ChangedModeRebuildsAWindowsSurfaces)
{
    ASSERT_EQ(start(), 0);
    vrkSetFOV(60.0f);
    const std::vector<float> before = script.transforms[d3d::projection];
    script.calls.clear();
    script.cooperativeLevel = d3d::wrongMode;
    vrkDXBeginScene();
    const Calls steps = script.only({"release", "create", "window", "box", "close", "begin"});
    EXPECT_EQ(steps, (Calls{"release", "create windowed plain", "begin"}));
    EXPECT_TRUE(script.heard("state 24 127")); // the state of a start
    EXPECT_EQ(script.transforms[d3d::projection], before);
    EXPECT_NE(d3d->device, nullptr);
}

TEST_F(D3DRasterizerTest, FullScreenIsNotRebuiltForAMode)
{
    ASSERT_EQ(start(false, 0, false), 0);
    script.calls.clear();
    script.cooperativeLevel = d3d::wrongMode;
    vrkDXBeginScene();
    EXPECT_EQ(script.calls, (Calls{"begin"}));
}

TEST_F(D3DRasterizerTest, WindowFollowsTheWindowedState)
{
    ASSERT_EQ(start(false, 0, false), 0);
    script.calls.clear();
    script.cooperativeLevel = d3d::wrongMode;
    d3d->selectedDevice->windowed = true;
    vrkDXBeginScene();
    EXPECT_EQ(script.only({"release", "create", "window"}),
              (Calls{"release", "windowNormal", "create windowed plain"}));
}

TEST_F(D3DRasterizerTest, RebuildThatFailsIsShownAndClosesTheWindow)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    script.cooperativeLevel = d3d::wrongMode;
    script.createResult = 0x8200000B;
    vrkDXBeginScene();
    EXPECT_EQ(script.calls, (Calls{"release", "create windowed plain", "box Id3d", "close"}));
    EXPECT_EQ(script.boxText, "No backbuffer\n\nThis application will now exit.");
    EXPECT_EQ(d3d->device, nullptr);
    script.calls.clear();
    vrkClear();
    vrkDXBeginScene();
    EXPECT_EQ(script.calls, Calls{});
}

TEST_F(D3DRasterizerTest, PausesAreCounted)
{
    ASSERT_EQ(start(), 0);
    script.calls.clear();
    EXPECT_EQ(d3d->pause(), 1);
    EXPECT_EQ(d3d->active, 0);
    EXPECT_EQ(d3d->setPaused(true), 1);
    EXPECT_EQ(d3d->resume(), 1);
    EXPECT_EQ(d3d->active, 0);
    EXPECT_EQ(d3d->setPaused(false), 1);
    EXPECT_EQ(d3d->active, 1);
    EXPECT_EQ(script.calls, Calls{}); // a window needs no giving back
}

TEST_F(D3DRasterizerTest, FirstPauseGivesAFullScreenBack)
{
    ASSERT_EQ(start(false, 0, false), 0);
    script.calls.clear();
    d3d->pause();
    d3d->pause();
    EXPECT_EQ(script.calls, (Calls{"giveBack"}));
    d3d->resume();
    d3d->resume();
    d3d->pause();
    EXPECT_EQ(script.count("giveBack"), 2);
    d3d->resume();

    d3d->shutdown();
    d3d->pause();
    EXPECT_EQ(script.count("giveBack"), 2);
    d3d->resume();
}
