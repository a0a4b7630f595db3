// The viewer in a window, as a user meets it.

#include "tests/view/rooms.h"
#include "tests/view/viewerinwindow.h"

#include <cmath>
#include <cstdlib>

TEST_F(ViewerInWindow, ShowsTheSceneTellsOfHelpAndEndsOnEscape)
{
    openBox();
    const Bitmap shown = grab();
    EXPECT_EQ(shown.width, 400);
    EXPECT_EQ(shown.height, 300);
    EXPECT_TRUE(isBlack(shown.at(390, 150)));
    EXPECT_GT(countIn(shown, 0, 270, 200, 300, isBright), 20); // the hint
    EXPECT_GT(countIn(shown, 0, 0, 200, 40, isBright), 20);    // the figures
    quit();
}

TEST_F(ViewerInWindow, HelpCoversThePictureAndGoes)
{
    openBox();
    const auto shows = [this] { return countIn(grab(), 0, 0, 400, 300, isAmber) > 60; };
    EXPECT_FALSE(shows());
    press("F1");
    EXPECT_TRUE(soon(shows));
    press("F1");
    EXPECT_TRUE(soon([&] { return !shows(); }));
    // Escape closes the help before it closes the viewer.
    press("F1");
    EXPECT_TRUE(soon(shows));
    press("Escape");
    EXPECT_TRUE(soon([&] { return !shows(); }));
    quit();
}

TEST_F(ViewerInWindow, EdgesOnlyLeaveTheFacesEmpty)
{
    openBox();
    press("F3");
    EXPECT_TRUE(soon([this] { return isBlack(pixel(190, 130)); }));
    EXPECT_GT(grab().count(isRed), 20);
    press("F3");
    EXPECT_TRUE(soon([this] { return isRed(pixel(190, 130)); }));
    quit();
}

TEST_F(ViewerInWindow, EveryStyleShowsTheFaces)
{
    openBox();
    const auto told = [this] { return countIn(grab(), 0, 150, 300, 275, isAmber); };
    // One on top of the other: flat, without images, from behind, skipped outside, transparent, lists.
    for (const char* key : {"F4", "F5", "F6", "F7", "F8", "F9", "F4", "F5"})
    {
        const int before = told();
        press(key);
        EXPECT_TRUE(soon([&] { return told() != before; })) << key; // says what it did
        EXPECT_FALSE(isBlack(pixel(230, 150))) << key;
    }
    quit();
}

TEST_F(ViewerInWindow, TransparentFacesCanBeLeftOut)
{
    Scene3ds scene = frontBox();
    scene.materials.push_back(plainMaterial("glass", 0.1f, 0.8f, 0.1f));
    scene.materials.back().transparency = Percent3ds{10};
    scene.meshes.push_back(wall("Glass", -3, -2, 2, "glass"));
    write("glass.3ds", scene);
    openSmall({"glass.3ds"});
    ASSERT_TRUE(soon([this] { return isGreen(pixel(230, 150)); }));
    EXPECT_TRUE(soon(
        [this]
        {
            press("F8");
            return isRed(pixel(230, 150));
        }));
    EXPECT_TRUE(soon(
        [this]
        {
            press("F8");
            return isGreen(pixel(230, 150));
        }));
    quit();
}

TEST_F(ViewerInWindow, LeavesOfTheOctreeAreDrawnAround)
{
    openBox();
    EXPECT_EQ(countIn(grab(), 100, 60, 390, 235, isAmber), 0);
    press("F10");
    EXPECT_TRUE(soon([this] { return countIn(grab(), 100, 60, 390, 235, isAmber) > 50; }));
    quit();
}

TEST_F(ViewerInWindow, OptionsSetTheFirstPicture)
{
    write("box.3ds", frontBox());
    open({"box.3ds", "--size", "320x200", "--background", "00c000", "--wire"});
    EXPECT_TRUE(soon([this] { return pixel(300, 100) == Rgb{0, 192, 0}; }));
    EXPECT_EQ(grab().width, 320);
    EXPECT_EQ(pixel(160, 130), (Rgb{0, 192, 0})); // between the edges
    quit();
}

TEST_F(ViewerInWindow, ConsoleObeysAndEnds)
{
    openBox();
    openConsole();
    type("eval wire 1\n");
    EXPECT_TRUE(soon([this] { return !isRed(pixel(190, 185)); }));
    type("eval wire 0\n");
    EXPECT_TRUE(soon([this] { return isRed(pixel(190, 185)); }));
    press("Escape");
    EXPECT_TRUE(soon([&] { return !showsConsole(); }));
    openConsole();
    type("exit\n");
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}

TEST_F(ViewerInWindow, ConsoleCompletesAndRecalls)
{
    openBox();
    openConsole();
    type("ev");
    press("Tab"); // EVA, then with the L one word is left
    type("l");
    press("Tab");
    type("whe");
    press("Tab");
    press("Return");
    EXPECT_TRUE(soon([this] { return output().size() == 1; }));
    press("Up");
    press("Return");
    EXPECT_TRUE(soon([this] { return output().size() == 2; }));
    press("Escape");
    quit();
}

TEST_F(ViewerInWindow, ConsoleLoadsAndClearsTheScene)
{
    openBox();
    write("green.3ds", greenBox());
    openConsole();
    type("load3ds green.3ds .\n");
    EXPECT_TRUE(soon([this] { return grab().count(isGreen) > 200 && grab().count(isRed) == 0; }));
    type("clear3ds\n");
    EXPECT_TRUE(soon([this] { return grab().count(isGreen) == 0; }));
    press("Escape");
    quit();
}

TEST_F(ViewerInWindow, ConsoleChoosesTheCamera)
{
    Scene3ds scene = frontBox();
    scene.cameras.push_back(frontCamera("Aside", 50, 6)); // sees nothing
    write("box.3ds", scene);
    openSmall({"box.3ds"});
    ASSERT_TRUE(soon([this] { return isRed(pixel(200, 180)); }));
    openConsole();
    type("activecamera 1\n");
    EXPECT_TRUE(soon([this] { return grab().count(isRed) == 0; }));
    type("activecamera 0\n");
    EXPECT_TRUE(soon([this] { return grab().count(isRed) > 200; }));
    press("Escape");
    press("c");
    EXPECT_TRUE(soon([this] { return grab().count(isRed) == 0; }));
    press("c");
    EXPECT_TRUE(soon([this] { return isRed(pixel(200, 150)); }));
    quit();
}

TEST_F(ViewerInWindow, ScreenShotIsNumbered)
{
    openBox();
    press("F12");
    EXPECT_TRUE(soon([this] { return exists("Shot0000.jpg"); }));
    EXPECT_TRUE(soon([this] { return countIn(grab(), 0, 240, 300, 275, isAmber) > 20; })); // says so
    press("F12");
    EXPECT_TRUE(soon([this] { return exists("Shot0001.jpg"); }));
    quit();
    const std::string shot = folder.read("Shot0001.jpg");
    ASSERT_GT(shot.size(), 500u);
    EXPECT_EQ(shot.substr(0, 2), "\xFF\xD8");
    const std::string size = {'\x01', '\x2C', '\x01', '\x90'}; // 300 rows of 400
    EXPECT_NE(shot.find(size), std::string::npos);
}

TEST_F(ViewerInWindow, WalkFallsToTheFloorAndStopsAtTheWall)
{
    Scene3ds scene = room();
    scene.cameras = {frontCamera("Inside", 0, 2)};
    scene.cameras[0].eye.z = scene.cameras[0].target.z = 2.5f;
    write("room.3ds", scene);
    openSmall({"room.3ds"});
    EXPECT_NEAR(askForEye()[2], 2.5, 0.01);
    press("3");
    double height = 0;
    EXPECT_TRUE(soon(
        [&]
        {
            const double before = height;
            height = askForEye()[2];
            return height < 1.0 && height == before;
        }));
    EXPECT_NEAR(height, 0.35, 0.15);

    hold("w", true);
    hold("Shift_L", true);
    double reached = -2;
    EXPECT_TRUE(soon(
        [&]
        {
            const double before = reached;
            reached = askForEye()[1];
            return reached > 4.0 && std::fabs(reached - before) < 1e-6;
        }));
    hold("Shift_L", false);
    hold("w", false);
    EXPECT_NEAR(reached, 5.0 - height / 4, 0.05);
    EXPECT_NEAR(askForEye()[2], height, 1e-3);
    quit();
}

TEST_F(ViewerInWindow, MouseOrbitsAndZooms)
{
    openBox();
    EXPECT_NEAR(askForEye()[1], -6, 0.01);
    drag(80, 0);
    double x = 0;
    EXPECT_TRUE(soon([&] { return std::fabs(x = askForEye()[0]) > 1.0; }));
    std::vector<double> eye = askForEye();
    EXPECT_NEAR(std::hypot(eye[0], eye[1]), 6, 0.05); // around the box
    wheel(true);
    EXPECT_TRUE(soon(
        [&]
        {
            eye = askForEye();
            return std::hypot(eye[0], eye[1]) < 5.5;
        }));
    press("Home");
    EXPECT_TRUE(soon([&] { return askForEye()[2] > 0.5; })); // from above, as all is framed
    quit();
}

TEST_F(ViewerInWindow, FliesByKeys)
{
    openBox();
    press("2");
    hold("s", true);
    EXPECT_TRUE(soon([&] { return askForEye()[1] < -7; }));
    hold("s", false);
    const double z = askForEye()[2];
    hold("e", true);
    EXPECT_TRUE(soon([&] { return askForEye()[2] > z + 0.5; }));
    hold("e", false);
    quit();
}

TEST_F(ViewerInWindow, PictureFollowsTheSizeOfTheWindow)
{
    openBox();
    resize(600, 500);
    EXPECT_TRUE(soon(
        [this]
        {
            const Bitmap shown = grab();
            return shown.width == 600 && isRed(shown.at(300, 250)) && isBlack(shown.at(590, 250)) &&
                   countIn(shown, 0, 470, 200, 500, isBright) > 20;
        }));
    // As wide as high, whatever the window.
    const Bitmap shown = grab();
    const int wide = countIn(shown, 0, 250, 600, 251, isRed), high = countIn(shown, 300, 0, 301, 500, isRed);
    EXPECT_NEAR(wide, high, 4);
    resize(300, 200);
    EXPECT_TRUE(soon([this] { return grab().width == 300 && isRed(pixel(150, 100)); }));
    quit();
}

TEST_F(ViewerInWindow, FillsTheScreenAndComesBack)
{
    openBox();
    press("F11");
    EXPECT_TRUE(soon(
        [this]
        {
            const Bitmap shown = grab();
            return shown.width >= 640 && isRed(shown.at(shown.width / 2, shown.height / 2));
        }));
    press("F11");
    EXPECT_TRUE(soon([this] { return grab().width == 400 && isRed(pixel(200, 150)); }));
    quit();
}

TEST_F(ViewerInWindow, AnimationPlaysAndPauses)
{
    Scene3ds scene = frontBox();
    scene.cameras = {frontCamera("Front", 0, 30)};
    Node3ds node;
    node.id = 0;
    node.name = "Box";
    node.positions = {{0, {-9, 0, 0}, {}}, {60, {9, 0, 0}, {}}};
    scene.nodes = {node};
    scene.segment = {{0, 60}};
    write("box.3ds", scene);
    openSmall({"box.3ds"});
    // The column where the box is.
    const auto place = [this]
    {
        const Bitmap shown = grab();
        for (int x = 0; x < shown.width; ++x)
            if (isRed(shown.at(x, 150)))
                return x;
        return -1;
    };
    ASSERT_TRUE(soon([&] { return place() >= 0; }));
    const int first = place();
    EXPECT_TRUE(soon([&] { return std::abs(place() - first) > 10; }));
    press("p");
    int before = -1;
    EXPECT_TRUE(soon([&] { return place() == std::exchange(before, place()); }));
    press("BackSpace");
    EXPECT_TRUE(soon([&] { return place() != before; })); // at the start
    before = place();
    for (int i = 0; i < 10; ++i)
        press("period");
    EXPECT_TRUE(soon([&] { return place() > before + 5; }));
    press("p");
    before = place();
    EXPECT_TRUE(soon([&] { return std::abs(place() - before) > 10; }));
    quit();
}

TEST_F(ViewerInWindow, EmptyWindowTakesWhatIsDropped)
{
    openSmall({});
    EXPECT_TRUE(soon([this] { return countIn(grab(), 0, 270, 400, 300, isBright) > 100; })); // the hint
    write("box.3ds", boxScene());
    drop(folder.path("box.3ds"));
    EXPECT_TRUE(soon([this] { return isRed(pixel(200, 150)); }));
    quit();
}

TEST_F(ViewerInWindow, BrokenFileIsToldAndTheSceneStays)
{
    openBox();
    folder.write("broken.3ds", std::string("this is no scene"));
    drop(folder.path("broken.3ds"));
    EXPECT_TRUE(soon([this] { return countIn(grab(), 0, 240, 400, 275, isAmber) > 50; }));
    EXPECT_TRUE(isRed(pixel(200, 150)));
    // And a sound one takes its place.
    write("green.3ds", greenBox());
    drop(folder.path("green.3ds"));
    EXPECT_TRUE(soon([this] { return isGreen(pixel(200, 150)); }));
    quit();
}

TEST_F(ViewerInWindow, ClosingTheWindowEndsWithoutFault)
{
    openBox();
    askToClose();
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}

TEST_F(ViewerInWindow, TerminationEndsWithoutFault)
{
    openBox();
    terminate();
    EXPECT_EQ(waitForEnd(), 0) << streams.read("err");
}

class ViewerOnCommandLine : public ProgramTest
{
};

TEST_F(ViewerOnCommandLine, FileThatCannotBeShownEndsBeforeAWindow)
{
    const RunResult unknown = run({"view", "none.3ds"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err, "vornik: none.3ds: can't be opened\n");
    folder.write("text.3ds", std::string("no scene"));
    const RunResult text = run({"view", "text.3ds"});
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(text.err, "vornik: text.3ds: not a .3DS file\n");
    EXPECT_EQ(run({"view", "--size", "0x5"}).status, 2);
}

TEST_F(ViewerOnCommandLine, NoDisplayIsOneLine)
{
    write("box.3ds", boxScene());
    const char* before = std::getenv("DISPLAY");
    const std::string display = before ? before : "";
    for (const char* none : {"", ":4711"})
    {
        setenv("DISPLAY", none, 1);
        const RunResult result = run({"view", "box.3ds"});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err.find("vornik: can't open a window"), 0u) << result.err;
        EXPECT_EQ(lineCount(result.err), 1) << result.err;
    }
    before ? setenv("DISPLAY", display.c_str(), 1) : unsetenv("DISPLAY");
}
