// Ray-traced vertex lighting: what OGroup and Scene do with their lights, once, before anything is drawn.
//
// The two passes look alike and are not: a group limits its colours to 0 to 1 at each light, a scene never;
// and within innerRange a scene repeats the intensity of the vertex before.

#include "vornik/lighting/vertexlight.h"

#include <math.h>
#include <stdio.h>

#include <algorithm>
#include <optional>

#include "lighting/shadowtree.h"
#include "platform/file.h"
#include "rasterizer/d3d/d3dmesh.h"
#include "scene/materialtable.h"
#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/scene/scene.h"

bool OGroup::checkRay(Light* light, Vertex3D* vertex, Vertex3D* offset)
{
    if (!light || !vertex || !offset)
        return true;
    return !groupBlocks(*this, *light, shadowTarget(*light, vertex, *offset));
}

bool Scene::checkRay(Light* light, Vertex3D* vertex, Vertex3D* offset)
{
    if (!light || !vertex || !offset)
        return true;
    const ShadowTarget target = shadowTarget(*light, vertex, *offset);
    for (int g = 0; g < groupCount; g++)
        if (groups[g] && groupBlocks(*groups[g], *light, target))
            return false;
    return true;
}

static bool hasColors(const Mesh* mesh)
{
    return mesh && mesh->lightColors && mesh->vertexCount > 0;
}

static bool canBeLit(const Mesh* mesh)
{
    return hasColors(mesh) && mesh->calculatedVertices && mesh->calculatedNormals;
}

static void clearLight(Mesh* mesh)
{
    std::fill(mesh->lightColors, mesh->lightColors + mesh->vertexCount, Color{0.0f, 0.0f, 0.0f, 0.0f});
}

// Calls visit(color, selfIllumination) for the three corners of every face whose material glows.
template <class Visit>
static void forGlowingCorners(Mesh* mesh, TList* list, Visit visit)
{
    if (!list || !mesh->faces || !mesh->faceMaterials)
        return;
    const Material* material = nullptr;
    for (int f = 0; f < mesh->faceCount; f++)
    {
        // Neighbouring faces mostly have one material.
        const int id = mesh->faceMaterials[f].materialIndex;
        if (!material || material->id != id)
            material = findMaterial(list, id);
        if (!material || !(material->selfIllumination > 0.0f))
            continue;
        for (uint16_t corner : {mesh->faces[f].a, mesh->faces[f].b, mesh->faces[f].c})
            if (corner < mesh->vertexCount)
                visit(mesh->lightColors[corner], material->selfIllumination);
    }
}

static void limit(Color& color)
{
    clamp(&color.r, 0.0f, 1.0f);
    clamp(&color.g, 0.0f, 1.0f);
    clamp(&color.b, 0.0f, 1.0f);
}

namespace
{
/// From a vertex to the light.
struct LightRay
{
    Vertex3D towards; // unit length, or zero at the very place of the light
    float distance;

    LightRay(const Light& light, const Mesh& mesh, int vertex)
        : towards(light.location - (mesh.calculatedVertices[vertex] + mesh.position)),
          distance(float(towards))
    {
        if (distance == 0.0f)
            towards = {0.0f, 0.0f, 0.0f};
        else
            towards /= distance;
    }
};
} // namespace

// 1 at innerRange, 0 at outerRange.
static float falloff(const Light& light, float distance)
{
    return 1.0f - (distance - light.innerRange) / (light.outerRange - light.innerRange);
}

static void shine(Color& color, const Light& light, float intensity)
{
    color.r += intensity * light.color.r;
    color.g += intensity * light.color.g;
    color.b += intensity * light.color.b;
}

// The shadow test of a pass; without a tree everything is lit.
static bool isLit(const std::optional<ShadowTree>& shadows, const Light& light, const Mesh& mesh, int vertex)
{
    return !shadows || !shadows->blocks(shadowTarget(light, &mesh.calculatedVertices[vertex], mesh.position));
}

static float groupIntensity(const Light& light, const Mesh& mesh, int vertex)
{
    const LightRay ray(light, mesh, vertex);
    if (ray.distance > light.outerRange)
        return 0.0f;
    float intensity = ray.towards * mesh.calculatedNormals[vertex];
    if (ray.distance > light.innerRange)
        intensity *= falloff(light, ray.distance);
    return intensity < 0.0f ? 0.0f : intensity;
}

void OGroup::calcDynamicLight(Light* light, int flags)
{
    std::optional<ShadowTree> shadows;
    OGroup* const self = this;
    if (light && (flags & VRK_LIGHT_SHADOWS))
        shadows.emplace(*light, &self, 1);
    const NotedMaterials materials(flags & VRK_LIGHT_CLEAR ? activeTList : nullptr);

    for (int m = 0; m < meshCount; m++)
    {
        Mesh* mesh = meshes[m];
        if (!hasColors(mesh))
            continue;
        if (flags & VRK_LIGHT_CLEAR)
        {
            clearLight(mesh);
            forGlowingCorners(mesh, activeTList,
                              [](Color& color, float glow)
                              {
                                  color = {glow, glow, glow, 0.0f};
                                  limit(color);
                              });
        }
        if (!light || !canBeLit(mesh))
            continue;
        for (int v = 0; v < mesh->vertexCount; v++)
        {
            if (!isLit(shadows, *light, *mesh, v))
                continue;
            float intensity = groupIntensity(*light, *mesh, v);
            if (flags & VRK_LIGHT_SUBTRACT)
                intensity = -intensity;
            shine(mesh->lightColors[v], *light, intensity);
            limit(mesh->lightColors[v]);
        }
    }
}

void OGroup::calcDynamicLights(int flags)
{
    // The flags are for the first light: later ones never cast shadows and never subtract.
    for (int i = 0; i < lightCount; i++)
        calcDynamicLight(lights[i], i == 0 ? flags | VRK_LIGHT_CLEAR : 0);
    applyLights();
}

// Limited to 0 to 1. Light that a scene took below black has no power and stays black.
static float applied(float light, float exponent)
{
    float value = float(pow(double(light), double(exponent)));
    if (isnan(value))
        value = 0.0f;
    clamp(&value, 0.0f, 1.0f);
    return value;
}

// Hands the colours to the mesh that Direct3D draws, which is made here if need be. @return false without
// memory
static bool showOnDirect3D(Mesh* mesh)
{
    if (!mesh->d3dMesh)
        mesh->d3dMesh = makeD3DMesh(*mesh);
    if (!mesh->d3dMesh)
        return false;
    // A mesh that has lost vertices since then has too few colours.
    if (mesh->d3dMesh->vertexCount <= mesh->vertexCount)
        mesh->d3dMesh->updateColors(mesh->vertexColors);
    return true;
}

void OGroup::applyLights()
{
    const float exponent = 1.0f / vrkGetGamma();
    for (int m = 0; m < meshCount; m++)
    {
        Mesh* mesh = meshes[m];
        if (!hasColors(mesh) || !mesh->vertexColors)
            continue;
        for (int v = 0; v < mesh->vertexCount; v++)
        {
            const Color& light = mesh->lightColors[v];
            Color& color = mesh->vertexColors[v];
            color.r = applied(light.r, exponent);
            color.g = applied(light.g, exponent);
            color.b = applied(light.b, exponent);
        }
        if (selectedDirect3D() && !showOnDirect3D(mesh))
            return;
    }
}

void OGroup::saveLights(const char* fileName)
{
    FILE* file = vrkOpenFile(fileName, "wb");
    if (!file)
        return;
    for (int m = 0; m < meshCount; m++)
        if (hasColors(meshes[m]))
            fwrite(meshes[m]->lightColors, sizeof(Color), size_t(meshes[m]->vertexCount), file);
    fclose(file);
}

void OGroup::loadLights(const char* fileName)
{
    FILE* file = vrkOpenFile(fileName, "rb");
    if (!file)
        return;
    for (int m = 0; m < meshCount; m++)
    {
        if (!hasColors(meshes[m]))
            continue;
        // Whole floats only: a file cut in the middle of one leaves that one as it was.
        for (int v = 0; v < meshes[m]->vertexCount; v++)
        {
            float values[4];
            const size_t count = fread(values, sizeof(float), 4, file);
            std::copy_n(values, count, &meshes[m]->lightColors[v].r);
        }
    }
    fclose(file);
}

// Takes light towards white by the glow.
static float mixed(float light, float glow)
{
    return (1.0f - glow) * light + glow;
}

static void glow(Mesh* mesh, TList* list)
{
    forGlowingCorners(mesh, list,
                      [](Color& color, float s) {
                          color = {mixed(color.r, s), mixed(color.g, s), mixed(color.b, s), 0.0f};
                      });
}

// The exponent is the gamma itself; applyLights uses its inverse.
static void raiseToGamma(Mesh* mesh)
{
    const double gamma = vrkGetGamma();
    for (Color* color = mesh->lightColors; color < mesh->lightColors + mesh->vertexCount; color++)
    {
        color->r = float(pow(color->r, gamma));
        color->g = float(pow(color->g, gamma));
        color->b = float(pow(color->b, gamma));
    }
}

// Adds a light to one mesh of a scene, without any limit. intensity is that of the vertex before: within
// innerRange it is taken again.
static void lightSceneMesh(Mesh* mesh, const Light& light, const std::optional<ShadowTree>& shadows,
                           bool subtract, float& intensity)
{
    for (int v = 0; v < mesh->vertexCount; v++)
    {
        if (!isLit(shadows, light, *mesh, v))
            continue;
        const LightRay ray(light, *mesh, v);
        if (ray.distance > light.outerRange)
            intensity = 0.0f;
        else if (ray.distance > light.innerRange)
            intensity = (ray.towards * mesh->calculatedNormals[v]) * falloff(light, ray.distance);
        if (intensity < 0.0f)
            intensity = 0.0f;
        if (subtract)
            intensity = -intensity;
        shine(mesh->lightColors[v], light, intensity);
    }
}

void Scene::calcDynamicLight(Light* light, int flags)
{
    const bool lightPass = light && !(flags & (VRK_LIGHT_SELF_ILLUMINATION | VRK_LIGHT_GAMMA));
    std::optional<ShadowTree> shadows;
    if (lightPass && (flags & VRK_LIGHT_SHADOWS))
        shadows.emplace(*light, groups, groupCount);

    float intensity = 0.0f;
    for (int g = 0; g < groupCount; g++)
    {
        if (!groups[g])
            continue;
        const NotedMaterials materials(flags & VRK_LIGHT_SELF_ILLUMINATION ? groups[g]->activeTList
                                                                           : nullptr);
        for (int m = 0; m < groups[g]->meshCount; m++)
        {
            Mesh* mesh = groups[g]->meshes[m];
            if (!hasColors(mesh))
                continue;
            if (flags & VRK_LIGHT_CLEAR)
                clearLight(mesh);
            if (flags & VRK_LIGHT_SELF_ILLUMINATION)
                glow(mesh, groups[g]->activeTList);
            else if (flags & VRK_LIGHT_GAMMA)
                raiseToGamma(mesh);
            else if (lightPass && canBeLit(mesh))
                lightSceneMesh(mesh, *light, shadows, flags & VRK_LIGHT_SUBTRACT, intensity);
        }
    }
}

void Scene::calcDynamicLights(int flags)
{
    // The flags are for the very first light. Those that choose a pass turn that light into the pass: with
    // VRK_LIGHT_GAMMA it adds nothing.
    int lightFlags = flags;
    for (int g = 0; g < groupCount; g++)
        for (int i = 0; groups[g] && i < groups[g]->lightCount; i++)
        {
            calcDynamicLight(groups[g]->lights[i], lightFlags);
            lightFlags = 0;
        }
    if (flags & VRK_LIGHT_GAMMA)
        calcDynamicLight(nullptr, VRK_LIGHT_GAMMA);
    calcDynamicLight(nullptr, VRK_LIGHT_SELF_ILLUMINATION);
}
