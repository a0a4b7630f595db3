#ifndef VORNIK_RASTERIZER_TEXTURE_H
#define VORNIK_RASTERIZER_TEXTURE_H

// The boundary between Texture objects and the rasterizer's own store of images.

#include "vornik/export.h"

class Texture;

/// A new name; it has no image yet.
VRK_API unsigned int vrkCreateTextureName();
/// Has the name an image?
VRK_API bool vrkTextureUploaded(int name);
/// @return 0. Direct3D keeps the image until it goes down.
VRK_API int vrkDeleteTexture(unsigned int name);

/// vrkCurrentMipMapType.
VRK_API int vrkGetMipMapType();
/// Acts on later uploads. @param type  35 blends between mip levels; anything else takes the nearest
VRK_API void vrkSetMipMapType(int type);

/// Gives the image in texture->pixels to the rasterizer, under the name that the frame has. The rasterizer
/// keeps no pointer to the pixels. Leaves the texture bound. @return 0
VRK_API int vrkUploadTexture(Texture* texture, int frame);

/// Binds the texture's current frame and sets the texture matrix from its rotation, scale and offset (OpenGL
/// only). Leaves the matrix type at VRK_MODELVIEW. @param texture  null binds nothing
VRK_API void vrkSetTexture(Texture* texture);

#endif
