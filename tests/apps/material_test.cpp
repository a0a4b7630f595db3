#include "tests/apps/program.h"
#include "tests/apps/scenes.h"
#include "tests/support/imagewriter.h"

// A wall before the camera; its middle shows what the material came to.
class Materials : public ProgramTest
{
protected:
    static Scene3ds wallScene(const Material3ds& material)
    {
        Scene3ds scene;
        scene.materials = {material};
        scene.meshes = {wall("Wall", 0, -1, 1, material.name)};
        scene.cameras = {frontCamera("Front", 0, 6)};
        return scene;
    }

    static Material3ds greenWith(const std::vector<Map3ds>& maps)
    {
        Material3ds material = plainMaterial("green", 0.0f, 0.8f, 0.0f);
        material.maps = maps;
        return material;
    }

    Rgb middle(const std::string& file, const std::vector<std::string>& options = {})
    {
        return render(file, options).at(60, 45);
    }

    void writeImage(const std::string& name, uint32_t rgba)
    {
        folder.write(name, writeTga(Picture(8, 8, rgba)));
    }

    std::string complaints(const std::string& file, const std::vector<std::string>& options = {})
    {
        std::vector<std::string> arguments = {"render", file, "-o", "p.png", "--size", "40x30"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments).err;
    }
};

static bool isGreen(const Rgb& p)
{
    return p.g > 100 && p.r < 30 && p.b < 30;
}

static bool isBlue(const Rgb& p)
{
    return p.b > 150 && p.r < 30 && p.g < 30;
}

static bool isGrey(const Rgb& p)
{
    return p.r > 80 && std::abs(p.r - p.g) < 6 && std::abs(p.r - p.b) < 6;
}

static const uint32_t blue = 0x0000FFFF;

TEST_F(Materials, ImagesComeFromTheFolderOfTheFile)
{
    writeImage("scenes/Sky Map.tga", blue);
    write("scenes/wall.3ds", wallScene(greenWith({{.file = "SKY MAP.TGA"}})));
    EXPECT_TRUE(isBlue(middle("scenes/wall.3ds")));
    EXPECT_EQ(complaints("scenes/wall.3ds"), "");
    EXPECT_TRUE(isBlue(middle(folder.path("scenes/wall.3ds"))));
}

TEST_F(Materials, ImagesComeFromAnotherFolderWhenTold)
{
    writeImage("elsewhere/map.tga", blue);
    write("scenes/wall.3ds", wallScene(greenWith({{.file = "MAP.TGA"}})));
    EXPECT_TRUE(isBlue(middle("scenes/wall.3ds", {"--textures", "elsewhere"})));
    EXPECT_EQ(complaints("scenes/wall.3ds", {"--textures", "elsewhere"}), "");
}

TEST_F(Materials, MissingImageIsNamedOnceAndTheColorShown)
{
    Scene3ds scene = wallScene(greenWith({{.file = "GONE.JPG"}}));
    Material3ds second = greenWith({{.file = "GONE.JPG"}});
    second.name = "again";
    Material3ds third = greenWith({{.file = "LOST.TGA"}});
    third.name = "third";
    scene.materials.push_back(second);
    scene.materials.push_back(third);
    write("wall.3ds", scene);
    EXPECT_EQ(complaints("wall.3ds"), "missing image: GONE.JPG\nmissing image: LOST.TGA\n");
    EXPECT_EQ(complaints("wall.3ds", {"--quiet"}), "");
    EXPECT_TRUE(isGreen(middle("wall.3ds")));
    EXPECT_EQ(run({"render", "wall.3ds", "-o", "p.png"}).status, 0);
}

TEST_F(Materials, ImageOfAnotherFormatIsCalledUnreadable)
{
    folder.write("map.bmp", std::string("BM"));
    folder.write("broken.tga", std::string("no image at all, but a few bytes"));
    Scene3ds scene = wallScene(greenWith({{.file = "MAP.BMP"}}));
    Material3ds second = greenWith({{.file = "BROKEN.TGA"}});
    second.name = "second";
    scene.materials.push_back(second);
    write("wall.3ds", scene);
    EXPECT_EQ(complaints("wall.3ds"), "unreadable image: MAP.BMP\nunreadable image: BROKEN.TGA\n");
    EXPECT_TRUE(isGreen(middle("wall.3ds")));
}

TEST_F(Materials, NamesAreMadeFitForATerminal)
{
    write("wall.3ds", wallScene(greenWith({{.file = "M\x1B[31m\xFC.JPG"}})));
    EXPECT_EQ(complaints("wall.3ds"), "missing image: M?[31m\xC3\xBC.JPG\n");
}

TEST_F(Materials, MissingOpacityImageLeavesTheWallSolid)
{
    writeImage("map.tga", blue);
    write("wall.3ds",
          wallScene(greenWith({{.file = "MAP.TGA"}, {.slot = MAP_3DS_OPACITY, .file = "GONE.TGA"}})));
    EXPECT_EQ(complaints("wall.3ds"), "missing image: GONE.TGA\n");
    EXPECT_TRUE(isBlue(middle("wall.3ds")));

    write("bare.3ds",
          wallScene(greenWith({{.file = "NONE.TGA"}, {.slot = MAP_3DS_OPACITY, .file = "GONE.TGA"}})));
    EXPECT_TRUE(isGreen(middle("bare.3ds")));
}

TEST_F(Materials, OpacityImageMakesHoles)
{
    writeImage("map.tga", blue);
    Picture holes(8, 8, 0x000000FF);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 4; ++x)
            for (int channel = 0; channel < 3; ++channel)
                holes.at(x, y)[channel] = 127;
    folder.write("holes.tga", writeTga(holes));
    Scene3ds scene =
        wallScene(greenWith({{.file = "MAP.TGA"}, {.slot = MAP_3DS_OPACITY, .file = "HOLES.TGA"}}));
    write("wall.3ds", scene);
    const Bitmap picture = render("wall.3ds");
    EXPECT_GT(picture.at(50, 45).b, 60);
    EXPECT_LT(picture.at(70, 45).b, 10);
}

TEST_F(Materials, TransparencyShowsWhatIsBehind)
{
    Material3ds glass = plainMaterial("glass", 0.8f, 0.0f, 0.0f);
    glass.transparency = Percent3ds{75};
    Scene3ds scene = wallScene(glass);
    scene.materials.push_back(plainMaterial("green", 0.0f, 0.8f, 0.0f));
    scene.meshes.push_back(wall("Behind", 1, -1, 1, "green"));
    write("glass.3ds", scene);
    const Rgb seen = middle("glass.3ds");
    EXPECT_GT(seen.g, 2 * seen.r);
    EXPECT_GT(seen.r, 20);

    // The strict reading takes the percentage for opacity.
    const Rgb classic = middle("glass.3ds", {"--classic"});
    EXPECT_GT(classic.r, classic.g);
}

TEST_F(Materials, ReflectionImageIsLaidOnAtItsStrength)
{
    writeImage("shine.tga", blue);
    const auto reflecting = [](const std::string& file, float percent)
    { return greenWith({{.slot = MAP_3DS_REFLECTION, .file = file, .percent = Percent3ds{percent}}}); };
    write("full.3ds", wallScene(reflecting("SHINE.TGA", 100)));
    write("weak.3ds", wallScene(reflecting("SHINE.TGA", 20)));
    write("none.3ds", wallScene(reflecting("GONE.TGA", 100)));
    const Rgb full = middle("full.3ds"), weak = middle("weak.3ds"), none = middle("none.3ds");
    EXPECT_GT(full.b, 80);
    EXPECT_LT(weak.b, full.b / 2);
    EXPECT_GT(weak.b, 10);
    EXPECT_TRUE(isGreen(none));
}

TEST_F(Materials, FacesWithoutMaterialAreGreyUnlessClassic)
{
    Scene3ds scene = wallScene(greenWith({}));
    scene.meshes[0].groups.clear();
    write("wall.3ds", scene);
    EXPECT_TRUE(isGrey(middle("wall.3ds")));
    const Rgb classic = middle("wall.3ds", {"--classic"});
    EXPECT_GT(classic.r, 60);
    EXPECT_LT(classic.g, 10);
}

TEST_F(Materials, TexturesCanBeLeftOut)
{
    write("wall.3ds", wallScene(greenWith({})));
    EXPECT_TRUE(isGreen(middle("wall.3ds")));
    EXPECT_TRUE(isGrey(middle("wall.3ds", {"--no-textures"})));
}

// Of materials with one byte colour in each chunk the strict reading loses every second one.
TEST_F(Materials, ClassicReadsMaterialsAsOldHostsDo)
{
    Scene3ds scene = wallScene(plainMaterial("red", 0.4f, 0.0f, 0.0f));
    scene.materials.push_back(plainMaterial("green", 0.0f, 0.4f, 0.0f));
    for (Material3ds& material : scene.materials)
        material.specular.resize(1);
    scene.materials.push_back(plainMaterial("last", 0, 0, 0));
    scene.meshes[0] = wall("Wall", 0, -1, 1, "green");
    write("wall.3ds", scene);
    const Rgb tolerant = middle("wall.3ds"), classic = middle("wall.3ds", {"--classic"});
    EXPECT_GT(tolerant.g, 60);
    EXPECT_EQ(tolerant.r, 0);
    EXPECT_LT(classic.g, 10);
    EXPECT_GT(classic.r, 60);
}

TEST_F(Materials, NearGlassCoversFarGlassWhateverTheOrderInTheFile)
{
    Scene3ds scene = wallScene(plainMaterial("red", 0.8f, 0.0f, 0.0f));
    scene.materials.push_back(plainMaterial("blue", 0.0f, 0.0f, 0.8f));
    for (Material3ds& material : scene.materials)
        material.transparency = Percent3ds{40};
    scene.meshes.push_back(wall("Far", 1, -1, 1, "blue"));
    write("near.3ds", scene);
    std::swap(scene.meshes[0], scene.meshes[1]);
    write("far.3ds", scene);
    const Rgb nearFirst = middle("near.3ds"), farFirst = middle("far.3ds");
    EXPECT_EQ(nearFirst, farFirst);
    EXPECT_GT(nearFirst.r, nearFirst.b);
    EXPECT_GT(nearFirst.b, 20);
}
