#include "apps/vornik/drawing.h"

int transparentRoom(const OGroup& group)
{
    int faces = 1;
    for (int i = 0; i < group.meshCount; ++i)
        faces += group.meshes[i]->visible ? group.meshes[i]->faceCount : 0;
    return faces;
}

static void drawSorted(OGroup* group, View* view, int flags)
{
    group->render((flags & VRK_RENDER_CULL) | VRK_RENDER_TRANSPARENT, &view->camera);
    if (flags & VRK_RENDER_NOTEXTURE)
        vrkDisable(VRK_TEXTURE_2D);
    // Large faces may come in the wrong order; without depth they hide nothing all the same.
    vrkDepthMask(VRK_FALSE);
    vrkDrawTransparentPlanes(&view->camera);
    vrkDepthMask(VRK_TRUE);
    vrkEnable(VRK_TEXTURE_2D);
}

static void drawImmediately(OGroup* group, View* view, int flags)
{
    // Texels that are nearly opaque go first and write depth; the clear ones follow without, so that they
    // hide nothing.
    const float border = 0.9f;
    vrkEnable(VRK_ALPHA_TEST);
    vrkAlphaFunc(VRK_GREATER, border);
    group->render(flags | VRK_RENDER_TRANSPARENT_NOW, &view->camera);
    vrkAlphaFunc(VRK_LEQUAL, border);
    vrkDepthMask(VRK_FALSE);
    group->render(flags | VRK_RENDER_TRANSPARENT_NOW, &view->camera);
    vrkDepthMask(VRK_TRUE);
    vrkDisable(VRK_ALPHA_TEST);
}

void drawGroup(OGroup* group, View* view, int flags, Transparency transparency)
{
    lookThrough(view);
    group->render(flags | VRK_RENDER_SOLID, &view->camera);

    // The stack knows no wire and no flat faces.
    if (transparency == Transparency::sorted && !(flags & (VRK_RENDER_WIRE | VRK_RENDER_FLAT)))
        drawSorted(group, view, flags);
    else if (transparency != Transparency::none)
        drawImmediately(group, view, flags);
}
