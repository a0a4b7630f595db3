#include "vornik/rasterizer/state.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/object.h"

using Calls = std::vector<std::string>;
using StateTest = EngineTest;

struct Row
{
    std::function<void()> call;
    Calls expected;
};

static Camera cameraAt(Vertex3D eye, Vertex3D target, float roll)
{
    Camera camera;
    camera.eye = eye;
    camera.target = target;
    camera.roll = roll;
    return camera;
}

// Every function that only passes something on, with what OpenGL must hear.
static std::vector<Row> plainRows()
{
    static float numbers[16];
    static double doubles[16];
    static int integers[4];
    static Color color = {2.0f, -1.0f, 0.5f, 3.0f};
    return {
        {[] { vrkInitMatrix(); }, {"glLoadIdentity()"}},
        {[] { vrkPushMatrix(); }, {"glPushMatrix()"}},
        {[] { vrkPopMatrix(); }, {"glPopMatrix()"}},
        {[] { vrkRotate(30, 1, 2, 3); }, {"glRotatef(30, 1, 2, 3)"}},
        {[] { vrkTranslate(1, 2, 3); }, {"glTranslatef(1, 2, 3)"}},
        {[] { vrkScale(4, 5, 6); }, {"glScalef(4, 5, 6)"}},
        {[] { vrkGetModelViewMatrix(numbers); }, {"glGetFloatv(GL_MODELVIEW_MATRIX, ptr)"}},
        {[] { vrkGetModelViewMatrix(doubles); }, {"glGetDoublev(GL_MODELVIEW_MATRIX, ptr)"}},
        {[] { vrkGetProjectionMatrix(numbers); }, {"glGetFloatv(GL_PROJECTION_MATRIX, ptr)"}},
        {[] { vrkGetProjectionMatrix(doubles); }, {"glGetDoublev(GL_PROJECTION_MATRIX, ptr)"}},
        {[] { vrkGetViewportMatrix(integers); }, {"glGetIntegerv(GL_VIEWPORT, ptr)"}},
        {[] { vrkSetMatrixType(VRK_TEXTURE); }, {"glMatrixMode(GL_TEXTURE)"}},
        {[] { vrkSetMatrixType(VRK_PROJECTION); }, {"glMatrixMode(GL_PROJECTION)"}},
        {[] { vrkSetMatrixType(VRK_MODELVIEW); }, {"glMatrixMode(GL_MODELVIEW)"}},
        {[] { vrkPushAttrib(VRK_ENABLE_BIT); }, {"glPushAttrib(GL_ENABLE_BIT)"}},
        {[] { vrkPopAttrib(); }, {"glPopAttrib()"}},
        {[] { vrkLookAt(1, 2, 3, 4, 5, 6, 0, 1, 0); }, {"gluLookAt(1, 2, 3, 4, 5, 6, 0, 1, 0)"}},
        {[] { EXPECT_EQ(vrkShadeModel(VRK_FLAT), 0); }, {"glShadeModel(GL_FLAT)"}},
        {[] { EXPECT_EQ(vrkShadeModel(VRK_SMOOTH), 0); }, {"glShadeModel(GL_SMOOTH)"}},
        {[] { vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA); },
         {"glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)"}},
        {[] { vrkBlendFunc(VRK_DST_COLOR, VRK_ZERO); }, {"glBlendFunc(GL_DST_COLOR, GL_ZERO)"}},
        {[] { vrkBlendFunc(VRK_ONE, VRK_SRC_COLOR); }, {"glBlendFunc(GL_ONE, GL_SRC_COLOR)"}},
        {[] { vrkDepthFunc(VRK_LEQUAL); }, {"glDepthFunc(GL_LEQUAL)"}},
        {[] { vrkDepthFunc(VRK_EQUAL); }, {"glDepthFunc(GL_EQUAL)"}},
        {[] { vrkDepthMask(VRK_TRUE); }, {"glDepthMask(GL_TRUE)"}},
        {[] { vrkDepthMask(VRK_FALSE); }, {"glDepthMask(GL_FALSE)"}},
        {[] { vrkAlphaFunc(VRK_GREATER, 0.5f); }, {"glAlphaFunc(GL_GREATER, 0.5)"}},
        {[] { vrkAlphaFunc(VRK_GEQUAL, 0.25f); }, {"glAlphaFunc(GL_GEQUAL, 0.25)"}},
        {[] { vrkSetClearColor(&color); }, {"glClearColor(2, -1, 0.5, 3)"}},
    };
}

TEST_F(StateTest, EachFunctionIsOneCall)
{
    for (const Row& row : plainRows())
    {
        GLRecorder gl;
        row.call();
        EXPECT_EQ(gl.calls(), row.expected);
    }
}

TEST_F(StateTest, OtherRasterizerNumbersAreSilent)
{
    for (const int number : {1, 7, -1})
    {
        vrkSelectRasterizer(number);
        GLRecorder gl;
        for (const Row& row : plainRows())
            row.call();
        static float block[4][4][4];
        vrkMultMatrix(block);
        Camera camera = cameraAt({0, 0, 0}, {0, 1, 0}, 0);
        EXPECT_EQ(vrkLookWithCamera(&camera), 0);
        EXPECT_EQ(vrkEnable(VRK_FOG), 0);
        EXPECT_EQ(vrkDisable(VRK_TEXTURE_2D), 0);
        EXPECT_FALSE(vrkIsEnabled(VRK_TEXTURE_2D));
        EXPECT_EQ(gl.calls(), Calls{}) << number;
    }
}

TEST_F(StateTest, SilentReadersLeaveTheBufferAlone)
{
    vrkSelectRasterizer(7);
    float numbers[16];
    double doubles[16];
    int integers[4];
    std::fill(std::begin(numbers), std::end(numbers), 9.0f);
    std::fill(std::begin(doubles), std::end(doubles), 9.0);
    std::fill(std::begin(integers), std::end(integers), 9);
    vrkGetModelViewMatrix(numbers);
    vrkGetModelViewMatrix(doubles);
    vrkGetProjectionMatrix(numbers);
    vrkGetProjectionMatrix(doubles);
    vrkGetViewportMatrix(integers);
    EXPECT_EQ(std::count(std::begin(numbers), std::end(numbers), 9.0f), 16);
    EXPECT_EQ(std::count(std::begin(doubles), std::end(doubles), 9.0), 16);
    EXPECT_EQ(std::count(std::begin(integers), std::end(integers), 9), 4);
}

TEST_F(StateTest, NullBuffersAreIgnored)
{
    vrkMultMatrix(nullptr);
    vrkGetModelViewMatrix(static_cast<float*>(nullptr));
    vrkGetModelViewMatrix(static_cast<double*>(nullptr));
    vrkGetProjectionMatrix(static_cast<float*>(nullptr));
    vrkGetProjectionMatrix(static_cast<double*>(nullptr));
    vrkGetViewportMatrix(nullptr);
    vrkSetClearColor(nullptr);
    vrkSetFOV(static_cast<Camera*>(nullptr));
    vrkSetViewport(nullptr);
    EXPECT_EQ(vrkGetFOV(), 90.0f);
}

TEST_F(StateTest, ConstantsOutsideTheTableAreIgnored)
{
    GLRecorder gl;
    for (const int constant : {-1, 34, 1000000, -2147483647})
    {
        vrkSetMatrixType(constant);
        vrkPushAttrib(constant);
        EXPECT_EQ(vrkEnable(constant), 0);
        EXPECT_EQ(vrkDisable(constant), 0);
        EXPECT_FALSE(vrkIsEnabled(constant));
        EXPECT_EQ(vrkShadeModel(constant), 0);
        vrkBlendFunc(constant, VRK_ONE);
        vrkBlendFunc(VRK_ONE, constant);
        vrkDepthFunc(constant);
        vrkDepthMask(constant);
        vrkAlphaFunc(constant, 0.5f);
    }
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(StateTest, MatricesComeBackAsOpenGLHasThem)
{
    vrkInitMatrix();
    vrkTranslate(1, 2, 3);
    vrkScale(2, 4, 8);
    const float expected[16] = {2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 1, 2, 3, 1};
    float numbers[16];
    double doubles[16];
    vrkGetModelViewMatrix(numbers);
    vrkGetModelViewMatrix(doubles);
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_EQ(numbers[i], expected[i]) << i;
        EXPECT_EQ(doubles[i], expected[i]) << i;
    }

    vrkGetProjectionMatrix(numbers);
    vrkGetProjectionMatrix(doubles);
    EXPECT_NEAR(numbers[0], 1.0f, 1e-6f); // 90 degrees, square
    EXPECT_NEAR(doubles[5], 1.0, 1e-6);
    EXPECT_EQ(numbers[11], -1.0f);

    int rectangle[4];
    vrkGetViewportMatrix(rectangle);
    EXPECT_EQ(rectangle[0], 0);
    EXPECT_EQ(rectangle[1], 0);
    EXPECT_EQ(rectangle[2], 64);
    EXPECT_EQ(rectangle[3], 64);
}

TEST_F(StateTest, RotationIsInDegrees)
{
    vrkInitMatrix();
    vrkRotate(90, 0, 0, 1);
    float m[16];
    vrkGetModelViewMatrix(m);
    EXPECT_NEAR(m[0], 0.0f, 1e-6f);
    EXPECT_NEAR(m[1], 1.0f, 1e-6f);
    EXPECT_NEAR(m[4], -1.0f, 1e-6f);
}

TEST_F(StateTest, PopRestoresWhatPushKept)
{
    vrkInitMatrix();
    vrkTranslate(5, 0, 0);
    vrkPushMatrix();
    vrkTranslate(1, 1, 1);
    vrkPopMatrix();
    float m[16];
    vrkGetModelViewMatrix(m);
    EXPECT_EQ(m[12], 5.0f);
    EXPECT_EQ(m[13], 0.0f);

    vrkPushAttrib(VRK_ENABLE_BIT);
    vrkEnable(VRK_BLEND);
    vrkPopAttrib();
    EXPECT_FALSE(vrkIsEnabled(VRK_BLEND));
}

TEST_F(StateTest, MultiplicationGathersEveryFourthFloat)
{
    float block[64];
    for (int i = 0; i < 64; ++i)
        block[i] = static_cast<float>(i);
    GLRecorder gl;
    vrkMultMatrix(reinterpret_cast<float(*)[4][4]>(block));
    EXPECT_EQ(gl.calls(),
              (Calls{"glMultMatrixf({0, 4, 8, 12, 16, 20, 24, 28, 32, 36, 40, 44, 48, 52, 56, 60})"}));
}

TEST_F(StateTest, MultiplicationIsOnTheLocalSide)
{
    float block[64] = {};
    const float matrix[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 1, 0, 0, 1};
    for (int i = 0; i < 16; ++i)
        block[i * 4] = matrix[i];
    vrkInitMatrix();
    vrkTranslate(10, 0, 0);
    vrkMultMatrix(reinterpret_cast<float(*)[4][4]>(block));
    float m[16];
    vrkGetModelViewMatrix(m);
    EXPECT_EQ(m[0], 2.0f);
    EXPECT_EQ(m[12], 11.0f);
}

TEST_F(StateTest, NullCameraIsReportedAndChangesNothing)
{
    for (const int number : {0, 7})
    {
        vrkSelectRasterizer(number);
        std::remove(folder.path("log").c_str());
        GLRecorder gl;
        EXPECT_EQ(vrkLookWithCamera(nullptr), 24);
        EXPECT_EQ(log(), "Camera used in functioncall is NULL!\n");
        EXPECT_EQ(gl.calls(), Calls{});
    }
}

TEST_F(StateTest, CameraRollsAndThenLooksWithZUp)
{
    Camera camera = cameraAt({1, 2, 3}, {4, 5.5f, 6}, 15);
    GLRecorder gl;
    EXPECT_EQ(vrkLookWithCamera(&camera), 0);
    EXPECT_EQ(gl.calls(), (Calls{"glRotatef(15, 0, 0, 1)", "gluLookAt(1, 2, 3, 4, 5.5, 6, 0, 0, 1)"}));
}

TEST_F(StateTest, TargetOfTheCameraLiesStraightAhead)
{
    Camera camera = cameraAt({1, 2, 3}, {1, 12, 3}, 0);
    vrkInitMatrix();
    vrkLookWithCamera(&camera);
    double m[16];
    vrkGetModelViewMatrix(m);
    const double target[4] = {1, 12, 3, 1};
    double eye[3] = {};
    for (int row = 0; row < 3; ++row)
        for (int i = 0; i < 4; ++i)
            eye[row] += m[i * 4 + row] * target[i];
    EXPECT_NEAR(eye[0], 0.0, 1e-6);
    EXPECT_NEAR(eye[1], 0.0, 1e-6);
    EXPECT_NEAR(eye[2], -10.0, 1e-6);
}

TEST_F(StateTest, FieldOfViewRebuildsTheProjection)
{
    vrkViewport.aspect = 2.0f;
    vrkViewport.nearClip = 0.5f;
    vrkViewport.farClip = 50.0f;
    vrkSetMatrixType(VRK_TEXTURE);
    const Calls expected = {"glMatrixMode(GL_PROJECTION)", "glLoadIdentity()",
                            "gluPerspective(60, 2, 0.5, 50)", "glMatrixMode(GL_MODELVIEW)"};
    GLRecorder gl;
    vrkSetFOV(60.0f);
    EXPECT_EQ(gl.calls(), expected);
    EXPECT_EQ(vrkGetFOV(), 60.0f);
    EXPECT_EQ(vrkViewport.fov, 60.0f);
    GLint mode = 0;
    glGetIntegerv(GL_MATRIX_MODE, &mode);
    EXPECT_EQ(mode, GL_MODELVIEW);

    gl.clear();
    Camera camera;
    camera.fov = 60.0f;
    vrkViewport.fov = 10.0f;
    vrkSetFOV(&camera);
    EXPECT_EQ(gl.calls(), expected);
    EXPECT_EQ(vrkGetFOV(), 60.0f);
}

TEST_F(StateTest, ViewportIsCopiedWholeAndLeavesTheRectangle)
{
    const Viewport wanted = {320, 200, 1.5f, 2, 300, 45};
    GLRecorder gl;
    vrkSetViewport(&wanted);
    EXPECT_EQ(gl.calls(), (Calls{"glMatrixMode(GL_PROJECTION)", "glLoadIdentity()",
                                 "gluPerspective(45, 1.5, 2, 300)", "glMatrixMode(GL_MODELVIEW)"}));
    EXPECT_EQ(vrkGetViewport(), &vrkViewport);
    EXPECT_EQ(vrkViewport.width, 320.0f);
    EXPECT_EQ(vrkViewport.height, 200.0f);
    EXPECT_EQ(vrkViewport.aspect, 1.5f);
    EXPECT_EQ(vrkViewport.nearClip, 2.0f);
    EXPECT_EQ(vrkViewport.farClip, 300.0f);
    EXPECT_EQ(vrkViewport.fov, 45.0f);
    int rectangle[4];
    vrkGetViewportMatrix(rectangle);
    EXPECT_EQ(rectangle[2], 64);
    EXPECT_EQ(rectangle[3], 64);

    vrkSetViewport(vrkGetViewport()); // its own record
    EXPECT_EQ(vrkViewport.width, 320.0f);
}

TEST_F(StateTest, SilentEngineKeepsViewportAndFieldOfView)
{
    vrkSelectRasterizer(7);
    const Viewport wanted = {320, 200, 1.5f, 2, 300, 45};
    GLRecorder gl;
    vrkSetViewport(&wanted);
    EXPECT_EQ(vrkGetViewport()->width, 320.0f);
    EXPECT_EQ(vrkGetFOV(), 45.0f);
    vrkSetFOV(30.0f);
    EXPECT_EQ(vrkGetFOV(), 30.0f);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(StateTest, SwitchesGoThroughTheTable)
{
    const std::pair<int, std::string> switches[] = {
        {VRK_TEXTURE_2D, "GL_TEXTURE_2D"}, {VRK_FOG, "GL_FOG"},
        {VRK_BLEND, "GL_BLEND"},           {VRK_COLOR_MATERIAL, "GL_COLOR_MATERIAL"},
        {VRK_CULL_FACE, "GL_CULL_FACE"},   {VRK_ALPHA_TEST, "GL_ALPHA_TEST"},
        {VRK_DEPTH_TEST, "GL_DEPTH_TEST"}, {VRK_TEXENV_BLEND, "GL_BLEND"}};
    for (const auto& [constant, name] : switches)
    {
        GLRecorder gl;
        EXPECT_EQ(vrkEnable(constant), 0);
        EXPECT_TRUE(vrkIsEnabled(constant)) << name;
        EXPECT_EQ(vrkDisable(constant), 0);
        EXPECT_FALSE(vrkIsEnabled(constant)) << name;
        EXPECT_EQ(gl.calls(), (Calls{"glEnable(" + name + ")", "glIsEnabled(" + name + ")",
                                     "glDisable(" + name + ")", "glIsEnabled(" + name + ")"}));
    }
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(StateTest, TextureConstantIsRefusedByOpenGL)
{
    EXPECT_TRUE(vrkIsEnabled(VRK_TEXTURE_2D));
    GLRecorder gl;
    vrkDisable(VRK_TEXTURE);
    EXPECT_EQ(gl.calls(), (Calls{"glDisable(GL_TEXTURE)"}));
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_INVALID_ENUM));
    EXPECT_TRUE(vrkIsEnabled(VRK_TEXTURE_2D));
}

TEST_F(StateTest, DepthMaskTakesTheLowByte)
{
    vrkConvertCapTableOGL[VRK_TRUE] = 0x100;
    GLRecorder gl;
    vrkDepthMask(VRK_TRUE);
    EXPECT_EQ(gl.calls(), (Calls{"glDepthMask(GL_FALSE)"}));
}

TEST_F(StateTest, ClearColourIsTakenUnchanged)
{
    Color color = {2.0f, -1.0f, 0.5f, 3.0f};
    vrkSetClearColor(&color);
    EXPECT_EQ(color.r, 2.0f);
    EXPECT_EQ(color.g, -1.0f);
    EXPECT_EQ(color.b, 0.5f);
    EXPECT_EQ(color.a, 3.0f);
    vrkClear();
    EXPECT_TRUE(pixelIs(0, 0, {255, 0, 128, 255}, 1));
}
