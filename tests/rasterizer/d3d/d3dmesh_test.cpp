#include "rasterizer/d3d/d3dmesh.h"

#include <algorithm>
#include <cstring>

#include "rasterizer/d3d/constants.h"
#include "tests/support/allocations.h"
#include "tests/support/d3drecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/spatial/queries.h"

using Calls = std::vector<std::string>;
using Counts = std::vector<std::pair<int, int>>;

static const std::vector<Vertex3D> corners = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}};

class D3DMeshTest : public D3DRecorderTest
{
protected:
    TList list;
    Material* materials[3];
    D3DMesh mesh;
    std::vector<Color> colors = {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}, {0.5f, 2.0f, -1.0f, 0.5f}};
    std::vector<Vertex2D> coords = {{0, 0}, {1, 0}, {0, 1}, {1, 1}};

    D3DMeshTest()
    {
        for (Material*& material : materials)
            list.addMaterial(material = new Material);
    }

    void SetUp() override
    {
        D3DRecorderTest::SetUp();
        ASSERT_EQ(start(), 0);
        script.calls.clear();
    }

    int fill(const std::vector<Facelist>& faces, const std::vector<int>& numbers)
    {
        std::vector<Textlist> texts;
        for (const int number : numbers)
            texts.push_back({number});
        return mesh.fill(corners.data(), colors.data(), nullptr, coords.data(), int(corners.size()),
                         faces.data(), texts.data(), int(faces.size()));
    }

    // Each material of the list has one face: 1, 2 and 3 in this order.
    void fillThree()
    {
        fill({{0, 1, 2}, {1, 3, 2}, {0, 3, 2}}, {1, 2, 3});
        script.calls.clear();
    }

    Texture* giveTexture(Material* material, int environment = VRK_MODULATE)
    {
        Texture* texture = new Texture;
        texture->environment = environment;
        texture->textureIDs[0] = static_cast<int32_t>(vrkCreateTextureName());
        material->addFirstTexture(texture);
        return texture;
    }

    Counts ranges() const
    {
        Counts result;
        for (const D3DMesh::Range* range = mesh.ranges; range; range = range->next)
            result.push_back({range->materialIndex, range->faceCount});
        return result;
    }

    const D3DWorldVertex& vertex(int i) const
    {
        return reinterpret_cast<const D3DWorldVertex*>(mesh.vertices)[i];
    }
    int draws() const { return int(script.only({"indexed"}).size()); }
};

TEST_F(D3DMeshTest, VerticesHaveTheDevicesFormat)
{
    ASSERT_EQ(fill({{0, 1, 2}}, {1}), 0);
    EXPECT_EQ(mesh.vertexCount, 4);
    EXPECT_EQ(mesh.transformed, 0);
    EXPECT_EQ(mesh.useVertexBuffer, 0);
    EXPECT_EQ(vertex(3).x, 1.0f);
    EXPECT_EQ(vertex(3).y, 1.0f);
    EXPECT_EQ(vertex(3).z, 0.0f);
    EXPECT_EQ(vertex(3).u, 1.0f);
    EXPECT_EQ(vertex(3).v, 1.0f);
    EXPECT_EQ(vertex(0).color, 0xFCFC0000u);
    EXPECT_EQ(vertex(3).color, 0x7E7EFC00u);
}

TEST_F(D3DMeshTest, ColoursAreLimitedInTheirArray)
{
    fill({{0, 1, 2}}, {1});
    EXPECT_EQ(colors[3].g, 1.0f);
    EXPECT_EQ(colors[3].b, 0.0f);
}

TEST_F(D3DMeshTest, WithoutColoursThereIsOneOfItsOwn)
{
    const Facelist face = {0, 1, 2};
    const Textlist text = {1};
    mesh.fill(corners.data(), nullptr, nullptr, coords.data(), 4, &face, &text, 1);
    EXPECT_EQ(vertex(2).color, 0x0F0F7F0Fu);
}

TEST_F(D3DMeshTest, FourthFloatsMakeWindowVertices)
{
    const float extra[] = {1, 2, 3, 4};
    const Facelist face = {0, 1, 2};
    const Textlist text = {1};
    mesh.fill(corners.data(), nullptr, extra, nullptr, 4, &face, &text, 1);
    EXPECT_EQ(mesh.transformed, 1);
    const auto* windowed = reinterpret_cast<const D3DMesh::WindowVertex*>(mesh.vertices);
    EXPECT_EQ(windowed[3].x, 1.0f);
    EXPECT_EQ(windowed[3].reciprocalW, 4.0f);
    EXPECT_EQ(windowed[3].color, 0xFFFFFFFFu);
    EXPECT_EQ(windowed[3].u, 0.0f);
    mesh.setAlpha(0.5f);
    EXPECT_EQ(windowed[3].color, 0x7FFFFFFFu);
    mesh.updateColors(colors.data());
    EXPECT_EQ(windowed[0].color, 0xFCFC0000u);
    mesh.drawSolid(0, &list);
    EXPECT_TRUE(script.heard("indexed 4 324 4 3")) << script.text();
}

TEST_F(D3DMeshTest, FacesOfAMaterialComeTogetherInOrderOfFirstAppearance)
{
    ASSERT_EQ(fill({{0, 1, 2}, {1, 2, 3}, {2, 3, 0}, {3, 0, 1}, {0, 2, 3}}, {3, 1, 3, 2, 1}), 0);
    EXPECT_EQ(ranges(), (Counts{{3, 2}, {1, 2}, {2, 1}}));
    const std::vector<uint16_t> firsts = {0, 2, 1, 0, 3};
    const std::vector<int> numbers = {3, 3, 1, 1, 2};
    ASSERT_EQ(mesh.faceCount, 5);
    for (size_t i = 0; i < 5; ++i)
    {
        EXPECT_EQ(mesh.faces[i].a, firsts[i]) << i;
        EXPECT_EQ(mesh.faceMaterials[i], numbers[i]) << i;
    }
    EXPECT_EQ(mesh.ranges->unused, 0);
}

TEST_F(D3DMeshTest, ManyMaterialsAreNoTrouble)
{
    std::vector<Facelist> faces(5000, Facelist{0, 1, 2});
    std::vector<int> numbers;
    for (int i = 0; i < 5000; ++i)
        numbers.push_back(i * 7 - 100);
    ASSERT_EQ(fill(faces, numbers), 0);
    EXPECT_EQ(ranges().size(), 5000u);
    EXPECT_EQ(ranges().back().first, 4999 * 7 - 100);
}

TEST_F(D3DMeshTest, EmptyMeshesDrawNothing)
{
    ASSERT_EQ(mesh.fill(nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr, 0), 0);
    EXPECT_EQ(mesh.ranges, nullptr);
    mesh.drawSolid(VRK_RENDER_SOLID, &list);
    mesh.drawTransparent(0, &list);
    mesh.setAlpha(1.0f);
    mesh.updateColors(nullptr);
    EXPECT_EQ(draws(), 0);

    // Faces without vertices have no corner to stand on.
    const Facelist face = {0, 1, 2};
    const Textlist text = {1};
    ASSERT_EQ(mesh.fill(nullptr, nullptr, nullptr, nullptr, 5, &face, &text, 1), 0);
    mesh.drawSolid(VRK_RENDER_SOLID, &list);
    ASSERT_EQ(mesh.fill(corners.data(), nullptr, nullptr, nullptr, -4, &face, &text, -1), 0);
    mesh.drawSolid(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(draws(), 0);
}

TEST_F(D3DMeshTest, CornersOutsideTheVerticesShrinkToNothing)
{
    fill({{0, 1, 4}, {65535, 1, 2}, {0, 1, 2}}, {1, 1, 1});
    EXPECT_EQ(mesh.faces[0].b, 0);
    EXPECT_EQ(mesh.faces[1].a, 0);
    EXPECT_EQ(mesh.faces[1].c, 0);
    EXPECT_EQ(mesh.faces[2].c, 2);
}

TEST_F(D3DMeshTest, FillingAgainReplaces)
{
    fillThree();
    fill({{0, 1, 2}}, {1});
    EXPECT_EQ(ranges(), (Counts{{1, 1}}));
    EXPECT_EQ(mesh.faceCount, 1);
}

TEST_F(D3DMeshTest, AlphaHasTheFactor255AndColoursStay)
{
    fill({{0, 1, 2}}, {1});
    EXPECT_EQ(mesh.setAlpha(0.5f), 0);
    EXPECT_EQ(vertex(0).color, 0x7FFC0000u);
    EXPECT_EQ(vertex(3).color, 0x7F7EFC00u);
    mesh.setAlpha(1.0f);
    EXPECT_EQ(vertex(1).color, 0xFF00FC00u);
}

TEST_F(D3DMeshTest, NewColoursReplaceWordsAndAlpha)
{
    fill({{0, 1, 2}}, {1});
    mesh.setAlpha(0.0f);
    colors[0] = {0, 0, 3.0f, 1.0f};
    EXPECT_EQ(mesh.updateColors(colors.data()), 0);
    EXPECT_EQ(vertex(0).color, 0xFC0000FCu);
    EXPECT_EQ(colors[0].b, 1.0f);
}

TEST_F(D3DMeshTest, SolidDrawInItsOrder)
{
    fillThree();
    vrkInitMatrix();
    vrkTranslate(7, 8, 9);
    EXPECT_EQ(mesh.drawSolid(0, &list), 0);
    EXPECT_EQ(script.calls,
              (Calls{"state 27 0", "state 15 0", "stage 0 2 2", "stage 0 1 4", "stage 0 3 0", "stage 0 5 2",
                     "stage 0 4 2", "stage 0 6 0", "transform 1", "texture 0 none", "indexed 4 322 4 3",
                     "texture 0 none", "indexed 4 322 4 3", "texture 0 none", "indexed 4 322 4 3"}))
        << script.text();
    EXPECT_EQ(script.transforms[d3d::world][13], 8.0f);
    EXPECT_EQ(script.lastIndices, (std::vector<uint16_t>{0, 3, 2}));
}

TEST_F(D3DMeshTest, SolidLeavesOutWhatIsTransparent)
{
    fillThree();
    materials[0]->transparency = 0.25f;
    giveTexture(materials[1], VRK_DECAL);
    mesh.drawSolid(0, &list);
    EXPECT_EQ(draws(), 1);
    EXPECT_EQ(script.lastIndices, (std::vector<uint16_t>{0, 3, 2}));
}

TEST_F(D3DMeshTest, TransparentDrawInItsOrder)
{
    fillThree();
    materials[1]->transparency = 0.5f;
    EXPECT_EQ(mesh.drawTransparent(0, &list), 0);
    EXPECT_EQ(script.calls, (Calls{"state 27 1", "state 19 5", "state 20 6", "state 15 1", "stage 0 2 2",
                                   "stage 0 1 4", "stage 0 3 0", "stage 0 5 2", "stage 0 4 4", "stage 0 6 0",
                                   "transform 1", "texture 0 none", "indexed 4 322 4 3"}))
        << script.text();
    EXPECT_EQ(script.lastIndices, (std::vector<uint16_t>{1, 3, 2}));
    EXPECT_EQ(vertex(0).color >> 24, 127u);
    EXPECT_EQ(vertex(0).color & 0xFFFFFF, 0xFC0000u);
}

TEST_F(D3DMeshTest, TextureWithAlphaIsDrawnTransparent)
{
    fillThree();
    Texture* texture = giveTexture(materials[2], VRK_DECAL);
    uint8_t pixel[4] = {};
    texture->width = texture->height = 1;
    texture->pixels = pixel;
    vrkUploadTexture(texture, 0);
    texture->pixels = nullptr;
    script.calls.clear();
    mesh.drawTransparent(0, &list);
    EXPECT_EQ(draws(), 1);
    EXPECT_EQ(script.only({"texture"}), (Calls{"texture 0 1"}));
    EXPECT_EQ(vertex(0).color >> 24, 0u); // its material has no transparency
}

TEST_F(D3DMeshTest, TransparentFacesKeepTheOrderOfTheRanges)
{
    fillThree();
    materials[0]->transparency = 0.75f;
    materials[2]->transparency = 0.25f;
    mesh.drawTransparent(0, &list);
    EXPECT_EQ(draws(), 2);
    EXPECT_EQ(script.lastIndices, (std::vector<uint16_t>{0, 3, 2}));
    EXPECT_EQ(vertex(0).color >> 24, 63u);
}

TEST_F(D3DMeshTest, FlatShadingLastsForTheDraw)
{
    fillThree();
    for (const bool solid : {true, false})
    {
        script.calls.clear();
        solid ? mesh.drawSolid(VRK_RENDER_FLAT, &list) : mesh.drawTransparent(VRK_RENDER_FLAT, &list);
        EXPECT_EQ(script.only({"state 9 "}), (Calls{"state 9 1", "state 9 2"}));
        EXPECT_EQ(script.calls.back(), "state 9 2");
    }
}

TEST_F(D3DMeshTest, TwoSidedRangesAreNotCulled)
{
    fillThree();
    materials[1]->twoSided = 1;
    mesh.drawSolid(0, &list);
    EXPECT_EQ(
        script.only({"state 22", "indexed"}),
        (Calls{"indexed 4 322 4 3", "state 22 1", "indexed 4 322 4 3", "state 22 3", "indexed 4 322 4 3"}));

    script.calls.clear();
    mesh.drawSolid(VRK_RENDER_TWOSIDED, &list);
    EXPECT_EQ(script.only({"state 22"}).size(), 6u);

    // Also for what the draw leaves out.
    script.calls.clear();
    mesh.drawTransparent(0, &list);
    EXPECT_EQ(script.calls.size(), 13u);
    EXPECT_EQ(script.only({"state 22", "indexed"}), (Calls{"state 22 1", "state 22 3"}));
}

TEST_F(D3DMeshTest, TextureFlagChangesNothingHere)
{
    fillThree();
    mesh.drawTransparent(0, &list);
    const Calls plain = script.calls;
    script.calls.clear();
    mesh.drawTransparent(VRK_RENDER_NOTEXTURE, &list);
    EXPECT_EQ(script.calls, plain);
}

TEST_F(D3DMeshTest, WireIsALineListOfTheSameIndices)
{
    fillThree();
    materials[0]->wire = 1;
    mesh.drawSolid(0, &list);
    EXPECT_EQ(script.only({"indexed"}),
              (Calls{"indexed 2 322 4 3", "indexed 4 322 4 3", "indexed 4 322 4 3"}));
}

TEST_F(D3DMeshTest, MissingMaterialsAreSteppedOver)
{
    fill({{0, 1, 2}, {1, 3, 2}}, {77, 1});
    script.calls.clear();
    mesh.drawSolid(0, &list);
    EXPECT_EQ(draws(), 1);
    EXPECT_EQ(script.lastIndices, (std::vector<uint16_t>{1, 3, 2}));
    mesh.drawSolid(0, nullptr);
    mesh.drawTransparent(0, nullptr);
    EXPECT_EQ(draws(), 1);
}

TEST_F(D3DMeshTest, RangesFollowOneAnother)
{
    fill({{0, 1, 2}, {1, 3, 2}, {0, 3, 2}, {3, 1, 0}}, {1, 2, 1, 3});
    script.calls.clear();
    materials[2]->wire = 1; // is drawn last
    mesh.drawSolid(0, &list);
    EXPECT_EQ(script.only({"indexed"}),
              (Calls{"indexed 4 322 4 6", "indexed 4 322 4 3", "indexed 2 322 4 3"}));
    EXPECT_EQ(script.lastIndices, (std::vector<uint16_t>{3, 1, 0}));
}

TEST_F(D3DMeshTest, HugeRangesAreDrawnInPieces)
{
    fill(std::vector<Facelist>(70000, Facelist{0, 1, 2}), std::vector<int>(70000, 1));
    script.calls.clear();
    mesh.drawSolid(0, &list);
    EXPECT_EQ(script.only({"indexed"}), (Calls{"indexed 4 322 4 196605", "indexed 4 322 4 13395"}));
}

TEST_F(D3DMeshTest, PiecesOfAHugeWireRangeKeepTheirLinesWhole)
{
    fill(std::vector<Facelist>(70000, Facelist{0, 1, 2}), std::vector<int>(70000, 1));
    materials[0]->wire = 1;
    script.calls.clear();
    mesh.drawSolid(0, &list);
    // A draw takes 65,535 lines, and an odd number of indices would cut one in two.
    EXPECT_EQ(script.only({"indexed"}), (Calls{"indexed 2 322 4 131070", "indexed 2 322 4 78930"}));
}

TEST_F(D3DMeshTest, WithoutMemoryItStaysEmpty)
{
    const std::vector<Facelist> faces = {{0, 1, 2}, {1, 3, 2}};
    const std::vector<Textlist> texts = {{1}, {2}};
    vrkInitErrorLog(folder.path("log").c_str());
    std::vector<int> answers;
    int answer = -1;
    for (long n = 1; answer != 0 && n < 1000; ++n)
    {
        failAllocation(n);
        answer = mesh.fill(corners.data(), colors.data(), nullptr, coords.data(), 4, faces.data(),
                           texts.data(), 2);
        failAllocation(0);
        answers.push_back(answer);
        EXPECT_EQ(mesh.ranges != nullptr, answer == 0) << n;
        EXPECT_EQ(mesh.faceCount, answer == 0 ? 2 : 0) << n;
    }
    // Ranges are made last, one for each material, and are what the log is told of.
    ASSERT_GE(answers.size(), 6u);
    EXPECT_EQ(answers.back(), 0);
    answers.pop_back();
    const std::vector<int> last(answers.end() - 3, answers.end());
    EXPECT_EQ(last, (std::vector<int>{2, 51, 51}));
    EXPECT_EQ(std::count(answers.begin(), answers.end(), 51), 2);
    EXPECT_EQ(log(), "Fatal! DX has run out of memory!\nFatal! DX has run out of memory!\n");
}

TEST_F(D3DMeshTest, VertexBufferIsDrawnFromAndRefilled)
{
    fillThree();
    mesh.vertexBuffer = d3d->device->createVertexBuffer(d3d::fvfWorld, 4);
    mesh.drawSolid(0, &list);
    EXPECT_EQ(draws(), 3); // not asked for
    mesh.useVertexBuffer = 1;
    mesh.drawSolid(0, &list);
    EXPECT_EQ(script.only({"buffered"}), (Calls{"buffered 4 4 3", "buffered 4 4 3", "buffered 4 4 3"}));

    mesh.setAlpha(0.5f);
    ASSERT_EQ(script.bufferContent.size(), 4 * sizeof(D3DWorldVertex));
    EXPECT_EQ(std::memcmp(script.bufferContent.data(), mesh.vertices, script.bufferContent.size()), 0);
    script.bufferContent.clear();
    mesh.updateColors(colors.data());
    EXPECT_EQ(std::memcmp(script.bufferContent.data(), mesh.vertices, script.bufferContent.size()), 0);

    mesh.vertexBuffer.reset();
    EXPECT_EQ(script.buffersAlive, 0);
    mesh.drawSolid(0, &list); // falls back to the vertices
    EXPECT_EQ(draws(), 6);
}

TEST_F(D3DMeshTest, DrawsOnlyOnARunningRasterizer)
{
    fillThree();
    vrkSelectRasterizer(7);
    mesh.drawSolid(0, &list);
    mesh.drawTransparent(0, &list);
    vrkSelectRasterizer(1);
    d3d->shutdown();
    script.calls.clear();
    mesh.drawSolid(0, &list);
    mesh.drawTransparent(0, &list);
    EXPECT_EQ(script.calls, Calls{});
}

class D3DSceneMeshTest : public D3DMeshTest
{
protected:
    Mesh* scene = makeMesh("mesh", corners, {{0, 1, 2}, {1, 3, 2}});

    D3DSceneMeshTest()
    {
        scene->faceMaterials[0].materialIndex = 1;
        scene->faceMaterials[1].materialIndex = 2;
        for (int i = 0; i < 4; ++i)
            scene->vertexColors[i] = {1, 1, 1, 1};
    }
    ~D3DSceneMeshTest() override { delete scene; }
};

TEST_F(D3DSceneMeshTest, FirstRenderMakesTheObjectWhateverTheFlags)
{
    scene->visible = 0;
    EXPECT_EQ(scene->render(0, nullptr), 0);
    ASSERT_NE(scene->d3dMesh, nullptr);
    EXPECT_EQ(scene->d3dMesh->vertexCount, 4);
    EXPECT_EQ(scene->d3dMesh->faceCount, 2);
    EXPECT_EQ(script.calls, Calls{});
    const D3DMesh* made = scene->d3dMesh;
    scene->render(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(scene->d3dMesh, made);
    EXPECT_EQ(script.calls, Calls{}); // hidden
}

TEST_F(D3DSceneMeshTest, FlagsSelectTheDraws)
{
    materials[1]->transparency = 1.0f;
    scene->render(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(script.only({"state 27"}), (Calls{"state 27 0"}));
    EXPECT_EQ(draws(), 1);
    script.calls.clear();
    scene->render(VRK_RENDER_TRANSPARENT_NOW, &list);
    EXPECT_EQ(script.only({"state 27"}), (Calls{"state 27 1"}));
    EXPECT_EQ(draws(), 1);
    script.calls.clear();
    scene->special = 1;
    scene->render(VRK_RENDER_TRANSPARENT | VRK_RENDER_SPECIAL | VRK_RENDER_EFFECT, &list);
    EXPECT_EQ(script.calls, Calls{});
    scene->render(VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW, &list);
    EXPECT_EQ(draws(), 2);
}

TEST_F(D3DSceneMeshTest, CopiesShareTheObject)
{
    scene->render(0, &list);
    Mesh* copy = static_cast<Mesh*>(scene->copyObject());
    EXPECT_EQ(copy->d3dMesh, scene->d3dMesh);
    delete scene;
    scene = copy;
    script.calls.clear();
    scene->render(VRK_RENDER_SOLID, &list);
    EXPECT_EQ(draws(), 2);
}

TEST_F(D3DSceneMeshTest, WorldPlaceComesFromTheStack)
{
    scene->position = {10, 0, 0};
    scene->rotation = {0, 0, 90, 0};
    const Vertex3D placed = scene->calculatedVertex(1);
    EXPECT_NEAR(placed.x, 10.0f, 1e-5f);
    EXPECT_NEAR(placed.y, 1.0f, 1e-5f);
}

TEST_F(D3DSceneMeshTest, WorldPlaceAskedBeforeTheStartIsAskedAgain)
{
    vrkUnInit3D();
    d3d->matrixStack.reset();
    scene->position = {10, 0, 0};
    EXPECT_EQ(scene->calculatedVertex(1).x, 1.0f);
    start();
    EXPECT_EQ(scene->calculatedVertex(1).x, 11.0f);
}

TEST_F(D3DSceneMeshTest, TreeBuiltBeforeTheStartAnswersByThePlacesBehindIt)
{
    vrkUnInit3D();
    d3d->matrixStack.reset();
    OGroup group;
    group.addMesh(scene);
    group.addTList(new TList);
    scene->position = {100, 0, 0};
    group.constructOctree();
    Vertex3D above = {100.25f, 0.25f, 0.25f}, below = {100.25f, 0.25f, -0.25f};
    EXPECT_EQ(vrkCheckHeight(&above, &below, &group).z, -999999.0f); // nothing moves without a stack
    start();
    EXPECT_EQ(vrkCheckHeight(&above, &below, &group).z, 0.0f);
    scene = makeMesh("other", corners, {{0, 1, 2}});
}

TEST_F(D3DSceneMeshTest, ScalingAGroupMakesObjectsAnew)
{
    OGroup group;
    group.addMesh(scene);
    group.addTList(new TList);
    scene->render(0, &list);
    ASSERT_NE(scene->d3dMesh, nullptr);
    group.adjustSize(scene, 10.0f);
    ASSERT_NE(scene->d3dMesh, nullptr); // by the preparing renders
    EXPECT_EQ(reinterpret_cast<const D3DWorldVertex*>(scene->d3dMesh->vertices)[1].x, 10.0f);
    scene = makeMesh("other", corners, {{0, 1, 2}});
}

TEST_F(D3DSceneMeshTest, TakenOverMaterialsMakeObjectsAnew)
{
    OGroup from, to;
    Mesh* other = static_cast<Mesh*>(makeMesh("mesh", corners, {{0, 1, 2}, {1, 3, 2}}));
    other->sortFacesByMaterial();
    scene->sortFacesByMaterial();
    from.addMesh(other);
    to.addMesh(scene);
    scene->render(0, &list);
    ASSERT_NE(scene->d3dMesh, nullptr);
    EXPECT_EQ(from.copyMaterialFaceStructures(&to), 0);
    EXPECT_EQ(scene->d3dMesh, nullptr);
    scene = makeMesh("other", corners, {{0, 1, 2}});
}

TEST_F(D3DSceneMeshTest, AppliedLightReachesTheObject)
{
    OGroup group;
    group.addMesh(scene);
    for (int i = 0; i < 4; ++i)
        scene->lightColors[i] = {1, 0.5f, 0, 0};
    group.applyLights();
    ASSERT_NE(scene->d3dMesh, nullptr);
    const auto* vertices = reinterpret_cast<const D3DWorldVertex*>(scene->d3dMesh->vertices);
    EXPECT_EQ(vertices[2].color, 0xFCFC7E00u);
    scene->lightColors[2] = {0, 0, 1, 0};
    group.applyLights();
    EXPECT_EQ(vertices[2].color, 0xFC0000FCu);
    EXPECT_EQ(vertices[1].color, 0xFCFC7E00u);

    scene->vertexCount = 2; // fewer colours than the object has vertices
    scene->vertexColors[2] = {1, 1, 1, 1};
    group.applyLights();
    EXPECT_EQ(vertices[2].color, 0xFC0000FCu);
    scene = makeMesh("other", corners, {{0, 1, 2}});
}
