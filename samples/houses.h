// Houses and warehouses along the two quays.
#pragma once

#include "samples/scene.h"

namespace sample
{

/// All houses, with what the water shows of them.
void addHouses(Scene& scene);

} // namespace sample
