#include "console/loadcommands.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "vornik/assets/load3ds.h"
#include "vornik/console/console.h"
#include "vornik/core/errorlog.h"
#include "vornik/lighting/vertexlight.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

enum
{
    reloadFlags = LOAD_CLEAR | LOAD_MESHES | LOAD_LIGHTS | LOAD_CAMERAS | LOAD_KEYFRAMES | LOAD_MATERIALS |
                  LOAD_LIGHTING,
    firstLoadFlags = reloadFlags | LOAD_TEXTURE_32BIT
};

// What one load is told: "how" comes from the line that named the file, "extras" from the line just typed.
struct Load
{
    std::string file, materials;
    const CommandLine& how;
    const CommandLine& extras;
    int flags;
};

static int loadFlags(const Load& load)
{
    int flags = load.flags;
    if (load.how.findSwitch("/S"))
        flags |= LOAD_SMOOTHING;
    if (load.extras.findSwitch("/X"))
        flags |= LOAD_TEXTURE_MODIFIER;
    if (load.extras.findSwitch("/C"))
        flags |= LOAD_COMBINE;
    if (load.extras.findSwitch("/O"))
        flags |= LOAD_OCTREE;
    return flags;
}

// @return was a group made, or at least tried? Otherwise the file went into group 0
static bool run(Console* console, const Load& load)
{
    const char* file = load.file.c_str();
    const char* materials = load.materials.c_str();
    if (load.how.findSwitch("/A"))
    {
        console->scene->insertMesh(0, file, LOAD_KEYFRAMES, materials, nullptr);
        return false;
    }
    if (load.how.findSwitch("/M"))
    {
        console->scene->insertMesh(0, file, 0, materials, nullptr);
        return false;
    }
    const int lightFlags = load.how.findSwitch("/R") ? VRK_LIGHT_SHADOWS : 0;
    console->scene->createOGroup(file, loadFlags(load), materials, lightFlags, console->progressFunc,
                                 nullptr);
    return true;
}

// The mesh by which an author fixes the scene's scale: its largest side becomes one unit.
static void applyScaler(OGroup* group)
{
    Object* scaler = group ? group->findObject("SCALER") : nullptr;
    if (!scaler)
        return;
    scaler->visible = 0;
    // Lights and cameras may have the name, too, and have no size.
    Mesh** end = group->meshes + group->meshCount;
    Mesh** mesh = std::find(group->meshes, end, scaler);
    if (mesh != end)
        group->adjustSize(*mesh, 1.0f);
}

static int noScene()
{
    return vrkPutToErrorLog("Scene used in functioncall is NULL!", 25);
}

int load3dsCommand(Console* console, const CommandLine& line)
{
    std::snprintf(console->lastLoad, sizeof console->lastLoad, "%s", line.text().c_str());
    if (!console->scene)
        return noScene();
    if (run(console, {line.getWord(1), line.getWord(2), line, line, firstLoadFlags}))
        applyScaler(console->scene->groups[0]);
    return 0;
}

int reload3dsCommand(Console* console, const CommandLine& line)
{
    if (!console->scene)
        return noScene();
    const CommandLine last(
        std::string(console->lastLoad, strnlen(console->lastLoad, sizeof console->lastLoad)));
    run(console, {last.getWord(1), last.getWord(2), last, line, reloadFlags});
    return 0;
}

int clear3dsCommand(Console* console, const CommandLine& /*line*/)
{
    if (!console->scene)
        return noScene();
    console->scene->deleteOGroup(console->scene->groups[0]);
    return 0;
}
