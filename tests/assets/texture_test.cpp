#include "vornik/assets/texture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/texture.h"

using Calls = std::vector<std::string>;

TEST(TextureRecord, Defaults)
{
    const Texture t;
    EXPECT_EQ(t.width, 0);
    EXPECT_EQ(t.height, 0);
    EXPECT_EQ(t.bytesPerPixel, 3);
    for (int i = 0; i < 64; ++i)
    {
        EXPECT_STREQ(t.names[i], "");
        EXPECT_EQ(t.textureIDs[i], 0);
    }
    EXPECT_EQ(t.pixels, nullptr);
    EXPECT_EQ(t.rotation, 0.0f);
    EXPECT_EQ(t.offsetU, 0.0f);
    EXPECT_EQ(t.offsetV, 0.0f);
    EXPECT_EQ(t.unused0, 0.0f);
    EXPECT_EQ(t.unused1, 0.0f);
    EXPECT_EQ(t.scaleU, 1.0f);
    EXPECT_EQ(t.scaleV, 1.0f);
    EXPECT_EQ(t.unused2, 0);
    EXPECT_EQ(t.frameCount, 1);
    EXPECT_EQ(t.currentFrame, 0);
    EXPECT_EQ(t.priority, 1.0f);
    EXPECT_TRUE(t.mipmap);
    EXPECT_EQ(t.environment, VRK_MODULATE);
    EXPECT_EQ(t.environment, 12);
    EXPECT_TRUE(t.wrap);
    EXPECT_EQ(t.bitsPerTexel, 16);
    EXPECT_FALSE(t.acceptSubstitutes);
}

TEST(TextureRecord, NamesFillTheirSlots)
{
    Texture t;
    t.setFilename("WALL.JPG", 0);
    t.setFilename("LAST.TGA", 63);
    EXPECT_STREQ(t.names[0], "WALL.JPG");
    EXPECT_STREQ(t.names[63], "LAST.TGA");
    EXPECT_STREQ(t.names[1], "");
}

TEST(TextureRecord, LongNamesAreCut)
{
    Texture t;
    const std::string name(300, 'n');
    t.setFilename(name.c_str(), 5);
    EXPECT_EQ(t.names[5], std::string(63, 'n'));
    EXPECT_STREQ(t.names[6], "");
    t.setBaseDir(name.c_str());
    EXPECT_EQ(t.baseDir, std::string(255, 'n'));
    EXPECT_EQ(t.bitsPerTexel, 16);
}

TEST(TextureRecord, NamesOutsideOfTheSlotsAreIgnored)
{
    Texture t;
    t.setFilename("X", 64);
    t.setFilename("X", -1);
    EXPECT_EQ(t.pixels, nullptr);
    EXPECT_STREQ(t.names[63], "");
    EXPECT_EQ(t.bytesPerPixel, 3);
}

TEST(TextureRecord, ExtensionTestUpperCasesTheName)
{
    Texture t;
    char name[] = "maps\\wall.jpg";
    EXPECT_TRUE(t.checkExtension(name, ".JPG"));
    EXPECT_STREQ(name, "MAPS\\WALL.JPG");
    char other[] = "wall.tga";
    EXPECT_FALSE(t.checkExtension(other, ".JPG"));
    EXPECT_STREQ(other, "WALL.TGA");
    char lower[] = "wall.jpg";
    EXPECT_FALSE(t.checkExtension(lower, ".jpg")); // the name is upper case by then
    char whole[] = ".ifl";
    EXPECT_TRUE(t.checkExtension(whole, ".IFL"));
}

TEST(TextureRecord, ShortNamesHaveNoExtension)
{
    Texture t;
    for (const char* text : {"", "a", "jpg"})
    {
        char name[8];
        std::strcpy(name, text);
        EXPECT_FALSE(t.checkExtension(name, ".JPG"));
    }
}

// A texture with an image of one colour.
class TextureUpload : public EngineTest
{
protected:
    static void fill(Texture* t, uint8_t value = 200)
    {
        std::free(t->pixels);
        t->width = t->height = 4;
        t->pixels = static_cast<uint8_t*>(std::malloc(64));
        std::memset(t->pixels, value, 64);
    }
};

TEST_F(TextureUpload, HandsTheImageOverAndFreesIt)
{
    Texture t;
    fill(&t);
    EXPECT_EQ(t.uploadTexture(2), 0);
    EXPECT_EQ(t.pixels, nullptr);
    EXPECT_NE(t.textureIDs[2], 0);
    EXPECT_TRUE(vrkTextureUploaded(t.textureIDs[2]));
    EXPECT_EQ(t.textureIDs[0], 0);
}

TEST_F(TextureUpload, EveryUploadTakesANewName)
{
    Texture t;
    fill(&t);
    t.uploadTexture(0);
    const int first = t.textureIDs[0];
    fill(&t);
    t.uploadTexture(0);
    EXPECT_NE(t.textureIDs[0], first);
    vrkDeleteTexture(static_cast<unsigned int>(first));
}

TEST_F(TextureUpload, WithoutANameTheImageStays)
{
    Texture t;
    fill(&t);
    GLRecorder gl(GLRecorder::swallow);
    gl.textureName = 0xFFFFFFFF; // negative as a number of the engine
    EXPECT_LT(t.seekFreeTextureID(), 0);
    gl.clear();
    EXPECT_EQ(t.uploadTexture(0), 11);
    EXPECT_TRUE(logged("Cannot upload texture (possible openGL error)"));
    EXPECT_NE(t.pixels, nullptr);
    EXPECT_EQ(t.textureIDs[0], 0);
    EXPECT_EQ(gl.calls(), Calls{"glGenTextures(1, ptr)"});
}

TEST_F(TextureUpload, UpdateKeepsNameAndImage)
{
    Texture t;
    EXPECT_EQ(t.updateTexture(0), 0);
    fill(&t);
    t.uploadTexture(0);
    const int name = t.textureIDs[0];
    {
        GLRecorder gl;
        EXPECT_EQ(t.updateTexture(0), 0); // nothing to update with
        EXPECT_EQ(gl.calls(), Calls{});
    }
    fill(&t, 10);
    GLRecorder gl;
    EXPECT_EQ(t.updateTexture(0), 0);
    EXPECT_EQ(gl.count("glGenTextures"), 0);
    EXPECT_EQ(gl.calls().front(), "glBindTexture(GL_TEXTURE_2D, " + std::to_string(name) + ")");
    EXPECT_NE(t.pixels, nullptr);
    EXPECT_EQ(t.textureIDs[0], name);
}

TEST_F(TextureUpload, FramesOutsideOfTheSlotsAreIgnored)
{
    Texture t;
    fill(&t);
    EXPECT_EQ(t.uploadTexture(64), 0);
    EXPECT_EQ(t.uploadTexture(-1), 0);
    EXPECT_EQ(t.updateTexture(64), 0);
    EXPECT_EQ(t.updateTexture(-1), 0);
    EXPECT_NE(t.pixels, nullptr);
}

TEST_F(TextureUpload, DestructorDeletesTheFramesInOrder)
{
    GLRecorder gl;
    {
        Texture t;
        t.frameCount = 3;
        for (int frame = 0; frame < 4; ++frame)
            t.textureIDs[frame] = 100 + frame;
    }
    EXPECT_EQ(gl.calls(), (Calls{"glDeleteTextures(1, {100})", "glDeleteTextures(1, {101})",
                                 "glDeleteTextures(1, {102})"}));
}

TEST_F(TextureUpload, DestructorKeepsToTheSlots)
{
    GLRecorder gl;
    {
        Texture t;
        t.frameCount = 1000;
    }
    EXPECT_EQ(gl.count("glDeleteTextures"), 64);
}

TEST_F(TextureUpload, AssignmentCopiesMemberByMember)
{
    Texture a;
    fill(&a);
    a.setFilename("A.JPG", 0);
    a.scaleU = 3.0f;
    a.percent = 40;
    a.setBaseDir("dir\\");
    Texture b;
    b = a;
    EXPECT_STREQ(b.names[0], "A.JPG");
    EXPECT_EQ(b.scaleU, 3.0f);
    EXPECT_EQ(b.percent, 40);
    EXPECT_STREQ(b.baseDir, "dir\\");
    EXPECT_EQ(b.pixels, a.pixels); // shared: only one of the two may free it
    b.pixels = nullptr;
}

TEST(TextureSilent, OtherRasterizersUploadNothing)
{
    vrkSelectedRasterizer = 7;
    Texture t;
    t.width = t.height = 1;
    t.pixels = static_cast<uint8_t*>(std::calloc(4, 1));
    EXPECT_EQ(t.seekFreeTextureID(), 0);
    EXPECT_EQ(t.uploadTexture(0), 0);
    EXPECT_EQ(t.pixels, nullptr);
    vrkSelectedRasterizer = 0;
}
