// What drivers and devices say of themselves, as plain records: the choosing reads nothing else, so it can be
// tried with machines that nobody has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// An identifier as the system lays it out.
struct D3DGuid
{
    uint32_t a;
    uint16_t b, c;
    uint8_t d[8];
    bool operator==(const D3DGuid&) const = default;
};

namespace d3d
{
constexpr D3DGuid halDevice = {0x84e63de0, 0x46aa, 0x11cf, {0x81, 0x6f, 0x00, 0x00, 0xc0, 0x20, 0x15, 0x6e}};
constexpr D3DGuid tnlHalDevice = {
    0xf5049e78, 0x4861, 0x11d2, {0xa4, 0x07, 0x00, 0xa0, 0xc9, 0x06, 0x29, 0xa8}};
} // namespace d3d

/// How a pixel is laid out; flags are d3d::pixels...
struct D3DPixelFormat
{
    uint32_t flags;
    uint32_t bits; ///< of a pixel; of depth and stencil together in a Z-buffer format
    uint32_t red, green, blue, alpha;
    uint32_t depthMask, stencilBits;
    bool operator==(const D3DPixelFormat&) const = default;
};

/// A full-screen mode.
struct D3DMode
{
    uint32_t width, height, bits, refreshRate;
    bool operator==(const D3DMode&) const = default;
};

/// The part of a device's capabilities that matters here.
struct D3DDeviceCaps
{
    D3DGuid guid;
    uint32_t device;       ///< d3d::hardwareRasterization
    uint32_t renderDepths; ///< d3d::renderDepth...
    uint32_t triangleRaster, triangleSourceBlend, triangleDestBlend, triangleTexture;
    uint32_t simultaneousTextures;
};

/// The part of a driver's capabilities that matters here.
struct D3DDriverCaps
{
    uint32_t caps2;
};

struct D3DDeviceReport
{
    std::string name, description;
    D3DDeviceCaps caps;
};

/// What enumeration finds of one driver.
struct D3DDriverReport
{
    bool primary; ///< the driver without an identifier
    D3DGuid guid;
    std::string description;
    D3DDriverCaps hardware, emulation;
    std::vector<D3DMode> modes;
    std::vector<D3DDeviceReport> devices;
};

/// A device that can be chosen, with what full-screen work on it needs.
struct D3DDeviceRecord
{
    char description[40];
    const D3DGuid* device; ///< &deviceGuid
    D3DDeviceCaps caps;
    bool hardware;
    const D3DGuid* driver; ///< &driverGuid; null for the primary driver
    D3DDriverCaps hardwareCaps, emulationCaps;
    D3DMode fullScreenMode;
    bool windowed, stereo;
    D3DGuid deviceGuid, driverGuid;
    std::vector<D3DMode> modes;
    int currentMode;
    bool desktopCompatible, stereoCompatible;
};

/// Devices of all drivers, in the order of enumeration.
struct D3DDeviceTable
{
    static constexpr int capacity = 20;
    D3DDeviceRecord records[capacity];
    int count = 0;
};
