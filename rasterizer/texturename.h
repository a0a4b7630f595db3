// The rasterizer's name of a texture's frame.
#pragma once

#include <iterator>

#include "vornik/assets/texture.h"

inline bool hasFrame(const Texture* texture, int frame)
{
    return frame >= 0 && frame < static_cast<int>(std::size(texture->textureIDs));
}

/// 0 for a frame that the texture can't have.
inline unsigned int frameName(const Texture* texture, int frame)
{
    return hasFrame(texture, frame) ? static_cast<unsigned int>(texture->textureIDs[frame]) : 0;
}
