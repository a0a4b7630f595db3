// What else draws on rasterizer 1: the overlay, particles, the preparation of materials.

#include <cmath>
#include <cstring>

#include "rasterizer/d3d/constants.h"
#include "tests/support/d3drecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/particles/particlesource.h"
#include "vornik/rasterizer/overlay.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

using Calls = std::vector<std::string>;

class D3DDrawTest : public D3DRecorderTest
{
protected:
    Material* material = new Material;
    Texture* texture = new Texture;
    TList list;

    D3DDrawTest()
    {
        material->addFirstTexture(texture);
        list.addMaterial(material);
    }

    void SetUp() override
    {
        D3DRecorderTest::SetUp();
        ASSERT_EQ(start(), 0);
        upload(0);
        script.textureRequests.clear();
        script.calls.clear();
    }

    void upload(int frame)
    {
        uint8_t pixel[4] = {255, 255, 255, 255};
        texture->textureIDs[frame] = static_cast<int32_t>(vrkCreateTextureName());
        texture->width = texture->height = 1;
        texture->mipmap = false;
        texture->pixels = pixel;
        vrkUploadTexture(texture, frame);
        texture->pixels = nullptr;
    }

    template <class Vertex>
    Vertex vertex(int i) const
    {
        Vertex v;
        EXPECT_GE(script.lastVertices.size(), sizeof v * size_t(i + 1));
        std::memcpy(&v, script.lastVertices.data() + sizeof v * size_t(i), sizeof v);
        return v;
    }

    void expectScreen(int i, float x, float y, float u, float v, uint32_t color) const
    {
        const auto found = vertex<D3DScreenVertex>(i);
        EXPECT_EQ(found.x, x) << i;
        EXPECT_EQ(found.y, y) << i;
        EXPECT_EQ(found.z, 1.0f) << i;
        EXPECT_EQ(found.reciprocalW, 1.0f) << i;
        EXPECT_EQ(found.u, u) << i;
        EXPECT_EQ(found.v, v) << i;
        EXPECT_EQ(found.color, color) << i;
    }
};

TEST_F(D3DDrawTest, BoxOfFourColours)
{
    Vertex2D a = {10, 20}, b = {30, 50};
    Color c1 = {2, 0, 0, 1}, c2 = {0, 1, 0, 1}, c3 = {0, 0, 1, 1}, c4 = {1, 1, 1, -1};
    vrkDrawFilledBox(&a, &b, &c1, &c2, &c3, &c4);
    EXPECT_EQ(a.y, 20.0f); // not mirrored
    EXPECT_EQ(b.y, 50.0f);
    EXPECT_EQ(c1.r, 1.0f);
    EXPECT_EQ(c4.a, 0.0f);
    EXPECT_EQ(script.calls, (Calls{"texture 0 none", "stage 0 5 0", "stage 0 4 2", "draw 5 452 4 1"}))
        << script.text();
    expectScreen(0, 10, 50, 0, 0, 0x00FCFCFC);
    expectScreen(1, 10, 20, 0, 0, 0xFCFC0000);
    expectScreen(2, 30, 50, 0, 0, 0xFC0000FC);
    expectScreen(3, 30, 20, 0, 0, 0xFC00FC00);
}

TEST_F(D3DDrawTest, ImageUnturned)
{
    Vertex3D position = {100, 50, 9};
    Color c = {1, 0.5f, 0, 1};
    script.stageStates[d3d::minFilter] = 7;
    script.stageStates[d3d::mipFilter] = 8;
    vrkEnable(VRK_FOG);
    vrkEnable(VRK_CULL_FACE);
    script.calls.clear();
    vrkDrawImage(&position, material, &c, 64, 32, false, 45.0f);
    EXPECT_EQ(script.calls,
              (Calls{"state 15 0", "state 7 0", "state 28 0", "state 22 1", "state 27 1", "texture 0 1",
                     "stage 0 2 2", "stage 0 1 4", "stage 0 3 0", "stage 0 5 2", "stage 0 4 4", "stage 0 6 0",
                     "stage 0 17 2", "stage 0 18 1", "draw 5 452 4 1", "stage 0 17 7", "stage 0 18 8",
                     // What could be read returns; the alpha test, which can't, stays off.
                     "state 7 1", "state 27 0", "state 28 1", "texture 0 none", "state 15 0", "state 22 3"}))
        << script.text();
    expectScreen(0, 100, 82, 0, 0, 0xFCFC7E00);
    expectScreen(1, 100, 50, 0, 1, 0xFCFC7E00);
    expectScreen(2, 164, 82, 1, 0, 0xFCFC7E00);
    expectScreen(3, 164, 50, 1, 1, 0xFCFC7E00);
}

TEST_F(D3DDrawTest, ImageWithoutTextureChangesNothing)
{
    Vertex3D position = {};
    Color c = {1, 1, 1, 1};
    Material bare;
    vrkDrawImage(&position, nullptr, &c, 1, 1, false, 0);
    vrkDrawImage(&position, &bare, &c, 1, 1, false, 0);
    EXPECT_EQ(script.calls, Calls{});
}

TEST_F(D3DDrawTest, GridOnlySwitches)
{
    std::vector<Color> colors(4800);
    std::vector<Vertex2D> coords(4800);
    vrkDrawGrid(colors.data(), coords.data(), 10, 10, material);
    EXPECT_EQ(script.only({"draw"}), Calls{});
    EXPECT_EQ(script.only({"state 7 "}), (Calls{"state 7 0", "state 7 1"}));
    EXPECT_EQ(script.calls.size(), 11u) << script.text();
}

TEST_F(D3DDrawTest, LinesAndPlainBoxesAreOpenGLs)
{
    Vertex2D a = {1, 2}, b = {3, 4};
    Vertex3D p = {1, 2, 3}, q = {4, 5, 6};
    Color c = {2, 2, 2, 2};
    vrkDrawLine(&a, &b, &c);
    vrkDrawLine(&p, &q, &c);
    vrkDraw3DLine(&p, &q, &c);
    vrkDrawBox(&a, &b, &c);
    vrkDrawFilledBox(&a, &b, &c);
    vrkDrawImageWithoutYConversion(&p, material, &c, 1, 1, false);
    EXPECT_EQ(script.calls, Calls{});
    EXPECT_EQ(a.y, 2.0f);
    EXPECT_EQ(p.y, 2.0f);
    EXPECT_EQ(c.r, 2.0f);
}

class D3DParticleTest : public D3DDrawTest
{
protected:
    ParticleSource source;
    Camera camera;

    void SetUp() override
    {
        D3DDrawTest::SetUp();
        camera.eye = {0, 0, 0};
        camera.target = {10, 0, 0};
        source.initParticles(3);
        for (int i = 0; i < 3; ++i)
        {
            source.particles[i].life = 5;
            source.particles[i].maxLife = 10;
            source.particles[i].position = {float(i), 2, 3};
        }
        source.particles[1].life = 0;
        source.size = 2.0f;
        source.color = {2.0f, 0.5f, -1.0f, 1.0f};
        script.calls.clear();
    }
};

TEST_F(D3DParticleTest, QuadsUnderTheirStates)
{
    source.blendSource = VRK_SRC_ALPHA;
    source.blendDestination = VRK_ONE;
    source.draw(&camera);
    EXPECT_EQ(script.calls,
              (Calls{"transform 2", "state 9 1",      "state 19 5",  "state 20 2",     "state 27 1",
                     "state 23 4",  "state 14 0",     "state 22 1",  "stage 0 2 2",    "stage 0 1 4",
                     "stage 0 3 0", "stage 0 5 2",    "stage 0 4 4", "stage 0 6 0",    "texture 0 none",
                     "transform 1", "draw 5 322 4 0", "transform 1", "draw 5 322 4 0", "state 9 2",
                     "state 14 1",  "state 22 3"}))
        << script.text();
    const float expected[4][4] = {{-2, 2, 0, 1}, {-2, -2, 0, 0}, {2, 2, 1, 1}, {2, -2, 1, 0}};
    for (int i = 0; i < 4; ++i)
    {
        const auto corner = vertex<D3DWorldVertex>(i);
        EXPECT_EQ(corner.x, expected[i][0]);
        EXPECT_EQ(corner.y, expected[i][1]);
        EXPECT_EQ(corner.z, 0.0f);
        EXPECT_EQ(corner.u, expected[i][2]);
        EXPECT_EQ(corner.v, expected[i][3]);
        EXPECT_EQ(corner.color, 0xFCFC7E00u);
    }
    EXPECT_EQ(source.color.r, 2.0f); // limited in a copy
}

TEST_F(D3DParticleTest, QuadsFaceTheCameraAtTheirPlace)
{
    camera.eye = {3, -4, 5};
    camera.target = {-7, 6, 1};
    source.draw(&camera);
    const std::vector<float>& world = script.transforms[d3d::world];
    const std::vector<float>& view = script.transforms[d3d::view];
    EXPECT_EQ(world[12], 2.0f); // the third particle
    EXPECT_EQ(world[13], 2.0f);
    EXPECT_EQ(world[14], 3.0f);
    // World times view turns nothing.
    for (size_t row = 0; row < 3; ++row)
        for (size_t column = 0; column < 3; ++column)
        {
            float sum = 0.0f;
            for (size_t k = 0; k < 3; ++k)
                sum += world[row * 4 + k] * view[k * 4 + column];
            EXPECT_NEAR(sum, row == column ? 1.0f : 0.0f, 1e-5f) << row << ' ' << column;
        }
}

TEST_F(D3DParticleTest, AlphaMayFadeWithLife)
{
    source.alpha = 0.25f;
    source.draw(&camera);
    EXPECT_EQ(vertex<D3DWorldVertex>(0).color >> 24, 63u);
    source.fadeWithLife = 1;
    source.draw(&camera);
    EXPECT_EQ(vertex<D3DWorldVertex>(0).color >> 24, 126u);
}

TEST_F(D3DParticleTest, TextureFollowsTheFirstParticle)
{
    texture->frameCount = 2;
    upload(1);
    source.material = material;
    source.particles[0].rotation.y = 33.0f;
    source.particles[0].life = 4;
    script.calls.clear();
    source.draw(&camera);
    EXPECT_EQ(texture->currentFrame, 1);
    EXPECT_EQ(texture->rotation, 33.0f);
    EXPECT_EQ(script.only({"texture"}).size(), 1u);
    EXPECT_NE(script.only({"texture"}).front(), "texture 0 none");
}

TEST_F(D3DParticleTest, MeshesAreDrawnSolidAtTheirPlace)
{
    Mesh* mesh = makeMesh("mesh", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}});
    source.mesh = mesh;
    source.tlist = &list;
    source.particles[2].rotation = {0, 0, 90};
    source.draw(&camera);
    EXPECT_EQ(script.only({"indexed"}).size(), 2u);
    EXPECT_EQ(script.only({"draw"}), Calls{});
    const std::vector<float>& world = script.transforms[d3d::world];
    EXPECT_EQ(world[12], 2.0f);
    EXPECT_EQ(world[14], 3.0f);
    EXPECT_NEAR(world[1], 1.0f, 1e-6f);
    float m[16];
    vrkGetModelViewMatrix(m);
    EXPECT_EQ(m[12], 0.0f); // the stack is as it was
    source.mesh = nullptr;
    delete mesh;
}

TEST_F(D3DParticleTest, EmptySourcesSetAndResetStates)
{
    ParticleSource empty;
    empty.material = material;
    empty.draw(&camera);
    EXPECT_EQ(script.only({"draw"}), Calls{});
    EXPECT_EQ(script.calls.back(), "state 22 3");
    empty.material = nullptr;
}

TEST_F(D3DDrawTest, PreparationDrawsEveryFrameOnce)
{
    texture->frameCount = 2;
    upload(1);
    Scene scene;
    OGroup* group = new OGroup;
    TList* first = new TList;
    TList* second = new TList;
    Material* other = new Material;
    Texture* same = new Texture;
    same->textureIDs[0] = texture->textureIDs[0];
    other->addFirstTexture(same);
    second->addMaterial(other);
    Material* bare = new Material;
    first->addMaterial(bare);
    group->addTList(first);
    group->addTList(second);
    group->addTList(&list);
    scene.groups[scene.groupCount++] = group;
    script.calls.clear();
    scene.prepareMaterialsForDX();
    EXPECT_EQ(script.only({"clear", "begin", "draw", "end", "present"}),
              (Calls{"clear 3 0 1", "begin", "draw 5 452 4 1", "draw 5 452 4 1", "draw 5 452 4 1", "end",
                     "present"}))
        << script.text();
    expectScreen(0, 0, 64, 0, 1, 0xFFFFFFFF);
    expectScreen(1, 0, 0, 0, 0, 0xFFFFFFFF);
    expectScreen(2, 64, 64, 1, 1, 0xFFFFFFFF);
    expectScreen(3, 64, 0, 1, 0, 0xFFFFFFFF);
    group->tlists[2] = nullptr; // the fixture's
    group->tlistCount = 2;
}

TEST_F(D3DDrawTest, PreparationIsQuietOnOtherRasterizers)
{
    Scene scene;
    vrkSelectRasterizer(7);
    scene.prepareMaterialsForDX();
    vrkSelectRasterizer(1);
    EXPECT_EQ(script.calls, Calls{});
}
