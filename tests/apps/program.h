// Runs the built command-line program and looks at what it leaves behind.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/tempfolder.h"
#include "tests/support/writer3ds.h"

struct RunResult
{
    int status = -1;
    std::string out, err;
};

/// For the shell: vornik with arguments in a folder, as the sanitizers need it.
std::string commandLine(const std::string& folder, const std::vector<std::string>& arguments);

/// Number of lines of a text.
int lineCount(const std::string& text);

/// Colour with channels from 0 to 255.
struct Rgb
{
    int r = 0, g = 0, b = 0;
    bool operator==(const Rgb&) const = default;
};

/// A decoded picture, rows from the top.
struct Bitmap
{
    int width = 0, height = 0;
    std::vector<uint8_t> rgb;

    Rgb at(int x, int y) const;
    /// Pixels that differ clearly from a colour.
    int countUnlike(const Rgb& color) const;
    /// Pixels that a test holds for.
    template <typename Test>
    int count(Test test) const
    {
        int found = 0;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                found += test(at(x, y));
        return found;
    }
    /// The sum of all channels of all pixels.
    double light() const;
};

/// Each test works in a folder of its own, from which the program runs.
class ProgramTest : public ::testing::Test
{
protected:
    /// Runs vornik with arguments and standard input; standard error is a file.
    RunResult run(const std::vector<std::string>& arguments, const std::string& input = "") const;
    /// Runs vornik on a terminal. @param keys  pressed one after the other, each when a prompt "> " waits
    /// @return what appeared on it
    std::string runOnTerminal(const std::vector<std::string>& arguments,
                              const std::vector<std::string>& keys = {}) const;
    static bool hasTerminals();
    static bool hasPython();
    /// Writes a scene into the folder. @return its name
    std::string write(const std::string& name, const Scene3ds& scene) const;
    /// Renders a file and decodes the picture, 120 by 90 on black with one sample unless the options say
    /// otherwise. Fails the test when the program does.
    Bitmap render(const std::string& file, const std::vector<std::string>& options = {}) const;
    /// Decodes a PNG of the folder; empty if it is none.
    Bitmap readPng(const std::string& name) const;

    bool exists(const std::string& name) const;

    TempFolder folder;
};
