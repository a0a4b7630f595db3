// Whole scene files, cut and damaged at places all over them, loaded and drawn: every load ends in a defined
// result, within a small multiple of the intact file's time and a stated multiple of the file's size in
// memory.
//
// VORNIK_DAMAGE_STEPS sets the number of places in a file, 2,000 for a thorough run; a few suffice every day.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "samples/export.h"
#include "tests/support/allocations.h"
#include "tests/support/completescene.h"
#include "tests/support/engine.h"
#include "tests/support/realfiles.h"
#include "tests/support/tempfolder.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

static const int everything = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_MATERIALS |
                              LOAD_SMOOTHING | LOAD_COMBINE | LOAD_TEXTURE_32BIT;

// A byte of a scene file becomes at most this many in memory; beside them stand a list of tracks, a list of
// materials, their images and the blocks of pixels that are read into.
static const long long bytesEach = 40;
static const long long mostBytesEach = 600; // of a file of nothing but maps
static const long long fixedBytes = 32ll << 20;

static size_t placesWanted()
{
    const char* wanted = std::getenv("VORNIK_DAMAGE_STEPS");
    return wanted ? static_cast<size_t>(std::max(1, std::atoi(wanted))) : 12;
}

class DamagedFiles : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        vrkInitErrorLog(3);
    }

    // Answers with the processor time that it took: the machine may have other work.
    double loadAndDraw(const Bytes& bytes, int flags)
    {
        const std::string file = folder.write("SCENE.3DS", bytes);
        const std::clock_t begin = std::clock();
        {
            Scene scene;
            OGroup* group = scene.createOGroup(file.c_str(), flags, images.c_str(), 0, nullptr, nullptr);
            if (group)
            {
                scene.render(VRK_RENDER_SOLID | VRK_RENDER_ANIMATE_CAMERA);
                scene.render(VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_CULL);
            }
            loaded = group != nullptr;
        }
        return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
    }

    void loadDamaged(const Bytes& bytes, int flags)
    {
        const long long before = heldBytes();
        resetPeak();
        slowest = std::max(slowest, loadAndDraw(bytes, flags));
        const long long most = peakBytes() - before;
        EXPECT_LE(most, fixedBytes + bytesEach * static_cast<long long>(bytes.size()));
        mostBytes = std::max(mostBytes, most);
    }

    // Cut at the place, and the byte there set to 0, to 255 and flipped.
    void damage(const Bytes& whole, size_t place, int flags)
    {
        SCOPED_TRACE(place);
        loadDamaged(Bytes(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(place)), flags);
        const uint8_t byte = whole[place];
        for (const int value : {0x00, 0xFF, byte ^ 0xFF})
        {
            Bytes changed = whole;
            changed[place] = static_cast<uint8_t>(value);
            loadDamaged(changed, flags);
        }
    }

    void damageAll(const Bytes& whole, const std::string& name)
    {
        SCOPED_TRACE(name);
        for (const int flags : {everything, everything | LOAD_TOLERANT})
        {
            double intact = loadAndDraw(whole, flags);
            intact = std::max(intact, loadAndDraw(whole, flags));
            EXPECT_TRUE(loaded);
            slowest = 0;
            mostBytes = 0;
            const size_t places = std::min(placesWanted(), whole.size());
            for (size_t i = 0; i < places; ++i)
                damage(whole, whole.size() * i / places, flags);
            // Wide, for files that are small: what grows with the square of a count is a thousand times
            // slower.
            EXPECT_LT(slowest, 20 * intact + 2);
            if (std::getenv("VORNIK_DAMAGE_STEPS"))
                std::printf("%-40s %s: intact %.1f ms, slowest %.1f ms, most memory %.1f MB\n", name.c_str(),
                            flags & LOAD_TOLERANT ? "tolerant" : "strict", intact * 1e3, slowest * 1e3,
                            static_cast<double>(mostBytes) / (1 << 20));
        }
    }

    void damageFolder(const fs::path& root)
    {
        for (const fs::path& file : scenesIn(root))
        {
            const Bytes whole = bytesOf(file);
            images = file.parent_path().string();
            if (whole.size() > 100)
                damageAll(whole, file.filename().string());
        }
    }

    std::string images;
    bool loaded = false;
    double slowest = 0;
    long long mostBytes = 0;
};

TEST_F(DamagedFiles, OfOurOwnWriter)
{
    damageAll(build3ds(completeScene()), "complete scene");
}

// What takes the most memory for the fewest bytes: maps, each of which has room for the 64 names of a list.
TEST(CrowdedFiles, OfMapsTakeTheMostMemoryOfAll)
{
    vrkInitErrorLog(3);
    ChunkWriter file;
    file.open(0x4D4D).open(0x3D3D);
    for (int i = 0; i < 2000; ++i)
    {
        file.open(0xAFFF).open(0xA000).text("").close();
        for (const uint16_t map : {0xA200, 0xA210, 0xA220, 0xA33A})
            file.empty(map);
        file.close();
    }
    const Bytes bytes = file.finish();
    const TempFolder folder;
    const std::string name = folder.write("SCENE.3DS", bytes);
    const int selected = vrkSelectedRasterizer;
    vrkSelectedRasterizer = 7; // images are made by none
    const long long before = heldBytes();
    resetPeak();
    OGroup group;
    EXPECT_EQ(load3ds(name.c_str(), &group, "", LOAD_MATERIALS | LOAD_TOLERANT, nullptr, nullptr), 0);
    vrkSelectedRasterizer = selected;
    const long long most = peakBytes() - before;
    EXPECT_LE(most, fixedBytes + mostBytesEach * static_cast<long long>(bytes.size()));
    EXPECT_GT(most, mostBytesEach / 2 * static_cast<long long>(bytes.size()));
}

TEST_F(DamagedFiles, OfTheSample)
{
    damageAll(sample::encodeScene(sample::buildHarbour()), "harbour.3ds");
}

TEST_F(DamagedFiles, OfTheTestModelsPackage)
{
    if (!fs::exists(packagedScenes()))
        GTEST_SKIP() << "assimp-testmodels isn't installed";
    damageFolder(packagedScenes());
}

TEST_F(DamagedFiles, OfTheSharedFolder)
{
    if (!fs::exists(sharedScenes()))
        GTEST_SKIP() << "no folder with shared scenes";
    damageFolder(sharedScenes());
}
