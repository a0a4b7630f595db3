#include "tests/install/shell.h"

#include <cstdlib>
#include <sstream>
#include <sys/wait.h>

#include "tests/support/tempfolder.h"
#include "tests/support/writer3ds.h"

ShellResult shell(const std::string& folder, const std::string& command)
{
    const TempFolder streams;
    const std::string out = streams.path("out");
    // Off-screen without a display; the graphics driver keeps memory to the end of the process.
    setenv("DISPLAY", "", 1);
    setenv("ASAN_OPTIONS", "intercept_tls_get_addr=0", 0);
    setenv("LSAN_OPTIONS", "suppressions=" VORNIK_SUPPRESSIONS ":print_suppressions=0", 0);
    const int status =
        std::system(("cd '" + folder + "' && { " + command + "\n} > '" + out + "' 2>&1").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, streams.readText("out")};
}

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::set<std::string> wordsOf(const std::string& text)
{
    std::set<std::string> words;
    std::istringstream in(text);
    for (std::string word; in >> word;)
        words.insert(word);
    return words;
}

ShellResult installInto(const std::string& prefix, const std::string& component)
{
    return shell("/", "'" CMAKE_PROGRAM "' --install '" VORNIK_BUILD_FOLDER "' --prefix '" + prefix + "'" +
                          (component.empty() ? "" : " --component " + component));
}

std::vector<unsigned char> smallScene()
{
    return build3ds(
        {.meshes = {{.name = "M", .vertices = {{0, 9, 0}, {1, 9, 0}, {0, 9, 1}}, .faces = {{0, 1, 2}}}},
         .cameras = {{.name = "C", .target = {0, 1, 0}}}});
}
