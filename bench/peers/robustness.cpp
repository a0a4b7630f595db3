// The same scene files, whole, cut and damaged, given to the engine and to other libraries that read .3DS,
// each in a process of its own. Prints how often each crashed, hung, took too much memory, accepted and
// refused.
//
// usage: peer_robustness [COPIES_OF_EACH_FILE [FOLDER...]]
//
// The default is 200 copies of the files of the package assimp-testmodels and of the folder with shared
// scenes. Of the copies half are cut, half have up to eight bytes changed; the changes are the same in every
// run. Each library only reads: no images, no drawing, no steps behind the reading but the engine's own.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef HAS_ASSIMP
#include <assimp/cimport.h>
#include <assimp/scene.h>
#endif
#ifdef HAS_LIB3DS
#include <lib3ds/file.h>
#endif

#include "tests/support/realfiles.h"
#include "vornik/assets/load3ds.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/ogroup.h"

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

static const int hangSeconds = 10;
static const long mostKilobytes = 1L << 20;
static const rlim_t mostAddresses = rlim_t(4) << 30; // keeps this machine alive

struct Reader
{
    std::string name;
    std::function<bool(const char*)> accepts;
    int accepted = 0, refused = 0, hangs = 0, fat = 0;
    std::map<int, int> crashes = {}; // by signal
};

static bool loads(const char* file, int flags)
{
    auto* group = new OGroup;
    const bool accepted = load3ds(file, group, "", flags, nullptr, nullptr) == 0;
    delete group;
    return accepted;
}

static std::vector<Reader> makeReaders()
{
    const int parts = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_SMOOTHING;
    std::vector<Reader> readers;
    readers.push_back({"vornik, strict", [=](const char* file) { return loads(file, parts); }});
    readers.push_back(
        {"vornik, tolerant", [=](const char* file) { return loads(file, parts | LOAD_TOLERANT); }});
#ifdef HAS_ASSIMP
    readers.push_back({"assimp", [](const char* file)
                       {
                           const aiScene* scene = aiImportFile(file, 0);
                           aiReleaseImport(scene);
                           return scene != nullptr;
                       }});
#else
    std::puts("assimp was not there to build with (libassimp-dev)");
#endif
#ifdef HAS_LIB3DS
    readers.push_back({"lib3ds", [](const char* file)
                       {
                           Lib3dsFile* scene = lib3ds_file_load(file);
                           if (scene)
                               lib3ds_file_free(scene);
                           return scene != nullptr;
                       }});
#else
    std::puts("lib3ds was not there to build with (lib3ds-dev)");
#endif
    return readers;
}

static void limitTo(decltype(RLIMIT_AS) what, rlim_t most, rlim_t grace = 0)
{
    const rlimit limit = {most, most + grace};
    setrlimit(what, &limit);
}

[[noreturn]] static void readInChild(const Reader& reader, const char* file)
{
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    limitTo(RLIMIT_AS, mostAddresses);
    limitTo(RLIMIT_CORE, 0);
    // Of processor time: the machine may have other work. The alarm is for one that waits for nothing.
    limitTo(RLIMIT_CPU, hangSeconds, 5); // at the end of the grace it would be killed without a name
    alarm(60 * hangSeconds);
    _exit(reader.accepts(file) ? 0 : 1);
}

static void tryReader(Reader* reader, const char* file)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0)
        readInChild(*reader, file);
    int status = 0;
    rusage used = {};
    if (child < 0 || wait4(child, &status, 0, &used) != child)
    {
        std::perror("peer_robustness");
        std::exit(1);
    }
    if (used.ru_maxrss > mostKilobytes)
        ++reader->fat;
    const int end = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    if (end != 0)
        ++(end == SIGXCPU || end == SIGALRM ? reader->hangs : reader->crashes[end]);
    else
        ++(WEXITSTATUS(status) == 0 ? reader->accepted : reader->refused);
}

// Copy number i of a file; the first is the file itself.
static Bytes damagedCopy(const Bytes& whole, int i, int copies, std::mt19937* random)
{
    if (i == 0)
        return whole;
    const int cuts = copies / 2;
    if (i <= cuts)
        return Bytes(whole.begin(),
                     whole.begin() + static_cast<ptrdiff_t>(whole.size() * static_cast<size_t>(i - 1) /
                                                            static_cast<size_t>(cuts)));
    Bytes copy = whole;
    for (unsigned changes = 1 + (*random)() % 8; changes > 0; --changes)
        copy[(*random)() % copy.size()] = static_cast<uint8_t>((*random)());
    return copy;
}

static void tryFile(std::vector<Reader>* readers, const fs::path& source, int copies,
                    const std::string& place)
{
    const Bytes whole = bytesOf(source);
    std::mt19937 random(static_cast<unsigned>(whole.size()));
    for (int i = 0; i <= copies && !whole.empty(); ++i)
    {
        const Bytes bytes = damagedCopy(whole, i, copies, &random);
        std::ofstream(place, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        for (Reader& reader : *readers)
            tryReader(&reader, place.c_str());
    }
}

static std::string crashText(const Reader& reader)
{
    std::string text;
    int all = 0;
    for (const auto& [number, count] : reader.crashes)
    {
        text += (text.empty() ? " (" : ", ") + std::to_string(count) + " SIG" + sigabbrev_np(number);
        all += count;
    }
    return std::to_string(all) + text + (text.empty() ? "" : ")");
}

static void printTable(const std::vector<Reader>& readers)
{
    std::printf("%-17s %9s %9s %8s %9s  %s\n", "", "accepted", "refused", "> 10 s", "> 1 GB", "crashes");
    for (const Reader& reader : readers)
        std::printf("%-17s %9d %9d %8d %9d  %s\n", reader.name.c_str(), reader.accepted, reader.refused,
                    reader.hangs, reader.fat, crashText(reader).c_str());
}

int main(int argc, char** argv)
{
    const int copies = argc > 1 ? std::max(0, std::atoi(argv[1])) : 200;
    std::vector<fs::path> folders(argv + std::min(argc, 2), argv + argc);
    if (folders.empty())
        folders = {packagedScenes(), sharedScenes()};

    vrkInitErrorLog(3);
    vrkSelectRasterizer(2); // draws nothing and needs no library
    std::vector<Reader> readers = makeReaders();
    const fs::path base = fs::exists("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
    const std::string place = (base / ("vornik-peers-" + std::to_string(getpid()) + ".3ds")).string();
    int files = 0;
    for (const fs::path& folder : folders)
        for (const fs::path& file : scenesIn(folder))
        {
            tryFile(&readers, file, copies, place);
            ++files;
        }
    fs::remove(place);
    std::printf("%d files, each whole and in %d damaged copies\n", files, copies);
    printTable(readers);
    return 0;
}
