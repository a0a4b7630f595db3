// The installed tree, and hosts outside the source tree that are built with it.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "tests/install/shell.h"
#include "tests/support/tempfolder.h"

namespace fs = std::filesystem;

// A prefix, and beside it the work of one who uses it.
class Install : public ::testing::Test
{
protected:
    Install()
    {
        const ShellResult installed = installInto(prefix());
        EXPECT_EQ(installed.status, 0) << installed.out;
        folder.write("work/scene.3ds", smallScene());
    }

    std::string prefix() const { return folder.path("prefix"); }
    std::string library() const { return prefix() + "/" INSTALL_LIBDIR "/libvornik.so"; }
    ShellResult run(const std::string& command) const { return shell(folder.path("work"), command); }

    // The whole prefix goes to another place, and nothing stays at the first.
    void move() const
    {
        fs::create_directories(folder.path("elsewhere"));
        fs::rename(prefix(), folder.path("elsewhere/vornik"));
    }

    ShellResult runCMakeHost(const std::string& from) const
    {
        return run(
            "'" CMAKE_PROGRAM "' -S '" HOST_SOURCES "' -B build -DCMAKE_PREFIX_PATH='" + from +
            "' -DCMAKE_CXX_COMPILER='" HOST_COMPILER "' -DCMAKE_CXX_FLAGS='" HOST_FLAGS
            "' > cmake.log 2>&1 && '" CMAKE_PROGRAM "' --build build >> cmake.log 2>&1 || "
            "{ cat cmake.log; exit 1; }\nbuild/host scene.3ds; result=$?; ldd build/host; exit $result");
    }

    ShellResult runPkgConfigHost(const std::string& from) const
    {
        return run("export PKG_CONFIG_PATH='" + from +
                   "/" INSTALL_LIBDIR "/pkgconfig'\n"
                   "'" HOST_COMPILER "' " HOST_FLAGS " -std=c++11 '" HOST_SOURCES "/host.cpp' -o host"
                   " $(pkg-config --cflags --libs vornik) || exit 1\n"
                   "export LD_LIBRARY_PATH=\"$(pkg-config --variable=libdir vornik)\"\n"
                   "./host scene.3ds; result=$?; ldd host; exit $result");
    }

    TempFolder folder;
};

// It drew, with the library of the prefix and no other.
static void expectRan(const ShellResult& host, const std::string& prefix)
{
    EXPECT_EQ(host.status, 0) << host.out;
    EXPECT_EQ(host.out.rfind("meshes 1 cameras 1\n", 0), 0u) << host.out;
    for (const std::string& line : linesOf(host.out))
        if (line.find("libvornik.so.0 =>") != std::string::npos)
        {
            const size_t path = line.find('/');
            ASSERT_NE(path, std::string::npos) << line;
            const std::string found = line.substr(path, line.find(' ', path) - path);
            EXPECT_EQ(fs::canonical(found), fs::canonical(prefix + "/" INSTALL_LIBDIR "/libvornik.so"));
            return;
        }
    ADD_FAILURE() << "no libvornik.so.0 in " << host.out;
}

TEST_F(Install, GivesTheLibraryItsLinks)
{
    EXPECT_EQ(fs::read_symlink(library()), "libvornik.so.0");
    EXPECT_EQ(fs::read_symlink(library() + ".0"), "libvornik.so." VORNIK_VERSION);
    EXPECT_TRUE(fs::is_regular_file(library() + "." VORNIK_VERSION));
    EXPECT_NE(run("readelf -d '" + library() + "'").out.find("soname: [libvornik.so.0]"), std::string::npos);
}

TEST_F(Install, LeavesNoPathOfTheBuildBehind)
{
    const std::string library = run("readelf -d '" + this->library() + "'").out;
    EXPECT_EQ(library.find("RUNPATH"), std::string::npos) << library;
    EXPECT_EQ(library.find("RPATH"), std::string::npos) << library;
    const std::string tool = run("readelf -d '" + prefix() + "/" INSTALL_BINDIR "/vornik'").out;
    EXPECT_EQ(tool.find(VORNIK_BUILD_FOLDER), std::string::npos) << tool;
    EXPECT_NE(tool.find("runpath: [$ORIGIN/"), std::string::npos) << tool;

    const ShellResult texts =
        run("grep -rIl '" VORNIK_BUILD_FOLDER "\\|" VORNIK_SOURCE_FOLDER "' '" + prefix() + "'");
    EXPECT_EQ(texts.out, "");
}

TEST_F(Install, BringsEveryPublicHeaderAndNoOther)
{
    const ShellResult difference =
        run("diff -r '" VORNIK_SOURCE_FOLDER "/include' '" + prefix() + "/include'");
    EXPECT_EQ(difference.status, 0) << difference.out;
}

TEST_F(Install, BringsLicenceManualAndCompletion)
{
    EXPECT_TRUE(fs::exists(prefix() + "/share/doc/vornik/LICENSE"));
    EXPECT_TRUE(fs::exists(prefix() + "/share/man/man1/vornik.1"));
    EXPECT_TRUE(fs::exists(prefix() + "/share/bash-completion/completions/vornik"));
    EXPECT_TRUE(fs::exists(prefix() + "/share/fish/vendor_completions.d/vornik.fish"));
}

TEST_F(Install, ServesAHostByCMake)
{
    expectRan(runCMakeHost(prefix()), prefix());
}

TEST_F(Install, ServesAHostByPkgConfig)
{
    expectRan(runPkgConfigHost(prefix()), prefix());
}

TEST_F(Install, ServesFromAnotherPlaceAfterAMove)
{
    move();
    const std::string moved = folder.path("elsewhere/vornik");
    expectRan(runCMakeHost(moved), moved);
    expectRan(runPkgConfigHost(moved), moved);
    const ShellResult tool = run("'" + moved + "/" INSTALL_BINDIR "/vornik' info scene.3ds; ldd '" + moved +
                                 "/" INSTALL_BINDIR "/vornik' | grep libvornik");
    EXPECT_EQ(tool.status, 0) << tool.out;
    EXPECT_NE(tool.out.find(fs::canonical(folder.root()).string()), std::string::npos) << tool.out;
    EXPECT_EQ(tool.out.find(VORNIK_BUILD_FOLDER), std::string::npos) << tool.out;
}

TEST_F(Install, TellsOneVersionEverywhere)
{
    const std::string path = "PKG_CONFIG_PATH='" + prefix() + "/" INSTALL_LIBDIR "/pkgconfig' ";
    EXPECT_EQ(run(path + "pkg-config --modversion vornik").out, VORNIK_VERSION "\n");
    EXPECT_EQ(run("'" + prefix() + "/" INSTALL_BINDIR "/vornik' --version").out,
              "vornik " VORNIK_VERSION "\n");
    const std::string changes = run("grep -m 1 '^## ' '" VORNIK_SOURCE_FOLDER "/CHANGELOG.md'").out;
    EXPECT_EQ(changes.rfind("## " VORNIK_VERSION, 0), 0u) << changes;
}

TEST_F(Install, RefusesAHostThatNeedsAnotherVersion)
{
    folder.write("work/other/CMakeLists.txt", std::string("cmake_minimum_required(VERSION 3.16)\n"
                                                          "project(other LANGUAGES NONE)\n"
                                                          "set(CMAKE_SIZEOF_VOID_P 8)\n"
                                                          "find_package(Vornik ${WANTED} REQUIRED)\n"));
    const auto wants = [this](const std::string& version)
    {
        return run("rm -rf other/build; '" CMAKE_PROGRAM "' -S other -B other/build -DWANTED=" + version +
                   " -DCMAKE_PREFIX_PATH='" + prefix() +
                   "' -DCMAKE_LIBRARY_ARCHITECTURE=\"$(basename " INSTALL_LIBDIR ")\"");
    };
    EXPECT_EQ(wants(VORNIK_VERSION).status, 0) << wants(VORNIK_VERSION).out;
    EXPECT_NE(wants("0.2").status, 0);
    EXPECT_NE(wants("1.0").status, 0);
}

// All files of a prefix, relative to it.
static std::set<std::string> filesOf(const std::string& prefix)
{
    std::set<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(prefix))
        if (!entry.is_directory())
            files.insert(fs::relative(entry.path().parent_path(), prefix) / entry.path().filename());
    return files;
}

TEST_F(Install, ComesInThreePartsThatShareNoFile)
{
    std::multiset<std::string> together;
    for (const char* component : {"runtime", "development", "tools"})
    {
        const std::string part = folder.path(component);
        const ShellResult installed = installInto(part, component);
        ASSERT_EQ(installed.status, 0) << installed.out;
        const std::set<std::string> files = filesOf(part);
        EXPECT_GT(files.size(), 2u) << component;
        together.insert(files.begin(), files.end());
    }
    const std::set<std::string> whole = filesOf(prefix());
    EXPECT_EQ(together, std::multiset<std::string>(whole.begin(), whole.end()));
    EXPECT_EQ(
        filesOf(folder.path("runtime")),
        (std::set<std::string>{INSTALL_LIBDIR "/libvornik.so.0",
                               INSTALL_LIBDIR "/libvornik.so." VORNIK_VERSION, "share/doc/vornik/LICENSE"}));
}
