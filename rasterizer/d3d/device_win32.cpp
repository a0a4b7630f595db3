// Direct3D's device. Results of draws and states aren't examined: surfaces may be lost at any call, and what
// is then drawn into nothing comes back with the next frame.

#include "rasterizer/d3d/device_win32.h"

#include <algorithm>
#include <cstring>

#include "rasterizer/d3d/constants.h"

static_assert(d3d::zEnable == D3DRENDERSTATE_ZENABLE && d3d::shadeMode == D3DRENDERSTATE_SHADEMODE &&
              d3d::zWriteEnable == D3DRENDERSTATE_ZWRITEENABLE &&
              d3d::alphaTestEnable == D3DRENDERSTATE_ALPHATESTENABLE &&
              d3d::srcBlend == D3DRENDERSTATE_SRCBLEND && d3d::destBlend == D3DRENDERSTATE_DESTBLEND &&
              d3d::cullMode == D3DRENDERSTATE_CULLMODE && d3d::zFunc == D3DRENDERSTATE_ZFUNC &&
              d3d::alphaRef == D3DRENDERSTATE_ALPHAREF && d3d::alphaFunc == D3DRENDERSTATE_ALPHAFUNC &&
              d3d::ditherEnable == D3DRENDERSTATE_DITHERENABLE &&
              d3d::alphaBlendEnable == D3DRENDERSTATE_ALPHABLENDENABLE &&
              d3d::fogEnable == D3DRENDERSTATE_FOGENABLE &&
              d3d::specularEnable == D3DRENDERSTATE_SPECULARENABLE &&
              d3d::fogColor == D3DRENDERSTATE_FOGCOLOR && d3d::fogTableMode == D3DRENDERSTATE_FOGTABLEMODE &&
              d3d::fogStart == D3DRENDERSTATE_FOGSTART && d3d::fogEnd == D3DRENDERSTATE_FOGEND &&
              d3d::fogDensity == D3DRENDERSTATE_FOGDENSITY && d3d::lighting == D3DRENDERSTATE_LIGHTING &&
              d3d::ambient == D3DRENDERSTATE_AMBIENT && d3d::fogVertexMode == D3DRENDERSTATE_FOGVERTEXMODE);
static_assert(d3d::cullNone == D3DCULL_NONE && d3d::cullCounterClockwise == D3DCULL_CCW &&
              d3d::fogNone == D3DFOG_NONE && d3d::fogExp2 == D3DFOG_EXP2 && d3d::fogLinear == D3DFOG_LINEAR);
static_assert(d3d::colorOp == D3DTSS_COLOROP && d3d::colorArg1 == D3DTSS_COLORARG1 &&
              d3d::colorArg2 == D3DTSS_COLORARG2 && d3d::alphaOp == D3DTSS_ALPHAOP &&
              d3d::alphaArg1 == D3DTSS_ALPHAARG1 && d3d::alphaArg2 == D3DTSS_ALPHAARG2 &&
              d3d::address == D3DTSS_ADDRESS && d3d::magFilter == D3DTSS_MAGFILTER &&
              d3d::minFilter == D3DTSS_MINFILTER && d3d::mipFilter == D3DTSS_MIPFILTER);
static_assert(d3d::selectArg1 == D3DTOP_SELECTARG1 && d3d::modulate == D3DTOP_MODULATE &&
              d3d::argDiffuse == D3DTA_DIFFUSE && d3d::argTexture == D3DTA_TEXTURE &&
              d3d::filterLinear == D3DTFG_LINEAR && d3d::filterLinear == D3DTFN_LINEAR &&
              d3d::mipNone == D3DTFP_NONE && d3d::mipPoint == D3DTFP_POINT &&
              d3d::mipLinear == D3DTFP_LINEAR && d3d::addressWrap == D3DTADDRESS_WRAP);
static_assert(d3d::world == D3DTRANSFORMSTATE_WORLD && d3d::view == D3DTRANSFORMSTATE_VIEW &&
              d3d::projection == D3DTRANSFORMSTATE_PROJECTION && d3d::lineList == D3DPT_LINELIST &&
              d3d::triangleList == D3DPT_TRIANGLELIST && d3d::triangleStrip == D3DPT_TRIANGLESTRIP &&
              d3d::drawWait == D3DDP_WAIT);
static_assert(d3d::fvfXyz == D3DFVF_XYZ && d3d::fvfXyzRhw == D3DFVF_XYZRHW &&
              d3d::fvfDiffuse == D3DFVF_DIFFUSE && d3d::fvfSpecular == D3DFVF_SPECULAR &&
              d3d::fvfTex1 == D3DFVF_TEX1 && d3d::fvfWorld == 322 && d3d::clearTarget == D3DCLEAR_TARGET &&
              d3d::clearDepth == D3DCLEAR_ZBUFFER);
static_assert(d3d::hardwareRasterization == D3DDEVCAPS_HWRASTERIZATION &&
              d3d::canRenderWindowed == DDCAPS2_CANRENDERWINDOWED && d3d::blendOne == D3DPBLENDCAPS_ONE &&
              d3d::texturePow2 == D3DPTEXTURECAPS_POW2 &&
              d3d::textureSquareOnly == D3DPTEXTURECAPS_SQUAREONLY &&
              d3d::hiddenSurfacesWithoutDepth == D3DPRASTERCAPS_ZBUFFERLESSHSR &&
              d3d::renderDepth32 == DDBD_32 && d3d::renderDepth24 == DDBD_24 &&
              d3d::renderDepth16 == DDBD_16);
static_assert(d3d::pixelsAlpha == DDPF_ALPHAPIXELS && d3d::pixelsFourCC == DDPF_FOURCC &&
              d3d::pixelsRgb == DDPF_RGB && d3d::pixelsDepth == DDPF_ZBUFFER &&
              d3d::pixelsStencil == DDPF_STENCILBUFFER && d3d::pixelsLuminance == DDPF_LUMINANCE &&
              d3d::pixelsBumpLuminance == DDPF_BUMPLUMINANCE && d3d::pixelsBump == DDPF_BUMPDUDV);
static_assert(d3d::outOfMemory == uint32_t(E_OUTOFMEMORY) && d3d::invalidArgument == uint32_t(E_INVALIDARG) &&
              d3d::failed == uint32_t(E_FAIL) && d3d::outOfVideoMemory == uint32_t(DDERR_OUTOFVIDEOMEMORY) &&
              d3d::surfaceLost == uint32_t(DDERR_SURFACELOST) &&
              d3d::noExclusiveMode == uint32_t(DDERR_NOEXCLUSIVEMODE) &&
              d3d::exclusiveModeAlreadySet == uint32_t(DDERR_EXCLUSIVEMODEALREADYSET) &&
              d3d::wrongMode == uint32_t(DDERR_WRONGMODE));

// A texture and the surfaces of its mip levels.
class WindowsTextureSurface : public D3DTextureSurface
{
public:
    explicit WindowsTextureSurface(const D3DPixelFormat& pixels) : pixelFormat(pixels) {}

    bool create(IDirectDraw7* directDraw, DDSURFACEDESC2* description)
    {
        if (FAILED(directDraw->CreateSurface(description, surface.receive(), nullptr)))
            return false;
        DDSURFACEDESC2 made = sized<DDSURFACEDESC2>();
        if (SUCCEEDED(surface->GetSurfaceDesc(&made)))
            pixelFormat = fromSystem(made.ddpfPixelFormat);
        levels = description->dwFlags & DDSD_MIPMAPCOUNT && made.dwFlags & DDSD_MIPMAPCOUNT
                     ? static_cast<int>(made.dwMipMapCount)
                     : 1;
        return true;
    }

    IDirectDrawSurface7* get() const { return surface.get(); }
    int levelCount() const override { return levels; }
    const D3DPixelFormat& format() const override { return pixelFormat; }

    bool lock(int index, Level* level) override
    {
        if (!find(index))
            return false;
        DDSURFACEDESC2 locked = sized<DDSURFACEDESC2>();
        if (FAILED(found->Lock(nullptr, &locked, DDLOCK_WAIT | DDLOCK_WRITEONLY, nullptr)))
        {
            found.release();
            return false;
        }
        *level = {static_cast<uint8_t*>(locked.lpSurface), static_cast<int>(locked.lPitch),
                  static_cast<int>(locked.dwWidth), static_cast<int>(locked.dwHeight)};
        return true;
    }

    void unlock(int) override
    {
        if (found)
            found->Unlock(nullptr);
        found.release();
    }

private:
    ComHolder<IDirectDrawSurface7> surface;
    ComHolder<IDirectDrawSurface7> found; // the level that is locked
    D3DPixelFormat pixelFormat;
    int levels = 1;

    // Goes down from the first level, each being attached to the one above.
    bool find(int index)
    {
        surface->AddRef();
        *found.receive() = surface.get();
        for (; index > 0; --index)
        {
            DDSCAPS2 caps = {};
            caps.dwCaps = DDSCAPS_TEXTURE | DDSCAPS_MIPMAP;
            caps.dwCaps2 = DDSCAPS2_MIPMAPSUBLEVEL;
            IDirectDrawSurface7* below = nullptr;
            if (FAILED(found->GetAttachedSurface(&caps, &below)))
            {
                found.release();
                return false;
            }
            *found.receive() = below;
        }
        return true;
    }
};

class WindowsVertexBuffer : public D3DVertexBuffer
{
public:
    bool create(IDirect3D7* direct3D, uint32_t format, uint32_t vertexCount)
    {
        D3DVERTEXBUFFERDESC description = sized<D3DVERTEXBUFFERDESC>();
        description.dwCaps = D3DVBCAPS_SYSTEMMEMORY;
        description.dwFVF = format;
        description.dwNumVertices = vertexCount;
        return SUCCEEDED(direct3D->CreateVertexBuffer(&description, buffer.receive(), 0));
    }

    IDirect3DVertexBuffer7* get() const { return buffer.get(); }

    void fill(const void* vertices, size_t size) override
    {
        void* content = nullptr;
        DWORD room = 0;
        if (FAILED(buffer->Lock(DDLOCK_WAIT | DDLOCK_WRITEONLY, &content, &room)))
            return;
        std::memcpy(content, vertices, std::min<size_t>(size, room));
        buffer->Unlock();
    }

private:
    ComHolder<IDirect3DVertexBuffer7> buffer;
};

WindowsD3DDevice::WindowsD3DDevice(IDirectDraw7* draw, IDirect3D7* direct, IDirect3DDevice7* made)
    : directDraw(draw), direct3D(direct), device(made)
{
}

void WindowsD3DDevice::setRenderState(uint32_t state, uint32_t value)
{
    device->SetRenderState(static_cast<D3DRENDERSTATETYPE>(state), value);
}

uint32_t WindowsD3DDevice::renderState(uint32_t state)
{
    DWORD value = 0;
    device->GetRenderState(static_cast<D3DRENDERSTATETYPE>(state), &value);
    return value;
}

void WindowsD3DDevice::setStageState(uint32_t stage, uint32_t kind, uint32_t value)
{
    device->SetTextureStageState(stage, static_cast<D3DTEXTURESTAGESTATETYPE>(kind), value);
}

uint32_t WindowsD3DDevice::stageState(uint32_t stage, uint32_t kind)
{
    DWORD value = 0;
    device->GetTextureStageState(stage, static_cast<D3DTEXTURESTAGESTATETYPE>(kind), &value);
    return value;
}

void WindowsD3DDevice::setTransform(uint32_t kind, const float (&m)[16])
{
    D3DMATRIX matrix;
    static_assert(sizeof matrix == sizeof m);
    std::memcpy(&matrix, m, sizeof matrix);
    device->SetTransform(static_cast<D3DTRANSFORMSTATETYPE>(kind), &matrix);
}

void WindowsD3DDevice::setMaterial(const Color& diffuse, const Color& ambientColor)
{
    D3DMATERIAL7 material = {};
    material.diffuse.r = diffuse.r;
    material.diffuse.g = diffuse.g;
    material.diffuse.b = diffuse.b;
    material.diffuse.a = diffuse.a;
    material.ambient.r = ambientColor.r;
    material.ambient.g = ambientColor.g;
    material.ambient.b = ambientColor.b;
    material.ambient.a = ambientColor.a;
    device->SetMaterial(&material);
}

void WindowsD3DDevice::setTexture(uint32_t stage, D3DTextureSurface* surface)
{
    device->SetTexture(stage, surface ? static_cast<WindowsTextureSurface*>(surface)->get() : nullptr);
}

void WindowsD3DDevice::draw(uint32_t primitive, uint32_t format, const void* vertices, uint32_t vertexCount,
                            uint32_t flags)
{
    device->DrawPrimitive(static_cast<D3DPRIMITIVETYPE>(primitive), format, const_cast<void*>(vertices),
                          vertexCount, flags);
}

void WindowsD3DDevice::drawIndexed(uint32_t primitive, uint32_t format, const void* vertices,
                                   uint32_t vertexCount, const uint16_t* indices, uint32_t indexCount)
{
    device->DrawIndexedPrimitive(static_cast<D3DPRIMITIVETYPE>(primitive), format,
                                 const_cast<void*>(vertices), vertexCount, const_cast<uint16_t*>(indices),
                                 indexCount, 0);
}

void WindowsD3DDevice::drawIndexed(uint32_t primitive, D3DVertexBuffer& vertices, uint32_t vertexCount,
                                   const uint16_t* indices, uint32_t indexCount)
{
    device->DrawIndexedPrimitiveVB(static_cast<D3DPRIMITIVETYPE>(primitive),
                                   static_cast<WindowsVertexBuffer&>(vertices).get(), 0, vertexCount,
                                   const_cast<uint16_t*>(indices), indexCount, 0);
}

uint32_t WindowsD3DDevice::clear(uint32_t flags, uint32_t color, float z)
{
    return code(device->Clear(0, nullptr, flags, color, z, 0));
}

uint32_t WindowsD3DDevice::beginScene()
{
    return code(device->BeginScene());
}

uint32_t WindowsD3DDevice::endScene()
{
    return code(device->EndScene());
}

static HRESULT CALLBACK takeFormat(DDPIXELFORMAT* format, void* context)
{
    static_cast<std::vector<D3DPixelFormat>*>(context)->push_back(fromSystem(*format));
    return D3DENUMRET_OK;
}

std::vector<D3DPixelFormat> WindowsD3DDevice::textureFormats()
{
    std::vector<D3DPixelFormat> formats;
    device->EnumTextureFormats(takeFormat, &formats);
    return formats;
}

std::unique_ptr<D3DTextureSurface> WindowsD3DDevice::createTexture(const D3DTextureRequest& request)
{
    DDSURFACEDESC2 description = sized<DDSURFACEDESC2>();
    description.dwFlags = DDSD_CAPS | DDSD_HEIGHT | DDSD_WIDTH | DDSD_PIXELFORMAT;
    description.dwWidth = static_cast<DWORD>(request.width);
    description.dwHeight = static_cast<DWORD>(request.height);
    description.ddsCaps.dwCaps = DDSCAPS_TEXTURE;
    description.ddpfPixelFormat = toSystem(request.format);
    if (request.systemMemory)
        description.ddsCaps.dwCaps |= DDSCAPS_SYSTEMMEMORY;
    else
        description.ddsCaps.dwCaps2 = DDSCAPS2_TEXTUREMANAGE;
    if (request.mipmap)
    {
        description.dwFlags |= DDSD_MIPMAPCOUNT;
        description.ddsCaps.dwCaps |= DDSCAPS_MIPMAP | DDSCAPS_COMPLEX;
        description.dwMipMapCount = static_cast<DWORD>(request.levels);
    }
    auto texture = std::make_unique<WindowsTextureSurface>(request.format);
    if (!texture->create(directDraw, &description))
        return nullptr;
    return texture;
}

std::unique_ptr<D3DVertexBuffer> WindowsD3DDevice::createVertexBuffer(uint32_t format, uint32_t vertexCount)
{
    auto buffer = std::make_unique<WindowsVertexBuffer>();
    if (!buffer->create(direct3D, format, vertexCount))
        return nullptr;
    return buffer;
}
