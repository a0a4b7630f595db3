#include "platform/jpeg.h"
#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

#include <filesystem>

class ConsoleCommand : public ProgramTest
{
protected:
    // A scene that fills the picture with red, and its camera.
    std::string writeExample() const
    {
        Scene3ds scene;
        scene.materials = {plainMaterial("red", 0.8f, 0.1f, 0.1f)};
        scene.meshes = {wall("Wall", 5, -6, 6, "red")};
        scene.lights = {{.name = "Lamp",
                         .position = {0, -20, 0},
                         .color = {{1, 1, 1, COLOR_3DS_FLOAT}},
                         .innerRange = 500.0f,
                         .outerRange = 600.0f}};
        scene.cameras = {frontCamera("Eye\x1B[2J", 0, 5)};
        return write("Example.3ds", scene);
    }
    JpegImage readJpeg(const std::string& name) const
    {
        JpegImage image;
        const std::string bytes = folder.read(name);
        jpegDecode(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), false, &image);
        return image;
    }
    RunResult script(const std::string& content) const
    {
        folder.write("script.txt", content);
        return run({"console", "script.txt"});
    }
};

static int occurrences(const std::string& text, const std::string& part)
{
    int found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++found;
    return found;
}

TEST_F(ConsoleCommand, ObeysPipedLines)
{
    const RunResult result = run({"console"}, "info\nSET frame 12\r\nGET FRAME\n\nsceneinfo\nget frame");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out.substr(0, result.out.find(">sceneinfo")),
              ">info\nVornik Console v0.1\n>SET frame 12\nVariable FRAME set to 12\n>GET FRAME\n"
              "Variable FRAME = 12.000000\n>\nCommand not found!\n"
              "VRK Console parser failed to parse commandline!\n");
    EXPECT_NE(result.out.find("Total faces: 0\n>get frame\nVariable FRAME = 12.000000\n"), std::string::npos);
    EXPECT_EQ(result.status, 18);
}

TEST_F(ConsoleCommand, EndsWithTheFirstFailingNumber)
{
    EXPECT_EQ(run({"console"}, "info\n").status, 0);
    EXPECT_EQ(run({"console"}, "").status, 0);
    EXPECT_EQ(run({"console"}, "info\nset\nnothing\ninfo\n").status, 21);
    EXPECT_EQ(run({"console"}, "fov 500\nset\n").status, 52);
    EXPECT_EQ(run({"console"}, "activetlist 0\n").status, 26);
    EXPECT_EQ(script("#INFO\n#FOV 0\n#SET\n").status, 52);
    EXPECT_EQ(script("FOV 0\n").status, 0);
}

TEST_F(ConsoleCommand, ExitEndsIt)
{
    for (const RunResult& result :
         {run({"console"}, "info\nexit\nnothing\n"), script("#info\n#exit\n#nothing\n")})
    {
        EXPECT_EQ(result.out, ">info\nVornik Console v0.1\n>exit\nExit requested!\n");
        EXPECT_EQ(result.status, 0);
    }
}

TEST_F(ConsoleCommand, ReadsScriptsByTheirRules)
{
    EXPECT_EQ(script("comment\n#  info  \n<EOF>\n#HEL").out,
              ">info\nVornik Console v0.1\n>HELL\nCommand not found!\n"
              "VRK Console parser failed to parse commandline!\n");
    const RunResult result = run({"console", "-"}, "info\n#help exit\n");
    EXPECT_EQ(result.out, ">help exit\nEXIT set exitFlag on.\n\n");
    EXPECT_EQ(result.status, 0);
    folder.write("inner.txt", std::string("#info\n"));
    EXPECT_EQ(script("#execscript INNER.TXT\n").out, ">execscript INNER.TXT\n>info\nVornik Console v0.1\n");
}

TEST_F(ConsoleCommand, AScriptThatIsNotThereIsAFault)
{
    const RunResult missing = run({"console", "none.txt"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.err, "vornik: none.txt: No such file or directory\n");
    std::filesystem::create_directory(folder.path("folder"));
    EXPECT_EQ(run({"console", "folder"}).err, "vornik: folder: Is a directory\n");
    EXPECT_EQ(run({"console", "a", "b"}).status, 2);
    EXPECT_EQ(run({"console", "--size", "0x5"}).status, 2);
}

TEST_F(ConsoleCommand, LoadsScenesAndDrawsThem)
{
    writeExample();
    const RunResult result =
        run({"console", "--size", "80x60"},
            "load3ds example.3ds . /s\nsceneinfo\neval frames\neval shot\nclear3ds\neval shot\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("Total number of mesh objects: 1\n"), std::string::npos);
    EXPECT_NE(result.out.find("(Eye?[2J)\n"), std::string::npos); // nothing in a file commands the terminal
    EXPECT_NE(result.out.find("Function (SHOT) returned a value (0.000000)\n"), std::string::npos);
    EXPECT_NE(result.out.find("Camera used in functioncall is NULL!\n"), std::string::npos);
    const JpegImage first = readJpeg("Shot0000.jpg");
    ASSERT_EQ(first.width, 80);
    ASSERT_EQ(first.height, 60);
    const uint8_t* middle = &first.pixels[(30 * 80 + 40) * 3];
    EXPECT_GT(middle[0], 120);
    EXPECT_LT(middle[1], 60);
    const JpegImage second = readJpeg("Shot0001.jpg");
    ASSERT_EQ(second.width, 80);
    EXPECT_LT(second.pixels[(30 * 80 + 40) * 3], 10); // nothing is loaded any more
}

TEST_F(ConsoleCommand, LinesOfAnyLengthAndByteAreHarmless)
{
    const RunResult result =
        run({"console"}, std::string(3000000, 'x') + "\n" + std::string(5, '\0') + "\xFF\xFE\x1B[2J\n");
    EXPECT_EQ(result.status, 18);
    EXPECT_EQ(occurrences(result.out, "Command line too long!\n"), 1);
    EXPECT_EQ(result.out.find('\x1B'), std::string::npos);
}

TEST_F(ConsoleCommand, HoldsWhatManyCommandsSay)
{
    std::string lines;
    for (int i = 0; i < 3000; ++i)
        lines += "help\n";
    EXPECT_EQ(occurrences(run({"console"}, lines).out, "Current commands available:"), 3000);
}

TEST_F(ConsoleCommand, OnATerminalLinesAreEdited)
{
    if (!hasTerminals())
        GTEST_SKIP() << "no terminal to run on";
    const std::string shown = runOnTerminal({"console"}, {"inf\x7F"
                                                          "fo\r",
                                                          "\x1B[A\r", "exit\r"});
    EXPECT_EQ(shown.rfind("Vornik Console v1.0\r\nRequested Colorbits: 32", 0), 0u);
    // Typed, and once more from the history. The echo is left out.
    EXPECT_EQ(occurrences(shown, "\r\nVornik Console v0.1\r\n"), 2) << shown;
    EXPECT_EQ(shown.find(">info"), std::string::npos);
    EXPECT_NE(shown.find("Exit requested!\r\n"), std::string::npos);
}

TEST_F(ConsoleCommand, OnATerminalTheTabulatorCompletesCommands)
{
    if (!hasTerminals())
        GTEST_SKIP() << "no terminal to run on";
    const std::string shown = runOnTerminal({"console"}, {"sce\t\r", "help exi\t\r", "ex\t\t\r", "exit\r"});
    EXPECT_NE(shown.find("Scene information\r\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("Command does not exist!\r\n"),
              std::string::npos); // only the first word is completed
    EXPECT_NE(shown.find("EXECSCRIPT  EXIT  \r\n"), std::string::npos);
}

TEST_F(ConsoleCommand, OnATerminalClearClearsItAndTheEndOfInputEndsIt)
{
    if (!hasTerminals())
        GTEST_SKIP() << "no terminal to run on";
    const std::string shown = runOnTerminal({"console"}, {"cls\r", "\r", "\x04"});
    EXPECT_NE(shown.find("Clear requested!\r\n\x1B[H\x1B[2J> "), std::string::npos) << shown;
    EXPECT_EQ(shown.find("Command not found!"), std::string::npos); // an empty line asks for nothing
}
