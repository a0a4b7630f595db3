#include "platform/listing.h"

#include <gtest/gtest.h>

#include "tests/support/tempfolder.h"
#include "tests/support/workingfolder.h"

class Listing : public ::testing::Test
{
protected:
    std::vector<std::string> names(const std::string& pattern) const
    {
        std::vector<std::string> found;
        for (const ListedFile& file : vrkListFiles(folder.path(pattern).c_str()))
            found.push_back(file.name);
        return found;
    }

    TempFolder folder;
};

using Names = std::vector<std::string>;

TEST_F(Listing, NamesComeInByteOrderWithTheirSizes)
{
    folder.write("b.txt", std::string("123"));
    folder.write("C.txt", std::string("1"));
    folder.write("a.txt", std::string());
    folder.write("other", std::string("1"));
    const std::vector<ListedFile> files = vrkListFiles(folder.path("*.txt").c_str());
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[0].name, "C.txt");
    EXPECT_EQ(files[0].size, 1u);
    EXPECT_EQ(files[1].name, "a.txt");
    EXPECT_EQ(files[1].size, 0u);
    EXPECT_EQ(files[2].name, "b.txt");
    EXPECT_EQ(files[2].size, 3u);
}

TEST_F(Listing, PatternsAndFoldersAreTheSystemsOwn)
{
    folder.write("Some/Folder/plain", std::string("x"));
    folder.write("Some/Folder/with.txt", std::string("x"));
    EXPECT_EQ(names("SOME\\folder\\*.*"), (Names{".", "..", "plain", "with.txt"}));
    EXPECT_EQ(names("some/FOLDER/W*.t?t"), (Names{"with.txt"}));
    EXPECT_EQ(names("none\\*"), (Names{}));
    EXPECT_EQ(names("Some/Folder/plain/*"), (Names{}));
}

TEST_F(Listing, FoldersAreListedLikeFilesAndCountNoBytes)
{
    folder.write("sub/file", std::string("x"));
    const std::vector<ListedFile> files = vrkListFiles(folder.path("s*").c_str());
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].name, "sub");
    EXPECT_EQ(files[0].size, 0u);
}

TEST_F(Listing, RelativePatternsStartInTheCurrentFolder)
{
    const WorkingFolder inside(folder.root());
    folder.write("here.txt", std::string("12"));
    EXPECT_EQ(vrkListFiles("HERE.*").size(), 1u);
    EXPECT_EQ(vrkListFiles("*.txt").at(0).size, 2u);
}

TEST_F(Listing, NoPatternListsNothing)
{
    EXPECT_TRUE(vrkListFiles(nullptr).empty());
    EXPECT_TRUE(vrkListFiles("").empty());
}
