// What the harbour stands in: sky, hills, water, quays and the mole with its lighthouse.
#pragma once

#include "samples/scene.h"

namespace sample
{

constexpr float quayHeight = 1.5f;
/// Where the lighthouse stands; z is its foot.
constexpr Vec3 lighthousePlace = {-27.5f, 31, 2.1f};
constexpr float lighthouseHeight = 15.5f; ///< of the gallery above its foot

/// Height of the near hills at a place, in metres.
float groundHeight(Vec2 place);

void addSky(Scene& scene);
void addHills(Scene& scene);
void addQuays(Scene& scene);
void addMole(Scene& scene);
void addLighthouse(Scene& scene);
/// The water itself. It is blended: to be added behind all that is seen through it.
void addWater(Scene& scene);
void addGlitter(Scene& scene, Vec3 eye);

} // namespace sample
