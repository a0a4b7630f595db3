// Boats at their moorings, and how they rock.
#pragma once

#include "samples/scene.h"

namespace sample
{

/// Hulls, masts and sails, with what the water shows of them.
void addBoats(Scene& scene);
/// Ropes and shrouds, which are blended: to be added behind the water.
void addRigging(Scene& scene, Vec3 eye);

} // namespace sample
