// The images and the grid of the overlay, and what all of it does with bad input.

#include "vornik/rasterizer/overlay.h"

#include <cstdlib>
#include <functional>
#include <limits>

#include "tests/rasterizer/overlayfixture.h"
#include "vornik/assets/texture.h"
#include "vornik/rasterizer/fog.h"
#include "vornik/rasterizer/state.h"
#include "vornik/scene/material.h"

// A material whose texture has four fields: red at the bottom left, green at the bottom right, blue at the
// top left, white at the top right.
class ImageTest : public OverlayTest
{
protected:
    void SetUp() override
    {
        OverlayTest::SetUp();
        Texture* texture = new Texture;
        texture->width = texture->height = 4;
        texture->mipmap = false;
        texture->bitsPerTexel = 32;
        texture->pixels = static_cast<uint8_t*>(std::malloc(4 * 4 * 4));
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x)
            {
                const Pixel& p = y < 2 ? (x < 2 ? red : green) : (x < 2 ? blue : white);
                uint8_t* bytes = texture->pixels + (y * 4 + x) * 4;
                bytes[0] = static_cast<uint8_t>(p.r);
                bytes[1] = static_cast<uint8_t>(p.g);
                bytes[2] = static_cast<uint8_t>(p.b);
                bytes[3] = 255;
            }
        material.addFirstTexture(texture);
        ASSERT_EQ(texture->uploadTexture(0), 0);
        name = std::to_string(texture->textureIDs[0]);
    }

    // The image fades between its fields, so that only their middles are compared.
    void expectFields(int left, int bottom, int size, const Pixel (&fields)[4]) const
    {
        const int low = size / 8, high = size - 1 - size / 8;
        EXPECT_TRUE(pixelIs(left + low, bottom + low, fields[0], 2));
        EXPECT_TRUE(pixelIs(left + high, bottom + low, fields[1], 2));
        EXPECT_TRUE(pixelIs(left + low, bottom + high, fields[2], 2));
        EXPECT_TRUE(pixelIs(left + high, bottom + high, fields[3], 2));
    }

    Calls imageCalls(const std::string& middle, const Calls& turn, const std::string& paint,
                     const std::string& h, const std::string& v) const
    {
        return Calls{"glMatrixMode(GL_TEXTURE)", "glLoadIdentity()", "glMatrixMode(GL_PROJECTION)",
                     "glPushMatrix()",           "glLoadIdentity()", "glOrtho(0, 640, 0, 480, 1e-07, 1)"} +
               identity + Calls{"glTranslatef(" + middle + ", -0.5)"} + turn +
               Calls{"glBindTexture(GL_TEXTURE_2D, " + name + ")",
                     "glBegin(GL_QUADS)",
                     "glColor4f(" + paint + ")",
                     "glTexCoord2f(0, 0)",
                     "glVertex3f(-" + h + ", -" + v + ", 0)",
                     "glTexCoord2f(1, 0)",
                     "glVertex3f(" + h + ", -" + v + ", 0)",
                     "glTexCoord2f(1, 1)",
                     "glVertex3f(" + h + ", " + v + ", 0)",
                     "glTexCoord2f(0, 1)",
                     "glVertex3f(-" + h + ", " + v + ", 0)",
                     "glEnd()"} +
               perspective + Calls{"glPopMatrix()"} + identity;
    }

    Material material;
    Color plain = {1, 1, 1, 1};
    std::string name;
    Vertex3D corner = {0, 0, 0};
};

// The portable switches as images and the grid turn and restore them. OpenGL knows no switch GL_TEXTURE.
static const Calls imageBegin = {
    "glIsEnabled(GL_ALPHA_TEST)", "glDisable(GL_ALPHA_TEST)", "glIsEnabled(GL_DEPTH_TEST)",
    "glDisable(GL_DEPTH_TEST)",   "glIsEnabled(GL_FOG)",      "glDisable(GL_FOG)",
    "glIsEnabled(GL_CULL_FACE)",  "glDisable(GL_CULL_FACE)",  "glIsEnabled(GL_BLEND)",
    "glEnable(GL_BLEND)",         "glIsEnabled(GL_TEXTURE)",  "glEnable(GL_TEXTURE)"};
static const Calls imageEnd = {"glEnable(GL_DEPTH_TEST)",  "glDisable(GL_BLEND)",
                               "glDisable(GL_FOG)",        "glDisable(GL_TEXTURE)",
                               "glDisable(GL_ALPHA_TEST)", "glEnable(GL_CULL_FACE)"};

static Calls switched(const Calls& drawing)
{
    return imageBegin + drawing + imageEnd;
}

TEST_F(ImageTest, IsAQuadAboutItsMiddle)
{
    setWindow(640, 480);
    GLRecorder gl;
    vrkDrawImage(&corner, &material, &plain, 64, 32, false, 0);
    EXPECT_EQ(gl.calls(), switched(imageCalls("32, 464", {}, "1, 1, 1, 1", "32", "16")));
}

TEST_F(ImageTest, TurnsAboutItsMiddleBeforeItIsBound)
{
    setWindow(640, 480);
    corner = {5, 7, 900};
    color = {0.5f, 0.25f, 1, 0.75f};
    GLRecorder gl;
    vrkDrawImage(&corner, &material, &color, 64, 32, true, 30);
    EXPECT_EQ(gl.calls(),
              switched(imageCalls("37, 457", {"glRotatef(30, 0, 0, 1)"}, "0.5, 0.25, 1, 0.75", "32", "16")));
}

TEST_F(ImageTest, SwitchesReturnToWhatTheyWere)
{
    const std::vector<std::vector<bool>> states = {{false, true, false, true, true, true},
                                                   {true, false, true, true, false, false}};
    for (const std::vector<bool>& state : states)
    {
        setSwitches(state);
        vrkDrawImage(&corner, &material, &plain, 64, 32, false, 0);
        EXPECT_EQ(switchValues(), state);
        vrkDrawImageWithoutYConversion(&corner, &material, &plain, 64, 32, false);
        EXPECT_EQ(switchValues(), state);
    }
}

TEST_F(ImageTest, WithoutATextureNothingIsTouched)
{
    Material bare;
    GLRecorder gl;
    for (Material* none : {static_cast<Material*>(nullptr), &bare})
    {
        vrkDrawImage(&corner, none, &plain, 64, 32, false, 0);
        vrkDrawImageWithoutYConversion(&corner, none, &plain, 64, 32, false);
    }
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(ImageTest, StandsUprightFromItsTopLeftCorner)
{
    corner = {8, 4, 0};
    vrkDrawImage(&corner, &material, &plain, 32, 32, false, 0);
    expectFields(8, 64 - 4 - 32, 32, {red, green, blue, white});
    EXPECT_TRUE(pixelIs(7, 50, black));
    EXPECT_TRUE(pixelIs(40, 50, black));
    EXPECT_TRUE(pixelIs(20, 60, black));
    EXPECT_TRUE(pixelIs(20, 27, black));
    EXPECT_EQ(drawnPixels(), 32 * 32);
}

TEST_F(ImageTest, TurnsCounterClockwise)
{
    corner = {8, 4, 0};
    vrkDrawImage(&corner, &material, &plain, 32, 32, false, 90);
    expectFields(8, 64 - 4 - 32, 32, {blue, red, white, green});
    EXPECT_EQ(drawnPixels(), 32 * 32);
}

TEST_F(ImageTest, LiesOverEverythingUntouchedByTheTextureMatrixAndFog)
{
    glClearDepth(0.0);
    vrkClear();
    vrkSetFog({0, 0, 0, 1}, 0.0f, 0.001f);
    vrkEnable(VRK_ALPHA_TEST);
    vrkAlphaFunc(VRK_GREATER, 1.0f); // would let nothing through
    vrkSetMatrixType(VRK_TEXTURE);
    vrkScale(-3, 7, 1);
    vrkSetMatrixType(VRK_MODELVIEW);
    vrkDrawImage(&corner, &material, &plain, 64, 64, false, 0);
    expectFields(0, 0, 64, {red, green, blue, white});
}

TEST_F(ImageTest, IsTintedAndBlended)
{
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
    color = {1, 0.5f, 0, 0.5f};
    vrkDrawImage(&corner, &material, &color, 64, 64, false, 0);
    EXPECT_TRUE(pixelIs(55, 55, {128, 64, 0, 255}, 2));
}

TEST_F(ImageTest, ShowsTheCurrentFrame)
{
    material.firstTexture->textureIDs[2] = 77;
    material.firstTexture->currentFrame = 2;
    GLRecorder gl;
    vrkDrawImage(&corner, &material, &plain, 64, 32, false, 0);
    vrkDrawImageWithoutYConversion(&corner, &material, &plain, 64, 32, false);
    material.firstTexture->currentFrame = 64; // no such frame
    vrkDrawImage(&corner, &material, &plain, 64, 32, false, 0);
    EXPECT_EQ(gl.only({"glBindTexture"}),
              (Calls{"glBindTexture(GL_TEXTURE_2D, 77)", "glBindTexture(GL_TEXTURE_2D, 77)",
                     "glBindTexture(GL_TEXTURE_2D, 0)"}));
}

TEST_F(ImageTest, KeepsTheProjectionAndLeavesAnIdentity)
{
    vrkInitMatrix();
    const std::vector<float> identityMatrix = matrix(GL_MODELVIEW_MATRIX);
    vrkSetMatrixType(VRK_PROJECTION);
    vrkScale(2, 3, 4); // no perspective of vrkViewport
    const std::vector<float> projection = matrix(GL_PROJECTION_MATRIX);
    Color colors[60 * 80] = {};
    Vertex2D coords[60 * 80] = {};
    const std::vector<std::function<void()>> drawings = {
        [&] { vrkDrawImage(&corner, &material, &plain, 64, 32, false, 5); },
        [&] { vrkDrawImageWithoutYConversion(&corner, &material, &plain, 64, 32, false); },
        [&] { vrkDrawGrid(colors, coords, 64, 64, &material); }};
    for (const auto& draw : drawings)
    {
        vrkSetMatrixType(VRK_MODELVIEW);
        vrkTranslate(1, 2, 3);
        draw();
        EXPECT_EQ(matrix(GL_PROJECTION_MATRIX), projection);
        EXPECT_EQ(matrix(GL_MODELVIEW_MATRIX), identityMatrix);
        EXPECT_EQ(matrix(GL_TEXTURE_MATRIX), identityMatrix);
        GLint depth = 0;
        glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
        EXPECT_EQ(depth, 1);
        glGetIntegerv(GL_PROJECTION_STACK_DEPTH, &depth);
        EXPECT_EQ(depth, 1);
    }
}

TEST_F(ImageTest, WithoutConversionThePositionIsTheMiddleFromTheBottom)
{
    setWindow(640, 480);
    corner = {100, 50, 3};
    GLRecorder gl;
    vrkDrawImageWithoutYConversion(&corner, &material, &plain, 64, 32, false);
    const Calls before = {"glIsEnabled(GL_DEPTH_TEST)", "glDisable(GL_DEPTH_TEST)",
                          "glIsEnabled(GL_FOG)",        "glIsEnabled(GL_BLEND)",
                          "glEnable(GL_BLEND)",         "glIsEnabled(GL_TEXTURE_2D)",
                          "glIsEnabled(GL_CULL_FACE)",  "glDisable(GL_CULL_FACE)"};
    const Calls after = {"glEnable(GL_DEPTH_TEST)", "glDisable(GL_FOG)", "glDisable(GL_BLEND)",
                         "glEnable(GL_TEXTURE_2D)", "glEnable(GL_CULL_FACE)"};
    EXPECT_EQ(gl.calls(), before + imageCalls("100, 50", {}, "1, 1, 1, 1", "32", "16") + after);
}

TEST_F(ImageTest, WithoutConversionItIsTexturedInAnyCase)
{
    vrkDisable(VRK_TEXTURE_2D);
    corner = {20, 40, 0};
    vrkDrawImageWithoutYConversion(&corner, &material, &plain, 32, 32, false);
    expectFields(4, 24, 32, {red, green, blue, white});
    EXPECT_EQ(drawnPixels(), 32 * 32);
    EXPECT_FALSE(vrkIsEnabled(VRK_TEXTURE_2D));
    vrkClear();
    corner = {0, 0, 0};
    vrkDrawImage(&corner, &material, &plain, 32, 32, false, 0);
    EXPECT_TRUE(pixelIs(4, 36, white)); // while the other goes without
}

class GridTest : public ImageTest
{
protected:
    static constexpr int columns = 80, rows = 60;

    Color colors[rows * columns] = {};
    Vertex2D coords[rows * columns] = {};
};

TEST_F(GridTest, SendsEachCellWithColourAndTextureAtItsCorners)
{
    setWindow(640, 480);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
        {
            colors[row * columns + column] = {static_cast<float>(row), static_cast<float>(column), 0, 1};
            coords[row * columns + column] = {static_cast<float>(column), static_cast<float>(row)};
        }
    GLRecorder gl;
    vrkDrawGrid(colors, coords, 158, 118, &material); // cells of 2 by 2
    const Calls calls = gl.calls();
    const Calls before =
        imageBegin +
        Calls{"glMatrixMode(GL_TEXTURE)", "glLoadIdentity()", "glMatrixMode(GL_PROJECTION)",
              "glPushMatrix()",           "glLoadIdentity()", "glOrtho(0, 640, 0, 480, 1e-07, 1)"} +
        identity + Calls{"glPushMatrix()",
                         "glTranslatef(0, 118, -0.1)",
                         "glBindTexture(GL_TEXTURE_2D, " + name + ")",
                         "glBegin(GL_QUADS)",
                         "glColor4f(0, 0, 0, 1)",
                         "glTexCoord2f(0, 0)",
                         "glVertex3f(0, -0, 0)",
                         "glColor4f(0, 1, 0, 1)",
                         "glTexCoord2f(1, 0)",
                         "glVertex3f(2, -0, 0)",
                         "glColor4f(1, 1, 0, 1)",
                         "glTexCoord2f(1, 1)",
                         "glVertex3f(2, -2, 0)",
                         "glColor4f(1, 0, 0, 1)",
                         "glTexCoord2f(0, 1)",
                         "glVertex3f(0, -2, 0)",
                         "glColor4f(0, 1, 0, 1)"};
    const Calls after = Calls{"glColor4f(59, 79, 0, 1)",
                              "glTexCoord2f(79, 59)",
                              "glVertex3f(158, -118, 0)",
                              "glColor4f(59, 78, 0, 1)",
                              "glTexCoord2f(78, 59)",
                              "glVertex3f(156, -118, 0)",
                              "glEnd()",
                              "glPopMatrix()",
                              "glEnable(GL_DEPTH_TEST)",
                              "glEnable(GL_FOG)",
                              "glEnable(GL_CULL_FACE)"} +
                        perspective + Calls{"glPopMatrix()"} + identity + imageEnd;
    ASSERT_GT(calls.size(), before.size() + after.size());
    const auto signedSize = [](const Calls& list) { return static_cast<std::ptrdiff_t>(list.size()); };
    EXPECT_EQ(Calls(calls.begin(), calls.begin() + signedSize(before)), before);
    EXPECT_EQ(Calls(calls.end() - signedSize(after), calls.end()), after);
    for (const char* function : {"glColor4f", "glTexCoord2f", "glVertex3f"})
        EXPECT_EQ(gl.count(function), 79 * 59 * 4);
}

TEST_F(GridTest, HangsFromTheTopLeftOfItsBox)
{
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
        {
            colors[row * columns + column] = column < 20 ? Color{1, 0, 0, 1}
                                             : row < 30  ? Color{0, 1, 0, 1}
                                                         : Color{0, 0, 1, 1};
            coords[row * columns + column] = {0.75f, 0.75f}; // the white field
        }
    vrkSetFog({0, 0, 0, 1}, 0.0f, 0.001f);
    vrkDrawGrid(colors, coords, 48, 32, &material);
    EXPECT_TRUE(pixelIs(2, 30, red, 2));
    EXPECT_TRUE(pixelIs(40, 29, green, 2));
    EXPECT_TRUE(pixelIs(40, 2, blue, 2));
    EXPECT_TRUE(pixelIs(49, 10, black));
    EXPECT_TRUE(pixelIs(10, 33, black));
    EXPECT_EQ(drawnPixels(), 48 * 32);
}

TEST_F(GridTest, SwitchesReturnToWhatTheyWere)
{
    for (const bool on : {false, true})
    {
        const std::vector<bool> state = {on, on, on, true, on, on};
        setSwitches(state);
        GLRecorder gl;
        vrkDrawGrid(colors, coords, 64, 64, &material);
        EXPECT_EQ(switchValues(), state);
        // Depth test, fog and culling come on in between, whatever they were.
        EXPECT_EQ(gl.countExact("glEnable(GL_FOG)"), on ? 2 : 1);
        EXPECT_EQ(gl.countExact("glEnable(GL_DEPTH_TEST)"), on ? 2 : 1);
        EXPECT_EQ(gl.countExact("glEnable(GL_CULL_FACE)"), on ? 2 : 1);
    }
}

TEST_F(GridTest, WithoutATextureNothingIsTouched)
{
    Material bare;
    GLRecorder gl;
    vrkDrawGrid(colors, coords, 64, 64, nullptr);
    vrkDrawGrid(colors, coords, 64, 64, &bare);
    vrkDrawGrid(nullptr, coords, 64, 64, &material);
    vrkDrawGrid(colors, nullptr, 64, 64, &material);
    EXPECT_EQ(gl.calls(), Calls{});
}

TEST_F(GridTest, OtherRasterizersLeaveOpenGLAndThePointsAlone)
{
    for (const int number : {1, 7, -1})
    {
        vrkSelectRasterizer(number);
        GLRecorder gl;
        Vertex2D a = {1, 2}, b = {3, 4};
        Vertex3D c = {1, 2, 3}, d = {4, 5, 6};
        vrkDrawLine(&a, &b, &color);
        vrkDrawLine(&c, &d, &color);
        vrkDraw3DLine(&c, &d, &color);
        vrkDrawBox(&a, &b, &color);
        vrkDrawFilledBox(&a, &b, &color);
        vrkDrawFilledBox(&a, &b, &color, &color, &color, &color);
        vrkDrawImage(&corner, &material, &plain, 64, 32, false, 0);
        vrkDrawImageWithoutYConversion(&corner, &material, &plain, 64, 32, false);
        vrkDrawGrid(colors, coords, 64, 64, &material);
        EXPECT_EQ(gl.calls(), Calls{}) << number;
        EXPECT_EQ(a.y, 2);
        EXPECT_EQ(b.y, 4);
        EXPECT_EQ(c.y, 2);
        EXPECT_EQ(d.y, 5);
    }
}

TEST_F(GridTest, MissingPointsAndColoursDrawNothing)
{
    Vertex2D a = {1, 2};
    Vertex3D c = {1, 2, 3};
    GLRecorder gl;
    vrkDrawLine(&a, nullptr, &color);
    vrkDrawLine(static_cast<Vertex2D*>(nullptr), &a, &color);
    vrkDrawLine(&a, &a, nullptr);
    vrkDrawLine(&c, nullptr, &color);
    vrkDrawLine(static_cast<Vertex3D*>(nullptr), &c, &color);
    vrkDrawLine(&c, &c, nullptr);
    vrkDraw3DLine(nullptr, &c, &color);
    vrkDraw3DLine(&c, nullptr, &color);
    vrkDraw3DLine(&c, &c, nullptr);
    vrkDrawBox(nullptr, &a, &color);
    vrkDrawBox(&a, nullptr, &color);
    vrkDrawBox(&a, &a, nullptr);
    vrkDrawFilledBox(nullptr, &a, &color);
    vrkDrawFilledBox(&a, nullptr, &color);
    vrkDrawFilledBox(&a, &a, nullptr);
    for (int missing = 0; missing < 6; ++missing)
    {
        Color* colorsGiven[4];
        for (int i = 0; i < 4; ++i)
            colorsGiven[i] = missing == i ? nullptr : &color;
        vrkDrawFilledBox(missing == 4 ? nullptr : &a, missing == 5 ? nullptr : &a, colorsGiven[0],
                         colorsGiven[1], colorsGiven[2], colorsGiven[3]);
    }
    vrkDrawImage(nullptr, &material, &plain, 64, 32, false, 0);
    vrkDrawImage(&corner, &material, nullptr, 64, 32, false, 0);
    vrkDrawImageWithoutYConversion(nullptr, &material, &plain, 64, 32, false);
    vrkDrawImageWithoutYConversion(&corner, &material, nullptr, 64, 32, false);
    EXPECT_EQ(gl.calls(), Calls{});
    EXPECT_EQ(a.y, 2);
}

// Sizes and places of any kind leave a state in which the next frame draws as ever.
TEST_F(GridTest, NumbersOfNoUseDoNoHarm)
{
    const Viewport whole = vrkViewport;
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    for (const float bad : {0.0f, -5.0f, 3e38f, infinite, -infinite, nothing})
    {
        vrkViewport.width = vrkViewport.height = vrkViewport.aspect = bad;
        Vertex2D a = {bad, bad}, b = {bad, 3};
        Vertex3D position = {bad, bad, bad};
        vrkDrawLine(&a, &b, &color);
        vrkDrawBox(&a, &b, &color);
        vrkDrawFilledBox(&a, &b, &color);
        vrkDrawImage(&position, &material, &plain, bad, bad, false, bad);
        vrkDrawImageWithoutYConversion(&position, &material, &plain, bad, bad, false);
        vrkDrawGrid(colors, coords, bad, bad, &material);
    }
    vrkViewport = whole;
    vrkClear();
    Vertex2D a = {0, 0}, b = {64, 64};
    vrkDrawFilledBox(&a, &b, &color);
    EXPECT_EQ(drawnPixels(), 64 * 64);
}
