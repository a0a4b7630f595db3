// Texture names, the upload of one frame, and the bind before drawing.

#include "vornik/rasterizer/texture.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include "platform/glcontext.h"
#include "rasterizer/constants.h"
#include "rasterizer/texturename.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

static bool hasImage(const Texture* texture)
{
    return texture->pixels && texture->width > 0 && texture->height > 0;
}

unsigned int vrkCreateTextureName()
{
    GLuint name = 0;
    if (vrkSelectedRasterizer == 0)
        glGenTextures(1, &name);
    return name;
}

bool vrkTextureUploaded(int name)
{
    if (vrkSelectedRasterizer == 0)
        return glIsTexture(static_cast<GLuint>(name)) == GL_TRUE;
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

int vrkUploadTexture(Texture* texture, int frame)
{
    if (!texture || !hasFrame(texture, frame) || !hasImage(texture))
        return 0;
    if (vrkSelectedRasterizer == 0)
    {
        // GLU builds its levels by what the library says of itself, which without a context is nothing.
        if (!vrkPlatformHasContext())
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
}
