#ifndef VORNIK_SCENE_RENDERFLAGS_H
#define VORNIK_SCENE_RENDERFLAGS_H

// The render flag word: which passes run and how surfaces are drawn. It goes from Scene::render down to
// Mesh::render; bits that aren't listed have no effect.

/// For Scene::render and what it calls; docs/render-flags.md shows each.
enum VRKRenderFlag
{
    VRK_RENDER_WIRE = 0x1,                ///< edges instead of surfaces; no reflections
    VRK_RENDER_FLAT = 0x2,                ///< flat shading
    VRK_RENDER_TWOSIDED = 0x4,            ///< no back-face culling
    VRK_RENDER_NOTEXTURE = 0x8,           ///< no texturing
    VRK_RENDER_TRANSPARENT = 0x10,        ///< pass: queue transparent faces for sorting; OpenGL only
    VRK_RENDER_SOLID = 0x20,              ///< pass: opaque faces
    VRK_RENDER_ANIMATE_TEXTURES = 0x40,   ///< step animated textures, once a call
    VRK_RENDER_NO_ANIMATION = 0x80,       ///< OGroup::renderObject: static transform, frame not advanced
    VRK_RENDER_SPECIAL = 0x100,           ///< pass: glow sprites of special meshes; OpenGL only
    VRK_RENDER_EFFECT = 0x200,            ///< pass: opaque faces again under the host's blending; OpenGL only
    VRK_RENDER_COMPILE_LIST = 0x400,      ///< record a pass in its display list instead of drawing
    VRK_RENDER_CALL_LIST = 0x1000,        ///< draw a pass from its display list
    VRK_RENDER_BASIC = 0x2000,            ///< submit corner by corner, with full alpha
    VRK_RENDER_CULL = 0x8000,             ///< skip meshes outside the camera's view
    VRK_RENDER_TRANSPARENT_NOW = 0x10000, ///< pass: transparent faces, unsorted
    VRK_RENDER_ANIMATE_CAMERA = 0x20000   ///< move the camera along its path
};

#endif
