// Scenes that are cut or damaged, and scenes as real exporters write them: every load ends, in either
// reading, and leaves a group that holds together.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/completescene.h"
#include "tests/support/engine.h"
#include "tests/support/realfiles.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"

namespace fs = std::filesystem;

static const int everything = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_MATERIALS |
                              LOAD_SMOOTHING | LOAD_COMBINE;

// What drawing and lighting take for granted.
static void expectWhole(const OGroup& group)
{
    for (int i = 0; i < group.meshCount; i++)
    {
        const Mesh& mesh = *group.meshes[i];
        ASSERT_NE(mesh.name, nullptr);
        for (int face = 0; face < mesh.faceCount; face++)
        {
            ASSERT_LT(mesh.faces[face].a, mesh.vertexCount);
            ASSERT_LT(mesh.faces[face].b, mesh.vertexCount);
            ASSERT_LT(mesh.faces[face].c, mesh.vertexCount);
            const int material = mesh.faceMaterials[face].materialIndex;
            ASSERT_TRUE(group.tlistCount == 0 || group.tlists[0]->getMaterial(material)) << material;
        }
    }
}

// On a silent engine, so that thousands of loads take no time in OpenGL.
class BrokenFiles : public ::testing::TestWithParam<int>
{
protected:
    BrokenFiles()
    {
        vrkInitErrorLog(3);
        vrkSelectRasterizer(7);
    }
    ~BrokenFiles() override { vrkSelectRasterizer(0); }

    void load(const std::vector<uint8_t>& bytes)
    {
        OGroup group;
        const std::string file = folder.write("scene.3ds", bytes);
        const int result = load3ds(file.c_str(), &group, folder.root().c_str(), GetParam(), nullptr, nullptr);
        ASSERT_TRUE(result == 0 || result == 14);
        expectWhole(group);
        meshes = group.meshCount;
        vertices = 0;
        for (int i = 0; i < meshes; i++)
            vertices += group.meshes[i]->vertexCount;
        materials = group.tlistCount > 0 ? group.tlists[0]->seekLastMaterial()->id : 0;
    }

    TempFolder folder;
    int meshes = 0;
    int vertices = 0;
    int materials = 0;
};

static std::string nameReading(const ::testing::TestParamInfo<int>& reading)
{
    return reading.param & LOAD_TOLERANT ? "Tolerant" : "Strict";
}

INSTANTIATE_TEST_SUITE_P(Readings, BrokenFiles, ::testing::Values(everything, everything | LOAD_TOLERANT),
                         nameReading);

TEST_P(BrokenFiles, WholeSceneLoads)
{
    load(build3ds(completeScene()));
    EXPECT_EQ(meshes, 2);
    EXPECT_EQ(materials, 2);
}

TEST_P(BrokenFiles, CutAtEveryLength)
{
    const auto whole = build3ds(completeScene());
    for (size_t length = 0; length < whole.size(); length++)
        load({whole.begin(), whole.begin() + static_cast<ptrdiff_t>(length)});
}

TEST_P(BrokenFiles, EveryByteDamaged)
{
    const auto whole = build3ds(completeScene());
    for (size_t at = 0; at < whole.size(); at++)
        for (uint8_t change : {0xFF, 0x01, 0x80})
        {
            auto bytes = whole;
            bytes[at] ^= change;
            load(bytes);
        }
}

TEST_P(BrokenFiles, RandomBytesDamaged)
{
    const auto whole = build3ds(completeScene());
    std::mt19937 random(7);
    for (int round = 0; round < 2000; round++)
    {
        auto bytes = whole;
        for (int i = 0; i < 8; i++)
            bytes[random() % bytes.size()] = static_cast<uint8_t>(random());
        load(bytes);
    }
}

TEST_P(BrokenFiles, RandomChunksOfKnownKinds)
{
    static const uint16_t ids[] = {0x3D3D, 0x4000, 0x4010, 0x4100, 0x4110, 0x4120, 0x4130, 0x4140,
                                   0x4150, 0x4160, 0x4600, 0x4659, 0x465A, 0x465B, 0x4700, 0xAFFF,
                                   0xA000, 0xA010, 0xA020, 0xA050, 0xA200, 0xA210, 0xA300, 0xA351,
                                   0x0010, 0x0011, 0x0030, 0x0031, 0xB000, 0x4D4D};
    std::mt19937 random(11);
    for (int round = 0; round < 300; round++)
    {
        ChunkWriter out;
        out.open(0x4D4D);
        while (out.size() < 2000)
        {
            out.header(ids[random() % std::size(ids)], random() % 4 == 0 ? random() % 8 : random() % 300);
            for (uint32_t rest = random() % 12; rest > 0; rest--)
                out.u8(random() % 3 == 0 ? static_cast<uint8_t>(random()) : uint8_t(0));
        }
        load(out.finish());
    }
}

TEST_P(BrokenFiles, CountsThatNothingBacksCostNothing)
{
    // A thousand vertex and face lists that claim 65,535 entries, in chunks of 8 bytes. The tolerant reading
    // must not make an array for each; in the strict one the first swallows the rest.
    ChunkWriter out;
    out.open(0x4D4D).open(0x3D3D);
    for (int i = 0; i < 2000; i++)
    {
        out.open(0x4000)
            .text("M")
            .open(0x4100)
            .open(0x4110)
            .u16(65535)
            .close()
            .open(0x4120)
            .u16(65535)
            .close();
        out.open(0x4140).u16(65535).close().open(0x4130).text("A").u16(65535).close().close().close();
    }
    load(out.finish());
    EXPECT_EQ(meshes, GetParam() & LOAD_TOLERANT ? 2000 : 1);
    EXPECT_EQ(vertices, GetParam() & LOAD_TOLERANT ? 0 : 65535);
}

TEST_P(BrokenFiles, ManyMaterialsAndGroupsLoadInLinearTime)
{
    // Walks over a list of 50,000 materials for each of as many face groups would take minutes.
    const int count = 50000;
    ChunkWriter out;
    out.open(0x4D4D).open(0x3D3D);
    for (int i = 0; i < count; i++)
    {
        out.open(0xAFFF).open(0xA000).text("M" + std::to_string(i)).close().open(0xA020);
        writeColor(out, {0.1f, 0, 0});
        writeColor(out, {0.1f, 0, 0, COLOR_3DS_LINEAR_BYTE});
        out.close().close();
    }
    out.open(0x4000).text("M").open(0x4100).open(0x4110).u16(1).zeros(12).close().open(0x4120).u16(1).zeros(
        8);
    for (int i = 0; i < count; i++)
        out.open(0x4130).text("M" + std::to_string(count - i)).u16(1).u16(0).close();
    load(out.finish());
    EXPECT_EQ(materials, count);
}

TEST_P(BrokenFiles, ChunksWithoutLengthEndTheWalk)
{
    ChunkWriter out;
    out.open(0x4D4D).header(0x1234, 0).zeros(100);
    load(out.finish());
    load(ChunkWriter()
             .open(0x4D4D)
             .open(0x3D3D)
             .header(0x1234, 0)
             .open(0x4000)
             .text("M")
             .open(0x4100)
             .finish());
    EXPECT_EQ(meshes, 0);
}

class RealFiles : public EngineTest
{
protected:
    // @return the group; null where the file isn't there or can't be loaded
    std::unique_ptr<OGroup> load(const fs::path& file, int flags)
    {
        auto loaded = std::make_unique<OGroup>();
        const std::string maps = file.parent_path().string() + "/";
        if (load3ds(file.string().c_str(), loaded.get(), maps.c_str(), flags, nullptr, nullptr) != 0)
            return nullptr;
        expectWhole(*loaded);
        return loaded;
    }
    void loadAll(const std::vector<fs::path>& files)
    {
        for (const fs::path& file : files)
        {
            SCOPED_TRACE(file.string());
            const auto strict = load(file, everything);
            const auto tolerant = load(file, everything | LOAD_TOLERANT);
            if (file.filename() == "wrong.3ds")
            {
                EXPECT_EQ(strict, nullptr);
                EXPECT_EQ(tolerant, nullptr);
                continue;
            }
            ASSERT_NE(strict, nullptr);
            ASSERT_NE(tolerant, nullptr);
            EXPECT_GE(tolerant->meshCount, strict->meshCount);
            EXPECT_GT(tolerant->meshCount, 0);
        }
    }
};

TEST_F(RealFiles, OfTheTestModelsPackageLoadInBothReadings)
{
    const auto files = scenesIn("/usr/share/assimp/models/3DS");
    if (files.empty())
        GTEST_SKIP() << "assimp-testmodels isn't installed";
    loadAll(files);
}

TEST_F(RealFiles, OfTheSharedFolderLoadInBothReadings)
{
    const auto files = scenesIn(sharedScenes());
    if (files.empty())
        GTEST_SKIP() << "no folder with shared scenes";
    loadAll(files);
}

// What a walk over the chunks by their lengths finds in the files.
struct Expectation
{
    const char* file;
    int meshes, vertices, faces, materials, lights, cameras;
};

TEST_F(RealFiles, TolerantReadingKeepsAllThatTheyHold)
{
    static const Expectation scenes[] = {
        {"dos-shots/CITY.3DS", 36, 959, 1537, 5, 2, 1},
        {"dos-shots/PASKA2.3DS", 3, 446, 782, 5, 1, 1},
        {"dos-skull/skull.3ds", 4, 1306, 2294, 2, 2, 1},
        {"makbot/mak_running.3DS", 58, 1883, 1554, 4, 0, 0},
        {"fighters/gl-14.3ds", 23, 2584, 1204, 15, 0, 0},
        {"mars-orbiters/marsodyssey.3ds", 11, 3994, 6859, 11, 0, 0},
        {"mars-orbiters/marsglobalsurvr.3ds", 10, 4424, 7132, 10, 0, 0},
        {"hubble/hubble.3ds", 451, 32280, 58460, 17, 3, 0},
        {"fireside/fireplace.3DS", 29, 2385, 3476, 8, 0, 0},
        {"fireside/mushroom.3ds", 1, 226, 448, 1, 3, 0},
        {"fireside/polyhedron.3ds", 1, 26, 48, 1, 0, 0},
        {"thunderbolt/p47d.3ds", 21, 1931, 3500, 23, 0, 0},
        {"lander/lunar-lander.3ds", 12, 849, 884, 1, 0, 0},
    };
    if (!fs::exists(sharedScenes()))
        GTEST_SKIP() << "no folder with shared scenes";
    const int flags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_TOLERANT;
    for (const Expectation& expected : scenes)
    {
        SCOPED_TRACE(expected.file);
        const auto loaded = load(sharedScenes() / expected.file, flags);
        ASSERT_NE(loaded, nullptr);
        int vertices = 0, faces = 0;
        for (int i = 0; i < loaded->meshCount; i++)
        {
            vertices += loaded->meshes[i]->vertexCount;
            faces += loaded->meshes[i]->faceCount;
        }
        EXPECT_EQ(loaded->meshCount, expected.meshes);
        EXPECT_EQ(vertices, expected.vertices);
        EXPECT_EQ(faces, expected.faces);
        EXPECT_EQ(loaded->tlists[0]->seekLastMaterial()->id, expected.materials);
        EXPECT_EQ(loaded->lightCount, expected.lights);
        EXPECT_EQ(loaded->cameraCount, expected.cameras);
    }
}

TEST_F(RealFiles, TolerantReadingMendsVerticesThatAreNoNumbers)
{
    const fs::path file = sharedScenes() / "shooter/enemy03.3DS";
    if (!fs::exists(file))
        GTEST_SKIP() << "no folder with shared scenes";
    const auto loaded = load(file, LOAD_MESHES | LOAD_TOLERANT);
    ASSERT_NE(loaded, nullptr);
    const Mesh* mesh = loaded->meshes[0];
    EXPECT_TRUE(std::isfinite(mesh->radius));
    EXPECT_LT(mesh->radius, 1000.0f);
    for (int i = 0; i < mesh->vertexCount; i++)
        ASSERT_TRUE(std::isfinite(static_cast<float>(mesh->calculatedVertices[i])));
}
