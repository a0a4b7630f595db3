#include "vornik/rasterizer/texture.h"

#include <GL/gl.h>

#include <cstdlib>
#include <limits>
#include <memory>

#include "platform/glcontext.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/openglfunction.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using Calls = std::vector<std::string>;

static int levelValue(GLint level, GLenum name)
{
    GLint value = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, level, name, &value);
    return value;
}

static int textureValue(GLenum name)
{
    GLint value = 0;
    glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
    return value;
}

class TextureTest : public EngineTest
{
protected:
    // An image of one colour.
    void fill(int w, int h, const Pixel& color = {255, 0, 0, 255})
    {
        texture.width = w;
        texture.height = h;
        texture.pixels = static_cast<uint8_t*>(std::realloc(texture.pixels, static_cast<size_t>(w * h * 4)));
        for (int i = 0; i < w * h; ++i)
        {
            texture.pixels[i * 4] = static_cast<uint8_t>(color.r);
            texture.pixels[i * 4 + 1] = static_cast<uint8_t>(color.g);
            texture.pixels[i * 4 + 2] = static_cast<uint8_t>(color.b);
            texture.pixels[i * 4 + 3] = static_cast<uint8_t>(color.a);
        }
    }

    void SetUp() override
    {
        EngineTest::SetUp();
        fill(4, 4);
        for (int frame = 0; frame < 3; ++frame)
            texture.textureIDs[frame] = static_cast<int32_t>(vrkCreateTextureName());
    }

    std::string name(int frame = 0) const { return std::to_string(texture.textureIDs[frame]); }

    // What an upload tells OpenGL after the image.
    Calls settings(const std::string& filter) const
    {
        return {"glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, " + filter + ")",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, " + filter + ")",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT)",
                "glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_PRIORITY, 1)",
                "glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE)"};
    }

    Texture texture;
};

static Calls operator+(Calls a, const Calls& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

TEST_F(TextureTest, NamesAreNewAndEmpty)
{
    GLRecorder gl;
    const unsigned int a = vrkCreateTextureName();
    const unsigned int b = vrkCreateTextureName();
    EXPECT_EQ(gl.calls(), (Calls{"glGenTextures(1, ptr)", "glGenTextures(1, ptr)"}));
    EXPECT_NE(a, 0u);
    EXPECT_NE(a, b);
    EXPECT_FALSE(vrkTextureUploaded(static_cast<int>(a)));
    EXPECT_FALSE(vrkTextureUploaded(0));
    EXPECT_FALSE(vrkTextureUploaded(-1));
}

TEST_F(TextureTest, DeletedNameHasNoImage)
{
    EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
    EXPECT_TRUE(vrkTextureUploaded(texture.textureIDs[0]));
    GLRecorder gl;
    EXPECT_EQ(vrkDeleteTexture(static_cast<unsigned int>(texture.textureIDs[0])), 0);
    EXPECT_EQ(gl.calls(), (Calls{"glDeleteTextures(1, {" + name() + "})"}));
    EXPECT_FALSE(vrkTextureUploaded(texture.textureIDs[0]));
}

TEST_F(TextureTest, MipMappedUploadBuildsItsLevels)
{
    GLRecorder gl;
    EXPECT_EQ(vrkUploadTexture(&texture, 1), 0);
    EXPECT_EQ(gl.calls(),
              (Calls{"glBindTexture(GL_TEXTURE_2D, " + name(1) + ")",
                     "gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGBA4, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"} +
               settings("GL_LINEAR_MIPMAP_LINEAR")));
    EXPECT_EQ(gl.pointer(1), texture.pixels);
    EXPECT_EQ(levelValue(0, GL_TEXTURE_WIDTH), 4);
    EXPECT_EQ(levelValue(1, GL_TEXTURE_WIDTH), 2);
    EXPECT_EQ(levelValue(2, GL_TEXTURE_WIDTH), 1);
}

TEST_F(TextureTest, MagnifyingFilterOfAMipMappedTextureStaysLinear)
{
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(textureValue(GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_LINEAR);
    EXPECT_EQ(textureValue(GL_TEXTURE_MAG_FILTER), GL_LINEAR);
}

TEST_F(TextureTest, UploadWithoutMipMapsHasOneLevel)
{
    texture.mipmap = false;
    GLRecorder gl;
    EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
    EXPECT_EQ(gl.calls(),
              (Calls{"glBindTexture(GL_TEXTURE_2D, " + name() + ")",
                     "glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA4, 4, 4, 0, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"} +
               settings("GL_LINEAR")));
    EXPECT_EQ(gl.pointer(1), texture.pixels);
    EXPECT_EQ(levelValue(1, GL_TEXTURE_WIDTH), 0);
}

TEST_F(TextureTest, OnlyThirtyTwoBitsGetEightAChannel)
{
    for (const auto& [bits, format] :
         {std::pair{16, "GL_RGBA4"}, {24, "GL_RGBA4"}, {0, "GL_RGBA4"}, {33, "GL_RGBA4"}, {32, "GL_RGBA8"}})
        for (const bool mipmap : {true, false})
        {
            texture.bitsPerTexel = bits;
            texture.mipmap = mipmap;
            GLRecorder gl;
            vrkUploadTexture(&texture, 0);
            EXPECT_NE(gl.calls()[1].find(format), std::string::npos) << bits << gl.calls()[1];
        }
}

TEST_F(TextureTest, MipMapTypeActsOnLaterUploads)
{
    vrkUploadTexture(&texture, 0);
    vrkSetMipMapType(0);
    EXPECT_EQ(vrkGetMipMapType(), 0);
    EXPECT_EQ(vrkCurrentMipMapType, 0);
    EXPECT_EQ(textureValue(GL_TEXTURE_MIN_FILTER), GL_LINEAR_MIPMAP_LINEAR);

    GLRecorder gl;
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(gl.only({"glTexParameteri", "glTexEnvi"}), settings("GL_LINEAR_MIPMAP_NEAREST"));

    for (const int other : {34, 36, -35})
    {
        vrkSetMipMapType(other);
        gl.clear();
        vrkUploadTexture(&texture, 0);
        EXPECT_EQ(gl.only({"glTexParameteri", "glTexEnvi"}), settings("GL_LINEAR_MIPMAP_NEAREST"));
    }

    vrkSetMipMapType(35);
    gl.clear();
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(gl.only({"glTexParameteri", "glTexEnvi"}), settings("GL_LINEAR_MIPMAP_LINEAR"));
}

TEST_F(TextureTest, TextureThatIsNotTiledIsClamped)
{
    texture.wrap = false;
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(textureValue(GL_TEXTURE_WRAP_S), GL_CLAMP);
    EXPECT_EQ(textureValue(GL_TEXTURE_WRAP_T), GL_CLAMP);
    texture.wrap = true;
    vrkUploadTexture(&texture, 0);
    EXPECT_EQ(textureValue(GL_TEXTURE_WRAP_S), GL_REPEAT);
    EXPECT_EQ(textureValue(GL_TEXTURE_WRAP_T), GL_REPEAT);
}

TEST_F(TextureTest, PriorityIsCutToAWholeNumber)
{
    const std::pair<float, std::string> cases[] = {
        {0.5f, "0"},   {1.0f, "1"},  {2.9f, "2"},
        {-1.5f, "-1"}, {1e20f, "0"}, {std::numeric_limits<float>::quiet_NaN(), "0"}};
    for (const auto& [priority, text] : cases)
    {
        texture.priority = priority;
        GLRecorder gl;
        vrkUploadTexture(&texture, 0);
        EXPECT_EQ(gl.countExact("glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_PRIORITY, " + text + ")"), 1)
            << priority << "\n"
            << gl.text();
    }
}

TEST_F(TextureTest, UploadWithoutAnImageDoesNothing)
{
    GLRecorder gl;
    EXPECT_EQ(vrkUploadTexture(nullptr, 0), 0);
    for (const auto& [w, h] : {std::pair{0, 4}, {4, 0}, {-4, 4}, {4, -4}})
    {
        texture.width = w;
        texture.height = h;
        for (const bool mipmap : {true, false})
        {
            texture.mipmap = mipmap;
            EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
        }
    }
    fill(4, 4);
    for (const int frame : {-1, 64, 1000000})
        EXPECT_EQ(vrkUploadTexture(&texture, frame), 0);
    std::free(texture.pixels);
    texture.pixels = nullptr;
    EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(TextureTest, UploadWithoutAContextDoesNothing)
{
    releaseContext();
    GLRecorder gl;
    EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
    EXPECT_EQ(gl.calls(), Calls{});
    ASSERT_TRUE(vrkPlatformMakeCurrent(VRK_hDC, VRK_hGLRC));
}

TEST_F(TextureTest, ImageOfAnySizeIsTaken)
{
    for (const auto& [w, h] : {std::pair{1, 1}, {3, 5}, {1, 16}, {640, 3}})
        for (const bool mipmap : {true, false})
        {
            fill(w, h, {0, 255, 0, 255});
            texture.mipmap = mipmap;
            EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
            EXPECT_GT(levelValue(0, GL_TEXTURE_WIDTH), 0) << w << " x " << h;
        }
}

TEST_F(TextureTest, BindWithoutTransformResetsTheTextureMatrix)
{
    texture.currentFrame = 2;
    GLRecorder gl;
    vrkSetTexture(&texture);
    EXPECT_EQ(gl.calls(), (Calls{"glBindTexture(GL_TEXTURE_2D, " + name(2) + ")", "glMatrixMode(GL_TEXTURE)",
                                 "glLoadIdentity()", "glMatrixMode(GL_MODELVIEW)"}));
}

TEST_F(TextureTest, BindAppliesTheTransform)
{
    texture.rotation = 30.0f;
    texture.offsetU = 0.25f;
    texture.offsetV = 0.5f;
    texture.scaleU = 2.0f;
    texture.scaleV = 4.0f;
    GLRecorder gl;
    vrkSetTexture(&texture);
    EXPECT_EQ(gl.calls(), (Calls{"glBindTexture(GL_TEXTURE_2D, " + name() + ")", "glMatrixMode(GL_TEXTURE)",
                                 "glLoadIdentity()", "glTranslatef(0.25, 0.5, 1)", "glRotatef(30, 0, 0, 1)",
                                 "glScalef(2, 4, 1)", "glMatrixMode(GL_MODELVIEW)"}));
}

TEST_F(TextureTest, AnyOneValueAsksForTheTransform)
{
    const std::pair<float Texture::*, float> changes[] = {{&Texture::rotation, 1.0f},
                                                          {&Texture::scaleU, 2.0f},
                                                          {&Texture::scaleV, 2.0f},
                                                          {&Texture::offsetU, 0.1f},
                                                          {&Texture::offsetV, 0.1f}};
    for (const auto& [field, value] : changes)
    {
        const float before = texture.*field;
        texture.*field = value;
        GLRecorder gl;
        vrkSetTexture(&texture);
        EXPECT_EQ(gl.count("glScalef"), 1);
        EXPECT_EQ(gl.count("glRotatef"), 1);
        EXPECT_EQ(gl.count("glTranslatef"), 1);
        texture.*field = before;
    }
}

TEST_F(TextureTest, TransformDoesNotLeakIntoTheNextTexture)
{
    texture.scaleU = 3.0f;
    vrkSetTexture(&texture);
    texture.scaleU = 1.0f;
    vrkSetTexture(&texture);
    GLfloat m[16];
    glGetFloatv(GL_TEXTURE_MATRIX, m);
    EXPECT_EQ(m[0], 1.0f);
}

TEST_F(TextureTest, NullTextureBindsNothing)
{
    vrkSetTexture(&texture);
    GLRecorder gl;
    vrkSetTexture(nullptr);
    EXPECT_EQ(gl.calls(), (Calls{"glBindTexture(GL_TEXTURE_2D, 0)"}));
}

TEST_F(TextureTest, FrameThatDoesNotExistBindsNothing)
{
    for (const int frame : {-1, 64, 1 << 30})
    {
        texture.currentFrame = frame;
        GLRecorder gl;
        vrkSetTexture(&texture);
        EXPECT_EQ(gl.calls().front(), "glBindTexture(GL_TEXTURE_2D, 0)");
    }
}

TEST_F(TextureTest, OtherRasterizerNumbersAreSilent)
{
    for (const int number : {1, 7})
    {
        vrkSelectRasterizer(number);
        GLRecorder gl;
        EXPECT_EQ(vrkCreateTextureName(), 0u);
        EXPECT_FALSE(vrkTextureUploaded(texture.textureIDs[0]));
        EXPECT_EQ(vrkDeleteTexture(1), 0);
        EXPECT_EQ(vrkUploadTexture(&texture, 0), 0);
        vrkSetTexture(&texture);
        vrkSetTexture(nullptr);
        vrkSetMipMapType(12);
        EXPECT_EQ(vrkGetMipMapType(), 12);
        EXPECT_EQ(gl.calls(), Calls{});
    }
}

TEST_F(TextureTest, UploadedImageIsWhatGetsDrawn)
{
    fill(2, 2);
    const uint8_t quarters[] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
    std::copy(std::begin(quarters), std::end(quarters), texture.pixels);
    texture.mipmap = false;
    texture.bitsPerTexel = 32;
    vrkUploadTexture(&texture, 0);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    vrkSetTexture(&texture);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glBegin(GL_QUADS);
    glColor4f(1, 1, 1, 1);
    glTexCoord2f(0, 0);
    glVertex2f(-1, -1);
    glTexCoord2f(1, 0);
    glVertex2f(1, -1);
    glTexCoord2f(1, 1);
    glVertex2f(1, 1);
    glTexCoord2f(0, 1);
    glVertex2f(-1, 1);
    glEnd();
    EXPECT_TRUE(pixelIs(10, 10, {255, 0, 0, 255}));
    EXPECT_TRUE(pixelIs(50, 10, {0, 255, 0, 255}));
    EXPECT_TRUE(pixelIs(10, 50, {0, 0, 255, 255}));
    EXPECT_TRUE(pixelIs(50, 50, {255, 255, 255, 255}));
}
