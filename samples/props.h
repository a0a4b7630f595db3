// What stands about on the quays: lamps, barrels, crates, nets, a crane, a stall; and trees, ivy and gulls.
#pragma once

#include "samples/scene.h"

namespace sample
{

/// Places of the lanterns' flames.
const std::vector<Vec3>& lampPlaces();

/// Where a line is made fast that comes from this far along the east quay.
Vec3 nearestBollard(float y);

/// Lamps and everything that is solid.
void addProps(Scene& scene);
/// What is blended, in this order: mirrored lights (to be added before the water), shades on the ground,
/// nets, leaves, gulls and the glow of the lamps.
void addGlowBelow(Scene& scene, Vec3 eye);
void addShades(Scene& scene);
void addNets(Scene& scene);
void addTrunks(Scene& scene);
void addLeaves(Scene& scene, Vec3 eye);
/// Flowers in the boxes.
void addFlowers(Scene& scene, const std::vector<Frame>& boxes, Vec3 eye);
void addGulls(Scene& scene);
void addGlow(Scene& scene, Vec3 eye);

} // namespace sample
