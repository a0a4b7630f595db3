// The viewer picture by picture: how fast they come, what they take, and what is drawn in them.

#include <cstdlib>
#include <fstream>

#include "tests/support/imagewriter.h"
#include "tests/view/viewerinwindow.h"

#ifdef VORNIK_SANITIZE
static const bool isSanitized = true;
#else
static const bool isSanitized = false;
#endif

/// What framewatch.cpp records of a picture.
struct Shown
{
    double second = 0;
    double turn = 0; ///< seconds of one picture and the sleep before the next; 0 without a sleep
    int allocations = 0, faces = 0, lists = 0;
};

class WatchedViewer : public ViewerInWindow
{
protected:
    void SetUp() override
    {
        ViewerInWindow::SetUp();
        const char* before = std::getenv("ASAN_OPTIONS");
        const std::string options = before ? before : "intercept_tls_get_addr=0";
        if (options.find("verify_asan_link_order") == std::string::npos)
            setenv("ASAN_OPTIONS", (options + ":verify_asan_link_order=0").c_str(), 1);
    }

    // 400 by 300 on black, with a record of its pictures.
    void openWatched(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "view");
        arguments.insert(arguments.end(), {"--size", "400x300", "--background", "black"});
        openCommand("export LD_PRELOAD='" VORNIK_FRAMEWATCH "' FRAMEWATCH='" + streams.path("pictures") +
                    "' FRAMEWATCH_SLOW='" + streams.path("slow") + "'; " +
                    commandLine(folder.root(), arguments));
    }

    std::vector<Shown> pictures() const
    {
        std::vector<Shown> all;
        std::ifstream file(streams.path("pictures"));
        for (Shown one; file >> one.second >> one.turn >> one.allocations >> one.faces >> one.lists;)
            all.push_back(one);
        return all;
    }

    // Does a test hold for the last pictures, of which there are this many beyond a number?
    template <typename Test>
    bool lastPictures(size_t beyond, size_t count, Test test) const
    {
        const std::vector<Shown> all = pictures();
        return all.size() >= beyond + count &&
               std::all_of(all.end() - static_cast<std::ptrdiff_t>(count), all.end(), test);
    }

    // Waits until the next pictures all pass.
    template <typename Test>
    bool soonShown(Test test)
    {
        const size_t now = pictures().size();
        return soon([&] { return lastPictures(now, 3, test); });
    }

    void slowDown(bool slow) const
    {
        if (slow)
            streams.write("slow", std::string());
        else
            std::remove(streams.path("slow").c_str());
    }
};

// Whatever a picture takes, the viewer doesn't sleep beyond a sixtieth of a second, and no machine makes it
// show many more than that.
TEST_F(WatchedViewer, ShowsSixtyPicturesASecondAndNotManyMore)
{
    write("box.3ds", frontBox());
    openWatched({"box.3ds"});
    EXPECT_TRUE(soon([this] { return pictures().size() > 260; }));
    const std::vector<Shown> all = pictures();
    int slept = 0, late = 0;
    for (size_t i = 60; i < all.size(); ++i)
    {
        slept += all[i].turn > 0;
        late += all[i].turn > 1.0 / 60;
        EXPECT_GT(all[i].second - all[i - 60].second, 60 / 75.0) << i;
    }
    EXPECT_LE(late, slept / 5); // a busy machine comes between the look at the clock and the sleep
    EXPECT_TRUE(slept > 0 || all.back().second - all[60].second > 200 / 60.0);
    quit();
}

TEST_F(WatchedViewer, PicturesTakeNoMemory)
{
    if (isSanitized)
        GTEST_SKIP() << "the sanitizers have allocators of their own";
    Scene3ds scene = frontBox();
    scene.materials[0].maps = {{}};
    scene.materials[0].maps[0].file = "RED.TGA";
    folder.write("RED.TGA", writeTga(Picture(8, 8, 0xFF2020FF)));
    scene.materials.push_back(plainMaterial("glass", 0.1f, 0.8f, 0.1f));
    scene.materials.back().transparency = Percent3ds{50};
    scene.meshes.push_back(wall("Glass", -3, -2, 2, "glass"));
    Node3ds node;
    node.id = 0;
    node.name = "Box";
    node.positions = {{0, {-1, 0, 0}, {}}, {60, {1, 0, 0}, {}}};
    scene.nodes = {node};
    scene.segment = {{0, 60}};
    write("moving.3ds", scene);
    openWatched({"moving.3ds"});
    const auto takesNothing = [this]
    {
        const size_t now = pictures().size();
        return soon([&]
                    { return lastPictures(now, 20, [](const Shown& one) { return one.allocations == 0; }); });
    };
    EXPECT_TRUE(takesNothing());
    const std::vector<Shown> all = pictures();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const Shown& one) { return one.allocations > 100; }))
        << "nothing is recorded";
    press("F1");
    EXPECT_TRUE(soon([this] { return hint() == "F1 help  ` console"; }));
    EXPECT_TRUE(takesNothing()) << "help";
    press("F1");
    openConsole();
    type("sceneinfo\nthis is a line that is longer than short texts");
    EXPECT_TRUE(takesNothing()) << "console";
    press("Escape");
    quit();
}

TEST_F(WatchedViewer, ABarFillsWhileAFileLoads)
{
    Scene3ds scene = frontBox();
    for (int i = 0; i < 60; ++i)
        scene.meshes.push_back(wall("Behind" + std::to_string(i), 20, -1, 1, "red"));
    write("many.3ds", scene);
    const auto filled = [this] { return countIn(grab(), 16, 158, 384, 159, isAmber); };
    const auto watchBar = [&]
    {
        int first = 0;
        EXPECT_TRUE(soon([&] { return (first = filled()) > 20 && first < 340; }));
        EXPECT_GT(countIn(grab(), 16, 134, 384, 150, isBright), 50); // its text
        EXPECT_TRUE(soon([&] { return filled() > first; }));
    };
    slowDown(true);
    openWatched({"many.3ds"});
    watchBar();
    slowDown(false);
    ASSERT_TRUE(soon([this] { return isRed(pixel(200, 150)) && hint() != ""; }));
    EXPECT_EQ(filled(), 0);

    // The console's loads have it, too.
    openConsole();
    type("load3ds many.3ds .");
    slowDown(true);
    press("Return");
    watchBar();
    slowDown(false);
    EXPECT_TRUE(soon([this] { return showsConsole(); }));
    press("Escape");
    quit();
}

TEST_F(WatchedViewer, MeshesOutsideTheViewCanBeSkipped)
{
    Scene3ds scene = frontBox();
    scene.meshes.push_back(box("Behind", {-1, -30, -1}, {1, -28, 1}, "red"));
    write("two.3ds", scene);
    openWatched({"two.3ds"});
    EXPECT_TRUE(soonShown([](const Shown& one) { return one.faces == 24; }));
    press("F7");
    EXPECT_TRUE(soonShown([](const Shown& one) { return one.faces == 12; }));
    EXPECT_EQ(message(0), "meshes outside the view are skipped: on");
    press("F7");
    EXPECT_TRUE(soonShown([](const Shown& one) { return one.faces == 24; }));
    EXPECT_EQ(message(0), "meshes outside the view are skipped: off");
    quit();
}

TEST_F(WatchedViewer, DisplayListsTakeThePlaceOfFaces)
{
    write("box.3ds", frontBox());
    openWatched({"box.3ds"});
    EXPECT_TRUE(soonShown([](const Shown& one) { return one.faces == 12 && one.lists == 0; }));
    press("F9");
    EXPECT_TRUE(soonShown([](const Shown& one) { return one.faces == 0 && one.lists > 0; }));
    EXPECT_TRUE(isRed(pixel(200, 150)));
    // A change of style shows in them.
    press("F3");
    EXPECT_TRUE(soon([this] { return isBlack(pixel(190, 130)); }));
    press("F3");
    EXPECT_TRUE(soon([this] { return isRed(pixel(190, 130)); }));
    press("F9");
    EXPECT_TRUE(soonShown([](const Shown& one) { return one.faces == 12 && one.lists == 0; }));
    quit();
}
