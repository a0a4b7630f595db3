#include "apps/vornik/view/stage.h"

#include <cmath>
#include <filesystem>

#include "tests/view/rooms.h"

TEST_F(StageTest, ShowsAFileWithItsFigures)
{
    show(room());
    ASSERT_NE(stage.group, nullptr);
    EXPECT_EQ(stage.name, "scene.3ds");
    EXPECT_EQ(stage.faces, 10);
    EXPECT_EQ(stage.vertices, 30); // without smoothing groups faces share none
    EXPECT_EQ(stage.bounds.low.x, -5.0f);
    EXPECT_EQ(stage.bounds.high.z, 3.0f);
    EXPECT_EQ(stage.missingImages, 0);
    EXPECT_EQ(stage.scene.groupCount, 1);
    EXPECT_FALSE(stage.hasChanged());
}

TEST_F(StageTest, NextFileTakesThePlace)
{
    show(room());
    show(boxScene());
    EXPECT_EQ(stage.scene.groupCount, 1);
    EXPECT_EQ(stage.group, stage.scene.groups[0]);
    EXPECT_EQ(stage.faces, 12);
    EXPECT_EQ(stage.bounds.high.z, 1.0f);
}

TEST_F(StageTest, BrokenFilesLeaveTheSceneOnShow)
{
    show(room());
    const OGroup* before = stage.group;
    std::vector<uint8_t> cut = build3ds(boxScene());
    cut.resize(cut.size() / 2);
    Scene3ds nothing;
    nothing.cameras = {frontCamera("Alone", 0, 5)};
    const struct
    {
        SceneFile file;
        const char* problem;
    } cases[] = {{readSceneFile("none.3ds", ""), "none.3ds: can't be opened"},
                 {readSceneFile(folder.write("text.3ds", std::string("no scene")), ""), "not a .3DS file"},
                 {readSceneFile(folder.write("empty.3ds", std::string()), ""), "the file is empty"},
                 {readSceneFile(folder.write("cut.3ds", cut), ""), "cut short"},
                 {write("nothing.3ds", nothing), "there is nothing in it to draw"}};
    for (const auto& one : cases)
    {
        EXPECT_NE(stage.load(one.file, options, 1.5f).find(one.problem), std::string::npos) << one.problem;
        EXPECT_EQ(stage.group, before);
        EXPECT_EQ(stage.scene.groupCount, 1);
        EXPECT_EQ(stage.name, "scene.3ds");
    }
}

TEST_F(StageTest, EngineTellsItsFaultsByNumber)
{
    EXPECT_EQ(reportOfEngine(readSceneFile("none.3ds", "")), 13);
    const std::string empty = folder.write("empty.3ds", std::string());
    const std::string text = folder.write("text.3ds", std::string("no scene"));
    EXPECT_EQ(reportOfEngine(readSceneFile(empty, "")), 14);
    EXPECT_EQ(reportOfEngine(readSceneFile(text, "")), 14);
    std::vector<uint8_t> cut = build3ds(boxScene());
    cut.resize(cut.size() / 2);
    EXPECT_EQ(reportOfEngine(readSceneFile(folder.write("cut.3ds", cut), "")), 0); // it reads what there is
    EXPECT_EQ(reportOfEngine(write("box.3ds", boxScene())), 0);
    EXPECT_EQ(stage.scene.groupCount, 0);
}

TEST_F(StageTest, PartialTakesWhatThereIs)
{
    std::vector<uint8_t> cut = build3ds(room());
    cut.resize(cut.size() - 60);
    const SceneFile file = readSceneFile(folder.write("cut.3ds", cut), "");
    EXPECT_NE(stage.load(file, options, 1.5f), "");
    options.partial = true;
    EXPECT_EQ(stage.load(file, options, 1.5f), "");
    EXPECT_GT(stage.faces, 0);
}

TEST_F(StageTest, ProcessStaysInItsFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    show(room());
    EXPECT_EQ(std::filesystem::current_path(), before);
    options.lights = folder.path("none.lights");
    EXPECT_NE(stage.load(write("again.3ds", room()), options, 1.5f), "");
    EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_F(StageTest, CountsImagesThatAreMissing)
{
    Scene3ds scene = boxScene();
    Map3ds map;
    map.file = "NONE.JPG";
    scene.materials[0].maps = {map};
    show(scene);
    EXPECT_EQ(stage.missingImages, 1);
}

TEST_F(StageTest, BakedLightOfAnotherSceneIsRefused)
{
    show(boxScene());
    const std::string lights = folder.path("box.lights");
    stage.group->saveLights(lights.c_str());
    options.lights = lights;
    EXPECT_EQ(stage.load(write("box.3ds", boxScene()), options, 1.5f), "");
    const std::string problem = stage.load(write("room.3ds", room()), options, 1.5f);
    EXPECT_NE(problem.find("the light of another scene"), std::string::npos) << problem;
    EXPECT_EQ(stage.faces, 12);
}

// As the console does it behind the stage's back.
TEST_F(StageTest, NoticesThatTheSceneChanged)
{
    show(boxScene());
    const std::string path = folder.path("scene.3ds");
    stage.scene.deleteOGroup(stage.group);
    EXPECT_TRUE(stage.hasChanged());
    stage.adopt(options.framing, 1.5f);
    EXPECT_EQ(stage.group, nullptr);
    EXPECT_TRUE(stage.bounds.isEmpty());
    EXPECT_EQ(stage.faces, 0);
    EXPECT_FALSE(stage.hasChanged());

    for (int i = 0; i < 5; ++i) // memory comes back at the same place
    {
        stage.scene.createOGroup(path.c_str(), LOAD_MESHES | LOAD_MATERIALS | LOAD_TOLERANT, "", 0, nullptr,
                                 nullptr);
        EXPECT_TRUE(stage.hasChanged());
        stage.adopt(options.framing, 1.5f);
        EXPECT_EQ(stage.faces, 12);
        EXPECT_FALSE(stage.hasChanged());
        stage.scene.deleteOGroup(stage.group);
    }
}

TEST_F(StageTest, CoreLeavesAFarSkyOut)
{
    Scene3ds scene;
    scene.meshes = {floorGrid("floor", 0, -10, 10, 12),
                    rectangle("sky", {-9000, -9000, 500}, {9000, 9000, 500}, "-z")};
    show(scene);
    EXPECT_EQ(stage.bounds.high.x, 9000.0f);
    EXPECT_LE(stage.core.high.x, 10.0f);
    EXPECT_GE(stage.core.high.x, 8.0f);
    EXPECT_EQ(stage.core.high.z, 0.0f);
    EXPECT_TRUE(stage.hasSurroundings());
    show(room());
    EXPECT_FALSE(stage.hasSurroundings());
}

TEST_F(StageTest, ViewOfTheCoreHoldsAllOfIt)
{
    Scene3ds scene;
    scene.meshes = {floorGrid("floor", 0, -10, 10, 12),
                    rectangle("sky", {-9000, -9000, 500}, {9000, 9000, 500}, "-z")};
    show(scene);
    const Camera& camera = stage.coreView.camera;
    Vertex3D forward = camera.target - camera.eye,
             first = stage.firstView.camera.target - stage.firstView.camera.eye;
    forward.normalize();
    first.normalize();
    EXPECT_NEAR(forward * first, 1.0f, 1e-4f); // from the same side
    for (const float x : {stage.core.low.x, stage.core.high.x})
        for (const float y : {stage.core.low.y, stage.core.high.y})
        {
            Vertex3D corner = Vertex3D{x, y, stage.core.low.z} - camera.eye;
            corner.normalize();
            const float angle = vrkUnRad(std::acos(corner * forward));
            EXPECT_LE(angle, camera.fov / 2.0f);
            EXPECT_GT(angle, camera.fov / 8.0f); // and not from afar
        }
}

TEST_F(StageTest, BoundsHoldWhatMoves)
{
    Scene3ds scene = boxScene();
    Node3ds node;
    node.id = 0;
    node.name = "Box";
    node.positions = {{0, {0, 0, 0}, {}}, {80, {80, 0, 0}, {}}};
    scene.nodes = {node};
    scene.segment = {{0, 80}};
    show(scene);
    EXPECT_TRUE(stage.group->animated);
    EXPECT_GT(stage.bounds.high.x, 60.0f);
    EXPECT_LT(stage.bounds.low.x, 0.0f);
}
