#include "tests/support/d3drecorder.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/textures.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"

template <class... Values>
static void note(D3DScript* script, const Values&... values)
{
    std::ostringstream line;
    const char* gap = "";
    ((line << gap << values, gap = " "), ...);
    script->calls.push_back(line.str());
}

static uint32_t next(std::vector<uint32_t>* results)
{
    if (results->empty())
        return 0;
    const uint32_t result = results->front();
    results->erase(results->begin());
    return result;
}

std::string D3DScript::text() const
{
    std::string all;
    for (const std::string& call : calls)
        all += call + "\n";
    return all;
}

int D3DScript::count(const std::string& call) const
{
    return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

std::vector<std::string> D3DScript::only(const std::vector<std::string>& beginnings) const
{
    std::vector<std::string> found;
    for (const std::string& call : calls)
        for (const std::string& beginning : beginnings)
            if (call.starts_with(beginning))
            {
                found.push_back(call);
                break;
            }
    return found;
}

class ScriptedTexture : public D3DTextureSurface
{
public:
    ScriptedTexture(D3DScript* noted, const D3DTextureRequest& wanted, int order)
        : number(order), script(noted), request(wanted)
    {
        ++script->texturesAlive;
    }
    ~ScriptedTexture() override { --script->texturesAlive; }
    int levelCount() const override { return request.levels; }
    const D3DPixelFormat& format() const override { return request.format; }

    bool lock(int index, Level* level) override
    {
        if (script->noLocks)
            return false;
        const int width = std::max(request.width >> index, 1);
        const int height = std::max(request.height >> index, 1);
        const int pitch =
            width * int(request.format.bits / 8) + 3; // rows rarely follow one another without a gap
        script->levels.emplace_back(static_cast<size_t>(pitch * height), uint8_t(0xCD));
        *level = {script->levels.back().data(), pitch, width, height};
        return true;
    }
    void unlock(int) override { ++script->unlocks; }

    const int number;

private:
    D3DScript* script;
    D3DTextureRequest request;
};

class ScriptedBuffer : public D3DVertexBuffer
{
public:
    explicit ScriptedBuffer(D3DScript* noted) : script(noted) { ++script->buffersAlive; }
    ~ScriptedBuffer() override { --script->buffersAlive; }
    void fill(const void* vertices, size_t size) override
    {
        const auto* bytes = static_cast<const uint8_t*>(vertices);
        script->bufferContent.assign(bytes, bytes + size);
    }

private:
    D3DScript* script;
};

static size_t vertexSize(uint32_t format)
{
    return format == d3d::fvfWorld ? 24 : format == d3d::fvfWindow ? 28 : 32;
}

class ScriptedDevice : public D3DDevice
{
public:
    explicit ScriptedDevice(D3DScript* noted) : script(noted) {}

    void setRenderState(uint32_t state, uint32_t value) override
    {
        note(script, "state", state, value);
        script->renderStates[state] = value;
    }
    uint32_t renderState(uint32_t state) override { return script->renderStates[state]; }
    void setStageState(uint32_t stage, uint32_t kind, uint32_t value) override
    {
        note(script, "stage", stage, kind, value);
        script->stageStates[kind] = value;
    }
    uint32_t stageState(uint32_t, uint32_t kind) override { return script->stageStates[kind]; }
    void setTransform(uint32_t kind, const float (&m)[16]) override
    {
        note(script, "transform", kind);
        script->transforms[kind].assign(m, m + 16);
    }
    void setMaterial(const Color& diffuse, const Color& ambientColor) override
    {
        note(script, "material", diffuse.r, diffuse.g, diffuse.b, diffuse.a, ambientColor.r, ambientColor.g,
             ambientColor.b, ambientColor.a);
    }
    void setTexture(uint32_t stage, D3DTextureSurface* surface) override
    {
        if (surface)
            note(script, "texture", stage, static_cast<ScriptedTexture*>(surface)->number);
        else
            note(script, "texture", stage, "none");
    }
    void draw(uint32_t primitive, uint32_t format, const void* vertices, uint32_t vertexCount,
              uint32_t flags) override
    {
        note(script, "draw", primitive, format, vertexCount, flags);
        keepVertices(vertices, vertexCount * vertexSize(format));
    }
    void drawIndexed(uint32_t primitive, uint32_t format, const void* vertices, uint32_t vertexCount,
                     const uint16_t* indices, uint32_t indexCount) override
    {
        note(script, "indexed", primitive, format, vertexCount, indexCount);
        keepVertices(vertices, vertexCount * vertexSize(format));
        script->lastIndices.assign(indices, indices + indexCount);
    }
    void drawIndexed(uint32_t primitive, D3DVertexBuffer&, uint32_t vertexCount, const uint16_t* indices,
                     uint32_t indexCount) override
    {
        note(script, "buffered", primitive, vertexCount, indexCount);
        script->lastIndices.assign(indices, indices + indexCount);
    }
    uint32_t clear(uint32_t flags, uint32_t color, float z) override
    {
        std::ostringstream hex;
        hex << std::hex << color;
        note(script, "clear", flags, hex.str(), z);
        return 0;
    }
    uint32_t beginScene() override
    {
        note(script, "begin");
        return next(&script->beginResults);
    }
    uint32_t endScene() override
    {
        note(script, "end");
        return 0;
    }
    std::vector<D3DPixelFormat> textureFormats() override { return script->textureFormats; }
    std::unique_ptr<D3DTextureSurface> createTexture(const D3DTextureRequest& request) override
    {
        if (script->noTextures)
            return nullptr;
        script->textureRequests.push_back(request);
        return std::make_unique<ScriptedTexture>(script, request, int(script->textureRequests.size()));
    }
    std::unique_ptr<D3DVertexBuffer> createVertexBuffer(uint32_t, uint32_t) override
    {
        return std::make_unique<ScriptedBuffer>(script);
    }

private:
    D3DScript* script;

    void keepVertices(const void* vertices, size_t size)
    {
        const auto* bytes = static_cast<const uint8_t*>(vertices);
        script->lastVertices.assign(bytes, bytes + size);
    }
};

class ScriptedSurfaces : public D3DSurfaces
{
public:
    explicit ScriptedSurfaces(D3DScript* noted) : script(noted), made(noted) { ++script->surfacesAlive; }
    ~ScriptedSurfaces() override { --script->surfacesAlive; }

    uint32_t create(const D3DSurfacesRequest& request) override
    {
        note(script, "create", request.fullScreen ? "full" : "windowed", request.record->description);
        script->request = request;
        exists = script->createResult == 0;
        return script->createResult;
    }
    uint32_t release() override
    {
        note(script, "release");
        exists = false;
        return script->releaseResult;
    }
    D3DDevice* device() override { return exists ? &made : nullptr; }
    D3DBackBufferDescription backBuffer() override
    {
        return {64, 48, {d3d::pixelsRgb, 32, 0, 0, 0, 0, 0, 0}};
    }
    uint32_t testCooperativeLevel() override { return script->cooperativeLevel; }
    uint32_t present() override
    {
        note(script, "present");
        return next(&script->presentResults);
    }
    uint32_t restoreAll() override
    {
        note(script, "restore");
        return script->restoreResult;
    }
    void giveScreenBack() override { note(script, "giveBack"); }
    void writeText(int x, int y, uint32_t color, const char* text) override
    {
        note(script, "text", x, y, color, text);
    }

private:
    D3DScript* script;
    ScriptedDevice made;
    bool exists = false;
};

class ScriptedSystem : public D3DSystem
{
public:
    explicit ScriptedSystem(D3DScript* noted) : script(noted) {}

    uint32_t enumerate(std::vector<D3DDriverReport>* drivers) override
    {
        *drivers = script->drivers;
        return script->enumerateResult;
    }
    std::unique_ptr<D3DSurfaces> makeSurfaces() override
    {
        return script->noSurfaces ? nullptr : std::make_unique<ScriptedSurfaces>(script);
    }
    void showBox(VRKWindow, const char* caption, const char* text, bool warning) override
    {
        note(script, "box", caption);
        script->boxText = text;
        script->boxWarning = warning;
    }
    void makeWindowFullScreen(VRKWindow) override { note(script, "windowFull"); }
    void makeWindowNormal(VRKWindow) override { note(script, "windowNormal"); }
    void closeWindow(VRKWindow) override { note(script, "close"); }

private:
    D3DScript* script;
};

std::unique_ptr<D3DSystem> makeScriptedSystem(D3DScript* script)
{
    return std::make_unique<ScriptedSystem>(script);
}

D3DDeviceReport deviceReport(const char* name, const D3DGuid& guid, bool hardware)
{
    D3DDeviceReport report = {};
    report.name = name;
    report.caps.guid = guid;
    report.caps.device = hardware ? d3d::hardwareRasterization : 0;
    report.caps.renderDepths = d3d::renderDepth16 | d3d::renderDepth32;
    report.caps.triangleSourceBlend = report.caps.triangleDestBlend = d3d::blendOne;
    report.caps.triangleTexture = d3d::texturePow2;
    report.caps.simultaneousTextures = 2;
    return report;
}

D3DDriverReport desktopDriver()
{
    const D3DGuid software = {0xa4665c60, 0x2673, 0x11cf, {0xa3, 0x1a, 0, 0xaa, 0, 0xb9, 0x33, 0x56}};
    D3DDriverReport driver = {};
    driver.primary = true;
    driver.hardware.caps2 = d3d::canRenderWindowed;
    driver.modes = {{800, 600, 32, 60}, {640, 480, 32, 60}, {640, 480, 16, 60}, {640, 480, 8, 60}};
    driver.devices = {deviceReport("software", software, false), deviceReport("plain", d3d::halDevice, true),
                      deviceReport("transform", d3d::tnlHalDevice, true)};
    return driver;
}

std::vector<D3DPixelFormat> commonTextureFormats()
{
    return {{d3d::pixelsRgb, 16, 0xF800, 0x07E0, 0x001F, 0, 0, 0},
            {d3d::pixelsRgb | d3d::pixelsAlpha, 16, 0x7C00, 0x03E0, 0x001F, 0x8000, 0, 0},
            {d3d::pixelsRgb | d3d::pixelsAlpha, 16, 0x0F00, 0x00F0, 0x000F, 0xF000, 0, 0},
            {d3d::pixelsRgb | d3d::pixelsAlpha, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000, 0, 0}};
}

D3DRecorderTest::D3DRecorderTest() : d3d(nullptr) {}

D3DRecorderTest::~D3DRecorderTest() = default;

void D3DRecorderTest::SetUp()
{
    vrkInitErrorLog(folder.path("log").c_str());
    script.drivers = {desktopDriver()};
    script.textureFormats = commonTextureFormats();
    vrkViewport = {};
    vrkCurrentMipMapType = 35;
    vrkSetFPS(100);
    vrkSetGamma(1.0f);
    d3d = vrkDirect3D = new D3DRasterizer(makeScriptedSystem(&script));
    ASSERT_EQ(vrkSelectRasterizer(1), 0);
}

void D3DRecorderTest::TearDown()
{
    delete d3d;
    vrkDirect3D = nullptr;
    forgetAllTextures();
    vrkSelectRasterizer(0);
    vrkInitErrorLog(3);
}

int D3DRecorderTest::start(bool useTnL, int secondaryDevice, bool windowed, int colorBits)
{
    const int result =
        static_cast<int>(d3d->initialize(nullptr, 640, 480, colorBits, useTnL, secondaryDevice, windowed));
    vrkViewport = {640.0f, 480.0f, 640.0f / 480.0f, 0.01f, 100000.0f, 90.0f};
    return result;
}
