// Shadow rays through another library.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lighting/shadowtree.h"
#include "vornik/scene/object.h"

struct ShadowPeer
{
    std::string name;
    double buildSeconds;
    std::function<bool(const ShadowTarget&)> blocks;
};

// Embree by the engine's rule of what blocks, and as it is at its best, by a rule of its own.
std::vector<ShadowPeer> makeEmbreeShadows(const Light& light, const std::vector<ShadowFace>& faces);
