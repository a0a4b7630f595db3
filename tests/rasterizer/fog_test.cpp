#include "vornik/rasterizer/fog.h"

#include <GL/gl.h>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using Calls = std::vector<std::string>;
using FogTest = EngineTest;

static const Color grey = {0.5f, 0.25f, 0.75f, 1.0f};

static GLfloat fogValue(GLenum name)
{
    GLfloat value = 0.0f;
    glGetFloatv(name, &value);
    return value;
}

TEST_F(FogTest, LinearFogSetsModeRangeAndColour)
{
    GLRecorder gl;
    EXPECT_EQ(vrkSetFog(grey, 10.0f, 90.0f), 0);
    EXPECT_EQ(gl.calls(),
              (Calls{"glEnable(GL_FOG)", "glFogi(GL_FOG_MODE, GL_LINEAR)", "glFogf(GL_FOG_START, 10)",
                     "glFogf(GL_FOG_END, 90)", "glFogfv(GL_FOG_COLOR, {0.5, 0.25, 0.75, 1})"}));
}

TEST_F(FogTest, DensityFogMovesTheStartAndKeepsTheMode)
{
    vrkSetFog(grey, 10.0f, 90.0f);
    GLRecorder gl;
    EXPECT_EQ(vrkSetFog(grey, 0.125f), 0);
    EXPECT_EQ(gl.calls(),
              (Calls{"glEnable(GL_FOG)", "glFogf(GL_FOG_START, 2049)", "glFogf(GL_FOG_DENSITY, 0.125)",
                     "glFogfv(GL_FOG_COLOR, {0.5, 0.25, 0.75, 1})"}));
    EXPECT_EQ(fogValue(GL_FOG_MODE), static_cast<GLfloat>(GL_LINEAR));
    EXPECT_EQ(fogValue(GL_FOG_START), 2049.0f);
    EXPECT_EQ(fogValue(GL_FOG_END), 90.0f);
}

TEST_F(FogTest, DensityAloneMovesTheStartToo)
{
    GLRecorder gl;
    vrkSetFogDensity(0.5f);
    EXPECT_EQ(gl.calls(), (Calls{"glFogf(GL_FOG_START, 2049)", "glFogf(GL_FOG_DENSITY, 0.5)"}));
    EXPECT_FALSE(vrkIsEnabled(VRK_FOG));
}

TEST_F(FogTest, StartAndEndAreSetApart)
{
    GLRecorder gl;
    vrkSetFogStart(3.0f);
    vrkSetFogEnd(4.0f);
    EXPECT_EQ(gl.calls(), (Calls{"glFogf(GL_FOG_START, 3)", "glFogf(GL_FOG_END, 4)"}));
}

TEST_F(FogTest, OtherRasterizerNumbersAreSilent)
{
    vrkSelectRasterizer(7);
    GLRecorder gl;
    EXPECT_EQ(vrkSetFog(grey, 1.0f, 2.0f), 0);
    EXPECT_EQ(vrkSetFog(grey, 1.0f), 0);
    vrkSetFogDensity(1.0f);
    vrkSetFogStart(1.0f);
    vrkSetFogEnd(1.0f);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(FogTest, WhatLiesBeyondTheEndHasTheFogColour)
{
    vrkSetFog({0.0f, 1.0f, 0.0f, 1.0f}, 1.0f, 5.0f);
    vrkDisable(VRK_TEXTURE_2D);
    const auto wallAt = [](float z)
    {
        vrkClear();
        glBegin(GL_QUADS);
        glColor4f(1, 0, 0, 1);
        glVertex3f(-100, -100, z);
        glVertex3f(100, -100, z);
        glVertex3f(100, 100, z);
        glVertex3f(-100, 100, z);
        glEnd();
    };
    wallAt(-10.0f);
    EXPECT_TRUE(pixelIs(32, 32, {0, 255, 0, 255}, 2));
    wallAt(-0.5f);
    EXPECT_TRUE(pixelIs(32, 32, {255, 0, 0, 255}, 2));
    wallAt(-3.0f);
    EXPECT_TRUE(pixelIs(32, 32, {128, 128, 0, 255}, 6));
}
