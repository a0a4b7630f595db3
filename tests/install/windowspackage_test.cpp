// The .zip for Windows, where the tree has been cross-built: what it holds, and a host that is linked with
// it.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/install/shell.h"
#include "tests/support/tempfolder.h"

namespace fs = std::filesystem;

static const std::string windowsBuild = VORNIK_SOURCE_FOLDER "/build/windows";

// The package, made and unpacked.
class WindowsPackage : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (const char* file : {"/bin/vornik.dll", "/bin/vornik.exe", "/CPackConfig.cmake"})
            if (!fs::exists(windowsBuild + file))
                GTEST_SKIP() << "no " << windowsBuild << file << ": cmake --build build/windows makes it";
        const ShellResult packed = shell(
            windowsBuild, "'" CPACK_PROGRAM "' -B '" + folder.path("packages") + "' && cd '" + folder.root() +
                              "' && '" CMAKE_PROGRAM "' -E tar xf packages/" + name + ".zip");
        ASSERT_EQ(packed.status, 0) << packed.out;
    }

    const std::string name = "vornik-" VORNIK_VERSION "-win64";
    TempFolder folder;
};

TEST_F(WindowsPackage, HoldsLibraryToolsAndHeaders)
{
    for (const char* file :
         {"bin/vornik.dll", "bin/vornik.exe", "lib/libvornik.dll.a", "include/vornik/vornik.h",
          "lib/cmake/Vornik/VornikConfig.cmake", "lib/pkgconfig/vornik.pc", "share/doc/vornik/LICENSE"})
        EXPECT_TRUE(fs::exists(folder.path(name + "/" + file))) << file;
}

TEST_F(WindowsPackage, NeedsNoLibraryThatWindowsLacks)
{
    const std::string told =
        shell(folder.path(name), "x86_64-w64-mingw32-objdump -p bin/vornik.dll bin/vornik.exe "
                                 "| sed -n 's/.*DLL Name: //p' | sort -uf")
            .out;
    EXPECT_NE(told.find("vornik.dll"), std::string::npos) << told;
    for (const char* other : {"libgcc", "libstdc++", "libwinpthread", "SDL2", "jpeg", "png", "zlib"})
        EXPECT_EQ(told.find(other), std::string::npos) << told;
}

TEST_F(WindowsPackage, ServesAHostByCMake)
{
    const ShellResult host =
        shell(folder.root(),
              "'" CMAKE_PROGRAM "' -S '" HOST_SOURCES "' -B build -DHOST=nowindow.cpp -DVornik_DIR='" +
                  folder.path(name + "/lib/cmake/Vornik") +
                  "' --toolchain '" VORNIK_SOURCE_FOLDER "/cmake/mingw.cmake' > cmake.log 2>&1 && "
                  "'" CMAKE_PROGRAM "' --build build >> cmake.log 2>&1 || { cat cmake.log; exit 1; }\n"
                  "x86_64-w64-mingw32-objdump -p build/host.exe");
    EXPECT_EQ(host.status, 0) << host.out;
    EXPECT_NE(host.out.find("DLL Name: vornik.dll"), std::string::npos) << host.out;
}
