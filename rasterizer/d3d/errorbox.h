// What rasterizer 1 shows when it can't start.
#pragma once

#include <cstdint>
#include <string>

enum D3DErrorMode
{
    boxApplicationExits = 1,
    boxNoHardware = 2
};

/// Caption of every box.
constexpr const char* errorBoxCaption = "Id3d";

/// The text for a code, with the line that the mode adds.
std::string errorBoxText(uint32_t code, int mode);
