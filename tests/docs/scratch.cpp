#include "tests/docs/scratch.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

const std::string source = VORNIK_SOURCE;

std::string readFile(const std::string& path)
{
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string endOf(const std::string& output)
{
    return output.size() > 1500 ? "..." + output.substr(output.size() - 1500) : output;
}

Scratch::Scratch()
{
    fs::create_directories(folder.path("build/release/bin"));
    for (const char* name : {"include", "examples", "scripts", "cmake"})
        fs::create_directory_symlink(source + "/" + name, folder.path(name));
    fs::create_directory_symlink(VORNIK_LIBRARY_FOLDER, folder.path("build/release/lib"));
    if (fs::exists(source + "/build/windows"))
        fs::create_directory_symlink(source + "/build/windows", folder.path("build/windows"));
    // Nothing opens a window here: "vornik view" only looks at its options.
    writeProgram("build/release/bin/vornik", "[ \"$1\" = view ] && exec '" VORNIK_PROGRAM
                                             "' \"$@\" --help > /dev/null\nexec '" VORNIK_PROGRAM "' \"$@\"");
#ifdef VORNIK_SANITIZE
    writeProgram("build/release/bin/g++", "exec /usr/bin/g++ -fsanitize=address,undefined \"$@\"");
#endif
}

void Scratch::addSample() const
{
    for (const char* name : {"", "sample", "harbour", "folder"})
        fs::copy(VORNIK_SAMPLE, folder.path(name), fs::copy_options::recursive);
    for (const char* name : {"scene.3ds", "folder/scene.3ds"})
        fs::copy(folder.path("harbour.3ds"), folder.path(name));
}

void Scratch::addInstallation()
{
    ASSERT_EQ(run("'" CMAKE_PROGRAM "' --install '" VORNIK_BUILD_FOLDER "' --prefix vornik > /dev/null"), 0)
        << endOf(output);
    fs::copy(source + "/tests/install/host/host.cpp", folder.path("host.cpp"));
}

int Scratch::run(const std::string& script)
{
    folder.write("script.sh", script);
    const std::string environment =
        "export DISPLAY= ASAN_OPTIONS=detect_leaks=0:intercept_tls_get_addr=0 LC_ALL=C HOME=$PWD "
        "PATH=$PWD/build/release/bin:$PATH LD_LIBRARY_PATH=$PWD/build/release/lib "
        "PKG_CONFIG_PATH=$PWD/vornik/" INSTALL_LIBDIR "/pkgconfig";
    const int status = std::system(
        ("cd '" + folder.root() + "' && " + environment + " && bash -eu script.sh < /dev/null > output 2>&1")
            .c_str());
    output = folder.read("output");
    return status;
}

void Scratch::writeProgram(const std::string& name, const std::string& text) const
{
    folder.write(name, "#!/bin/bash\n" + text + "\n");
    fs::permissions(folder.path(name), fs::perms::owner_all);
}
