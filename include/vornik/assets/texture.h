#ifndef VORNIK_ASSETS_TEXTURE_H
#define VORNIK_ASSETS_TEXTURE_H

// One image, or a list of images played as an animation, that belongs to a material.

#include <stdint.h>

#include "vornik/export.h"

/// Frames are loaded and uploaded one at a time: pixels holds an image from loadTexture to uploadTexture
/// only.
class VRK_API Texture
{
public:
    int32_t width, height; ///< pixels
    int32_t bytesPerPixel; ///< of the source, 3 or 4; pixels itself always has 4
    char names[64][64]; ///< [0] the name in the scene, an image or an .IFL; from [1] on the frames of an IFL
    uint8_t* pixels; ///< [width * height * 4] RGBA, rows bottom-up, a malloc block, owned; null when uploaded
    float rotation;  ///< degrees; with offsets and scales the texture matrix on OpenGL
    /// Of the image on the faces, as the file has it.
    float offsetU, offsetV;
    /// 0, never read.
    float unused0, unused1;
    /// 1 is as it is.
    float scaleU, scaleV;
    /// 0, never read.
    uint8_t unused2;
    int32_t frameCount;     ///< 1 for a single image, at most 63
    int32_t currentFrame;   ///< frame shown
    int32_t textureIDs[64]; ///< rasterizer's name of each frame
    /// Handed to the rasterizer.
    float priority;
    /// Smaller copies at the upload.
    bool mipmap;
    int32_t environment;  ///< VRK_MODULATE plain, VRK_DECAL with alpha
    int32_t percent;      ///< strength of the map; stored only, unset until read
    bool wrap;            ///< repeat; clamp when false
    char baseDir[256];    ///< directory in front of every name; unset until setBaseDir
    int32_t bitsPerTexel; ///< 32 asks the rasterizer for 8 bits a channel, anything else for 4
    /// Takes a JPEG or TGA of the same stem for any other kind of image, finds images without the folders of
    /// their name, and reads more kinds of TGA and sizes that are no power of two. Off unless the load is
    /// tolerant.
    bool acceptSubstitutes;

    Texture();
    /// Shares pixels and texture names, as assignment does.
    Texture(const Texture&) = default;
    /// Copies member by member: the copy shares pixels and texture names with its source.
    Texture& operator=(const Texture&) = default;
    /// Frees pixels and deletes the frames' texture names.
    ~Texture();

    /// @param name   cut to 63 characters
    /// @param index  0 to 63; anything else is ignored
    void setFilename(const char* name, int index);
    /// @param dir  cut to 255 characters; taken with its closing separator
    void setBaseDir(const char* dir);
    /// Upper-cases name in place and compares its last four characters. @param extension  like ".JPG"
    bool checkExtension(char* name, const char* extension);
    /// A new texture name of the rasterizer, negative if there is none.
    int seekFreeTextureID();

    /// Hands pixels to the rasterizer under a new name and frees them. @return 0 or 11, logged
    int uploadTexture(int frame);
    /// Hands pixels to the rasterizer under the frame's own name and keeps them. @return 0
    int updateTexture(int frame);

    // Names and images, in image.cpp. Files are looked up in baseDir; the forms with packName look in that
    // pack and nowhere else, for members named baseDir and file name together.

    /// Fills the frame names: one for an image, the lines of the list for an .IFL. @return 0 or 7, logged
    int extractNames();
    /// The same out of a pack.
    int extractNames(const char* packName);
    /// Reads names[index] into pixels. @param scale  below 1 shrinks the image. @return 0 or the logged
    /// number
    int loadTexture(int index, float scale);
    /// The same out of a pack.
    int loadTexture(int index, const char* packName, float scale);

    // Operations on pixels, in textureimage.cpp.

    /// Contrast: each colour channel becomes 2 * value - 28, limited to 0 to 255.
    void multiply();
    /// 3 x 3 filter over all four channels; the outermost pixels stay. @param kernel  [9], row by row
    void filter(const int* kernel);
    /// A fixed sharpening filter that reads bytes as signed: it suits channels below 128 and blackens the
    /// others.
    void sharpenTexture();
    /// Shrinks to a power of two by averaging and sharpens. A size that comes out as an exact power of two
    /// falls to the next one below: 0.5 makes a quarter of each side. @param scale  above 0 and at most 1
    void scaleTexture(float scale);
};

#endif
