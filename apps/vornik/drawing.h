// One frame of a group: its opaque faces, and the transparent ones behind them.
#pragma once

#include "apps/vornik/camera.h"

enum class Transparency
{
    sorted,    ///< from far to near by the engine's stack
    immediate, ///< mesh by mesh
    none       ///< left out
};

/// Faces that the engine's stack of transparent faces may have to hold.
int transparentRoom(const OGroup& group);

/// Draws the group as the view sees it, under the projection that is set. The stack is to stand ready for
/// Transparency::sorted.
/// @param flags  VRK_RENDER_... bits of style, and VRK_RENDER_CULL
void drawGroup(OGroup* group, View* view, int flags, Transparency transparency);
