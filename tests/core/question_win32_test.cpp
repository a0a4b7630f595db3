// The question sink of the error log: a message box, answered by a thread that waits for it.

#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/support/messagebox_win32.h"
#include "vornik/core/errorlog.h"

static int report(const char* message, int number, int button, MessageBoxLook* look)
{
    MessageBoxUser user(button);
    vrkInitErrorLog(1);
    const int result = vrkPutToErrorLog(message, number);
    vrkInitErrorLog(3);
    *look = user.finish();
    return result;
}

TEST(Question, YesGoesOnWithTheNumber)
{
    MessageBoxLook look;
    EXPECT_EQ(report("Trouble", 41, IDYES, &look), 41);
    EXPECT_EQ(look.text, "Trouble\n\nContinue?\n");
    EXPECT_EQ(look.owner, nullptr);
    EXPECT_TRUE(look.hasYes);
    EXPECT_TRUE(look.hasNo);
    EXPECT_FALSE(look.hasCancel);
}

TEST(Question, InformationIsAskedAboutToo)
{
    for (const int number : {0, 50})
    {
        MessageBoxLook look;
        EXPECT_EQ(report("Start loading...", number, IDYES, &look), number);
        EXPECT_EQ(look.text, "Start loading...\n\nContinue?\n");
    }
}

TEST(QuestionDeathTest, NoEndsTheProcessWithStatusZero)
{
    MessageBoxLook look;
    EXPECT_EXIT(
        {
            report("Trouble", 41, IDNO, &look);
            std::_Exit(3);
        },
        testing::ExitedWithCode(0), "");
}
