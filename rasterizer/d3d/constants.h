// The numbers of Direct3D 7 that the engine passes, so that everything but the calls themselves compiles and
// is tested on every system. device_win32.cpp holds them against the library's own.
#pragma once

#include <cstdint>

namespace d3d
{
// Render states
constexpr uint32_t zEnable = 7;
constexpr uint32_t shadeMode = 9;
constexpr uint32_t zWriteEnable = 14;
constexpr uint32_t alphaTestEnable = 15;
constexpr uint32_t srcBlend = 19;
constexpr uint32_t destBlend = 20;
constexpr uint32_t cullMode = 22;
constexpr uint32_t zFunc = 23;
constexpr uint32_t alphaRef = 24;
constexpr uint32_t alphaFunc = 25;
constexpr uint32_t ditherEnable = 26;
constexpr uint32_t alphaBlendEnable = 27;
constexpr uint32_t fogEnable = 28;
constexpr uint32_t specularEnable = 29;
constexpr uint32_t fogColor = 34;
constexpr uint32_t fogTableMode = 35;
constexpr uint32_t fogStart = 36;
constexpr uint32_t fogEnd = 37;
constexpr uint32_t fogDensity = 38;
constexpr uint32_t lighting = 137;
constexpr uint32_t ambient = 139;
constexpr uint32_t fogVertexMode = 140;

// Values of render states
constexpr uint32_t cullNone = 1;
constexpr uint32_t cullCounterClockwise = 3;
constexpr uint32_t fogNone = 0;
constexpr uint32_t fogExp2 = 2;
constexpr uint32_t fogLinear = 3;

// Texture stages
constexpr uint32_t colorOp = 1;
constexpr uint32_t colorArg1 = 2;
constexpr uint32_t colorArg2 = 3;
constexpr uint32_t alphaOp = 4;
constexpr uint32_t alphaArg1 = 5;
constexpr uint32_t alphaArg2 = 6;
constexpr uint32_t address = 12;
constexpr uint32_t magFilter = 16;
constexpr uint32_t minFilter = 17;
constexpr uint32_t mipFilter = 18;

// Values of texture stages
constexpr uint32_t selectArg1 = 2;
constexpr uint32_t modulate = 4;
constexpr uint32_t argDiffuse = 0;
constexpr uint32_t argTexture = 2;
constexpr uint32_t filterLinear = 2; // magnifying and minifying
constexpr uint32_t mipNone = 1;
constexpr uint32_t mipPoint = 2;
constexpr uint32_t mipLinear = 3;
constexpr uint32_t addressWrap = 1;

// Transforms
constexpr uint32_t world = 1;
constexpr uint32_t view = 2;
constexpr uint32_t projection = 3;

// Primitives, and the flag that makes a draw wait
constexpr uint32_t lineList = 2;
constexpr uint32_t triangleList = 4;
constexpr uint32_t triangleStrip = 5;
constexpr uint32_t drawWait = 1;

// Vertex formats
constexpr uint32_t fvfXyz = 0x2;
constexpr uint32_t fvfXyzRhw = 0x4;
constexpr uint32_t fvfDiffuse = 0x40;
constexpr uint32_t fvfSpecular = 0x80;
constexpr uint32_t fvfTex1 = 0x100;
constexpr uint32_t fvfWorld = fvfXyz | fvfDiffuse | fvfTex1;                   // D3DWorldVertex
constexpr uint32_t fvfWindow = fvfXyzRhw | fvfDiffuse | fvfTex1;               // D3DMesh::WindowVertex
constexpr uint32_t fvfScreen = fvfXyzRhw | fvfDiffuse | fvfSpecular | fvfTex1; // D3DScreenVertex

// What Clear clears
constexpr uint32_t clearTarget = 1;
constexpr uint32_t clearDepth = 2;

// Capabilities
constexpr uint32_t hardwareRasterization = 0x00080000; // of a device
constexpr uint32_t canRenderWindowed = 0x00080000;     // of a driver
constexpr uint32_t blendOne = 0x2;
constexpr uint32_t texturePow2 = 0x2;
constexpr uint32_t textureSquareOnly = 0x20;
constexpr uint32_t hiddenSurfacesWithoutDepth = 0x8000;
constexpr uint32_t renderDepth32 = 0x100;
constexpr uint32_t renderDepth24 = 0x200;
constexpr uint32_t renderDepth16 = 0x400;

// Pixel formats
constexpr uint32_t pixelsAlpha = 0x1;
constexpr uint32_t pixelsFourCC = 0x4;
constexpr uint32_t pixelsRgb = 0x40;
constexpr uint32_t pixelsDepth = 0x400;
constexpr uint32_t pixelsStencil = 0x4000;
constexpr uint32_t pixelsLuminance = 0x20000;
constexpr uint32_t pixelsBumpLuminance = 0x40000;
constexpr uint32_t pixelsBump = 0x80000;

// Results of the libraries
constexpr uint32_t ok = 0;
constexpr uint32_t outOfMemory = 0x8007000E;
constexpr uint32_t invalidArgument = 0x80070057;
constexpr uint32_t failed = 0x80004005;
constexpr uint32_t outOfVideoMemory = 0x8876017C;
constexpr uint32_t surfaceLost = 0x887601C2;
constexpr uint32_t noExclusiveMode = 0x887600E1;
constexpr uint32_t exclusiveModeAlreadySet = 0x88760245;
constexpr uint32_t wrongMode = 0x8876024B;

// Results of the engine
constexpr uint32_t noDirectDraw = 0x81000001;
constexpr uint32_t enumerationFailed = 0x81000002;
constexpr uint32_t noDevices = 0x81000003;
constexpr uint32_t noSuitableDevice = 0x81000004;
constexpr uint32_t initializationFailed = 0x82000000;
constexpr uint32_t directDrawFailed = 0x82000001;
constexpr uint32_t cooperativeLevelFailed = 0x82000002;
constexpr uint32_t direct3DFailed = 0x82000003;
constexpr uint32_t deviceFailed = 0x82000004;
constexpr uint32_t depthBufferFailed = 0x82000005;
constexpr uint32_t depthBufferDepth = 0x82000006;
constexpr uint32_t viewportFailed = 0x82000007;
constexpr uint32_t primaryFailed = 0x82000008;
constexpr uint32_t clipperFailed = 0x82000009;
constexpr uint32_t badDisplayMode = 0x8200000A;
constexpr uint32_t backBufferFailed = 0x8200000B;
constexpr uint32_t stillReferenced = 0x8200000C;
constexpr uint32_t renderTargetFailed = 0x8200000D;
constexpr uint32_t desktopTooShallow = 0x8200000E;
constexpr uint32_t primaryGone = 0x8200000F;

/// Is a result a failure?
constexpr bool isFailure(uint32_t code)
{
    return (code & 0x80000000u) != 0;
}
} // namespace d3d
