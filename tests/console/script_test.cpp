#include "tests/console/consoletest.h"

#include <filesystem>

class Script : public ConsoleTest
{
protected:
    // What a script of this content says.
    std::string ran(const std::string& content, int number = 0)
    {
        folder.write("run.txt", content);
        EXPECT_EQ(console.readScript("run.txt"), number);
        return drained(console);
    }

    std::vector<std::string> lines(const std::string& content)
    {
        FILE* file = std::fopen(folder.write("lines.txt", content).c_str(), "rb");
        std::vector<std::string> read;
        while (!std::feof(file))
        {
            String line = console.readln(file);
            read.push_back(std::string(line.toChar(), static_cast<size_t>(line.length())));
        }
        std::fclose(file);
        return read;
    }
};

using Lines = std::vector<std::string>;

TEST_F(Script, CommandsBeginWithAHash)
{
    EXPECT_EQ(ran("EXIT\n"), "");
    EXPECT_FALSE(console.exitRequest());
    EXPECT_EQ(ran("#EXIT\n"), ">EXIT\nExit requested!\n");
    EXPECT_TRUE(console.exitRequest());
    EXPECT_EQ(ran("a comment\n #EXIT\n<EOF>\n\n//\n"), "");
}

TEST_F(Script, BlanksAroundACommandAreCut)
{
    EXPECT_EQ(ran("#  exit   \n"), ">exit\nExit requested!\n");
    EXPECT_EQ(ran("#GET  \n"), ">GET\nMissing parameters! Parse failed!\n");
    EXPECT_EQ(ran("#   \n"), std::string(">\nCommand not found!\n") + parseFailed);
    EXPECT_EQ(ran("#\n"), std::string(">\nCommand not found!\n") + parseFailed);
    EXPECT_EQ(ran("#\tEXIT\n"), std::string(">\tEXIT\nCommand not found!\n") + parseFailed);
}

TEST_F(Script, GoesOnBehindFaultsAndTheEndMarker)
{
    EXPECT_EQ(ran("#NOTHING\n<EOF>\n#INFO\n<EOF"),
              std::string(">NOTHING\nCommand not found!\n") + parseFailed + ">INFO\nVornik Console v0.1\n");
}

TEST_F(Script, LineEndsOfAllSystems)
{
    for (const char* end : {"\n", "\r", "\r\n", "\x1B"})
        EXPECT_EQ(ran(std::string("#INFO") + end + "#INFO" + end),
                  ">INFO\nVornik Console v0.1\n>INFO\nVornik Console v0.1\n");
}

TEST_F(Script, ALastLineWithoutEndDoublesItsLastCharacter)
{
    EXPECT_EQ(ran("#EXIT"), std::string(">EXITT\nCommand not found!\n") + parseFailed);
    EXPECT_FALSE(console.exitRequest());
    EXPECT_EQ(ran("#HEL\n#HEL"), std::string(">HEL\nCommand not found!\n") + parseFailed +
                                     ">HELL\nCommand not found!\n" + parseFailed);
}

TEST_F(Script, HostsMayFeedLinesThemselves)
{
    EXPECT_EQ(console.parseScriptLine("# info  "), 0);
    EXPECT_EQ(drained(console), ">info\nVornik Console v0.1\n");
    EXPECT_EQ(console.parseScriptLine("#FOV 500"), 52);
    EXPECT_EQ(console.parseScriptLine("#SET"), 21);
    EXPECT_EQ(console.parseScriptLine("#"), 18);
    drained(console);
    EXPECT_EQ(console.parseScriptLine("SET"), 0);
    EXPECT_EQ(console.parseScriptLine(""), 0);
    EXPECT_EQ(console.parseScriptLine(String(std::string(1024, '#').c_str())), 18);
    EXPECT_EQ(drained(console), ">" + std::string(254, '#') + "\nCommand not found!\n" + parseFailed);
}

TEST_F(Script, LinesAreReadOneByOne)
{
    EXPECT_EQ(lines("ab\ncd\n"), (Lines{"ab", "cd", ""}));
    EXPECT_EQ(lines("ab\r\ncd"), (Lines{"ab", "", "cdd"}));
    EXPECT_EQ(lines("a\x1B"
                    "b\n"),
              (Lines{"a", "b", ""}));
    EXPECT_EQ(lines(""), (Lines{""}));
    EXPECT_EQ(lines("\n\n"), (Lines{"", "", ""}));
    EXPECT_EQ(lines("x"), (Lines{"xx"}));
}

TEST_F(Script, LinesAreCutTo255Characters)
{
    for (const size_t length : {254u, 255u, 256u, 1024u, 5000u, 200000u})
    {
        const std::string line(length, 'x');
        EXPECT_EQ(lines(line + "\nend\n"), (Lines{line.substr(0, 255), "end", ""})) << length;
    }
    EXPECT_EQ(lines(std::string(254, 'x')), (Lines{std::string(255, 'x')}));
    EXPECT_EQ(lines(std::string(255, 'x')), (Lines{std::string(255, 'x')}));
}

TEST_F(Script, CommandsHave254CharactersAtMost)
{
    const std::string name(300, 'N');
    EXPECT_EQ(ran("#GET " + name + "\n"), ">GET " + name.substr(0, 250) + "\nVariable " +
                                              name.substr(0, 250) + " = -1.000000\nVariable not found\n");
}

TEST_F(Script, AZeroByteEndsTheCommandOfItsLine)
{
    EXPECT_EQ(ran(std::string("#EXIT\0 more\n#INFO\n", 18)),
              ">EXIT\nExit requested!\n>INFO\nVornik Console v0.1\n");
    EXPECT_EQ(ran(std::string("\0#EXIT\n", 7)), "");
    EXPECT_EQ(ran(std::string(100000, '\0')), "");
}

TEST_F(Script, ThatIsNotThereIsReported)
{
    EXPECT_EQ(console.readScript("none.txt"), 31);
    EXPECT_EQ(drained(console), "Script file not found!\n");
    std::filesystem::create_directory("sub");
    EXPECT_EQ(console.readScript("sub"), 31);
    EXPECT_EQ(console.readScript(""), 31);
    drained(console);
    EXPECT_EQ(said("EXECSCRIPT none.txt"), "Script file not found!\n");
    EXPECT_EQ(said("EXECSCRIPT "), "Script file not found!\n");
}

TEST_F(Script, DevicesAreNoScripts)
{
    if (!std::filesystem::exists("/dev/zero"))
        GTEST_SKIP() << "this system has no device without an end";
    EXPECT_EQ(said("EXECSCRIPT /dev/zero"), "Script file not found!\n");
}

TEST_F(Script, RunsFromTheCommandLineAndFromScripts)
{
    folder.write("Inner.txt", std::string("#info\n"));
    folder.write("outer.txt", std::string("#execscript inner.txt\n#exit\n"));
    EXPECT_EQ(said("execscript OUTER.TXT"),
              ">execscript inner.txt\n>info\nVornik Console v0.1\n>exit\nExit requested!\n");
}

static int count(const std::string& text, const std::string& part)
{
    int found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

TEST_F(Script, SixteenMayRunInsideOneAnother)
{
    const std::string text = ran("#EXECSCRIPT run.txt\n#INFO\n");
    EXPECT_EQ(count(text, ">EXECSCRIPT"), 16);
    EXPECT_EQ(count(text, ">EXECSCRIPT run.txt\nScripts are nested too deeply!\n"), 1);
    EXPECT_EQ(count(text, parseFailed), 1);
    EXPECT_EQ(count(text, ">INFO"), 16);
    // It's over, so that the next one has all levels again.
    EXPECT_EQ(count(ran("#EXECSCRIPT run.txt\n#INFO\n"), ">INFO"), 16);
}

TEST_F(Script, SixteenLevelsWorkWithoutAWord)
{
    for (int i = 1; i < 16; ++i)
        folder.write("s" + std::to_string(i) + ".txt", "#EXECSCRIPT s" + std::to_string(i + 1) + ".txt\n");
    folder.write("s16.txt", std::string("#EXIT\n"));
    EXPECT_EQ(count(said("EXECSCRIPT s1.txt"), "too deeply"), 0);
    EXPECT_TRUE(console.exitRequest());
}

static int runs;

TEST_F(Script, ThatStartsItselfManyTimesComesToAnEnd)
{
    runs = 0;
    console.addFunc(
        +[] { ++runs; }, "COUNT");
    std::string content = "#EVAL COUNT\n";
    for (int i = 0; i < 50; ++i)
        content += "#EXECSCRIPT run.txt\n";
    const std::string text = ran(content, 18);
    // 1,024 begin, of which those at the seventeenth level are refused; one more ends all.
    EXPECT_EQ(runs + count(text, "Scripts are nested too deeply!\n"), 1024);
    EXPECT_GT(runs, 16);
    EXPECT_EQ(count(text, "Too many scripts!\n"), 1);
    EXPECT_EQ(text.substr(text.find("Too many")), std::string("Too many scripts!\n") + parseFailed);
    // The next one starts from nothing.
    runs = 0;
    ran("#EVAL COUNT\n");
    EXPECT_EQ(runs, 1);
}

TEST_F(Script, MayRunManyOthers)
{
    runs = 0;
    console.addFunc(
        +[] { ++runs; }, "COUNT");
    folder.write("inner.txt", std::string("#EVAL COUNT\n"));
    std::string content;
    for (int i = 0; i < 1023; ++i)
        content += "#EXECSCRIPT inner.txt\n";
    ran(content);
    EXPECT_EQ(runs, 1023);
    ran(content + "#EXECSCRIPT inner.txt\n", 18);
    EXPECT_EQ(runs, 2 * 1023);
}

TEST_F(Script, FilesThatAreNotThereDoNotCountAsScripts)
{
    std::string content;
    for (int i = 0; i < 1100; ++i)
        content += "#EXECSCRIPT none.txt\n";
    EXPECT_EQ(count(ran(content + "#EXIT\n"), "Script file not found!\n"), 1100);
    EXPECT_TRUE(console.exitRequest());
}
