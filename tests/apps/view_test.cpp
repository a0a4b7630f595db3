#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

#include <algorithm>

static bool isRed(const Rgb& p)
{
    return p.r > 40 && p.r > 2 * p.g && p.r > 2 * p.b;
}

static bool isGreen(const Rgb& p)
{
    return p.g > 40 && p.g > 2 * p.r && p.g > 2 * p.b;
}

static bool isDrawn(const Rgb& p)
{
    return p.r + p.g + p.b > 12;
}

// Distance of what is drawn from the picture's edges.
struct Margins
{
    int left, right, top, bottom;
};

static Margins margins(const Bitmap& picture)
{
    Margins found = {picture.width, picture.width, picture.height, picture.height};
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            if (isDrawn(picture.at(x, y)))
            {
                found.left = std::min(found.left, x);
                found.right = std::min(found.right, picture.width - 1 - x);
                found.top = std::min(found.top, y);
                found.bottom = std::min(found.bottom, picture.height - 1 - y);
            }
    return found;
}

class Views : public ProgramTest
{
protected:
    // All of it is inside, it sits in the middle, and it fills the picture one way or the other.
    void expectTightFrame(const Bitmap& picture)
    {
        const Margins margin = margins(picture);
        EXPECT_GT(std::min({margin.left, margin.right, margin.top, margin.bottom}), 0);
        EXPECT_LE(std::abs(margin.left - margin.right), 2 + picture.width / 50);
        EXPECT_LE(std::abs(margin.top - margin.bottom), 2 + picture.height / 50);
        const bool wide = margin.left + margin.right <= picture.width / 8 + 2;
        const bool high = margin.top + margin.bottom <= picture.height / 8 + 2;
        EXPECT_TRUE(wide || high);
    }

    static Scene3ds twoBoxes()
    {
        Scene3ds scene;
        scene.materials = {plainMaterial("red", 0.8f, 0.0f, 0.0f), plainMaterial("green", 0.0f, 0.8f, 0.0f)};
        scene.meshes = {box("Left", {-11, -1, -1}, {-9, 1, 1}, "red"),
                        box("Right", {9, -1, -1}, {11, 1, 1}, "green")};
        scene.cameras = {frontCamera("Red", -10, 10), frontCamera("Green", 10, 10)};
        return scene;
    }
};

TEST_F(Views, SceneWithoutCameraIsFramedWhole)
{
    write("box.3ds", boxScene());
    for (const std::string size : {"120x90", "200x50", "50x200"})
        expectTightFrame(render("box.3ds", {"--size", size}));
    for (const std::string turn : {"-90", "45", "180"})
        expectTightFrame(render("box.3ds", {"--turn", turn, "--tilt", "60"}));
    for (const std::string up : {"x", "y", "z"})
        expectTightFrame(render("box.3ds", {"--up", up}));
}

TEST_F(Views, FrameFollowsSizeAndPlace)
{
    const struct
    {
        Vertex3D low, high;
    } cases[] = {{{0, 0, 0}, {0.001f, 0.002f, 0.001f}},
                 {{-4e5f, -4e5f, 0}, {4e5f, 4e5f, 9e4f}},
                 {{10000, -20000, 500}, {10030, -19990, 510}},
                 {{-1, -30, -1}, {1, 30, 1}}};
    for (const auto& one : cases)
    {
        Scene3ds scene = boxScene();
        scene.meshes = {box("Box", one.low, one.high, "red")};
        write("box.3ds", scene);
        expectTightFrame(render("box.3ds"));
    }
}

TEST_F(Views, CornersThatNoFaceUsesDoNotCount)
{
    Scene3ds scene = boxScene();
    scene.meshes[0].vertices.push_back({500, 500, 500});
    scene.meshes[0].vertices.push_back({NAN, NAN, NAN});
    scene.meshes[0].textureCoords.clear();
    write("box.3ds", scene);
    expectTightFrame(render("box.3ds"));
}

TEST_F(Views, HiddenMeshesDoNotCount)
{
    Scene3ds scene = boxScene();
    scene.meshes.push_back(box("Far", {500, 500, 500}, {501, 501, 501}, "red"));
    scene.meshes[1].hidden = true;
    write("box.3ds", scene);
    expectTightFrame(render("box.3ds"));
}

TEST_F(Views, FirstCameraIsTakenUnlessAnotherIsAsked)
{
    write("two.3ds", twoBoxes());
    for (const std::vector<std::string>& first : std::vector<std::vector<std::string>>{{}, {"--camera", "1"}})
    {
        const Bitmap picture = render("two.3ds", first);
        EXPECT_GT(picture.count(isRed), 200);
        EXPECT_EQ(picture.count(isGreen), 0);
    }
    const Bitmap second = render("two.3ds", {"--camera", "2"});
    EXPECT_GT(second.count(isGreen), 200);
    EXPECT_EQ(second.count(isRed), 0);
}

TEST_F(Views, CameraZeroFramesTheScene)
{
    write("two.3ds", twoBoxes());
    const Bitmap picture = render("two.3ds", {"--camera", "0"});
    EXPECT_GT(picture.count(isRed), 50);
    EXPECT_GT(picture.count(isGreen), 50);
    expectTightFrame(picture);
}

TEST_F(Views, CameraThatIsNotThereIsAnError)
{
    write("two.3ds", twoBoxes());
    const RunResult result = run({"render", "two.3ds", "-o", "picture.png", "--camera", "3"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vornik: two.3ds: there is no camera 3, the file has 2\n");
    EXPECT_FALSE(exists("picture.png"));
}

TEST_F(Views, CameraThatSeesNothingIsTold)
{
    Scene3ds scene = boxScene();
    scene.cameras = {frontCamera("Aside", 500, 10)};
    write("aside.3ds", scene);
    const std::vector<std::string> command = {"render", "aside.3ds", "-o", "picture.png", "--size", "40x30"};
    const RunResult result = run(command);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "camera 1 sees nothing of the scene; --camera 0 shows all of it\n");
    std::vector<std::string> quiet = command;
    quiet.push_back("--quiet");
    EXPECT_EQ(run(quiet).err, "");
}

TEST_F(Views, CameraLookingStraightDownSeesTheScene)
{
    Scene3ds scene = boxScene();
    Camera3ds camera;
    camera.name = "Top";
    camera.eye = {0, 0, 8};
    camera.target = {0, 0, 0};
    scene.cameras = {camera};
    write("top.3ds", scene);
    EXPECT_TRUE(isRed(render("top.3ds").at(60, 45)));
}

TEST_F(Views, CameraRollTurnsThePicture)
{
    Scene3ds scene = twoBoxes();
    scene.cameras = {frontCamera("Level", 0, 30)};
    write("level.3ds", scene);
    scene.cameras[0].roll = 90;
    write("rolled.3ds", scene);
    const Bitmap level = render("level.3ds", {"--size", "100x100"});
    const Bitmap rolled = render("rolled.3ds", {"--size", "100x100"});
    EXPECT_LT(margins(level).left, 30);
    EXPECT_GT(margins(level).top, 30);
    EXPECT_GT(margins(rolled).left, 30);
    EXPECT_LT(margins(rolled).top, 30);
}

// The file's 50 mm lens is a wide view of a 4:3 picture; the strict reading takes it for the height.
TEST_F(Views, LensGivesTheWidthUnlessClassic)
{
    Scene3ds scene = boxScene();
    scene.cameras = {frontCamera("Front", 0, 10)};
    write("box.3ds", scene);
    EXPECT_LT(margins(render("box.3ds")).left, margins(render("box.3ds", {"--classic"})).left);
}

// The distance at which surfaces are told apart follows the size of the scene.
TEST_F(Views, SurfacesCloseTogetherKeepTheirOrder)
{
    for (const float size : {0.01f, 20000.0f})
    {
        Scene3ds scene = twoBoxes();
        scene.cameras.clear();
        scene.meshes = {wall("Front", 0, -size, size, "green"),
                        wall("Back", size * 1e-3f, -size, size, "red")};
        write("walls.3ds", scene);
        const Bitmap picture = render("walls.3ds", {"--turn", "-30", "--tilt", "0"});
        EXPECT_GT(picture.count(isGreen), 2000);
        EXPECT_EQ(picture.count(isRed), 0);
    }
}
