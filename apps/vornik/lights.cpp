#include "apps/vornik/lights.h"

#include <algorithm>
#include <cmath>

// Reaches as far as any scene.
static const float endless = 1e18f;

// A lamp without ranges shines without end in the editors that write these files; the engine gives it a long,
// fading range of its own.
static void unfold(Light* light)
{
    if (light->innerRange == 0.0f && light->outerRange == 10000.0f)
        light->innerRange = light->outerRange = endless;
}

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
                *channel = std::min(*channel + light, 1.0f);
        }
    }
}

void lightScene(OGroup* group, const Vertex3D& eye, const Vertex3D& up, const LightOptions& options)
{
    const int shadows = options.shadows ? VRK_LIGHT_SHADOWS : 0;
    for (int i = 0; i < group->lightCount; ++i)
    {
        if (!options.classic)
            unfold(group->lights[i]);
        group->calcDynamicLight(group->lights[i], shadows | (i == 0 ? VRK_LIGHT_CLEAR : 0));
    }

    if (group->lightCount == 0)
    {
        Light lamp;
        lamp.location = eye;
        lamp.color = {0.85f, 0.85f, 0.85f, 1.0f};
        lamp.innerRange = lamp.outerRange = endless;
        group->calcDynamicLight(&lamp, VRK_LIGHT_CLEAR);
    }
    addAmbient(group, up, options.ambient);
    group->applyLights();
}
