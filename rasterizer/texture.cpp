// Texture names, the upload of one frame, and the bind before drawing.

#include "vornik/rasterizer/texture.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "platform/glcontext.h"
#include "rasterizer/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/textures.h"
#include "rasterizer/texturename.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

static bool hasImage(const Texture* texture)
{
    return texture->pixels && texture->width > 0 && texture->height > 0;
}

static unsigned int nextDirect3DName = 0; // never given back

unsigned int vrkCreateTextureName()
{
    GLuint name = 0;
    if (vrkSelectedRasterizer == 0)
        glGenTextures(1, &name);
    else if (selectedDirect3D())
        name = nextDirect3DName++;
    return name;
}

bool vrkTextureUploaded(int name)
{
    if (vrkSelectedRasterizer == 0)
        return glIsTexture(static_cast<GLuint>(name)) == GL_TRUE;
    if (selectedDirect3D())
        return findTexture(static_cast<uint32_t>(name)) != nullptr;
    return false;
}

int vrkDeleteTexture(unsigned int name)
{
    if (vrkSelectedRasterizer == 0)
        glDeleteTextures(1, &name);
    return 0;
}

int vrkGetMipMapType()
{
    return vrkCurrentMipMapType;
}

void vrkSetMipMapType(int type)
{
    vrkCurrentMipMapType = type;
}

// Hands the pixels over. @return the filter that suits what the texture now has
static GLint sendImage(const Texture* texture)
{
    const GLint format = texture->bitsPerTexel == 32 ? GL_RGBA8 : GL_RGBA4;
    if (texture->mipmap)
    {
        gluBuild2DMipmaps(GL_TEXTURE_2D, format, texture->width, texture->height, GL_RGBA, GL_UNSIGNED_BYTE,
                          texture->pixels);
        return vrkGetMipMapType() == 35 ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR_MIPMAP_NEAREST;
    }
    glTexImage2D(GL_TEXTURE_2D, 0, format, texture->width, texture->height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 texture->pixels);
    return GL_LINEAR;
}

// A name that has an image keeps that one: only its surface is built again.
static void uploadToDirect3D(const D3DRasterizer& d3d, const Texture& texture, int frame)
{
    uint32_t flags = textureWithAlpha;
    if (texture.mipmap)
        flags |= textureWithMipMaps;
    flags |= texture.bitsPerTexel == 32 ? textureOf32Bits : textureOf16Bits;
    D3DTextureEntry* entry = findTexture(frameName(&texture, frame));
    if (!entry && hasImage(&texture))
        entry = addTexture(frameName(&texture, frame), texture.names[frame], texture.width, texture.height,
                           texture.pixels, flags);
    if (entry)
        buildTexture(entry, d3d.textureTarget());
}

int vrkUploadTexture(Texture* texture, int frame)
{
    if (!texture || !hasFrame(texture, frame))
        return 0;
    if (vrkSelectedRasterizer == 0)
    {
        // GLU builds its levels by what the library says of itself, which without a context is nothing.
        if (!hasImage(texture) || !vrkPlatformHasContext())
            return 0;

        glBindTexture(GL_TEXTURE_2D, frameName(texture, frame));
        const GLint filter = sendImage(texture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, filter);
        // A filter between levels is none for magnifying: OpenGL refuses it and keeps GL_LINEAR.
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, filter);
        const GLint wrap = texture->wrap ? GL_REPEAT : GL_CLAMP;
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_PRIORITY, truncated(texture->priority));
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
        uploadToDirect3D(*d3d, *texture, frame);
    return 0;
}

static bool isTransformed(const Texture* texture)
{
    return texture->rotation != 0.0f || texture->scaleU != 1.0f || texture->scaleV != 1.0f ||
           texture->offsetU != 0.0f || texture->offsetV != 0.0f;
}

void vrkSetTexture(Texture* texture)
{
    if (vrkSelectedRasterizer == 0)
    {
        if (!texture)
        {
            glBindTexture(GL_TEXTURE_2D, 0);
            return;
        }
        glBindTexture(GL_TEXTURE_2D, frameName(texture, texture->currentFrame));
        // Reset on every bind, or the transform of the texture before would leak into this one.
        vrkSetMatrixType(VRK_TEXTURE);
        vrkInitMatrix();
        if (isTransformed(texture))
        {
            vrkTranslate(texture->offsetU, texture->offsetV, 1.0f);
            vrkRotate(texture->rotation, 0.0f, 0.0f, 1.0f);
            vrkScale(texture->scaleU, texture->scaleV, 1.0f);
        }
        vrkSetMatrixType(VRK_MODELVIEW);
    }
    else if (D3DRasterizer* d3d = selectedDirect3D())
    {
        const bool shown = texture && hasFrame(texture, texture->currentFrame);
        d3d->setTexture(shown ? textureSurface(frameName(texture, texture->currentFrame)) : nullptr);
    }
}
