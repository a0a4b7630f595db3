#ifndef VORNIK_RASTERIZER_STARTUP_H
#define VORNIK_RASTERIZER_STARTUP_H

// Starting the engine, choosing the rasterizer, and the calls that begin and end a frame.
//
// Every function of the rasterizer layer branches on vrkSelectedRasterizer: 0 OpenGL, 1 Direct3D, anything
// else neither. With "neither" all of them do nothing and return 0 or false: a silent engine.

#include "vornik/core/vectors.h"
#include "vornik/export.h"
#include "vornik/platform.h"

class Console;

/// Portable constants. All state calls take these; vrkConvertCapTableOGL translates them.
enum VRKConstant
{
    VRK_TEXTURE = 0,
    VRK_PROJECTION = 1,
    VRK_MODELVIEW = 2,
    VRK_TEXTURE_2D = 3,
    VRK_FOG = 4,
    VRK_BLEND = 5,
    VRK_COLOR_MATERIAL = 6,
    VRK_CULL_FACE = 7,
    VRK_FLAT = 8,
    VRK_SMOOTH = 9,
    VRK_ALPHA_TEST = 10,
    VRK_DEPTH_TEST = 11,
    VRK_MODULATE = 12,
    VRK_DECAL = 13,
    VRK_TEXENV_BLEND = 14,
    VRK_SRC_ALPHA = 18,
    VRK_DST_ALPHA = 19,
    VRK_ONE = 20,
    VRK_ONE_MINUS_SRC_ALPHA = 21,
    VRK_DST_COLOR = 22,
    VRK_SRC_COLOR = 23,
    VRK_ZERO = 24,
    VRK_EQUAL = 25,
    VRK_LEQUAL = 26,
    VRK_GEQUAL = 27,
    VRK_FALSE = 28,
    VRK_TRUE = 29,
    VRK_COMPILE = 30,
    VRK_COMPILE_AND_EXECUTE = 31,
    VRK_GREATER = 32,
    VRK_ENABLE_BIT = 33,
    VRK_CONSTANT_COUNT = 34
};

extern VRK_API int vrkSelectedRasterizer;     ///< 0 OpenGL, 1 Direct3D
extern VRK_API Viewport vrkViewport;          ///< the engine's viewport, in pixels and degrees
extern VRK_API float vrkGamma;                ///< exponent for applied light
extern VRK_API int vrkFPS;                    ///< frame rate declared by the host
extern VRK_API int vrkCurrentMipMapType;      ///< 35: trilinear; anything else: nearest mip level
extern VRK_API int vrkFontBase;               ///< first display list of the bitmap font
extern VRK_API VRKDeviceContext VRK_hDC;      ///< OpenGL only; the drawable
extern VRK_API VRKRenderingContext VRK_hGLRC; ///< OpenGL only; the context
extern VRK_API VRKPalette VRK_hPalette;       ///< OpenGL only, on palette displays
extern VRK_API int vrkConvertCapTableOGL[VRK_CONSTANT_COUNT]; ///< portable constant to the rasterizer's own

/// Starts the engine on the host's window.
/// @param rasterizer  0 OpenGL, 1 Direct3D (Windows only); any other number starts a silent engine
/// @param window      read during the call only; must outlive the engine's drawing
/// @param console     where reports go; null asks the user about each report
/// @param colorBits, alphaBits, depthBits  wanted of the surface; what was obtained is in the log
/// @param fps         frame rate that the host declares
/// @param useTnL, secondaryDevice, windowed  choice of the Direct3D device; OpenGL ignores them
/// @return 0; -1 if the rasterizer can't be created; 41 no OpenGL context, 53 no Direct3D, both logged
/// Starting again draws on the new surface with a new context; textures and display lists of the older
/// context stay behind in it, and it lives until the process ends.
VRK_API int initVornik(int rasterizer, VRKWindow window, Console* console, int colorBits, int alphaBits,
                       int depthBits, int fps, bool useTnL, int secondaryDevice, bool windowed);

/// Starts with 32 colour bits, no alpha, 32 depth bits, 100 frames a second, and the log file "VRKERROR.LOG".
VRK_API int initVornik(int rasterizer, VRKWindow window);

/// Chooses the rasterizer and fills vrkConvertCapTableOGL. The number is stored whatever it is.
/// @return 0, or -1 if rasterizer 1 can't be created
VRK_API int vrkSelectRasterizer(int rasterizer);
/// vrkSelectedRasterizer.
VRK_API int vrkGetRasterizer();

/// Creates the surface and the context and sets vrkViewport. @return 0, 41 or 53, logged
VRK_API int vrkInitViewport(VRKWindow window, int colorBits, int alphaBits, int depthBits, bool useTnL,
                            int secondaryDevice, bool windowed);

/// Sets OpenGL's state to what all drawing expects: texturing, depth test and culling on, lighting off, the
/// four client arrays on.
VRK_API void initOpenGL();

/// Releases rasterizer 1. On OpenGL context and drawable stay.
VRK_API void vrkUnInit3D();

/// Declares the frame rate, by which glow sprites fade. Nothing is measured or held back.
VRK_API void vrkSetFPS(int framesPerSecond);
/// vrkFPS.
VRK_API int vrkGetFPS();
/// @param gamma  above 0 and at most 2; anything else is ignored
VRK_API void vrkSetGamma(float gamma);
/// vrkGamma.
VRK_API float vrkGetGamma();

/// Clears colour and depth.
VRK_API void vrkClear();
/// Shows what was drawn.
VRK_API void vrkSwapBuffers();

VRK_API void vrkDXRestoreSurfaces(); ///< rasterizer 1 only
VRK_API void vrkDXBeginScene();      ///< rasterizer 1 only
VRK_API void vrkDXEndScene();        ///< rasterizer 1 only

#endif
