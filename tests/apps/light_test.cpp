#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

class Lights : public ProgramTest
{
protected:
    static Light3ds lamp(const Vertex3D& position)
    {
        Light3ds light;
        light.name = "Lamp";
        light.position = position;
        light.color = {{1, 1, 1, COLOR_3DS_FLOAT}};
        return light;
    }

    // A wall before the camera, lit by lamps.
    static Scene3ds wallScene(const std::vector<Light3ds>& lights)
    {
        Scene3ds scene;
        scene.materials = {plainMaterial("white", 1, 1, 1)};
        scene.meshes = {wall("Wall", 0, -1, 1, "white")};
        scene.lights = lights;
        scene.cameras = {frontCamera("Front", 0, 6)};
        return scene;
    }

    int brightness(const Scene3ds& scene, const std::vector<std::string>& options = {})
    {
        write("wall.3ds", scene);
        std::vector<std::string> all = {"--ambient", "0"};
        all.insert(all.end(), options.begin(), options.end());
        return render("wall.3ds", all).at(60, 45).g;
    }

    // A floor with a plate over it that stands in the way of the lamp from the right.
    static Scene3ds floorScene(const std::vector<Light3ds>& lights)
    {
        Scene3ds scene;
        scene.meshes = {floorGrid("Floor", 0, -10, 10, 20), floorGrid("Plate", 2, -2.3f, 2.4f, 1)};
        scene.lights = lights;
        return scene;
    }
};

TEST_F(Lights, SceneWithoutLampsIsLitFromTheViewer)
{
    Scene3ds scene = boxScene();
    scene.materials = {plainMaterial("red", 1, 1, 1)};
    write("box.3ds", scene);
    const Bitmap picture = render("box.3ds", {"--ambient", "0"});
    const int lit = picture.count([](const Rgb& p) { return p.r > 30; });
    EXPECT_EQ(lit, picture.countUnlike({0, 0, 0}));
    EXPECT_GT(lit, 2000);
    EXPECT_GT(picture.count([](const Rgb& p) { return p.r > 150; }), 500);
}

TEST_F(Lights, AmbientLightReachesWhatLampsDoNot)
{
    const Scene3ds lampBehind = wallScene({lamp({0, 5, 0})});
    EXPECT_EQ(brightness(lampBehind), 0);
    write("wall.3ds", lampBehind);
    const int usual = render("wall.3ds").at(60, 45).g;
    EXPECT_GT(usual, 30);
    EXPECT_GT(render("wall.3ds", {"--ambient", "0.6"}).at(60, 45).g, usual + 40);
    EXPECT_GT(render("wall.3ds", {"--classic"}).at(60, 45).g, 30);
}

TEST_F(Lights, LampsShineHoweverFarUnlessClassic)
{
    const Scene3ds far = wallScene({lamp({0, -30000, 0})});
    EXPECT_GT(brightness(far), 245);
    EXPECT_EQ(brightness(far, {"--classic"}), 0);
}

TEST_F(Lights, RangesCountWhereTheyReachTheScene)
{
    Light3ds light = lamp({0, -8, 0});
    light.innerRange = 1.0f;
    light.outerRange = 15.0f;
    EXPECT_NEAR(brightness(wallScene({light})), 128, 12);
    EXPECT_NEAR(brightness(wallScene({light}), {"--classic"}), 128, 12);
}

TEST_F(Lights, RangesThatReachNothingAreIgnoredUnlessClassic)
{
    Light3ds light = lamp({0, -30, 0});
    light.innerRange = 1.0f;
    light.outerRange = 10.0f;
    EXPECT_GT(brightness(wallScene({light})), 245);
    EXPECT_EQ(brightness(wallScene({light}), {"--classic"}), 0);
}

TEST_F(Lights, MultiplierAndSwitchAct)
{
    Light3ds half = lamp({0, -30, 0});
    half.multiplier = 0.5f;
    EXPECT_NEAR(brightness(wallScene({half})), 128, 8);
    Light3ds off = lamp({0, -30, 0});
    off.off = true;
    EXPECT_EQ(brightness(wallScene({off})), 0);
    EXPECT_GT(brightness(wallScene({off}), {"--classic"}), 200);
}

TEST_F(Lights, ShadowsAreTracedWhenAsked)
{
    write("floor.3ds", floorScene({lamp({11.7f, 0.3f, 9.1f})}));
    const double open = render("floor.3ds", {"--ambient", "0"}).light();
    const double shaded = render("floor.3ds", {"--ambient", "0", "--shadows"}).light();
    EXPECT_LT(shaded, open * 0.97);
}

TEST_F(Lights, EveryLampThrowsShadows)
{
    Light3ds first = lamp({0.3f, 0.7f, -50}); // lights nothing that can be seen
    write("floor.3ds", floorScene({first, lamp({11.7f, 0.3f, 9.1f})}));
    const double open = render("floor.3ds", {"--ambient", "0"}).light();
    const double shaded = render("floor.3ds", {"--ambient", "0", "--shadows"}).light();
    EXPECT_LT(shaded, open * 0.97);
}

TEST_F(Lights, BacksOfTwoSidedFacesAreLit)
{
    Scene3ds scene = wallScene({lamp({0, 6, 0})});
    scene.materials[0].twoSided = true;
    scene.cameras[0].eye = {0, 6, 0};
    EXPECT_GT(brightness(scene), 200);
    EXPECT_EQ(brightness(scene, {"--classic"}), 0);
}

TEST_F(Lights, LightFromTheViewerThrowsShadowsToo)
{
    write("floor.3ds", floorScene({}));
    const double open = render("floor.3ds", {"--ambient", "0"}).light();
    EXPECT_LT(render("floor.3ds", {"--ambient", "0", "--shadows"}).light(), open * 0.99);
}
