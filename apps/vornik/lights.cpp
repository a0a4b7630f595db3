#include "apps/vornik/lights.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

#include "apps/vornik/directions.h"
#include "apps/vornik/progressbar.h"

// Reaches as far as any scene.
static const float endless = 1e18f;

// The engine gives such a lamp a long, fading range of its own.
static bool hasNoRanges(const Light& light)
{
    return light.innerRange == 0.0f && light.outerRange == 10000.0f;
}

// Editors write ranges also where they are not in force. Those of a lamp that would light nothing at all
// can't be meant.
static bool reachesAnything(OGroup* group, const Light& light)
{
    for (int i = 0; i < group->meshCount; ++i)
        for (int vertex = 0; vertex < group->meshes[i]->vertexCount; ++vertex)
        {
            const Vertex3D position = group->meshes[i]->calculatedVertex(vertex);
            if (vrkDistance(&position, &light.location) < light.outerRange)
                return true;
        }
    return false;
}

static Light shoulderLamp(const View& view)
{
    Vertex3D forward = view.camera.target - view.camera.eye;
    const float distance = float(forward);
    forward.normalize();
    const Vertex3D side = unit(forward ^ view.up);
    Vertex3D aside = (side ^ forward) - side;
    aside *= 0.3f * distance;

    Light lamp;
    lamp.location = view.camera.eye + aside;
    lamp.color = {1.0f, 1.0f, 1.0f, 1.0f};
    lamp.innerRange = lamp.outerRange = endless;
    return lamp;
}

enum VertexUse : uint8_t
{
    usedBehind = 1, ///< by a face that shows its back to the viewer
    usedInFront = 2
};

static std::vector<uint8_t> findUses(OGroup* group, Mesh* mesh, const Vertex3D& eye, bool allTwoSided)
{
    std::vector<uint8_t> uses(static_cast<size_t>(std::max(mesh->vertexCount, 0)));
    const Material* material = nullptr;
    for (int i = 0; i < mesh->faceCount; ++i)
    {
        const Facelist& face = mesh->faces[i];
        if (face.a >= uses.size() || face.b >= uses.size() || face.c >= uses.size())
            continue;
        const int id = mesh->faceMaterials[i].materialIndex;
        if (group->activeTList && (!material || material->id != id))
            material = group->activeTList->getMaterial(id);
        const Vertex3D a = mesh->calculatedVertex(face.a), b = mesh->calculatedVertex(face.b),
                       c = mesh->calculatedVertex(face.c);
        const bool behind = calcNormal(&a, &b, &c) * (eye - a) < 0.0f;
        const bool twoSided = allTwoSided || (material && material->twoSided);
        for (const uint16_t corner : {face.a, face.b, face.c})
            uses[corner] |= behind && twoSided ? usedBehind : usedInFront;
    }
    return uses;
}

// Light acts on the front of a face. Where a face of two sides shows its back, the normals turn around, so
// that the side that is seen gets the light.
static void turnBacks(OGroup* group, const Vertex3D& eye, bool allTwoSided)
{
    for (int i = 0; i < group->meshCount; ++i)
    {
        Mesh* mesh = group->meshes[i];
        const std::vector<uint8_t> uses = findUses(group, mesh, eye, allTwoSided);
        for (size_t vertex = 0; vertex < uses.size(); ++vertex)
            if (uses[vertex] == usedBehind)
                mesh->calculatedNormals[vertex] = -mesh->calculatedNormals[vertex];
    }
}

// Light from all around, more from above.
static void addAmbient(OGroup* group, const Vertex3D& up, float ambient)
{
    for (int i = 0; i < group->meshCount; ++i)
    {
        Mesh* mesh = group->meshes[i];
        for (int vertex = 0; vertex < mesh->vertexCount; ++vertex)
        {
            const float slope = mesh->calculatedNormals[vertex] * up;
            const float light = ambient * (std::isfinite(slope) ? 0.75f + 0.25f * slope : 0.75f);
            Color& color = mesh->lightColors[vertex];
            for (float* channel : {&color.r, &color.g, &color.b})
                *channel = std::clamp(*channel + light, 0.0f, 1.0f);
        }
    }
}

void lightScene(OGroup* group, const View& view, const LightOptions& options)
{
    if (!options.classic && options.turnsBacks)
        turnBacks(group, view.camera.eye, options.twoSided);

    const int shadows = options.shadows ? VRK_LIGHT_SHADOWS : 0;
    for (int i = 0; i < group->lightCount; ++i)
    {
        Light* light = group->lights[i];
        if (!options.classic && (hasNoRanges(*light) || !reachesAnything(group, *light)))
            light->innerRange = light->outerRange = endless;
        group->calcDynamicLight(light, shadows | (i == 0 ? VRK_LIGHT_CLEAR : 0));
        showProgress(static_cast<float>(i + 1) / static_cast<float>(group->lightCount));
    }
    clearProgress();
    if (group->lightCount == 0)
    {
        Light lamp = shoulderLamp(view);
        group->calcDynamicLight(&lamp, shadows | VRK_LIGHT_CLEAR);
    }
    addAmbient(group, view.up, options.ambient);
    group->applyLights();
}

// What a file of light for the group has in bytes.
static uintmax_t sizeOfLights(const OGroup& group)
{
    uintmax_t vertices = 0;
    for (int i = 0; i < group.meshCount; ++i)
        vertices += static_cast<uintmax_t>(std::max(group.meshes[i]->vertexCount, 0));
    return vertices * sizeof(Color);
}

std::string saveBakedLight(OGroup* group, const std::string& path)
{
    group->saveLights(path.c_str());
    std::error_code failed;
    return std::filesystem::file_size(path, failed) == sizeOfLights(*group) && !failed ? ""
                                                                                       : "can't be written";
}

std::string takeBakedLight(OGroup* group, const std::string& path)
{
    std::error_code failed;
    const uintmax_t size = std::filesystem::file_size(path, failed);
    if (failed)
        return "can't be opened";
    if (size != sizeOfLights(*group))
        return "is the light of another scene, or of other options";
    group->loadLights(path.c_str());
    group->applyLights();
    return "";
}
