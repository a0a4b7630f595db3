#include "platform/listing.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/tempfolder.h"

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
    const std::vector<ListedFile> files = vrkListFiles(folder.path("*.txt").c_str());
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[0].name, "C.txt");
    EXPECT_EQ(files[0].size, 1u);
    EXPECT_EQ(files[1].name, "a.txt");
    EXPECT_EQ(files[1].size, 0u);
    EXPECT_EQ(files[2].name, "b.txt");
    EXPECT_EQ(files[2].size, 3u);
}

TEST_F(Listing, StarsTakeAnyCharactersAndQuestionMarksOne)
{
    for (const char* name : {"ab", "abc", "aXbXc", "acb", ".hidden", "a.b.c"})
        folder.write(name, std::string("x"));
    EXPECT_EQ(names("a*c"), (Names{"a.b.c", "aXbXc", "abc"}));
    EXPECT_EQ(names("a?"), (Names{"ab"}));
    EXPECT_EQ(names("a?*"), (Names{"a.b.c", "aXbXc", "ab", "abc", "acb"}));
    EXPECT_EQ(names("*b*c"), (Names{"a.b.c", "aXbXc", "abc"}));
    EXPECT_EQ(names("??????*"), (Names{".hidden"}));
    EXPECT_EQ(names("***b"), (Names{"ab", "acb"}));
    EXPECT_EQ(names("a*x"), (Names{}));
    EXPECT_EQ(names("*"), (Names{".", "..", ".hidden", "a.b.c", "aXbXc", "ab", "abc", "acb"}));
}

TEST_F(Listing, APatternForAnyExtensionTakesNamesWithoutOne)
{
    for (const char* name : {"plain", "with.txt", "other"})
        folder.write(name, std::string("x"));
    EXPECT_EQ(names("*.*"), (Names{".", "..", "other", "plain", "with.txt"}));
    EXPECT_EQ(names("p*.*"), (Names{"plain"}));
    EXPECT_EQ(names("other.*"), (Names{"other"}));
    EXPECT_EQ(names("*."), (Names{".", ".."}));
}

TEST_F(Listing, CaseIsNoMatterAndAllThatMatchAreShown)
{
    folder.write("Data/one.3DS", std::string("x"));
    folder.write("Data/ONE.3ds", std::string("x"));
    EXPECT_EQ(names("Data/*.3dS"), (Names{"ONE.3ds", "one.3DS"}));
    EXPECT_EQ(names("Data/oNE.3ds"), (Names{"ONE.3ds", "one.3DS"}));
}

TEST_F(Listing, FoldersAreFoundAsForOpening)
{
    folder.write("Some/Folder/file", std::string("x"));
    EXPECT_EQ(names("SOME\\folder\\F*"), (Names{"file"}));
    EXPECT_EQ(names("some/./FOLDER\\..\\f*"), (Names{"Folder"}));
    EXPECT_EQ(names("none\\*"), (Names{}));
    EXPECT_EQ(names("Some/Folder/file/*"), (Names{}));
    EXPECT_EQ(names("S*/Folder/*"), (Names{})); // only the last component is a pattern
}

TEST_F(Listing, FoldersAreListedLikeFilesAndCountNoBytes)
{
    folder.write("sub/file", std::string("x"));
    const std::vector<ListedFile> files = vrkListFiles(folder.path("s*").c_str());
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].name, "sub");
    EXPECT_EQ(files[0].size, 0u);
    EXPECT_EQ(names("sub/"), (Names{}));
}

TEST_F(Listing, RelativePatternsStartInTheCurrentFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.root());
    folder.write("here.txt", std::string("12"));
    EXPECT_EQ(vrkListFiles("HERE.*").size(), 1u);
    EXPECT_EQ(vrkListFiles("*.txt").at(0).size, 2u);
    std::filesystem::current_path(before);
    EXPECT_EQ(vrkListFiles("/t?p").at(0).name, "tmp");
}

TEST_F(Listing, LinksToNowhereHaveNoSize)
{
    std::filesystem::create_symlink("nowhere", folder.path("link"));
    const std::vector<ListedFile> files = vrkListFiles(folder.path("link").c_str());
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].size, 0u);
}

TEST_F(Listing, NoPatternListsNothing)
{
    EXPECT_TRUE(vrkListFiles(nullptr).empty());
    EXPECT_TRUE(vrkListFiles("").empty());
}

TEST_F(Listing, ManyStarsTakeNoTime)
{
    folder.write(std::string(200, 'a'), std::string());
    std::string pattern;
    for (int i = 0; i < 100; ++i)
        pattern += "*a";
    EXPECT_EQ(names(pattern).size(), 1u);
    EXPECT_EQ(names(pattern + "b").size(), 0u);
}
