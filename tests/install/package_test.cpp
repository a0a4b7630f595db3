// The Debian packages: what they hold and need, and that a system takes them and lets them go again.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "tests/install/shell.h"
#include "tests/support/tempfolder.h"

namespace fs = std::filesystem;

// The packages are made once for all tests.
class Package : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        if (shell("/", "command -v dpkg-deb dpkg-shlibdeps").status != 0)
            return;
        made = new TempFolder;
        const ShellResult packed =
            shell(VORNIK_BUILD_FOLDER, "'" CPACK_PROGRAM "' -B '" + made->root() + "'");
        EXPECT_EQ(packed.status, 0) << packed.out;
        fs::remove_all(made->path("_CPack_Packages"));
    }
    static void TearDownTestSuite()
    {
        delete made;
        made = nullptr;
    }
    void SetUp() override
    {
        if (!made)
            GTEST_SKIP() << "dpkg-deb and dpkg-shlibdeps make packages";
    }

    static std::string file(const std::string& package)
    {
        return made->path(package + "_" VORNIK_VERSION "_" + architecture() + ".deb");
    }
    static std::string architecture()
    {
        const std::string text = shell("/", "dpkg --print-architecture").out;
        return text.substr(0, text.find('\n'));
    }
    static std::string field(const std::string& package, const std::string& name)
    {
        const std::string text = shell("/", "dpkg-deb -f '" + file(package) + "' " + name).out;
        return text.substr(0, text.find_last_not_of('\n') + 1);
    }
    /// Paths of a package without its folders.
    static std::set<std::string> content(const std::string& package)
    {
        std::set<std::string> paths;
        for (const std::string& line : linesOf(shell("/", "dpkg-deb -c '" + file(package) + "'").out))
        {
            EXPECT_NE(line.find(" root/root "), std::string::npos) << line;
            if (line[0] == 'd')
                continue;
            const std::string path = line.substr(line.find("./"));
            paths.insert(path.substr(2, path.find(' ') - 2));
        }
        return paths;
    }
    static bool needs(const std::string& package, const std::string& other)
    {
        return (", " + field(package, "Depends") + ",").find(", " + other) != std::string::npos;
    }

    static TempFolder* made;
};

TempFolder* Package::made = nullptr;

static const std::string libraries = "usr/" INSTALL_LIBDIR "/";

static std::set<std::string> withPapers(const std::string& package, std::set<std::string> files)
{
    files.insert("usr/share/doc/" + package + "/copyright");
    files.insert("usr/share/doc/" + package + "/changelog.gz");
    return files;
}

TEST_F(Package, OfTheLibraryHoldsTheLibrary)
{
    EXPECT_EQ(content("libvornik0"), withPapers("libvornik0", {libraries + "libvornik.so.0",
                                                               libraries + "libvornik.so." VORNIK_VERSION}));
}

TEST_F(Package, OfTheToolsHoldsToolManualAndCompletion)
{
    EXPECT_EQ(content("vornik-tools"),
              withPapers("vornik-tools", {"usr/bin/vornik", "usr/share/man/man1/vornik.1.gz",
                                          "usr/share/bash-completion/completions/vornik",
                                          "usr/share/fish/vendor_completions.d/vornik.fish"}));
}

TEST_F(Package, ForDevelopmentHoldsHeadersAndWhatFindsThem)
{
    const std::set<std::string> files = content("libvornik-dev");
    for (const char* header : {"vornik/vornik.h", "vornik/scene/scene.h"})
        EXPECT_EQ(files.count(std::string("usr/include/") + header), 1u) << header;
    for (const char* name : {"libvornik.so", "pkgconfig/vornik.pc", "cmake/Vornik/VornikConfig.cmake",
                             "cmake/Vornik/VornikConfigVersion.cmake", "cmake/Vornik/VornikTargets.cmake"})
        EXPECT_EQ(files.count(libraries + name), 1u) << name;
}

TEST_F(Package, TellsWhatItIs)
{
    for (const std::string package : {"libvornik0", "libvornik-dev", "vornik-tools"})
    {
        EXPECT_EQ(field(package, "Package"), package);
        EXPECT_EQ(field(package, "Version"), VORNIK_VERSION);
        EXPECT_EQ(field(package, "Architecture"), architecture());
        EXPECT_EQ(field(package, "Maintainer").rfind("Vornik developers <", 0), 0u);
        EXPECT_GE(linesOf(field(package, "Description")).size(), 3u) << package;
    }
    EXPECT_EQ(field("libvornik0", "Section"), "libs");
    EXPECT_EQ(field("libvornik-dev", "Section"), "libdevel");
    EXPECT_EQ(field("vornik-tools", "Section"), "graphics");
}

TEST_F(Package, NeedsWhatItsProgramsLink)
{
    for (const char* other : {"libc6 ", "libstdc++6 ", "libegl1", "libglx0", "libopengl0", "libx11-6"})
        EXPECT_TRUE(needs("libvornik0", other)) << other << " in " << field("libvornik0", "Depends");
    EXPECT_FALSE(needs("libvornik0", "libpng")) << field("libvornik0", "Depends");
    for (const char* other : {"libpng16-16", "libedit2", "libvornik0 (= " VORNIK_VERSION ")"})
        EXPECT_TRUE(needs("vornik-tools", other)) << other << " in " << field("vornik-tools", "Depends");
    EXPECT_EQ(field("libvornik-dev", "Depends"), "libvornik0 (= " VORNIK_VERSION ")");
    EXPECT_EQ(shell("/", "dpkg-deb -I '" + file("libvornik0") + "' shlibs").out,
              "libvornik 0 libvornik0 (= " VORNIK_VERSION ")\n");
}

TEST_F(Package, ShipsStrippedProgramsWithoutPathsOfTheBuild)
{
    const TempFolder root;
    for (const std::string package : {"libvornik0", "vornik-tools"})
        ASSERT_EQ(shell("/", "dpkg-deb -x '" + file(package) + "' '" + root.root() + "'").status, 0);
    for (const std::string& program : {root.path(libraries + "libvornik.so.0"), root.path("usr/bin/vornik")})
    {
        const std::string told = shell("/", "readelf -dWS '" + program + "'").out;
        EXPECT_NE(told.find("NEEDED"), std::string::npos) << told;
        EXPECT_EQ(told.find("RUNPATH"), std::string::npos) << told;
        EXPECT_EQ(told.find(".debug_info"), std::string::npos) << told;
    }
}

// Another root with a package database of its own; without being root as if.
static ShellResult dpkg(const TempFolder& root, const std::string& arguments)
{
    return shell("/", std::string("PATH=\"$PATH:/usr/sbin:/sbin\" ") +
                          (shell("/", "[ \"$(id -u)\" -eq 0 ]").status == 0 ? "" : "fakeroot ") +
                          "dpkg --root='" + root.root() +
                          "' --force-not-root --force-script-chrootless --force-depends " + arguments);
}

TEST_F(Package, InstallsRunsAndGoesAgain)
{
    if (shell("/", "[ \"$(id -u)\" -eq 0 ] || command -v fakeroot").status != 0)
        GTEST_SKIP() << "needs to be root, or fakeroot";
    const TempFolder root;
    for (const char* folder : {"var/lib/dpkg/info", "var/lib/dpkg/updates", "var/lib/dpkg/triggers"})
        fs::create_directories(root.path(folder));
    root.write("var/lib/dpkg/status", std::string());

    const ShellResult installed = dpkg(root, "-i '" + file("libvornik0") + "' '" + file("libvornik-dev") +
                                                 "' '" + file("vornik-tools") + "'");
    ASSERT_EQ(installed.status, 0) << installed.out;
    EXPECT_NE(dpkg(root, "-s vornik-tools").out.find("install ok installed"), std::string::npos);
    EXPECT_EQ(dpkg(root, "--verify").out, "");

    const TempFolder work;
    work.write("scene.3ds", smallScene());
    const ShellResult ran = shell(work.root(), "LD_LIBRARY_PATH='" + root.path(libraries) + "' '" +
                                                   root.path("usr/bin/vornik") + "' info scene.3ds");
    EXPECT_EQ(ran.status, 0) << ran.out;

    EXPECT_EQ(dpkg(root, "-P vornik-tools libvornik-dev libvornik0").status, 0);
    for (const char* left : {"usr/bin/vornik", "usr/include/vornik", "usr/share/doc/libvornik0"})
        EXPECT_FALSE(fs::exists(root.path(left))) << left;
    EXPECT_FALSE(fs::exists(root.path(libraries + "libvornik.so.0")));
}
