#include "rasterizer/d3d/choose.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <tuple>

#include "rasterizer/d3d/constants.h"

static bool canDraw(const D3DDeviceCaps& caps)
{
    return caps.triangleSourceBlend & d3d::blendOne && caps.triangleDestBlend & d3d::blendOne &&
           caps.simultaneousTextures >= 2;
}

static bool isHardware(const D3DDeviceCaps& caps)
{
    return caps.device & d3d::hardwareRasterization;
}

static bool isAllowed(const D3DMode& mode, uint32_t renderDepths)
{
    switch (mode.bits)
    {
    case 32:
        return renderDepths & d3d::renderDepth32;
    case 24:
        return renderDepths & d3d::renderDepth24;
    case 16:
        return renderDepths & d3d::renderDepth16;
    default:
        return false;
    }
}

static void takeModes(const D3DDriverReport& driver, D3DDeviceRecord* record)
{
    record->modes.clear();
    std::copy_if(driver.modes.begin(), driver.modes.end(), std::back_inserter(record->modes),
                 [record](const D3DMode& mode) { return isAllowed(mode, record->caps.renderDepths); });
    std::stable_sort(record->modes.begin(), record->modes.end(),
                     [](const D3DMode& a, const D3DMode& b)
                     { return std::tie(a.width, a.height, a.bits) < std::tie(b.width, b.height, b.bits); });
    selectMode(record, 640, 480, 16);
}

static void fillRecord(const D3DDriverReport& driver, const D3DDeviceReport& device, D3DDeviceRecord* record)
{
    *record = {};
    std::snprintf(record->description, sizeof record->description, "%s", device.name.c_str());
    record->caps = device.caps;
    record->deviceGuid = device.caps.guid;
    record->device = &record->deviceGuid;
    record->hardware = isHardware(device.caps);
    record->driverGuid = driver.guid;
    record->driver = driver.primary ? nullptr : &record->driverGuid;
    record->hardwareCaps = driver.hardware;
    record->emulationCaps = driver.emulation;
    record->desktopCompatible = driver.primary && driver.hardware.caps2 & d3d::canRenderWindowed;
    record->windowed = record->desktopCompatible;
    takeModes(driver, record);
}

uint32_t collectDevices(const std::vector<D3DDriverReport>& drivers, D3DDeviceTable* table)
{
    table->count = 0;
    for (const D3DDriverReport& driver : drivers)
        for (const D3DDeviceReport& device : driver.devices)
        {
            const bool usable = canDraw(device.caps) && (driver.primary || isHardware(device.caps));
            if (usable && table->count < D3DDeviceTable::capacity)
                fillRecord(driver, device, &table->records[table->count++]);
        }
    if (drivers.empty())
        return d3d::enumerationFailed;
    return table->count > 0 ? d3d::ok : d3d::noDevices;
}

D3DDeviceRecord* selectDevice(D3DDeviceTable* table, bool useTnL, int secondaryDevice)
{
    D3DDeviceRecord* secondary = nullptr;
    D3DDeviceRecord* transform = nullptr;
    D3DDeviceRecord* plain = nullptr;
    for (D3DDeviceRecord* record = table->records; record < table->records + table->count; ++record)
    {
        if (!record->desktopCompatible)
        {
            if (*record->device == d3d::halDevice)
                secondary = record;
        }
        else if (record->hardware)
            (*record->device == d3d::tnlHalDevice ? transform : plain) = record;
    }
    if (secondaryDevice == 1 && secondary)
        return secondary;
    return useTnL && transform ? transform : plain;
}

void selectMode(D3DDeviceRecord* record, int width, int height, int colorBits)
{
    for (size_t i = 0; i < record->modes.size(); ++i)
    {
        const D3DMode& mode = record->modes[i];
        if (int64_t(mode.width) == width && int64_t(mode.height) == height && int64_t(mode.bits) == colorBits)
        {
            record->fullScreenMode = mode;
            record->currentMode = static_cast<int>(i);
        }
    }
}

const D3DPixelFormat* chooseDepthFormat(const std::vector<D3DPixelFormat>& formats, uint32_t backBufferBits)
{
    for (const uint32_t bits : {backBufferBits, 16u})
        for (const D3DPixelFormat& format : formats)
            if (format.flags & d3d::pixelsDepth && format.bits == bits)
                return &format;
    return nullptr;
}

static bool isPlainColor(const D3DPixelFormat& format)
{
    const uint32_t refused =
        d3d::pixelsFourCC | d3d::pixelsLuminance | d3d::pixelsBumpLuminance | d3d::pixelsBump;
    return format.flags & d3d::pixelsRgb && !(format.flags & refused) && format.bits >= 16 &&
           format.bits <= 32;
}

static bool hasAlpha(const D3DPixelFormat& format)
{
    return format.flags & d3d::pixelsAlpha && format.alpha != 0;
}

// Bits of the narrowest colour channel.
static int colorDepth(const D3DPixelFormat& format)
{
    return std::min({std::popcount(format.red), std::popcount(format.green), std::popcount(format.blue)});
}

// How well a format that fits suits: the format of an image with alpha shares its bits out evenly, four a
// channel where there are 16, that of one without gives colour all that it can.
static int suits(const D3DPixelFormat& format, bool alpha)
{
    if (alpha)
        return std::min(colorDepth(format), std::popcount(format.alpha));
    return colorDepth(format) + (hasAlpha(format) ? 0 : 1);
}

static const D3DPixelFormat* bestFormat(const std::vector<D3DPixelFormat>& formats, uint32_t bits, bool alpha)
{
    const D3DPixelFormat* best = nullptr;
    for (const D3DPixelFormat& format : formats)
        if (isPlainColor(format) && format.bits == bits && (hasAlpha(format) || !alpha) &&
            (!best || suits(format, alpha) > suits(*best, alpha)))
            best = &format;
    return best;
}

const D3DPixelFormat* chooseTextureFormat(const std::vector<D3DPixelFormat>& formats, uint32_t bits,
                                          bool alpha)
{
    for (const bool wanted : {alpha, false})
        for (const uint32_t depth : {bits, bits == 32 ? 16u : 32u})
            if (const D3DPixelFormat* format = bestFormat(formats, depth, wanted))
                return format;
    return nullptr;
}

// The next power of two; sizes that no surface has stay as they are.
static int raised(int size)
{
    return size < 1 << 30 ? static_cast<int>(std::bit_ceil(static_cast<uint32_t>(std::max(size, 1)))) : size;
}

D3DSize textureSize(int width, int height, uint32_t textureCaps)
{
    D3DSize size = {width, height};
    if (textureCaps & d3d::texturePow2)
        size = {raised(width), raised(height)};
    if (textureCaps & d3d::textureSquareOnly)
        size.width = size.height = std::max(size.width, size.height);
    return size;
}

int mipLevels(const D3DSize& size)
{
    const int smaller = std::max(std::min(size.width, size.height), 1);
    return std::max(static_cast<int>(std::bit_width(static_cast<uint32_t>(smaller))) - 1, 1);
}
