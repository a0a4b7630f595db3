#include "rasterizer/d3d/enumerate_win32.h"

#include "rasterizer/d3d/com_win32.h"
#include "rasterizer/d3d/constants.h"

static HRESULT CALLBACK takeMode(DDSURFACEDESC2* description, void* context)
{
    static_cast<D3DDriverReport*>(context)->modes.push_back(modeOf(*description));
    return DDENUMRET_OK;
}

static HRESULT CALLBACK takeDevice(LPSTR description, LPSTR name, D3DDEVICEDESC7* caps, void* context)
{
    D3DDeviceReport report = {};
    report.name = name ? name : "";
    report.description = description ? description : "";
    report.caps.guid = fromSystem(caps->deviceGUID);
    report.caps.device = caps->dwDevCaps;
    report.caps.renderDepths = caps->dwDeviceRenderBitDepth;
    report.caps.triangleRaster = caps->dpcTriCaps.dwRasterCaps;
    report.caps.triangleSourceBlend = caps->dpcTriCaps.dwSrcBlendCaps;
    report.caps.triangleDestBlend = caps->dpcTriCaps.dwDestBlendCaps;
    report.caps.triangleTexture = caps->dpcTriCaps.dwTextureCaps;
    report.caps.simultaneousTextures = caps->wMaxSimultaneousTextures;
    static_cast<D3DDriverReport*>(context)->devices.push_back(report);
    return D3DENUMRET_OK;
}

static BOOL CALLBACK takeDriver(GUID* guid, LPSTR description, LPSTR, void* context, HMONITOR)
{
    ComHolder<IDirectDraw7> directDraw;
    ComHolder<IDirect3D7> direct3D;
    if (FAILED(DirectDrawCreateEx(guid, directDraw.receiveUntyped(), IID_IDirectDraw7, nullptr)) ||
        FAILED(directDraw->QueryInterface(IID_IDirect3D7, direct3D.receiveUntyped())))
        return DDENUMRET_OK;

    D3DDriverReport report = {};
    report.primary = guid == nullptr;
    if (guid)
        report.guid = fromSystem(*guid);
    report.description = description ? description : "";

    DDCAPS hardware = sized<DDCAPS>();
    DDCAPS emulation = sized<DDCAPS>();
    if (SUCCEEDED(directDraw->GetCaps(&hardware, &emulation)))
    {
        report.hardware.caps2 = hardware.dwCaps2;
        report.emulation.caps2 = emulation.dwCaps2;
    }
    if (SUCCEEDED(directDraw->EnumDisplayModes(0, nullptr, &report, takeMode)) &&
        SUCCEEDED(direct3D->EnumDevices(takeDevice, &report)))
        static_cast<std::vector<D3DDriverReport>*>(context)->push_back(report);
    return DDENUMRET_OK;
}

uint32_t enumerateDrivers(std::vector<D3DDriverReport>* drivers)
{
    return code(DirectDrawEnumerateExA(takeDriver, drivers,
                                       DDENUM_ATTACHEDSECONDARYDEVICES | DDENUM_DETACHEDSECONDARYDEVICES |
                                           DDENUM_NONDISPLAYDEVICES));
}
