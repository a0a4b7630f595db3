#include "rasterizer/d3d/errorbox.h"

#include "rasterizer/d3d/constants.h"

static const struct
{
    uint32_t code;
    const char* text;
} messages[] = {
    {d3d::outOfMemory, "Not enough memory!"},
    {d3d::noDirectDraw, "Could not create DirectDraw!"},
    {d3d::enumerationFailed,
     "Enumeration failed. Your system may be in an\nunstable state and need to be rebooted"},
    {d3d::noDevices, "Could not find any compatible devices.\n\n"},
    {d3d::noSuitableDevice, "Could not find any compatible Direct3D\ndevices."},
    {d3d::initializationFailed,
     "Generic initialization error.\n\nEnable debug output for detailed information."},
    {d3d::directDrawFailed, "No DirectDraw"},
    {d3d::cooperativeLevelFailed, "Could not set Cooperative Level"},
    {d3d::direct3DFailed, "No Direct3D"},
    {d3d::deviceFailed, "Could not create the Direct3DDevice object."},
    {d3d::depthBufferFailed, "No ZBuffer"},
    {d3d::depthBufferDepth,
     "Invalid Z-buffer depth. Try switching modes\nfrom 16- to 32-bit (or vice versa)"},
    {d3d::viewportFailed, "No Viewport"},
    {d3d::primaryFailed, "No primary"},
    {d3d::clipperFailed, "No Clipper"},
    {d3d::badDisplayMode, "Bad display mode"},
    {d3d::backBufferFailed, "No backbuffer"},
    {d3d::stillReferenced,
     "A DDraw object has a non-zero reference\ncount (meaning it was not properly cleaned up)."},
    {d3d::renderTargetFailed, "No render target"},
    {d3d::desktopTooShallow,
     "This sample requires a 16-bit (or higher) display mode\nto run in a window.\n\nPlease switch your "
     "desktop settings accordingly."},
    {d3d::outOfVideoMemory, "There was insufficient video memory to use the\nhardware device."},
};

static const char* message(uint32_t code)
{
    for (const auto& entry : messages)
        if (entry.code == code)
            return entry.text;
    return "Generic application error.\n\nEnable debug output for detailed information.";
}

std::string errorBoxText(uint32_t code, int mode)
{
    std::string text = message(code);
    if (code == d3d::deviceFailed && mode == boxNoHardware)
        text += "\nThe 3D hardware chipset may not support\nrendering in the current display mode.";
    if (mode == boxApplicationExits)
        text += "\n\nThis application will now exit.";
    else if (mode == boxNoHardware)
        text += "\nUnable to initialize 3D hardware";
    return text;
}
