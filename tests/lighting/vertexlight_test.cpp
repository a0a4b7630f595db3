#include "vornik/lighting/vertexlight.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/lighting/plainlight.h"
#include "tests/lighting/randomscene.h"
#include "tests/support/testmesh.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

static void expectColor(const Color& c, float r, float g, float b, float a)
{
    EXPECT_EQ(c.r, r);
    EXPECT_EQ(c.g, g);
    EXPECT_EQ(c.b, b);
    EXPECT_EQ(c.a, a);
}

static Light* makeLight(Vertex3D location, float strength = 0.5f)
{
    Light* light = new Light;
    light->location = location;
    light->color = {strength, strength, strength, 1.0f};
    light->outerRange = 1e6f;
    light->innerRange = 1e5f;
    return light;
}

// Adds a list with one material, number 1, that glows.
static void addGlow(OGroup* group, float selfIllumination)
{
    TList* list = new TList;
    Material* material = new Material;
    material->selfIllumination = selfIllumination;
    list->addMaterial(material);
    ASSERT_EQ(material->id, 1);
    group->addTList(list);
}

namespace
{
/// One vertex at the origin of a mesh, facing up, and a scene around it.
class OneVertex : public testing::Test
{
protected:
    Scene scene;
    OGroup* group = new OGroup;
    Mesh* mesh = makeMesh("a", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {});

    OneVertex()
    {
        group->addMesh(mesh);
        scene.groups[scene.groupCount++] = group;
        vrkGamma = 1.0f;
    }
    ~OneVertex() override { vrkGamma = 1.0f; }

    Color& lit() { return mesh->lightColors[0]; }

    Light* add(Vertex3D location, float strength = 0.5f)
    {
        group->addLight(makeLight(location, strength));
        return group->lights[group->lightCount - 1];
    }
};
} // namespace

TEST_F(OneVertex, FacingTheLightWithinTheInnerRangeGetsAllOfIt)
{
    group->calcDynamicLight(add({0, 0, 10}), 0);
    expectColor(lit(), 0.5f, 0.5f, 0.5f, 0.0f);
}

TEST_F(OneVertex, TurnedAwayGetsNothing)
{
    mesh->calculatedNormals[0] = {0, 0, -1};
    group->calcDynamicLight(add({0, 0, 10}), 0);
    expectColor(lit(), 0, 0, 0, 0);
    lit() = {0.5f, 0.5f, 0.5f, 0.0f};
    group->calcDynamicLight(group->lights[0], VRK_LIGHT_SUBTRACT);
    expectColor(lit(), 0.5f, 0.5f, 0.5f, 0.0f);
}

TEST_F(OneVertex, TakesTheCosineToTheNormal)
{
    mesh->calculatedNormals[0] = {0.6f, 0, 0.8f};
    group->calcDynamicLight(add({0, 0, 10}, 1.0f), 0);
    EXPECT_EQ(lit().r, 0.8f);
}

TEST_F(OneVertex, ColoursAreAddedChannelByChannel)
{
    Light* light = add({0, 0, 10});
    light->color = {0.25f, 0.5f, 0.75f, 1.0f};
    lit() = {0.125f, 0.125f, 0.125f, 0.375f};
    group->calcDynamicLight(light, 0);
    expectColor(lit(), 0.375f, 0.625f, 0.875f, 0.375f);
}

TEST_F(OneVertex, LightFallsOffLinearlyFromInnerToOuterRange)
{
    Light* light = add({0, 0, 10}, 1.0f);
    light->innerRange = 5.0f;
    light->outerRange = 25.0f;
    for (auto [distance, expected] :
         {std::pair(4.0f, 1.0f), {5.0f, 1.0f}, {10.0f, 0.75f}, {20.0f, 0.25f}, {25.0f, 0.0f}, {26.0f, 0.0f}})
    {
        light->location.z = distance;
        group->calcDynamicLight(light, VRK_LIGHT_CLEAR);
        EXPECT_EQ(lit().r, expected) << distance;
    }
}

TEST_F(OneVertex, EqualRangesLightFullyUpToThem)
{
    Light* light = add({0, 0, 10}, 1.0f);
    light->innerRange = light->outerRange = 10.0f;
    group->calcDynamicLight(light, VRK_LIGHT_CLEAR);
    EXPECT_EQ(lit().r, 1.0f);
    light->location.z = 10.5f;
    group->calcDynamicLight(light, VRK_LIGHT_CLEAR);
    EXPECT_EQ(lit().r, 0.0f);
}

TEST_F(OneVertex, AtTheVeryPlaceOfTheLightStaysDarkInAGroup)
{
    group->calcDynamicLight(add({0, 0, 0}, 1.0f), 0);
    expectColor(lit(), 0, 0, 0, 0);
}

TEST_F(OneVertex, PositionCountsAndRotationDoesNot)
{
    Light* light = add({3, 4, 15}, 1.0f);
    light->innerRange = 0.0f;
    light->outerRange = 40.0f;
    mesh->position = {3, 4, 5};
    mesh->rotation = {90, 45, 30, 0};
    mesh->pivot = {7, 7, 7};
    group->calcDynamicLight(light, 0);
    EXPECT_EQ(lit().r, 0.75f);
}

TEST_F(OneVertex, GroupLimitsChannelsAfterEachLight)
{
    Light* light = add({0, 0, 10}, 0.75f);
    group->calcDynamicLight(light, 0);
    group->calcDynamicLight(light, 0);
    expectColor(lit(), 1, 1, 1, 0);
    group->calcDynamicLight(light, VRK_LIGHT_SUBTRACT);
    expectColor(lit(), 0.25f, 0.25f, 0.25f, 0);
    group->calcDynamicLight(light, VRK_LIGHT_SUBTRACT);
    expectColor(lit(), 0, 0, 0, 0);
}

TEST_F(OneVertex, SceneLimitsNothing)
{
    Light* light = add({0, 0, 10}, 0.75f);
    light->innerRange = 0.0f;
    light->outerRange = 20.0f;
    for (int i = 0; i < 4; i++)
        scene.calcDynamicLight(light, 0);
    EXPECT_EQ(lit().r, 1.5f);
    for (int i = 0; i < 6; i++)
        scene.calcDynamicLight(light, VRK_LIGHT_SUBTRACT);
    EXPECT_EQ(lit().r, -0.75f);
}

TEST_F(OneVertex, ClearingStartsFromBlack)
{
    lit() = {0.5f, 0.5f, 0.5f, 0.5f};
    group->calcDynamicLight(add({0, 0, -10}), VRK_LIGHT_CLEAR);
    expectColor(lit(), 0, 0, 0, 0);
    lit() = {0.5f, 0.5f, 0.5f, 0.5f};
    scene.calcDynamicLight(group->lights[0], VRK_LIGHT_CLEAR);
    EXPECT_EQ(lit().a, 0.0f);
}

TEST_F(OneVertex, ClearingAGroupStartsFromItsGlow)
{
    addGlow(group, 0.5f);
    mesh->createFaces(1);
    mesh->faces[0] = {0, 2, 0};
    mesh->faceMaterials[0].materialIndex = 1;
    group->calcDynamicLight(add({0, 0, -10}), VRK_LIGHT_CLEAR);
    expectColor(mesh->lightColors[0], 0.5f, 0.5f, 0.5f, 0);
    expectColor(mesh->lightColors[1], 0, 0, 0, 0);
    expectColor(mesh->lightColors[2], 0.5f, 0.5f, 0.5f, 0);

    group->activeTList->getMaterial(1)->selfIllumination = 3.0f;
    group->calcDynamicLight(group->lights[0], VRK_LIGHT_CLEAR);
    expectColor(mesh->lightColors[0], 1, 1, 1, 0);

    // Also where no light comes to limit it.
    group->calcDynamicLight(nullptr, VRK_LIGHT_CLEAR);
    expectColor(mesh->lightColors[0], 1, 1, 1, 0);

    // Without the bit nothing glows; without a list either.
    mesh->lightColors[0] = {0, 0, 0, 0};
    group->calcDynamicLight(group->lights[0], 0);
    expectColor(mesh->lightColors[0], 0, 0, 0, 0);
    group->activeTList = nullptr;
    group->calcDynamicLight(group->lights[0], VRK_LIGHT_CLEAR);
    expectColor(mesh->lightColors[0], 0, 0, 0, 0);
}

TEST_F(OneVertex, LastGlowingFaceDecidesASharedCorner)
{
    addGlow(group, 0.5f);
    Material* second = new Material;
    second->selfIllumination = 0.25f;
    group->activeTList->addMaterial(second);
    mesh->createFaces(3);
    for (int f = 0; f < 3; f++)
        mesh->faces[f] = {0, 1, 2};
    mesh->faceMaterials[0].materialIndex = 1;
    mesh->faceMaterials[1].materialIndex = 2;
    mesh->faceMaterials[2].materialIndex = 77; // no such material
    group->calcDynamicLight(add({0, 0, -10}), VRK_LIGHT_CLEAR);
    EXPECT_EQ(mesh->lightColors[1].g, 0.25f);
}

TEST_F(OneVertex, SceneMixesTheGlowInOnceForEachFace)
{
    addGlow(group, 0.5f);
    mesh->createFaces(2);
    mesh->faces[0] = {0, 1, 2};
    mesh->faces[1] = {0, 0, 60000};
    mesh->faceMaterials[0].materialIndex = mesh->faceMaterials[1].materialIndex = 1;
    mesh->lightColors[0] = mesh->lightColors[1] = {0.2f, 0.4f, 0.0f, 0.75f};
    scene.calcDynamicLight(nullptr, VRK_LIGHT_SELF_ILLUMINATION);
    expectColor(mesh->lightColors[1], 0.6f, 0.7f, 0.5f, 0.0f);
    expectColor(mesh->lightColors[0], 0.9f, 0.925f, 0.875f, 0.0f);
    expectColor(mesh->lightColors[2], 0.5f, 0.5f, 0.5f, 0.0f);

    group->activeTList = nullptr;
    scene.calcDynamicLight(nullptr, VRK_LIGHT_SELF_ILLUMINATION);
    EXPECT_EQ(mesh->lightColors[1].r, 0.6f);
}

TEST_F(OneVertex, SelfIlluminationComesBeforeGamma)
{
    vrkGamma = 2.0f;
    lit() = {0.5f, 0.5f, 0.5f, 0.5f};
    scene.calcDynamicLight(nullptr, VRK_LIGHT_SELF_ILLUMINATION | VRK_LIGHT_GAMMA);
    expectColor(lit(), 0.5f, 0.5f, 0.5f, 0.5f);
}

TEST_F(OneVertex, GammaPassRaisesToTheGammaAndApplyingToItsInverse)
{
    vrkGamma = 2.0f;
    lit() = {0.5f, 0.25f, 1.0f, 0.5f};
    scene.calcDynamicLight(nullptr, VRK_LIGHT_GAMMA);
    expectColor(lit(), 0.25f, 0.0625f, 1.0f, 0.5f);
    mesh->vertexColors[0].a = 0.125f;
    group->applyLights();
    expectColor(mesh->vertexColors[0], 0.5f, 0.25f, 1.0f, 0.125f);
}

TEST_F(OneVertex, AppliedLightStaysWithinZeroAndOne)
{
    vrkGamma = 2.0f;
    lit() = {4.0f, -1.0f, 0.0f, 0.0f};
    group->applyLights();
    expectColor(mesh->vertexColors[0], 1, 0, 0, 0);
    vrkGamma = 1.0f;
    lit() = {-2.0f, 1.5f, 0.75f, 0.0f};
    group->applyLights();
    expectColor(mesh->vertexColors[0], 0, 1, 0.75f, 0);
}

TEST_F(OneVertex, SceneRepeatsTheIntensityBeforeWithinTheInnerRange)
{
    // Distances 10, 2, 30, 2: the second repeats the first, the third is beyond the outer range and resets.
    group->delMesh(mesh);
    mesh = makeMesh("a", {{0, 0, 0}, {0, 0, 8}, {0, 0, -20}, {0, 0, 8}}, {});
    group->addMesh(mesh);
    Light* light = add({0, 0, 10}, 1.0f);
    light->innerRange = 5.0f;
    light->outerRange = 25.0f;
    scene.calcDynamicLight(light, 0);
    EXPECT_EQ(mesh->lightColors[0].r, 0.75f);
    EXPECT_EQ(mesh->lightColors[1].r, 0.75f);
    EXPECT_EQ(mesh->lightColors[2].r, 0.0f);
    EXPECT_EQ(mesh->lightColors[3].r, 0.0f);

    // A group computes each of them.
    group->calcDynamicLight(light, VRK_LIGHT_CLEAR);
    EXPECT_EQ(mesh->lightColors[1].r, 1.0f);
    EXPECT_EQ(mesh->lightColors[3].r, 1.0f);
}

TEST_F(OneVertex, RepeatedIntensityOfASubtractingSceneLightIsNothing)
{
    group->delMesh(mesh);
    mesh = makeMesh("a", {{0, 0, 8}, {0, 0, 0}, {0, 0, 8}}, {});
    group->addMesh(mesh);
    Light* light = add({0, 0, 10}, 1.0f);
    light->innerRange = 5.0f;
    light->outerRange = 25.0f;
    scene.calcDynamicLight(light, VRK_LIGHT_SUBTRACT);
    EXPECT_EQ(mesh->lightColors[0].r, 0.0f); // nothing before it
    EXPECT_EQ(mesh->lightColors[1].r, -0.75f);
    EXPECT_EQ(mesh->lightColors[2].r, 0.0f); // -0.75 is negative
}

TEST_F(OneVertex, RepeatedIntensityCrossesMeshesAndGroups)
{
    OGroup* other = new OGroup;
    Mesh* near = makeMesh("near", {{0, 0, 8}}, {});
    other->addMesh(near);
    scene.groups[scene.groupCount++] = other;
    Light* light = add({0, 0, 10}, 1.0f);
    light->innerRange = 5.0f;
    light->outerRange = 25.0f;
    group->delMesh(mesh);
    group->addMesh(makeMesh("far", {{0, 0, 0}}, {}));
    scene.calcDynamicLight(light, 0);
    EXPECT_EQ(near->lightColors[0].r, 0.75f);
}

TEST_F(OneVertex, OnlyTheFirstLightOfAGroupObeysTheFlags)
{
    lit() = {0.125f, 0.125f, 0.125f, 0.125f};
    add({0, 0, 10}, 0.25f);
    add({0, 0, 10}, 0.5f);
    group->calcDynamicLights(0);
    expectColor(lit(), 0.75f, 0.75f, 0.75f, 0); // cleared by the first, added to by the second
    EXPECT_EQ(mesh->vertexColors[0].r, 0.75f);
    group->calcDynamicLights(VRK_LIGHT_SUBTRACT);
    EXPECT_EQ(lit().r, 0.5f); // the first takes from black
}

TEST_F(OneVertex, AGroupWithoutLightsOnlyAppliesWhatItHas)
{
    lit() = {0.5f, 0.25f, 0.125f, 0.0f};
    group->calcDynamicLights(VRK_LIGHT_CLEAR);
    expectColor(lit(), 0.5f, 0.25f, 0.125f, 0.0f);
    EXPECT_EQ(mesh->vertexColors[0].g, 0.25f);
}

TEST_F(OneVertex, OnlyTheVeryFirstLightOfASceneObeysTheFlags)
{
    OGroup* other = new OGroup;
    other->addLight(makeLight({0, 0, 10}, 0.5f));
    scene.groups[scene.groupCount++] = other;
    Light* light = add({0, 0, 10}, 0.25f);
    light->innerRange = other->lights[0]->innerRange = 0.0f;
    light->outerRange = other->lights[0]->outerRange = 20.0f;
    lit() = {8.0f, 8.0f, 8.0f, 0.0f};
    scene.calcDynamicLights(VRK_LIGHT_CLEAR | VRK_LIGHT_SUBTRACT);
    EXPECT_EQ(lit().r, -0.125f + 0.25f);
    EXPECT_EQ(mesh->vertexColors[0].r, 0.0f); // only applyLights shows it

    // The clearing bit isn't added on its own.
    scene.calcDynamicLights(0);
    EXPECT_EQ(lit().r, 0.125f + 0.125f + 0.25f);
}

TEST_F(OneVertex, ASceneEndsWithGammaAndThenGlow)
{
    vrkGamma = 2.0f;
    addGlow(group, 0.5f);
    mesh->createFaces(1);
    mesh->faces[0] = {0, 1, 1};
    mesh->faceMaterials[0].materialIndex = 1;
    lit() = {0.5f, 0.5f, 0.5f, 0.5f};
    scene.calcDynamicLights(VRK_LIGHT_GAMMA);
    // No light: 0.5 squared, then half way to white.
    expectColor(lit(), 0.625f, 0.625f, 0.625f, 0.0f);
    lit() = {0.5f, 0.5f, 0.5f, 0.5f};
    scene.calcDynamicLights(0);
    EXPECT_EQ(lit().r, 0.75f);
}

TEST_F(OneVertex, WithTheGammaBitTheFirstLightIsAGammaPass)
{
    vrkGamma = 2.0f;
    Light* light = add({0, 0, 10}, 0.5f);
    light->innerRange = 0.0f;
    light->outerRange = 20.0f;
    lit() = {0.5f, 0.5f, 0.5f, 0.0f};
    scene.calcDynamicLights(VRK_LIGHT_GAMMA);
    EXPECT_EQ(lit().r, 0.0625f);
}

// A roof of one face over the vertex, lower side down; the light above it.
static Mesh* roof(float z)
{
    return makeMesh("roof", {{-5, -5, z}, {6, -5, z + 0.5f}, {0.5f, 7, z + 0.25f}}, {{0, 1, 2}});
}

TEST_F(OneVertex, AFaceInFrontCastsAShadow)
{
    group->addMesh(roof(5));
    Light* light = add({0.25f, 0.125f, 10});
    Vertex3D offset = {0, 0, 0};
    EXPECT_FALSE(group->checkRay(light, &mesh->calculatedVertices[0], &offset));
    EXPECT_FALSE(scene.checkRay(light, &mesh->calculatedVertices[0], &offset));
    group->calcDynamicLight(light, VRK_LIGHT_SHADOWS);
    EXPECT_EQ(lit().r, 0.0f);
    group->calcDynamicLight(light, 0);
    EXPECT_GT(lit().r, 0.0f);
}

TEST_F(OneVertex, OnlyTheFirstLightOfAGroupIsTraced)
{
    group->addMesh(roof(5));
    add({0.25f, 0.125f, 10});
    group->calcDynamicLights(VRK_LIGHT_SHADOWS);
    EXPECT_EQ(lit().r, 0.0f);
    add({0.25f, 0.125f, 10});
    group->calcDynamicLights(VRK_LIGHT_SHADOWS);
    EXPECT_GT(lit().r, 0.0f);
}

TEST_F(OneVertex, AFaceSeenFromBehindCastsNone)
{
    group->addMesh(roof(5));
    group->meshes[1]->faces[0] = {0, 2, 1};
    Vertex3D offset = {0, 0, 0};
    EXPECT_TRUE(group->checkRay(add({0.25f, 0.125f, 10}), &mesh->calculatedVertices[0], &offset));
}

TEST(CheckRay, AFaceWithACornerAlignedOnOneAxisLetsTheLightThrough)
{
    Vertex3D vertex = {0.125f, 0.25f, 0.0f}, offset = {0, 0, 0};
    Light light;
    light.location = {0.5f, 0.75f, 20.0f};
    // Each of these stands between vertex and light, and its first corner shares x, y or z with the vertex.
    const Vertex3D aligned[3][3] = {{{0.125f, 70, 5}, {-60, -50, 6}, {60, -51, 7}},
                                    {{70, 0.25f, 5}, {-50, 60, 6}, {-51, -60, 7}},
                                    {{0.75f, 70, 0}, {-60, -50, 8}, {60, -51, 9}}};
    for (int axis = 0; axis < 3; axis++)
        for (int turn = 0; turn < 3; turn++)
        {
            const Vertex3D* c = aligned[axis];
            OGroup group;
            group.addMesh(makeMesh("a", {c[turn], c[(turn + 1) % 3], c[(turn + 2) % 3]}, {{0, 1, 2}}));
            EXPECT_TRUE(group.checkRay(&light, &vertex, &offset)) << axis << turn;
            Vertex3D& corner = group.meshes[0]->calculatedVertices[(3 - turn) % 3];
            corner += {0.0625f, 0.0625f, 0.0625f};
            EXPECT_FALSE(group.checkRay(&light, &vertex, &offset)) << axis << turn;
        }
}

TEST_F(OneVertex, TheCentroidDecidesWhetherAFaceIsInFront)
{
    // The face is met above the vertex; its centroid lies far off to the side.
    group->addMesh(makeMesh("a", {{-1, -1, 5}, {1, -1, 5.5f}, {300, 300, 5.25f}}, {{0, 1, 2}}));
    Light* light = add({0.25f, 0.125f, 10});
    Vertex3D offset = {0, 0, 0}, vertex = {0.01f, 0.02f, 0};
    EXPECT_TRUE(group->checkRay(light, &vertex, &offset));

    // The face is met at z = -2, below the vertex; its centroid is nearer to the light than the vertex.
    OGroup other;
    other.addMesh(makeMesh("b", {{-1, -1, -3}, {1.5f, -1.25f, -3.5f}, {0.25f, 20, 15}}, {{0, 1, 2}}));
    light->location = {0, 0, 10};
    EXPECT_FALSE(other.checkRay(light, &vertex, &offset));
}

TEST_F(OneVertex, OffsetsAreAddedAndDataStaysUntouched)
{
    group->addMesh(roof(5));
    Mesh* face = group->meshes[1];
    face->position = {0.1f, 100000.1f, 0.3f};
    Light* light = add({0.25f, 100000.0f, 10});
    Vertex3D offset = {0.0f, 100000.0f, 0.0f};
    const std::vector<Vertex3D> before(face->calculatedVertices, face->calculatedVertices + 3);
    Vertex3D vertex = {0.1f, 0.3f, 0.7f};
    EXPECT_FALSE(group->checkRay(light, &vertex, &offset));
    EXPECT_EQ(vertex.x, 0.1f);
    EXPECT_EQ(vertex.y, 0.3f);
    EXPECT_EQ(memcmp(before.data(), face->calculatedVertices, 3 * sizeof(Vertex3D)), 0);
}

TEST_F(OneVertex, FacesDoNotShadowTheirOwnVertices)
{
    // Moved far away each corner rounds differently from the vertex under test; still its faces don't block
    // it.
    OGroup own;
    own.addMesh(makeMesh("a", {{-5.1f, -5.3f, 5}, {6.7f, -5.9f, 5.5f}, {1.9f, 7.1f, 5.25f}, {0.2f, 0.1f, 0}},
                         {{0, 1, 2}, {3, 1, 2}, {0, 3, 2}, {0, 1, 3}}));
    Mesh* faces = own.meshes[0];
    faces->position = {1234567.0f, 0.1f, 0.7f};
    Light light;
    light.location = {1234567.0f, 0.5f, 20.0f};
    for (int v = 0; v < 4; v++)
        EXPECT_EQ(own.checkRay(&light, &faces->calculatedVertices[v], &faces->position),
                  plainCheckRay({&own}, &light, &faces->calculatedVertices[v], &faces->position));
    EXPECT_TRUE(own.checkRay(&light, &faces->calculatedVertices[0], &faces->position));
    EXPECT_FALSE(own.checkRay(&light, &faces->calculatedVertices[3], &faces->position));
}

TEST_F(OneVertex, ASceneIsShadowedByEveryGroup)
{
    OGroup* other = new OGroup;
    other->addMesh(roof(5));
    scene.groups[scene.groupCount++] = other;
    Light* light = add({0.25f, 0.125f, 10});
    light->innerRange = 0.0f;
    Vertex3D offset = {0, 0, 0};
    EXPECT_TRUE(group->checkRay(light, &mesh->calculatedVertices[0], &offset));
    EXPECT_FALSE(scene.checkRay(light, &mesh->calculatedVertices[0], &offset));
    scene.calcDynamicLight(light, VRK_LIGHT_SHADOWS);
    EXPECT_EQ(lit().r, 0.0f);
    group->calcDynamicLight(light, VRK_LIGHT_SHADOWS);
    EXPECT_GT(lit().r, 0.0f);
}

TEST_F(OneVertex, NothingBlocksInAnEmptyGroup)
{
    OGroup empty;
    Light light;
    light.location = {0, 0, 1};
    Vertex3D vertex = {0, 0, 0}, offset = {0, 0, 0};
    EXPECT_TRUE(empty.checkRay(&light, &vertex, &offset));
    EXPECT_TRUE(empty.checkRay(nullptr, &vertex, &offset));
    EXPECT_TRUE(Scene().checkRay(&light, &vertex, &offset));
    empty.calcDynamicLight(nullptr, 3);
    scene.calcDynamicLight(nullptr, 3);
}

// Every light colour of the groups, in order.
static std::vector<float> lightOf(const std::vector<OGroup*>& groups)
{
    std::vector<float> values;
    for (OGroup* group : groups)
        for (int m = 0; m < group->meshCount; m++)
        {
            const float* first = &group->meshes[m]->lightColors[0].r;
            values.insert(values.end(), first, first + 4 * group->meshes[m]->vertexCount);
        }
    return values;
}

static void setLight(const std::vector<OGroup*>& groups, const std::vector<float>& values)
{
    const float* from = values.data();
    for (OGroup* group : groups)
        for (int m = 0; m < group->meshCount; m++)
        {
            const size_t count = 4 * size_t(group->meshes[m]->vertexCount);
            memcpy(group->meshes[m]->lightColors, from, count * sizeof(float));
            from += count;
        }
}

static void expectSameBits(const std::vector<float>& a, const std::vector<float>& b)
{
    ASSERT_EQ(a.size(), b.size());
    for (size_t i = 0; i < a.size(); i++)
        if (!(std::isnan(a[i]) && std::isnan(b[i])))
        {
            ASSERT_EQ(memcmp(&a[i], &b[i], sizeof(float)), 0) << i << ": " << a[i] << " " << b[i];
        }
}

class LightingOnRandomScenes : public testing::TestWithParam<int>
{
};

TEST_P(LightingOnRandomScenes, GivesTheBitsOfThePlainLoops)
{
    const SceneKind kind = SceneKind(GetParam());
    std::mt19937 random(500u + unsigned(kind));
    vrkGamma = 1.6f;
    for (int round = 0; round < 12; round++)
    {
        Scene scene;
        std::vector<OGroup*> groups;
        for (int g = 0; g < 2; g++)
        {
            OGroup* group = scene.groups[scene.groupCount++] = new OGroup;
            groups.push_back(group);
            fillRandomGroup(group, kind, random);
            addGlow(group, 0.3f);
            for (int m = 0; m < group->meshCount; m++)
                for (int f = 0; f < group->meshes[m]->faceCount; f++)
                    group->meshes[m]->faceMaterials[f].materialIndex = int(random() % 4) == 0;
        }
        std::vector<float> before = lightOf(groups);
        for (float& v : before)
            v = float(random() % 100) * 0.01f;

        for (int flags = 0; flags < 32 && !HasFatalFailure(); flags++)
        {
            SCOPED_TRACE("round " + std::to_string(round) + " flags " + std::to_string(flags));
            const std::unique_ptr<Light> light(makeRandomLight(*groups[0], kind, random));
            setLight(groups, before);
            groups[0]->calcDynamicLight(light.get(), flags);
            const std::vector<float> group = lightOf(groups);
            setLight(groups, before);
            plainGroupLight(groups[0], light.get(), flags);
            expectSameBits(group, lightOf(groups));

            setLight(groups, before);
            scene.calcDynamicLight(light.get(), flags);
            const std::vector<float> all = lightOf(groups);
            setLight(groups, before);
            plainSceneLight(groups, light.get(), flags);
            expectSameBits(all, lightOf(groups));
        }
    }
    vrkGamma = 1.0f;
}

INSTANTIATE_TEST_SUITE_P(Kinds, LightingOnRandomScenes, testing::Range(0, int(SceneKind::Count)));

TEST_F(OneVertex, LightsFilesHoldSixteenBytesAVertex)
{
    TempFolder folder;
    group->addMesh(makeMesh("b", {{0, 0, 0}, {1, 1, 1}}, {}));
    std::mt19937 random(1);
    std::vector<float> values = lightOf({group});
    for (float& v : values)
        v = float(random()) * 1e-5f;
    setLight({group}, values);
    group->saveLights(folder.path("a.lit").c_str());
    const std::string bytes = folder.read("a.lit");
    ASSERT_EQ(bytes.size(), 16u * 5u);
    EXPECT_EQ(memcmp(bytes.data(), values.data(), bytes.size()), 0);

    setLight({group}, std::vector<float>(20, 0.5f));
    group->loadLights(folder.path("a.lit").c_str());
    expectSameBits(lightOf({group}), values);
    EXPECT_EQ(mesh->vertexColors[0].r, 0.0f); // applyLights shows it
}

TEST_F(OneVertex, AShortLightsFileLeavesTheRestAsItWas)
{
    TempFolder folder;
    group->addMesh(makeMesh("b", {{0, 0, 0}, {1, 1, 1}}, {}));
    const std::vector<float> saved(20, 0.25f), before(20, 0.75f);
    setLight({group}, saved);
    group->saveLights(folder.path("a.lit").c_str());
    const std::string bytes = folder.read("a.lit");
    for (size_t length = 0; length <= bytes.size(); length++)
    {
        folder.write("cut.lit", bytes.substr(0, length));
        setLight({group}, before);
        group->loadLights(folder.path("cut.lit").c_str());
        const std::vector<float> now = lightOf({group});
        for (size_t i = 0; i < now.size(); i++)
            ASSERT_EQ(now[i], i < length / 4 ? 0.25f : 0.75f) << length << " " << i;
    }
}

TEST_F(OneVertex, AMissingLightsFileChangesNothing)
{
    TempFolder folder;
    lit() = {0.5f, 0.25f, 0.125f, 1.0f};
    group->loadLights(folder.path("none.lit").c_str());
    expectColor(lit(), 0.5f, 0.25f, 0.125f, 1.0f);
    group->saveLights(folder.path("no/such/folder/a.lit").c_str());
}
