#include "vornik/particles/particlesource.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/support/engine.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"

using Calls = std::vector<std::string>;

static void keepDead(ParticleSource*, Particle*) {}

// Seen with 90 degrees from a distance of 10, so that one world unit at the origin is 3.2 pixels.
class ParticleDraw : public EngineTest
{
protected:
    void SetUp() override
    {
        EngineTest::SetUp();
        vrkSetFOV(90.0f);
        source = std::make_unique<ParticleSource>();
        source->initFunction = keepDead;
        look(0, 90);
    }

    // At the origin from a distance of 10.
    void look(float heading, float pitch)
    {
        camera.roll = 0;
        camera.rotation = {heading, pitch, 0, 0};
        camera.eye = {0, 0, 0};
        camera.targetFromRotation(10);
        camera.eye = -camera.target;
        camera.target = {0, 0, 0};
    }

    // The quad of size 5 at the origin: a square of 10 by 10 units that covers 32 by 32 pixels in the middle.
    void expectSquareInTheMiddle() const
    {
        EXPECT_NEAR(drawnPixels(), 32 * 32, 70);
        for (const int x : {18, 45})
            for (const int y : {18, 45})
                EXPECT_TRUE(pixelIs(x, y, {255, 255, 255, 255}));
        for (const auto& [x, y] : {std::pair{13, 32}, {50, 32}, {32, 13}, {32, 50}})
            EXPECT_TRUE(pixelIs(x, y, {0, 0, 0, 0}));
    }

    void addParticles(const std::vector<Vertex3D>& positions)
    {
        source->initParticles(int(positions.size()));
        for (size_t i = 0; i < positions.size(); ++i)
        {
            source->particles[i].position = positions[i];
            source->particles[i].life = source->particles[i].maxLife = 10;
        }
    }

    // One texture of frameCount frames, each of one colour.
    Texture* addTexture(const std::vector<Pixel>& frames)
    {
        Texture* texture = new Texture;
        texture->width = texture->height = 1;
        texture->mipmap = false;
        texture->bitsPerTexel = 32;
        texture->frameCount = int(frames.size());
        for (size_t i = 0; i < frames.size(); ++i)
        {
            texture->pixels = static_cast<uint8_t*>(malloc(4));
            const int channels[4] = {frames[i].r, frames[i].g, frames[i].b, frames[i].a};
            for (int c = 0; c < 4; ++c)
                texture->pixels[c] = static_cast<uint8_t>(channels[c]);
            texture->uploadTexture(int(i));
        }
        source->material = new Material;
        source->material->addFirstTexture(texture);
        return texture;
    }

    static GLint state(GLenum name)
    {
        GLint value = -1;
        glGetIntegerv(name, &value);
        return value;
    }

    Camera camera;
    std::unique_ptr<ParticleSource> source;
};

TEST_F(ParticleDraw, OneQuadCallByCall)
{
    addParticles({{1, 2, 3}});
    source->color = {0.25f, 0.5f, 0.75f, 0.125f};
    source->alpha = 0.5f;
    source->size = 2.0f;
    source->blendSource = VRK_SRC_ALPHA;
    source->blendDestination = VRK_ONE_MINUS_SRC_ALPHA;
    camera.eye = {0, -10, 2};
    camera.roll = 5;
    camera.rotation = {30, 60, 0, 0};
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(gl.calls(), (Calls{"glLoadIdentity()",
                                 "glRotatef(5, 0, 0, 1)",
                                 "gluLookAt(0, -10, 2, 0, 0, 0, 0, 0, 1)",
                                 "glPushAttrib(GL_ENABLE_BIT)",
                                 "glShadeModel(GL_FLAT)",
                                 "glEnable(GL_BLEND)",
                                 "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
                                 "glDepthFunc(GL_LEQUAL)",
                                 "glDepthMask(GL_FALSE)",
                                 "glDisable(GL_CULL_FACE)",
                                 "glDisable(GL_ALPHA_TEST)",
                                 "glEnable(GL_TEXTURE)",
                                 "glDisable(GL_TEXTURE)",
                                 "glPushMatrix()",
                                 "glTranslatef(1, 2, 3)",
                                 "glRotatef(30, 0, 0, 1)",
                                 "glRotatef(60, 1, 0, 0)",
                                 "glBegin(GL_QUADS)",
                                 "glColor4f(0.25, 0.5, 0.75, 0.5)",
                                 "glVertex3f(-2, -2, 0)",
                                 "glVertex3f(2, -2, 0)",
                                 "glVertex3f(2, 2, 0)",
                                 "glVertex3f(-2, 2, 0)",
                                 "glEnd()",
                                 "glPopMatrix()",
                                 "glPopAttrib()",
                                 "glShadeModel(GL_SMOOTH)",
                                 "glDepthMask(GL_TRUE)"}))
        << gl.text();
    EXPECT_EQ(source->particles[0].rotation.x, 60.0f);
    EXPECT_EQ(source->particles[0].rotation.y, 0.0f);
    EXPECT_EQ(source->particles[0].rotation.z, 30.0f);
}

TEST_F(ParticleDraw, AnEmptySourceSetsAndRestoresTheStates)
{
    for (const int count : {0, 3})
    {
        source->initParticles(count); // three dead ones the second time
        GLRecorder gl;
        source->draw(&camera);
        EXPECT_EQ(gl.count("glPushAttrib"), 1);
        EXPECT_EQ(gl.count("glPopAttrib"), 1);
        EXPECT_EQ(gl.countExact("glDepthMask(GL_TRUE)"), 1);
        EXPECT_EQ(gl.count("glBegin"), 0);
        EXPECT_EQ(gl.count("glPushMatrix"), 0);
    }
}

TEST_F(ParticleDraw, AnglesOfZeroAreNotRotatedBy)
{
    addParticles({{0, 0, 0}});
    camera.rotation = {0, 0, 0, 0};
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(gl.only({"glRotatef"}), (Calls{"glRotatef(0, 0, 0, 1)"})) << "the camera's roll alone";
}

TEST_F(ParticleDraw, DeadParticlesAreNotDrawnAndKeepTheirAngles)
{
    addParticles({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}});
    source->particles[0].life = 0;
    source->particles[2].life = -1;
    camera.rotation = {30, 60, 0, 0};
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(gl.count("glBegin"), 1);
    EXPECT_EQ(gl.countExact("glTranslatef(1, 0, 0)"), 1);
    EXPECT_EQ(source->particles[0].rotation.x, 0.0f);
    EXPECT_EQ(source->particles[2].rotation.z, 0.0f);
}

TEST_F(ParticleDraw, TextureCoordinatesComeWithATexture)
{
    addParticles({{0, 0, 0}});
    addTexture({{255, 255, 255, 255}});
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(
        gl.only({"glBegin", "glColor4f", "glTexCoord2f", "glVertex3f", "glEnd"}),
        (Calls{"glBegin(GL_QUADS)", "glColor4f(1, 1, 1, 1)", "glTexCoord2f(0, 0)", "glVertex3f(-1, -1, 0)",
               "glTexCoord2f(1, 0)", "glVertex3f(1, -1, 0)", "glTexCoord2f(1, 1)", "glVertex3f(1, 1, 0)",
               "glTexCoord2f(0, 1)", "glVertex3f(-1, 1, 0)", "glEnd()"}));
    EXPECT_EQ(gl.count("glBindTexture"), 1);
    EXPECT_EQ(gl.countExact("glDisable(GL_TEXTURE)"), 0);
}

TEST_F(ParticleDraw, AMaterialWithoutImageCountsAsNone)
{
    addParticles({{0, 0, 0}});
    source->material = new Material;
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(gl.count("glBindTexture"), 0);
    EXPECT_EQ(gl.count("glTexCoord2f"), 0);
    EXPECT_EQ(gl.countExact("glDisable(GL_TEXTURE)"), 1);
    EXPECT_EQ(gl.count("glBegin"), 1);
}

TEST_F(ParticleDraw, QuadsFaceTheViewerFromEverySide)
{
    source->size = 5.0f;
    addParticles({{0, 0, 0}});
    for (const auto& [heading, pitch] :
         {std::pair{0, 90}, {90, 90}, {-143, 90}, {0, 30}, {217, 150}, {77, 1}})
    {
        SCOPED_TRACE(testing::Message() << heading << ' ' << pitch);
        vrkClear();
        look(float(heading), float(pitch));
        source->draw(&camera);
        expectSquareInTheMiddle();
    }
}

TEST_F(ParticleDraw, AnglesFoundFromTheTargetTurnQuadsRightWithHalfATurnMore)
{
    source->size = 5.0f;
    addParticles({{0, 0, 0}});
    look(217, 150);
    camera.rotation = {0, 0, 0, 0};
    camera.rotationFromTarget();
    camera.rotation.x += 180;
    source->draw(&camera);
    expectSquareInTheMiddle();
}

TEST_F(ParticleDraw, TheImageStandsUprightBeforeTheViewer)
{
    source->size = 5.0f;
    addParticles({{0, 0, 0}});
    Texture* texture = addTexture({{0, 0, 0, 0}});
    // Rows from the bottom: red, green; blue, white.
    static const uint8_t image[16] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
    glBindTexture(GL_TEXTURE_2D, GLuint(texture->textureIDs[0]));
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, image);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    source->draw(&camera);
    EXPECT_TRUE(pixelIs(24, 24, {255, 0, 0, 255}));
    EXPECT_TRUE(pixelIs(40, 24, {0, 255, 0, 255}));
    EXPECT_TRUE(pixelIs(24, 40, {0, 0, 255, 255}));
    EXPECT_TRUE(pixelIs(40, 40, {255, 255, 255, 255}));
}

TEST_F(ParticleDraw, ColoursAddUpUnlessTheHostBlendsOtherwise)
{
    Color blue = {0, 0, 1, 1};
    vrkSetClearColor(&blue);
    vrkClear();
    addParticles({{0, 0, 0}, {0, 0, 0}});
    source->size = 5.0f;
    source->color = {0.4f, 0, 0, 0};
    source->alpha = 0.5f;
    source->draw(&camera);
    EXPECT_TRUE(pixelIs(32, 32, {204, 0, 255, 255}, 1));

    source->particles[1].life = 0;
    source->blendSource = VRK_SRC_ALPHA;
    source->blendDestination = VRK_ZERO;
    source->color.r = 1.0f;
    source->draw(&camera);
    EXPECT_TRUE(pixelIs(32, 32, {128, 0, 0, 0}, 1));
}

TEST_F(ParticleDraw, FadingQuadsTakeAlphaFromTheirOwnLife)
{
    addParticles({{-4, 0, 0}, {4, 0, 0}});
    source->alpha = 0.125f;
    source->size = 2.0f;
    source->blendSource = VRK_SRC_ALPHA;
    source->fadeWithLife = 1;
    source->particles[0].life = 10;
    source->particles[1].life = 4;
    source->draw(&camera);
    EXPECT_TRUE(pixelIs(19, 32, {255, 255, 255, 255}));
    EXPECT_TRUE(pixelIs(44, 32, {102, 102, 102, 0}, 1));
}

TEST_F(ParticleDraw, AFullLifeOfZeroDrawsOpaque)
{
    addParticles({{0, 0, 0}});
    source->particles[0].maxLife = 0;
    source->fadeWithLife = 1;
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(gl.countExact("glColor4f(1, 1, 1, 1)"), 1);
}

TEST_F(ParticleDraw, DepthIsTestedAndNotWritten)
{
    // Drawn from near to far: were depth written, the second quad would fail against the first.
    addParticles({{0, -2, 0}, {0, 2, 0}});
    source->size = 4.0f;
    source->color = {0.4f, 0.4f, 0.4f, 1};
    glDepthFunc(GL_ALWAYS);
    source->draw(&camera);
    EXPECT_TRUE(pixelIs(32, 32, {204, 204, 204, 255}, 1));
    EXPECT_EQ(depth(32, 32), 1.0f);

    vrkClear();
    glClearDepth(0.0);
    glClear(GL_DEPTH_BUFFER_BIT);
    glClearDepth(1.0);
    source->draw(&camera);
    EXPECT_EQ(drawnPixels(), 0) << "behind what is there already";
}

TEST_F(ParticleDraw, LeavesTheRestingStateBehind)
{
    addParticles({{0, 0, 0}});
    addTexture({{255, 0, 0, 255}});
    glEnable(GL_ALPHA_TEST);
    glAlphaFunc(GL_ALWAYS, 0.0f);
    glDepthMask(GL_FALSE);
    glDepthFunc(GL_LESS);
    const GLint matrices = state(GL_MODELVIEW_STACK_DEPTH), attributes = state(GL_ATTRIB_STACK_DEPTH);
    source->draw(&camera);
    EXPECT_TRUE(vrkIsEnabled(VRK_CULL_FACE));
    EXPECT_TRUE(vrkIsEnabled(VRK_TEXTURE_2D));
    EXPECT_TRUE(vrkIsEnabled(VRK_DEPTH_TEST));
    EXPECT_TRUE(vrkIsEnabled(VRK_ALPHA_TEST));
    EXPECT_FALSE(vrkIsEnabled(VRK_BLEND));
    EXPECT_EQ(state(GL_SHADE_MODEL), GL_SMOOTH);
    EXPECT_EQ(state(GL_DEPTH_FUNC), GL_LEQUAL);
    EXPECT_EQ(state(GL_DEPTH_WRITEMASK), GL_TRUE);
    EXPECT_EQ(state(GL_BLEND_SRC), GL_ONE);
    EXPECT_EQ(state(GL_BLEND_DST), GL_ONE);
    EXPECT_EQ(state(GL_MATRIX_MODE), GL_MODELVIEW);
    EXPECT_EQ(state(GL_MODELVIEW_STACK_DEPTH), matrices);
    EXPECT_EQ(state(GL_ATTRIB_STACK_DEPTH), attributes);
}

TEST_F(ParticleDraw, OpenGLRefusesTheTextureSwitchSoTheHostsOwnStays)
{
    addParticles({{0, 0, 0}});
    source->size = 5.0f;
    std::unique_ptr<Material> other(new Material);
    {
        // A red texture, bound last, that isn't the source's own.
        Texture* red = addTexture({{255, 0, 0, 255}});
        other.reset(source->material);
        source->material = nullptr;
        vrkSetTexture(red);
    }
    source->draw(&camera);
    EXPECT_EQ(glGetError(), GLenum(GL_INVALID_ENUM));
    EXPECT_TRUE(pixelIs(32, 32, {255, 0, 0, 255}));

    vrkClear();
    glDisable(GL_TEXTURE_2D);
    source->draw(&camera);
    EXPECT_TRUE(pixelIs(32, 32, {255, 255, 255, 255}));
    EXPECT_FALSE(vrkIsEnabled(VRK_TEXTURE_2D));
}

TEST_F(ParticleDraw, TheViewIsSetAnewWhateverTheMatrixWas)
{
    addParticles({{0, 0, 0}});
    source->size = 5.0f;
    vrkTranslate(1000, 1000, 1000);
    source->draw(&camera);
    EXPECT_NEAR(drawnPixels(), 32 * 32, 70);
}

TEST_F(ParticleDraw, TheTextureShowsTheFrameOfParticleZerosAge)
{
    Texture* texture = addTexture({{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 0, 255}});
    addParticles({{-4, 0, 0}, {4, 0, 0}});
    source->size = 2.0f;
    const Pixel colors[] = {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 0, 255}};
    for (const auto& [life, frame] : {std::pair{10, 0}, {8, 0}, {7, 1}, {5, 2}, {3, 2}, {2, 3}, {1, 3}})
    {
        SCOPED_TRACE(life);
        vrkClear();
        source->particles[0].life = life;
        source->particles[1].life = 11 - life; // of no influence
        source->draw(&camera);
        EXPECT_EQ(texture->currentFrame, frame);
        EXPECT_TRUE(pixelIs(19, 32, colors[frame]));
        EXPECT_TRUE(pixelIs(44, 32, colors[frame]));
    }
}

TEST_F(ParticleDraw, ADeadParticleZeroShowsTheLastFrame)
{
    Texture* texture = addTexture({{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}});
    addParticles({{0, 0, 0}, {4, 0, 0}});
    for (const int life : {0, -1, -500})
    {
        texture->currentFrame = 0;
        source->particles[0].life = life;
        source->draw(&camera);
        EXPECT_EQ(texture->currentFrame, 2);
    }
}

TEST_F(ParticleDraw, FramesBeyondMeasureStayHarmless)
{
    Texture* texture = addTexture({{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 0, 255}});
    addParticles({{0, 0, 0}});
    struct
    {
        int life, maxLife, frame;
    } const cases[] = {{0, 0, 3},
                       {5, 0, 3},
                       {-5, 0, 3}, // no full life known
                       {15, 10, -2},
                       {INT_MAX, 1, 0}, // younger than new: no frame, or none an int holds
                       {INT_MIN, INT_MAX, 3},
                       {INT_MAX, INT_MIN, 3},
                       {INT_MIN, INT_MIN, 0},
                       {-5, -10, 2},
                       {5, -10, 3}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.life << " of " << c.maxLife);
        texture->currentFrame = 1;
        source->particles[0].life = c.life;
        source->particles[0].maxLife = c.maxLife;
        source->draw(&camera);
        EXPECT_EQ(texture->currentFrame, c.frame);
    }
    texture->frameCount = 0;
    source->particles[0] = {};
    source->draw(&camera);
    EXPECT_EQ(texture->currentFrame, -1);
    texture->frameCount = 4;
}

TEST_F(ParticleDraw, WithoutParticlesTheTextureKeepsItsFrame)
{
    Texture* texture = addTexture({{255, 0, 0, 255}, {0, 255, 0, 255}});
    texture->currentFrame = 1;
    GLRecorder gl;
    source->draw(&camera);
    source->particleCount = 10; // as freeParticles leaves it
    source->draw(&camera);
    EXPECT_EQ(texture->currentFrame, 1);
    EXPECT_EQ(gl.countExact("glBindTexture(GL_TEXTURE_2D, " + std::to_string(texture->textureIDs[1]) + ")"),
              2);
}

// A green triangle in the plane x = 0 that fills the corner of positive y and z; one-sided, seen from +x.
class ParticleMesh : public ParticleDraw
{
protected:
    void SetUp() override
    {
        ParticleDraw::SetUp();
        list.addMaterial(new Material);
        list.getMaterial(1)->addDiffuseColor(&green);
        list.getMaterial(1)->makeTextureFromColor();
        mesh.reset(makeMesh("leaf", {{0, 0, 0}, {0, 4, 0}, {0, 0, 4}}, {{0, 1, 2}}));
        mesh->faceMaterials[0].materialIndex = 1;
        for (int i = 0; i < 3; ++i)
            mesh->vertexColors[i] = {1, 1, 1, 1};
        mesh->sortFacesByMaterial();
        source->mesh = mesh.get();
        source->tlist = &list;
        look(90, 90); // from +x, y to the right
    }

    Color green = {0, 1, 0, 1};
    TList list;
    std::unique_ptr<Mesh> mesh;
};

TEST_F(ParticleMesh, StandsAtEachLivingParticle)
{
    addParticles({{0, -5, 0}, {0, 5, 0}, {0, 0, -5}});
    source->particles[1].life = 0;
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(gl.count("glBegin"), 2) << "corner by corner, one range each";
    EXPECT_EQ(gl.countExact("glBegin(GL_TRIANGLES)"), 2);
    EXPECT_TRUE(pixelIs(32 - 16 + 3, 32 + 3, {0, 255, 0, 255}, 2));
    EXPECT_TRUE(pixelIs(32 + 3, 32 - 16 + 3, {0, 255, 0, 255}, 2));
    EXPECT_TRUE(pixelIs(32 + 16 + 3, 32 + 3, {0, 0, 0, 0}));
}

TEST_F(ParticleMesh, TurnsByTheParticlesOwnAnglesAboutZThenYThenX)
{
    addParticles({{0, 0, 0}});
    source->particles[0].rotation = {10, 20, 30};
    GLRecorder gl;
    source->draw(&camera);
    EXPECT_EQ(gl.only({"glPushMatrix", "glTranslatef", "glRotatef", "glBegin", "glPopMatrix"}),
              (Calls{"glRotatef(0, 0, 0, 1)", "glPushMatrix()", "glTranslatef(0, 0, 0)",
                     "glRotatef(30, 0, 0, 1)", "glRotatef(20, 0, 1, 0)", "glRotatef(10, 1, 0, 0)",
                     "glBegin(GL_TRIANGLES)", "glPopMatrix()"}));
    EXPECT_EQ(source->particles[0].rotation.x, 10.0f) << "the camera's angles are for quads";
    EXPECT_EQ(source->particles[0].rotation.z, 30.0f);

    gl.clear();
    source->particles[0].rotation = {0, 0, 0};
    source->draw(&camera);
    EXPECT_EQ(gl.count("glRotatef"), 1) << "the roll alone";
}

TEST_F(ParticleMesh, ShowsBothSidesAndIsNotBlended)
{
    addParticles({{0, 0, 0}});
    Color red = {1, 0, 0, 1};
    vrkSetClearColor(&red);
    vrkClear();
    look(-90, 90);
    source->draw(&camera);
    EXPECT_TRUE(pixelIs(32 - 3, 32 + 3, {0, 255, 0, 255}, 2));
}

TEST_F(ParticleMesh, WithoutACameraItIsDrawnAndTheReportMade)
{
    addParticles({{0, 0, -5}});
    source->particles[0].rotation.y = 90; // into the plane of the screen
    source->draw(nullptr);
    EXPECT_EQ(log(), "Camera used in functioncall is NULL!\n");
    EXPECT_GT(drawnPixels(), 20);
}

TEST_F(ParticleDraw, WithoutACameraQuadsKeepTheirAngles)
{
    addParticles({{0, 0, -10}});
    source->size = 5.0f;
    source->particles[0].rotation = {0, 7, 0};
    source->draw(nullptr);
    EXPECT_TRUE(logged("Camera used in functioncall is NULL!"));
    EXPECT_EQ(source->particles[0].rotation.y, 7.0f);
    EXPECT_EQ(source->particles[0].rotation.x, 0.0f);
    EXPECT_NEAR(drawnPixels(), 32 * 32, 70);
    EXPECT_EQ(state(GL_DEPTH_WRITEMASK), GL_TRUE);
}

TEST_F(ParticleDraw, OtherRasterizersDrawNothing)
{
    addParticles({{0, 0, 0}});
    Texture* texture = addTexture({{255, 0, 0, 255}, {0, 255, 0, 255}});
    texture->currentFrame = 1;
    source->particles[0].velocity = {1, 0, 0};
    vrkSelectRasterizer(7);
    GLRecorder gl;
    source->draw(&camera);
    source->update();
    EXPECT_TRUE(gl.calls().empty()) << gl.text();
    EXPECT_EQ(texture->currentFrame, 1);
    EXPECT_EQ(source->particles[0].position.x, 1.0f);
    vrkSelectRasterizer(0);
}

TEST_F(ParticleDraw, UpdateAndDrawTakeNoMemory)
{
    long before = allocationCount();
    source->initParticles(500);
    EXPECT_EQ(allocationCount() - before, 1) << "the array itself";
    addTexture({{255, 0, 0, 255}, {0, 255, 0, 255}});
    source->fadeWithLife = 1;
    source->initFunction = [](ParticleSource* s, Particle* particle)
    {
        particle->life = particle->maxLife = 1 + int(particle - s->particles) % 7;
        particle->velocity = {0.5f, 0, 0};
    };
    before = allocationCount();
    for (int frame = 0; frame < 20; ++frame)
    {
        source->update();
        source->draw(&camera);
    }
    EXPECT_EQ(allocationCount(), before);
}

TEST_F(ParticleMesh, UpdateAndDrawTakeNoMemory)
{
    addParticles(std::vector<Vertex3D>(100));
    const long before = allocationCount();
    for (int frame = 0; frame < 20; ++frame)
    {
        source->update();
        source->draw(&camera);
    }
    EXPECT_EQ(allocationCount(), before);
}
