// The viewer in a small window on black, and what there is to see in it.
#pragma once

#include <algorithm>

#include "tests/view/rooms.h"
#include "tests/view/screentext.h"
#include "tests/view/viewerwindow.h"

inline bool isRed(const Rgb& p)
{
    return p.r > 40 && p.r > 2 * p.g && p.r > 2 * p.b;
}

inline bool isGreen(const Rgb& p)
{
    return p.g > 40 && p.g > 2 * p.r && p.g > 2 * p.b;
}

inline bool isBlack(const Rgb& p)
{
    return p == Rgb{0, 0, 0};
}

// The colour of messages and of the console's edge.
inline bool isAmber(const Rgb& p)
{
    return p.r > 200 && p.g > 150 && p.g < 220 && p.b < 130;
}

// The colour of important text.
inline bool isBright(const Rgb& p)
{
    return p.r > 220 && p.g > 220 && p.b > 220;
}

// Pixels of a part of a picture that a test holds for.
template <typename Test>
int countIn(const Bitmap& picture, int left, int top, int right, int bottom, Test test)
{
    int found = 0;
    for (int y = std::max(top, 0); y < std::min(bottom, picture.height); ++y)
        for (int x = std::max(left, 0); x < std::min(right, picture.width); ++x)
            found += test(picture.at(x, y));
    return found;
}

class ViewerInWindow : public ViewerTest
{
protected:
    // 400 by 300 on black.
    void openSmall(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.end(), {"--size", "400x300", "--background", "black"});
        open(arguments);
    }

    void openBox()
    {
        write("box.3ds", frontBox());
        openSmall({"box.3ds"});
        ASSERT_TRUE(soon([this] { return isRed(pixel(200, 150)); })) << streams.read("err");
    }

    // What is written on the screen.
    std::string figure(int line) { return textAt(grab(), 16, 24 + 16 * line, line == 0 ? bright : soft); }
    std::string hint() { return textOfLine(16, bright); }
    /// @param line  0 is the newest
    std::string message(int line) { return textOfLine(52 + 16 * line, amber); }
    /// @param line  from the top; the last one stands over the line that is typed
    std::string consoleLine(int line) { return textAt(grab(), 8, 20 + 16 * line, soft); }

    bool showsConsole() { return countIn(grab(), 0, 130, 400, 190, isAmber) > 500; } // its edge

    void openConsole()
    {
        press("grave");
        ASSERT_TRUE(soon([this] { return showsConsole(); }));
    }

    // A red box straight in front of a camera.
    static Scene3ds frontBox()
    {
        Scene3ds scene = boxScene();
        scene.cameras = {frontCamera("Front", 0, 6)};
        return scene;
    }

    static Scene3ds greenBox()
    {
        Scene3ds scene = frontBox();
        scene.materials = {plainMaterial("red", 0.1f, 0.8f, 0.1f)};
        return scene;
    }

private:
    static constexpr Rgb bright = {240, 242, 247}, soft = {168, 184, 204}, amber = {255, 194, 89};

    std::string textOfLine(int aboveTheEdge, const Rgb& ink)
    {
        const Bitmap shown = grab();
        return textAt(shown, 16, shown.height - aboveTheEdge, ink);
    }
};
