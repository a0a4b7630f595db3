#include "tests/support/realfiles.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

fs::path packagedScenes()
{
    return "/usr/share/assimp/models/3DS";
}

fs::path sharedScenes()
{
    const char* given = std::getenv("VORNIK_SCENES");
    return given ? fs::path(given) : fs::path(VORNIK_SOURCE_FOLDER) / "../shared/scenes";
}

std::vector<fs::path> scenesIn(const fs::path& folder)
{
    std::vector<fs::path> found;
    std::error_code none;
    for (const auto& entry : fs::recursive_directory_iterator(folder, none))
    {
        std::string extension = entry.path().extension().string();
        std::transform(extension.begin(), extension.end(), extension.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (extension == ".3ds")
            found.push_back(entry.path());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::vector<uint8_t> bytesOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(stream), {});
}
