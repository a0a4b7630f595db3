#include "tests/console/consoletest.h"

#include <GL/gl.h>

#include <array>
#include <optional>

#include "tests/support/engine.h"
#include "tests/support/imagewriter.h"
#include "tests/support/writer3ds.h"
#include "vornik/animation/path.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"
#include "vornik/spatial/octree.h"

// In the form that the strict reading takes: of a colour it counts two chunks, so that one must be spare.
static Material3ds plainMaterial(const std::string& name)
{
    Material3ds material;
    material.name = name;
    material.ambient = material.diffuse = material.specular = {{0.5f, 0.5f, 0.5f, COLOR_3DS_BYTE}};
    material.specular.push_back({0.5f, 0.5f, 0.5f, COLOR_3DS_LINEAR_BYTE});
    return material;
}

static Mesh3ds square(const std::string& name, float low, float high, float z)
{
    return {.name = name,
            .vertices = {{low, low, z}, {high, low, z}, {high, high, z}, {low, high, z}},
            .faces = {{0, 1, 2}, {0, 2, 3}}};
}

static Scene3ds exampleScene()
{
    Scene3ds scene{.materials = {plainMaterial("grey")},
                   .meshes = {square("FLOOR", 0, 10, 0), square("ROOF", -1, 4, 2)},
                   .lights = {{.name = "LAMP",
                               .position = {2, 2, 5},
                               .color = {{1, 1, 1, COLOR_3DS_FLOAT}},
                               .innerRange = 50.0f,
                               .outerRange = 60.0f}},
                   .cameras = {{.name = "EYE", .eye = {0, -5, 1}, .target = {0, 5, 1}}}};
    scene.nodes = {
        {.id = 0, .name = "FLOOR", .positions = {{.frame = 0}, {.frame = 10, .position = {0, 0, 1}}}}};
    scene.segment = {{0, 10}};
    return scene;
}

// A scene for the commands, with a file "Example.3ds" to load.
class LoadCommands : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        scope.emplace();
        write("Example.3ds", exampleScene());
        scope->console.setScene(&scene);
    }
    void TearDown() override
    {
        scope.reset();
        EngineTest::TearDown();
    }

    void write(const std::string& name, const Scene3ds& content) const
    {
        scope->folder.write(name, build3ds(content));
    }
    // The report of a load's steps is left out.
    std::string said(const std::string& line, int number = 0)
    {
        std::string text = scope->said(line, number);
        for (const std::string step : {"Start loading...\n", "Start processing...\n"})
            if (const size_t at = text.find(step); at != std::string::npos)
                text.erase(at, step.size());
        return text;
    }
    Mesh* mesh(const char* name) { return static_cast<Mesh*>(scene.groups[0]->findObject(name)); }
    // Light that reaches a corner of the floor, which the roof can keep off.
    float shaded() { return mesh("FLOOR")->lightColors[0].r; }

    float crack()
    {
        const Vertex3D* vertices = mesh("FLOOR")->calculatedVertices;
        return vertices[3].z - vertices[0].z;
    }

    Scene scene;
    std::optional<ConsoleScope> scope;
};

TEST_F(LoadCommands, LoadsAGroupOfTheFile)
{
    EXPECT_EQ(said("load3ds example.3ds ."), "");
    ASSERT_EQ(scene.groupCount, 1);
    const OGroup& group = *scene.groups[0];
    EXPECT_EQ(group.meshCount, 2);
    EXPECT_EQ(group.lightCount, 1);
    EXPECT_EQ(group.cameraCount, 1);
    EXPECT_EQ(group.tlistCount, 1);
    EXPECT_EQ(group.pathListCount, 1);
    EXPECT_EQ(group.octree, nullptr);
    EXPECT_EQ(scene.camera, group.cameras[0]);
    EXPECT_STREQ(scope->console.lastLoad, "LOAD3DS EXAMPLE.3DS .");
}

TEST_F(LoadCommands, NeedTwoWords)
{
    EXPECT_EQ(said("LOAD3DS", 21), "Missing parameters! Parse failed!\n");
    EXPECT_EQ(said("LOAD3DS A.3DS", 21), "Missing parameters! Parse failed!\n");
    EXPECT_STREQ(scope->console.lastLoad, "");
    EXPECT_EQ(scene.groupCount, 0);
}

TEST_F(LoadCommands, NeedAScene)
{
    scope->console.scene = nullptr;
    EXPECT_EQ(said("LOAD3DS example.3ds . /s", 25), sceneIsNull);
    EXPECT_STREQ(scope->console.lastLoad, "LOAD3DS EXAMPLE.3DS . /S"); // kept before the scene is looked at
    EXPECT_EQ(said("RELOAD3DS", 25), sceneIsNull);
    EXPECT_EQ(said("CLEAR3DS", 25), sceneIsNull);
}

TEST_F(LoadCommands, AFileThatIsNotThereIsReportedAndNoFault)
{
    EXPECT_EQ(said("LOAD3DS none.3ds ."), "Cannot open .3DS file (possible disk error)\n");
    EXPECT_EQ(scene.groupCount, 0);
    EXPECT_EQ(said("LOAD3DS  example.3ds"),
              "Cannot open .3DS file (possible disk error)\n"); // word 1 is empty
}

TEST_F(LoadCommands, LoadingClearsEverySecondGroup)
{
    said("LOAD3DS example.3ds .");
    OGroup* first = scene.groups[0];
    said("LOAD3DS example.3ds .");
    ASSERT_EQ(scene.groupCount, 1);
    scene.groups[scene.groupCount++] = first = new OGroup;
    said("LOAD3DS example.3ds .");
    ASSERT_EQ(scene.groupCount, 2);
    EXPECT_EQ(scene.groups[0], first);
}

TEST_F(LoadCommands, RTracesShadows)
{
    said("LOAD3DS example.3ds .");
    const float without = shaded();
    said("LOAD3DS example.3ds . /r");
    EXPECT_GT(without, 0.0f);
    EXPECT_EQ(shaded(), 0.0f);
}

TEST_F(LoadCommands, SSplitsAlongSmoothingGroups)
{
    Scene3ds content = exampleScene();
    content.meshes[0].smoothing = {1, 2};
    write("Example.3ds", content);
    said("LOAD3DS example.3ds .");
    EXPECT_EQ(mesh("FLOOR")->vertexCount, 4);
    said("LOAD3DS example.3ds . /s");
    EXPECT_EQ(mesh("FLOOR")->vertexCount, 6);
    // Anywhere in the line, within a word too.
    said("LOAD3DS ./samples/../example.3ds .");
    said("LOAD3DS example.3ds ./some");
    EXPECT_EQ(mesh("FLOOR")->vertexCount, 6);
}

TEST_F(LoadCommands, CClosesCracksAndOBuildsTheOctree)
{
    Scene3ds content = exampleScene();
    content.meshes[0].vertices[3] = {0, 0, 0.01f}; // a crack at the first corner
    write("Example.3ds", content);
    said("LOAD3DS example.3ds .");
    EXPECT_NEAR(crack(), 0.01f, 1e-6f);
    said("LOAD3DS example.3ds . /c");
    EXPECT_EQ(crack(), 0.0f);
    said("RELOAD3DS");
    EXPECT_NEAR(crack(), 0.01f, 1e-6f);
    said("RELOAD3DS /c");
    EXPECT_EQ(crack(), 0.0f);
    EXPECT_EQ(scene.groups[0]->octree, nullptr);
    said("LOAD3DS example.3ds . /o");
    EXPECT_NE(scene.groups[0]->octree, nullptr);
}

TEST_F(LoadCommands, ALoadsKeyframesIntoTheFirstGroup)
{
    said("LOAD3DS example.3ds .");
    OGroup* group = scene.groups[0];
    EXPECT_EQ(said("LOAD3DS example.3ds . /a /m"), "");
    ASSERT_EQ(scene.groupCount, 1);
    EXPECT_EQ(scene.groups[0], group);
    EXPECT_EQ(group->pathListCount, 2);
    EXPECT_EQ(group->meshCount, 2);
    EXPECT_EQ(group->tlistCount, 1);
}

TEST_F(LoadCommands, MReadsTheFileIntoTheFirstGroupAndKeepsNothing)
{
    said("LOAD3DS example.3ds .");
    EXPECT_EQ(said("LOAD3DS example.3ds . /m"), "");
    EXPECT_EQ(scene.groupCount, 1);
    EXPECT_EQ(scene.groups[0]->tlistCount, 1);
    EXPECT_EQ(scene.groups[0]->pathListCount, 1);
    EXPECT_EQ(scene.groups[0]->meshCount, 2);
}

TEST_F(LoadCommands, AAndMNeedAGroup)
{
    const std::string none = "ObjectGroup not found in OGroupList! OGroup not deleted!\n";
    EXPECT_EQ(said("LOAD3DS example.3ds . /a"), none);
    EXPECT_EQ(said("LOAD3DS example.3ds . /m"), none);
    EXPECT_EQ(scene.groupCount, 0);
}

static float lastFraction;

TEST_F(LoadCommands, LoadsTellTheirProgress)
{
    scope->console.addProgressFunc([](float fraction) { lastFraction = fraction; });
    lastFraction = 0;
    said("LOAD3DS example.3ds .");
    EXPECT_EQ(lastFraction, 1.0f);
    lastFraction = 0;
    said("RELOAD3DS");
    EXPECT_EQ(lastFraction, 1.0f);
    lastFraction = 0;
    said("LOAD3DS example.3ds . /a");
    EXPECT_EQ(lastFraction, 0.0f);
}

TEST_F(LoadCommands, AScalerFixesTheScale)
{
    Scene3ds content = exampleScene();
    content.meshes.push_back(square("SCALER", 0, 2, 0));
    write("scaled.3ds", content);
    said("LOAD3DS scaled.3ds .");
    EXPECT_EQ(mesh("SCALER")->visible, 0);
    EXPECT_EQ(mesh("SCALER")->radius, mesh("FLOOR")->radius / 5);
    EXPECT_FLOAT_EQ(mesh("FLOOR")->calculatedVertices[2].x - mesh("FLOOR")->calculatedVertices[0].x, 5.0f);
    EXPECT_NE(scene.groups[0]->octree, nullptr);
    // A second loading has no scale.
    said("RELOAD3DS");
    EXPECT_NE(mesh("SCALER")->visible, 0);
    EXPECT_FLOAT_EQ(mesh("FLOOR")->calculatedVertices[2].x - mesh("FLOOR")->calculatedVertices[0].x, 10.0f);
}

TEST_F(LoadCommands, OnlyAWholeLoadLooksForTheScaler)
{
    Scene3ds content = exampleScene();
    content.meshes.push_back(square("SCALER", 0, 2, 0));
    write("scaled.3ds", content);
    said("LOAD3DS scaled.3ds .");
    mesh("SCALER")->visible = 1;
    for (const char* line : {"LOAD3DS scaled.3ds . /a", "LOAD3DS scaled.3ds . /m"})
    {
        said(line);
        EXPECT_EQ(mesh("SCALER")->visible, 1) << line;
    }
}

TEST_F(LoadCommands, AScalerThatIsNoMeshIsHidden)
{
    Scene3ds content = exampleScene();
    content.lights[0].name = "SCALER";
    write("scaled.3ds", content);
    said("LOAD3DS scaled.3ds .");
    EXPECT_EQ(scene.groups[0]->lights[0]->visible, 0);
    EXPECT_FLOAT_EQ(mesh("FLOOR")->calculatedVertices[2].x - mesh("FLOOR")->calculatedVertices[0].x, 10.0f);
}

TEST_F(LoadCommands, XAndTheDepthOfImagesFollowTheCommand)
{
    Scene3ds content = exampleScene();
    content.materials[0].maps = {{.file = "IMAGE.TGA"}};
    write("mapped.3ds", content);
    scope->folder.write("image.tga", writeTga(Picture(8, 8, 0x404040FF)));
    const auto texture = [this] { return scene.groups[0]->tlists[0]->seekMaterial("grey")->firstTexture; };
    const auto red = [&texture]
    {
        std::array<uint8_t, 8 * 8 * 4> pixels = {};
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture()->textureIDs[0]));
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        return static_cast<int>(pixels[0]);
    };
    EXPECT_EQ(said("LOAD3DS mapped.3ds ."), "");
    EXPECT_STREQ(texture()->names[0], "IMAGE.TGA");
    EXPECT_EQ(texture()->bitsPerTexel, 32);
    EXPECT_NEAR(red(), 64, 16);
    said("LOAD3DS mapped.3ds . /x");
    EXPECT_NEAR(red(), 2 * 64 - 28, 16);
    said("RELOAD3DS");
    EXPECT_NE(texture()->bitsPerTexel, 32);
    EXPECT_NEAR(red(), 64, 16);
    said("RELOAD3DS /x");
    EXPECT_NEAR(red(), 2 * 64 - 28, 16);
}

TEST_F(LoadCommands, ReloadingReadsTheLastFileAgain)
{
    said("LOAD3DS example.3ds . /s /r");
    scene.groups[0]->meshes[0]->visible = 7; // gone with the group that it belongs to
    EXPECT_EQ(said("reload3ds"), "");
    ASSERT_EQ(scene.groupCount, 1);
    EXPECT_EQ(scene.groups[0]->meshes[0]->visible, 1);
    EXPECT_EQ(scene.groups[0]->meshCount, 2);
    EXPECT_STREQ(scope->console.lastLoad, "LOAD3DS EXAMPLE.3DS . /S /R");
}

TEST_F(LoadCommands, ReloadingBeforeAnyLoadFindsNoFile)
{
    EXPECT_EQ(said("RELOAD3DS"), "Cannot open .3DS file (possible disk error)\n");
    EXPECT_EQ(scene.groupCount, 0);
}

TEST_F(LoadCommands, ReloadingTakesSomeSwitchesFromTheLoadAndSomeFromItsLine)
{
    Scene3ds content = exampleScene();
    content.meshes[0].smoothing = {1, 2};
    write("Example.3ds", content);
    said("LOAD3DS example.3ds . /s /r /o /x /c");
    EXPECT_NE(scene.groups[0]->octree, nullptr);
    said("RELOAD3DS");
    EXPECT_EQ(mesh("FLOOR")->vertexCount, 6);
    EXPECT_EQ(shaded(), 0.0f);
    EXPECT_EQ(scene.groups[0]->octree, nullptr);
    said("RELOAD3DS /o");
    EXPECT_NE(scene.groups[0]->octree, nullptr);

    said("LOAD3DS example.3ds .");
    said("RELOAD3DS /s /r /a /m");
    EXPECT_EQ(mesh("FLOOR")->vertexCount, 4);
    EXPECT_GT(shaded(), 0.0f);
    EXPECT_EQ(scene.groups[0]->pathListCount, 1);

    said("LOAD3DS example.3ds . /a");
    said("RELOAD3DS");
    EXPECT_EQ(scene.groups[0]->pathListCount, 3);
    said("LOAD3DS example.3ds . /m");
    said("RELOAD3DS");
    EXPECT_EQ(scene.groups[0]->pathListCount, 3);
    EXPECT_EQ(scene.groupCount, 1);
}

TEST_F(LoadCommands, ClearingDeletesTheFirstGroup)
{
    said("LOAD3DS example.3ds .");
    OGroup* second = new OGroup;
    scene.groups[scene.groupCount++] = second;
    EXPECT_EQ(said("CLEAR3DS"), "");
    ASSERT_EQ(scene.groupCount, 1);
    EXPECT_EQ(scene.groups[0], second);
    EXPECT_EQ(scene.camera, nullptr);
    EXPECT_EQ(said("CLEAR3DS"), "");
    EXPECT_EQ(said("CLEAR3DS"), "ObjectGroup not found in OGroupList! OGroup not deleted!\n");
}

TEST_F(LoadCommands, ListsAndCamerasAreChosenByNumber)
{
    said("LOAD3DS example.3ds .");
    OGroup* group = scene.groups[0];
    group->addTList(new TList);
    group->addPathList(new PathList);
    group->pathLists[1]->frameCount = 77;
    group->addCamera(new Camera);
    EXPECT_EQ(said("ACTIVETLIST 1"), "ActiveTList change completed.\n");
    EXPECT_EQ(group->activeTList, group->tlists[1]);
    EXPECT_EQ(said("ACTIVEPLIST 1"), "ActivePathList change completed.\n");
    EXPECT_EQ(group->activePathList, group->pathLists[1]);
    EXPECT_EQ(group->frameCount, 77);
    EXPECT_EQ(said("ACTIVECAMERA 1"), "ActiveCamera change completed.\n");
    EXPECT_EQ(group->activeCamera, group->cameras[1]);
    EXPECT_EQ(said("ACTIVECAMERA x"), "ActiveCamera change completed.\n"); // no number is 0
    EXPECT_EQ(group->activeCamera, group->cameras[0]);
}

TEST_F(LoadCommands, NumbersThatAreNotThereAreReportedAndStillCompleted)
{
    said("LOAD3DS example.3ds .");
    for (const char* number : {"1", "-1", "64", "99999999999", "-99999999999"})
    {
        EXPECT_EQ(said(std::string("ACTIVETLIST ") + number),
                  "TList used in functioncall is NULL!\nActiveTList change completed.\n");
        EXPECT_EQ(said(std::string("ACTIVEPLIST ") + number),
                  "PathList used in functioncall is NULL!\nActivePathList change completed.\n");
        EXPECT_EQ(said(std::string("ACTIVECAMERA ") + number),
                  "CamList used in functioncall is NULL!\nActiveCamera change completed.\n");
    }
    EXPECT_EQ(scene.groups[0]->activeTList, scene.groups[0]->tlists[0]);
}

TEST_F(LoadCommands, ChoosingNeedsASceneAndAGroup)
{
    for (const char* line : {"ACTIVETLIST 0", "ACTIVEPLIST 0", "ACTIVECAMERA 0"})
    {
        scope->console.scene = &scene;
        EXPECT_EQ(said(line, 26), "OGroup used in functioncall is NULL!\n");
        scope->console.scene = nullptr;
        EXPECT_EQ(said(line, 25), sceneIsNull);
    }
}

TEST_F(LoadCommands, GammaIsAppliedToTheFirstGroup)
{
    said("LOAD3DS example.3ds .");
    Mesh* floor = mesh("FLOOR");
    floor->lightColors[0].r = 0.25f;
    EXPECT_EQ(said("GAMMA 2"), "Gamma value changed.\n");
    EXPECT_FLOAT_EQ(floor->vertexColors[0].r, 0.5f);
    said("GAMMA 1");
    EXPECT_FLOAT_EQ(floor->vertexColors[0].r, 0.25f);
    said("CLEAR3DS");
    EXPECT_EQ(said("GAMMA 0.5"), "Gamma value changed.\n");
    EXPECT_EQ(vrkGetGamma(), 0.5f);
    vrkSetGamma(1.0f);
}
