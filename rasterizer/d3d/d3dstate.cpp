// What rasterizer 1 makes of the engine's state calls: render states, texture stages, fog, view and
// projection.

#include <bit>
#include <cmath>
#include <cstring>

#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/packedcolor.h"
#include "rasterizer/d3d/viewmatrix.h"
#include "rasterizer/truncate.h"
#include "vornik/rasterizer/startup.h"

void D3DRasterizer::enable(int index)
{
    switch (index)
    {
    case VRK_FOG:
        return setRenderState(d3d::fogEnable, 1u);
    case VRK_BLEND:
        return setRenderState(d3d::alphaBlendEnable, 1u);
    case VRK_CULL_FACE:
        return setRenderState(d3d::cullMode, d3d::cullCounterClockwise);
    case VRK_ALPHA_TEST:
        return setRenderState(d3d::alphaTestEnable, 1u);
    case VRK_DEPTH_TEST:
        return setRenderState(d3d::zEnable, 1u);
    default:
        return; // texturing is switched on by setting a texture
    }
}

void D3DRasterizer::disable(int index)
{
    switch (index)
    {
    case VRK_TEXTURE:
        return setTexture(nullptr);
    case VRK_FOG:
        return setRenderState(d3d::fogEnable, 0u);
    case VRK_BLEND:
        return setRenderState(d3d::alphaBlendEnable, 0u);
    case VRK_CULL_FACE:
        return setRenderState(d3d::cullMode, d3d::cullNone);
    case VRK_ALPHA_TEST:
        return setRenderState(d3d::alphaTestEnable, 0u);
    case VRK_DEPTH_TEST:
        return setRenderState(d3d::zEnable, 0u);
    default:
        return;
    }
}

bool D3DRasterizer::isEnabled(int value)
{
    if (!device)
        return false;
    // By the index's own number, though a constant has been translated: so the alpha test, which translates
    // to 15, never counts as on.
    switch (value)
    {
    case VRK_FOG:
        return device->renderState(d3d::fogEnable) == 1;
    case VRK_BLEND:
        return device->renderState(d3d::alphaBlendEnable) == 1;
    case VRK_CULL_FACE:
        return device->renderState(d3d::cullMode) == d3d::cullCounterClockwise;
    case VRK_ALPHA_TEST:
        return device->renderState(d3d::alphaTestEnable) == 1;
    case VRK_DEPTH_TEST:
        return device->renderState(d3d::zEnable) == 1;
    default:
        return false;
    }
}

void D3DRasterizer::setRenderState(uint32_t state, uint32_t value)
{
    if (device)
        device->setRenderState(state, value);
}

void D3DRasterizer::setRenderState(uint32_t state, float value)
{
    setRenderState(state, std::bit_cast<uint32_t>(value));
}

void D3DRasterizer::setStageState(uint32_t kind, uint32_t value)
{
    if (device)
        device->setStageState(0, kind, value);
}

uint32_t D3DRasterizer::stageState(uint32_t kind)
{
    return device ? device->stageState(0, kind) : 0;
}

int D3DRasterizer::setColorStage(uint32_t stage, uint32_t operation, uint32_t arg1, uint32_t arg2)
{
    if (device)
    {
        device->setStageState(stage, d3d::colorArg1, arg1);
        device->setStageState(stage, d3d::colorOp, operation);
        device->setStageState(stage, d3d::colorArg2, arg2);
    }
    return 1;
}

int D3DRasterizer::setAlphaStage(uint32_t stage, uint32_t operation, uint32_t arg1, uint32_t arg2)
{
    if (device)
    {
        device->setStageState(stage, d3d::alphaArg1, arg1);
        device->setStageState(stage, d3d::alphaOp, operation);
        device->setStageState(stage, d3d::alphaArg2, arg2);
    }
    return 1;
}

void D3DRasterizer::setBlend(uint32_t source, uint32_t destination)
{
    setRenderState(d3d::srcBlend, source);
    setRenderState(d3d::destBlend, destination);
}

// A negative reference is a huge number to the limit.
static uint32_t alphaReference(float reference)
{
    const float scaled = std::trunc(reference * 255.0f);
    if (std::isnan(scaled))
        return 0;
    return scaled < 0.0f || scaled > 255.0f ? 255 : static_cast<uint32_t>(scaled);
}

void D3DRasterizer::setAlphaFunction(uint32_t function, float reference)
{
    setRenderState(d3d::alphaRef, alphaReference(reference));
    setRenderState(d3d::alphaFunc, function);
}

void D3DRasterizer::setClearColor(Color* c)
{
    clearColor = packLimited(c);
}

void D3DRasterizer::setLinearFog(const Color& c, float start, float end)
{
    enable(VRK_FOG);
    setRenderState(d3d::fogVertexMode, d3d::fogNone);
    setRenderState(d3d::fogTableMode, d3d::fogLinear);
    setRenderState(d3d::fogStart, start);
    setRenderState(d3d::fogEnd, end);
    setRenderState(d3d::fogColor, packUnlimited(c));
}

void D3DRasterizer::setDensityFog(const Color& c, float density)
{
    enable(VRK_FOG);
    setRenderState(d3d::fogVertexMode, d3d::fogNone);
    setRenderState(d3d::fogTableMode, d3d::fogExp2);
    setRenderState(d3d::fogDensity, density);
    setRenderState(d3d::fogColor, packUnlimited(c));
}

void D3DRasterizer::lookAt(Vertex3D* eye, Vertex3D* target, const Vertex3D& up)
{
    buildViewMatrix(viewMatrix, eye, target, up);
    if (device)
        device->setTransform(d3d::view, viewMatrix);
}

void D3DRasterizer::setProjection(float fov, float aspect, float nearClip, float farClip)
{
    // What can't be built leaves the projection as it is, and that is set again.
    buildProjectionMatrix(projectionMatrix, vrkRad(fov), 1.0f / aspect, nearClip, farClip);
    if (device)
        device->setTransform(d3d::projection, projectionMatrix);
}

void D3DRasterizer::useWorldMatrix()
{
    if (device && matrixStack)
        device->setTransform(d3d::world, matrixStack->top());
}

void D3DRasterizer::setWorldMatrix(const float (&m)[4][4])
{
    float rows[16];
    std::memcpy(rows, m, sizeof rows);
    if (device)
        device->setTransform(d3d::world, rows);
}

void D3DRasterizer::setTexture(D3DTextureSurface* surface)
{
    if (device)
        device->setTexture(0, surface);
}

void D3DRasterizer::drawStrip(const D3DWorldVertex (&vertices)[4])
{
    if (device)
        device->draw(d3d::triangleStrip, d3d::fvfWorld, vertices, 4, 0);
}

void D3DRasterizer::drawStrip(const D3DScreenVertex (&vertices)[4])
{
    if (device)
        device->draw(d3d::triangleStrip, d3d::fvfScreen, vertices, 4, d3d::drawWait);
}

void D3DRasterizer::write(float x, float y, const Color& c, const char* text)
{
    if (surfaces && device)
        surfaces->writeText(truncated(x), truncated(y), packForWindow(c), text);
}
