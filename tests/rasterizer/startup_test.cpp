#include "vornik/rasterizer/startup.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <iterator>
#include <limits>
#include <vector>

#include "tests/support/answersyes.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/workingfolder.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/state.h"

using Calls = std::vector<std::string>;
using StartupTest = EngineTest;

// The globals as the library brings them, read before any test can run.
static const struct
{
    int rasterizer = vrkSelectedRasterizer;
    Viewport viewport = vrkViewport;
    float gamma = vrkGamma;
    int rate = vrkFPS;
    int mipMapType = vrkCurrentMipMapType;
    int fontBase = vrkFontBase;
    VRKDeviceContext device = VRK_hDC;
    VRKRenderingContext context = VRK_hGLRC;
    VRKPalette palette = VRK_hPalette;
    std::vector<int> table{std::begin(vrkConvertCapTableOGL), std::end(vrkConvertCapTableOGL)};
} beforeAnyStart;

TEST(Startup, GlobalsBeginAsIfOpenGLWereChosenButNotStarted)
{
    EXPECT_EQ(beforeAnyStart.rasterizer, 0);
    const Viewport& v = beforeAnyStart.viewport;
    for (const float value : {v.width, v.height, v.aspect, v.nearClip, v.farClip, v.fov})
        EXPECT_EQ(value, 0.0f);
    EXPECT_EQ(beforeAnyStart.gamma, 1.0f);
    EXPECT_EQ(beforeAnyStart.rate, 0);
    EXPECT_EQ(beforeAnyStart.mipMapType, 35);
    EXPECT_EQ(beforeAnyStart.fontBase, 0);
    EXPECT_EQ(beforeAnyStart.device, nullptr);
    EXPECT_EQ(beforeAnyStart.context, nullptr);
    EXPECT_EQ(beforeAnyStart.palette, nullptr);
    EXPECT_EQ(beforeAnyStart.table, std::vector<int>(34));
}

static int start(VRKWindow window, int color = 32, int alpha = 8, int depth = 24)
{
    return vrkInitViewport(window, color, alpha, depth, false, 0, true);
}

TEST_F(StartupTest, SelectingOpenGLFillsTheTable)
{
    std::fill(std::begin(vrkConvertCapTableOGL), std::end(vrkConvertCapTableOGL), -1);
    EXPECT_EQ(vrkSelectRasterizer(0), 0);
    EXPECT_EQ(vrkGetRasterizer(), 0);

    const int expected[VRK_CONSTANT_COUNT] = {GL_TEXTURE,
                                              GL_PROJECTION,
                                              GL_MODELVIEW,
                                              GL_TEXTURE_2D,
                                              GL_FOG,
                                              GL_BLEND,
                                              GL_COLOR_MATERIAL,
                                              GL_CULL_FACE,
                                              GL_FLAT,
                                              GL_SMOOTH,
                                              GL_ALPHA_TEST,
                                              GL_DEPTH_TEST,
                                              GL_MODULATE,
                                              GL_DECAL,
                                              GL_BLEND,
                                              0,
                                              0,
                                              0,
                                              GL_SRC_ALPHA,
                                              GL_DST_ALPHA,
                                              GL_ONE,
                                              GL_ONE_MINUS_SRC_ALPHA,
                                              GL_DST_COLOR,
                                              GL_SRC_COLOR,
                                              GL_ZERO,
                                              GL_EQUAL,
                                              GL_LEQUAL,
                                              GL_GEQUAL,
                                              0,
                                              1,
                                              GL_COMPILE,
                                              GL_COMPILE_AND_EXECUTE,
                                              GL_GREATER,
                                              GL_ENABLE_BIT};
    for (int i = 0; i < VRK_CONSTANT_COUNT; ++i)
        EXPECT_EQ(vrkConvertCapTableOGL[i], expected[i]) << "constant " << i;
}

TEST_F(StartupTest, ConstantsHaveTheirPublishedNumbers)
{
    EXPECT_EQ(VRK_TEXTURE, 0);
    EXPECT_EQ(VRK_TEXTURE_2D, 3);
    EXPECT_EQ(VRK_DEPTH_TEST, 11);
    EXPECT_EQ(VRK_MODULATE, 12);
    EXPECT_EQ(VRK_DECAL, 13);
    EXPECT_EQ(VRK_SRC_ALPHA, 18);
    EXPECT_EQ(VRK_ZERO, 24);
    EXPECT_EQ(VRK_FALSE, 28);
    EXPECT_EQ(VRK_COMPILE, 30);
    EXPECT_EQ(VRK_GREATER, 32);
    EXPECT_EQ(VRK_ENABLE_BIT, 33);
}

TEST_F(StartupTest, AnyNumberIsStoredAndLeavesTheTableAlone)
{
    std::fill(std::begin(vrkConvertCapTableOGL), std::end(vrkConvertCapTableOGL), 77);
    for (const int number : {7, -3, 2})
    {
        EXPECT_EQ(vrkSelectRasterizer(number), 0);
        EXPECT_EQ(vrkGetRasterizer(), number);
        EXPECT_EQ(vrkSelectedRasterizer, number);
    }
    for (const int value : vrkConvertCapTableOGL)
        EXPECT_EQ(value, 77);
}

TEST_F(StartupTest, ShortStartUsesItsDefaults)
{
    const WorkingFolder inside(folder.root());
    const VRKWindow window = surface(80, 40);
    vrkSetGamma(0.5f);
    EXPECT_EQ(initVornik(0, window), 0);

    EXPECT_EQ(vrkError.mode, 0);
    EXPECT_STREQ(vrkError.fileName, "VRKERROR.LOG");
    const std::string lines = folder.readText("VRKERROR.LOG");
    EXPECT_EQ(lines.find("Requested Colorbits: 32 Alphabits: 0 Depthbits: 32\nResponse Colorbits: "), 0u)
        << lines;
    EXPECT_EQ(vrkGetFPS(), 100);
    EXPECT_EQ(vrkGetGamma(), 1.0f);
    EXPECT_EQ(vrkGetRasterizer(), 0);
    EXPECT_NE(VRK_hDC, nullptr);
    EXPECT_NE(VRK_hGLRC, nullptr);
    EXPECT_EQ(VRK_hPalette, nullptr);
}

TEST_F(StartupTest, LongStartWithoutConsoleAsksAboutEveryLine)
{
    const VRKWindow window = surface(32, 32);
    vrkSetGamma(0.5f);
    AnswersYes user;
    const int result = initVornik(0, window, nullptr, 32, 8, 24, 25, true, 1, false);
    const std::string asked = user.finish();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(vrkError.mode, 1);
    EXPECT_EQ(vrkGetFPS(), 25);
    EXPECT_EQ(vrkGetGamma(), 1.0f);
    EXPECT_NE(asked.find("Requested Colorbits: 32 Alphabits: 8 Depthbits: 24\n\nContinue?\n"),
              std::string::npos);
    EXPECT_NE(asked.find("Response Colorbits: "), std::string::npos);
    EXPECT_NE(asked.find("OpenGL information:\n"), std::string::npos);
}

TEST_F(StartupTest, LongStartWithConsoleReportsThere)
{
    static char stands[1]; // only the pointer is kept
    Console* console = reinterpret_cast<Console*>(stands);
    EXPECT_EQ(initVornik(7, nullptr, console, 32, 8, 24, 25, false, 0, true), 0);
    EXPECT_EQ(vrkError.mode, 2);
    EXPECT_EQ(vrkError.console, console);
    vrkInitErrorLog(3);
    vrkError.console = nullptr;
}

TEST_F(StartupTest, RateAndGammaAreSetEvenAfterAFailure)
{
    const WorkingFolder inside(folder.root());
    vrkSetFPS(3);
    vrkSetGamma(0.5f);
    EXPECT_EQ(initVornik(0, nullptr), 41);
    EXPECT_EQ(vrkGetFPS(), 100);
    EXPECT_EQ(vrkGetGamma(), 1.0f);

    vrkSetGamma(0.5f);
    AnswersYes user;
    EXPECT_EQ(initVornik(0, nullptr, nullptr, 32, 8, 24, 25, false, 0, true), 41);
    user.finish();
    EXPECT_EQ(vrkGetFPS(), 25);
    EXPECT_EQ(vrkGetGamma(), 1.0f);
}

TEST_F(StartupTest, OtherNumberStartsASilentEngine)
{
    const WorkingFolder inside(folder.root());
    const VRKWindow window = surface(32, 16);
    const VRKDeviceContext device = VRK_hDC;
    vrkViewport = {1, 2, 3, 4, 5, 6};
    GLRecorder gl;
    EXPECT_EQ(initVornik(7, window), 0);
    EXPECT_EQ(vrkSelectedRasterizer, 7);
    EXPECT_EQ(VRK_hDC, device);
    EXPECT_EQ(vrkViewport.width, 1.0f);
    EXPECT_EQ(vrkViewport.fov, 6.0f);
    EXPECT_EQ(vrkGetFPS(), 100);
    initOpenGL();
    vrkClear();
    vrkSwapBuffers();
    vrkDXRestoreSurfaces();
    vrkDXBeginScene();
    vrkDXEndScene();
    vrkUnInit3D();
    EXPECT_EQ(gl.calls(), Calls{});
    EXPECT_EQ(folder.readText("VRKERROR.LOG"), "");
}

TEST_F(StartupTest, ViewportTakesTheSizeOfTheSurface)
{
    vrkViewport = {};
    ASSERT_EQ(start(surface(80, 40)), 0);
    EXPECT_EQ(vrkViewport.width, 80.0f);
    EXPECT_EQ(vrkViewport.height, 40.0f);
    EXPECT_EQ(vrkViewport.aspect, 2.0f);
    EXPECT_EQ(vrkViewport.nearClip, 0.01f);
    EXPECT_EQ(vrkViewport.farClip, 100000.0f);
    EXPECT_EQ(vrkViewport.fov, 90.0f);
    int rectangle[4] = {};
    vrkGetViewportMatrix(rectangle);
    EXPECT_EQ(rectangle[2], 80);
    EXPECT_EQ(rectangle[3], 40);
}

TEST_F(StartupTest, WindowWithoutHeightHasAnInfiniteAspect)
{
    ASSERT_EQ(start(surface(64, 0)), 0);
    EXPECT_EQ(vrkViewport.height, 0.0f);
    EXPECT_TRUE(std::isinf(vrkViewport.aspect) && vrkViewport.aspect > 0.0f);
    vrkClear();
    vrkSwapBuffers();

    ASSERT_EQ(start(surface(0, 0)), 0);
    EXPECT_TRUE(std::isnan(vrkViewport.aspect));
}

TEST_F(StartupTest, BitsAskedForAndObtainedAreLogged)
{
    ASSERT_EQ(start(surface(64, 64), 32, 8, 24), 0);
    GLint red = 0, green = 0, blue = 0, alpha = 0, depth = 0;
    glGetIntegerv(GL_RED_BITS, &red);
    glGetIntegerv(GL_GREEN_BITS, &green);
    glGetIntegerv(GL_BLUE_BITS, &blue);
    glGetIntegerv(GL_ALPHA_BITS, &alpha);
    glGetIntegerv(GL_DEPTH_BITS, &depth);
    EXPECT_GE(red + green + blue, 24);
    EXPECT_GE(alpha, 8);
    EXPECT_GE(depth, 24);

    char response[128];
    std::snprintf(response, sizeof response, "Response Colorbits: %d Alphabits: %d Depthbits: %d",
                  red + green + blue + alpha, alpha, depth);
    EXPECT_EQ(log().find("Requested Colorbits: 32 Alphabits: 8 Depthbits: 24\n" + std::string(response) +
                         "\nOpenGL information:\n  Vendor: "),
              0u)
        << log();
}

TEST_F(StartupTest, MoreDepthThanThereIsGetsTheNearest)
{
    ASSERT_EQ(start(surface(64, 64), 32, 0, 32), 0);
    GLint depth = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depth);
    EXPECT_GE(depth, 24);
    EXPECT_TRUE(logged("Requested Colorbits: 32 Alphabits: 0 Depthbits: 32")) << log();
    EXPECT_NE(log().find("Depthbits: " + std::to_string(depth) + "\nOpenGL"), std::string::npos) << log();
}

TEST_F(StartupTest, AbsurdBitsStillGetASurface)
{
    for (const int bits : {-1, 0, 1000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(start(surface(8, 8), bits, bits, bits), 0) << bits;
}

TEST_F(StartupTest, NullWindowEndsIn41)
{
    const Viewport before = vrkViewport;
    EXPECT_EQ(vrkInitViewport(nullptr, 32, 8, 24, false, 0, true), 41);
    EXPECT_EQ(log(), "Requested Colorbits: 32 Alphabits: 8 Depthbits: 24\n"
                     "Choose pix format failed!\n"
                     "Fatal error, cannot create rendering context!\n");
    EXPECT_EQ(VRK_hGLRC, nullptr);
    EXPECT_EQ(VRK_hDC, nullptr);
    EXPECT_EQ(vrkViewport.width, before.width);
    vrkSwapBuffers();
}

TEST_F(StartupTest, SecondStartDrawsOnItsOwnSurface)
{
    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    vrkClear();
    const VRKRenderingContext first = VRK_hGLRC;
    ASSERT_EQ(start(surface(width, height)), 0);
    EXPECT_NE(VRK_hGLRC, first);
    vrkClear();
    EXPECT_TRUE(pixelIs(5, 5, {0, 0, 0, 0}));
}

TEST_F(StartupTest, OpenGLIsSetUpInOneOrder)
{
    vrkViewport = {64.9f, 48.2f, 1.5f, 0.5f, 200.0f, 30.0f};
    GLRecorder gl;
    initOpenGL();
    // The angle is 90 whatever the viewport says; the size is cut to whole pixels.
    EXPECT_EQ(gl.calls(), (Calls{"glViewport(0, 0, 64, 48)",
                                 "glMatrixMode(GL_TEXTURE)",
                                 "glLoadIdentity()",
                                 "glMatrixMode(GL_PROJECTION)",
                                 "glLoadIdentity()",
                                 "gluPerspective(90, 1.5, 0.5, 200)",
                                 "glMatrixMode(GL_MODELVIEW)",
                                 "glLoadIdentity()",
                                 "glEnable(GL_TEXTURE_2D)",
                                 "glDisable(GL_BLEND)",
                                 "glDisable(GL_POLYGON_SMOOTH)",
                                 "glDisable(GL_COLOR_MATERIAL)",
                                 "glDisable(GL_LIGHTING)",
                                 "glDisable(GL_FOG)",
                                 "glDisable(GL_ALPHA_TEST)",
                                 "glEnable(GL_DEPTH_TEST)",
                                 "glEnable(GL_CULL_FACE)",
                                 "glShadeModel(GL_SMOOTH)",
                                 "glClearColor(0, 0, 0, 0)",
                                 "glEnableClientState(GL_VERTEX_ARRAY)",
                                 "glEnableClientState(GL_TEXTURE_COORD_ARRAY)",
                                 "glEnableClientState(GL_NORMAL_ARRAY)",
                                 "glEnableClientState(GL_COLOR_ARRAY)",
                                 "glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_FASTEST)",
                                 "glHint(GL_POLYGON_SMOOTH_HINT, GL_FASTEST)",
                                 "glGetString(GL_VENDOR)",
                                 "glGetString(GL_RENDERER)",
                                 "glGetString(GL_VERSION)",
                                 "glGetString(GL_EXTENSIONS)"}));
}

TEST_F(StartupTest, SetUpUndoesWhatAHostChanged)
{
    glEnable(GL_BLEND);
    glEnable(GL_LIGHTING);
    glEnable(GL_FOG);
    glEnable(GL_ALPHA_TEST);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_TEXTURE_2D);
    glDisableClientState(GL_NORMAL_ARRAY);
    initOpenGL();
    for (const GLenum off : {GL_BLEND, GL_LIGHTING, GL_FOG, GL_ALPHA_TEST, GL_COLOR_MATERIAL})
        EXPECT_FALSE(glIsEnabled(off)) << off;
    for (const GLenum on : {GL_DEPTH_TEST, GL_CULL_FACE, GL_TEXTURE_2D, GL_VERTEX_ARRAY,
                            GL_TEXTURE_COORD_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
        EXPECT_TRUE(glIsEnabled(on)) << on;
}

TEST_F(StartupTest, LibraryIsNamedInTheLog)
{
    initOpenGL();
    const auto text = [](GLenum name)
    { return std::string(reinterpret_cast<const char*>(glGetString(name))); };
    EXPECT_EQ(log(), "OpenGL information:\n  Vendor: " + text(GL_VENDOR) +
                         "\n  Renderer: " + text(GL_RENDERER) + "\n  Version: " + text(GL_VERSION) + "\n\n");
}

TEST_F(StartupTest, LibraryThatSaysNothingIsLoggedEmpty)
{
    GLRecorder gl(GLRecorder::swallow);
    initOpenGL();
    EXPECT_EQ(log(), "OpenGL information:\n  Vendor: \n  Renderer: \n  Version: \n\n");
}

TEST_F(StartupTest, ViewportThatNoIntHoldsIsEmpty)
{
    for (const float size : {1e20f, -1e20f, std::numeric_limits<float>::infinity(),
                             std::numeric_limits<float>::quiet_NaN(), 2147483648.0f})
    {
        vrkViewport.width = size;
        GLRecorder gl;
        initOpenGL();
        EXPECT_EQ(gl.calls().front(), "glViewport(0, 0, 0, 64)") << size;
    }
}

TEST_F(StartupTest, ClearWipesColourAndDepth)
{
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    glClearDepth(0.5);
    GLRecorder gl;
    vrkClear();
    EXPECT_EQ(gl.calls(), (Calls{"glClear(GL_COLOR_BUFFER_BIT|GL_DEPTH_BUFFER_BIT)"}));
    EXPECT_TRUE(pixelIs(0, 0, {0, 255, 0, 255}));
    EXPECT_NEAR(depth(63, 63), 0.5f, 1e-4f);
}

TEST_F(StartupTest, StoppingLeavesOpenGLAsItIs)
{
    const VRKRenderingContext context = VRK_hGLRC;
    const VRKDeviceContext device = VRK_hDC;
    GLRecorder gl;
    vrkUnInit3D();
    vrkDXRestoreSurfaces();
    vrkDXBeginScene();
    vrkDXEndScene();
    EXPECT_EQ(gl.calls(), Calls{});
    EXPECT_EQ(VRK_hGLRC, context);
    EXPECT_EQ(VRK_hDC, device);
    glClearColor(1.0f, 1.0f, 1.0f, 1.0f);
    vrkClear();
    EXPECT_TRUE(pixelIs(1, 1, {255, 255, 255, 255}));
}

TEST_F(StartupTest, RateIsStoredAsGiven)
{
    for (const int rate : {25, 0, -5})
    {
        vrkSetFPS(rate);
        EXPECT_EQ(vrkGetFPS(), rate);
        EXPECT_EQ(vrkFPS, rate);
    }
}

TEST_F(StartupTest, GammaOutsideItsRangeIsIgnored)
{
    vrkSetGamma(0.5f);
    for (const float refused : {0.0f, 2.5f, -1.0f, 2.0001f, std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity()})
    {
        vrkSetGamma(refused);
        EXPECT_EQ(vrkGetGamma(), 0.5f) << refused;
    }
    vrkSetGamma(2.0f);
    EXPECT_EQ(vrkGetGamma(), 2.0f);
    EXPECT_EQ(vrkGamma, 2.0f);
    vrkSetGamma(0.001f);
    EXPECT_EQ(vrkGetGamma(), 0.001f);
}

TEST_F(StartupTest, SilentEngineKeepsRateAndGamma)
{
    vrkSelectRasterizer(9);
    vrkSetFPS(12);
    vrkSetGamma(1.5f);
    EXPECT_EQ(vrkGetFPS(), 12);
    EXPECT_EQ(vrkGetGamma(), 1.5f);
}
