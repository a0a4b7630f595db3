#include <cmath>
#include <cstdlib>
#include <cstring>

#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3dmesh.h"
#include "tests/support/d3dwindow.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/particles/particlesource.h"
#include "vornik/rasterizer/fog.h"
#include "vornik/rasterizer/font.h"
#include "vornik/rasterizer/overlay.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/renderflags.h"
#include "vornik/scene/scene.h"

static const Pixel black = {0, 0, 0, 255};

// Squares stand upright before the camera: counter-clockwise seen from it in the world with z up, where y is
// to the left. The picture shows y to the right.
class D3DPictureTest : public D3DDrawingTest
{
protected:
    TList list;
    Material* material = new Material;

    D3DPictureTest() { list.addMaterial(material); }

    // A square of four corners about (x, y, z), with sides of twice its size.
    static Mesh* square(float x, float y, float z, float size, Color color)
    {
        Mesh* mesh = makeMesh("square",
                              {{x, y + size, z - size},
                               {x, y - size, z - size},
                               {x, y - size, z + size},
                               {x, y + size, z + size}},
                              {{0, 1, 2}, {0, 2, 3}});
        const Vertex2D coords[] = {{1, 0}, {0, 0}, {0, 1}, {1, 1}};
        for (int i = 0; i < 4; ++i)
        {
            mesh->vertexColors[i] = color;
            mesh->textureCoords[i] = coords[i];
        }
        for (int i = 0; i < 2; ++i)
            mesh->faceMaterials[i].materialIndex = 1;
        return mesh;
    }

    void draw(Mesh* mesh, int flags = VRK_RENDER_SOLID)
    {
        vrkPushMatrix();
        mesh->render(flags, &list);
        vrkPopMatrix();
    }

    void drawAndForget(Mesh* mesh, int flags = VRK_RENDER_SOLID)
    {
        draw(mesh, flags);
        delete mesh;
    }

    // Four colours: red, green below, blue, white above.
    Texture* giveImage(int columns, int rows, int bits, bool mipmap = false, uint8_t alpha = 255)
    {
        Texture* texture = new Texture;
        texture->width = columns;
        texture->height = rows;
        texture->bitsPerTexel = bits;
        texture->mipmap = mipmap;
        texture->pixels = static_cast<uint8_t*>(std::malloc(size_t(columns * rows * 4)));
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x < columns; ++x)
            {
                const bool right = 2 * x >= columns, up = 2 * y >= rows;
                const uint8_t on = 200;
                const uint8_t pixel[] = {uint8_t(right == up ? on : 0), uint8_t(right ? on : 0),
                                         uint8_t(up ? on : 0), alpha};
                std::memcpy(texture->pixels + (y * columns + x) * 4, pixel, 4);
            }
        texture->uploadTexture(0);
        material->addFirstTexture(texture);
        return texture;
    }

    // The square that fills x 16 to 48 and y 8 to 40.
    void expectFourColours(int on, int tolerance)
    {
        EXPECT_TRUE(pixelIs(20, 36, {on, 0, 0, 255}, tolerance));
        EXPECT_TRUE(pixelIs(44, 36, {0, on, 0, 255}, tolerance));
        EXPECT_TRUE(pixelIs(20, 12, {0, 0, on, 255}, tolerance));
        EXPECT_TRUE(pixelIs(44, 12, {on, on, on, 255}, tolerance));
    }
};

// With 90 degrees over 48 pixels a square at distance d of size d * 2 / 3 is 32 pixels wide.
static const float third = 2.0f / 3.0f;

TEST_F(D3DPictureTest, WhiteVerticesAre252)
{
    drawAndForget(square(1, 0, 0, third, {1, 1, 1, 1}));
    EXPECT_TRUE(pixelIs(32, 24, {252, 252, 252, 255}, 1));
    EXPECT_TRUE(pixelIs(17, 9, {252, 252, 252, 255}, 1));
    EXPECT_TRUE(pixelIs(46, 38, {252, 252, 252, 255}, 1));
    EXPECT_EQ(pixel(14, 24), black);
    EXPECT_EQ(pixel(50, 24), black);
    EXPECT_EQ(pixel(32, 6), black);
    EXPECT_EQ(pixel(32, 42), black);
}

TEST_F(D3DPictureTest, LeftOfTheWorldIsOnTheRight)
{
    drawAndForget(square(1, 0.6f, 0.4f, 0.2f, {1, 0, 0, 1}));
    EXPECT_TRUE(pixelIs(32 + 14, 24 - 10, {252, 0, 0, 255}, 1));
    EXPECT_EQ(pixel(32 - 14, 24 - 10), black);
}

TEST_F(D3DPictureTest, MatricesMoveTurnAndScale)
{
    Mesh* mesh = square(0, 0, 0, 0.1f, {0, 1, 0, 1});
    vrkTranslate(1, 0.5f, 0);
    vrkScale(1, 2, 1);
    draw(mesh);
    EXPECT_TRUE(pixelIs(32 + 12 + 4, 24, {0, 252, 0, 255}, 1));
    EXPECT_EQ(pixel(32 + 12, 24 - 4), black);
    vrkClear();
    vrkInitMatrix();
    vrkRotate(30, 1, 0, 0); // about the view: turns counter-clockwise in the world, clockwise in its mirror
    vrkTranslate(1, 0.5f, 0);
    draw(mesh);
    const int x = 32 + int(std::lround(12 * std::cos(0.5236))),
              y = 24 - int(std::lround(12 * std::sin(0.5236)));
    EXPECT_TRUE(pixelIs(x, y, {0, 252, 0, 255}, 1));
    delete mesh;
}

TEST_F(D3DPictureTest, NearFacesHideFarOnes)
{
    drawAndForget(square(1, 0, 0, 0.2f, {1, 0, 0, 1}));
    drawAndForget(square(3, 0, 0, 2.0f, {0, 0, 1, 1}));
    EXPECT_TRUE(pixelIs(32, 24, {252, 0, 0, 255}, 1));
    EXPECT_TRUE(pixelIs(20, 24, {0, 0, 252, 255}, 1));
    vrkDisable(VRK_DEPTH_TEST);
    drawAndForget(square(3, 0, 0, 2.0f, {0, 0, 1, 1}));
    EXPECT_TRUE(pixelIs(32, 24, {0, 0, 252, 255}, 1));
}

TEST_F(D3DPictureTest, BackFacesAreCulledUnlessTwoSided)
{
    Mesh* mesh = square(1, 0, 0, third, {1, 1, 1, 1});
    for (int i = 0; i < 2; ++i)
        std::swap(mesh->faces[i].b, mesh->faces[i].c);
    draw(mesh);
    EXPECT_EQ(drawnPixels(), 0);
    draw(mesh, VRK_RENDER_SOLID | VRK_RENDER_TWOSIDED);
    EXPECT_GT(drawnPixels(), 900);
    vrkClear();
    material->twoSided = 1;
    draw(mesh);
    EXPECT_GT(drawnPixels(), 900);
    vrkClear();
    material->twoSided = 0;
    draw(mesh); // culling is on again
    EXPECT_EQ(drawnPixels(), 0);
    delete mesh;
}

TEST_F(D3DPictureTest, TextureOf32Bits)
{
    giveImage(64, 64, 32);
    drawAndForget(square(1, 0, 0, third, {1, 1, 1, 1}));
    expectFourColours(200 * 252 / 255, 1);
}

TEST_F(D3DPictureTest, TextureOf16BitsHasSixteenSteps)
{
    giveImage(64, 64, 16);
    drawAndForget(square(1, 0, 0, third, {1, 1, 1, 1}));
    expectFourColours(0xCC * 252 / 255, 1);
}

TEST_F(D3DPictureTest, MipLevelsShowTheSameImage)
{
    giveImage(256, 256, 32, true);
    drawAndForget(square(1, 0, 0, third, {1, 1, 1, 1}));
    expectFourColours(200 * 252 / 255, 2);
}

TEST_F(D3DPictureTest, OddSizesCoverTheFace)
{
    giveImage(50, 23, 32);
    drawAndForget(square(1, 0, 0, third, {1, 1, 1, 1}));
    expectFourColours(200 * 252 / 255, 1);
}

TEST_F(D3DPictureTest, LostTexturesAreDrawnAgain)
{
    giveImage(64, 64, 32);
    Mesh* mesh = square(1, 0, 0, third, {1, 1, 1, 1});
    vrkDXEndScene();
    system->presentResult = d3d::surfaceLost;
    vrkSwapBuffers();
    EXPECT_TRUE(system->boxes.empty());
    vrkClear();
    vrkDXBeginScene();
    draw(mesh);
    expectFourColours(200 * 252 / 255, 1);

    vrkDXRestoreSurfaces();
    vrkClear();
    draw(mesh);
    expectFourColours(200 * 252 / 255, 1);

    // A rebuild of everything, and a whole new start.
    system->cooperativeLevel = d3d::wrongMode;
    vrkDXBeginScene();
    vrkClear();
    draw(mesh);
    expectFourColours(200 * 252 / 255, 1);
    vrkUnInit3D();
    ASSERT_EQ(start(), 0);
    vrkClear();
    vrkDXBeginScene();
    vrkInitMatrix();
    draw(mesh);
    expectFourColours(200 * 252 / 255, 1);
    delete mesh;
}

TEST_F(D3DPictureTest, RangesHaveTheirMaterials)
{
    giveImage(8, 8, 32);
    list.addMaterial(new Material); // number 2, untextured
    Material* hidden = new Material;
    hidden->transparency = 1.0f;
    list.addMaterial(hidden); // number 3
    Mesh* mesh = square(1, 0, 0, third, {0, 1, 0, 1});
    mesh->faceMaterials[0].materialIndex = 2;
    mesh->faceMaterials[1].materialIndex = 3;
    draw(mesh);
    EXPECT_TRUE(pixelIs(44, 36, black) || pixelIs(20, 36, black)); // one of the halves
    EXPECT_NEAR(drawnPixels(), 512, 40);
    draw(mesh, VRK_RENDER_TRANSPARENT_NOW);
    EXPECT_NEAR(drawnPixels(), 1024, 40);
    EXPECT_EQ(mesh->d3dMesh->ranges->materialIndex, 2);
    delete mesh;
}

TEST_F(D3DPictureTest, FlatShadingTakesOneCornersColour)
{
    Mesh* mesh = square(1, 0, 0, third, {1, 1, 1, 1});
    for (int i = 0; i < 4; ++i)
        mesh->vertexColors[i] = {i % 2 ? 1.0f : 0.0f, 1, 0, 1};
    draw(mesh, VRK_RENDER_SOLID | VRK_RENDER_FLAT);
    const Pixel first = pixel(30, 36), second = pixel(44, 36);
    EXPECT_EQ(first, second);
    vrkClear();
    draw(mesh);
    EXPECT_NE(pixel(22, 36), pixel(44, 36));
    delete mesh;
}

TEST_F(D3DPictureTest, WireLeavesTheMiddleOpen)
{
    material->wire = 1;
    drawAndForget(square(1, 0, 0, third, {1, 1, 1, 1}));
    EXPECT_GT(drawnPixels(), 30);
    EXPECT_LT(drawnPixels(), 200);
}

TEST_F(D3DPictureTest, TransparencyBlendsOverWhatIsThere)
{
    drawAndForget(square(3, 0, 0, 2.0f, {0, 0, 1, 1}));
    material->transparency = 0.75f;
    drawAndForget(square(1, 0, 0, 0.2f, {1, 0, 0, 1}), VRK_RENDER_TRANSPARENT_NOW);
    // 191 of 255 parts
    EXPECT_TRUE(pixelIs(32, 24, {252 * 191 / 255, 0, 252 * 64 / 255, 255}, 2));
    EXPECT_TRUE(vrkIsEnabled(VRK_BLEND));
}

TEST_F(D3DPictureTest, LowAlphaFallsToTheAlphaTest)
{
    material->transparency = 0.45f; // 114, where more than 127 is wanted
    Mesh* mesh = square(1, 0, 0, third, {1, 0, 0, 1});
    draw(mesh, VRK_RENDER_TRANSPARENT_NOW);
    EXPECT_EQ(drawnPixels(), 0);
    vrkAlphaFunc(VRK_GREATER, 0.0f);
    draw(mesh, VRK_RENDER_TRANSPARENT_NOW);
    EXPECT_TRUE(pixelIs(32, 24, {252 * 114 / 255, 0, 0, 255}, 2));
    delete mesh;
}

TEST_F(D3DPictureTest, TextureAlphaMultiplies)
{
    Texture* texture = giveImage(8, 8, 32, false, 192);
    texture->environment = VRK_DECAL;
    material->transparency = 1.0f;
    drawAndForget(square(1, 0, 0, third, {1, 1, 1, 1}), VRK_RENDER_TRANSPARENT_NOW);
    EXPECT_TRUE(pixelIs(20, 36, {200 * 252 / 255 * 192 / 255, 0, 0, 255}, 2));
}

TEST_F(D3DPictureTest, VertexBufferDrawsTheSame)
{
    Mesh* mesh = square(1, 0, 0, third, {1, 0.5f, 0.25f, 1});
    draw(mesh);
    const std::vector<Pixel> fromArrays = pixels();
    vrkClear();
    mesh->d3dMesh->vertexBuffer = d3d->device->createVertexBuffer(d3d::fvfWorld, 4);
    ASSERT_NE(mesh->d3dMesh->vertexBuffer, nullptr);
    mesh->d3dMesh->useVertexBuffer = 1;
    mesh->d3dMesh->updateColors(mesh->vertexColors);
    draw(mesh);
    EXPECT_EQ(pixels(), fromArrays);
    EXPECT_GT(drawnPixels(), 900);
    delete mesh;
}

TEST_F(D3DPictureTest, EmptyAndBrokenMeshesDrawNothing)
{
    drawAndForget(makeMesh("empty", {}, {}));
    Mesh* broken = makeMesh("broken", {{1, 0, 0}}, {{7, 8, 9}, {0, 0, 65535}});
    drawAndForget(broken, VRK_RENDER_SOLID | VRK_RENDER_TRANSPARENT_NOW | VRK_RENDER_TWOSIDED);
    EXPECT_EQ(drawnPixels(), 0);
}

TEST_F(D3DPictureTest, LinearFogTakesTheFogsColour)
{
    vrkSetFog({0, 0, 1, 0}, 2.0f, 10.0f);
    drawAndForget(square(6, 0, 0, 4, {1, 0, 0, 1}));
    const Pixel middle = pixel(32, 24);
    EXPECT_LT(middle.r, 250);
    EXPECT_GT(middle.b, 0);
    vrkDisable(VRK_FOG);
    vrkClear();
    drawAndForget(square(6, 0, 0, 4, {1, 0, 0, 1}));
    EXPECT_TRUE(pixelIs(32, 24, {252, 0, 0, 255}, 1));
}

TEST_F(D3DPictureTest, ParticlesFaceTheCameraFromEverywhere)
{
    ParticleSource source;
    source.initParticles(1);
    source.particles[0].life = 1;
    source.particles[0].maxLife = 2;
    source.particles[0].position = {3, 4, 5};
    source.size = third;
    source.color = {1, 1, 0, 1};
    for (const Vertex3D& direction : {Vertex3D{1, 0, 0}, {0, 1, 0}, {-0.6f, 0, 0.8f}, {0.48f, -0.6f, -0.64f}})
    {
        Camera camera;
        camera.target = source.particles[0].position;
        camera.eye = camera.target - direction;
        vrkClear();
        source.draw(&camera);
        EXPECT_NEAR(drawnPixels(), 32 * 32, 70) << direction.x << ' ' << direction.y;
        EXPECT_TRUE(pixelIs(32, 24, {252, 252, 0, 255}, 1));
        EXPECT_TRUE(pixelIs(18, 10, {252, 252, 0, 255}, 1));
    }
    EXPECT_TRUE(vrkIsEnabled(VRK_CULL_FACE));
}

TEST_F(D3DPictureTest, TexturedParticlesAreUpright)
{
    giveImage(64, 64, 32);
    ParticleSource source;
    source.initParticles(1);
    source.particles[0].life = 1;
    source.particles[0].maxLife = 1;
    source.particles[0].position = {1, 0, 0};
    source.material = material;
    source.size = third;
    source.color = {1, 1, 1, 1};
    Camera camera;
    camera.eye = {0, 0, 0};
    camera.target = {1, 0, 0};
    source.draw(&camera);
    expectFourColours(200 * 252 / 255, 1);
    source.material = nullptr;
}

TEST_F(D3DPictureTest, BoxShadesFromCornerToCorner)
{
    Vertex2D a = {10, 10}, b = {42, 42};
    Color red = {1, 0, 0, 1}, green = {0, 1, 0, 1}, blue = {0, 0, 1, 1}, white = {1, 1, 1, 1};
    vrkDisable(VRK_ALPHA_TEST);
    vrkDrawFilledBox(&a, &b, &red, &green, &blue, &white);
    EXPECT_TRUE(pixelIs(11, 11, {252, 0, 0, 255}, 30));
    EXPECT_TRUE(pixelIs(40, 11, {0, 252, 0, 255}, 30));
    EXPECT_TRUE(pixelIs(40, 40, {0, 0, 252, 255}, 30));
    EXPECT_TRUE(pixelIs(11, 40, {252, 252, 252, 255}, 30));
    EXPECT_EQ(pixel(44, 20), black);
    EXPECT_EQ(pixel(8, 20), black);
}

TEST_F(D3DPictureTest, ImageLiesWhereItIsPut)
{
    giveImage(32, 32, 32);
    Vertex3D position = {16, 8, 0};
    Color white = {1, 1, 1, 1};
    vrkDrawImage(&position, material, &white, 32, 32, false, 0);
    expectFourColours(200 * 252 / 255, 1); // over the cleared black, by one and one
    EXPECT_EQ(pixel(14, 24), black);
    EXPECT_EQ(pixel(49, 24), black);
}

TEST_F(D3DPictureTest, TextIsWritten)
{
    Color c = {1, 0.5f, 0, 1};
    vrkDXEndScene();
    vrkWrite(2, 3, &c, "%s", "HIII");
    int full = 0;
    for (const Pixel& p : pixels())
        full += p.r == 255 && p.g == 127 && p.b == 0;
    EXPECT_GT(full, 10);
}

TEST_F(D3DPictureTest, PreparedMaterialsAreShownOnce)
{
    giveImage(16, 16, 32);
    Scene scene;
    OGroup* group = new OGroup;
    TList* own = new TList;
    Material* same = new Material;
    Texture* copy = new Texture;
    copy->textureIDs[0] = material->firstTexture->textureIDs[0];
    same->addFirstTexture(copy);
    own->addMaterial(same);
    group->addTList(own);
    scene.groups[scene.groupCount++] = group;
    vrkDXEndScene();
    vrkDisable(VRK_ALPHA_TEST);
    scene.prepareMaterialsForDX();
    EXPECT_GT(drawnPixels(), 64 * 48 / 2);
    EXPECT_TRUE(pixelIs(5, 5, {200, 0, 0, 255}, 3)); // the image's first row on top
}
