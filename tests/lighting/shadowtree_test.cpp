#include "lighting/shadowtree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <vector>

#include "tests/lighting/plainlight.h"
#include "tests/lighting/randomscene.h"
#include "tests/support/testmesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"

namespace
{
struct Tally
{
    int rays = 0, blocked = 0;
};
} // namespace

// Compares the tree with the plain test for every vertex of a group.
static void compareAllVertices(std::vector<OGroup*> groups, Light* light, Tally& tally)
{
    const ShadowTree tree(*light, groups.data(), int(groups.size()));
    for (OGroup* group : groups)
        for (int m = 0; m < group->meshCount; m++)
        {
            Mesh* mesh = group->meshes[m];
            for (int v = 0; v < mesh->vertexCount; v++)
            {
                Vertex3D* vertex = &mesh->calculatedVertices[v];
                const bool blocked = !plainCheckRay(groups, light, vertex, &mesh->position);
                ASSERT_EQ(tree.blocks(shadowTarget(*light, vertex, mesh->position)), blocked)
                    << "mesh " << m << " vertex " << v;
                tally.rays++;
                tally.blocked += blocked;
            }
        }
}

class ShadowTreeOnRandomScenes : public testing::TestWithParam<int>
{
};

TEST_P(ShadowTreeOnRandomScenes, GivesThePlainAnswer)
{
    const SceneKind kind = SceneKind(GetParam());
    std::mt19937 random(1000u + unsigned(kind));
    Tally tally;
    for (int scene = 0; scene < 300 && !HasFatalFailure(); scene++)
    {
        auto group = std::make_unique<OGroup>();
        fillRandomGroup(group.get(), kind, random);
        for (int i = 0; i < 4 && !HasFatalFailure(); i++)
        {
            const std::unique_ptr<Light> light(makeRandomLight(*group, kind, random));
            SCOPED_TRACE("scene " + std::to_string(scene) + " light " + std::to_string(i));
            compareAllVertices({group.get()}, light.get(), tally);
        }
    }
    // Scenes in which nothing, or everything, is dark would prove little.
    EXPECT_GT(tally.blocked, tally.rays / 200);
    EXPECT_LT(tally.blocked, tally.rays);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ShadowTreeOnRandomScenes, testing::Range(0, int(SceneKind::Count)));

// Small faces of an oblique plane, a lamp far away and a hair above that plane, and vertices behind the
// faces: rays cross the plane so flatly that rounding reports hits well beside a face.
static void grazeFaces(std::mt19937& random, Tally& tally)
{
    auto uniform = [&](float low, float high)
    { return std::uniform_real_distribution<float>(low, high)(random); };
    Vertex3D u = {uniform(-1, 1), uniform(-1, 1), uniform(-1, 1)}, w = {uniform(-1, 1), uniform(-1, 1), 0.5f};
    u.normalize();
    Vertex3D n = u ^ w;
    n.normalize();
    Vertex3D v = n ^ u;
    auto at = [&](float along, float aside, float above)
    {
        return Vertex3D{u.x * along + v.x * aside + n.x * above, u.y * along + v.y * aside + n.y * above,
                        u.z * along + v.z * aside + n.z * above};
    };

    const float distance = 1000.0f, height = std::ldexp(1.0f, -int(random() % 14));
    std::vector<Vertex3D> vertices = {at(uniform(-1, 1), uniform(-1, 1), 0),
                                      at(uniform(-1, 1), uniform(-1, 1), 0),
                                      at(uniform(-1, 1), uniform(-1, 1), 0)};
    for (int i = 0; i < 60; i++)
    {
        const float behind = uniform(5.0f, 1000.0f), slope = height / distance;
        vertices.push_back(
            at(-behind, uniform(-4, 4) * (1 + behind / distance), -slope * (behind + uniform(-2, 2))));
    }
    auto group = std::make_unique<OGroup>();
    group->addMesh(makeMesh("a", vertices, {{0, 1, 2}, {0, 2, 1}}));
    Light light;
    light.location = at(distance, 0, height);
    compareAllVertices({group.get()}, &light, tally);
}

TEST(ShadowTree, FollowsTheRoundingOfGrazingRays)
{
    std::mt19937 random(3);
    Tally tally;
    for (int scene = 0; scene < 4000 && !testing::Test::HasFatalFailure(); scene++)
        grazeFaces(random, tally);
    EXPECT_GT(tally.blocked, tally.rays / 200);
}

TEST(ShadowTree, LooksAtAllGroups)
{
    std::mt19937 random(5);
    Tally tally;
    for (int scene = 0; scene < 100 && !testing::Test::HasFatalFailure(); scene++)
    {
        std::vector<std::unique_ptr<OGroup>> owned;
        std::vector<OGroup*> groups;
        for (int g = 0; g < 3; g++)
        {
            owned.push_back(std::make_unique<OGroup>());
            fillRandomGroup(owned.back().get(), SceneKind(random() % unsigned(SceneKind::Count)), random);
            groups.push_back(owned.back().get());
        }
        const std::unique_ptr<Light> light(makeRandomLight(*groups[1], SceneKind::Soup, random));
        compareAllVertices(groups, light.get(), tally);
    }
    EXPECT_GT(tally.blocked, 0);
}

TEST(ShadowTree, AnswersForVerticesOfNoMesh)
{
    std::mt19937 random(6);
    auto group = std::make_unique<OGroup>();
    OGroup* groups[] = {group.get()};
    for (int i = 0; i < 20; i++)
        fillRandomGroup(group.get(), SceneKind::Soup, random);
    const std::unique_ptr<Light> light(makeRandomLight(*group, SceneKind::Soup, random));
    const ShadowTree tree(*light, groups, 1);
    Vertex3D offset = {0.125f, 0.0f, -1.0f};
    for (int i = 0; i < 500; i++)
    {
        Vertex3D vertex = {float(random() % 2001) * 0.01f - 10.0f, float(random() % 2001) * 0.01f - 10.0f,
                           float(random() % 2001) * 0.01f - 10.0f};
        EXPECT_EQ(tree.blocks(shadowTarget(*light, &vertex, offset)),
                  !plainCheckRay({group.get()}, light.get(), &vertex, &offset));
    }
}

TEST(ShadowTree, WithoutFacesNothingBlocks)
{
    auto group = std::make_unique<OGroup>();
    OGroup* groups[] = {group.get(), nullptr};
    Light light;
    light.location = {0, 0, 10};
    Vertex3D vertex = {1, 2, 3};
    EXPECT_FALSE(ShadowTree(light, groups, 2).blocks(shadowTarget(light, &vertex, {0, 0, 0})));
    EXPECT_FALSE(ShadowTree(light, groups, 0).blocks(shadowTarget(light, &vertex, {0, 0, 0})));
}

TEST(ShadowTree, PassesOverFacesThatNameMissingVertices)
{
    auto group = std::make_unique<OGroup>();
    OGroup* groups[] = {group.get()};
    group->addMesh(makeMesh("a", {{-5, -5, 5}, {6, -5, 5.5f}, {0, 7, 5.25f}}, {{0, 1, 3}, {60000, 1, 2}}));
    group->meshes[0]->faces[0] = {0, 1, 65535};
    Light light;
    light.location = {0.1f, 0.2f, 10};
    Vertex3D vertex = {0.3f, 0.4f, 0};
    EXPECT_FALSE(ShadowTree(light, groups, 1).blocks(shadowTarget(light, &vertex, {0, 0, 0})));

    group->meshes[0]->faces[1] = {0, 1, 2};
    EXPECT_TRUE(ShadowTree(light, groups, 1).blocks(shadowTarget(light, &vertex, {0, 0, 0})));
}

// Triangles of one size around places, turned at random, under a lamp, with vertices on the ground.
static void shadeTriangles(const std::vector<Vertex3D>& places, float size, std::mt19937& random,
                           Tally& tally)
{
    const auto aside = [&] { return size * (float(random() % 2001) * 0.001f - 1.0f); };
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (const Vertex3D& place : places)
    {
        const uint16_t first = uint16_t(vertices.size());
        for (int corner = 0; corner < 3; corner++)
            vertices.push_back({place.x + aside(), place.y + aside(), place.z + aside()});
        faces.push_back({first, uint16_t(first + 1), uint16_t(first + 2)});
    }
    for (int i = 0; i < 60; i++)
        vertices.push_back(
            {float(random() % 2001) * 0.01f - 10.0f, float(random() % 2001) * 0.01f - 10.0f, -20});
    auto group = std::make_unique<OGroup>();
    group->addMesh(makeMesh("triangles", vertices, faces));
    Light light;
    light.location = {0.25f, -0.5f, 20.0f};
    compareAllVertices({group.get()}, &light, tally);
}

TEST(ShadowTree, TakesAnyNumberOfFaces)
{
    // Four of them are tested side by side, and four boxes: the last of each may be alone.
    std::mt19937 random(8);
    Tally tally;
    for (int count = 1; count <= 70 && !testing::Test::HasFatalFailure(); count++)
    {
        std::vector<Vertex3D> places;
        for (int i = 0; i < count; i++)
            places.push_back({float(random() % 11) - 5.0f, float(random() % 11) - 5.0f, float(random() % 9)});
        shadeTriangles(places, 3.0f, random, tally);
    }
    EXPECT_GT(tally.blocked, tally.rays / 20);
    EXPECT_LT(tally.blocked, tally.rays);
}

TEST(ShadowTree, DividesFacesThatCoverEachOther)
{
    std::mt19937 random(9);
    Tally tally;
    shadeTriangles(std::vector<Vertex3D>(300, Vertex3D{1, 2, 3}), 4.0f, random, tally);
    EXPECT_GT(tally.blocked, 0);

    // Equal to the last bit: no cut tells them apart.
    std::vector<Vertex3D> vertices = {
        {-5, -5, 5}, {6, -5, 5.5f}, {0, 7, 5.25f}, {0.5f, 0.25f, -3}, {30, 2, -3}};
    auto group = std::make_unique<OGroup>();
    group->addMesh(makeMesh("equal", vertices, std::vector<Facelist>(2000, Facelist{0, 1, 2})));
    Light light;
    light.location = {0.1f, 0.2f, 10};
    Tally equal;
    compareAllVertices({group.get()}, &light, equal);
    EXPECT_EQ(equal.blocked, 1);
}

TEST(ShadowTree, DividesFacesThatCrowdTowardsAPlace)
{
    // Even slices of their row part a few from all others, again and again.
    std::mt19937 random(10);
    std::vector<Vertex3D> places;
    for (int i = 0; i < 2000; i++)
        places.push_back({9.0f * std::pow(0.95f, float(i)), 3.0f * std::pow(0.95f, float(i)), 1.0f});
    Tally tally;
    shadeTriangles(places, 0.5f, random, tally);
    EXPECT_GT(tally.blocked, 0);
}

TEST(ShadowTree, FollowsRaysAlongTheAxes)
{
    // The light and a vertex differ in one coordinate only; one face lies across, and one beside the ray that
    // ends a hair before it.
    Tally tally;
    for (const float sign : {1.0f, -1.0f})
        for (int axis = 0; axis < 3; axis++)
        {
            const auto turned = [&](float along, float u, float v)
            {
                const float place[3] = {sign * along, u, v};
                return Vertex3D{place[(3 - axis) % 3], place[(4 - axis) % 3], place[(5 - axis) % 3]};
            };
            std::vector<Vertex3D> vertices = {turned(4, -1, -2),   turned(4.5f, 3, -1),
                                              turned(5, -1, 4),    turned(2, -1e-6f, -2e-6f),
                                              turned(2.5f, -3, 1), turned(2.25f, -3, -4)};
            auto group = std::make_unique<OGroup>();
            group->addMesh(makeMesh("a", vertices, {{0, 1, 2}, {0, 2, 1}, {3, 4, 5}, {3, 5, 4}}));
            OGroup* groups[] = {group.get()};
            Light light;
            light.location = {0, 0, 0};
            for (const float end : {1.0f, 3.0f, 9.0f, -9.0f})
            {
                Vertex3D vertex = turned(end, 0, 0), offset = {0, 0, 0};
                const bool blocked =
                    ShadowTree(light, groups, 1).blocks(shadowTarget(light, &vertex, offset));
                EXPECT_EQ(blocked, end == 9.0f) << "axis " << axis << " end " << end << " sign " << sign;
                EXPECT_EQ(blocked, !plainCheckRay({group.get()}, &light, &vertex, &offset));
            }
        }
}

TEST(ShadowTree, TestsAnewTheFaceThatBlockedBefore)
{
    auto group = std::make_unique<OGroup>();
    OGroup* groups[] = {group.get()};
    group->addMesh(makeMesh("a", {{-5, -5, 5}, {6, -5, 5.5f}, {0, 7, 5.25f}}, {{0, 1, 2}}));
    Light light;
    light.location = {0.1f, 0.2f, 10};
    const ShadowTree tree(light, groups, 1);
    const Vertex3D none = {0, 0, 0};
    Vertex3D below = {0.3f, 0.4f, 0}, beside = {60, 0.4f, 0}, above = {0.3f, 0.4f, 8}, aligned = {0.3f, 7, 0};
    for (int turn = 0; turn < 2; turn++)
    {
        EXPECT_TRUE(tree.blocks(shadowTarget(light, &below, none)));
        EXPECT_FALSE(tree.blocks(shadowTarget(light, &beside, none)));
        EXPECT_TRUE(tree.blocks(shadowTarget(light, &below, none)));
        EXPECT_FALSE(tree.blocks(shadowTarget(light, &above, none)));
        EXPECT_FALSE(tree.blocks(shadowTarget(light, &aligned, none)));
        EXPECT_FALSE(tree.blocks(shadowTarget(light, &group->meshes[0]->calculatedVertices[2], none)));
    }
}

// A floor of 2 * side * side faces with shared vertices.
static Mesh* makeFloor(int side)
{
    std::vector<Vertex3D> vertices;
    std::vector<Facelist> faces;
    for (int y = 0; y <= side; y++)
        for (int x = 0; x <= side; x++)
            vertices.push_back({float(x), float(y), 0.0f});
    for (int y = 0; y < side; y++)
        for (int x = 0; x < side; x++)
        {
            uint16_t a = uint16_t(y * (side + 1) + x), b = uint16_t(a + 1), c = uint16_t(a + side + 1);
            faces.push_back({a, b, c});
            faces.push_back({b, uint16_t(c + 1), c});
        }
    return makeMesh("floor", vertices, faces);
}

TEST(ShadowTree, StaysQuickWithALightAtTheHeightOfTheFloor)
{
    // The plain loop would test 6,500,000,000 faces, and so would a tree that can't tell what a grazing ray
    // hits.
    auto group = std::make_unique<OGroup>();
    OGroup* groups[] = {group.get()};
    Mesh* mesh = makeFloor(200);
    group->addMesh(mesh);
    Light light;
    light.location = {100.3f, 50.7f, 0.0f};
    auto start = std::chrono::steady_clock::now();
    const ShadowTree tree(light, groups, 1);
    int blocked = 0;
    for (int v = 0; v < mesh->vertexCount; v++)
        for (float height : {0.0f, 3.0f})
            blocked += tree.blocks(shadowTarget(light, &mesh->calculatedVertices[v], {0, 0, height}));
    EXPECT_EQ(blocked, 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(6));
}
