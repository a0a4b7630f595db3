#include "tests/apps/program.h"
#include "tests/apps/scenes.h"
#include "tests/support/imagewriter.h"

#include <array>
#include <cstdio>

class Info : public ProgramTest
{
protected:
    // A scene with something of each kind, and an image that is there, one that isn't and one of another
    // format.
    std::string writeExample() const
    {
        Scene3ds scene = boxScene();
        scene.materials[0].twoSided = true;
        scene.materials[0].maps = {{.file = "THERE.TGA"},
                                   {.slot = MAP_3DS_OPACITY, .file = "GONE.JPG"},
                                   {.slot = MAP_3DS_REFLECTION, .file = "OTHER.BMP"}};
        scene.meshes.push_back(wall("Wall", 0, -1, 1));
        scene.meshes[1].hidden = true;
        scene.lights = {{.name = "Lamp", .position = {1, 2, 3}, .color = {{0.5f, 1, 0, COLOR_3DS_FLOAT}}}};
        scene.lights[0].outerRange = 40.0f;
        scene.cameras = {frontCamera("First", 0, 5), frontCamera("Second", 1, 6)};
        Node3ds boxNode{.name = "Box"};
        boxNode.positions = {{.frame = 0}, {.frame = 10}, {.frame = 20}};
        boxNode.rotations = {{.frame = 0}};
        scene.nodes = {boxNode, {.name = "$$$DUMMY", .instance = "Pivot"}};
        scene.segment = {{0, 20}};
        folder.write("there.tga", writeTga(Picture(8, 4, 0xFFFFFFFF)));
        folder.write("other.bmp", std::string("BM"));
        return write("example.3ds", scene);
    }

    // The value of an expression over the JSON d that vornik printed, as Python prints it.
    std::string ask(const std::string& json, const std::string& expression) const
    {
        folder.write("answer.json", json);
        folder.write("ask.py", "import json\nd = json.load(open('" + folder.path("answer.json") +
                                   "', encoding='utf-8'))\nprint(ascii(" + expression + "))\n");
        std::FILE* python = popen(("python3 " + folder.path("ask.py") + " 2>&1").c_str(), "r");
        std::array<char, 1000> line = {};
        std::string answer;
        while (std::fgets(line.data(), static_cast<int>(line.size()), python))
            answer += line.data();
        pclose(python);
        return answer.substr(0, answer.find_last_not_of('\n') + 1);
    }
};

TEST_F(Info, TellsPeopleWhatIsInAScene)
{
    const RunResult result = run({"info", writeExample()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    for (const std::string line :
         {"meshes: 2\n  Box   24 vertices  12 faces\n  Wall  4 vertices   2 faces   hidden\n",
          "materials: 1\n  red  two-sided\n",
          "images: 3\n  THERE.TGA  found       texture     red\n  GONE.JPG   missing     opacity     red\n"
          "  OTHER.BMP  unreadable  reflection  red\n",
          "lights: 1\n  Lamp  at 1 2 3  colour 0.5 1 0  range 0 to 40\n",
          "cameras: 2\n  1  First   at 0 -5 0  field of view ", "\n  2  Second  at 1 -6 0  field of view ",
          "keyframes: 2 nodes (1 dummies), 2 tracks (1 with more than one key), frames 0 to 20\n"})
        EXPECT_NE(result.out.find(line), std::string::npos) << line << "not in\n" << result.out;
    EXPECT_EQ(result.out.rfind("example.3ds: ", 0), 0u);
    EXPECT_NE(result.out.find(" bytes, 28 vertices, 14 faces\n"), std::string::npos);
}

TEST_F(Info, TellsProgramsTheSame)
{
    if (!hasPython())
        GTEST_SKIP() << "no Python to ask";
    const RunResult result = run({"info", writeExample(), "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(ask(result.out, "(d['file'], d['vertices'], d['faces'], d['missingImages'])"),
              "('example.3ds', 28, 14, 2)");
    EXPECT_EQ(ask(result.out, "d['bytes']"), std::to_string(folder.read("example.3ds").size()));
    EXPECT_EQ(ask(result.out, "d['meshes'][1]"),
              "{'name': 'Wall', 'vertices': 4, 'faces': 2, 'visible': False}");
    EXPECT_EQ(ask(result.out, "[(i['role'], i['name'], i['found'], i['readable'], i['width'], i['height']) "
                              "for i in d['materials'][0]['images']]"),
              "[('texture', 'THERE.TGA', True, True, 8, 4), ('opacity', 'GONE.JPG', False, False, 0, 0), "
              "('reflection', 'OTHER.BMP', True, False, 0, 0)]");
    EXPECT_EQ(ask(result.out, "(d['materials'][0]['name'], d['materials'][0]['twoSided'])"), "('red', True)");
    EXPECT_EQ(ask(result.out, "d['lights'][0]"),
              "{'name': 'Lamp', 'position': [1, 2, 3], 'color': [0.5, 1, 0], "
              "'innerRange': 0, 'outerRange': 40}");
    EXPECT_EQ(ask(result.out, "[c['name'] for c in d['cameras']]"), "['First', 'Second']");
    EXPECT_EQ(ask(result.out, "d['cameras'][1]['eye']"), "[1, -6, 0]");
    EXPECT_EQ(ask(result.out, "d['keyframes']"),
              "{'nodes': 2, 'dummies': 1, 'tracks': 2, 'animatedTracks': 1, 'keys': 4, 'firstFrame': 0, "
              "'lastFrame': 20}");
}

TEST_F(Info, NamesOfAnyKindMakeValidJson)
{
    if (!hasPython())
        GTEST_SKIP() << "no Python to ask";
    Scene3ds scene;
    const std::vector<std::string> names = {"quote\" and \\", "tab\t\x01", "B\xE4r",
                                            "B\xC3\xA4r",     "\xFF\xC3",  ""};
    for (const std::string& name : names)
        scene.meshes.push_back(wall(name, 0, -1, 1));
    write("names.3ds", scene);
    const RunResult result = run({"info", "names.3ds", "--json"});
    EXPECT_EQ(ask(result.out, "[m['name'] for m in d['meshes']]"),
              R"(['quote" and \\', 'tab\t\x01', 'B\xe4r', 'B\xe4r', '\xff\xc3', ''])");
}

TEST_F(Info, NamesOfAnyKindArePrintedSafely)
{
    Scene3ds scene;
    scene.meshes = {wall("B\xE4r\x1B[2J", 0, -1, 1), wall("Plain name", 0, -1, 1)};
    write("names.3ds", scene);
    EXPECT_NE(run({"info", "names.3ds"})
                  .out.find("  B\xC3\xA4r?[2J     4 vertices  2 faces\n  Plain name  4 vertices  2 faces\n"),
              std::string::npos);
}

TEST_F(Info, NumbersThatAreNoneBecomeNull)
{
    if (!hasPython())
        GTEST_SKIP() << "no Python to ask";
    Scene3ds scene = boxScene();
    scene.lights = {{.name = "Lamp", .position = {NAN, 0, INFINITY}}};
    write("odd.3ds", scene);
    EXPECT_EQ(ask(run({"info", "odd.3ds", "--json"}).out, "d['lights'][0]['position']"), "[None, 0, None]");
}

TEST_F(Info, LooksForImagesWhereItIsTold)
{
    if (!hasPython())
        GTEST_SKIP() << "no Python to ask";
    writeExample();
    folder.write("maps/gone.tga", writeTga(Picture(4, 4, 0xFFFFFFFF)));
    const RunResult result = run({"info", "example.3ds", "--json", "--textures", "maps"});
    EXPECT_EQ(ask(result.out, "[i['found'] for i in d['materials'][0]['images']]"), "[False, True, False]");
}

TEST_F(Info, ClassicTellsWhatOldHostsRead)
{
    if (!hasPython())
        GTEST_SKIP() << "no Python to ask";
    Scene3ds scene = boxScene();
    scene.materials[0].specular.resize(1);
    scene.materials.push_back(plainMaterial("second", 0.1f, 0.1f, 0.1f));
    write("two.3ds", scene);
    EXPECT_EQ(ask(run({"info", "two.3ds", "--json"}).out, "len(d['materials'])"), "2");
    EXPECT_EQ(ask(run({"info", "two.3ds", "--json", "--classic"}).out, "len(d['materials'])"), "1");
}

TEST_F(Info, SceneOfNothingIsStillAScene)
{
    if (!hasPython())
        GTEST_SKIP() << "no Python to ask";
    write("bare.3ds", Scene3ds{});
    const RunResult result = run({"info", "bare.3ds", "--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(ask(result.out, "(d['meshes'], d['materials'], d['lights'], d['cameras'])"),
              "([], [], [], [])");
    EXPECT_EQ(run({"info", "bare.3ds"}).err, "");
}
