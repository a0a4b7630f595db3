// Which device, mode, Z-buffer and texture format are taken.
#pragma once

#include <cstdint>
#include <vector>

#include "rasterizer/d3d/records.h"

/// Fills the table with the devices that can draw what the engine draws; what the table can't hold is left
/// out.
/// @return 0, d3d::enumerationFailed without a driver or d3d::noDevices without a device
uint32_t collectDevices(const std::vector<D3DDriverReport>& drivers, D3DDeviceTable* table);

/// Of the hardware devices of the desktop's driver the last one of a kind: with transform and lighting where
/// useTnL asks for it and there is one, else without. A secondaryDevice of 1 prefers a driver of another
/// screen.
/// @return null if there is none; software devices don't count
D3DDeviceRecord* selectDevice(D3DDeviceTable* table, bool useTnL, int secondaryDevice);

/// Takes the last mode of exactly these numbers; without one the device keeps the mode it has.
void selectMode(D3DDeviceRecord* record, int width, int height, int colorBits);

/// A format as deep as the back buffer, else one of 16 bits. @return null if there is neither
const D3DPixelFormat* chooseDepthFormat(const std::vector<D3DPixelFormat>& formats, uint32_t backBufferBits);

/// A texture format of this many bits, 16 or 32, with alpha where that is asked for; of those with 16 bits
/// and alpha the one with four bits a channel where there is one. Where nothing is as deep, the other depth.
/// @return null if there is none
const D3DPixelFormat* chooseTextureFormat(const std::vector<D3DPixelFormat>& formats, uint32_t bits,
                                          bool alpha);

struct D3DSize
{
    int width, height;
};
/// The size of the surface for an image, by the device's texture capabilities.
D3DSize textureSize(int width, int height, uint32_t textureCaps);

/// Levels of a mip-mapped surface: log2 of the smaller side, and at least one.
int mipLevels(const D3DSize& size);
