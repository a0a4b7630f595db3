// Vornik as a subdirectory of another project, compiled with it.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/install/shell.h"
#include "tests/support/tempfolder.h"

namespace fs = std::filesystem;

TEST(Subdirectory, GivesAProjectTheLibraryAndNothingElse)
{
    const TempFolder folder;
    folder.write("scene.3ds", smallScene());
    const ShellResult built = shell(
        folder.root(), "'" CMAKE_PROGRAM "' -S '" PARENT_SOURCES "' -B build -DVORNIK='" VORNIK_SOURCE_FOLDER
                       "' -DCMAKE_CXX_COMPILER='" HOST_COMPILER "' && '" CMAKE_PROGRAM
                       "' --build build --parallel 2 && '" CMAKE_PROGRAM "' --install build --prefix prefix");
    ASSERT_EQ(built.status, 0) << built.out;

    const ShellResult ran = shell(folder.root(), "\"$(find build -name my_host -type f)\" scene.3ds");
    EXPECT_EQ(ran.status, 0) << ran.out;
    EXPECT_EQ(ran.out, "meshes 1 cameras 1\n");

    EXPECT_TRUE(fs::exists(folder.path("prefix/bin/my_host")));
    EXPECT_FALSE(fs::exists(folder.path("prefix/include")));
    EXPECT_EQ(
        shell(folder.root(), "find build -name 'test_*' -o -name make_sample -o -name vornik -type f").out,
        "");
}
