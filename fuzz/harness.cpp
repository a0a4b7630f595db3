#include "fuzz/harness.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <unistd.h>

#include "tests/support/completescene.h"
#include "tests/support/imagewriter.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"

namespace fs = std::filesystem;

// Memory where the system has a folder for it: a target writes thousands of files a second.
static std::string makeFolder()
{
    const fs::path base = fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
    const fs::path folder = base / ("vornik-fuzz-" + std::to_string(getpid()));
    fs::create_directories(folder);
    return folder.string() + "/";
}

const std::string& inputFolder()
{
    static const std::string folder = makeFolder();
    return folder;
}

static void removeFolder()
{
    std::error_code failed;
    fs::remove_all(inputFolder(), failed);
}

void startSilentEngine()
{
    static const bool started = []
    {
        vrkInitErrorLog(3);
        vrkSelectRasterizer(7);
        const std::string& folder = inputFolder();
        std::atexit(removeFolder);
        saveFile(folder + "WALL.JPG", writeJpeg(Picture(8, 8)));
        saveFile(folder + "HOLES.TGA", writeTga(Picture(8, 8, 0x40404040)));
        saveFile(folder + "GREY.TGA", writeTga(Picture(8, 8), {.bits = 8}));
        saveFile(folder + "TOP.TGA", writeTga(Picture(7, 5), {.topOrigin = true}));
        saveFile(folder + "F1.TGA", writeTga(Picture(4, 4)));
        saveFile(folder + "F2.TGA", writeTga(Picture(16, 16)));
        const std::string list = "F1.TGA\nF2.TGA\n";
        saveFile(folder + "FIRE.IFL", {list.begin(), list.end()});
        saveFile(folder + "SCENE.3DS", build3ds(completeScene()));
        return true;
    }();
    static_cast<void>(started);
}

std::string inputFile(const char* name, const uint8_t* data, size_t size)
{
    const std::string path = inputFolder() + name;
    if (std::FILE* file = std::fopen(path.c_str(), "wb"))
    {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    return path;
}
