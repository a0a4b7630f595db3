#include "vornik/scene/ogroup.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/particles/particlesource.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"

using GroupPtr = std::unique_ptr<OGroup>;

static GroupPtr makeGroup()
{
    return std::make_unique<OGroup>();
}

static Mesh* named(const char* name)
{
    return makeMesh(name, {}, {});
}

template <class T>
static T* namedObject(const char* name)
{
    T* object = new T;
    object->setName(name);
    return object;
}

TEST(OGroup, StartsEmpty)
{
    void* memory = malloc(sizeof(OGroup));
    memset(memory, 0xAA, sizeof(OGroup));
    OGroup* group = new (memory) OGroup;
    const std::vector<unsigned char> zeros(sizeof(OGroup));
    EXPECT_EQ(group->meshCount + group->cameraCount + group->lightCount + group->tlistCount, 0);
    EXPECT_EQ(group->pathListCount + group->particleSourceCount, 0);
    EXPECT_EQ(memcmp(group->meshes, zeros.data(), sizeof(group->meshes)), 0);
    EXPECT_EQ(memcmp(group->cameras, zeros.data(), sizeof(group->cameras)), 0);
    EXPECT_EQ(memcmp(group->lights, zeros.data(), sizeof(group->lights)), 0);
    EXPECT_EQ(memcmp(group->tlists, zeros.data(), sizeof(group->tlists)), 0);
    EXPECT_EQ(memcmp(group->pathLists, zeros.data(), sizeof(group->pathLists)), 0);
    EXPECT_EQ(memcmp(group->particleSources, zeros.data(), sizeof(group->particleSources)), 0);
    EXPECT_EQ(group->activeTList, nullptr);
    EXPECT_EQ(group->activePathList, nullptr);
    EXPECT_EQ(group->activeCamera, nullptr);
    EXPECT_EQ(group->octree, nullptr);
    EXPECT_EQ(group->animated, 0);
    EXPECT_EQ(group->stopAtEnd, 0);
    EXPECT_EQ(group->currentFrame, 0);
    EXPECT_EQ(group->firstFrame, 0);
    EXPECT_EQ(group->lastFrame, 0);
    EXPECT_EQ(group->frameCount, 0);
    group->~OGroup();
    free(memory);
}

TEST(OGroup, ListsHaveTheirCapacities)
{
    GroupPtr group = makeGroup();
    EXPECT_EQ(std::size(group->meshes), 4096u);
    EXPECT_EQ(std::size(group->cameras), 64u);
    EXPECT_EQ(std::size(group->lights), 256u);
    EXPECT_EQ(std::size(group->tlists), 64u);
    EXPECT_EQ(std::size(group->pathLists), 64u);
    EXPECT_EQ(std::size(group->particleSources), 256u);
    EXPECT_EQ(maxMeshs, 4096);
    EXPECT_EQ(maxCameras, 64);
    EXPECT_EQ(maxLights, 256);
    EXPECT_EQ(maxPaths, 64);
    EXPECT_EQ(maxParticleSources, 256);
}

TEST(OGroup, FullMeshListTakesNoMore)
{
    LogCapture log;
    GroupPtr group = makeGroup();
    for (int i = 0; i < 4096; i++)
        ASSERT_EQ(group->addMesh(new Mesh), 0);
    std::unique_ptr<Mesh> extra(new Mesh);
    EXPECT_EQ(log.text(), "");
    EXPECT_EQ(group->addMesh(extra.get()), 15);
    EXPECT_EQ(group->meshCount, 4096);
    EXPECT_EQ(log.text(), "MeshList is full (OGroup) create another OGroup or increase number of maxMeshs\n");
}

TEST(OGroup, FullLightListTakesNoMore)
{
    LogCapture log;
    GroupPtr group = makeGroup();
    for (int i = 0; i < 256; i++)
        ASSERT_EQ(group->addLight(new Light), 0);
    Light extra;
    EXPECT_EQ(group->addLight(&extra), 16);
    EXPECT_EQ(group->lightCount, 256);
    EXPECT_EQ(log.text(),
              "LightList is full (OGroup) create another OGroup or increase number of maxLights\n");
}

TEST(OGroup, FullCameraListTakesNoMore)
{
    LogCapture log;
    GroupPtr group = makeGroup();
    for (int i = 0; i < 64; i++)
        ASSERT_EQ(group->addCamera(new Camera), 0);
    Camera extra;
    EXPECT_EQ(group->addCamera(&extra), 17);
    EXPECT_EQ(group->cameraCount, 64);
    EXPECT_EQ(log.text(),
              "CameraList is full (OGroup) create another OGroup or increase number of maxCameras\n");
}

TEST(OGroup, FullTListListTakesNoMore)
{
    LogCapture log;
    GroupPtr group = makeGroup();
    for (int i = 0; i < 64; i++)
        ASSERT_EQ(group->addTList(new TList), 0);
    TList extra;
    EXPECT_EQ(group->addTList(&extra), 28);
    EXPECT_EQ(group->tlistCount, 64);
    EXPECT_EQ(log.text(), "TListList is full! Increase number of lists (OGroup)!\n");
}

TEST(OGroup, FullParticleSourceListTakesNoMore)
{
    LogCapture log;
    GroupPtr group = makeGroup();
    for (int i = 0; i < maxParticleSources; i++)
        EXPECT_EQ(group->addParticleSource(new ParticleSource), 0);
    EXPECT_EQ(log.text(), "");
    ParticleSource* last = group->particleSources[255];
    ParticleSource extra;
    EXPECT_EQ(group->addParticleSource(&extra), 40);
    EXPECT_EQ(log.text(), "ParticleSourceList is full (OGroup), increase maxParticleSources!\n");
    EXPECT_EQ(group->particleSourceCount, 256);
    EXPECT_EQ(group->particleSources[255], last);
}

TEST(OGroup, ParticleSourcesAreKeptInOrderAndDestroyedByClearAndWithTheGroup)
{
    GLRecorder gl(GLRecorder::swallow);
    GroupPtr group = makeGroup();
    const auto add = [&](int textureName)
    {
        ParticleSource* source = new ParticleSource;
        source->initParticles(3);
        source->material = new Material;
        source->material->addFirstTexture(new Texture);
        source->material->firstTexture->textureIDs[0] = textureName;
        group->addParticleSource(source);
        return source;
    };
    ParticleSource* first = add(1);
    ParticleSource* second = add(2);
    EXPECT_EQ(group->particleSourceCount, 2);
    EXPECT_EQ(group->particleSources[0], first);
    EXPECT_EQ(group->particleSources[1], second);
    EXPECT_EQ(group->clear(), 0);
    EXPECT_EQ(group->particleSourceCount, 0);
    EXPECT_EQ(group->particleSources[0], nullptr);
    EXPECT_EQ(group->particleSources[1], nullptr);
    EXPECT_EQ(gl.count("glDeleteTextures"), 2);

    add(3);
    group.reset();
    EXPECT_EQ(gl.countExact("glDeleteTextures(1, {3})"), 1);
}

TEST(OGroup, AMaterialOfAListAndOfSeveralSourcesIsDestroyedOnce)
{
    GLRecorder gl(GLRecorder::swallow);
    GroupPtr group = makeGroup();
    group->addTList(new TList);
    Material* material = new Material;
    material->addFirstTexture(new Texture);
    material->firstTexture->textureIDs[0] = 7;
    group->tlists[0]->addMaterial(material);
    for (int i = 0; i < 3; i++)
    {
        ParticleSource* source = new ParticleSource;
        source->material = material;
        group->addParticleSource(source);
    }
    group->addParticleSource(group->particleSources[0]);
    group.reset();
    EXPECT_EQ(gl.countExact("glDeleteTextures(1, {7})"), 1);
}

TEST(OGroup, FirstCameraAndFirstTListBecomeActive)
{
    GroupPtr group = makeGroup();
    for (int i = 0; i < 2; i++)
    {
        group->addCamera(new Camera);
        group->addTList(new TList);
    }
    EXPECT_EQ(group->activeCamera, group->cameras[0]);
    EXPECT_EQ(group->activeTList, group->tlists[0]);
}

TEST(OGroup, ATListBecomesActiveWheneverThereIsNone)
{
    GroupPtr group = makeGroup();
    group->addTList(new TList);
    group->activeTList = nullptr;
    group->addTList(new TList);
    EXPECT_EQ(group->activeTList, group->tlists[1]);
}

TEST(OGroup, ActiveListsAreChosenByIndex)
{
    LogCapture log;
    GroupPtr group = makeGroup();
    for (int i = 0; i < 2; i++)
    {
        group->addCamera(new Camera);
        group->addTList(new TList);
    }
    EXPECT_EQ(group->setActiveCamera(1), 0);
    EXPECT_EQ(group->activeCamera, group->cameras[1]);
    EXPECT_EQ(group->setActiveTList(1), 0);
    EXPECT_EQ(group->activeTList, group->tlists[1]);
    EXPECT_EQ(log.text(), "");
}

TEST(OGroup, AnEmptySlotKeepsTheActiveList)
{
    for (int slot : {1, 63, 64, -1, 1000000})
    {
        LogCapture log;
        GroupPtr group = makeGroup();
        group->addCamera(new Camera);
        group->addTList(new TList);
        EXPECT_EQ(group->setActiveCamera(slot), 35);
        EXPECT_EQ(group->activeCamera, group->cameras[0]);
        EXPECT_EQ(group->setActiveTList(slot), 36);
        EXPECT_EQ(group->activeTList, group->tlists[0]);
        EXPECT_EQ(log.text(), "CamList used in functioncall is NULL!\nTList used in functioncall is NULL!\n");
    }
}

TEST(OGroup, FindsByNameInTheOrderMeshesLightsCameras)
{
    GroupPtr group = makeGroup();
    Camera* camera = namedObject<Camera>("x");
    Light* light = namedObject<Light>("x");
    Mesh* mesh = named("x");
    group->addCamera(camera);
    EXPECT_EQ(group->findObject("x"), camera);
    group->addLight(light);
    EXPECT_EQ(group->findObject("x"), light);
    group->addMesh(mesh);
    EXPECT_EQ(group->findObject("x"), mesh);
    group->addMesh(named("x"));
    EXPECT_EQ(group->findObject("x"), mesh);
}

TEST(OGroup, NamesMatchExactly)
{
    GroupPtr group = makeGroup();
    group->addMesh(named("Box"));
    EXPECT_EQ(group->findObject("box"), nullptr);
    EXPECT_EQ(group->findObject("Bo"), nullptr);
    EXPECT_EQ(group->findObject("Box1"), nullptr);
    EXPECT_EQ(group->findObject("Box"), group->meshes[0]);
}

TEST(OGroup, ObjectsWithoutNameAreNotFoundByName)
{
    GroupPtr group = makeGroup();
    group->addMesh(new Mesh);
    group->addLight(new Light);
    group->addCamera(new Camera);
    group->addMesh(named(""));
    EXPECT_EQ(group->findObject("x"), nullptr);
    EXPECT_EQ(group->findObject(""), group->meshes[1]);
    EXPECT_EQ(group->findObject(static_cast<const char*>(nullptr)), nullptr);
}

TEST(OGroup, FindsByIdInTheSameOrder)
{
    GroupPtr group = makeGroup();
    Camera* camera = namedObject<Camera>("c");
    Light* light = namedObject<Light>("l");
    Mesh* mesh = named("m");
    camera->objectId = light->objectId = mesh->objectId = 7;
    group->addCamera(camera);
    EXPECT_EQ(group->findObject(7), camera);
    group->addLight(light);
    EXPECT_EQ(group->findObject(7), light);
    group->addMesh(mesh);
    EXPECT_EQ(group->findObject(7), mesh);
    EXPECT_EQ(group->findObject(8), nullptr);
}

TEST(OGroup, TheIdMinusOneFindsNothing)
{
    GroupPtr group = makeGroup();
    group->addMesh(named("m"));
    group->meshes[0]->objectId = -1;
    EXPECT_EQ(group->findObject(-1), nullptr);
    group->meshes[0]->objectId = -2;
    EXPECT_EQ(group->findObject(-2), group->meshes[0]);
}

TEST(OGroup, ClearEmptiesAllButTheTwoAnimationSwitches)
{
    GroupPtr group = makeGroup();
    group->addMesh(named("m"));
    group->addLight(new Light);
    group->addCamera(new Camera);
    group->addTList(new TList);
    group->animated = 1;
    group->stopAtEnd = 1;
    group->currentFrame = group->firstFrame = group->lastFrame = group->frameCount = 5;
    EXPECT_EQ(group->clear(), 0);
    EXPECT_EQ(group->meshCount + group->lightCount + group->cameraCount + group->tlistCount, 0);
    EXPECT_EQ(group->meshes[0], nullptr);
    EXPECT_EQ(group->lights[0], nullptr);
    EXPECT_EQ(group->cameras[0], nullptr);
    EXPECT_EQ(group->tlists[0], nullptr);
    EXPECT_EQ(group->activeTList, nullptr);
    EXPECT_EQ(group->activeCamera, nullptr);
    EXPECT_EQ(group->activePathList, nullptr);
    EXPECT_EQ(group->currentFrame, 0);
    EXPECT_EQ(group->firstFrame, 0);
    EXPECT_EQ(group->lastFrame, 0);
    EXPECT_EQ(group->frameCount, 0);
    EXPECT_EQ(group->animated, 1);
    EXPECT_EQ(group->stopAtEnd, 1);
    EXPECT_EQ(group->addMesh(named("again")), 0);
}

TEST(OGroup, AnObjectListedTwiceIsDestroyedOnce)
{
    GroupPtr group = makeGroup();
    Mesh* mesh = named("m");
    TList* list = new TList;
    Light* light = new Light;
    for (int i = 0; i < 2; i++)
    {
        group->addMesh(mesh);
        group->addTList(list);
        group->addLight(light);
    }
    EXPECT_EQ(group->delMesh(mesh), 0);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_STREQ(group->meshes[0]->name, "m");
}

TEST(OGroup, DelMeshClosesTheGap)
{
    GroupPtr group = makeGroup();
    Mesh* meshes[] = {named("a"), named("b"), named("c")};
    for (Mesh* mesh : meshes)
        group->addMesh(mesh);
    EXPECT_EQ(group->delMesh(meshes[1]), 0);
    EXPECT_EQ(group->meshCount, 2);
    EXPECT_EQ(group->meshes[0], meshes[0]);
    EXPECT_EQ(group->meshes[1], meshes[2]);
    EXPECT_EQ(group->meshes[2], nullptr);
}

TEST(OGroup, DelMeshTakesTheLastSlotOfAMeshListedTwice)
{
    GroupPtr group = makeGroup();
    Mesh *a = named("a"), *b = named("b"), *c = named("c");
    for (Mesh* mesh : {a, b, a, c})
        group->addMesh(mesh);
    EXPECT_EQ(group->delMesh(a), 0);
    EXPECT_EQ(group->meshes[0], a);
    EXPECT_EQ(group->meshes[1], b);
    EXPECT_EQ(group->meshes[2], c);
}

TEST(OGroup, DelMeshRefusesNullAndStrangers)
{
    LogCapture log;
    GroupPtr group = makeGroup();
    group->addMesh(named("a"));
    Mesh stranger;
    EXPECT_EQ(group->delMesh(nullptr), 38);
    EXPECT_EQ(group->delMesh(&stranger), 39);
    EXPECT_EQ(group->meshCount, 1);
    EXPECT_EQ(log.text(), "Object is NULL, cannot use this!\nObject not found from OGroup given!\n");
}

// A mesh of three vertices and the wanted faces, all with one material.
static Mesh* faced(const char* name, int faces, int material)
{
    Mesh* mesh = makeMesh(name, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}},
                          std::vector<Facelist>(size_t(faces), Facelist{0, 1, 2}));
    for (int i = 0; i < faces; i++)
        mesh->faceMaterials[i].materialIndex = material;
    mesh->sortFacesByMaterial();
    return mesh;
}

TEST(CopyMaterialFaceStructures, TargetDrawsLikeTheSource)
{
    GroupPtr source = makeGroup(), target = makeGroup();
    Mesh *from = faced("m", 2, 1), *to = faced("m", 2, 0);
    from->faces[1] = {2, 1, 0};
    from->faceMaterials[1].materialIndex = 3;
    from->sortFacesByMaterial();
    from->edgeNormals[1].edgeNormal[0] = {1, 2, 3};
    source->addMesh(from);
    target->addMesh(named("other"));
    target->addMesh(to);
    source->addTList(new TList);
    source->addTList(new TList);

    EXPECT_EQ(source->copyMaterialFaceStructures(target.get()), 0);
    EXPECT_EQ(to->faces[1].a, 2);
    EXPECT_EQ(to->faceMaterials[0].materialIndex, 1);
    EXPECT_EQ(to->faceMaterials[1].materialIndex, 3);
    EXPECT_EQ(to->edgeNormals[1].edgeNormal[0].y, 2.0f);
    ASSERT_NE(to->materialFaces, nullptr);
    EXPECT_NE(to->materialFaces, from->materialFaces);
    EXPECT_NE(to->materialFaces->ranges, from->materialFaces->ranges);
    ASSERT_EQ(to->materialFaces->count, 2);
    EXPECT_EQ(to->materialFaces->ranges[1].first, 1);
    EXPECT_EQ(to->materialFaces->ranges[1].last, 1);

    EXPECT_EQ(target->tlistCount, 2);
    EXPECT_EQ(target->tlists[0], source->tlists[0]);
    EXPECT_EQ(target->tlists[1], source->tlists[1]);
    EXPECT_EQ(target->activeTList, source->tlists[0]);
    // Both groups own the lists now: one of them lets go.
    target->tlistCount = 0;
}

TEST(CopyMaterialFaceStructures, TargetLosesItsOwnListsAndKeepsItsActivePointer)
{
    GroupPtr source = makeGroup(), target = makeGroup();
    TList* gone = new TList;
    target->addTList(gone);
    target->addTList(new TList);
    source->addTList(new TList);
    EXPECT_EQ(source->copyMaterialFaceStructures(target.get()), 0);
    EXPECT_EQ(target->tlistCount, 1);
    EXPECT_EQ(target->tlists[1], nullptr);
    EXPECT_EQ(target->activeTList, gone);
    EXPECT_EQ(target->setActiveTList(0), 0);
    EXPECT_EQ(target->activeTList, source->tlists[0]);

    // A second time the shared list stays alive.
    EXPECT_EQ(source->copyMaterialFaceStructures(target.get()), 0);
    EXPECT_EQ(target->tlistCount, 1);
    EXPECT_NE(target->tlists[0]->first, nullptr);
    target->tlistCount = 0;
}

TEST(CopyMaterialFaceStructures, ReportsANullTarget)
{
    LogCapture log;
    GroupPtr source = makeGroup();
    EXPECT_EQ(source->copyMaterialFaceStructures(nullptr), 26);
    EXPECT_EQ(log.text(), "OGroup used in functioncall is NULL!\n");
}

TEST(CopyMaterialFaceStructures, ToItselfChangesNothing)
{
    GroupPtr group = makeGroup();
    group->addMesh(faced("m", 2, 1));
    group->addTList(new TList);
    EXPECT_EQ(group->copyMaterialFaceStructures(group.get()), 0);
    EXPECT_EQ(group->tlistCount, 1);
    EXPECT_EQ(group->meshes[0]->materialFaces->count, 1);
}

TEST(CopyMaterialFaceStructures, StopsAtAMissingMeshWithEarlierOnesChanged)
{
    LogCapture log;
    GroupPtr source = makeGroup(), target = makeGroup();
    source->addMesh(faced("a", 1, 4));
    source->addMesh(faced("b", 1, 4));
    source->addMesh(faced("c", 1, 4));
    target->addMesh(faced("a", 1, 0));
    target->addMesh(faced("c", 1, 0));
    target->addCamera(namedObject<Camera>("b")); // no mesh
    TList* own = new TList;
    target->addTList(own);
    EXPECT_EQ(source->copyMaterialFaceStructures(target.get()), 38);
    EXPECT_EQ(log.text(), "Object is NULL, cannot use this!\n");
    EXPECT_EQ(target->meshes[0]->faceMaterials[0].materialIndex, 4);
    EXPECT_EQ(target->meshes[1]->faceMaterials[0].materialIndex, 0);
    EXPECT_EQ(target->tlists[0], own);
}

TEST(CopyMaterialFaceStructures, StopsAtAMeshOfOtherSize)
{
    LogCapture log;
    for (Mesh* other : {faced("a", 2, 0), makeMesh("a", {{0, 0, 0}}, {{0, 0, 0}})})
    {
        GroupPtr source = makeGroup(), target = makeGroup();
        source->addMesh(faced("a", 1, 4));
        target->addMesh(other);
        EXPECT_EQ(source->copyMaterialFaceStructures(target.get()), 50);
        EXPECT_EQ(target->meshes[0]->faceMaterials[0].materialIndex, 0);
    }
    EXPECT_EQ(
        log.text(),
        "Fatal! Engine internal structure copy failed!\nFatal! Engine internal structure copy failed!\n");
}

TEST(MarkAttach, SetsTheMarkOfAnyMesh)
{
    GroupPtr group = makeGroup();
    Mesh mesh;
    group->markAttach(false, &mesh);
    EXPECT_EQ(mesh.attachMark, 0);
    group->markAttach(true, &mesh);
    EXPECT_EQ(mesh.attachMark, 1);
    group->markAttach(true, nullptr);
}

// A mesh whose arrays all hold the given number.
static Mesh* filled(const char* name, int vertices, int faces, float value)
{
    Mesh* mesh = new Mesh;
    mesh->setName(name);
    mesh->createVertices(vertices);
    mesh->createFaces(faces);
    mesh->position = {value, value, value};
    for (int i = 0; i < vertices; i++)
    {
        mesh->originalVertices[i] = mesh->originalNormals[i] = {value, float(i), 0};
        mesh->calculatedVertices[i] = mesh->calculatedNormals[i] = {value, float(i), 1};
        mesh->textureCoords[i] = {value, float(i)};
        mesh->vertexColors[i] = {value, float(i), 0, 1};
        mesh->lightColors[i] = {value, float(i), 1, 0};
    }
    for (int i = 0; i < faces; i++)
    {
        mesh->faces[i] = {uint16_t(i), 1, 2};
        mesh->faceMaterials[i].materialIndex = int(value);
        mesh->smoothingGroups[i] = uint32_t(value) * 10u;
        mesh->faceFlags[i] = uint8_t(value);
        mesh->edgeNormals[i].edgeNormal[0] = {value, value, value};
    }
    return mesh;
}

TEST(Attach, OctreeGoes)
{
    const GroupPtr group = makeGroup();
    Mesh* mesh = makeMesh("M", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
    group->addMesh(mesh);
    vrkSelectRasterizer(7);
    group->constructOctree();
    vrkSelectRasterizer(0);
    ASSERT_NE(group->octree, nullptr);
    group->markAttach(false, mesh);
    group->attach(); // nothing is marked
    EXPECT_NE(group->octree, nullptr);
    group->markAttach(true, mesh);
    group->attach();
    EXPECT_EQ(group->octree, nullptr);
}

TEST(Attach, OneMarkedMeshIsCopiedAndDeleted)
{
    GroupPtr group = makeGroup();
    Mesh* mesh = filled("a", 3, 1, 5);
    group->addMesh(mesh);
    group->attach();
    ASSERT_EQ(group->meshCount, 1);
    EXPECT_STREQ(group->meshes[0]->name, "AttachedObject");
    EXPECT_EQ(group->findObject("AttachedObject"), group->meshes[0]);
    EXPECT_EQ(group->meshes[0]->vertexCount, 3);
    EXPECT_EQ(group->meshes[0]->faceCount, 1);
}

TEST(Attach, CopiesTheArraysOneBehindTheOther)
{
    GroupPtr group = makeGroup();
    group->addMesh(filled("a", 3, 2, 5));
    Mesh* unmarked = filled("between", 3, 2, 6);
    group->addMesh(unmarked);
    group->markAttach(false, unmarked);
    group->addMesh(filled("b", 4, 1, 7));
    group->attach();
    ASSERT_EQ(group->meshCount, 2);
    EXPECT_EQ(group->meshes[0], unmarked);
    Mesh* merged = group->meshes[1];
    ASSERT_EQ(merged->vertexCount, 7);
    ASSERT_EQ(merged->faceCount, 3);
    for (int i = 0; i < 7; i++)
    {
        const float value = i < 3 ? 5 : 7, index = float(i < 3 ? i : i - 3);
        EXPECT_EQ(merged->originalVertices[i].x, value);
        EXPECT_EQ(merged->originalVertices[i].y, index);
        EXPECT_EQ(merged->originalVertices[i].z, 0.0f);
        EXPECT_EQ(merged->calculatedVertices[i].x, value);
        EXPECT_EQ(merged->calculatedVertices[i].z, 1.0f);
        EXPECT_EQ(merged->originalNormals[i].x, value);
        EXPECT_EQ(merged->originalNormals[i].z, 0.0f);
        EXPECT_EQ(merged->calculatedNormals[i].x, value);
        EXPECT_EQ(merged->calculatedNormals[i].z, 1.0f);
        EXPECT_EQ(merged->textureCoords[i].x, value);
        EXPECT_EQ(merged->textureCoords[i].y, index);
        EXPECT_EQ(merged->vertexColors[i].r, value);
        EXPECT_EQ(merged->vertexColors[i].a, 1.0f);
        EXPECT_EQ(merged->lightColors[i].r, value);
        EXPECT_EQ(merged->lightColors[i].b, 1.0f);
    }
    for (int i = 0; i < 3; i++)
    {
        const int value = i < 2 ? 5 : 7;
        EXPECT_EQ(merged->smoothingGroups[i], uint32_t(value) * 10u);
        EXPECT_EQ(merged->faceMaterials[i].materialIndex, value);
        EXPECT_EQ(merged->faceFlags[i], value);
        // Numbers of vertices aren't moved along.
        EXPECT_EQ(merged->faces[i].a, i < 2 ? i : 0);
        EXPECT_EQ(merged->faces[i].c, 2);
        EXPECT_EQ(merged->edgeNormals[i].edgeNormal[0].x, 0.0f);
    }
}

TEST(Attach, MergedMeshStartsPlain)
{
    GroupPtr group = makeGroup();
    Mesh* mesh = filled("a", 3, 1, 5);
    mesh->sortFacesByMaterial();
    mesh->setSpecial(1);
    mesh->objectId = mesh->parentId = 4;
    mesh->pivot = {1, 1, 1};
    mesh->radius = 9;
    group->addMesh(mesh);
    group->attach();
    const Mesh* merged = group->meshes[0];
    EXPECT_EQ(merged->parent, nullptr);
    EXPECT_EQ(merged->objectId, 0);
    EXPECT_EQ(merged->parentId, 0);
    EXPECT_EQ(merged->special, 0);
    EXPECT_EQ(merged->specialType, 0);
    EXPECT_EQ(merged->specialFade, 0.0f);
    EXPECT_EQ(merged->visible, 1);
    EXPECT_EQ(merged->position.x, 0.0f);
    EXPECT_EQ(merged->pivot.x, 0.0f);
    EXPECT_EQ(merged->rotation.x, 0.0f);
    EXPECT_EQ(merged->radius, 0.0f);
    EXPECT_EQ(merged->materialFaces, nullptr);
    EXPECT_EQ(merged->displayList, 0u);
    EXPECT_EQ(merged->transparentDisplayList, 0u);
}

TEST(Attach, OfConsecutiveMarkedMeshesEverySecondStays)
{
    GroupPtr group = makeGroup();
    for (const char* name : {"a", "b", "c", "d", "e"})
        group->addMesh(filled(name, 3, 1, 1));
    group->attach();
    ASSERT_EQ(group->meshCount, 3);
    EXPECT_STREQ(group->meshes[0]->name, "b");
    EXPECT_STREQ(group->meshes[1]->name, "d");
    EXPECT_STREQ(group->meshes[2]->name, "AttachedObject");
    EXPECT_EQ(group->meshes[2]->vertexCount, 15);
}

TEST(Attach, DoesNothingWithoutMarkedVerticesAndFaces)
{
    GroupPtr group = makeGroup();
    group->attach();
    EXPECT_EQ(group->meshCount, 0);
    Mesh* mesh = filled("a", 3, 1, 5);
    group->addMesh(mesh);
    group->markAttach(false, mesh);
    group->attach();
    EXPECT_EQ(group->meshes[0], mesh);
    group->addMesh(filled("noFaces", 3, 0, 5));
    group->attach();
    group->addMesh(new Mesh);
    group->attach();
    EXPECT_EQ(group->meshCount, 3);
    EXPECT_EQ(group->findObject("AttachedObject"), nullptr);
}

TEST(Attach, WorksInAFullGroup)
{
    GroupPtr group = makeGroup();
    for (int i = 0; i < maxMeshs; i++)
    {
        group->addMesh(i == 7 ? filled("a", 3, 1, 5) : new Mesh);
        group->markAttach(i == 7, group->meshes[i]);
    }
    group->attach();
    EXPECT_EQ(group->meshCount, maxMeshs);
    EXPECT_STREQ(group->meshes[maxMeshs - 1]->name, "AttachedObject");
}
