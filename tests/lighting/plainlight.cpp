#include "tests/lighting/plainlight.h"

#include <cmath>

#include "vornik/assets/tlist.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/object.h"
#include "vornik/scene/ogroup.h"
#include "vornik/spatial/queries.h"

static bool allDiffer(const Vertex3D& a, const Vertex3D& b)
{
    return a.x != b.x && a.y != b.y && a.z != b.z;
}

static bool faceBlocksInPlace(Light* light, Vertex3D* vertex, float dist, Mesh* mesh, const Facelist& face)
{
    Vertex3D* corners[3] = {&mesh->calculatedVertices[face.a], &mesh->calculatedVertices[face.b],
                            &mesh->calculatedVertices[face.c]};
    const Vertex3D saved[3] = {*corners[0], *corners[1], *corners[2]};
    for (Vertex3D* corner : corners)
        *corner += mesh->position;

    bool blocked = false;
    if (intersect2(&light->location, vertex, corners[0], corners[1], corners[2]) >= 0.0f)
        if (allDiffer(*corners[0], *vertex) && allDiffer(*corners[1], *vertex) &&
            allDiffer(*corners[2], *vertex))
        {
            Vertex3D centroid = *corners[0] + *corners[1] + *corners[2];
            centroid *= 0.33333334f;
            blocked = vrkDistance(&light->location, &centroid) < dist;
        }

    for (int i = 0; i < 3; i++)
        *corners[i] = saved[i];
    return blocked;
}

bool plainCheckRay(const std::vector<OGroup*>& groups, Light* light, Vertex3D* vertex, Vertex3D* offset)
{
    const Vertex3D saved = *vertex;
    *vertex += *offset;
    const float dist = vrkDistance(&light->location, vertex);
    bool lit = true;
    for (OGroup* group : groups)
        for (int m = 0; m < group->meshCount; m++)
            for (int f = 0; lit && f < group->meshes[m]->faceCount; f++)
                lit = !faceBlocksInPlace(light, vertex, dist, group->meshes[m], group->meshes[m]->faces[f]);
    *vertex = saved;
    return lit;
}

static void clearAll(Mesh* mesh)
{
    for (int v = 0; v < mesh->vertexCount; v++)
        mesh->lightColors[v] = {0, 0, 0, 0};
}

static void clamp01(float& v)
{
    if (v > 1.0f)
        v = 1.0f;
    if (v < 0.0f)
        v = 0.0f;
}

static void glowGroupMesh(OGroup* group, Mesh* mesh)
{
    if (!group->activeTList)
        return;
    for (int f = 0; f < mesh->faceCount; f++)
    {
        Material* material = group->activeTList->getMaterial(mesh->faceMaterials[f].materialIndex);
        if (!material || !(material->selfIllumination > 0.0f))
            continue;
        float s = material->selfIllumination;
        clamp01(s);
        for (int corner : {mesh->faces[f].a, mesh->faces[f].b, mesh->faces[f].c})
            mesh->lightColors[corner] = {s, s, s, 0};
    }
}

void plainGroupLight(OGroup* group, Light* light, int flags)
{
    for (int m = 0; m < group->meshCount; m++)
    {
        Mesh* mesh = group->meshes[m];
        if (flags & 1)
        {
            clearAll(mesh);
            glowGroupMesh(group, mesh);
        }
        for (int v = 0; v < mesh->vertexCount; v++)
        {
            if ((flags & 2) && !plainCheckRay({group}, light, &mesh->calculatedVertices[v], &mesh->position))
                continue;
            Vertex3D l = light->location - (mesh->calculatedVertices[v] + mesh->position);
            float dist = sqrtf(l.x * l.x + l.y * l.y + l.z * l.z);
            Vertex3D u = {0, 0, 0};
            if (dist != 0.0f)
                u = {l.x / dist, l.y / dist, l.z / dist};
            float intensity;
            if (dist > light->outerRange)
                intensity = 0.0f;
            else
            {
                const Vertex3D& n = mesh->calculatedNormals[v];
                intensity = u.x * n.x + u.y * n.y + u.z * n.z;
                if (dist > light->innerRange)
                    intensity = intensity *
                                (1.0f - (dist - light->innerRange) / (light->outerRange - light->innerRange));
            }
            if (intensity < 0.0f)
                intensity = 0.0f;
            if (flags & 4)
                intensity = -intensity;
            Color& c = mesh->lightColors[v];
            c.r += intensity * light->color.r;
            c.g += intensity * light->color.g;
            c.b += intensity * light->color.b;
            clamp01(c.r);
            clamp01(c.g);
            clamp01(c.b);
        }
    }
}

static void glowSceneMesh(OGroup* group, Mesh* mesh)
{
    for (int f = 0; group->activeTList && f < mesh->faceCount; f++)
    {
        Material* material = group->activeTList->getMaterial(mesh->faceMaterials[f].materialIndex);
        if (!material || !(material->selfIllumination > 0.0f))
            continue;
        float s = material->selfIllumination;
        for (int corner : {mesh->faces[f].a, mesh->faces[f].b, mesh->faces[f].c})
        {
            Color& c = mesh->lightColors[corner];
            c.a = 0.0f;
            c.r = (1.0f - s) * c.r + s;
            c.g = (1.0f - s) * c.g + s;
            c.b = (1.0f - s) * c.b + s;
        }
    }
}

void plainSceneLight(const std::vector<OGroup*>& groups, Light* light, int flags)
{
    float intensity = 0.0f;
    for (OGroup* group : groups)
        for (int m = 0; m < group->meshCount; m++)
        {
            Mesh* mesh = group->meshes[m];
            if (flags & 1)
                clearAll(mesh);
            if (flags & 8)
            {
                glowSceneMesh(group, mesh);
                continue;
            }
            if (flags & 16)
            {
                for (int v = 0; v < mesh->vertexCount; v++)
                {
                    Color& c = mesh->lightColors[v];
                    c.r = float(std::pow(double(c.r), double(vrkGetGamma())));
                    c.g = float(std::pow(double(c.g), double(vrkGetGamma())));
                    c.b = float(std::pow(double(c.b), double(vrkGetGamma())));
                }
                continue;
            }
            for (int v = 0; v < mesh->vertexCount; v++)
            {
                if ((flags & 2) &&
                    !plainCheckRay(groups, light, &mesh->calculatedVertices[v], &mesh->position))
                    continue;
                Vertex3D l = light->location - (mesh->calculatedVertices[v] + mesh->position);
                float dist = sqrtf(l.x * l.x + l.y * l.y + l.z * l.z);
                Vertex3D u = {0, 0, 0};
                if (dist != 0.0f)
                    u = {l.x / dist, l.y / dist, l.z / dist};
                const Vertex3D& n = mesh->calculatedNormals[v];
                if (dist > light->outerRange)
                    intensity = 0.0f;
                else if (dist > light->innerRange)
                    intensity = (u.x * n.x + u.y * n.y + u.z * n.z) *
                                (1.0f - (dist - light->innerRange) / (light->outerRange - light->innerRange));
                if (intensity < 0.0f)
                    intensity = 0.0f;
                if (flags & 4)
                    intensity = -intensity;
                mesh->lightColors[v].r += intensity * light->color.r;
                mesh->lightColors[v].g += intensity * light->color.g;
                mesh->lightColors[v].b += intensity * light->color.b;
            }
        }
}
