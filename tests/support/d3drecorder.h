// Rasterizer 1 on made-up libraries: what the engine asks of them is noted, and they answer and fail as the
// test wants. Runs on every system.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/system.h"
#include "tests/support/tempfolder.h"

/// What the made-up libraries say and what they have heard.
struct D3DScript
{
    std::vector<std::string> calls; ///< in order, like "state 27 1"
    std::vector<D3DDriverReport> drivers;
    std::vector<D3DPixelFormat> textureFormats;
    uint32_t enumerateResult = 0, createResult = 0, releaseResult = 0;
    uint32_t cooperativeLevel = 0, restoreResult = 0;
    std::vector<uint32_t> presentResults, beginResults; ///< one a call, 0 behind the last
    bool noSurfaces = false, noTextures = false, noLocks = false;
    bool noDevice = false;
    std::map<uint32_t, uint32_t> renderStates, stageStates; ///< as set last
    std::map<uint32_t, std::vector<float>> transforms;      ///< as set last
    std::vector<uint8_t> lastVertices;                      ///< of the last draw
    std::vector<uint16_t> lastIndices;                      ///< of the last indexed draw
    std::vector<uint8_t> bufferContent;                     ///< of the vertex buffer filled last
    int unlocks = 0;
    int surfacesAlive = 0, texturesAlive = 0, buffersAlive = 0;
    std::string boxText;
    bool boxWarning = false;
    D3DSurfacesRequest request = {};
    std::vector<D3DTextureRequest> textureRequests;
    std::vector<std::vector<uint8_t>> levels; ///< content of the levels filled, newest last

    /// The calls, one a line.
    std::string text() const;
    int count(const std::string& call) const;
    bool heard(const std::string& call) const { return count(call) > 0; }
    /// Calls that begin so, in order.
    std::vector<std::string> only(const std::vector<std::string>& beginnings) const;
};

/// A driver of the desktop with a device of each kind, in the order software, plain, transform.
D3DDriverReport desktopDriver();
D3DDeviceReport deviceReport(const char* name, const D3DGuid& guid, bool hardware);
/// 32 bits with alpha, 16 bits with one and with four bits of alpha, 16 bits without.
std::vector<D3DPixelFormat> commonTextureFormats();

std::unique_ptr<D3DSystem> makeScriptedSystem(D3DScript* script);

/// Starts rasterizer 1 on made-up libraries for every test, and stops and forgets it.
class D3DRecorderTest : public ::testing::Test
{
protected:
    D3DRecorderTest();
    ~D3DRecorderTest() override;
    void SetUp() override;
    void TearDown() override;

    /// Starts on a window of 640 by 480 pixels. @return what the object said
    int start(bool useTnL = false, int secondaryDevice = 0, bool windowed = true, int colorBits = 32);
    std::string log() const { return folder.readText("log"); }

    D3DScript script;
    D3DRasterizer* d3d;
    TempFolder folder;
};
