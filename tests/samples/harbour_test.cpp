// The sample program's scene, as the engine reads it.

#include <cmath>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>

#include "tests/support/engine.h"
#include "tests/support/process.h"
#include "tests/support/tempfolder.h"
#include "vornik/assets/load3ds.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"

namespace fs = std::filesystem;

static const int loadFlags = LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_MATERIALS | LOAD_SMOOTHING;

// Written once for all tests.
class Harbour : public EngineTest
{
protected:
    Harbour() : EngineTest(128, 72) {}

    static void SetUpTestSuite()
    {
        output = new TempFolder;
        ASSERT_EQ(runProcess({MAKE_SAMPLE, output->root()}), 0);
    }
    static void TearDownTestSuite()
    {
        delete output;
        output = nullptr;
    }

    OGroup* load(int flags)
    {
        const std::string file = output->path("harbour.3ds"), images = output->root();
        return scene.createOGroup(file.c_str(), flags, images.c_str(), 0, nullptr, nullptr);
    }

    static std::string readScene() { return output->read("harbour.3ds"); }

    static TempFolder* output;
    Scene scene;
};

TempFolder* Harbour::output = nullptr;

static std::vector<std::string> materialNames(OGroup* group)
{
    std::vector<std::string> names;
    for (const Material* m = group->activeTList->first; m; m = m->next)
        names.push_back(m->name);
    return names;
}

// Calls visit(id, data, size) for every chunk; sections and objects are entered.
template <typename Visit>
static void walk(const uint8_t* data, size_t size, const Visit& visit)
{
    for (size_t at = 0; at + 6 <= size;)
    {
        uint16_t id = 0;
        uint32_t length = 0;
        std::memcpy(&id, data + at, 2);
        std::memcpy(&length, data + at + 2, 4);
        ASSERT_GE(length, 6u);
        ASSERT_LE(at + length, size);
        const uint8_t* content = data + at + 6;
        visit(id, content, length - 6);
        if (id == 0x4D4D || id == 0x3D3D || id == 0xB000 || (id >= 0xB001 && id <= 0xB007) || id == 0xAFFF)
            walk(content, length - 6, visit);
        at += length;
    }
}

TEST_F(Harbour, HasSomeTwentyThousandTrianglesThreeCamerasAndLampsWithRanges)
{
    OGroup* group = load(loadFlags | LOAD_TOLERANT);
    ASSERT_NE(group, nullptr);
    int triangles = 0;
    for (int i = 0; i < group->meshCount; i++)
        triangles += group->meshes[i]->faceCount;
    EXPECT_GE(triangles, 5000);
    EXPECT_LE(triangles, 21000);
    EXPECT_EQ(group->cameraCount, 3);
    EXPECT_GE(group->lightCount, 8);
    for (int i = 0; i < group->lightCount; i++)
    {
        EXPECT_GT(group->lights[i]->innerRange, 0.0f);
        EXPECT_GT(group->lights[i]->outerRange, group->lights[i]->innerRange);
    }
}

TEST_F(Harbour, LosesNoMaterialToReadersThatCountInTheirOwnWay)
{
    OGroup* tolerant = load(loadFlags | LOAD_TOLERANT);
    OGroup* classic = load(loadFlags);
    ASSERT_TRUE(tolerant && classic);
    EXPECT_EQ(materialNames(classic), materialNames(tolerant));
    EXPECT_GT(materialNames(classic).size(), 30u);

    ASSERT_EQ(classic->meshCount, tolerant->meshCount);
    EXPECT_EQ(classic->lightCount, tolerant->lightCount);
    EXPECT_EQ(classic->cameraCount, tolerant->cameraCount);
    int mixed = 0;
    for (int i = 0; i < classic->meshCount; i++)
    {
        const Mesh *a = classic->meshes[i], *b = tolerant->meshes[i];
        ASSERT_EQ(a->faceCount, b->faceCount) << a->name;
        std::set<int> used;
        for (int f = 0; f < a->faceCount; f++)
        {
            ASSERT_EQ(a->faceMaterials[f].materialIndex, b->faceMaterials[f].materialIndex) << a->name;
            used.insert(a->faceMaterials[f].materialIndex);
        }
        EXPECT_EQ(used.count(0), 0u) << a->name << " has a face of the default material";
        mixed += used.size() > 1;
    }
    EXPECT_GT(mixed, 10);
    for (const Material* m = classic->activeTList->first->next; m; m = m->next)
    {
        for (const Color* c : {m->ambient, m->diffuse, m->specular})
        {
            ASSERT_NE(c, nullptr) << m->name;
            for (const float channel : {c->r, c->g, c->b})
                EXPECT_TRUE(channel >= 0 && channel <= 1) << m->name;
        }
    }
}

TEST_F(Harbour, FindsAllItsImagesInSizesThatTheEngineTakes)
{
    OGroup* group = load(loadFlags | LOAD_TEXTURE_32BIT);
    ASSERT_NE(group, nullptr);
    const std::string lines = log();
    EXPECT_EQ(lines.find("Error"), std::string::npos) << lines;
    EXPECT_EQ(lines.find("Illegal"), std::string::npos) << lines;
    EXPECT_EQ(lines.find("not found"), std::string::npos) << lines;

    int opacity = 0, reflections = 0, tga = 0, jpeg = 0;
    for (const Material* m = group->activeTList->first->next; m; m = m->next)
    {
        ASSERT_NE(m->firstTexture, nullptr) << m->name;
        const Texture& texture = *m->firstTexture;
        EXPECT_NE(texture.textureIDs[0], 0) << m->name;
        for (const int size : {texture.width, texture.height})
            EXPECT_TRUE(size >= 1 && size <= 1024 && (size & (size - 1)) == 0) << m->name << " " << size;
        const std::string name = texture.names[0];
        tga += name.ends_with(".tga");
        jpeg += name.ends_with(".jpg");
        if (m->opacityTexture)
        {
            ++opacity;
            EXPECT_EQ(texture.bytesPerPixel, 4) << m->name;
            EXPECT_EQ(m->transparency, 1.0f) << m->name;
        }
        if (m->reflectionTexture)
        {
            ++reflections;
            EXPECT_TRUE(fs::exists(output->path(m->reflectionTexture->names[0])));
        }
    }
    EXPECT_GE(jpeg, 10);
    EXPECT_GE(tga, 5);
    EXPECT_GE(opacity, 5);
    EXPECT_GE(reflections, 1);
}

TEST_F(Harbour, GivesEveryVertexOfATexturedMeshItsPlaceOnTheImage)
{
    OGroup* group = load(loadFlags | LOAD_TOLERANT);
    ASSERT_NE(group, nullptr);
    for (int i = 0; i < group->meshCount; i++)
    {
        const Mesh* mesh = group->meshes[i];
        float low = 1e9f, high = -1e9f;
        for (int v = 0; v < mesh->vertexCount; v++)
        {
            low = std::min({low, mesh->textureCoords[v].x, mesh->textureCoords[v].y});
            high = std::max({high, mesh->textureCoords[v].x, mesh->textureCoords[v].y});
        }
        EXPECT_GT(high - low, 0.05f) << mesh->name;
    }
}

TEST_F(Harbour, HasANodeWithKeysForEveryObjectAndNamesNoOther)
{
    const std::string bytes = readScene();
    std::set<std::string> objects, nodes;
    std::set<int> ids, parents;
    int moving = 0, turning = 0;
    const auto keyCount = [](const uint8_t* data)
    {
        uint32_t count = 0;
        std::memcpy(&count, data + 10, 4);
        return count;
    };
    walk(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(),
         [&](uint16_t id, const uint8_t* data, size_t size)
         {
             const std::string name(reinterpret_cast<const char*>(data),
                                    strnlen(reinterpret_cast<const char*>(data), size));
             if (id == 0x4000)
                 objects.insert(name);
             if (id == 0xB030)
                 ids.insert(static_cast<int16_t>(data[0] | data[1] << 8));
             if (id == 0xB010)
             {
                 nodes.insert(name);
                 parents.insert(static_cast<int16_t>(data[size - 2] | data[size - 1] << 8));
             }
             if (id == 0xB020)
                 moving += keyCount(data) > 1;
             if (id == 0xB021)
                 turning += keyCount(data) > 1;
         });
    EXPECT_EQ(nodes, objects);
    EXPECT_GE(moving, 3);
    EXPECT_GE(turning, 3);
    EXPECT_GT(parents.size(), 3u);
    parents.erase(-1);
    for (const int parent : parents)
        EXPECT_EQ(ids.count(parent), 1u) << parent;
}

// A player of keyframes puts a mesh at the sum of its and its parents' positions, less its pivot. In the
// first frame, and again in the last, that is where the mesh stands at rest.
TEST_F(Harbour, StandsAtTheEndsOfItsAnimationWhereItStandsAtRest)
{
    struct Node
    {
        std::string name;
        int parent = -1;
        Vertex3D pivot = {0, 0, 0}, first = {0, 0, 0}, last = {0, 0, 0};
    };
    std::map<int, Node> nodes;
    int id = -1;
    uint16_t kind = 0;
    const std::string bytes = readScene();
    walk(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(),
         [&](uint16_t chunk, const uint8_t* data, size_t size)
         {
             const char* text = reinterpret_cast<const char*>(data);
             if (chunk >= 0xB002 && chunk <= 0xB005)
                 kind = chunk;
             if (chunk == 0xB030)
                 id = data[0] | data[1] << 8;
             if (kind != 0xB002)
                 return;
             if (chunk == 0xB010)
             {
                 nodes[id].name = std::string(text, strnlen(text, size));
                 nodes[id].parent = static_cast<int16_t>(data[size - 2] | data[size - 1] << 8);
             }
             if (chunk == 0xB013)
                 std::memcpy(&nodes[id].pivot, data, 12);
             if (chunk == 0xB020)
             {
                 std::memcpy(&nodes[id].first, data + 20, 12);
                 std::memcpy(&nodes[id].last, data + size - 12, 12);
             }
         });

    OGroup* group = load(loadFlags);
    ASSERT_NE(group, nullptr);
    ASSERT_EQ(static_cast<int>(nodes.size()), group->meshCount);
    for (const auto& [number, node] : nodes)
    {
        Vertex3D first = -node.pivot, last = -node.pivot;
        for (int i = number; i != -1; i = nodes.at(i).parent)
        {
            first += nodes.at(i).first;
            last += nodes.at(i).last;
        }
        const Object* mesh = group->findObject(node.name.c_str());
        ASSERT_NE(mesh, nullptr);
        for (const Vertex3D& place : {first, last})
        {
            EXPECT_NEAR(place.x, mesh->position.x, 1e-3f) << node.name;
            EXPECT_NEAR(place.y, mesh->position.y, 1e-3f) << node.name;
            EXPECT_NEAR(place.z, mesh->position.z, 1e-3f) << node.name;
        }
    }
}

// Lists of sixteen images. The sparks on the water are their own opacity, so they have a second list.
TEST_F(Harbour, LampsFlickerAndSparksTwinkle)
{
    OGroup* group = load(loadFlags);
    ASSERT_NE(group, nullptr);
    const Material* lamp = group->activeTList->seekMaterial("Lamp glass");
    const Material* sparks = group->activeTList->seekMaterial("Glitter");
    ASSERT_TRUE(lamp && sparks && sparks->opacityTexture);
    EXPECT_STREQ(lamp->firstTexture->names[0], "lampglass.ifl");
    EXPECT_STREQ(sparks->firstTexture->names[0], "glitter.ifl");
    EXPECT_EQ(sparks->opacityTexture->frameCount, 16);
    for (const Texture* texture : {lamp->firstTexture, sparks->firstTexture})
    {
        ASSERT_EQ(texture->frameCount, 16);
        std::set<int> names(texture->textureIDs, texture->textureIDs + 16);
        EXPECT_EQ(names.size(), 16u);
        EXPECT_EQ(names.count(0), 0u);
        std::set<std::string> images;
        for (int frame = 1; frame <= 16; frame++)
            images.insert(output->read(texture->names[frame]));
        EXPECT_EQ(images.size(), 16u);
    }
    group->animateTextures();
    EXPECT_EQ(lamp->firstTexture->currentFrame, 1);
    EXPECT_EQ(sparks->firstTexture->currentFrame, 1);
}

// Both readings play the same motion, and where the animation ends it begins anew.
TEST_F(Harbour, PlaysInBothReadings)
{
    OGroup* tolerant = load(loadFlags | LOAD_KEYFRAMES | LOAD_TOLERANT);
    OGroup* classic = load(loadFlags | LOAD_KEYFRAMES);
    ASSERT_TRUE(tolerant && classic);
    EXPECT_EQ(classic->animated, 1);
    EXPECT_EQ(classic->frameCount, 360);
    ASSERT_EQ(classic->meshCount, tolerant->meshCount);
    int moving = 0;
    for (int i = 0; i < classic->meshCount; i++)
    {
        Vertex3D first = {0, 0, 0};
        for (const int frame : {7, 100, 200, 359})
        {
            for (OGroup* group : {classic, tolerant})
            {
                group->setCurrentFrame(frame);
                group->transformVertices(group->meshes[i]);
            }
            const Vertex3D &a = classic->meshes[i]->transformedVertices[0],
                           &b = tolerant->meshes[i]->transformedVertices[0];
            EXPECT_NEAR(a.x, b.x, 2e-3f) << classic->meshes[i]->name << frame;
            EXPECT_NEAR(a.y, b.y, 2e-3f) << classic->meshes[i]->name << frame;
            EXPECT_NEAR(a.z, b.z, 2e-3f) << classic->meshes[i]->name << frame;
            if (frame == 7)
                first = a;
            const Vertex3D step = a - first;
            moving += frame == 200 && std::sqrt(step * step) > 1e-4f;
        }
    }
    EXPECT_GT(moving, 10);
}

// In both readings.
TEST_F(Harbour, BeginsToPlayWhereItStandsAtRest)
{
    for (const int reading : {0, static_cast<int>(LOAD_TOLERANT)})
    {
        OGroup* group = load(loadFlags | LOAD_KEYFRAMES | reading);
        ASSERT_NE(group, nullptr);
        group->setCurrentFrame(0);
        for (int i = 0; i < group->meshCount; i++)
        {
            Mesh* mesh = group->meshes[i];
            group->transformVertices(mesh);
            for (int v = 0; v < mesh->vertexCount; v++)
            {
                const Vertex3D rest = mesh->calculatedVertices[v] + mesh->position;
                const Vertex3D off = mesh->transformedVertices[v] - rest;
                ASSERT_LT(std::sqrt(off * off), 1e-3f) << mesh->name;
            }
        }
    }
}

// Where a point that is given in the axes of a mesh lies in the world.
static Vertex3D placeOf(OGroup* group, Mesh* mesh, const Vertex3D& p)
{
    float m[16];
    group->getObjectAnimatedMatrix(mesh, m);
    return {m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12], m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
            m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]};
}

static float distanceOf(const Vertex3D& a, const Vertex3D& b)
{
    const Vertex3D d = a - b;
    return std::sqrt(d * d);
}

// Three levels: the tower stands, the cap turns on it and takes the hub along, the sails turn about the hub.
TEST_F(Harbour, MillTurnsWithTheWind)
{
    OGroup* group = load(loadFlags | LOAD_KEYFRAMES);
    ASSERT_NE(group, nullptr);
    Mesh* cap = static_cast<Mesh*>(group->findObject("Mill cap"));
    Mesh* sails = static_cast<Mesh*>(group->findObject("Mill sails"));
    ASSERT_TRUE(cap && sails);
    EXPECT_EQ(sails->parent, cap);
    ASSERT_EQ(cap->parent, group->findObject("Mill"));

    struct Moment
    {
        Vertex3D axis, hub, tip;
    };
    const auto at = [&](int frame)
    {
        group->setCurrentFrame(frame);
        return Moment{placeOf(group, cap, cap->pivot), placeOf(group, sails, sails->pivot),
                      placeOf(group, sails, sails->calculatedVertices[0])};
    };
    const Moment rest = at(0);
    const float radius = distanceOf(rest.tip, rest.hub), reach = distanceOf(rest.hub, rest.axis);
    EXPECT_GT(reach, 0.2f);
    float widest = 0;
    for (int frame = 1; frame < 360; frame++)
    {
        const Moment now = at(frame);
        EXPECT_LT(distanceOf(now.axis, rest.axis), 1e-4f);
        EXPECT_NEAR(now.hub.z, rest.hub.z, 1e-4f);
        EXPECT_NEAR(distanceOf(now.hub, now.axis), reach, 1e-3f);
        EXPECT_NEAR(distanceOf(now.tip, now.hub), radius, 1e-3f);
        widest = std::max(widest, distanceOf(now.hub, rest.hub));
    }
    EXPECT_GT(widest, 0.05f);
    // Two rounds: after a quarter of the time the sails stand upside down, on a cap that has turned.
    const Moment half = at(90);
    EXPECT_NEAR(half.tip.z - half.hub.z, rest.hub.z - rest.tip.z, 1e-3f);
}

// Flights end where they begin and never jump.
TEST_F(Harbour, CamerasFly)
{
    OGroup* group = load(loadFlags | LOAD_KEYFRAMES | LOAD_TOLERANT);
    ASSERT_NE(group, nullptr);
    for (Camera* camera : {group->cameras[0], group->cameras[2]})
    {
        const auto fly = [&](int frame)
        {
            group->setCurrentFrame(frame);
            group->doCameraAnim(camera);
            return camera->eye;
        };
        const Vertex3D begin = fly(0);
        Vertex3D before = begin, farthest = {0, 0, 0};
        for (int frame = 1; frame < 360; frame++)
        {
            const Vertex3D now = fly(frame);
            const Vertex3D step = now - before, away = now - begin;
            EXPECT_LT(std::sqrt(step * step), 0.06f) << camera->name << frame; // in units of ten metres
            if (away * away > farthest * farthest)
                farthest = away;
            before = now;
        }
        EXPECT_GT(std::sqrt(farthest * farthest), 1.0f);
        const Vertex3D rest = before - begin;
        EXPECT_LT(std::sqrt(rest * rest), 0.06f);
    }
    EXPECT_STREQ(group->cameras[2]->name, "Flight");
}

TEST_F(Harbour, HasAChimneyForSmoke)
{
    OGroup* group = load(loadFlags);
    ASSERT_NE(group, nullptr);
    EXPECT_NE(group->findObject("Chimney"), nullptr);
}

// No gap shows the cleared black.
TEST_F(Harbour, FillsTheWholeViewOfItsCameras)
{
    OGroup* group = load(loadFlags | LOAD_TOLERANT | LOAD_TEXTURE_32BIT);
    ASSERT_NE(group, nullptr);
    group->calcDynamicLights(0);
    for (int camera = 0; camera < 3; camera++)
    {
        vrkClear();
        ASSERT_EQ(scene.setCamera(group, camera), 0);
        scene.render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW);
        EXPECT_GE(drawnPixels(), width * height * 99 / 100);
    }
}

TEST_F(Harbour, FillsTheWholeViewAllAlongTheFlight)
{
    OGroup* group = load(loadFlags | LOAD_KEYFRAMES | LOAD_TOLERANT | LOAD_TEXTURE_32BIT);
    ASSERT_NE(group, nullptr);
    group->calcDynamicLights(0);
    ASSERT_EQ(scene.setCamera(group, 2), 0);
    for (int frame = 0; frame < 360; frame += 30)
    {
        group->setCurrentFrame(frame);
        vrkClear();
        scene.render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_ANIMATE_CAMERA);
        EXPECT_GE(drawnPixels(), width * height * 99 / 100) << frame;
    }
}

TEST(MakeSample, FailsOnAFolderThatCannotBeMade)
{
    TempFolder folder;
    const std::string blocked = folder.write("file", std::string("no folder"));
    EXPECT_GT(runProcess({MAKE_SAMPLE, blocked + "/inside"}), 0);
    EXPECT_GT(runProcess({MAKE_SAMPLE}), 0);
}
