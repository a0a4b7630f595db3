// Every name that the library exports is told of in its header: Doxygen finds none without a comment, nor a
// comment that it can't read.

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/tempfolder.h"

// Runs Doxygen over headers. @return what it complained of
static std::string complaints(const TempFolder& folder, const std::string& headers)
{
    const std::string settings =
        "{ cat Doxyfile; echo 'INPUT = " + headers + "'; echo 'OUTPUT_DIRECTORY = " + folder.root() +
        "'; echo GENERATE_HTML = NO; echo GENERATE_XML = YES; echo WARN_AS_ERROR = FAIL_ON_WARNINGS; }";
    const std::string command =
        "cd '" VORNIK_SOURCE "' && " + settings + " | doxygen - > '" + folder.path("output") + "' 2>&1";
    const int status = std::system(command.c_str());
    const std::string output = folder.read("output");
    return status != 0 && output.empty() ? "doxygen failed" : output;
}

class Reference : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (std::system("doxygen --version > /dev/null 2>&1") != 0)
            GTEST_SKIP() << "no Doxygen";
    }

    TempFolder folder;
};

TEST_F(Reference, TellsOfEveryName)
{
    EXPECT_EQ(complaints(folder, "include/vornik docs/reference.md"), "");
}

// One comment beside or above several names of a declaration goes for all of them.
TEST_F(Reference, WouldMissANameWithoutComment)
{
    const std::string good =
        folder.write("good.h", std::string("/// A place.\nstruct Place\n{\n"
                                           "    float x, y; ///< in the window\n"
                                           "    /// Of the window.\n    int a, b, c;\n};\n"));
    EXPECT_EQ(complaints(folder, good), "");
    const std::string bad = folder.write("bad.h", std::string("/// A place.\nstruct Place\n{\n"
                                                              "    float x, y; ///< in the window\n"
                                                              "    float z;\n};\n"));
    EXPECT_NE(complaints(folder, bad).find("Member z"), std::string::npos);
}
