// Direct3D's device behind the engine's own class.
#pragma once

#include "rasterizer/d3d/com_win32.h"
#include "rasterizer/d3d/system.h"

class WindowsD3DDevice : public D3DDevice
{
public:
    /// @param device  not held: whoever made it releases it
    WindowsD3DDevice(IDirectDraw7* directDraw, IDirect3D7* direct3D, IDirect3DDevice7* device);

    IDirect3DDevice7* get() const { return device; }

    void setRenderState(uint32_t state, uint32_t value) override;
    uint32_t renderState(uint32_t state) override;
    void setStageState(uint32_t stage, uint32_t kind, uint32_t value) override;
    uint32_t stageState(uint32_t stage, uint32_t kind) override;
    void setTransform(uint32_t kind, const float (&m)[16]) override;
    void setMaterial(const Color& diffuse, const Color& ambientColor) override;
    void setTexture(uint32_t stage, D3DTextureSurface* surface) override;
    void draw(uint32_t primitive, uint32_t format, const void* vertices, uint32_t vertexCount,
              uint32_t flags) override;
    void drawIndexed(uint32_t primitive, uint32_t format, const void* vertices, uint32_t vertexCount,
                     const uint16_t* indices, uint32_t indexCount) override;
    void drawIndexed(uint32_t primitive, D3DVertexBuffer& vertices, uint32_t vertexCount,
                     const uint16_t* indices, uint32_t indexCount) override;
    uint32_t clear(uint32_t flags, uint32_t color, float z) override;
    uint32_t beginScene() override;
    uint32_t endScene() override;
    std::vector<D3DPixelFormat> textureFormats() override;
    std::unique_ptr<D3DTextureSurface> createTexture(const D3DTextureRequest& request) override;
    std::unique_ptr<D3DVertexBuffer> createVertexBuffer(uint32_t format, uint32_t vertexCount) override;

private:
    IDirectDraw7* directDraw;
    IDirect3D7* direct3D;
    IDirect3DDevice7* device;
};
