#include "tests/console/consoletest.h"

#include <cstdint>
#include <cstdio>

#include "tests/support/testmesh.h"
#include "vornik/animation/path.h"
#include "vornik/assets/tlist.h"
#include "vornik/particles/particlesource.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

using ConsoleLists = ConsoleTest;

static std::string lowBits(const void* pointer)
{
    char digits[16];
    std::snprintf(digits, sizeof digits, "%x", static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer)));
    return digits;
}

TEST_F(ConsoleLists, VariablesWithAddressNameAndValue)
{
    EXPECT_EQ(said("EVARLIST"), "External Variable List:\n\n\n0 variables\n\n");
    float speed = 2.5f, size = -7.0f;
    console.addVar(&speed, "speed");
    console.addVar(&size);
    EXPECT_EQ(said("EVARLIST"), "External Variable List:\n\n0x" + lowBits(&speed) +
                                    " - SPEED - 2.500000\n0x" + lowBits(&size) +
                                    " - VAR1 - -7.000000\n\n2 variables\n\n");
}

TEST_F(ConsoleLists, NullVariablesShowTheirFault)
{
    console.addVar(nullptr, "none");
    console.listEVars();
    EXPECT_EQ(drained(console), "External Variable List:\n\n0x0 - NONE - -2.000000\n\n1 variables\n\n");
}

TEST_F(ConsoleLists, LongNamesAndFormatsAreShownAsTheyStand)
{
    float value = 0;
    const std::string name = "%S%N" + std::string(5000, 'X');
    console.addVar(&value, name.c_str());
    console.listEVars();
    EXPECT_NE(drained(console).find(" - " + name + " - 0.000000\n"), std::string::npos);
}

TEST_F(ConsoleLists, FunctionsBySignature)
{
    EXPECT_EQ(said("EFUNCLIST"), "External Function List:\n\n");
    console.addFunc(
        +[] { return 0.0f; }, "fv");
    console.addFunc(
        +[](int) { return 0.0f; }, "fi");
    console.addFunc(
        +[](float) { return 0.0f; }, "ff");
    console.addFunc(
        +[] { return 0; }, "iv");
    console.addFunc(
        +[](int) { return 0; }, "ii");
    console.addFunc(
        +[](float) { return 0; }, "if");
    console.addFunc(
        +[] {}, "vv");
    console.addFunc(
        +[](int) {}, "vi");
    console.addFunc(
        +[](float) {}, "vf");
    console.addFunc(
        +[](float) {}, "second");
    EXPECT_EQ(said("EFUNCLIST"),
              "External Function List:\n\n"
              "    Void VF(Float)\n    Void SECOND(Float)\n    Void VI(Int)\n    Void VV(Void)\n"
              "    Int IF(Float)\n    Int II(Int)\n    Int IV(Void)\n"
              "    Float FF(Float)\n    Float FI(Int)\n    Float FV(Void)\n");
}

TEST_F(ConsoleLists, SceneInfoNeedsAScene)
{
    EXPECT_EQ(said("SCENEINFO"), "");
}

TEST_F(ConsoleLists, AnEmptySceneCountsNothing)
{
    Scene scene;
    console.setScene(&scene);
    EXPECT_EQ(said("SCENEINFO"), "Scene information\n"
                                 "  Number of OGroups: 0\n"
                                 "  Total number of mesh objects: 0\n"
                                 "  Total number of lights: 0\n"
                                 "  Total number of cameras: 0\n"
                                 "  Total number of TLists: 0\n"
                                 "    Total number of Materials in TLists: 0\n"
                                 "  Total number of PathLists: 0\n"
                                 "    Total number of Paths in PathLists: 0\n"
                                 "  Total number of ParticleSource: 0\n"
                                 "  Active camera is NULL\n"
                                 "Total vertices: 0 Total faces: 0");
}

static TList* listOf(int materials)
{
    auto* list = new TList;
    for (int i = 0; i < materials; ++i)
        list->addMaterial(new Material);
    return list;
}

TEST_F(ConsoleLists, SceneInfoTotalsAllGroups)
{
    Scene scene;
    console.setScene(&scene);
    for (int i = 0; i < 2; ++i)
    {
        auto* group = new OGroup;
        group->addMesh(makeMesh("A", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}));
        group->addMesh(makeMesh("B", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}, {{0, 1, 2}, {1, 2, 3}}));
        group->addMesh(new Mesh);
        group->addLight(new Light);
        group->addCamera(new Camera);
        group->addCamera(new Camera);
        for (int k = 0; k < 6; ++k) // 12 lists in all are c
        {
            group->addTList(listOf(k == 0 ? 3 : 9)); // only the first list counts
            group->addPathList(new PathList);
            group->pathLists[k]->addPath(new VRKPath(1, VRK_NODE_OBJECT, VRK_TRACK_POSITION, nullptr));
            group->addParticleSource(new ParticleSource);
        }
        scene.groups[scene.groupCount++] = group;
    }
    scene.groups[scene.groupCount++] = new OGroup;
    scene.camera = scene.groups[1]->cameras[1];
    scene.camera->setName("%s eye");
    EXPECT_EQ(said("SCENEINFO"), "Scene information\n"
                                 "  Number of OGroups: 3\n"
                                 "  Total number of mesh objects: 6\n"
                                 "  Total number of lights: 2\n"
                                 "  Total number of cameras: 4\n"
                                 "  Total number of TLists: c\n"
                                 "    Total number of Materials in TLists: 6\n"
                                 "  Total number of PathLists: c\n"
                                 "    Total number of Paths in PathLists: 12\n"
                                 "  Total number of ParticleSource: c\n"
                                 "  Active camera: " +
                                     lowBits(scene.camera) +
                                     " (%s eye)\n"
                                     "Total vertices: 14 Total faces: 6");
    EXPECT_EQ(console.command("SCENEINFO"), 0);
}

TEST_F(ConsoleLists, ACameraWithoutANameIsShownSo)
{
    Scene scene;
    console.setScene(&scene);
    scene.groups[scene.groupCount++] = new OGroup;
    scene.camera = new Camera;
    scene.groups[0]->addCamera(scene.camera);
    scene.camera->name = nullptr;
    console.SceneInfo();
    EXPECT_NE(drained(console).find(lowBits(scene.camera) + " ((null))\n"), std::string::npos);
}
