#pragma once

#include <cstdint>
#include <vector>

#include "rasterizer/d3d/records.h"

/// Asks every driver for its modes and devices. A driver that can't be opened is left out.
/// @return 0, or what the library said
uint32_t enumerateDrivers(std::vector<D3DDriverReport>* drivers);
