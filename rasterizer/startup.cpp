// Start-up, rasterizer selection and the frame calls.
//
// There is no interface class between the rasterizers: each function is an if on vrkSelectedRasterizer. A
// number that belongs to no rasterizer finds no branch anywhere, which gives hosts an engine without a
// picture.

#include "vornik/rasterizer/startup.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "platform/glcontext.h"
#include "rasterizer/constants.h"
#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/portabletable.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/state.h"

int vrkSelectedRasterizer = 0;
Viewport vrkViewport = {};
float vrkGamma = 1.0f;
int vrkFPS = 0;
int vrkCurrentMipMapType = 35;
int vrkFontBase = 0;
VRKDeviceContext VRK_hDC = nullptr;
VRKRenderingContext VRK_hGLRC = nullptr;
VRKPalette VRK_hPalette = nullptr;
int vrkConvertCapTableOGL[VRK_CONSTANT_COUNT] = {};

static const int constantsOGL[] = {
    GL_TEXTURE,             // VRK_TEXTURE
    GL_PROJECTION,          // VRK_PROJECTION
    GL_MODELVIEW,           // VRK_MODELVIEW
    GL_TEXTURE_2D,          // VRK_TEXTURE_2D
    GL_FOG,                 // VRK_FOG
    GL_BLEND,               // VRK_BLEND
    GL_COLOR_MATERIAL,      // VRK_COLOR_MATERIAL
    GL_CULL_FACE,           // VRK_CULL_FACE
    GL_FLAT,                // VRK_FLAT
    GL_SMOOTH,              // VRK_SMOOTH
    GL_ALPHA_TEST,          // VRK_ALPHA_TEST
    GL_DEPTH_TEST,          // VRK_DEPTH_TEST
    GL_MODULATE,            // VRK_MODULATE
    GL_DECAL,               // VRK_DECAL
    GL_BLEND,               // VRK_TEXENV_BLEND
    0,                      // 15 to 17 are free
    0,                      //
    0,                      //
    GL_SRC_ALPHA,           // VRK_SRC_ALPHA
    GL_DST_ALPHA,           // VRK_DST_ALPHA
    GL_ONE,                 // VRK_ONE
    GL_ONE_MINUS_SRC_ALPHA, // VRK_ONE_MINUS_SRC_ALPHA
    GL_DST_COLOR,           // VRK_DST_COLOR
    GL_SRC_COLOR,           // VRK_SRC_COLOR
    GL_ZERO,                // VRK_ZERO
    GL_EQUAL,               // VRK_EQUAL
    GL_LEQUAL,              // VRK_LEQUAL
    GL_GEQUAL,              // VRK_GEQUAL
    0,                      // VRK_FALSE
    1,                      // VRK_TRUE
    GL_COMPILE,             // VRK_COMPILE
    GL_COMPILE_AND_EXECUTE, // VRK_COMPILE_AND_EXECUTE
    GL_GREATER,             // VRK_GREATER
    GL_ENABLE_BIT,          // VRK_ENABLE_BIT
};
static_assert(std::size(constantsOGL) == VRK_CONSTANT_COUNT);

static void logBits(const char* heading, const SurfaceBits& bits)
{
    char line[128];
    std::snprintf(line, sizeof line, "%s Colorbits: %d Alphabits: %d Depthbits: %d", heading, bits.color,
                  bits.alpha, bits.depth);
    vrkPutToErrorLog(line, 0);
}

// Reports what goes wrong, but lets start-up go on: only a missing context ends it.
static void setPixelFormat(const SurfaceBits& wanted)
{
    logBits("Requested", wanted);
    switch (vrkPlatformSetFormat(VRK_hDC, wanted))
    {
    case FormatResult::noneFits:
        vrkPutToErrorLog("Choose pix format failed!", 1);
        return;
    case FormatResult::refused:
        vrkPutToErrorLog("Set pix format failed!", 2);
        return;
    case FormatResult::set:
        logBits("Response", vrkPlatformFormatBits(VRK_hDC));
    }
}

static bool createContext()
{
    VRK_hGLRC = vrkPlatformCreateContext(VRK_hDC);
    return vrkPlatformMakeCurrent(VRK_hDC, VRK_hGLRC);
}

static void measureViewport(VRKWindow window)
{
    int width = 0;
    int height = 0;
    vrkPlatformClientSize(window, &width, &height);
    vrkViewport.width = static_cast<float>(width);
    vrkViewport.height = static_cast<float>(height);
    vrkViewport.nearClip = 0.01f;
    vrkViewport.farClip = 100000.0f;
    vrkViewport.fov = 90.0f;
    vrkViewport.aspect = vrkViewport.width / vrkViewport.height; // infinite for a window without height
}

int initVornik(int rasterizer, VRKWindow window, Console* console, int colorBits, int alphaBits,
               int depthBits, int fps, bool useTnL, int secondaryDevice, bool windowed)
{
    if (console)
        vrkInitErrorLog(console);
    else
        vrkInitErrorLog(1);
    const int selected = vrkSelectRasterizer(rasterizer);
    if (selected != 0)
        return selected;
    const int result =
        vrkInitViewport(window, colorBits, alphaBits, depthBits, useTnL, secondaryDevice, windowed);
    vrkSetFPS(fps);
    vrkSetGamma(1.0f);
    return result;
}

int initVornik(int rasterizer, VRKWindow window)
{
    vrkInitErrorLog("VRKERROR.LOG");
    const int selected = vrkSelectRasterizer(rasterizer);
    if (selected != 0)
        return selected;
    const int result = vrkInitViewport(window, 32, 0, 32, false, 0, true);
    vrkSetFPS(100);
    vrkSetGamma(1.0f);
    return result;
}

int vrkSelectRasterizer(int rasterizer)
{
    vrkSelectedRasterizer = rasterizer;
    if (rasterizer == 0)
        std::copy(std::begin(constantsOGL), std::end(constantsOGL), vrkConvertCapTableOGL);
    else if (rasterizer == 1)
    {
        if (!makeDirect3D())
            return -1;
        fillDirect3DConstants();
    }
    return 0;
}

int vrkGetRasterizer()
{
    return vrkSelectedRasterizer;
}

int vrkInitViewport(VRKWindow window, int colorBits, int alphaBits, int depthBits, bool useTnL,
                    int secondaryDevice, bool windowed)
{
    if (vrkSelectedRasterizer == 0)
    {
        VRK_hDC = vrkPlatformOpenDevice(window);
        setPixelFormat({colorBits, alphaBits, depthBits});
        VRK_hPalette = vrkPlatformCreatePalette(VRK_hDC);
        if (!createContext())
            return vrkPutToErrorLog("Fatal error, cannot create rendering context!", 41);
        measureViewport(window);
        initOpenGL();
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
    {
        measureViewport(window);
        // Whatever the cause, which the user has seen in a box of its own.
        if (d3d->initialize(window, truncated(vrkViewport.width), truncated(vrkViewport.height), colorBits,
                            useTnL, secondaryDevice, windowed) != 0)
            return vrkPutToErrorLog("Fatal! DX has run out of memory!", 53);
        vrkSetFOV(90.0f);
    }
    return 0;
}

static void resetMatrices()
{
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    // Always 90 degrees here: vrkSetFOV is what brings vrkViewport.fov in.
    gluPerspective(90.0, vrkViewport.aspect, vrkViewport.nearClip, vrkViewport.farClip);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
}

static void resetState()
{
    glEnable(GL_TEXTURE_2D);
    glDisable(GL_BLEND);
    glDisable(GL_POLYGON_SMOOTH);
    glDisable(GL_COLOR_MATERIAL);
    glDisable(GL_LIGHTING);
    glDisable(GL_FOG);
    glDisable(GL_ALPHA_TEST);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);

    glShadeModel(GL_SMOOTH);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);

    // On for good: vrkRenderList only sets the pointers.
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);

    glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_FASTEST);
    glHint(GL_POLYGON_SMOOTH_HINT, GL_FASTEST);
}

static const char* libraryText(GLenum name)
{
    const GLubyte* text = glGetString(name);
    return text ? reinterpret_cast<const char*>(text) : "";
}

static void logLibrary()
{
    const char* vendor = libraryText(GL_VENDOR);
    const char* renderer = libraryText(GL_RENDERER);
    const char* version = libraryText(GL_VERSION);
    libraryText(GL_EXTENSIONS); // asked for with the others; nothing depends on an extension

    char text[1024];
    std::snprintf(text, sizeof text, "OpenGL information:\n  Vendor: %s\n  Renderer: %s\n  Version: %s\n",
                  vendor, renderer, version);
    vrkPutToErrorLog(text, 0);
}

void initOpenGL()
{
    if (vrkSelectedRasterizer == 0)
    {
        glViewport(0, 0, truncated(vrkViewport.width), truncated(vrkViewport.height));
        resetMatrices();
        resetState();
        logLibrary();
    }
}

void vrkUnInit3D()
{
    // Context and drawable of OpenGL stay: the host may go on drawing after the engine has stopped.
    if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->shutdown();
}

void vrkSetFPS(int framesPerSecond)
{
    vrkFPS = framesPerSecond;
}

int vrkGetFPS()
{
    return vrkFPS;
}

void vrkSetGamma(float gamma)
{
    if (gamma > 0.0f && gamma <= 2.0f)
        vrkGamma = gamma;
}

float vrkGetGamma()
{
    return vrkGamma;
}

void vrkClear()
{
    if (vrkSelectedRasterizer == 0)
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->clear(d3d::clearTarget | d3d::clearDepth, 1.0f);
}

void vrkSwapBuffers()
{
    if (vrkSelectedRasterizer == 0)
        vrkPlatformSwapBuffers(VRK_hDC);
    else if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->present();
}

// OpenGL looks after its own surfaces and has no scenes to open and close.
void vrkDXRestoreSurfaces()
{
    if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->restoreTextures();
}

void vrkDXBeginScene()
{
    if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->beginScene();
}

void vrkDXEndScene()
{
    if (D3DRasterizer* d3d = selectedDirect3D())
        d3d->endScene();
}
