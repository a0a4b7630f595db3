// What the console tells about itself, its scene and its surroundings.

#include <cstdint>
#include <string>

#include "console/signatures.h"
#include "console/text.h"
#include "core/memorylasts.h"
#include "platform/listing.h"
#include "vornik/animation/path.h"
#include "vornik/assets/tlist.h"
#include "vornik/console/console.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

static std::string shown(const char* name)
{
    return name ? name : "(null)";
}

static void append(Console* console, const std::string& text)
{
    console->addText(text.c_str());
}

static void listVariables(Console* console)
{
    append(console, "External Variable List:\n\n");
    for (int i = 0; i < console->varCount; ++i)
    {
        const float* variable = console->varPointers[i];
        append(console, "0x" + hexadecimal(variable) + " - " + shown(console->varNames[i]) + " - " +
                            decimal(variable ? *variable : -2.0f) + "\n");
    }
    append(console, "\n" + std::to_string(console->varCount) + " variables\n\n");
}

static std::string functionLine(const std::string& result, const char* name, const std::string& argument)
{
    return "    " + result + " " + shown(name) + "(" + argument + ")\n";
}

static void listFunctions(Console* console)
{
    append(console, "External Function List:\n\n");
    forEachSignature(
        console,
        [console](int count, auto* /*functions*/, char** names, const char* result, const char* argument)
        {
            for (int i = 0; i < count; ++i)
                append(console, functionLine(result, names[i], argument));
        });
}

struct SceneTotals
{
    int64_t meshes, lights, cameras, tlists, materials, pathLists, paths, particleSources, vertices, faces;
};

// The highest number in the first list; further lists don't count.
static int64_t highestMaterial(const OGroup& group)
{
    if (group.tlistCount <= 0 || !group.tlists[0])
        return 0;
    const Material* last = group.tlists[0]->seekLastMaterial();
    return last ? last->id : 0;
}

static void count(const OGroup& group, SceneTotals* totals)
{
    totals->meshes += group.meshCount;
    totals->lights += group.lightCount;
    totals->cameras += group.cameraCount;
    totals->tlists += group.tlistCount;
    totals->materials += highestMaterial(group);
    totals->pathLists += group.pathListCount;
    for (int i = 0; i < group.pathListCount; ++i)
        totals->paths += group.pathLists[i] ? group.pathLists[i]->pathCount : 0;
    totals->particleSources += group.particleSourceCount;
    for (int i = 0; i < group.meshCount; ++i)
        if (const Mesh* mesh = group.meshes[i])
        {
            totals->vertices += mesh->vertexCount;
            totals->faces += mesh->faceCount;
        }
}

static SceneTotals totalsOf(const Scene& scene)
{
    SceneTotals totals = {};
    for (int i = 0; i < scene.groupCount; ++i)
        if (scene.groups[i])
            count(*scene.groups[i], &totals);
    return totals;
}

static void listScene(Console* console)
{
    const Scene* scene = console->scene;
    const SceneTotals totals = totalsOf(*scene);
    const auto line = [console](const std::string& label, const std::string& value)
    { append(console, label + ": " + value + "\n"); };
    const auto decimalOf = [](int64_t value) { return std::to_string(value); };
    // Hosts know the counts of lists in hexadecimal.
    const auto hexadecimalOf = [](int64_t value) { return hexadecimal(static_cast<uint64_t>(value)); };

    append(console, "Scene information\n");
    line("  Number of OGroups", decimalOf(scene->groupCount));
    line("  Total number of mesh objects", decimalOf(totals.meshes));
    line("  Total number of lights", decimalOf(totals.lights));
    line("  Total number of cameras", decimalOf(totals.cameras));
    line("  Total number of TLists", hexadecimalOf(totals.tlists));
    line("    Total number of Materials in TLists", decimalOf(totals.materials));
    line("  Total number of PathLists", hexadecimalOf(totals.pathLists));
    line("    Total number of Paths in PathLists", decimalOf(totals.paths));
    line("  Total number of ParticleSource", hexadecimalOf(totals.particleSources));
    if (const Camera* camera = scene->camera)
        line("  Active camera", hexadecimal(camera) + " (" + shown(camera->name) + ")");
    else
        append(console, "  Active camera is NULL\n");
    append(console,
           "Total vertices: " + decimalOf(totals.vertices) + " Total faces: " + decimalOf(totals.faces));
}

void Console::listEVars()
{
    whileMemoryLasts([this] { listVariables(this); });
}

void Console::listEFuncs()
{
    whileMemoryLasts([this] { listFunctions(this); });
}

void Console::SceneInfo()
{
    if (scene)
        whileMemoryLasts([this] { listScene(this); });
}

void Console::dir(const char* pattern)
{
    // Sizes are shown as the signed low 32 bits.
    whileMemoryLasts(
        [&]
        {
            for (const ListedFile& file : vrkListFiles(pattern))
                append(this, file.name + "\t" + std::to_string(static_cast<int32_t>(file.size)) + "\n");
        });
}
