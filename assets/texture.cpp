#include "vornik/assets/texture.h"

#include <cctype>
#include <cstdio>
#include <cstring>

#include "vornik/core/errorlog.h"
#include "vornik/core/memory.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/texture.h"

static const int slots = 64;

Texture::Texture()
    : width(0), height(0), bytesPerPixel(3), names{}, pixels(nullptr), rotation(0.0f), offsetU(0.0f),
      offsetV(0.0f), unused0(0.0f), unused1(0.0f), scaleU(1.0f), scaleV(1.0f), unused2(0), frameCount(1),
      currentFrame(0), textureIDs{}, priority(1.0f), mipmap(true), environment(VRK_MODULATE), percent(0),
      wrap(true), baseDir{}, bitsPerTexel(16), acceptSubstitutes(false)
{
}

Texture::~Texture()
{
    vrkFree(reinterpret_cast<char**>(&pixels));
    for (int frame = 0; frame < frameCount && frame < slots; ++frame)
        vrkDeleteTexture(static_cast<unsigned int>(textureIDs[frame]));
}

void Texture::setFilename(const char* name, int index)
{
    if (index >= 0 && index < slots)
        std::snprintf(names[index], sizeof names[index], "%s", name);
}

void Texture::setBaseDir(const char* dir)
{
    std::snprintf(baseDir, sizeof baseDir, "%s", dir);
}

bool Texture::checkExtension(char* name, const char* extension)
{
    for (char* c = name; *c; ++c)
        *c = static_cast<char>(std::toupper(static_cast<unsigned char>(*c)));
    const size_t length = std::strlen(name);
    return length >= 4 && std::strncmp(name + length - 4, extension, 4) == 0;
}

int Texture::seekFreeTextureID()
{
    return static_cast<int>(vrkCreateTextureName());
}

int Texture::uploadTexture(int frame)
{
    const int id = seekFreeTextureID();
    if (id < 0)
        return vrkPutToErrorLog("Cannot upload texture (possible openGL error)", 11);
    if (frame < 0 || frame >= slots)
        return 0;

    textureIDs[frame] = id;
    vrkUploadTexture(this, frame);
    vrkFree(reinterpret_cast<char**>(&pixels));
    return 0;
}

int Texture::updateTexture(int frame)
{
    if (pixels && frame >= 0 && frame < slots)
        vrkUploadTexture(this, frame);
    return 0;
}
