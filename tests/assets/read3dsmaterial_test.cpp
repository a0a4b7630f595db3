#include "vornik/assets/read3dsmaterial.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "assets/chunkwalk.h"
#include "assets/loadmaterials.h"
#include "tests/assets/loaderblock.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"

// A material list to fill, on a silent engine.
class Read3dsMaterial : public ::testing::Test
{
protected:
    Read3dsMaterial()
    {
        vrkSelectedRasterizer = 7;
        list.setBaseDirectory("MAPS");
        beginMaterials(&list);
        loaderTolerant = false;
    }
    ~Read3dsMaterial() override
    {
        beginMaterials(nullptr);
        loaderTolerant = false;
        vrkSelectedRasterizer = 0;
    }

    // Reads the first chunk of the bytes.
    void read(std::vector<uint8_t> bytes, int flags = 0)
    {
        LoaderBlock block(std::move(bytes));
        read3dsMaterial(block.enter(), flags);
        end = block.offset();
        exhausted = vrkLoader.atEnd;
    }
    // Reads one material and gives it back.
    Material* read(const Material3ds& material, int flags = 0)
    {
        ChunkWriter out;
        writeMaterial(out, material);
        read(out.finish(), flags);
        return list.getMaterial(1);
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> all;
        for (Material* m = list.first->next; m; m = m->next)
            all.push_back(m->name);
        return all;
    }

    TList list;
    size_t end = 0;
    bool exhausted = false;
};

static Color readColor(std::vector<uint8_t> bytes, bool tolerant = false)
{
    loaderTolerant = tolerant;
    LoaderBlock block(std::move(bytes));
    vrkLoader.getChunkID();
    Color* color = read3dsColor();
    const Color copy = *color;
    free(color);
    loaderTolerant = false;
    return copy;
}

static std::vector<uint8_t> colorChunk(const Color3ds& color)
{
    ChunkWriter out;
    writeColor(out, color);
    return out.finish();
}

static void expectColor(const Color& color, float r, float g, float b)
{
    EXPECT_FLOAT_EQ(color.r, r);
    EXPECT_FLOAT_EQ(color.g, g);
    EXPECT_FLOAT_EQ(color.b, b);
    EXPECT_EQ(color.a, 1.0f);
}

TEST(Read3dsColor, TakesBytesAsSigned)
{
    const float unit = 0.003921569f;
    for (uint16_t form : {COLOR_3DS_BYTE, COLOR_3DS_LINEAR_BYTE})
    {
        const auto bytes = ChunkWriter().open(form).u8(200).u8(100).u8(50).finish();
        expectColor(readColor(bytes), -56 * unit, 100 * unit, 50 * unit);
    }
    const auto bytes = ChunkWriter().open(0x0011).u8(127).u8(128).u8(255).finish();
    expectColor(readColor(bytes), 127 * unit, -128 * unit, -unit);
}

TEST(Read3dsColor, TakesFloatsAsTheyAre)
{
    expectColor(readColor(colorChunk({0.25f, 1.5f, -2.0f, COLOR_3DS_FLOAT})), 0.25f, 1.5f, -2.0f);
}

TEST(Read3dsColor, ReadsMinusOneFromAnExhaustedBlock)
{
    expectColor(readColor(ChunkWriter().header(0x0010, 18).f32(0.5f).finish()), 0.5f, -1.0f, -1.0f);
    expectColor(readColor(ChunkWriter().header(0x0011, 9).u8(51).finish()), 51 * 0.003921569f, 0.0f, 0.0f);
}

TEST(Read3dsColor, PassesOverOtherChunks)
{
    for (uint16_t id : {0x0013, 0x0030, 0xA010})
    {
        LoaderBlock block(ChunkWriter().open(id).zeros(5).close().u8(9).finish());
        vrkLoader.getChunkID();
        free(read3dsColor());
        EXPECT_EQ(vrkLoader.getChar(), 9);
    }
}

TEST(Read3dsColor, TolerantTakesBytesFromZeroTo255AndLinearFloats)
{
    expectColor(readColor(colorChunk({1.0f, 0.0f, 128.0f / 255.0f, COLOR_3DS_BYTE}), true), 1.0f, 0.0f,
                128.0f / 255.0f);
    expectColor(readColor(colorChunk({1.0f, 0.0f, 0.0f, COLOR_3DS_LINEAR_BYTE}), true), 1.0f, 0.0f, 0.0f);
    expectColor(readColor(colorChunk({0.5f, 0.25f, 0.0f, COLOR_3DS_LINEAR_FLOAT}), true), 0.5f, 0.25f, 0.0f);
    EXPECT_EQ(readColor(colorChunk({1.0f, 1.0f, 1.0f, COLOR_3DS_BYTE}), true).r, 1.0f);
}

TEST_F(Read3dsMaterial, AddsAMaterialUnderItsName)
{
    const Material* material = read({.name = "Oak planks"});
    ASSERT_NE(material, nullptr);
    EXPECT_STREQ(material->name, "Oak planks");
    EXPECT_EQ(material->id, 1);
    EXPECT_EQ(material->diffuse, nullptr);
    EXPECT_EQ(material->twoSided, 0);
    EXPECT_EQ(material->wire, 0);
    EXPECT_EQ(material->tiled, 1);
    EXPECT_EQ(list.seekMaterial("Oak planks"), material);
}

TEST_F(Read3dsMaterial, NumbersMaterialsAsTheListWould)
{
    read({.name = "A"});
    endMaterials(); // without the load's table the list itself is asked
    read({.name = "B"});
    EXPECT_EQ(names(), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(list.seekMaterial("B")->id, 2);
    EXPECT_EQ(findLoadedMaterial("B"), list.seekMaterial("B"));
}

TEST_F(Read3dsMaterial, FirstMaterialOfANameIsTheOneFound)
{
    read({.name = "A"});
    read({.name = "A"});
    EXPECT_EQ(findLoadedMaterial("A")->id, 1);
    EXPECT_EQ(findLoadedMaterial("VRKDefault")->id, 0);
    EXPECT_EQ(findLoadedMaterial("a"), nullptr);
}

TEST_F(Read3dsMaterial, NameIsCutTo255Characters)
{
    read({.name = std::string(300, 'n')});
    EXPECT_EQ(names(), std::vector<std::string>{std::string(255, 'n')});
    EXPECT_NE(findLoadedMaterial(std::string(255, 'n').c_str()), nullptr);
}

TEST_F(Read3dsMaterial, ReadsTheThreeColors)
{
    const Material* material = read({.name = "A",
                                     .ambient = {{0.1f, 0.2f, 0.3f, COLOR_3DS_FLOAT}},
                                     .diffuse = {{0.4f, 0.5f, 0.6f, COLOR_3DS_FLOAT}},
                                     .specular = {{0.7f, 0.8f, 0.9f, COLOR_3DS_FLOAT}}});
    expectColor(*material->ambient, 0.1f, 0.2f, 0.3f);
    expectColor(*material->diffuse, 0.4f, 0.5f, 0.6f);
    expectColor(*material->specular, 0.7f, 0.8f, 0.9f);
}

TEST_F(Read3dsMaterial, ReadsPercentagesAsHundredths)
{
    const Material* material =
        read({.name = "A", .transparency = Percent3ds{25}, .selfIllumination = Percent3ds{50}});
    EXPECT_FLOAT_EQ(material->transparency, 0.25f);
    EXPECT_FLOAT_EQ(material->selfIllumination, 0.5f);
}

TEST_F(Read3dsMaterial, PercentagesAreSigned)
{
    EXPECT_FLOAT_EQ(read({.name = "A", .transparency = Percent3ds{-30}})->transparency, -0.3f);
}

TEST_F(Read3dsMaterial, FloatPercentageIsTakenByItsFirstTwoBytes)
{
    // 0.3f is 0x3E99999A.
    const Material* material =
        read({.name = "A", .transparency = Percent3ds{0.3f, true}, .twoSided = true, .shading = int16_t(2)});
    EXPECT_FLOAT_EQ(material->transparency, static_cast<float>(static_cast<int16_t>(0x999A)) * 0.01f);
    // The two bytes left over are taken for the start of the next chunk: what follows is lost.
    EXPECT_EQ(material->twoSided, 0);
}

TEST_F(Read3dsMaterial, ReadsSwitchesAndWireSize)
{
    const Material* material = read({.name = "A", .twoSided = true, .wire = true, .wireSize = 2.5f});
    EXPECT_EQ(material->twoSided, 1);
    EXPECT_EQ(material->wire, 1);
    EXPECT_EQ(material->wireSize, 2.5f);
}

TEST_F(Read3dsMaterial, PassesOverShininessShadingAndTheRest)
{
    const Material* material = read({.name = "A",
                                     .shininess = Percent3ds{10},
                                     .shininessStrength = Percent3ds{20},
                                     .twoSided = true,
                                     .shading = int16_t(3),
                                     .maps = {{.slot = MAP_3DS_BUMP, .file = "B.TGA"}}});
    EXPECT_EQ(material->twoSided, 1);
    EXPECT_EQ(material->firstTexture, nullptr);
    EXPECT_EQ(material->transparency, 0.0f);
}

TEST_F(Read3dsMaterial, EachMapHasItsPlace)
{
    const Material* material = read({.name = "A",
                                     .maps = {{.slot = MAP_3DS_TEXTURE1, .file = "ONE.TGA"},
                                              {.slot = MAP_3DS_OPACITY, .file = "OPAC.TGA"},
                                              {.slot = MAP_3DS_REFLECTION, .file = "REFL.TGA"},
                                              {.slot = MAP_3DS_TEXTURE2, .file = "two.tga"}}});
    EXPECT_STREQ(material->firstTexture->names[0], "ONE.TGA");
    EXPECT_STREQ(material->opacityTexture->names[0], "OPAC.TGA");
    EXPECT_STREQ(material->reflectionTexture->names[0], "REFL.TGA");
    EXPECT_STREQ(material->secondTexture->names[0], "two.tga");
    EXPECT_STREQ(material->firstTexture->baseDir, "MAPS\\");
    EXPECT_EQ(material->firstTexture->bitsPerTexel, 16);
    EXPECT_TRUE(material->firstTexture->mipmap);
    EXPECT_EQ(material->firstTexture->pixels, nullptr);
}

TEST_F(Read3dsMaterial, FlagsChooseDepthAndMipmapsOfItsMaps)
{
    const Material* material =
        read({.name = "A", .maps = {{.file = "A.TGA"}}}, LOAD_TEXTURE_32BIT | LOAD_NO_MIPMAP);
    EXPECT_EQ(material->firstTexture->bitsPerTexel, 32);
    EXPECT_FALSE(material->firstTexture->mipmap);
    EXPECT_FALSE(material->firstTexture->acceptSubstitutes);
    read({.name = "B", .maps = {{.file = "A.TGA"}}}, LOAD_TEXTURE_32BIT);
    EXPECT_EQ(list.getMaterial(2)->firstTexture->bitsPerTexel, 32);
    EXPECT_TRUE(list.getMaterial(2)->firstTexture->mipmap);
    read({.name = "C", .maps = {{.file = "A.TGA"}}}, LOAD_NO_MIPMAP);
    EXPECT_EQ(list.getMaterial(3)->firstTexture->bitsPerTexel, 16);
    EXPECT_FALSE(list.getMaterial(3)->firstTexture->mipmap);
}

TEST_F(Read3dsMaterial, ReadsTheParametersOfAMap)
{
    const Texture* texture = read({.name = "A",
                                   .maps = {{.file = "A.TGA",
                                             .percent = Percent3ds{80},
                                             .scaleU = 2.0f,
                                             .scaleV = 3.0f,
                                             .offsetU = 0.25f,
                                             .offsetV = 0.5f,
                                             .rotation = 45.0f}}})
                                 ->firstTexture;
    EXPECT_EQ(texture->percent, 80);
    EXPECT_EQ(texture->scaleU, 2.0f);
    EXPECT_EQ(texture->scaleV, 3.0f);
    EXPECT_EQ(texture->offsetU, 0.25f);
    EXPECT_EQ(texture->offsetV, 0.5f);
    EXPECT_EQ(texture->rotation, 45.0f);
}

TEST_F(Read3dsMaterial, FloatPercentageOfAMapIsTruncated)
{
    EXPECT_EQ(read({.name = "A", .maps = {{.file = "A", .percent = Percent3ds{49.9f, true}}}})
                  ->firstTexture->percent,
              49);
}

TEST_F(Read3dsMaterial, PercentageOfAMapThatIsNoIntegerCountsAsNothing)
{
    for (float value : {1e30f, -1e30f, std::numeric_limits<float>::quiet_NaN()})
    {
        TList fresh;
        beginMaterials(&fresh);
        read({.name = "A", .maps = {{.file = "A", .percent = Percent3ds{value, true}}}});
        EXPECT_EQ(fresh.getMaterial(1)->firstTexture->percent, 0);
        beginMaterials(&list);
    }
}

TEST_F(Read3dsMaterial, OnlyTheExactTilingValueTurnsTilingOff)
{
    EXPECT_EQ(read({.name = "A", .maps = {{.file = "A", .tiling = uint16_t(0x10)}}})->tiled, 0);
    for (uint16_t flags : {0x11, 0x00, 0x1010})
    {
        TList fresh;
        beginMaterials(&fresh);
        read({.name = "A", .maps = {{.file = "A", .tiling = flags}}});
        EXPECT_EQ(fresh.getMaterial(1)->tiled, 1);
        beginMaterials(&list);
    }
}

TEST_F(Read3dsMaterial, MapPassesOverUnknownChunks)
{
    read(ChunkWriter()
             .open(0xAFFF)
             .open(0xA000)
             .text("A")
             .close()
             .open(0xA200)
             .open(0xA360)
             .zeros(5)
             .close()
             .open(0xA35C)
             .f32(30)
             .finish());
    EXPECT_EQ(list.getMaterial(1)->firstTexture->rotation, 30.0f);
}

TEST_F(Read3dsMaterial, NameOfAMapIsCutTo63Characters)
{
    const Material* material = read({.name = "A", .maps = {{.file = std::string(300, 'm')}}});
    EXPECT_EQ(material->firstTexture->names[0], std::string(63, 'm'));
}

TEST_F(Read3dsMaterial, SecondMapOfAKindTakesThePlace)
{
    const Material* material = read({.name = "A", .maps = {{.file = "A.TGA"}, {.file = "B.TGA"}}});
    EXPECT_STREQ(material->firstTexture->names[0], "B.TGA");
}

// Several materials in a row, as the walk over the whole file reads them.
static std::vector<uint8_t> rowOf(const std::vector<Material3ds>& materials)
{
    ChunkWriter out;
    for (const Material3ds& material : materials)
        writeMaterial(out, material);
    return out.finish();
}

TEST_F(Read3dsMaterial, PlainColorsLoseTheChunkBehindTheMaterial)
{
    const auto bytes = rowOf({{.name = "A", .diffuse = {{1, 0, 0}}}, {.name = "B"}, {.name = "C"}});
    read(bytes);
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    ChunkWriter first, second;
    writeMaterial(first, {.name = "A", .diffuse = {{1, 0, 0}}});
    writeMaterial(second, {.name = "B"});
    EXPECT_EQ(end, first.size() + second.size());
}

TEST_F(Read3dsMaterial, SecondColorOfAPairSavesTheNextMaterial)
{
    const Material3ds pair = {.name = "A", .diffuse = {{0.2f, 0, 0}, {0.4f, 0, 0, COLOR_3DS_LINEAR_BYTE}}};
    read(rowOf({pair, {.name = "B"}}));
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    expectColor(*list.getMaterial(1)->diffuse, 51 * 0.003921569f, 0, 0);
    ChunkWriter first;
    writeMaterial(first, pair);
    EXPECT_EQ(end, first.size());
}

TEST_F(Read3dsMaterial, TwoColorPairsLoseTheEndOfTheMaterial)
{
    const std::vector<Color3ds> twice = {{0.2f, 0, 0}, {0.4f, 0, 0, COLOR_3DS_LINEAR_BYTE}};
    const Material3ds material = {
        .name = "A", .ambient = twice, .diffuse = twice, .twoSided = true, .wire = true};
    read(material);
    // 18 bytes are counted twice and 6 not at all: the last two chunks, of 6 bytes each, are never read.
    EXPECT_EQ(list.getMaterial(1)->twoSided, 0);
    EXPECT_EQ(list.getMaterial(1)->wire, 0);
    ChunkWriter out;
    writeMaterial(out, material);
    EXPECT_EQ(end, out.size() - 12);
}

TEST_F(Read3dsMaterial, TruncationGivesHarmlessValues)
{
    const auto cut = [&](const Material3ds& material, size_t bytes)
    {
        auto whole = rowOf({material});
        whole.resize(whole.size() - bytes);
        TList fresh;
        beginMaterials(&fresh);
        read(whole);
        beginMaterials(&list);
        struct
        {
            float wireSize, transparency;
        } result = {fresh.getMaterial(1)->wireSize, fresh.getMaterial(1)->transparency};
        return result;
    };
    EXPECT_EQ(cut({.name = "A", .wireSize = 2.0f}, 4).wireSize, -1.0f);
    EXPECT_EQ(cut({.name = "A", .transparency = Percent3ds{50}}, 2).transparency, 0.0f);
}

TEST_F(Read3dsMaterial, TruncatedMapValuesAreMinusOneOrNought)
{
    const auto texture = [&](const std::vector<uint8_t>& map)
    {
        read(ChunkWriter().header(0xAFFF, 500).open(0xA000).text("A").close().bytes(map).finish());
        return list.seekLastMaterial()->firstTexture;
    };
    EXPECT_EQ(texture(ChunkWriter().header(0xA200, 100).header(0x0030, 8).finish())->percent, 0);
    EXPECT_EQ(texture(ChunkWriter().header(0xA200, 100).header(0x0031, 10).finish())->percent, -1);
    EXPECT_EQ(texture(ChunkWriter().header(0xA200, 100).header(0xA354, 10).finish())->scaleU, -1.0f);
    EXPECT_EQ(texture(ChunkWriter().header(0xA200, 100).header(0xA356, 10).finish())->scaleV, -1.0f);
    EXPECT_EQ(texture(ChunkWriter().header(0xA200, 100).header(0xA358, 10).finish())->offsetU, -1.0f);
    EXPECT_EQ(texture(ChunkWriter().header(0xA200, 100).header(0xA35A, 10).finish())->offsetV, -1.0f);
    EXPECT_EQ(texture(ChunkWriter().header(0xA200, 100).header(0xA35C, 10).finish())->rotation, -1.0f);
}

TEST_F(Read3dsMaterial, PartsInFrontOfTheNameArePassedOver)
{
    ChunkWriter out;
    out.open(0xAFFF).open(0xA020);
    writeColor(out, {1, 0, 0});
    out.close().empty(0xA081).open(0xA200).open(0xA300).text("X.TGA").close().close();
    out.open(0xA000).text("A").close().empty(0xA085);
    read(out.finish());
    const Material* material = list.getMaterial(1);
    ASSERT_NE(material, nullptr);
    EXPECT_EQ(material->diffuse, nullptr);
    EXPECT_EQ(material->firstTexture, nullptr);
    EXPECT_EQ(material->twoSided, 0);
    EXPECT_EQ(material->wire, 1);
}

TEST_F(Read3dsMaterial, NothingIsMadeWithoutALength)
{
    for (int length : {0, -1})
    {
        LoaderBlock block(rowOf({{.name = "A"}}));
        block.enter();
        read3dsMaterial(length, 0);
        EXPECT_EQ(list.first->next, nullptr);
        EXPECT_EQ(block.offset(), 6u);
    }
}

TEST_F(Read3dsMaterial, NothingIsMadeWithoutAList)
{
    beginMaterials(nullptr);
    read(rowOf({{.name = "A", .diffuse = {{1, 0, 0}}, .maps = {{.file = "A.TGA"}}}}));
    EXPECT_EQ(findLoadedMaterial("A"), nullptr);
}

TEST_F(Read3dsMaterial, ChunkWithoutLengthEndsTheReading)
{
    read(ChunkWriter()
             .header(0xAFFF, 600)
             .open(0xA000)
             .text("A")
             .close()
             .header(0x1234, 0)
             .zeros(40)
             .finish());
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
    EXPECT_TRUE(exhausted);
}

TEST_F(Read3dsMaterial, TolerantKeepsToTheMaterialsOwnLength)
{
    const Material3ds first = {.name = "A", .diffuse = {{1, 0, 0}}};
    read(rowOf({first, {.name = "B"}}), LOAD_TOLERANT);
    ChunkWriter out;
    writeMaterial(out, first);
    EXPECT_EQ(end, out.size());
    EXPECT_FALSE(exhausted);
    expectColor(*list.getMaterial(1)->diffuse, 1, 0, 0);
}

TEST_F(Read3dsMaterial, TolerantReadsAllOfAMaterialWithColorPairs)
{
    const std::vector<Color3ds> pair = {{0.8f, 0.6f, 0.4f}, {0.1f, 0.1f, 0.1f, COLOR_3DS_LINEAR_BYTE}};
    const Material* material = read(
        {.name = "A", .ambient = pair, .diffuse = pair, .specular = pair, .twoSided = true, .wire = true},
        LOAD_TOLERANT);
    expectColor(*material->diffuse, 0.8f, 0.6f, 0.4f);
    expectColor(*material->ambient, 0.8f, 0.6f, 0.4f);
    expectColor(*material->specular, 0.8f, 0.6f, 0.4f);
    EXPECT_EQ(material->twoSided, 1);
    EXPECT_EQ(material->wire, 1);
}

TEST_F(Read3dsMaterial, TolerantTakesAnyFormOfColor)
{
    for (uint16_t form : {COLOR_3DS_FLOAT, COLOR_3DS_BYTE, COLOR_3DS_LINEAR_BYTE, COLOR_3DS_LINEAR_FLOAT})
    {
        TList fresh;
        beginMaterials(&fresh);
        read({.name = "A", .diffuse = {{1, 0.2f, 0, form}}}, LOAD_TOLERANT);
        expectColor(*fresh.getMaterial(1)->diffuse, 1, 0.2f, 0);
        beginMaterials(&list);
    }
}

TEST_F(Read3dsMaterial, TolerantFindsTheColorBehindOtherChunks)
{
    ChunkWriter out;
    out.open(0xAFFF).open(0xA000).text("A").close().open(0xA020).open(0x4242).zeros(3).close();
    writeColor(out, {1, 0, 0});
    out.close().open(0xA010).close();
    read(out.finish(), LOAD_TOLERANT);
    expectColor(*list.getMaterial(1)->diffuse, 1, 0, 0);
    EXPECT_EQ(list.getMaterial(1)->ambient, nullptr);
}

TEST_F(Read3dsMaterial, TolerantReadsFloatPercentagesOfBothScales)
{
    const Material* material = read({.name = "A",
                                     .transparency = Percent3ds{0.25f, true},
                                     .selfIllumination = Percent3ds{75.0f, true},
                                     .twoSided = true,
                                     .maps = {{.file = "A", .percent = Percent3ds{0.5f, true}}}},
                                    LOAD_TOLERANT);
    EXPECT_FLOAT_EQ(material->transparency, 0.25f);
    EXPECT_FLOAT_EQ(material->selfIllumination, 0.75f);
    EXPECT_EQ(material->twoSided, 1);
    EXPECT_EQ(material->firstTexture->percent, 50);
}

TEST_F(Read3dsMaterial, TolerantReadsIntegerPercentagesAndKeepsTheDefaultWithoutOne)
{
    ChunkWriter out;
    out.open(0xAFFF).open(0xA000).text("A").close().open(0xA050).open(0x0030).i16(30).close().close();
    out.open(0xA084).close();
    read(out.finish(), LOAD_TOLERANT);
    EXPECT_FLOAT_EQ(list.getMaterial(1)->transparency, 0.3f);
    EXPECT_EQ(list.getMaterial(1)->selfIllumination, 0.0f);
}

TEST_F(Read3dsMaterial, TolerantPassesOverWhatStandsBehindKnownContent)
{
    // A name and a colour chunk that each end in an empty chunk FFFF.
    ChunkWriter out;
    out.open(0xAFFF).open(0xA000).text("A").empty(0xFFFF).close();
    out.open(0xA020).open(0x0011).u8(255).u8(0).u8(0).empty(0xFFFF).close().close();
    out.open(0xA200).open(0xA300).text("A.TGA").empty(0xFFFF).close();
    out.open(0xA354).f32(2).empty(0xFFFF).close().close().empty(0xA081).close();
    read(out.finish(), LOAD_TOLERANT);
    const Material* material = list.getMaterial(1);
    expectColor(*material->diffuse, 1, 0, 0);
    EXPECT_STREQ(material->firstTexture->names[0], "A.TGA");
    EXPECT_EQ(material->firstTexture->scaleU, 2.0f);
    EXPECT_EQ(material->twoSided, 1);
}

TEST_F(Read3dsMaterial, TolerantAcceptsSubstituteImages)
{
    EXPECT_TRUE(
        read({.name = "A", .maps = {{.file = "A.BMP"}}}, LOAD_TOLERANT)->firstTexture->acceptSubstitutes);
}

TEST_F(Read3dsMaterial, TolerantNameEndsWithItsChunk)
{
    const auto bytes =
        ChunkWriter().open(0xAFFF).open(0xA000).u8('A').u8('B').close().open(0xA087).f32(3).close().finish();
    read(bytes, LOAD_TOLERANT);
    EXPECT_EQ(names(), std::vector<std::string>{"AB"});
    EXPECT_EQ(list.getMaterial(1)->wireSize, 3.0f);
}

TEST_F(Read3dsMaterial, TolerantEndsAtAChunkThatIsTooShort)
{
    for (uint32_t length = 0; length < 6; length++)
    {
        TList fresh;
        beginMaterials(&fresh);
        ChunkWriter out;
        out.open(0xAFFF).open(0xA000).text("A").close().header(0xA081, length).zeros(9).close();
        const size_t materialEnd = out.size();
        read(out.zeros(20).finish(), LOAD_TOLERANT);
        EXPECT_EQ(fresh.getMaterial(1)->twoSided, 0);
        EXPECT_EQ(end, materialEnd);
        beginMaterials(&list);
    }
}
