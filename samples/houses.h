// Houses and warehouses along the two quays.
#pragma once

#include "samples/scene.h"

namespace sample
{

/// All houses, with what the water shows of them.
/// @return the boxes under some of the windows: middles of their rims, with the axes of their house
std::vector<Frame> addHouses(Scene& scene);

} // namespace sample
