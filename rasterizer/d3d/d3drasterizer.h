// Rasterizer 1: the one object behind the vrk functions while Direct3D is selected. It holds the surfaces of
// the window and the world matrices, and knows what a fresh or restored device needs.
//
// All drawing calls do nothing before initialize() and after shutdown().
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "rasterizer/d3d/matrixstack.h"
#include "rasterizer/d3d/records.h"
#include "rasterizer/d3d/system.h"
#include "rasterizer/d3d/textures.h"
#include "vornik/core/vectors.h"
#include "vornik/platform.h"

/// A vertex in window coordinates with the y axis downward.
struct D3DScreenVertex
{
    float x, y, z;
    float reciprocalW;
    uint32_t color, specular;
    float u, v;
};

/// A vertex in the world.
struct D3DWorldVertex
{
    float x, y, z;
    uint32_t color;
    float u, v;
};

class D3DRasterizer
{
public:
    explicit D3DRasterizer(std::unique_ptr<D3DSystem> system);
    D3DRasterizer(const D3DRasterizer&) = delete;
    D3DRasterizer& operator=(const D3DRasterizer&) = delete;
    virtual ~D3DRasterizer();

    // Pauses are counted over all objects. The first hands a full screen back to the window system. Result 1.
    virtual int pause();
    virtual int resume();
    virtual int setPaused(bool paused);

    std::unique_ptr<D3DSurfaces> surfaces;
    D3DDevice* device; ///< of the surfaces; null while there are none
    D3DBackBufferDescription backBufferDescription;
    float viewMatrix[16]; ///< what the eye was set to last
    int useDepthBuffer;
    D3DDeviceRecord* selectedDevice;
    int useTnL, secondaryDevice;
    int ready, active;
    std::optional<D3DMatrixStack> matrixStack; ///< from the first successful start on
    uint32_t clearColor;
    VRKWindow window;

    /// Chooses a device and makes the surfaces; a start before is shut down. Failures are shown in a box.
    /// @return 0 or a code
    uint32_t initialize(VRKWindow window, int width, int height, int colorBits, bool useTnL,
                        int secondaryDevice, bool windowed);
    /// Releases everything but the images of textures; again it does nothing. @return 0 or a code
    uint32_t shutdown();

    /// @param flags  cut down to target and Z-buffer
    void clear(uint32_t flags, float z);
    /// Shows the frame. Lost surfaces come back with their textures. @return 0 or a code
    uint32_t present();
    void beginScene();
    void endScene();
    /// Brings a device into the state that all drawing expects, with all textures.
    void restoreState();
    /// Builds all texture surfaces anew from their images.
    void restoreTextures();
    /// Where surfaces of textures are built.
    D3DTextureTarget textureTarget() const;

    // The switches take the portable index, not what it translates to.
    void enable(int index);
    void disable(int index);
    /// @param value  what the table translates a constant to
    bool isEnabled(int value);
    void setRenderState(uint32_t state, uint32_t value);
    void setRenderState(uint32_t state, float value);
    /// Of texture stage 0.
    void setStageState(uint32_t kind, uint32_t value);
    uint32_t stageState(uint32_t kind);
    /// @return 1
    int setColorStage(uint32_t stage, uint32_t operation, uint32_t arg1, uint32_t arg2);
    int setAlphaStage(uint32_t stage, uint32_t operation, uint32_t arg1, uint32_t arg2); ///< @return 1
    void setBlend(uint32_t source, uint32_t destination);
    void setAlphaFunction(uint32_t function, float reference);
    /// @param c  forced into 0 to 1 itself
    void setClearColor(Color* c);
    void setLinearFog(const Color& c, float start, float end);
    void setDensityFog(const Color& c, float density);

    /// Sets the view of an eye. Coinciding points are moved, see buildViewMatrix.
    void lookAt(Vertex3D* eye, Vertex3D* target, const Vertex3D& up);
    /// @param fov  degrees. @param aspect  width by height
    void setProjection(float fov, float aspect, float nearClip, float farClip);
    /// Makes the top of the matrix stack the device's world matrix.
    void useWorldMatrix();
    /// @param m  rows one after the other
    void setWorldMatrix(const float (&m)[4][4]);
    /// Draws with this texture. @param surface  null: with none
    void setTexture(D3DTextureSurface* surface);

    // A quad as a strip of two triangles: under the world matrix that is set, or on the window.
    void drawStrip(const D3DWorldVertex (&vertices)[4]);
    /// Waits until the device can take it.
    void drawStrip(const D3DScreenVertex (&vertices)[4]);
    void write(float x, float y, const Color& c, const char* text);

private:
    std::unique_ptr<D3DSystem> system;
    D3DDeviceTable devices;
    float projectionMatrix[16];
    int width, height, colorBits;
    bool builtWindowed; // what the surfaces were last made for

    uint32_t chooseDevice(bool windowed);
    uint32_t setUpMode();
    uint32_t releaseSurfaces();
    void rebuildSurfaces();
    uint32_t restoreSurfaces();
    void showError(uint32_t code, int mode);
};

/// The object; null until vrkSelectRasterizer(1) has made it.
extern D3DRasterizer* vrkDirect3D;

/// The object while rasterizer 1 is selected, else null.
D3DRasterizer* selectedDirect3D();

/// Makes the object where the system has Direct3D and there is none yet. @return is there one now?
bool makeDirect3D();
