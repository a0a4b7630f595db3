// What the tests of the overlay share.
#pragma once

#include <GL/gl.h>

#include <string>
#include <vector>

#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "vornik/rasterizer/startup.h"

using Calls = std::vector<std::string>;

inline const Pixel black = {0, 0, 0, 0};
inline const Pixel red = {255, 0, 0, 255};
inline const Pixel green = {0, 255, 0, 255};
inline const Pixel blue = {0, 0, 255, 255};
inline const Pixel white = {255, 255, 255, 255};

inline Calls operator+(Calls a, const Calls& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The library's switches that the overlay has to do with.
inline const GLenum switches[] = {GL_CULL_FACE,  GL_FOG,   GL_DEPTH_TEST,
                                  GL_TEXTURE_2D, GL_BLEND, GL_ALPHA_TEST};

inline std::vector<bool> switchValues()
{
    const GLRecorder::Pause unheard;
    std::vector<bool> values;
    for (const GLenum name : switches)
        values.push_back(glIsEnabled(name));
    return values;
}

inline void setSwitches(const std::vector<bool>& values)
{
    const GLRecorder::Pause unheard;
    for (size_t i = 0; i < values.size(); ++i)
        if (values[i])
            glEnable(switches[i]);
        else
            glDisable(switches[i]);
}

inline std::vector<float> matrix(GLenum name)
{
    const GLRecorder::Pause unheard;
    std::vector<float> values(16);
    glGetFloatv(name, values.data());
    return values;
}

class OverlayTest : public EngineTest
{
protected:
    // Window coordinates of another size than the surface.
    static void setWindow(float windowWidth, float windowHeight)
    {
        vrkViewport.width = windowWidth;
        vrkViewport.height = windowHeight;
    }

    Color color = {1, 0, 0, 1};
};

// The ends of every drawing.
inline const Calls perspective = {"glMatrixMode(GL_PROJECTION)", "glLoadIdentity()",
                                  "gluPerspective(90, 1, 0.01, 100000)"};
inline const Calls identity = {"glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()"};
