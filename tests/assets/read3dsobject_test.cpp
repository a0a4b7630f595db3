#include "vornik/assets/read3dsobject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "assets/chunkwalk.h"
#include "assets/loadmaterials.h"
#include "tests/assets/loaderblock.h"
#include "tests/support/writer3ds.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"

static const int everything = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS;

// A group to fill, on a silent engine that logs nothing.
class Read3dsObject : public ::testing::Test
{
protected:
    Read3dsObject() : group(new OGroup)
    {
        vrkSelectedRasterizer = 7;
        vrkInitErrorLog(3);
        beginMaterials(nullptr);
        loaderTolerant = false;
    }
    ~Read3dsObject() override
    {
        group.reset();
        beginMaterials(nullptr);
        loaderTolerant = false;
        vrkSelectedRasterizer = 0;
    }

    void read(std::vector<uint8_t> bytes, int flags = everything)
    {
        LoaderBlock block(std::move(bytes));
        read3dsObject(block.enter(), group.get(), flags);
        end = block.offset();
        exhausted = vrkLoader.atEnd;
    }
    Mesh* read(const Mesh3ds& mesh, int flags = everything)
    {
        ChunkWriter out;
        writeMesh(out, mesh);
        read(out.finish(), flags);
        return group->meshCount > 0 ? group->meshes[group->meshCount - 1] : nullptr;
    }
    Light* read(const Light3ds& light, int flags = everything)
    {
        ChunkWriter out;
        writeLight(out, light);
        read(out.finish(), flags);
        return group->lightCount > 0 ? group->lights[group->lightCount - 1] : nullptr;
    }
    Camera* read(const Camera3ds& camera, int flags = everything)
    {
        ChunkWriter out;
        writeCamera(out, camera);
        read(out.finish(), flags);
        return group->cameraCount > 0 ? group->cameras[group->cameraCount - 1] : nullptr;
    }

    std::unique_ptr<OGroup> group;
    size_t end = 0;
    bool exhausted = false;
};

static const std::vector<Vertex3D> corners = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}, {10, 11, 12}};

static void expectVector(const Vertex3D& v, float x, float y, float z)
{
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
    EXPECT_EQ(v.z, z);
}

static void expectFace(const Facelist& face, int a, int b, int c)
{
    EXPECT_EQ(face.a, a);
    EXPECT_EQ(face.b, b);
    EXPECT_EQ(face.c, c);
}

// The start of an object chunk with a mesh in it, left open.
static ChunkWriter openMesh(const char* name = "M")
{
    ChunkWriter out;
    out.open(0x4000).text(name).open(0x4100);
    return out;
}

static ChunkWriter& vertexChunk(ChunkWriter& out, int count)
{
    out.open(0x4110).u16(static_cast<uint16_t>(count));
    for (int i = 0; i < count; i++)
        out.vector(corners[static_cast<size_t>(i)]);
    return out.close();
}

TEST_F(Read3dsObject, MeshKeepsTheFilesCoordinatesAndOrder)
{
    const Mesh* mesh = read({.name = "Box",
                             .vertices = corners,
                             .faces = {{0, 1, 2, 0x107}, {3, 2, 1, 5}},
                             .textureCoords = {{0.25f, 0.75f}, {1, 2}, {3, 4}, {-1, 0}}});
    ASSERT_NE(mesh, nullptr);
    EXPECT_STREQ(mesh->name, "Box");
    EXPECT_EQ(mesh->visible, 1);
    ASSERT_EQ(mesh->vertexCount, 4);
    expectVector(mesh->originalVertices[0], 1, 2, 3);
    expectVector(mesh->originalVertices[3], 10, 11, 12);
    ASSERT_EQ(mesh->faceCount, 2);
    expectFace(mesh->faces[0], 0, 1, 2);
    expectFace(mesh->faces[1], 3, 2, 1);
    EXPECT_EQ(mesh->faceFlags[0], 7); // the low byte
    EXPECT_EQ(mesh->faceFlags[1], 5);
    EXPECT_EQ(mesh->textureCoords[0].x, 0.25f);
    EXPECT_EQ(mesh->textureCoords[0].y, 0.75f);
    EXPECT_EQ(mesh->textureCoords[3].x, -1.0f);
    EXPECT_EQ(mesh->smoothingGroups[0], 0u);
    EXPECT_EQ(mesh->smoothingGroups[1], 1u);
    EXPECT_EQ(mesh->faceMaterials[1].materialIndex, 0);
}

TEST_F(Read3dsObject, MeshWithoutTextureCoordinatesHasNoughts)
{
    const Mesh* mesh = read({.name = "M", .vertices = corners, .faces = {{0, 1, 2}}});
    EXPECT_EQ(mesh->textureCoords[2].x, 0.0f);
    EXPECT_EQ(mesh->textureCoords[2].y, 0.0f);
}

TEST_F(Read3dsObject, TakesTheWholeChunkOfAMesh)
{
    ChunkWriter out;
    const Mesh3ds mesh = {.name = "A long name",
                          .vertices = corners,
                          .faces = {{0, 1, 2}},
                          .textureCoords = {{0, 0}, {0, 0}, {0, 0}, {0, 0}},
                          .smoothing = {8},
                          .groups = {{"Stone", {0}}},
                          .axes = std::array<float, 12>{1, 0, 0, 0, 1, 0, 0, 0, 1, 5, 6, 7}};
    writeMesh(out, mesh);
    const size_t size = out.size();
    out.zeros(40);
    read(out.finish());
    EXPECT_EQ(end, size);
    EXPECT_FALSE(exhausted);
    // Local axes move nothing: vertices are in world coordinates.
    expectVector(group->meshes[0]->originalVertices[0], 1, 2, 3);
    expectVector(group->meshes[0]->pivot, 0, 0, 0);
    EXPECT_EQ(group->meshes[0]->smoothingGroups[0], 8u);
}

TEST_F(Read3dsObject, EmptyNameCountsSevenBytes)
{
    ChunkWriter out;
    out.open(0x4000).text("").empty(0x1234).empty(0x1234).close();
    const size_t size = out.size();
    read(out.zeros(30).finish());
    EXPECT_EQ(end, size);
}

TEST_F(Read3dsObject, LongNameIsKeptUpTo1023Characters)
{
    EXPECT_EQ(read(Mesh3ds{.name = std::string(300, 'n')})->name, std::string(300, 'n'));
    EXPECT_EQ(read({.name = std::string(2000, 'n'), .vertices = corners})->name, std::string(1023, 'n'));
    EXPECT_EQ(group->meshes[1]->vertexCount, 4);
}

TEST_F(Read3dsObject, SmoothingGroupsAreReadBehindTheFaceListOrBesideIt)
{
    for (bool beside : {false, true})
        for (int flags : {everything, everything | LOAD_TOLERANT})
        {
            const Mesh* mesh = read({.name = "M",
                                     .vertices = corners,
                                     .faces = {{0, 1, 2}, {1, 2, 3}},
                                     .smoothing = {0x80000001, 6},
                                     .smoothingBeside = beside},
                                    flags);
            EXPECT_EQ(mesh->smoothingGroups[0], 0x80000001u);
            EXPECT_EQ(mesh->smoothingGroups[1], 6u);
        }
}

TEST_F(Read3dsObject, SmoothingReadsOneValueAFaceWhateverItsLength)
{
    ChunkWriter out = openMesh();
    vertexChunk(out, 3).open(0x4120).u16(2).zeros(16);
    out.header(0x4150, 6).u32(3).u32(4).close();
    out.close().close();
    read(out.finish());
    EXPECT_EQ(group->meshes[0]->smoothingGroups[0], 3u);
    EXPECT_EQ(group->meshes[0]->smoothingGroups[1], 4u);
}

TEST_F(Read3dsObject, SmoothingGroupZeroIsNoneInTheTolerantReading)
{
    for (const bool tolerant : {false, true})
    {
        const Mesh* mesh = read(Mesh3ds{.name = "M",
                                        .vertices = corners,
                                        .faces = {{0, 1, 2}, {1, 3, 2}, {0, 1, 3}, {0, 2, 3}},
                                        .smoothing = {0, 0, 5, 5}},
                                everything | (tolerant ? LOAD_TOLERANT : 0));
        const uint32_t* values = mesh->smoothingGroups;
        EXPECT_EQ(values[0] == values[1], !tolerant);
        EXPECT_EQ(values[0] == 0, !tolerant);
        EXPECT_EQ(values[2], 5u);
        EXPECT_EQ(values[3], 5u);
    }
}

TEST_F(Read3dsObject, FaceMaterialsTakeTheNumberOfTheirName)
{
    TList list;
    for (const char* name : {"Stone", "Wood"})
    {
        auto* material = new Material;
        material->setName(name);
        list.addMaterial(material);
    }
    beginMaterials(&list);
    const Mesh* mesh = read({.name = "M",
                             .vertices = corners,
                             .faces = {{0, 1, 2}, {1, 2, 3}, {0, 2, 3}, {0, 1, 3}},
                             .groups = {{"Wood", {0, 2}}, {"Stone", {1, 3}}, {"wood", {3}}}});
    EXPECT_EQ(mesh->faceMaterials[0].materialIndex, 2);
    EXPECT_EQ(mesh->faceMaterials[1].materialIndex, 1);
    EXPECT_EQ(mesh->faceMaterials[2].materialIndex, 2);
    EXPECT_EQ(mesh->faceMaterials[3].materialIndex, 0); // no such name: VRKDefault
}

TEST_F(Read3dsObject, FaceMaterialsAreNoughtWithoutAList)
{
    const Mesh* mesh =
        read({.name = "M", .vertices = corners, .faces = {{0, 1, 2}}, .groups = {{"Wood", {0}}}});
    EXPECT_EQ(mesh->faceMaterials[0].materialIndex, 0);
}

TEST_F(Read3dsObject, FaceMaterialsOutsideTheFacesAreIgnored)
{
    TList list;
    auto* material = new Material;
    material->setName("Wood");
    list.addMaterial(material);
    beginMaterials(&list);
    for (int flags : {everything, everything | LOAD_TOLERANT})
    {
        const Mesh* mesh = read({.name = "M",
                                 .vertices = corners,
                                 .faces = {{0, 1, 2}, {1, 2, 3}},
                                 .groups = {{"Wood", {2, 1, 0x7FFF, 0xFFFF}}}},
                                flags);
        EXPECT_EQ(mesh->faceMaterials[0].materialIndex, 0);
        EXPECT_EQ(mesh->faceMaterials[1].materialIndex, 1);
    }
}

// A mesh of 40,000 faces, all of one material.
static Mesh3ds largeMesh()
{
    Mesh3ds mesh = {.name = "M", .vertices = corners};
    mesh.faces.resize(40000, {0, 1, 2});
    mesh.groups.push_back({"Wood", std::vector<uint16_t>(40000)});
    std::iota(mesh.groups[0].faces.begin(), mesh.groups[0].faces.end(), uint16_t(0));
    return mesh;
}

TEST_F(Read3dsObject, FaceMaterialsCountInSignedNumbersUnlessTolerant)
{
    TList list;
    auto* material = new Material;
    material->setName("Wood");
    list.addMaterial(material);
    beginMaterials(&list);
    const Mesh* mesh = read(largeMesh());
    EXPECT_EQ(mesh->faceCount, 40000);
    EXPECT_EQ(mesh->faceMaterials[0].materialIndex, 0);
    EXPECT_EQ(mesh->faceMaterials[39999].materialIndex, 0);
    mesh = read(largeMesh(), everything | LOAD_TOLERANT);
    EXPECT_EQ(mesh->faceMaterials[0].materialIndex, 1);
    EXPECT_EQ(mesh->faceMaterials[39999].materialIndex, 1);
}

TEST_F(Read3dsObject, CountsOfVerticesAndFacesAreUnsigned)
{
    Mesh3ds mesh = {.name = "M"};
    mesh.vertices.resize(65535, {1, 1, 1});
    mesh.textureCoords.resize(65535, {2, 2});
    mesh.faces.resize(65535, {65534, 0, 1});
    const Mesh* result = read(mesh);
    EXPECT_EQ(result->vertexCount, 65535);
    EXPECT_EQ(result->faceCount, 65535);
    EXPECT_EQ(result->textureCoords[65534].x, 2.0f);
    expectFace(result->faces[65534], 65534, 0, 1);
}

TEST_F(Read3dsObject, FaceListMayComeBeforeTheVertices)
{
    ChunkWriter out = openMesh();
    out.open(0x4120).u16(1).u16(2).u16(1).u16(0).u16(7).close();
    vertexChunk(out, 3).close().close();
    read(out.finish());
    expectFace(group->meshes[0]->faces[0], 2, 1, 0);
    EXPECT_EQ(group->meshes[0]->vertexCount, 3);
}

TEST_F(Read3dsObject, FaceWithACornerThatDoesNotExistShrinksToAPoint)
{
    const Mesh* mesh = read({.name = "M", .vertices = corners, .faces = {{0, 1, 4}, {9, 1, 2}, {3, 2, 1}}});
    expectFace(mesh->faces[0], 0, 0, 0);
    expectFace(mesh->faces[1], 0, 0, 0);
    expectFace(mesh->faces[2], 3, 2, 1);
}

TEST_F(Read3dsObject, MeshWithoutVerticesHasNoFaces)
{
    const Mesh* mesh = read({.name = "Bone", .faces = {{0, 0, 0}}});
    EXPECT_EQ(mesh->vertexCount, 0);
    EXPECT_EQ(mesh->faceCount, 0);
}

TEST_F(Read3dsObject, LaterListsReplaceEarlierOnes)
{
    ChunkWriter out = openMesh();
    vertexChunk(out, 4);
    out.open(0x4120).u16(2).zeros(16).close();
    vertexChunk(out, 2);
    out.open(0x4120).u16(1).u16(1).u16(0).u16(3).u16(7).close();
    read(out.finish());
    EXPECT_EQ(group->meshes[0]->vertexCount, 2);
    EXPECT_EQ(group->meshes[0]->faceCount, 1);
    expectFace(group->meshes[0]->faces[0], 0, 0, 0); // corner 3 went with the first list
}

TEST_F(Read3dsObject, TextureCoordinatesBeyondTheVerticesAreReadPast)
{
    ChunkWriter out = openMesh();
    vertexChunk(out, 1).open(0x4140).u16(3).f32(1).f32(2).f32(3).f32(4).f32(5).f32(6).close();
    out.open(0x4120).u16(1).zeros(8).close();
    read(out.finish());
    EXPECT_EQ(group->meshes[0]->textureCoords[0].y, 2.0f);
    EXPECT_EQ(group->meshes[0]->faceCount, 1);
}

TEST_F(Read3dsObject, ListsWithoutAMeshArePassedOver)
{
    ChunkWriter out;
    out.open(0x4000).text("X");
    vertexChunk(out, 3).open(0x4120).u16(1).zeros(8).close();
    out.open(0x4130).text("A").u16(1).u16(0).close().open(0x4140).u16(1).zeros(8).close();
    out.open(0x4150).u32(1).close().open(0x4659).f32(5).close().open(0x465A).f32(6).close();
    out.open(0x4700).vector({1, 2, 3}).vector({4, 5, 6}).f32(0).f32(50).close().close();
    for (int flags : {everything, everything | LOAD_TOLERANT})
        read(ChunkWriter(out).finish(), flags);
    EXPECT_EQ(group->meshCount, 0);
    EXPECT_EQ(group->lightCount, 0);
    EXPECT_EQ(group->cameraCount, 2);
}

TEST_F(Read3dsObject, HiddenObjectsArriveInvisibleAndComplete)
{
    EXPECT_EQ(read({.name = "M", .hidden = true, .vertices = corners, .faces = {{0, 1, 2}}})->visible, 0);
    EXPECT_EQ(group->meshes[0]->faceCount, 1);
    EXPECT_EQ(read(Light3ds{.name = "L", .hidden = true, .color = {{1, 1, 1, COLOR_3DS_FLOAT}}})->visible, 0);
    EXPECT_EQ(read(Camera3ds{.name = "C", .hidden = true})->visible, 0);
    EXPECT_EQ(read({.name = "M2", .vertices = corners})->visible, 1);
}

TEST_F(Read3dsObject, ObjectOfAnotherKindMakesNothing)
{
    ChunkWriter out;
    out.open(0x4000).text("Dummy").open(0x4F00).zeros(12).close().close();
    const size_t size = out.size();
    read(out.zeros(20).finish());
    EXPECT_EQ(group->meshCount + group->lightCount + group->cameraCount, 0);
    EXPECT_EQ(end, size);
}

TEST_F(Read3dsObject, KindsThatAreNotWantedAreReadAndThrownAway)
{
    const Mesh3ds mesh = {.name = "M", .vertices = corners, .faces = {{0, 1, 2}}};
    const Light3ds light = {.name = "L", .color = {{1, 1, 1, COLOR_3DS_FLOAT}}};
    EXPECT_EQ(read(mesh, LOAD_LIGHTS | LOAD_CAMERAS), nullptr);
    EXPECT_EQ(read(light, LOAD_MESHES | LOAD_CAMERAS), nullptr);
    EXPECT_EQ(read(Camera3ds{.name = "C"}, LOAD_MESHES | LOAD_LIGHTS), nullptr);
    EXPECT_TRUE(exhausted);
}

TEST_F(Read3dsObject, WhatDoesNotFitTheGroupIsThrownAway)
{
    for (int i = 0; i < maxLights; i++)
        group->addLight(new Light);
    for (int i = 0; i < maxCameras; i++)
        group->addCamera(new Camera);
    for (int i = 0; i < maxMeshs; i++)
        group->addMesh(new Mesh);
    read(Light3ds{.name = "L", .color = {{1, 1, 1, COLOR_3DS_FLOAT}}});
    read(Camera3ds{.name = "C"});
    read({.name = "M", .vertices = corners, .faces = {{0, 1, 2}}});
    EXPECT_EQ(group->lightCount, maxLights);
    EXPECT_EQ(group->cameraCount, maxCameras);
    EXPECT_EQ(group->meshCount, maxMeshs);
}

TEST_F(Read3dsObject, SeveralObjectsInOneChunkAreAllTaken)
{
    ChunkWriter out = openMesh("Twin");
    vertexChunk(out, 2).open(0x4100);
    vertexChunk(out, 3).close().close().close();
    read(ChunkWriter(out).finish());
    ASSERT_EQ(group->meshCount, 2);
    EXPECT_STREQ(group->meshes[1]->name, "Twin");
    EXPECT_EQ(group->meshes[0]->vertexCount, 2);
    EXPECT_EQ(group->meshes[1]->vertexCount, 3);
    read(out.finish(), LOAD_LIGHTS); // and all go again
    EXPECT_EQ(group->meshCount, 2);
}

TEST_F(Read3dsObject, LightHasItsPlaceColorAndRanges)
{
    const Light* light = read(Light3ds{.name = "Lamp",
                                       .position = {1, 2, 3},
                                       .color = {{0.5f, 0.25f, 1, COLOR_3DS_FLOAT}},
                                       .innerRange = 10.0f,
                                       .outerRange = 20.0f});
    ASSERT_NE(light, nullptr);
    EXPECT_STREQ(light->name, "Lamp");
    EXPECT_EQ(light->visible, 1);
    expectVector(light->location, 1, 2, 3);
    EXPECT_EQ(light->color.r, 0.5f);
    EXPECT_EQ(light->color.g, 0.25f);
    EXPECT_EQ(light->color.b, 1.0f);
    EXPECT_EQ(light->color.a, 1.0f);
    EXPECT_EQ(light->innerRange, 10.0f);
    EXPECT_EQ(light->outerRange, 20.0f);
}

TEST_F(Read3dsObject, LightWithoutRangesKeepsTheDefaults)
{
    const Light* light = read(Light3ds{.name = "L", .color = {{1, 1, 1, COLOR_3DS_FLOAT}}});
    EXPECT_EQ(light->innerRange, 0.0f);
    EXPECT_EQ(light->outerRange, 10000.0f);
}

TEST_F(Read3dsObject, LightTakesTheWholeChunkAlsoOfASpot)
{
    ChunkWriter out;
    writeLight(out, {.name = "L",
                     .position = {1, 2, 3},
                     .color = {{1, 1, 1, COLOR_3DS_FLOAT}},
                     .innerRange = 1.0f,
                     .outerRange = 2.0f,
                     .multiplier = 2.0f,
                     .spot = Spot3ds{{9, 9, 9}}});
    const size_t size = out.size();
    read(out.zeros(30).finish());
    EXPECT_EQ(end, size);
    expectVector(group->lights[0]->location, 1, 2, 3);
    EXPECT_EQ(group->lights[0]->color.r, 1.0f);
}

TEST_F(Read3dsObject, ByteColorOfALightIsSigned)
{
    EXPECT_FLOAT_EQ(read(Light3ds{.name = "L", .color = {{1, 0.2f, 0}}})->color.r, -0.003921569f);
}

// The bits as they are, those of a signalling NaN, too.
TEST_F(Read3dsObject, FloatColorOfALightIsKeptBitForBit)
{
    const uint32_t channels[] = {0x7F8E5C7C, 0x80000000, 0x00000001};
    ChunkWriter out;
    out.open(0x4000).text("L").open(0x4600).zeros(12).open(COLOR_3DS_FLOAT);
    for (const uint32_t channel : channels)
        out.u32(channel);
    read(out.finish());
    ASSERT_EQ(group->lightCount, 1);
    EXPECT_EQ(memcmp(&group->lights[0]->color, channels, sizeof(channels)), 0);
}

TEST_F(Read3dsObject, LightTakesTheChunkBehindItsPlaceForItsColor)
{
    // The multiplier stands there: it is passed over, and the colour behind it is an unknown chunk.
    ChunkWriter out;
    writeLight(out, {.name = "L",
                     .color = {{0.5f, 0.5f, 0.5f, COLOR_3DS_FLOAT}},
                     .outerRange = 7.0f,
                     .multiplier = 3.0f,
                     .multiplierFirst = true});
    const size_t size = out.size();
    read(out.zeros(30).finish());
    const Light* light = group->lights[0];
    EXPECT_EQ(light->color.r, 0.0f);
    EXPECT_EQ(light->outerRange, 7.0f);
    EXPECT_EQ(end, size);
}

TEST_F(Read3dsObject, CameraHasItsPlaceTargetRollAndLens)
{
    const Camera* camera =
        read(Camera3ds{.name = "View", .eye = {1, 2, 3}, .target = {4, 5, 6}, .roll = 7, .lens = 50});
    ASSERT_NE(camera, nullptr);
    EXPECT_STREQ(camera->name, "View");
    expectVector(camera->eye, 1, 2, 3);
    expectVector(camera->target, 4, 5, 6);
    EXPECT_EQ(camera->roll, 7.0f);
    EXPECT_EQ(camera->lens, 50.0f);
    Camera expected;
    expected.lens = 50;
    expected.calcFOV();
    EXPECT_EQ(camera->fov, expected.fov);
    EXPECT_EQ(group->activeCamera, camera);
}

TEST_F(Read3dsObject, ChildrenOfACameraAreCountedTwice)
{
    // 14 bytes of range chunk count in the camera's chunk and again by themselves: the mesh behind is lost.
    const auto bytes = []
    {
        ChunkWriter out;
        out.open(0x4000).text("C").open(0x4700).zeros(32).open(0x4720).f32(1).f32(2).close().close();
        out.open(0x4100).close().close();
        return out.zeros(30).finish();
    };
    read(bytes());
    EXPECT_EQ(group->cameraCount, 1);
    EXPECT_EQ(group->meshCount, 0);
    EXPECT_EQ(end, 6u + 2 + 6 + 32 + 14);
    read(bytes(), everything | LOAD_TOLERANT);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_EQ(end, 6u + 2 + 6 + 32 + 14 + 6);
}

TEST_F(Read3dsObject, CutVertexListEndsInMinusOnes)
{
    ChunkWriter out = openMesh();
    vertexChunk(out, 4).close().close();
    auto bytes = out.finish();
    bytes.resize(bytes.size() - 20); // behind the first coordinate of the third vertex
    read(bytes);
    const Mesh* mesh = group->meshes[0];
    EXPECT_EQ(mesh->vertexCount, 4);
    expectVector(mesh->originalVertices[1], 4, 5, 6);
    expectVector(mesh->originalVertices[2], 7, -1, -1);
    expectVector(mesh->originalVertices[3], -1, -1, -1);
    EXPECT_TRUE(exhausted);
}

TEST_F(Read3dsObject, CutListsEndInHarmlessValues)
{
    const auto bytes = [](uint16_t id, int whole)
    {
        ChunkWriter out = openMesh();
        vertexChunk(out, 2).open(0x4120).u16(2).u16(1).u16(1).u16(0).u16(7);
        if (id != 0x4120)
            out.u16(0).u16(0).u16(1).u16(3).close();
        else
            return out.close().finish();
        out.open(id);
        if (id == 0x4140)
            out.u16(2);
        for (int i = 0; i < whole; i++)
            out.f32(2);
        return out.close().finish();
    };
    read(bytes(0x4120, 0));
    expectFace(group->meshes[0]->faces[0], 1, 1, 0);
    expectFace(group->meshes[0]->faces[1], 0, 0, 0);
    EXPECT_EQ(group->meshes[0]->faceFlags[1], 0);
    read(bytes(0x4140, 1));
    EXPECT_EQ(group->meshes[1]->textureCoords[0].x, 2.0f);
    EXPECT_EQ(group->meshes[1]->textureCoords[0].y, -1.0f);
    EXPECT_EQ(group->meshes[1]->textureCoords[1].x, -1.0f);
    read(bytes(0x4150, 0));
    EXPECT_EQ(group->meshes[2]->smoothingGroups[1], 0u);
}

TEST_F(Read3dsObject, CutLightAndCameraValuesAreMinusOne)
{
    read(ChunkWriter().header(0x4000, 900).text("L").header(0x4600, 300).f32(1).finish());
    expectVector(group->lights[0]->location, 1, -1, -1);
    read(ChunkWriter().header(0x4000, 900).text("C").header(0x4700, 300).f32(1).finish());
    expectVector(group->cameras[0]->eye, 1, -1, -1);
    EXPECT_EQ(group->cameras[0]->lens, -1.0f);
    for (uint16_t range : {0x4659, 0x465A})
    {
        ChunkWriter out;
        out.header(0x4000, 900).text("L").header(0x4600, 300).zeros(12);
        writeColor(out, {1, 1, 1, COLOR_3DS_FLOAT});
        read(out.header(range, 10).finish());
        const Light* light = group->lights[group->lightCount - 1];
        EXPECT_EQ(range == 0x4659 ? light->innerRange : light->outerRange, -1.0f);
    }
}

TEST_F(Read3dsObject, ChunkWithoutLengthEndsTheReading)
{
    read(ChunkWriter().header(0x4000, 900).text("X").header(0x1234, 0).header(0x4100, 6).zeros(40).finish());
    EXPECT_EQ(group->meshCount, 0);
    EXPECT_TRUE(exhausted);
}

TEST_F(Read3dsObject, TolerantKeepsCountsWithinTheirChunks)
{
    ChunkWriter out = openMesh();
    out.open(0x4110).u16(65535).vector({1, 2, 3}).close();
    out.open(0x4140).u16(65535).f32(1).f32(2).close();
    out.open(0x4120).u16(65535).zeros(8).close();
    out.open(0x4130).text("").u16(65535).u16(0).close();
    out.open(0x4150).close().close().close();
    const size_t size = out.size();
    read(out.zeros(30).finish(), everything | LOAD_TOLERANT);
    const Mesh* mesh = group->meshes[0];
    EXPECT_EQ(mesh->vertexCount, 1);
    EXPECT_EQ(mesh->faceCount, 1);
    EXPECT_EQ(mesh->textureCoords[0].y, 2.0f);
    EXPECT_EQ(end, size);
}

TEST_F(Read3dsObject, TolerantPassesOverWhatStandsBehindKnownContent)
{
    ChunkWriter out = openMesh();
    out.open(0x4110).u16(1).vector({1, 2, 3}).zeros(5).close();
    out.open(0x4160).zeros(48).zeros(3).close();
    out.open(0x4140).u16(1).f32(1).f32(2).empty(0xFFFF).close();
    out.open(0x4120).u16(1).zeros(8).close();
    read(out.close().close().finish(), everything | LOAD_TOLERANT);
    EXPECT_EQ(group->meshes[0]->textureCoords[0].y, 2.0f);
    EXPECT_EQ(group->meshes[0]->faceCount, 1);
}

TEST_F(Read3dsObject, TolerantPutsVerticesThatAreNoNumbersOnTheFirstGoodOne)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float inf = std::numeric_limits<float>::infinity();
    const Mesh3ds mesh = {.name = "M",
                          .vertices = {{nan, 0, 0}, {1, 2, 3}, {4, inf, 6}, {7, 8, -inf}, {4, 5, 6}}};
    const Mesh* strict = read(mesh);
    EXPECT_TRUE(std::isnan(strict->originalVertices[0].x));
    EXPECT_EQ(strict->originalVertices[2].y, inf);
    const Mesh* tolerant = read(mesh, everything | LOAD_TOLERANT);
    for (int i : {0, 1, 2, 3})
        expectVector(tolerant->originalVertices[i], 1, 2, 3);
    expectVector(tolerant->originalVertices[4], 4, 5, 6);
    const Mesh* none = read({.name = "N", .vertices = {{nan, 1, 1}}}, everything | LOAD_TOLERANT);
    expectVector(none->originalVertices[0], 0, 0, 0);
}

TEST_F(Read3dsObject, TolerantLightTakesItsFirstColorWhereverItStands)
{
    const Light* light = read(
        Light3ds{.name = "L",
                 .color = {{0.5f, 0.25f, 1, COLOR_3DS_FLOAT}, {0.1f, 0.1f, 0.1f, COLOR_3DS_LINEAR_FLOAT}},
                 .innerRange = 3.0f,
                 .outerRange = 4.0f,
                 .multiplier = 2.0f,
                 .multiplierFirst = true},
        everything | LOAD_TOLERANT);
    EXPECT_EQ(light->color.r, 1.0f);
    EXPECT_EQ(light->color.g, 0.5f);
    EXPECT_EQ(light->color.b, 2.0f);
    EXPECT_EQ(light->innerRange, 3.0f);
    EXPECT_EQ(light->outerRange, 4.0f);
}

TEST_F(Read3dsObject, TolerantLightIsScaledByAMultiplierBehindItsColor)
{
    const Light* light =
        read(Light3ds{.name = "L", .color = {{1, 0.5f, 0}}, .multiplier = 0.5f}, everything | LOAD_TOLERANT);
    EXPECT_FLOAT_EQ(light->color.r, 0.5f);
    EXPECT_NEAR(light->color.g, 0.25f, 0.002f);
    EXPECT_EQ(light->color.a, 1.0f);
}

TEST_F(Read3dsObject, TolerantLightThatIsSwitchedOffIsBlack)
{
    const Light3ds lamp = {.name = "L", .color = {{1, 1, 1, COLOR_3DS_FLOAT}}, .off = true};
    EXPECT_EQ(read(lamp, everything | LOAD_TOLERANT)->color.r, 0.0f);
    EXPECT_EQ(read(lamp)->color.r, 1.0f);
}

TEST_F(Read3dsObject, TolerantLightWithoutColorIsWhite)
{
    EXPECT_EQ(read(Light3ds{.name = "L"}, everything | LOAD_TOLERANT)->color.g, 1.0f);
}

TEST_F(Read3dsObject, TolerantNameEndsWithTheChunk)
{
    read(ChunkWriter().open(0x4000).u8('A').u8('B').close().open(0x4100).close().finish(),
         everything | LOAD_TOLERANT);
    EXPECT_EQ(group->meshCount, 0);
}
