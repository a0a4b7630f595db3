#pragma once

#include <GL/gl.h>

#include <string>
#include <vector>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/rasterizer/font.h"
#include "vornik/rasterizer/startup.h"

using Picture = std::vector<std::string>;

/// Text on a surface of 128 by 32 pixels. After the start bitmaps are white, so that white text needs nothing
/// more than its documented calls.
class FontTest : public EngineTest
{
protected:
    FontTest() : EngineTest(128, 32) {}

    void SetUp() override
    {
        EngineTest::SetUp();
        ASSERT_EQ(vrkInitFont(), 0);
    }

    void TearDown() override
    {
        glDeleteLists(1, 1000);
        vrkFontBase = 0;
        EngineTest::TearDown();
    }

    // A part of the window, rows from the top, drawn pixels as '#'.
    Picture picture(int left, int top, int w, int h) const
    {
        const std::vector<Pixel> all = pixels();
        Picture rows;
        for (int y = top; y < top + h; ++y)
        {
            rows.emplace_back();
            for (int x = left; x < left + w; ++x)
            {
                const Pixel& p = all[static_cast<size_t>((height - 1 - y) * width + x)];
                rows.back() += p.r || p.g || p.b ? '#' : '.';
            }
        }
        return rows;
    }

    Picture whole() const { return picture(0, 0, width, height); }

    // What a text alone looks like, with its base line under row 20.
    Picture drawn(const std::string& text)
    {
        vrkClear();
        vrkWrite(0, 20, &white, "%s", text.c_str());
        return whole();
    }

    Color white = {1, 1, 1, 1};
    Color orange = {1, 0.5f, 0, 0};
};

inline bool isList(int name)
{
    const GLRecorder::Pause unheard;
    return glIsList(static_cast<GLuint>(name));
}
