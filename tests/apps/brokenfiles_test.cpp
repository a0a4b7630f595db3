#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

// Each file that can't be served gives one line that names it, status 1 and no picture.
class BrokenFiles : public ProgramTest
{
protected:
    void expectRefused(const std::string& file, const std::string& reason)
    {
        for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
                 {"render", file, "-o", "picture.png"}, {"info", file}, {"info", file, "--json"}})
        {
            const RunResult result = run(command);
            EXPECT_EQ(result.status, 1);
            EXPECT_EQ(lineCount(result.err), 1) << result.err;
            EXPECT_NE(result.err.find(file), std::string::npos) << result.err;
            EXPECT_NE(result.err.find(reason), std::string::npos) << result.err;
            EXPECT_EQ(result.out, "");
        }
        EXPECT_FALSE(exists("picture.png"));
    }
};

TEST_F(BrokenFiles, MissingFileIsNamed)
{
    expectRefused("gone.3ds", "can't be opened");
}

TEST_F(BrokenFiles, FolderIsNoScene)
{
    folder.write("scene.3ds/inside", std::string("x"));
    expectRefused("scene.3ds", "can't be opened");
}

TEST_F(BrokenFiles, EmptyFileIsNamed)
{
    folder.write("empty.3ds", std::string());
    expectRefused("empty.3ds", "empty");
}

TEST_F(BrokenFiles, OtherContentIsNamed)
{
    folder.write("text.3ds", std::string("this is no scene"));
    expectRefused("text.3ds", "not a .3DS file");
    folder.write("one.3ds", std::string("M"));
    expectRefused("one.3ds", "not a .3DS file");
}

TEST_F(BrokenFiles, CutFileIsNamedWhereverItIsCut)
{
    const std::vector<uint8_t> whole = build3ds(boxScene());
    for (const size_t length :
         {size_t(2), size_t(5), size_t(6), size_t(7), whole.size() / 3, whole.size() - 1})
    {
        folder.write("cut.3ds",
                     std::vector<uint8_t>(whole.begin(), whole.begin() + static_cast<long>(length)));
        expectRefused("cut.3ds", "cut short");
    }
}

TEST_F(BrokenFiles, CutFileIsDrawnAsFarAsItGoesOnRequest)
{
    Scene3ds scene = boxScene();
    scene.lights = {{.name = "Lamp", .position = {0, 0, 9}}};
    std::vector<uint8_t> bytes = build3ds(scene);
    bytes.resize(bytes.size() - 10);
    folder.write("cut.3ds", bytes);
    EXPECT_GT(render("cut.3ds", {"--partial"}).countUnlike({0, 0, 0}), 1000);
}

TEST_F(BrokenFiles, SceneWithoutFacesHasNothingToDraw)
{
    Scene3ds scene;
    scene.materials = {plainMaterial("red", 1, 0, 0)};
    write("bare.3ds", scene);
    const RunResult result = run({"render", "bare.3ds", "-o", "picture.png"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "vornik: bare.3ds: there is nothing in it to draw\n");
    EXPECT_FALSE(exists("picture.png"));
    EXPECT_EQ(run({"info", "bare.3ds"}).status, 0);
}

TEST_F(BrokenFiles, HiddenMeshesAreNothingToDraw)
{
    Scene3ds scene = boxScene();
    scene.meshes[0].hidden = true;
    write("hidden.3ds", scene);
    EXPECT_EQ(run({"render", "hidden.3ds", "-o", "picture.png"}).status, 1);
}

TEST_F(BrokenFiles, FlippedBytesNeverCrash)
{
    const std::vector<uint8_t> whole = build3ds(boxScene());
    for (size_t at = 6; at < whole.size(); at += whole.size() / 12)
    {
        std::vector<uint8_t> bytes = whole;
        bytes[at] ^= 0xFF;
        folder.write("odd.3ds", bytes);
        const RunResult drawn = run({"render", "odd.3ds", "-o", "picture.png", "--size", "40x30"});
        EXPECT_TRUE(drawn.status == 0 || drawn.status == 1) << "byte " << at << ": " << drawn.err;
        const RunResult told = run({"info", "odd.3ds"});
        EXPECT_TRUE(told.status == 0 || told.status == 1) << "byte " << at << ": " << told.err;
    }
}

TEST_F(BrokenFiles, PictureThatCannotBeWrittenIsNamed)
{
    write("box.3ds", boxScene());
    for (const std::string name : {"no/such/folder.png", "no/such/folder.jpg"})
    {
        const RunResult result = run({"render", "box.3ds", "-o", name, "--size", "40x30"});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(lineCount(result.err), 1) << result.err;
        EXPECT_NE(result.err.find(name), std::string::npos) << result.err;
    }
}
