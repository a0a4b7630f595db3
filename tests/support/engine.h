// The engine, started off-screen, for tests that draw or talk to OpenGL.
#pragma once

#include <gtest/gtest.h>

#include <iosfwd>
#include <string>
#include <vector>

#include "tests/support/tempfolder.h"
#include "vornik/platform.h"

/// Channels from 0 to 255.
struct Pixel
{
    int r, g, b, a;
    bool operator==(const Pixel&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Pixel& pixel);

/// Red, green and blue no further than tolerance apart each; alpha is not compared.
bool isNear(const Pixel& a, const Pixel& b, int tolerance);

/// Starts every test with a cleared off-screen surface of 64 by 64 pixels, OpenGL's state as initOpenGL()
/// leaves it in a fresh context, and the log in a file of its own. Surface and context are made once and
/// serve as long as no test starts another.
class EngineTest : public ::testing::Test
{
protected:
    explicit EngineTest(int width = 64, int height = 64);
    ~EngineTest() override;
    void SetUp() override;
    void TearDown() override;

    /// Another surface, which stays to the end of the process.
    static VRKWindow surface(int width, int height);

    /// What was logged since the test began.
    std::string log() const;
    /// Did any line of the log read so?
    bool logged(const std::string& line) const;

    /// Counted from the bottom left. Not heard by recorders, like the other readers.
    Pixel pixel(int x, int y) const;
    /// The whole surface, row by row from the bottom.
    std::vector<Pixel> pixels() const;
    /// How many pixels differ from the cleared black in red, green or blue.
    int drawnPixels() const;
    /// Depth at a pixel: 0 near, 1 far.
    float depth(int x, int y) const;
    /// Compares a pixel's red, green and blue: EXPECT_TRUE(pixelIs(3, 4, {255, 0, 0, 255}, 2)).
    ::testing::AssertionResult pixelIs(int x, int y, const Pixel& expected, int tolerance = 0) const;

    /// Writes the surface as a PPM file, for a look while a test is written.
    void writePicture(const std::string& path) const;

    const int width, height;
    TempFolder folder;
};
