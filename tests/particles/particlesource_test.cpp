#include "vornik/particles/particlesource.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/allocations.h"
#include "tests/support/glrecorder.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"

// What the host's functions were given, in order.
static std::vector<std::pair<ParticleSource*, Particle*>> given;
static std::vector<ParticleSource*> updated;

static void note(ParticleSource* source, Particle* particle)
{
    given.push_back({source, particle});
}

static void giveLife(ParticleSource* source, Particle* particle)
{
    note(source, particle);
    if (particle)
        particle->life = particle->maxLife = 100;
}

static void otherInit(ParticleSource*, Particle*) {}

static void noteUpdate(ParticleSource* source)
{
    updated.push_back(source);
}

class ParticleSourceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        given.clear();
        updated.clear();
    }

    // A source of dead particles with a function.
    static std::unique_ptr<ParticleSource> makeSource(int count,
                                                      void (*init)(ParticleSource*, Particle*) = note)
    {
        auto source = std::make_unique<ParticleSource>();
        source->initParticles(count);
        source->initFunction = init;
        return source;
    }

    // A material whose texture has a name, so that its end shows in the calls.
    static Material* makeMaterial(int textureName)
    {
        Material* material = new Material;
        Texture* texture = new Texture;
        texture->textureIDs[0] = textureName;
        material->addFirstTexture(texture);
        return material;
    }

    GLRecorder gl{GLRecorder::swallow};
};

static void expectVector(const Vertex3D& v, float x, float y, float z)
{
    EXPECT_EQ(v.x, x);
    EXPECT_EQ(v.y, y);
    EXPECT_EQ(v.z, z);
}

static void expectColor(const Color& c, float r, float g, float b, float a)
{
    EXPECT_EQ(c.r, r);
    EXPECT_EQ(c.g, g);
    EXPECT_EQ(c.b, b);
    EXPECT_EQ(c.a, a);
}

TEST_F(ParticleSourceTest, AParticleIsAPlainRecordOfFixedLayout)
{
    EXPECT_EQ(sizeof(Particle), 72u);
    EXPECT_EQ(offsetof(Particle, position), 0u);
    EXPECT_EQ(offsetof(Particle, rotation), 12u);
    EXPECT_EQ(offsetof(Particle, spare), 24u);
    EXPECT_EQ(offsetof(Particle, velocity), 28u);
    EXPECT_EQ(offsetof(Particle, acceleration), 40u);
    EXPECT_EQ(offsetof(Particle, spin), 52u);
    EXPECT_EQ(offsetof(Particle, life), 64u);
    EXPECT_EQ(offsetof(Particle, maxLife), 68u);
}

TEST_F(ParticleSourceTest, FieldsStandInTheirOrder)
{
    const size_t offsets[] = {offsetof(ParticleSource, particles),
                              offsetof(ParticleSource, particleCount),
                              offsetof(ParticleSource, material),
                              offsetof(ParticleSource, mesh),
                              offsetof(ParticleSource, tlist),
                              offsetof(ParticleSource, color),
                              offsetof(ParticleSource, position),
                              offsetof(ParticleSource, direction),
                              offsetof(ParticleSource, lifeTimer),
                              offsetof(ParticleSource, blendSource),
                              offsetof(ParticleSource, blendDestination),
                              offsetof(ParticleSource, alpha),
                              offsetof(ParticleSource, size),
                              offsetof(ParticleSource, fadeWithLife),
                              offsetof(ParticleSource, initFunction),
                              offsetof(ParticleSource, updateFunction),
                              offsetof(ParticleSource, active)};
    EXPECT_EQ(offsets[0], 0u);
    for (size_t i = 1; i < std::size(offsets); ++i)
        EXPECT_LT(offsets[i - 1], offsets[i]) << i;
}

TEST_F(ParticleSourceTest, BeginsWithItsDefaults)
{
    void* memory = malloc(sizeof(ParticleSource));
    memset(memory, 0xAA, sizeof(ParticleSource));
    ParticleSource* source = new (memory) ParticleSource;
    EXPECT_EQ(source->particles, nullptr);
    EXPECT_EQ(source->particleCount, 0);
    EXPECT_EQ(source->material, nullptr);
    EXPECT_EQ(source->mesh, nullptr);
    EXPECT_EQ(source->tlist, nullptr);
    expectColor(source->color, 1, 1, 1, 1);
    expectVector(source->position, 0, 0, 0);
    expectVector(source->direction, 0, 0, 0);
    EXPECT_EQ(source->lifeTimer, 0);
    EXPECT_EQ(source->blendSource, 20);
    EXPECT_EQ(source->blendDestination, 20);
    EXPECT_EQ(source->alpha, 1.0f);
    EXPECT_EQ(source->size, 1.0f);
    EXPECT_EQ(source->fadeWithLife, 0);
    EXPECT_EQ(source->initFunction, nullptr);
    EXPECT_EQ(source->updateFunction, nullptr);
    EXPECT_EQ(source->active, 0);
    source->~ParticleSource();
    free(memory);
}

TEST_F(ParticleSourceTest, WithoutAnInitFunctionNothingIsTakenOver)
{
    LogCapture log;
    ParticleSource source;
    Material material;
    Mesh mesh;
    TList list;
    const Vertex3D position = {1, 2, 3}, direction = {4, 5, 6};
    const Color color = {0.1f, 0.2f, 0.3f, 0.4f};
    EXPECT_EQ(source.initSource(&position, &direction, &material, &color, &mesh, &list, 7.0f, 0.5f,
                                VRK_SRC_ALPHA, VRK_ZERO, nullptr, noteUpdate, true),
              45);
    EXPECT_EQ(log.text(), "Cannot initialize particlesource because given functionpointer is NULL!\n");
    expectVector(source.position, 0, 0, 0);
    expectVector(source.direction, 0, 0, 0);
    EXPECT_EQ(source.material, nullptr);
    expectColor(source.color, 1, 1, 1, 1);
    EXPECT_EQ(source.mesh, nullptr);
    EXPECT_EQ(source.tlist, nullptr);
    EXPECT_EQ(source.size, 1.0f);
    EXPECT_EQ(source.alpha, 1.0f);
    EXPECT_EQ(source.blendSource, VRK_ONE);
    EXPECT_EQ(source.blendDestination, VRK_ONE);
    EXPECT_EQ(source.updateFunction, nullptr);
    EXPECT_EQ(source.fadeWithLife, 0);
}

TEST_F(ParticleSourceTest, TakesOverAllThatIsGivenAndKeepsTheRest)
{
    ParticleSource source;
    Material* material = new Material;
    Mesh mesh;
    TList list;
    const Vertex3D position = {1, 2, 3}, direction = {4, 5, 6};
    const Color color = {0.1f, 0.2f, 0.3f, 0.4f};
    EXPECT_EQ(source.initSource(&position, &direction, material, &color, &mesh, &list, 7.0f, 0.5f,
                                VRK_SRC_ALPHA, VRK_ZERO, note, noteUpdate, true),
              0);
    EXPECT_EQ(source.size, 7.0f);
    EXPECT_EQ(source.alpha, 0.5f);
    EXPECT_EQ(source.fadeWithLife, 1);
    EXPECT_EQ(source.initFunction, note);

    // Sizes, alpha, fading and the function are always taken; the others only where there is something.
    EXPECT_EQ(source.initSource(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0.0f, 0.0f, 0, 0,
                                otherInit, nullptr, false),
              0);
    expectVector(source.position, 1, 2, 3);
    expectVector(source.direction, 4, 5, 6);
    EXPECT_EQ(source.material, material);
    expectColor(source.color, 0.1f, 0.2f, 0.3f, 0.4f);
    EXPECT_EQ(source.mesh, &mesh);
    EXPECT_EQ(source.tlist, &list);
    EXPECT_EQ(source.blendSource, VRK_SRC_ALPHA);
    EXPECT_EQ(source.blendDestination, VRK_ZERO);
    EXPECT_EQ(source.updateFunction, noteUpdate);
    EXPECT_EQ(source.size, 0.0f);
    EXPECT_EQ(source.alpha, 0.0f);
    EXPECT_EQ(source.fadeWithLife, 0);
    EXPECT_EQ(source.initFunction, otherInit);
    EXPECT_TRUE(given.empty()) << "no particle is made by the set-up";
}

TEST_F(ParticleSourceTest, EachBlendFactorIsTakenByItself)
{
    ParticleSource source;
    source.initSource(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 1.0f, 1.0f, 0, VRK_ZERO, note,
                      nullptr, false);
    EXPECT_EQ(source.blendSource, VRK_ONE);
    EXPECT_EQ(source.blendDestination, VRK_ZERO);
    source.initSource(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 1.0f, 1.0f, VRK_SRC_ALPHA, 0,
                      note, nullptr, false);
    EXPECT_EQ(source.blendSource, VRK_SRC_ALPHA);
    EXPECT_EQ(source.blendDestination, VRK_ZERO);
}

TEST_F(ParticleSourceTest, TheArrayIsMadeOnceAndZero)
{
    ParticleSource source;
    source.initParticles(0);
    source.initParticles(-1);
    EXPECT_EQ(source.particles, nullptr);
    EXPECT_EQ(source.particleCount, 0);

    source.initParticles(20);
    Particle* made = source.particles;
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(source.particleCount, 20);
    const std::vector<unsigned char> zeros(20 * sizeof(Particle));
    EXPECT_EQ(memcmp(made, zeros.data(), zeros.size()), 0);

    source.initParticles(50);
    EXPECT_EQ(source.particles, made);
    EXPECT_EQ(source.particleCount, 20);
}

TEST_F(ParticleSourceTest, WithoutMemoryTheSourceStaysEmpty)
{
    ParticleSource source;
    {
        const NoMemory none;
        source.initParticles(INT_MAX);
    }
    EXPECT_EQ(source.particles, nullptr);
    EXPECT_EQ(source.particleCount, 0);
    source.initParticles(2);
    EXPECT_EQ(source.particleCount, 2);
}

TEST_F(ParticleSourceTest, FreeingKeepsTheCountAndMakesRoomForAnotherArray)
{
    auto source = makeSource(20);
    source->material = makeMaterial(7);
    source->freeParticles();
    EXPECT_EQ(source->particles, nullptr);
    EXPECT_EQ(source->material, nullptr);
    EXPECT_EQ(source->particleCount, 20);
    EXPECT_EQ(gl.countExact("glDeleteTextures(1, {7})"), 1);

    source->update();
    source->initOne(nullptr);
    source->draw(nullptr);
    ASSERT_EQ(given.size(), 1u) << "only initOne reaches the host";
    EXPECT_EQ(given[0].second, nullptr);

    source->initParticles(3);
    EXPECT_NE(source->particles, nullptr);
    EXPECT_EQ(source->particleCount, 3);
    source->freeParticles();
    source->freeParticles();
    EXPECT_EQ(source->particles, nullptr);
}

TEST_F(ParticleSourceTest, TheDestructorReleasesTheMaterialButNotMeshAndList)
{
    Mesh mesh;
    TList list;
    auto source = makeSource(5);
    source->material = makeMaterial(7);
    source->mesh = &mesh;
    source->tlist = &list;
    source.reset();
    EXPECT_EQ(gl.countExact("glDeleteTextures(1, {7})"), 1);
    EXPECT_NE(list.getMaterial(0), nullptr);
    EXPECT_EQ(mesh.faceCount, 0);
}

TEST_F(ParticleSourceTest, AMaterialOfTwoSourcesGoesWithTheLast)
{
    auto one = makeSource(1), two = makeSource(1);
    one->material = two->material = makeMaterial(7);
    one.reset();
    EXPECT_EQ(gl.count("glDeleteTextures"), 0);
    EXPECT_EQ(two->material->firstTexture->textureIDs[0], 7);
    two->freeParticles();
    EXPECT_EQ(gl.countExact("glDeleteTextures(1, {7})"), 1);
}

TEST_F(ParticleSourceTest, AMaterialOfAListStaysWhenTheSourceGoesFirst)
{
    TList list;
    Material* material = makeMaterial(7);
    list.addMaterial(material);
    auto source = makeSource(1);
    source->material = material;
    source.reset();
    EXPECT_EQ(gl.count("glDeleteTextures"), 0);
    EXPECT_EQ(list.getMaterial(1), material);
    EXPECT_EQ(material->firstTexture->textureIDs[0], 7);
}

TEST_F(ParticleSourceTest, AMaterialThatIsDestroyedElsewhereLeavesItsSources)
{
    auto one = makeSource(1), two = makeSource(1);
    {
        TList list;
        list.addMaterial(makeMaterial(7));
        list.getMaterial(1)->setName("spark");
        list.addMaterial(makeMaterial(8));
        one->material = list.getMaterial(1);
        two->material = list.getMaterial(2);
        list.delMaterial("spark");
        EXPECT_EQ(one->material, nullptr);
        EXPECT_NE(two->material, nullptr);
    }
    EXPECT_EQ(two->material, nullptr);
    EXPECT_EQ(gl.count("glDeleteTextures"), 2);
}

TEST_F(ParticleSourceTest, InitOneHandsOverTheGivenParticle)
{
    auto source = makeSource(3);
    source->particles[0].life = 5;
    source->initOne(&source->particles[2]);
    ASSERT_EQ(given.size(), 1u);
    EXPECT_EQ(given[0].first, source.get());
    EXPECT_EQ(given[0].second, &source->particles[2]);
}

TEST_F(ParticleSourceTest, InitOneOfNullTakesTheFirstLivingParticle)
{
    auto source = makeSource(4);
    source->particles[1].life = -1;
    source->particles[2].life = 1;
    source->particles[3].life = 9;
    source->initOne(nullptr);
    ASSERT_EQ(given.size(), 1u);
    EXPECT_EQ(given[0].second, &source->particles[2]);
}

TEST_F(ParticleSourceTest, InitOneOfNullHandsOverNullWhenAllAreDead)
{
    auto source = makeSource(4);
    source->initOne(nullptr);
    ASSERT_EQ(given.size(), 1u);
    EXPECT_EQ(given[0].second, nullptr);
}

TEST_F(ParticleSourceTest, WithoutAFunctionTheDeadStayDead)
{
    auto source = makeSource(2, nullptr);
    source->particles[1].life = 3;
    source->initOne(nullptr);
    source->update();
    EXPECT_EQ(source->particles[0].life, 0);
    EXPECT_EQ(source->particles[1].life, 2);
}

TEST_F(ParticleSourceTest, TheFirstUpdateMakesAllParticlesAndMovesNone)
{
    auto source = makeSource(3, giveLife);
    for (int i = 0; i < 3; ++i)
        source->particles[i].velocity = {1, 0, 0};
    source->update();
    ASSERT_EQ(given.size(), 3u);
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(given[size_t(i)].first, source.get());
        EXPECT_EQ(given[size_t(i)].second, &source->particles[i]);
        EXPECT_EQ(source->particles[i].life, 100);
        EXPECT_EQ(source->particles[i].position.x, 0.0f);
    }
    source->update();
    EXPECT_EQ(given.size(), 3u);
    EXPECT_EQ(source->particles[2].life, 99);
    EXPECT_EQ(source->particles[2].position.x, 1.0f);
}

TEST_F(ParticleSourceTest, AccelerationActsBeforeTheMove)
{
    auto source = makeSource(1);
    Particle& particle = source->particles[0];
    particle = {{1, 2, 3}, {10, 20, 30}, 5, {0.5f, 1, 2}, {0.25f, -1, 4}, {1, -2, 3}, 10, 10};
    source->update();
    expectVector(particle.velocity, 0.75f, 0, 6);
    expectVector(particle.position, 1.75f, 2, 9);
    expectVector(particle.rotation, 11, 18, 33);
    expectVector(particle.acceleration, 0.25f, -1, 4);
    expectVector(particle.spin, 1, -2, 3);
    EXPECT_EQ(particle.spare, 5.0f);
    EXPECT_EQ(particle.life, 9);
    EXPECT_EQ(particle.maxLife, 10);
}

TEST_F(ParticleSourceTest, AParticleMovesInTheFrameOfItsDeathAndIsMadeAnewInTheNext)
{
    auto source = makeSource(2);
    Particle& particle = source->particles[1];
    source->particles[0].life = 5;
    particle.velocity = {1, 2, 3};
    particle.life = 1;
    source->update();
    EXPECT_EQ(particle.life, 0);
    expectVector(particle.position, 1, 2, 3);
    EXPECT_TRUE(given.empty());
    source->update();
    expectVector(particle.position, 1, 2, 3);
    ASSERT_EQ(given.size(), 1u);
    EXPECT_EQ(given[0].second, &particle);
}

TEST_F(ParticleSourceTest, AnUpdateFunctionDoesAllTheWorkButTheTimer)
{
    auto source = makeSource(2);
    source->particles[0].life = 5;
    source->particles[0].velocity = {1, 1, 1};
    source->updateFunction = noteUpdate;
    source->lifeTimer = 2;
    source->active = 1;
    source->update();
    EXPECT_EQ(updated, std::vector<ParticleSource*>{source.get()});
    EXPECT_TRUE(given.empty());
    EXPECT_EQ(source->particles[0].life, 5);
    EXPECT_EQ(source->particles[0].position.x, 0.0f);
    EXPECT_EQ(source->lifeTimer, 1);
    EXPECT_EQ(source->active, 1);
    source->update();
    EXPECT_EQ(source->lifeTimer, 0);
    EXPECT_EQ(source->active, 0);
    EXPECT_EQ(updated.size(), 2u);
}

TEST_F(ParticleSourceTest, TheTimerIsDownBeforeTheHostsFunctionLooks)
{
    ParticleSource source;
    source.lifeTimer = 1;
    source.active = 1;
    source.updateFunction = [](ParticleSource* s)
    {
        EXPECT_EQ(s->lifeTimer, 0);
        EXPECT_EQ(s->active, 0);
        noteUpdate(s);
    };
    source.update();
    EXPECT_EQ(updated.size(), 1u);
}

TEST_F(ParticleSourceTest, ATimerOfThreeClearsActiveOnTheThirdUpdate)
{
    auto source = makeSource(1);
    source->lifeTimer = 3;
    source->active = 1;
    for (int left : {2, 1})
    {
        source->update();
        EXPECT_EQ(source->lifeTimer, left);
        EXPECT_EQ(source->active, 1);
    }
    source->update();
    EXPECT_EQ(source->lifeTimer, 0);
    EXPECT_EQ(source->active, 0);
}

TEST_F(ParticleSourceTest, ATimerBelowZeroBecomesZeroAndActiveNeverStaysWithoutOne)
{
    ParticleSource source;
    source.lifeTimer = -7;
    source.active = 1;
    source.update();
    EXPECT_EQ(source.lifeTimer, 0);
    EXPECT_EQ(source.active, 0);
    source.active = 1;
    source.update();
    EXPECT_EQ(source.active, 0);
}

TEST_F(ParticleSourceTest, ParticlesGoOnWhenTheTimerHasRunOut)
{
    auto source = makeSource(2, giveLife);
    source->particles[0].life = 9;
    source->particles[0].velocity = {1, 0, 0};
    source->update();
    EXPECT_EQ(source->active, 0);
    EXPECT_EQ(source->particles[0].position.x, 1.0f);
    EXPECT_EQ(source->particles[1].life, 100);
}

TEST_F(ParticleSourceTest, TheHostMayReplaceTheArrayWhileItIsUpdated)
{
    auto source = makeSource(1000);
    source->initFunction = [](ParticleSource* s, Particle* particle)
    {
        note(s, particle);
        if (given.size() == 2)
        {
            s->freeParticles();
            s->initParticles(3);
        }
    };
    source->update();
    ASSERT_EQ(given.size(), 3u);
    EXPECT_EQ(given[2].second, &source->particles[2]) << "goes on where it was, in the new array";
}

TEST_F(ParticleSourceTest, TheHostMayReleaseTheArrayWhileItIsUpdated)
{
    auto source = makeSource(1000);
    source->initFunction = [](ParticleSource* s, Particle* particle)
    {
        note(s, particle);
        s->freeParticles();
    };
    source->update();
    EXPECT_EQ(given.size(), 1u);
    EXPECT_EQ(source->particles, nullptr);
}

TEST_F(ParticleSourceTest, ACountBelowZeroUpdatesNothing)
{
    auto source = makeSource(2);
    source->particleCount = -5;
    source->update();
    source->draw(nullptr);
    EXPECT_TRUE(given.empty());
}
