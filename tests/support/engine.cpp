#include "tests/support/engine.h"

#include <GL/gl.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>

#include "apps/vornik/surface.h"
#include "tests/support/glrecorder.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"

std::ostream& operator<<(std::ostream& stream, const Pixel& pixel)
{
    return stream << '(' << pixel.r << ", " << pixel.g << ", " << pixel.b << ", " << pixel.a << ')';
}

bool isNear(const Pixel& a, const Pixel& b, int tolerance)
{
    return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance &&
           std::abs(a.b - b.b) <= tolerance;
}

// The start that all tests of one size share.
static struct
{
    VRKRenderingContext context = nullptr;
    std::unique_ptr<Surface> surface;
    int width = 0;
    int height = 0;
    Viewport viewport = {};
} started;

// Brings everything that glPushAttrib covers, and the matrix stacks, back to how the context began.
static void restoreState()
{
    GLint depth = 0;
    for (glGetIntegerv(GL_ATTRIB_STACK_DEPTH, &depth); depth > 0; --depth)
        glPopAttrib();
    for (glGetIntegerv(GL_CLIENT_ATTRIB_STACK_DEPTH, &depth); depth > 0; --depth)
        glPopClientAttrib();
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);

    static const GLenum stacks[][2] = {{GL_TEXTURE, GL_TEXTURE_STACK_DEPTH},
                                       {GL_PROJECTION, GL_PROJECTION_STACK_DEPTH},
                                       {GL_MODELVIEW, GL_MODELVIEW_STACK_DEPTH}};
    for (const auto& [mode, depthName] : stacks)
    {
        glMatrixMode(mode);
        for (glGetIntegerv(depthName, &depth); depth > 1; --depth)
            glPopMatrix();
    }
}

static bool start(int width, int height)
{
    started = {};
    started.surface = std::make_unique<Surface>(width, height);
    started.width = width;
    started.height = height;
    if (vrkInitViewport(started.surface->window(), 32, 8, 24, false, 0, true) != 0)
        return false;
    started.context = VRK_hGLRC;
    started.viewport = vrkViewport;
    return true;
}

VRKWindow EngineTest::surface(int width, int height)
{
    static std::vector<std::unique_ptr<Surface>> surfaces;
    surfaces.push_back(std::make_unique<Surface>(width, height));
    return surfaces.back()->window();
}

EngineTest::EngineTest(int w, int h) : width(w), height(h) {}

EngineTest::~EngineTest() = default;

void EngineTest::SetUp()
{
    const GLRecorder::Pause unheard;
    vrkInitErrorLog(3);
    vrkSelectRasterizer(0);
    const bool same =
        started.context && VRK_hGLRC == started.context && started.width == width && started.height == height;
    ASSERT_TRUE(same || start(width, height)) << "OpenGL can't start off-screen on this machine";

    vrkViewport = started.viewport;
    vrkSetFPS(100);
    vrkSetGamma(1.0f);
    vrkCurrentMipMapType = 35;
    restoreState();
    initOpenGL();
    vrkClear();
    while (glGetError() != GL_NO_ERROR)
    {
    }

    const std::string file = folder.path("log");
    ASSERT_LT(file.size(), sizeof vrkError.fileName);
    vrkInitErrorLog(file.c_str());
}

void EngineTest::TearDown()
{
    vrkInitErrorLog(3);
}

std::string EngineTest::log() const
{
    return folder.readText("log");
}

bool EngineTest::logged(const std::string& line) const
{
    return ("\n" + log()).find("\n" + line + "\n") != std::string::npos;
}

Pixel EngineTest::pixel(int x, int y) const
{
    return pixels().at(static_cast<size_t>(y * width + x));
}

std::vector<Pixel> EngineTest::pixels() const
{
    const GLRecorder::Pause unheard;
    std::vector<GLubyte> bytes(static_cast<size_t>(width * height * 4));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, bytes.data());
    std::vector<Pixel> result;
    for (size_t i = 0; i < bytes.size(); i += 4)
        result.push_back({bytes[i], bytes[i + 1], bytes[i + 2], bytes[i + 3]});
    return result;
}

int EngineTest::drawnPixels() const
{
    int drawn = 0;
    for (const Pixel& p : pixels())
        drawn += p.r || p.g || p.b;
    return drawn;
}

float EngineTest::depth(int x, int y) const
{
    const GLRecorder::Pause unheard;
    float value = -1.0f;
    glReadPixels(x, y, 1, 1, GL_DEPTH_COMPONENT, GL_FLOAT, &value);
    return value;
}

::testing::AssertionResult EngineTest::pixelIs(int x, int y, const Pixel& expected, int tolerance) const
{
    const Pixel found = pixel(x, y);
    if (isNear(found, expected, tolerance))
        return ::testing::AssertionSuccess();
    std::ostringstream text;
    text << "pixel " << x << ", " << y << " is " << found << " instead of " << expected;
    return ::testing::AssertionFailure() << text.str();
}

void EngineTest::writePicture(const std::string& path) const
{
    const std::vector<Pixel> all = pixels();
    std::ofstream stream(path, std::ios::binary);
    stream << "P6\n" << width << ' ' << height << "\n255\n";
    for (int y = height - 1; y >= 0; --y)
        for (int x = 0; x < width; ++x)
        {
            const Pixel& p = all[static_cast<size_t>(y * width + x)];
            for (const int channel : {p.r, p.g, p.b})
                stream.put(static_cast<char>(channel));
        }
}
