// What keys, mouse and console of the viewer do, as its window and its own words show it.

#include <cmath>
#include <cstdlib>
#include <set>

#include "tests/support/imagewriter.h"
#include "tests/view/viewerinwindow.h"

class ViewerKeys : public ViewerInWindow
{
protected:
    // Presses a key and waits for what the viewer says to it.
    void pressFor(const std::string& key, const std::string& answer)
    {
        press(key);
        EXPECT_TRUE(soon([&] { return message(0) == answer; })) << key << ": " << message(0);
    }

    // The line that a console command prints last.
    std::string lastConsoleLine()
    {
        std::string last;
        for (int line = 0; line < 7; ++line)
            if (const std::string text = consoleLine(line); !text.empty())
                last = text;
        return last;
    }

    void openRoom()
    {
        Scene3ds scene = room();
        scene.cameras = {frontCamera("Inside", 0, 2)};
        scene.cameras[0].eye.z = scene.cameras[0].target.z = 1;
        write("room.3ds", scene);
        openSmall({"room.3ds"});
    }

    // Waits until the eye comes to rest.
    std::vector<double> eyeAtRest()
    {
        std::vector<double> eye = askForEye(), before;
        EXPECT_TRUE(soon(
            [&]
            {
                before = eye;
                eye = askForEye();
                return eye == before;
            }));
        return eye;
    }

    void walkIn()
    {
        openRoom();
        press("3");
        EXPECT_TRUE(soon([this] { return figure(4) == "walk"; }));
        standing = eyeAtRest();
    }

    std::vector<double> standing;
};

TEST_F(ViewerKeys, FiguresTellOfSceneAndFrame)
{
    openBox();
    EXPECT_EQ(figure(0), "box.3ds");
    EXPECT_TRUE(soon(
        [this]
        {
            const std::string rate = figure(1);
            return std::atoi(rate.c_str()) > 0 && rate.find(" frames a second") != std::string::npos;
        }));
    EXPECT_EQ(figure(2), "12 faces, 24 vertices in 1 meshes");
    EXPECT_EQ(figure(3), "0 lights, 1 cameras");
    EXPECT_EQ(figure(4), "camera 1: Front");
    EXPECT_EQ(hint(), "F1 help  ` console");
    press("F2");
    EXPECT_TRUE(soon([this] { return figure(0) == ""; }));
    press("F2");
    EXPECT_TRUE(soon([this] { return figure(0) == "box.3ds"; }));
    press("2");
    EXPECT_TRUE(soon([this] { return figure(4) == "fly, speed 1"; }));
    wheel(true);
    EXPECT_TRUE(soon([this] { return figure(4) == "fly, speed 1.2"; }));
    quit();
}

TEST_F(ViewerKeys, EmptyWindowTellsWhatToDo)
{
    openSmall({});
    EXPECT_TRUE(soon(
        [this]
        {
            return textAt(grab(), 16, 300 - 16, {240, 242, 247})
                       .find("Drop a .3DS file on this window.  F1 help") == 0;
        }));
    pressFor("3", "window"); // the second line of what is too long for this one
    EXPECT_EQ(message(1), "there is no scene yet: drop a .3DS file on the");
    pressFor("c", "the scene has no cameras");
    quit();
}

TEST_F(ViewerKeys, FlatFacesHaveOneColourEach)
{
    Scene3ds scene = frontBox();
    Light3ds lamp;
    lamp.name = "Lamp";
    lamp.position = {-2, -1.5f, 2};
    lamp.color = {{1, 1, 1, COLOR_3DS_FLOAT}};
    scene.lights = {lamp};
    write("lit.3ds", scene);
    openSmall({"lit.3ds"});
    const auto colours = [this]
    {
        const Bitmap shown = grab();
        std::set<std::vector<int>> seen;
        for (int y = 110; y < 190; y += 4)
            for (int x = 160; x < 240; x += 4)
                seen.insert({shown.at(x, y).r, shown.at(x, y).g, shown.at(x, y).b});
        return seen.size();
    };
    EXPECT_TRUE(soon([&] { return colours() > 20; })) << colours();
    pressFor("F4", "flat faces: on");
    EXPECT_TRUE(soon([&] { return colours() <= 2; })) << colours();
    pressFor("F4", "flat faces: off");
    EXPECT_TRUE(soon([&] { return colours() > 20; }));
    quit();
}

TEST_F(ViewerKeys, ImagesCanBeLeftOut)
{
    Scene3ds scene = frontBox();
    Map3ds map;
    map.file = "GREEN.TGA";
    scene.materials[0].maps = {map};
    folder.write("GREEN.TGA", writeTga(Picture(8, 8, 0x20E020FF)));
    write("painted.3ds", scene);
    openSmall({"painted.3ds"});
    EXPECT_TRUE(soon([this] { return isGreen(pixel(200, 150)); }));
    pressFor("F5", "without images: on");
    EXPECT_TRUE(soon([this] { return !isGreen(pixel(200, 150)) && !isBlack(pixel(200, 150)); }));
    pressFor("F5", "without images: off");
    EXPECT_TRUE(soon([this] { return isGreen(pixel(200, 150)); }));
    quit();
}

TEST_F(ViewerKeys, FacesFromBehindCanBeShown)
{
    Scene3ds scene = frontBox();
    scene.meshes = {rectangle("Wall", {-2, 2, -2}, {2, 2, 2}, "+y")}; // looks away
    scene.meshes[0].groups = {{"red", {0, 1}}};
    write("away.3ds", scene);
    openSmall({"away.3ds"});
    EXPECT_TRUE(soon([this] { return figure(0) == "away.3ds"; }));
    EXPECT_TRUE(isBlack(pixel(200, 150)));
    pressFor("F6", "faces from behind: on");
    EXPECT_TRUE(soon([this] { return !isBlack(pixel(200, 150)); }));
    pressFor("F6", "faces from behind: off");
    EXPECT_TRUE(soon([this] { return isBlack(pixel(200, 150)); }));
    quit();
}

TEST_F(ViewerKeys, TransparencyGoesAround)
{
    openBox();
    pressFor("F8", "transparent faces: mesh by mesh");
    pressFor("F8", "transparent faces: left out");
    pressFor("F8", "transparent faces: sorted");
    quit();
}

TEST_F(ViewerKeys, CamerasAreSwitchedBothWaysAndLeft)
{
    Scene3ds scene = frontBox();
    scene.cameras.push_back(frontCamera("Far", 1, 12));
    scene.cameras.push_back(frontCamera("Aside", 9, 9));
    write("box.3ds", scene);
    openSmall({"box.3ds"});
    const auto shows = [this](const std::string& line) { return soon([&] { return figure(4) == line; }); };
    EXPECT_TRUE(shows("camera 1: Front"));
    press("c");
    EXPECT_TRUE(shows("camera 2: Far"));
    press("x");
    EXPECT_TRUE(shows("camera 1: Front"));
    press("x");
    EXPECT_TRUE(shows("camera 3: Aside"));
    press("v");
    EXPECT_TRUE(shows("orbit"));
    EXPECT_NEAR(askForEye()[0], 9, 1e-3); // where the camera stood
    quit();
}

TEST_F(ViewerKeys, RightButtonShiftsAndKeysOrbit)
{
    openBox();
    press("v");
    drag(80, 0, 3);
    EXPECT_TRUE(soon([this] { return askForEye()[0] < -0.3; })); // the scene follows the mouse
    EXPECT_NEAR(askForEye()[1], -6, 0.05);
    hold("a", true);
    EXPECT_TRUE(soon([this] { return askForEye()[1] > -5; }));
    hold("a", false);
    quit();
}

TEST_F(ViewerKeys, WalkerJumpsAndFallsBack)
{
    walkIn();
    hold("space", true);
    EXPECT_TRUE(soon([this] { return askForEye()[2] > standing[2] * 1.2; }));
    hold("space", false);
    EXPECT_TRUE(soon([this] { return std::fabs(askForEye()[2] - standing[2]) < 1e-3; }));
    quit();
}

TEST_F(ViewerKeys, WalkerSlidesAlongAWall)
{
    walkIn();
    // Half a right angle to the right, at three and a third pixels a degree: into the wall at x = 5, and the
    // rest of the way to the corner along it.
    drag(152, 0);
    hold("w", true);
    hold("Shift_L", true);
    EXPECT_TRUE(soon(
        [this]
        {
            const std::vector<double> eye = askForEye();
            return eye[0] > 4.7 && eye[1] > 4.7;
        }));
    hold("Shift_L", false);
    hold("w", false);
    const std::vector<double> eye = askForEye();
    EXPECT_LT(eye[0], 5);
    EXPECT_LT(eye[1], 5);
    quit();
}

TEST_F(ViewerKeys, WalkerGrowsAndShrinks)
{
    walkIn();
    const auto becomes = [this](double part)
    { return soon([&] { return std::fabs(askForEye()[2] - part * standing[2]) < 1e-3; }); };
    press("minus");
    EXPECT_TRUE(becomes(0.8));
    press("equal");
    EXPECT_TRUE(becomes(1));
    press("equal");
    EXPECT_TRUE(becomes(1.25));
    quit();
}

TEST_F(ViewerKeys, HomeSeesTheSceneAndThenItsSurroundings)
{
    Scene3ds scene;
    scene.meshes = {floorGrid("floor", 0, -10, 10, 12),
                    rectangle("sky", {-900, -900, 500}, {900, 900, 500}, "-z")};
    write("sky.3ds", scene);
    openSmall({"sky.3ds"});
    const auto distance = [this]
    {
        const std::vector<double> eye = askForEye();
        return std::hypot(eye[0], eye[1], eye[2]);
    };
    EXPECT_LT(distance(), 60);
    press("Home");
    EXPECT_TRUE(soon([&] { return distance() > 900; }));
    press("Home");
    EXPECT_TRUE(soon([&] { return distance() < 60; }));
    quit();
}

// A camera that goes ten units in 60 frames.
TEST_F(ViewerKeys, AnimationIsSteppedRewoundAndPaced)
{
    Scene3ds scene = frontBox();
    Node3ds eye;
    eye.kind = NODE_3DS_CAMERA;
    eye.id = 0;
    eye.name = "Front";
    eye.positions = {{0, {0, -6, 0}, {}}, {60, {0, -6, 60}, {}}};
    scene.nodes = {eye};
    scene.segment = {{0, 60}};
    write("flight.3ds", scene);
    openSmall({"flight.3ds"});
    const auto frameFigure = [this](const std::string& line)
    { return soon([&] { return figure(5) == line; }); };
    press("p");
    EXPECT_TRUE(soon([this] { return figure(5).find(", paused, pace 1") != std::string::npos; }));
    press("BackSpace");
    EXPECT_TRUE(frameFigure("frame 0 of 60, paused, pace 1"));
    EXPECT_NEAR(askForEye()[2], 0, 1e-3);
    press("period");
    EXPECT_TRUE(frameFigure("frame 1 of 60, paused, pace 1"));
    EXPECT_NEAR(askForEye()[2], 1, 1e-2);
    press("comma");
    EXPECT_TRUE(frameFigure("frame 0 of 60, paused, pace 1"));
    press("comma");
    EXPECT_TRUE(frameFigure("frame 59 of 60, paused, pace 1"));
    for (const char* pace : {"0.5", "0.25", "0.125", "0.0625"})
    {
        press("bracketleft");
        EXPECT_TRUE(frameFigure(std::string("frame 59 of 60, paused, pace ") + pace));
    }
    press("bracketright");
    EXPECT_TRUE(frameFigure("frame 59 of 60, paused, pace 0.125"));
    press("BackSpace");
    press("p");
    EXPECT_TRUE(soon([this] { return figure(5).find("of 60, playing, pace 0.125") != std::string::npos; }));
    EXPECT_TRUE(soon([this] { return askForEye()[2] > 2; }));
    quit();
}

TEST_F(ViewerKeys, ConsoleScrollsByKeysAndWheel)
{
    openBox();
    openConsole();
    type("help\nsceneinfo\nefunclist\n");
    EXPECT_TRUE(soon([this] { return consoleLine(5) == "    Int CULL(Int)"; })) << consoleLine(5);
    press("Page_Up");
    EXPECT_TRUE(soon([this] { return consoleLine(5) != "    Int CULL(Int)"; }));
    const std::string paged = consoleLine(5);
    wheel(true);
    EXPECT_TRUE(soon([&] { return consoleLine(5) != paged; }));
    wheel(false);
    EXPECT_TRUE(soon([&] { return consoleLine(5) == paged; }));
    press("Page_Down");
    EXPECT_TRUE(soon([this] { return consoleLine(5) == "    Int CULL(Int)"; }));
    press("Escape");
    quit();
}

TEST_F(ViewerKeys, ConsoleLineIsEditedByCursorKeys)
{
    openBox();
    openConsole();
    type("set gravit 5"); // the Y comes later
    for (int i = 0; i < 2; ++i)
        press("Left");
    type("y");
    press("Home");
    type("xx");
    press("Delete");
    press("Left");
    press("BackSpace");
    press("End");
    type("0\n");
    // Home put two x before the S; one and the S went.
    EXPECT_TRUE(
        soon([this] { return lastConsoleLine() == "VRK Console parser failed to parse commandline!"; }))
        << lastConsoleLine();
    press("Up");
    press("Home");
    press("Delete");
    type("s\n");
    EXPECT_TRUE(soon([this] { return lastConsoleLine() == "Variable GRAVITY set to 50"; }))
        << lastConsoleLine();
    press("Escape");
    quit();
}

TEST_F(ViewerKeys, ConsoleCompletesCommandsAndNames)
{
    openBox();
    openConsole();
    type("scenei");
    press("Tab");
    press("Return");
    EXPECT_TRUE(soon([this] { return lastConsoleLine() == "Total vertices: 24 Total faces: 12"; }));
    type("get grav");
    press("Tab");
    press("Return");
    EXPECT_TRUE(soon([this] { return lastConsoleLine().find("Variable GRAVITY = ") == 0; }))
        << lastConsoleLine();
    type("load3ds bo");
    press("Tab");
    type(".\n");
    EXPECT_TRUE(soon([this] { return lastConsoleLine() == "Start processing..."; })) << lastConsoleLine();
    press("Escape");
    quit();
}

TEST_F(ViewerKeys, ConsoleReachesTheAnimation)
{
    Scene3ds scene = frontBox();
    Node3ds node;
    node.id = 0;
    node.name = "Box";
    node.positions = {{0, {0, 0, 0}, {}}, {60, {1, 0, 0}, {}}};
    scene.nodes = {node};
    scene.segment = {{0, 60}};
    write("box.3ds", scene);
    openSmall({"box.3ds"});
    press("p");
    EXPECT_TRUE(soon([this] { return figure(5).find("paused") != std::string::npos; }));
    openConsole();
    type("set frame 42\neval frames\n");
    EXPECT_TRUE(
        soon([this] { return lastConsoleLine() == "Function (FRAMES) returned a value (60.000000)"; }))
        << lastConsoleLine();
    press("Escape");
    EXPECT_TRUE(soon([this] { return figure(5) == "frame 42 of 60, paused, pace 1"; })) << figure(5);
    quit();
}

TEST_F(ViewerKeys, BrokenFileIsToldInWordsOfHostAndEngine)
{
    openBox();
    folder.write("broken.3ds", std::string("this is no scene"));
    drop(folder.path("broken.3ds"));
    EXPECT_TRUE(soon([this] { return message(0) == "encountered (14)"; })) << message(0);
    EXPECT_EQ(message(1), "engine: 3DS file expected but something else");
    openConsole();
    EXPECT_TRUE(soon([this] { return lastConsoleLine() == "ountered (14)"; }))
        << lastConsoleLine(); // wrapped
    press("Escape");
    drop(folder.path("none.3ds"));
    EXPECT_TRUE(soon([this] { return message(0) == "error) (13)"; })) << message(0);
    EXPECT_EQ(message(1), "engine: Cannot open .3DS file (possible disk");
    EXPECT_TRUE(isRed(pixel(200, 150)));
    quit();
}

TEST_F(ViewerKeys, WindowIsNoLargerThanTheScreen)
{
    write("box.3ds", frontBox());
    open({"box.3ds", "--size", "16000x8000"});
    const Bitmap shown = grab();
    EXPECT_LE(shown.width, screenWidth());
    EXPECT_LE(shown.height, screenHeight());
    EXPECT_TRUE(shown.width == screenWidth() || shown.height == screenHeight());
    EXPECT_NEAR(shown.width, 2 * shown.height, 2);
    EXPECT_TRUE(isOnScreen());
    quit();
}

TEST_F(ViewerKeys, ControlAndQCloseFromTheConsole)
{
    openBox();
    openConsole();
    hold("Control_L", true);
    press("q");
    hold("Control_L", false);
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}
