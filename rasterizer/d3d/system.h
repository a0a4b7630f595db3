// DirectDraw and Direct3D as rasterizer 1 uses them. The engine's own work stands above these classes and
// runs on every system; behind them stand the libraries on Windows, nothing elsewhere, and in tests what the
// test wants to see.
//
// Codes are results of the libraries or the engine's own, see constants.h; 0 is success.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "rasterizer/d3d/records.h"
#include "vornik/core/vectors.h"
#include "vornik/platform.h"

/// An image on the device.
class D3DTextureSurface
{
public:
    struct Level
    {
        uint8_t* bits;
        int pitch; ///< bytes from row to row
        int width, height;
    };

    virtual ~D3DTextureSurface() = default;
    virtual int levelCount() const = 0;
    virtual const D3DPixelFormat& format() const = 0;
    /// Opens a level for writing; unlock follows. @return false if it can't be had
    virtual bool lock(int index, Level* level) = 0;
    virtual void unlock(int index) = 0;
};

struct D3DTextureRequest
{
    int width, height;
    int levels;        ///< 1 and mipmap false: one level
    bool mipmap;       ///< a complex surface of several levels
    bool systemMemory; ///< managed by the library otherwise
    D3DPixelFormat format;
};

/// Vertices that the device keeps.
class D3DVertexBuffer
{
public:
    virtual ~D3DVertexBuffer() = default;
    /// Replaces the content from its start on. @param size  bytes, at most what it was made for
    virtual void fill(const void* vertices, size_t size) = 0;
};

/// One IDirect3DDevice7. Draws outside of a scene, of nothing, or on lost surfaces draw nothing.
class D3DDevice
{
public:
    virtual ~D3DDevice() = default;

    virtual void setRenderState(uint32_t state, uint32_t value) = 0;
    virtual uint32_t renderState(uint32_t state) = 0;
    virtual void setStageState(uint32_t stage, uint32_t kind, uint32_t value) = 0;
    virtual uint32_t stageState(uint32_t stage, uint32_t kind) = 0;
    virtual void setTransform(uint32_t kind, const float (&m)[16]) = 0;
    /// The other colours and the power are 0.
    virtual void setMaterial(const Color& diffuse, const Color& ambientColor) = 0;
    /// @param surface  null takes the texture away
    virtual void setTexture(uint32_t stage, D3DTextureSurface* surface) = 0;

    virtual void draw(uint32_t primitive, uint32_t format, const void* vertices, uint32_t vertexCount,
                      uint32_t flags) = 0;
    virtual void drawIndexed(uint32_t primitive, uint32_t format, const void* vertices, uint32_t vertexCount,
                             const uint16_t* indices, uint32_t indexCount) = 0;
    virtual void drawIndexed(uint32_t primitive, D3DVertexBuffer& vertices, uint32_t vertexCount,
                             const uint16_t* indices, uint32_t indexCount) = 0;

    virtual uint32_t clear(uint32_t flags, uint32_t color, float z) = 0;
    virtual uint32_t beginScene() = 0;
    virtual uint32_t endScene() = 0;

    virtual std::vector<D3DPixelFormat> textureFormats() = 0;
    /// @return null if there is no memory for it, or no such surface
    virtual std::unique_ptr<D3DTextureSurface> createTexture(const D3DTextureRequest& request) = 0;
    virtual std::unique_ptr<D3DVertexBuffer> createVertexBuffer(uint32_t format, uint32_t vertexCount) = 0;
};

/// What is read back of the back buffer.
struct D3DBackBufferDescription
{
    uint32_t width, height;
    D3DPixelFormat format;
};

struct D3DSurfacesRequest
{
    const D3DDeviceRecord* record;
    VRKWindow window;
    bool fullScreen, stereo, depthBuffer;
};

/// Everything that stands between the window and the device: DirectDraw, the screen, back buffer, Z-buffer
/// and the device. What goes away with the object is released in the right order, once.
class D3DSurfaces
{
public:
    virtual ~D3DSurfaces() = default;

    /// Makes all of it. @return what failed; release() is due then, too
    virtual uint32_t create(const D3DSurfacesRequest& request) = 0;
    /// @return 0, or d3d::stillReferenced if something outside still holds one of them
    virtual uint32_t release() = 0;

    virtual D3DDevice* device() = 0; ///< null before create() and after release()
    virtual D3DBackBufferDescription backBuffer() = 0;
    virtual uint32_t testCooperativeLevel() = 0;
    /// Shows the back buffer. @return d3d::primaryGone if there is no screen to show it on
    virtual uint32_t present() = 0;
    virtual uint32_t restoreAll() = 0;
    /// Full screen only: brings the screen of the window system to the front, with menu bar and frame.
    virtual void giveScreenBack() = 0;
    /// Writes on the back buffer, where it is to be had. @param color  from packForWindow
    virtual void writeText(int x, int y, uint32_t color, const char* text) = 0;
};

/// The libraries as a whole, and the window.
class D3DSystem
{
public:
    virtual ~D3DSystem() = default;

    /// Asks all drivers. @return 0, or a code; the reports may then be incomplete
    virtual uint32_t enumerate(std::vector<D3DDriverReport>* drivers) = 0;
    /// @return null if there is no memory
    virtual std::unique_ptr<D3DSurfaces> makeSurfaces() = 0;

    virtual void showBox(VRKWindow window, const char* caption, const char* text, bool warning) = 0;

    /// Keeps the window's style and place and makes it fit to fill the screen.
    virtual void makeWindowFullScreen(VRKWindow window) = 0;
    /// Gives the window what was kept.
    virtual void makeWindowNormal(VRKWindow window) = 0;
    /// Asks the window to close.
    virtual void closeWindow(VRKWindow window) = 0;
};

/// The system's libraries. @return null if it has none
std::unique_ptr<D3DSystem> makeD3DSystem();
