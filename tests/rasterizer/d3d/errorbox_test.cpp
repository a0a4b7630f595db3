#include "rasterizer/d3d/errorbox.h"

#include <gtest/gtest.h>

#include <string>

static const struct
{
    uint32_t code;
    const char* text;
} expected[] = {
    {0x8007000E, "Not enough memory!"},
    {0x81000001, "Could not create DirectDraw!"},
    {0x81000002, "Enumeration failed. Your system may be in an\nunstable state and need to be rebooted"},
    {0x81000003, "Could not find any compatible devices.\n\n"},
    {0x81000004, "Could not find any compatible Direct3D\ndevices."},
    {0x82000000, "Generic initialization error.\n\nEnable debug output for detailed information."},
    {0x82000001, "No DirectDraw"},
    {0x82000002, "Could not set Cooperative Level"},
    {0x82000003, "No Direct3D"},
    {0x82000005, "No ZBuffer"},
    {0x82000006, "Invalid Z-buffer depth. Try switching modes\nfrom 16- to 32-bit (or vice versa)"},
    {0x82000007, "No Viewport"},
    {0x82000008, "No primary"},
    {0x82000009, "No Clipper"},
    {0x8200000A, "Bad display mode"},
    {0x8200000B, "No backbuffer"},
    {0x8200000C, "A DDraw object has a non-zero reference\ncount (meaning it was not properly cleaned up)."},
    {0x8200000D, "No render target"},
    {0x8200000E,
     "This sample requires a 16-bit (or higher) display mode\nto run in a window.\n\nPlease switch "
     "your desktop settings accordingly."},
    {0x8876017C, "There was insufficient video memory to use the\nhardware device."},
    {0x80004005, "Generic application error.\n\nEnable debug output for detailed information."},
    {0x8200000F, "Generic application error.\n\nEnable debug output for detailed information."},
};

TEST(ErrorBox, EveryCodeHasItsText)
{
    for (const auto& [code, text] : expected)
    {
        EXPECT_EQ(errorBoxText(code, boxApplicationExits),
                  std::string(text) + "\n\nThis application will now exit.");
        EXPECT_EQ(errorBoxText(code, boxNoHardware),
                  std::string(text) + "\nUnable to initialize 3D hardware");
    }
}

TEST(ErrorBox, MissingDeviceIsExplainedWhereHardwareIsMissing)
{
    EXPECT_EQ(errorBoxText(0x82000004, boxApplicationExits),
              "Could not create the Direct3DDevice object.\n\nThis application will now exit.");
    EXPECT_EQ(
        errorBoxText(0x82000004, boxNoHardware),
        "Could not create the Direct3DDevice object.\nThe 3D hardware chipset may not support\nrendering "
        "in the current display mode.\nUnable to initialize 3D hardware");
}

TEST(ErrorBox, HasItsCaption)
{
    EXPECT_STREQ(errorBoxCaption, "Id3d");
}
