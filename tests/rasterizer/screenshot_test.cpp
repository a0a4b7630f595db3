#include "vornik/rasterizer/screenshot.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <limits>

#include "platform/jpeg.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/tempfolder.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

using Calls = std::vector<std::string>;

// A surface of an odd size with red above and a blue corner at the bottom right; the current directory is an
// empty folder.
class ScreenShotTest : public EngineTest
{
protected:
    ScreenShotTest() : EngineTest(61, 37) {}

    void SetUp() override
    {
        EngineTest::SetUp();
        before = std::filesystem::current_path();
        std::filesystem::current_path(shots.root());
        glEnable(GL_SCISSOR_TEST);
        fill(0, 24, 61, 13, 1, 0, 0);
        fill(40, 0, 21, 12, 0, 0, 1);
        glDisable(GL_SCISSOR_TEST);
    }

    void TearDown() override
    {
        std::filesystem::current_path(before);
        EngineTest::TearDown();
    }

    static void fill(int x, int y, int w, int h, float r, float g, float b)
    {
        glScissor(x, y, w, h);
        glClearColor(r, g, b, 0);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    // What is in the folder, sorted.
    std::vector<std::string> files() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(shots.root()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    // The picture as a file ought to have it: three bytes a pixel, rows from the top.
    std::vector<uint8_t> rowsFromTop() const
    {
        const std::vector<Pixel> all = pixels();
        std::vector<uint8_t> rgb;
        for (int y = height - 1; y >= 0; --y)
            for (int x = 0; x < width; ++x)
            {
                const Pixel& p = all[static_cast<size_t>(y * width + x)];
                for (const int channel : {p.r, p.g, p.b})
                    rgb.push_back(static_cast<uint8_t>(channel));
            }
        return rgb;
    }

    bool isPicture(const std::string& name) const
    {
        const std::vector<uint8_t> wanted = jpegEncode(rowsFromTop().data(), width, height, 90);
        return shots.read(name) == std::string(wanted.begin(), wanted.end());
    }

    TempFolder shots;
    std::filesystem::path before;
};

TEST_F(ScreenShotTest, IsTheWindowAsAJpegOfQuality90)
{
    vrkScreenShot();
    EXPECT_EQ(files(), (std::vector<std::string>{"Shot0000.jpg"}));
    EXPECT_TRUE(isPicture("Shot0000.jpg"));

    const std::string bytes = shots.read("Shot0000.jpg");
    JpegImage image;
    ASSERT_TRUE(jpegDecode(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), false, &image));
    EXPECT_EQ(image.width, 61);
    EXPECT_EQ(image.height, 37);
    const auto at = [&](int x, int y)
    {
        const uint8_t* p = &image.pixels[static_cast<size_t>((y * 61 + x) * 3)];
        return Pixel{p[0], p[1], p[2], 255};
    };
    EXPECT_TRUE(isNear(at(5, 3), {255, 0, 0, 255}, 8));
    EXPECT_TRUE(isNear(at(55, 3), {255, 0, 0, 255}, 8));
    EXPECT_TRUE(isNear(at(55, 32), {0, 0, 255, 255}, 8));
    EXPECT_TRUE(isNear(at(5, 32), {0, 0, 0, 255}, 8));
    EXPECT_TRUE(isNear(at(5, 18), {0, 0, 0, 255}, 8));
    EXPECT_EQ(log(), "");
}

TEST_F(ScreenShotTest, TakesTheFirstFreeName)
{
    shots.write("Shot0000.jpg", std::string("old"));
    shots.write("Shot0002.jpg", std::string());
    vrkScreenShot();
    vrkScreenShot();
    EXPECT_EQ(files(),
              (std::vector<std::string>{"Shot0000.jpg", "Shot0001.jpg", "Shot0002.jpg", "Shot0003.jpg"}));
    EXPECT_EQ(shots.read("Shot0000.jpg"), "old");
    EXPECT_EQ(shots.read("Shot0002.jpg"), "");
    EXPECT_TRUE(isPicture("Shot0001.jpg"));
}

TEST_F(ScreenShotTest, NamesHaveFourDigitsAndEndAt999)
{
    const auto take = [this](int n)
    {
        char name[24];
        std::snprintf(name, sizeof name, "Shot%04d.jpg", n);
        shots.write(name, std::string("x"));
    };
    for (int n = 0; n < 42; ++n)
        take(n);
    vrkScreenShot();
    EXPECT_TRUE(isPicture("Shot0042.jpg"));
    for (int n = 43; n < 999; ++n)
        take(n);
    vrkScreenShot();
    EXPECT_TRUE(isPicture("Shot0999.jpg"));
    EXPECT_EQ(files().size(), 1000u);
    GLRecorder gl;
    vrkScreenShot();
    EXPECT_EQ(files().size(), 1000u);
    EXPECT_EQ(gl.calls(), Calls{});
    EXPECT_EQ(log(), "");
}

TEST_F(ScreenShotTest, ANameInOtherLettersIsTakenToo)
{
    shots.write("SHOT0000.JPG", std::string("old"));
    vrkScreenShot();
    EXPECT_EQ(files(), (std::vector<std::string>{"SHOT0000.JPG", "Shot0001.jpg"}));
}

TEST_F(ScreenShotTest, AFileThatCantBeWrittenIsNoMatter)
{
    std::filesystem::create_directory(
        shots.path("Shot0000.jpg")); // can't be opened, so the name counts as free
    vrkScreenShot();
    EXPECT_EQ(files(), (std::vector<std::string>{"Shot0000.jpg"}));
    EXPECT_EQ(log(), "");
}

TEST_F(ScreenShotTest, ReadsTheWholeNumbersOfTheViewport)
{
    vrkViewport.width = 30.9f;
    vrkViewport.height = 20.9f;
    GLRecorder gl;
    vrkScreenShot();
    EXPECT_EQ(gl.only({"glReadPixels"}),
              (Calls{"glReadPixels(0, 0, 30, 20, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"}));
    const std::string bytes = shots.read("Shot0000.jpg");
    JpegImage image;
    ASSERT_TRUE(jpegDecode(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), false, &image));
    EXPECT_EQ(image.width, 30);
    EXPECT_EQ(image.height, 20);
}

TEST_F(ScreenShotTest, ReadsRowsWithoutGapsWhateverTheHostsLayout)
{
    const std::vector<uint8_t> wanted = rowsFromTop();
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    glPixelStorei(GL_PACK_ROW_LENGTH, 200);
    glPixelStorei(GL_PACK_SKIP_ROWS, 7);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 9);
    vrkScreenShot();
    GLint kept = 0;
    glGetIntegerv(GL_PACK_ROW_LENGTH, &kept);
    EXPECT_EQ(kept, 200);
    const std::vector<uint8_t> stream = jpegEncode(wanted.data(), width, height, 90);
    EXPECT_EQ(shots.read("Shot0000.jpg"), std::string(stream.begin(), stream.end()));
}

TEST_F(ScreenShotTest, SizesThatNoPictureHasSaveNothing)
{
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    const float sizes[][2] = {{0, 37},        {61, 0},       {0.9f, 37},     {-61, -37},  {61, -37},
                              {nothing, 37},  {61, nothing}, {infinite, 37}, {61, 3e38f}, {1e9f, 1e9f},
                              {30000, 30000}, {2e9f, 1},     {100000, 1}};
    GLRecorder gl;
    for (const auto& [w, h] : sizes)
    {
        vrkViewport.width = w;
        vrkViewport.height = h;
        vrkScreenShot();
    }
    EXPECT_EQ(files(), std::vector<std::string>{});
    EXPECT_EQ(log(), "");
}

TEST_F(ScreenShotTest, Direct3DSavesABlackPictureAndASilentEngineNone)
{
    vrkSelectRasterizer(7);
    vrkScreenShot();
    EXPECT_EQ(files(), std::vector<std::string>{});

    vrkSelectedRasterizer = 1;
    GLRecorder gl;
    vrkScreenShot();
    EXPECT_EQ(gl.calls(), Calls{});
    const std::vector<uint8_t> black(61 * 37 * 3, 0);
    const std::vector<uint8_t> stream = jpegEncode(black.data(), width, height, 90);
    EXPECT_EQ(shots.read("Shot0000.jpg"), std::string(stream.begin(), stream.end()));
}

TEST_F(ScreenShotTest, TheBufferHasItsRowsFromTheBottom)
{
    char buffer[61 * 37 * 4 + 1];
    std::fill(std::begin(buffer), std::end(buffer), char(99));
    GLRecorder gl;
    vrkGetBuffer(buffer, 61, 37);
    EXPECT_EQ(gl.calls(), (Calls{"glReadPixels(0, 0, 61, 37, GL_RGBA, GL_UNSIGNED_BYTE, ptr)"}));
    const auto at = [&](int x, int y)
    {
        const uint8_t* p = reinterpret_cast<const uint8_t*>(buffer) + (y * 61 + x) * 4;
        return Pixel{p[0], p[1], p[2], 0};
    };
    EXPECT_EQ(at(5, 36), (Pixel{255, 0, 0, 0}));
    EXPECT_EQ(at(60, 0), (Pixel{0, 0, 255, 0}));
    EXPECT_EQ(at(5, 0), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(buffer[61 * 37 * 4], 99);
}

TEST_F(ScreenShotTest, OtherRasterizersAndNoBufferReadNothing)
{
    char buffer[16];
    std::fill(std::begin(buffer), std::end(buffer), char(99));
    GLRecorder gl;
    vrkGetBuffer(nullptr, 2, 2);
    for (const int number : {1, 7})
    {
        vrkSelectedRasterizer = number;
        vrkGetBuffer(buffer, 2, 2);
    }
    EXPECT_EQ(gl.calls(), Calls{});
    EXPECT_EQ(std::count(std::begin(buffer), std::end(buffer), char(99)), 16);
}
