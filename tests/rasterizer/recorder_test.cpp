// The tools that the other tests rest on.

#include "tests/support/glrecorder.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "tests/support/engine.h"
#include "vornik/rasterizer/startup.h"

using Calls = std::vector<std::string>;
using RecorderTest = EngineTest;

TEST_F(RecorderTest, HearsACallOnceAndPassesItOn)
{
    GLRecorder gl;
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ZERO);
    glColor4f(0.5f, 0, 1, 0.125f);
    EXPECT_EQ(gl.calls(),
              (Calls{"glEnable(GL_BLEND)", "glBlendFunc(GL_ONE, GL_ZERO)", "glColor4f(0.5, 0, 1, 0.125)"}));
    EXPECT_EQ(gl.count("glEnable"), 1);
    EXPECT_EQ(gl.countExact("glEnable(GL_FOG)"), 0);
    EXPECT_EQ(gl.only({"glColor4f"}).size(), 1u);
    EXPECT_EQ(gl.text(), "glEnable(GL_BLEND)\nglBlendFunc(GL_ONE, GL_ZERO)\nglColor4f(0.5, 0, 1, 0.125)\n");
    gl.clear();
    EXPECT_TRUE(gl.calls().empty());
    EXPECT_TRUE(glIsEnabled(GL_BLEND));
}

TEST_F(RecorderTest, DoesNotHearWhatGLUCalls)
{
    GLRecorder gl;
    gluPerspective(90, 1, 1, 10);
    EXPECT_EQ(gl.calls(), (Calls{"gluPerspective(90, 1, 1, 10)"}));
}

TEST_F(RecorderTest, MaySwallowCalls)
{
    GLRecorder gl(GLRecorder::swallow);
    glEnable(GL_BLEND);
    EXPECT_EQ(glGenLists(3), 0u);
    EXPECT_EQ(gl.count("glGenLists"), 1);
    GLRecorder::Pause unheard;
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
}

TEST_F(RecorderTest, KeepsThePointer)
{
    const float coords[6] = {};
    GLRecorder gl;
    glTexCoordPointer(2, GL_FLOAT, 0, coords);
    glColorPointer(4, GL_FLOAT, 0, nullptr);
    EXPECT_EQ(gl.calls(),
              (Calls{"glTexCoordPointer(2, GL_FLOAT, 0, ptr)", "glColorPointer(4, GL_FLOAT, 0, null)"}));
    EXPECT_EQ(gl.pointer(0), coords);
    EXPECT_EQ(gl.pointer(1), nullptr);
}

TEST_F(RecorderTest, TestsBeginWithAFreshState)
{
    glBlendFunc(GL_ONE, GL_ONE);
    glDepthFunc(GL_ALWAYS);
    glLineWidth(3.0f);
    glFogf(GL_FOG_START, 77.0f);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glPushAttrib(GL_ENABLE_BIT);
    glClearColor(1, 1, 1, 1);
    vrkClear();
    vrkViewport.fov = 3.0f;
    SetUp();
    GLint value = 0;
    glGetIntegerv(GL_BLEND_DST, &value);
    EXPECT_EQ(value, GL_ZERO);
    glGetIntegerv(GL_DEPTH_FUNC, &value);
    EXPECT_EQ(value, GL_LESS);
    glGetIntegerv(GL_LINE_WIDTH, &value);
    EXPECT_EQ(value, 1);
    glGetIntegerv(GL_FOG_START, &value);
    EXPECT_EQ(value, 0);
    glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &value);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(vrkViewport.fov, 90.0f);
    EXPECT_EQ(drawnPixels(), 0);
}
