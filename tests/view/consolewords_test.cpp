#include "apps/vornik/consolewords.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/tempfolder.h"

using Words = std::vector<std::string>;

static int ignore(int number)
{
    return number;
}

static void doNothing() {}

TEST(ConsoleWords, CommandsComeFirst)
{
    const Console console;
    const Words words = wordsFor(console, "lo");
    EXPECT_EQ(words.size(), 21u);
    EXPECT_TRUE(std::is_sorted(words.begin(), words.end()));
    EXPECT_NE(std::find(words.begin(), words.end(), "LOAD3DS"), words.end());
    EXPECT_EQ(wordsFor(console, "help "), words);
    EXPECT_TRUE(wordsFor(console, "help set ").empty());
}

// The list of commands is the console's own.
TEST(ConsoleWords, CommandsAreAllKnown)
{
    Console console;
    for (const std::string& word : wordsFor(console, ""))
    {
        std::vector<char> text(VRK_CONSOLE_TEXT);
        console.getText(text.data());
        console.command(("HELP " + word).c_str());
        console.getText(text.data());
        EXPECT_EQ(std::string(text.data()).find("does not exist"), std::string::npos) << word;
    }
}

TEST(ConsoleWords, EvalTakesFunctionsAndSetTakesVariables)
{
    Console console;
    float speed = 1;
    console.addFunc(doNothing, "shot");
    console.addFunc(ignore, "camera");
    console.addVar(&speed, "speed");
    console.addVar(&speed);
    EXPECT_EQ(wordsFor(console, "eval c"), (Words{"CAMERA", "SHOT"}));
    EXPECT_EQ(wordsFor(console, "Set s"), (Words{"SPEED", "VAR1"}));
    EXPECT_EQ(wordsFor(console, "GET "), (Words{"SPEED", "VAR1"}));
    EXPECT_TRUE(wordsFor(console, "set speed ").empty());
    EXPECT_TRUE(wordsFor(console, "bogus x").empty());
}

TEST(ConsoleWords, LoadTakesFilesAndFolders)
{
    const TempFolder folder;
    folder.write("boat.3ds", std::string("x"));
    folder.write("maps/sail.jpg", std::string("x"));
    folder.write("with blank.3ds", std::string("x"));
    folder.write(".hidden", std::string("x"));
    const Console console;
    const std::string root = folder.root() + "/";
    const Words all = {root + "boat.3ds", root + "maps/"};
    EXPECT_EQ(wordsFor(console, "load3ds " + root), all);
    EXPECT_EQ(wordsFor(console, "load3ds x.3ds " + root + "m"), all);
    EXPECT_EQ(wordsFor(console, "dir " + root + "maps/"), (Words{root + "maps/sail.jpg"}));
    EXPECT_TRUE(wordsFor(console, "execscript /no/such/folder/").empty());
}
