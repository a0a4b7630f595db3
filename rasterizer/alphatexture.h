// Which materials have holes.
#pragma once

#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"

/// Has the first image of a material an alpha of its own?
inline bool hasAlphaTexture(const Material& material)
{
    return material.firstTexture && material.firstTexture->environment == VRK_DECAL;
}
