#include "tests/apps/program.h"
#include "tests/apps/scenes.h"

class CommandLine : public ProgramTest
{
protected:
    void expectWrong(const std::vector<std::string>& arguments, const std::string& hint)
    {
        const RunResult result = run(arguments);
        EXPECT_EQ(result.status, 2) << result.out;
        EXPECT_NE(result.err.find(hint), std::string::npos) << result.err;
    }
};

TEST_F(CommandLine, TellsItsVersion)
{
    const RunResult result = run({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "vornik " VORNIK_VERSION "\n");
}

TEST_F(CommandLine, HelpShowsExamples)
{
    EXPECT_NE(run({"--help"}).out.find("render"), std::string::npos);
    for (const std::string command : {"render", "info"})
    {
        const RunResult result = run({command, "--help"});
        EXPECT_EQ(result.status, 0);
        EXPECT_NE(result.out.find("Examples:\n  vornik " + command + " harbour.3ds"), std::string::npos);
    }
}

TEST_F(CommandLine, WrongUseHasAStatusOfItsOwn)
{
    write("box.3ds", boxScene());
    expectWrong({}, "subcommand");
    expectWrong({"paint", "box.3ds"}, "subcommand");
    expectWrong({"render", "-o", "a.png"}, "FILE.3DS");
    expectWrong({"render", "box.3ds"}, "--output");
    expectWrong({"render", "box.3ds", "-o", "a.png", "--frobnicate"}, "--frobnicate");
    expectWrong({"info", "box.3ds", "--wire"}, "--wire");
}

TEST_F(CommandLine, ValuesAreChecked)
{
    write("box.3ds", boxScene());
    const std::vector<std::string> start = {"render", "box.3ds", "-o", "a.png"};
    const std::vector<std::vector<std::string>> wrong = {
        {"--size", "640"},      {"--size", "640x"},        {"--size", "0x480"},    {"--size", "640x480x3"},
        {"--size", "99999x10"}, {"--background", "mauve"}, {"--background", "12"}, {"--background", "gg0000"},
        {"--samples", "0"},     {"--samples", "9"},        {"--camera", "-1"},     {"--up", "w"},
        {"--ambient", "2"},     {"--ambient", "-0.5"},     {"--tilt", "90"}};
    for (const std::vector<std::string>& option : wrong)
    {
        std::vector<std::string> arguments = start;
        arguments.insert(arguments.end(), option.begin(), option.end());
        expectWrong(arguments, option[0]);
    }
    EXPECT_FALSE(exists("a.png"));
}

TEST_F(CommandLine, OtherPictureFormatsAreRefused)
{
    write("box.3ds", boxScene());
    for (const std::string name : {"a.bmp", "a", "png", "a.png.gif"})
    {
        expectWrong({"render", "box.3ds", "-o", name}, ".png, .jpg, .jpeg or .apng");
        EXPECT_FALSE(exists(name));
    }
}

TEST_F(CommandLine, ImageFolderMustExist)
{
    write("box.3ds", boxScene());
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"render", "box.3ds", "-o", "a.png", "--textures", "nowhere"},
                                               {"info", "box.3ds", "--textures", "nowhere"}})
    {
        const RunResult result = run(command);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err, "vornik: nowhere: no such folder\n");
    }
}

TEST_F(CommandLine, SuccessIsSilentAndLeavesThePictureOnly)
{
    write("box.3ds", boxScene());
    const RunResult result = run({"render", "box.3ds", "-o", "a.png", "--size", "40x30"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_TRUE(exists("a.png"));
    EXPECT_FALSE(exists("VRKERROR.LOG"));
}

TEST_F(CommandLine, ProgressAppearsOnTerminalsOnly)
{
    if (!hasTerminals())
        GTEST_SKIP() << "no terminal to run on";
    write("box.3ds", boxScene());
    const std::vector<std::string> command = {"render", "box.3ds", "-o", "a.png", "--size", "40x30"};
    EXPECT_NE(runOnTerminal(command).find("100 %"), std::string::npos);
    std::vector<std::string> quiet = command;
    quiet.push_back("--quiet");
    EXPECT_EQ(runOnTerminal(quiet), "");
}
