// Making materials look as a file means them, where the engine leaves that to the host.
#pragma once

#include <string>
#include <vector>

#include "apps/vornik/loadscene.h"

/// Names the images that can't be had on standard error, one line each.
void reportMissingImages(const std::vector<ImageUse>& images);

/// Puts the plain colour of its material in the place of each image that can't be read. Unless classic, it
/// also loads reflection images, drops opacity images that can't be read, takes percentages of transparency
/// as such, and gives faces without a material a neutral colour.
/// @param pack  that has the images; empty for loose files
void completeMaterials(OGroup* group, const std::vector<ImageUse>& images, const std::string& pack,
                       bool classic);
