#include "vornik/assets/load3ds.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "assets/loadmaterials.h"
#include "tests/assets/loadtest.h"
#include "tests/support/completescene.h"
#include "vornik/animation/path.h"
#include "vornik/assets/loader.h"
#include "vornik/assets/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/spatial/octree.h"

static const int objects = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS;

class Load3ds : public LoadTest
{
};

// Four corners of a square and its two faces; the box is 2 by 4 by 6 around (1, 2, 3).
static Mesh3ds square(const char* name)
{
    return {.name = name,
            .vertices = {{0, 0, 0}, {2, 0, 0}, {2, 4, 6}, {0, 4, 6}},
            .faces = {{0, 1, 2}, {0, 2, 3}}};
}

TEST_F(Load3ds, NamesUnderTwoCharactersCannotBeOpened)
{
    for (const char* name : {"", "a"})
        EXPECT_EQ(load3ds(name, group.get(), "", objects, nullptr, nullptr), 13);
    EXPECT_EQ(load3ds(nullptr, group.get(), "", objects, nullptr, nullptr), 13);
    EXPECT_EQ(log(), "Start loading...\nCannot open .3DS file (possible disk error)\n"
                     "Start loading...\nCannot open .3DS file (possible disk error)\n"
                     "Start loading...\nCannot open .3DS file (possible disk error)\n");
}

TEST_F(Load3ds, MissingFilesAndFoldersCannotBeOpened)
{
    const int flags = objects | LOAD_MATERIALS;
    EXPECT_EQ(load3ds(folder.path("none.3ds").c_str(), group.get(), "", flags, noteProgress, nullptr), 13);
    EXPECT_EQ(load3ds(folder.root().c_str(), group.get(), "", flags, noteProgress, nullptr), 13);
    EXPECT_EQ(group->tlistCount, 0);
    EXPECT_TRUE(fractions.empty());
}

TEST_F(Load3ds, FindsFilesByWindowsNames)
{
    folder.write("Maps/Scene.3ds", build3ds({.meshes = {square("M")}}));
    const std::string name = folder.root() + "\\MAPS\\SCENE.3DS";
    EXPECT_EQ(load3ds(name.c_str(), group.get(), "", objects, nullptr, nullptr), 0);
    EXPECT_EQ(group->meshCount, 1);
}

TEST_F(Load3ds, OtherFilesAreRefused)
{
    const std::vector<std::vector<uint8_t>> files = {
        {}, {0x4D}, {1, 2, 3, 4, 5}, ChunkWriter().empty(0x3D3D).finish()};
    for (const auto& bytes : files)
    {
        EXPECT_EQ(load(bytes, objects | LOAD_MATERIALS), 14);
        EXPECT_TRUE(vrkLoader.atEnd);
    }
    EXPECT_TRUE(logged("3DS file expected but something else encountered"));
    EXPECT_FALSE(logged("Start processing..."));
    EXPECT_EQ(group->tlistCount, 0);
}

TEST_F(Load3ds, MainChunkAloneIsAnEmptyScene)
{
    EXPECT_EQ(load(ChunkWriter().empty(0x4D4D).finish(), objects), 0);
    EXPECT_EQ(fractions, (std::vector<float>{0.7f, 0.9f, 0.95f, 1.0f}));
    EXPECT_EQ(log(), "Start loading...\nStart processing...\n");
    EXPECT_EQ(load(ChunkWriter().u16(0x4D4D).finish(), objects), 0);
}

TEST_F(Load3ds, BlockIsGoneAfterTheLoad)
{
    EXPECT_EQ(load(build3ds({}), objects), 0);
    EXPECT_TRUE(vrkLoader.atEnd);
}

TEST_F(Load3ds, KindsOfObjectsComeByTheirFlags)
{
    const Scene3ds scene = {.meshes = {square("M")},
                            .lights = {{.name = "L", .color = {{1, 1, 1, COLOR_3DS_FLOAT}}}},
                            .cameras = {{.name = "C"}}};
    load(scene, 0);
    EXPECT_EQ(group->meshCount + group->lightCount + group->cameraCount + group->tlistCount, 0);
    load(scene, LOAD_MESHES);
    EXPECT_EQ(group->meshCount, 1);
    load(scene, LOAD_LIGHTS);
    EXPECT_EQ(group->lightCount, 1);
    load(scene, LOAD_CAMERAS);
    EXPECT_EQ(group->cameraCount, 1);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_EQ(group->lightCount, 1);
}

TEST_F(Load3ds, MaterialsNeedTheirFlag)
{
    Scene3ds scene = {.materials = {paired("Red")}, .meshes = {square("M")}};
    scene.meshes[0].groups = {{"Red", {0, 1}}};
    load(scene, LOAD_MESHES);
    EXPECT_EQ(group->tlistCount, 0);
    EXPECT_EQ(loaderMaterials, nullptr);
    EXPECT_EQ(group->meshes[0]->faceMaterials[1].materialIndex, 0);
    load(scene, LOAD_MESHES | LOAD_MATERIALS);
    ASSERT_EQ(group->tlistCount, 1);
    EXPECT_EQ(loaderMaterials, group->tlists[0]);
    EXPECT_EQ(group->activeTList, group->tlists[0]);
    EXPECT_EQ(group->meshes[1]->faceMaterials[1].materialIndex, 1);
    EXPECT_EQ(std::string(group->tlists[0]->baseDirectory), folder.root() + "\\");
}

TEST_F(Load3ds, MaterialDirectoryMayBeNull)
{
    const std::string file = folder.write("a.3ds", build3ds({}));
    EXPECT_EQ(load3ds(file.c_str(), group.get(), nullptr, LOAD_MATERIALS, nullptr, nullptr), 0);
    EXPECT_STREQ(group->tlists[0]->baseDirectory, "\\");
}

TEST_F(Load3ds, MaterialListOfAFullGroupLivesForTheLoadOnly)
{
    for (int i = 0; i < maxTLists; i++)
        group->addTList(new TList);
    Scene3ds scene = {.materials = {paired("A")}, .meshes = {square("M")}};
    scene.meshes[0].groups = {{"A", {0}}};
    EXPECT_EQ(load(scene, LOAD_MESHES | LOAD_MATERIALS), 0);
    EXPECT_EQ(group->tlistCount, maxTLists);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_EQ(loaderMaterials, nullptr);
    EXPECT_TRUE(logged("TListList is full! Increase number of lists (OGroup)!"));
}

TEST_F(Load3ds, ProgressFollowsTheFileAndThePasses)
{
    ChunkWriter out;
    out.open(0x4D4D).open(0x3D3D).open(0x1234).zeros(2).close();
    out.open(0x4000).text("A").open(0x4100).close().close();
    out.open(0x4000).text("B").open(0x4100).close().close();
    const auto size = static_cast<float>(out.size());
    ASSERT_EQ(load(out.finish(), LOAD_MESHES), 0);
    EXPECT_EQ(fractions, (std::vector<float>{12 / size * 0.5f, 20 / size * 0.5f, 34 / size * 0.5f, 0.5f, 0.7f,
                                             0.7f, 1.0f / 2.0f * 0.2f + 0.7f, 0.9f, 0.95f, 1.0f}));
}

TEST_F(Load3ds, LoadsWithoutProgress)
{
    const std::string file =
        folder.write("a.3ds", build3ds({.materials = {paired("A")}, .meshes = {square("M")}}));
    EXPECT_EQ(load3ds(file.c_str(), group.get(), "", objects | LOAD_MATERIALS, nullptr, nullptr), 0);
    EXPECT_EQ(group->meshCount, 1);
}

TEST_F(Load3ds, StrictLosesTheMaterialBehindOneWithPlainColors)
{
    Scene3ds scene;
    for (const char* name : {"A", "B", "C", "D", "E"})
        scene.materials.push_back({.name = name, .diffuse = {{0.4f, 0, 0}}});
    scene.meshes = {square("First"), square("Second")};
    ASSERT_EQ(load(scene, LOAD_MESHES | LOAD_MATERIALS), 0);
    EXPECT_EQ(group->tlists[0]->seekMaterial("B"), nullptr);
    EXPECT_EQ(group->tlists[0]->seekMaterial("D"), nullptr);
    EXPECT_EQ(group->tlists[0]->seekMaterial("C")->id, 2);
    EXPECT_EQ(group->tlists[0]->seekMaterial("E")->id, 3);
    // The last one takes the object behind it along.
    ASSERT_EQ(group->meshCount, 1);
    EXPECT_STREQ(group->meshes[0]->name, "Second");
}

TEST_F(Load3ds, TolerantKeepsAllMaterialsAndObjects)
{
    Scene3ds scene;
    for (const char* name : {"A", "B", "C", "D", "E"})
        scene.materials.push_back({.name = name, .diffuse = {{0.4f, 0, 0}}});
    scene.meshes = {square("First"), square("First")};
    ASSERT_EQ(load(scene, LOAD_MESHES | LOAD_MATERIALS | LOAD_TOLERANT), 0);
    EXPECT_EQ(group->tlists[0]->seekLastMaterial()->id, 5);
    EXPECT_EQ(group->meshCount, 2);
}

TEST_F(Load3ds, LeftoverOfAReaderIsWalkedAndPassedOver)
{
    const std::vector<Color3ds> twice = {{0.2f, 0, 0}, {0.4f, 0, 0, COLOR_3DS_LINEAR_BYTE}};
    const Scene3ds scene = {
        .materials = {{.name = "A", .ambient = twice, .diffuse = twice, .twoSided = true, .wire = true},
                      {.name = "B", .ambient = twice, .diffuse = twice, .twoSided = true, .wire = true}},
        .meshes = {square("M")}};
    ASSERT_EQ(load(scene, LOAD_MESHES | LOAD_MATERIALS), 0);
    EXPECT_EQ(material(2)->wire, 0);
    EXPECT_EQ(group->meshCount, 1);
}

TEST_F(Load3ds, MeshesAreFinished)
{
    Scene3ds scene = {.materials = {paired("A")}, .meshes = {square("M")}};
    scene.meshes[0].groups = {{"A", {0}}};
    ASSERT_EQ(load(scene, LOAD_MESHES | LOAD_MATERIALS), 0);
    Mesh* mesh = group->meshes[0];
    EXPECT_EQ(mesh->position.x, 1.0f);
    EXPECT_EQ(mesh->position.y, 2.0f);
    EXPECT_EQ(mesh->position.z, 3.0f);
    EXPECT_EQ(mesh->originalVertices[0].x, -1.0f);
    EXPECT_EQ(mesh->calculatedVertices[0].z, -3.0f);
    EXPECT_FLOAT_EQ(mesh->radius, std::sqrt(14.0f));
    EXPECT_NEAR(static_cast<float>(mesh->originalNormals[0]), 1.0f, 1e-6f);
    EXPECT_EQ(mesh->calculatedNormals[0].z, mesh->originalNormals[0].z);
    ASSERT_NE(mesh->materialFaces, nullptr);
    EXPECT_EQ(mesh->materialFaces->count, 2);
    EXPECT_NEAR(static_cast<float>(mesh->edgeNormals[0].edgeNormal[0]), 1.0f, 1e-6f);
    EXPECT_NE(mesh->displayList, 0u);
    EXPECT_NE(mesh->transparentDisplayList, 0u);
    EXPECT_EQ(mesh->vertexCount, 4); // without smoothing no vertex is split
    EXPECT_EQ(mesh->parent, nullptr);
    EXPECT_EQ(group->animated, 0);
}

TEST_F(Load3ds, EdgeNormalsFollowTheFacesBehindTheirSorting)
{
    Scene3ds scene = {.materials = {paired("A")},
                      .meshes = {{.name = "M",
                                  .vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                                  .faces = {{0, 1, 2}, {0, 1, 3}, {0, 2, 1}},
                                  .groups = {{"A", {1}}}}}};
    ASSERT_EQ(load(scene, LOAD_MESHES | LOAD_MATERIALS), 0);
    const Mesh* mesh = group->meshes[0];
    EXPECT_EQ(mesh->faces[2].c, 3); // the only face of A moved behind the others
    // The edge from vertex 0 to 1 of that face looks down, away from vertex 3.
    EXPECT_NEAR(mesh->edgeNormals[2].edgeNormal[0].z, -1.0f, 1e-6f);
}

TEST_F(Load3ds, SmoothingFlagSplitsVertices)
{
    Scene3ds scene = {.meshes = {square("M")}};
    scene.meshes[0].smoothing = {1, 2};
    ASSERT_EQ(load(scene, LOAD_MESHES | LOAD_SMOOTHING), 0);
    EXPECT_EQ(group->meshes[0]->vertexCount, 6);
    EXPECT_EQ(group->meshes[0]->position.x, 1.0f);
    scene.meshes[0].smoothing = {1, 1};
    ASSERT_EQ(load(scene, LOAD_MESHES | LOAD_SMOOTHING), 0);
    EXPECT_EQ(group->meshes[1]->vertexCount, 4);
}

TEST_F(Load3ds, CombineFlagClosesCracksInFrontOfTheOtherPasses)
{
    Mesh3ds mesh = {.name = "M",
                    .vertices = {{0, 0, 0}, {200, 0, 0}, {0, 100, 0}, {0.5f, 0, 0}},
                    .faces = {{0, 1, 2}, {3, 2, 1}}};
    ASSERT_EQ(load({.meshes = {mesh}}, LOAD_MESHES | LOAD_COMBINE), 0);
    const Mesh* result = group->meshes[0];
    EXPECT_EQ(result->originalVertices[3].x, result->originalVertices[0].x);
    group = std::make_unique<OGroup>();
    ASSERT_EQ(load({.meshes = {mesh}}, LOAD_MESHES), 0);
    EXPECT_NE(group->meshes[0]->originalVertices[3].x, group->meshes[0]->originalVertices[0].x);
}

TEST_F(Load3ds, CombineFlagBearsAGroupWithoutMeshes)
{
    EXPECT_EQ(load(build3ds({}), LOAD_MESHES | LOAD_COMBINE), 0);
}

TEST_F(Load3ds, WithoutTheMeshFlagNoMeshIsFinished)
{
    load({.meshes = {square("M")}}, LOAD_MESHES);
    const float x = group->meshes[0]->position.x;
    load({.meshes = {square("N")}}, LOAD_LIGHTS);
    EXPECT_EQ(group->meshes[0]->position.x, x);
    load({.meshes = {square("N")}}, LOAD_MESHES); // and with it those of earlier loads are finished again
    EXPECT_EQ(group->meshCount, 2);
    EXPECT_EQ(group->meshes[0]->position.x, 0.0f);
}

template <class T>
static void emptyFirstSlot(T** slots)
{
    delete slots[0];
    slots[0] = nullptr;
}

TEST_F(Load3ds, EmptiedSlotsArePassedOver)
{
    const int all = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_KEYFRAMES |
                    LOAD_SMOOTHING | LOAD_COMBINE | LOAD_OCTREE;
    for (const int flags : {all, all | LOAD_TOLERANT})
    {
        group = std::make_unique<OGroup>();
        ASSERT_EQ(load(completeScene(), LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS), 0);
        emptyFirstSlot(group->meshes);
        emptyFirstSlot(group->lights);
        emptyFirstSlot(group->cameras);
        ASSERT_EQ(load(completeScene(), flags), 0);
        EXPECT_EQ(group->meshCount, 4);
        EXPECT_EQ(group->meshes[0], nullptr);
        EXPECT_GT(group->meshes[3]->radius, 0.0f);
        ASSERT_NE(group->octree, nullptr);
    }
}

TEST_F(Load3ds, KeyframeFlagLinksObjectsByTheirNumbers)
{
    Scene3ds scene = {.meshes = {square("A"), square("B")},
                      .lights = {{.name = "L", .color = {{1, 1, 1, COLOR_3DS_FLOAT}}}},
                      .cameras = {{.name = "C"}},
                      .nodes = {{.id = int16_t(1), .name = "A"}},
                      .segment = {{0, 100}}};
    ASSERT_EQ(load(scene, objects), 0);
    group->meshes[1]->objectId = 5;
    group->meshes[1]->parentId = 1;
    group->lights[0]->objectId = 2;
    group->lights[0]->parentId = 5;
    group->cameras[0]->objectId = 3;
    group->cameras[0]->parentId = -1;
    group->cameras[0]->parent = group->meshes[0];
    ASSERT_EQ(load(scene, LOAD_KEYFRAMES), 0);
    EXPECT_EQ(group->meshes[0]->parent, nullptr);
    EXPECT_EQ(group->meshes[1]->parent, group->meshes[0]);
    EXPECT_EQ(group->lights[0]->parent, group->meshes[1]);
    EXPECT_EQ(group->cameras[0]->parent, nullptr);
    EXPECT_EQ(group->meshCount, 2);
    EXPECT_EQ(group->animated, 1);
    EXPECT_EQ(group->pathListCount, 1);
    EXPECT_EQ(group->frameCount, 100);
}

TEST_F(Load3ds, NodeWithoutAnObjectEndsTheWalkButNotTheLoad)
{
    ChunkWriter out;
    out.open(0x4D4D);
    writeMesh(out.open(0x3D3D), square("A"));
    out.close().open(0xB000);
    writeNode(out, {.id = int16_t(7), .name = "A", .positions = {{.frame = 0}}});
    writeNode(out, {.name = "$$$DUMMY"});
    out.close().open(0x4000).text("B").open(0x4100).close().close().close();
    EXPECT_EQ(load(out.finish(), LOAD_MESHES | LOAD_MATERIALS | LOAD_KEYFRAMES | LOAD_OCTREE), 0);
    EXPECT_TRUE(logged("Fatal keyframer error in .3DS loader!"));
    ASSERT_EQ(group->meshCount, 1); // what comes behind isn't read
    EXPECT_EQ(group->meshes[0]->objectId, 7);
    EXPECT_EQ(group->animated, 0);
    ASSERT_EQ(group->pathListCount, 1);
    EXPECT_EQ(group->pathLists[0]->pathCount, 1);
    // All passes run.
    EXPECT_NE(material(0)->firstTexture, nullptr);
    EXPECT_NE(group->meshes[0]->materialFaces, nullptr);
    EXPECT_NE(group->octree, nullptr);
    EXPECT_EQ(fractions.back(), 1.0f);
}

TEST_F(Load3ds, NodesNeedTheFlagAndTheKindOfTheirObject)
{
    const Scene3ds scene = {.meshes = {square("A")}, .nodes = {{.name = "A"}}, .segment = {{0, 100}}};
    EXPECT_EQ(load(scene, LOAD_MESHES), 0);
    EXPECT_EQ(group->pathListCount, 0);
    EXPECT_EQ(group->frameCount, 0);
    group = std::make_unique<OGroup>();
    EXPECT_EQ(load(scene, LOAD_KEYFRAMES | LOAD_LIGHTS), 0);
    EXPECT_TRUE(logged("Fatal keyframer error in .3DS loader!"));
    EXPECT_EQ(group->animated, 0);
}

TEST_F(Load3ds, FileWithoutKeyframesGivesAnEmptyList)
{
    group->animated = 0;
    for (int count = 1; count <= 2; count++)
    {
        EXPECT_EQ(load({.meshes = {square("A")}}, LOAD_MESHES | LOAD_KEYFRAMES), 0);
        ASSERT_EQ(group->pathListCount, count);
        EXPECT_EQ(group->pathLists[count - 1]->pathCount, 0);
        EXPECT_EQ(group->pathLists[count - 1]->pivots, nullptr);
        EXPECT_EQ(group->animated, 0);
    }
}

static OGroup* watched;
static std::string steps;

TEST_F(Load3ds, ProgressIsToldBetweenThePasses)
{
    const std::string file = folder.write(
        "a.3ds",
        build3ds({.meshes = {square("A"), square("B")},
                  .nodes = {{.id = int16_t(1), .name = "A"}, {.id = int16_t(2), .name = "B", .parent = 1}}}));
    watched = group.get();
    steps.clear();
    const auto note = [](float fraction)
    {
        if (fraction < 0.7f)
            return;
        const bool finished = watched->meshes[1]->materialFaces, linked = watched->meshes[1]->parent;
        for (const bool done : {finished, linked, watched->animated != 0, watched->octree != nullptr})
            steps += done ? '1' : '0';
        steps += ' ';
    };
    const int flags = LOAD_MESHES | LOAD_KEYFRAMES | LOAD_OCTREE;
    ASSERT_EQ(load3ds(file.c_str(), group.get(), "", flags, note, nullptr), 0);
    // 0.7, one for each mesh, 0.9, 0.95, 1
    EXPECT_EQ(steps, "0000 0000 1000 1000 1100 1110 ");
    EXPECT_NE(group->octree, nullptr);
}

TEST_F(Load3ds, OctreeFlagBuildsTheTreeLast)
{
    ASSERT_EQ(load({.meshes = {square("A")}}, LOAD_MESHES), 0);
    EXPECT_EQ(group->octree, nullptr);
    group = std::make_unique<OGroup>();
    ASSERT_EQ(load({.meshes = {square("A")}}, LOAD_MESHES | LOAD_OCTREE), 0);
    ASSERT_NE(group->octree, nullptr);
    EXPECT_EQ(group->octree->polys.size, 2);
    EXPECT_EQ(group->octree->max.z, 6.0f); // where the finished mesh stands
    group = std::make_unique<OGroup>();
    EXPECT_EQ(load(build3ds({}), LOAD_MESHES | LOAD_OCTREE), 0);
    EXPECT_TRUE(logged("Cannot create octree for OGroup! Possible memory leak or OGroup is NULL!"));
    EXPECT_EQ(group->octree, nullptr);
}

TEST_F(Load3ds, TruncatedFileIsNoError)
{
    auto bytes = build3ds({.meshes = {square("A"), square("B")}});
    bytes.resize(bytes.size() - 20);
    EXPECT_EQ(load(bytes, LOAD_MESHES), 0);
    EXPECT_EQ(group->meshCount, 2);
    EXPECT_NE(group->meshes[1]->materialFaces, nullptr);
}
