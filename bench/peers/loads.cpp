// Loading beside other libraries: the same .3DS files, side by side in one run.
//
// usage: peer_loads [CASE]
//
// Everybody reads the file alone, with no image beside it, and nobody has a graphics library under it: the
// engine loads on a rasterizer that draws nothing, with every pass on. Times are processor time, medians of
// rounds in which all took turns; memory is that of a process that has loaded once.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>

#include "bench/peers/contest.h"
#include "bench/peers/loads.h"
#include "bench/peers/timing.h"
#include "bench/tilefile.h"
#include "tests/support/realfiles.h"
#include "tests/support/tempfolder.h"
#include "vornik/assets/load3ds.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"

static Loaded load(const char* file, int moreFlags)
{
    vrkInitErrorLog(3);
    vrkSelectRasterizer(7);
    const double begin = processorSeconds();
    OGroup group;
    const int result =
        load3ds(file, &group, "",
                LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_KEYFRAMES | moreFlags,
                nullptr, nullptr);
    Loaded loaded = {processorSeconds() - begin, 0};
    for (int i = 0; result == 0 && i < group.meshCount; ++i)
        loaded.triangles += size_t(group.meshes[i]->faceCount);
    return loaded;
}

static Loaded loadWithVornik(const char* file)
{
    return load(file, LOAD_SMOOTHING | LOAD_TOLERANT);
}

// As the file format's first readers did, for comparison.
static Loaded loadWithVornikStrictly(const char* file)
{
    return load(file, 0);
}

namespace
{
struct Library
{
    const char* name;
    const char* package;
    LoadFile load; ///< null if it was not there to build with
};

const Library libraries[] = {
    {"Vornik, all passes", "", loadWithVornik},
    {"Vornik, strict, no smoothing", "", loadWithVornikStrictly},
#ifdef HAS_IRRLICHT
    {"Irrlicht", "libirrlicht-dev", loadWithIrrlicht},
#else
    {"Irrlicht", "libirrlicht-dev", nullptr},
#endif
#ifdef HAS_ASSIMP
    {"assimp", "libassimp-dev", loadWithAssimp},
    {"assimp, joining vertices", "libassimp-dev", loadWithAssimpDone},
#else
    {"assimp", "libassimp-dev", nullptr},
#endif
#ifdef HAS_LIB3DS
    {"lib3ds", "lib3ds-dev", loadWithLib3ds},
#else
    {"lib3ds", "lib3ds-dev", nullptr},
#endif
#ifdef HAS_OPENSCENEGRAPH
    {"OpenSceneGraph", "libopenscenegraph-dev", loadWithOpenSceneGraph},
#else
    {"OpenSceneGraph", "libopenscenegraph-dev", nullptr},
#endif
};
} // namespace

static std::vector<uint8_t> millionTriangles()
{
    Scene3ds scene = makeTileScene();
    for (int i = 0; i < 1000; i++)
        scene.meshes.push_back(makeTile(i, 25, 20, float(25 * (i % 32)), float(20 * (i / 32))));
    return build3ds(scene);
}

static std::vector<uint8_t> smallMeshes()
{
    Scene3ds scene = makeTileScene();
    for (int i = 0; i < 4000; i++)
        scene.meshes.push_back(makeTile(i, 3, 2, float(4 * (i % 64)), float(3 * (i / 64))));
    return build3ds(scene);
}

// The first three of these that are there.
static std::vector<std::filesystem::path> realFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto& file :
         {sharedScenes() / "hubble/hubble.3ds", sharedScenes() / "mars-orbiters/marsglobalsurvr.3ds",
          packagedScenes() / "fels.3ds", packagedScenes() / "test1.3ds",
          packagedScenes() / "cubes_with_alpha.3DS"})
        if (files.size() < 3 && std::filesystem::exists(file))
            files.push_back(file);
    return files;
}

// A round loads for at least 20 milliseconds and gives the median.
static Round playRound(LoadFile loadFile, const char* file)
{
    std::vector<double> times;
    double sum = 0;
    Loaded loaded = {};
    while (sum < 0.02)
    {
        loaded = loadFile(file);
        if (loaded.triangles == 0)
            return {loaded.seconds, "nothing"};
        times.push_back(loaded.seconds);
        sum += std::max(loaded.seconds, 1e-6);
    }
    return {median(times), std::to_string(loaded.triangles) + " triangles"};
}

static int contend(const char* number, const char* file)
{
    const Library& library = libraries[std::atoi(number)];
    return answerRounds([&] { return playRound(library.load, file); });
}

static void compare(const char* wanted, const std::string& name, const std::vector<uint8_t>& bytes,
                    int rounds)
{
    if (wanted && name.find(wanted) == std::string::npos)
        return;
    const TempFolder folder;
    const std::string file = folder.write("scene.3ds", bytes);
    std::printf("\n%s, %.2f MB\n", name.c_str(), double(bytes.size()) / 1e6);
    std::vector<Contestant> contestants;
    for (size_t i = 0; i < std::size(libraries); ++i)
        if (libraries[i].load)
            contestants.push_back({libraries[i].name, {"contend", std::to_string(i), file}});
    printScores(runContest(contestants, 3, rounds));
}

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "contend") == 0)
        return contend(argv[2], argv[3]);
    if (argc > 2)
    {
        std::fprintf(stderr, "usage: peer_loads [CASE]   part of a case's name: million, small, hubble...\n");
        return 2;
    }
    const char* const wanted = argc > 1 ? argv[1] : nullptr;
    for (const Library& library : libraries)
        if (!library.load)
            std::printf("%s was not there to build with (%s)\n", library.name, library.package);
    compare(wanted, "a million triangles in 1,000 meshes", millionTriangles(), 3);
    compare(wanted, "4,000 small meshes of 12 triangles", smallMeshes(), 7);
    for (const auto& file : realFiles())
        compare(wanted, file.filename().string(), bytesOf(file), 7);
    return 0;
}
