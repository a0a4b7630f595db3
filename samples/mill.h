// The windmill on the hill behind the harbour.
#pragma once

#include "samples/scene.h"

namespace sample
{

/// The tower, and the cap that turns on it.
void addMill(Scene& scene);
/// The sails, which turn on the cap. Their lattice is blended: to be added behind the water.
void addMillSails(Scene& scene);

} // namespace sample
