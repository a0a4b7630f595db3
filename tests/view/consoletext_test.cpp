#include "apps/vornik/view/consoletext.h"

#include <gtest/gtest.h>

static void press(ConsoleText* console, EditKey key, int times = 1)
{
    for (int i = 0; i < times; ++i)
        EXPECT_FALSE(console->press(key));
}

static void enter(ConsoleText* console, const std::string& line)
{
    console->type(line);
    EXPECT_TRUE(console->press(EditKey::enter));
    EXPECT_EQ(console->takeLine(), line);
}

TEST(ConsoleText, ShowsTheLastLinesAtTheBottom)
{
    ConsoleText console;
    console.setSize(20, 3);
    console.append("one\n");
    EXPECT_EQ(console.row(0), "");
    EXPECT_EQ(console.row(2), "one");
    console.append("two\nthree\nfour\n");
    EXPECT_EQ(console.row(0), "two");
    EXPECT_EQ(console.row(1), "three");
    EXPECT_EQ(console.row(2), "four");
    EXPECT_EQ(console.rowsAbove(), 1);
    EXPECT_EQ(console.rowsBelow(), 0);
}

TEST(ConsoleText, TextWithoutLineEndIsContinued)
{
    ConsoleText console;
    console.setSize(40, 3);
    console.append("Free memory: ");
    console.append("12 Kbytes\n\nnext");
    EXPECT_EQ(console.row(0), "Free memory: 12 Kbytes");
    EXPECT_EQ(console.row(1), "");
    EXPECT_EQ(console.row(2), "next");
}

TEST(ConsoleText, ListOfWordsBeginsALine)
{
    ConsoleText console;
    console.setSize(40, 2);
    console.append("Total faces: 12");
    console.setWords({"SET", "SCENEINFO"});
    console.type("s");
    press(&console, EditKey::complete);
    EXPECT_EQ(console.row(0), "Total faces: 12");
    EXPECT_EQ(console.row(1), "SET  SCENEINFO  ");
    console.endLine(); // ended already
    EXPECT_EQ(console.row(1), "SET  SCENEINFO  ");
}

TEST(ConsoleText, LongLinesWrapAtTheWidth)
{
    ConsoleText console;
    console.setSize(4, 3);
    console.append("abcdefghij\n");
    EXPECT_EQ(console.row(0), "abcd");
    EXPECT_EQ(console.row(1), "efgh");
    EXPECT_EQ(console.row(2), "ij");
    console.setSize(5, 3);
    EXPECT_EQ(console.row(1), "abcde");
    EXPECT_EQ(console.row(2), "fghij");
}

TEST(ConsoleText, TabsAndStrangeCharactersAreMadeVisible)
{
    ConsoleText console;
    console.setSize(40, 1);
    console.append("a.3ds\t12\n");
    EXPECT_EQ(console.row(0), "a.3ds   12");
    console.append("M\xC3\xA4rz\x01\r\n");
    EXPECT_EQ(console.row(0), "M??rz?");
}

TEST(ConsoleText, PagesScrollAndStayWhereTheyAre)
{
    ConsoleText console;
    console.setSize(10, 4);
    for (int i = 0; i < 20; ++i)
        console.append(std::to_string(i) + "\n");
    press(&console, EditKey::pageUp);
    EXPECT_EQ(console.row(3), "16");
    EXPECT_EQ(console.rowsBelow(), 3);
    console.append("new\n"); // what is read doesn't move
    EXPECT_EQ(console.row(3), "16");
    press(&console, EditKey::pageUp, 50);
    EXPECT_EQ(console.row(0), "0");
    EXPECT_EQ(console.rowsAbove(), 0);
    press(&console, EditKey::pageDown, 50);
    EXPECT_EQ(console.row(3), "new");
    // A line that is entered shows its answer.
    press(&console, EditKey::pageUp);
    enter(&console, "help");
    EXPECT_EQ(console.rowsBelow(), 0);
}

TEST(ConsoleText, KeepsTwoThousandLines)
{
    ConsoleText console;
    console.setSize(10, 4);
    for (int i = 0; i < 2100; ++i)
        console.append(std::to_string(i) + "\n");
    press(&console, EditKey::pageUp, 5000);
    EXPECT_EQ(console.row(0), "100");
    console.clear();
    EXPECT_EQ(console.row(0), "");
    EXPECT_EQ(console.rowsAbove(), 0);
}

TEST(ConsoleText, CursorMovesAndEditsInTheMiddle)
{
    ConsoleText console;
    console.type("help");
    press(&console, EditKey::left, 2);
    console.type("XY");
    EXPECT_EQ(console.line(), "heXYlp");
    EXPECT_EQ(console.cursor(), 4);
    press(&console, EditKey::backspace);
    press(&console, EditKey::erase);
    EXPECT_EQ(console.line(), "heXp");
    press(&console, EditKey::home);
    press(&console, EditKey::backspace);
    press(&console, EditKey::left);
    EXPECT_EQ(console.cursor(), 0);
    press(&console, EditKey::end);
    press(&console, EditKey::erase);
    press(&console, EditKey::right);
    EXPECT_EQ(console.cursor(), 4);
    EXPECT_EQ(console.line(), "heXp");
    press(&console, EditKey::clearLine);
    EXPECT_EQ(console.line(), "");
}

TEST(ConsoleText, TakesNoMoreThanAConsoleLineOfPrintableCharacters)
{
    ConsoleText console;
    console.type("a\tb\n\xC3\xBC");
    EXPECT_EQ(console.line(), "ab");
    console.type(std::string(300, 'x'));
    EXPECT_EQ(console.line().size(), 255u);
    EXPECT_EQ(console.cursor(), 255);
}

TEST(ConsoleText, HistoryGoesBackAndComesHome)
{
    ConsoleText console;
    enter(&console, "first");
    enter(&console, "second");
    enter(&console, "second"); // once is enough
    console.type("unfinished");
    press(&console, EditKey::up);
    EXPECT_EQ(console.line(), "second");
    EXPECT_EQ(console.cursor(), 6);
    press(&console, EditKey::up, 5);
    EXPECT_EQ(console.line(), "first");
    press(&console, EditKey::down);
    EXPECT_EQ(console.line(), "second");
    press(&console, EditKey::down, 5);
    EXPECT_EQ(console.line(), "unfinished");
    press(&console, EditKey::clearLine);
    EXPECT_TRUE(console.press(EditKey::enter));
    EXPECT_EQ(console.takeLine(), ""); // and stays out of the history
    press(&console, EditKey::up);
    EXPECT_EQ(console.line(), "second");
}

TEST(ConsoleText, TabCompletesTheOnlyWordThatFits)
{
    ConsoleText console;
    console.setWords({"ACTIVECAMERA", "ACTIVETLIST", "HELP"});
    console.type("he");
    press(&console, EditKey::complete);
    EXPECT_EQ(console.line(), "HELP ");
    console.type("acti");
    EXPECT_EQ(console.wordAtCursor(), "acti");
    press(&console, EditKey::complete);
    EXPECT_EQ(console.line(), "HELP ACTIVE");
    console.type("t");
    press(&console, EditKey::complete);
    EXPECT_EQ(console.line(), "HELP ACTIVETLIST ");
}

TEST(ConsoleText, TabListsWordsThatShareNoMore)
{
    ConsoleText console;
    console.setSize(60, 2);
    console.setWords({"GAMMA", "GET", ""});
    console.type("G");
    press(&console, EditKey::complete);
    EXPECT_EQ(console.line(), "G"); // all that both share
    EXPECT_EQ(console.row(1), "GAMMA  GET  ");
    console.type("zz");
    press(&console, EditKey::complete);
    EXPECT_EQ(console.line(), "Gzz");
}

TEST(ConsoleText, TabKeepsWhatStandsBehindTheCursor)
{
    ConsoleText console;
    console.setWords({"scenes/"});
    console.type("load3ds sc maps");
    press(&console, EditKey::left, 5);
    press(&console, EditKey::complete);
    EXPECT_EQ(console.line(), "load3ds scenes/ maps"); // a folder goes on
    EXPECT_EQ(console.cursor(), 15);
}
