// The glow sprite: an image about the window place of a mesh's one vertex, which fades in while nothing hides
// that and twice as fast out again.

#include "vornik/scene/mesh.h"

#include <algorithm>

#include "scene/materialtable.h"
#include "vornik/rasterizer/frustum.h"
#include "vornik/rasterizer/overlay.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

static const int glowSprite = 1;

// What one frame adds of so much a second. Without a frame rate a fade takes no time.
static float frameStep(float perSecond)
{
    const int rate = vrkGetFPS();
    return rate == 0 ? perSecond : perSecond / static_cast<float>(rate);
}

static bool isInWindow(const Vertex3D& p)
{
    const Viewport* viewport = vrkGetViewport();
    return p.x >= 0.0f && p.y >= 0.0f && p.x < viewport->width && p.y < viewport->height;
}

static float faded(float strength, bool seen)
{
    if (seen && strength < 1.0f)
        return std::min(strength + frameStep(1.0f), 1.0f);
    if (!seen && strength > 0.0f)
        return std::max(strength - frameStep(2.0f), 0.0f);
    return strength;
}

int Mesh::renderSpecial(int, TList* list)
{
    if (specialType != glowSprite || vertexCount < 1 || !calculatedVertices)
        return 0;
    calcWindowCoords();
    const Vertex3D& p = calculatedVertices[0];
    if (!isInWindow(p))
    {
        specialFade = 0.0f;
        return 0;
    }
    if (p.z < 0.0f)
        specialFade = 0.0f;
    specialFade = faded(specialFade, vrkIsVisible(p.x, p.y, p.z));
    if (specialFade <= 0.0f || !list || !faceMaterials || faceCount < 1)
        return 0;

    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE);
    Color color = {1.0f, 1.0f, 1.0f, specialFade};
    vrkDrawImageWithoutYConversion(calculatedVertices, findMaterial(list, faceMaterials[0].materialIndex),
                                   &color, 100.0f, 100.0f, true);
    return 0;
}
