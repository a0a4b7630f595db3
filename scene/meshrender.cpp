// The passes that draw a mesh on OpenGL, and the hand-over to its copy on Direct3D. Each pass walks the
// ranges of faces with one material, so a range is the unit of a state change, and leaves the resting state
// behind: culling and texturing on, smooth, depth test less-or-equal, depth writes on.

#include "vornik/scene/mesh.h"

#include <initializer_list>

#include "rasterizer/alphatexture.h"
#include "rasterizer/d3d/d3dmesh.h"
#include "scene/materialtable.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/faces.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/rasterizer/transparent.h"
#include "vornik/scene/material.h"
#include "vornik/scene/renderflags.h"

static bool isTransparent(const Material& material)
{
    return material.transparency != 0.0f || hasAlphaTexture(material);
}

// Calls use(range, material) for each range whose material can be found.
template <typename Use>
static void forEachRange(const Mesh& mesh, TList* list, Use use)
{
    if (!list || !mesh.faceMaterials)
        return;
    for (int i = 0; i < mesh.materialFaces->count; ++i)
    {
        const MaterialFaceRange& range = mesh.materialFaces->ranges[i];
        Material* material = findMaterial(list, mesh.faceMaterials[range.first].materialIndex);
        if (material)
            use(range, *material);
    }
}

static void submitWire(Mesh& mesh, const MaterialFaceRange& range)
{
    vrkRenderWire(mesh.vertexColors, mesh.textureCoords, mesh.calculatedVertices, mesh.calculatedNormals,
                  mesh.faces, reinterpret_cast<const char*>(mesh.faceFlags), range.first, range.last);
}

// Hands a range over in the form that flags and material ask for.
static void submit(Mesh& mesh, const Material& material, const MaterialFaceRange& range, int flags)
{
    if (flags & VRK_RENDER_WIRE || material.wire)
        submitWire(mesh, range);
    else if (flags & VRK_RENDER_BASIC)
        vrkRenderBasic(mesh.vertexColors, mesh.textureCoords, mesh.calculatedVertices, mesh.calculatedNormals,
                       mesh.faces, range.first, range.last);
    else
        vrkRenderList(mesh.vertexColors, mesh.textureCoords, mesh.calculatedVertices, mesh.calculatedNormals,
                      mesh.faces, range.first, range.last);
}

static void submitReflection(Mesh& mesh, const Material& material, const MaterialFaceRange& range, int flags)
{
    if (!material.reflectionTexture || material.wire || flags & VRK_RENDER_WIRE)
        return;
    vrkSetTexture(material.reflectionTexture);
    vrkEnable(VRK_BLEND);
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_DST_ALPHA);
    vrkDepthFunc(VRK_EQUAL);
    vrkDepthMask(VRK_FALSE);
    vrkRenderReflection(mesh.vertexColors, mesh.calculatedVertices, mesh.calculatedNormals, mesh.faces,
                        range.first, range.last, 0.5f);
    vrkDisable(VRK_BLEND);
    vrkDepthFunc(VRK_LEQUAL);
    vrkDepthMask(VRK_TRUE);
}

static void beginStyle(int flags)
{
    if (flags & VRK_RENDER_FLAT)
        vrkShadeModel(VRK_FLAT);
    if (flags & VRK_RENDER_NOTEXTURE)
        vrkDisable(VRK_TEXTURE_2D);
}

static void endStyle(int flags)
{
    if (flags & VRK_RENDER_FLAT)
        vrkShadeModel(VRK_SMOOTH);
    if (flags & VRK_RENDER_NOTEXTURE)
        vrkEnable(VRK_TEXTURE_2D);
}

// Switches culling off for the faces that show both sides and on again when it goes.
class Culling
{
public:
    Culling(const Material& material, int flags) : off(flags & VRK_RENDER_TWOSIDED || material.twoSided)
    {
        if (off)
            vrkDisable(VRK_CULL_FACE);
    }
    Culling(const Culling&) = delete;
    Culling& operator=(const Culling&) = delete;
    ~Culling()
    {
        if (off)
            vrkEnable(VRK_CULL_FACE);
    }

private:
    bool off;
};

// The material's transparency becomes the alpha of every corner. A vertex shared with other ranges keeps the
// last.
static void writeAlpha(Mesh& mesh, const MaterialFaceRange& range, float alpha)
{
    for (int i = range.first; i <= range.last; ++i)
        for (const uint16_t corner : {mesh.faces[i].a, mesh.faces[i].b, mesh.faces[i].c})
            if (corner < mesh.vertexCount)
                mesh.vertexColors[corner].a = alpha;
}

// Draws an opaque range; one whose texture has alpha belongs to the transparent passes.
static void submitSolid(Mesh& mesh, const Material& material, const MaterialFaceRange& range, int flags)
{
    if (hasAlphaTexture(material))
        return;
    if (material.firstTexture)
        vrkSetTexture(material.firstTexture);
    else
        vrkDisable(VRK_TEXTURE_2D);
    submit(mesh, material, range, flags);
    if (!material.firstTexture)
        vrkEnable(VRK_TEXTURE_2D);
}

// Plays a pass from its display list, or calls draw for every range, culled as its material wants.
template <class Draw>
static void playRanges(Mesh& mesh, TList* list, uint32_t displayList, int flags, Draw draw)
{
    if (flags & VRK_RENDER_CALL_LIST)
        vrkCallList(static_cast<int>(displayList));
    else
        forEachRange(mesh, list,
                     [&](const MaterialFaceRange& range, const Material& material)
                     {
                         const Culling culling(material, flags);
                         draw(range, material);
                     });
}

// The same inside the flags' style, into the display list where the flags ask for that.
template <class Draw>
static void drawPass(Mesh& mesh, TList* list, uint32_t displayList, int flags, Draw draw)
{
    beginStyle(flags);
    if (flags & VRK_RENDER_COMPILE_LIST)
        vrkNewList(static_cast<int>(displayList), VRK_COMPILE);
    playRanges(mesh, list, displayList, flags, draw);
    if (flags & VRK_RENDER_COMPILE_LIST)
        vrkEndList();
    endStyle(flags);
}

int Mesh::renderNonTransparent(int flags, TList* list)
{
    if (!materialFaces)
        return 0;
    vrkDisable(VRK_BLEND);
    drawPass(*this, list, displayList, flags,
             [&](const MaterialFaceRange& range, const Material& material)
             {
                 if (material.transparency != 0.0f)
                     return;
                 submitSolid(*this, material, range, flags);
                 // Also for a texture with alpha: its reflection lies on faces drawn by a later pass.
                 submitReflection(*this, material, range, flags);
             });
    return 0;
}

int Mesh::renderTransparent(int, TList* list)
{
    if (!materialFaces)
        return 0;
    forEachRange(*this, list,
                 [this](const MaterialFaceRange& range, Material& material)
                 {
                     if (!isTransparent(material))
                         return;
                     writeAlpha(*this, range, material.transparency);
                     vrkAddTransparentFace(vertexColors, textureCoords, calculatedVertices, calculatedNormals,
                                           faces, range.first, range.last, &material, &position);
                 });
    return 0;
}

int Mesh::renderTransparentImmediately(int flags, TList* list)
{
    if (!materialFaces)
        return 0;
    vrkEnable(VRK_BLEND);
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
    drawPass(*this, list, transparentDisplayList, flags,
             [&](const MaterialFaceRange& range, const Material& material)
             {
                 if (!isTransparent(material))
                     return;
                 // Anew for each range, since a reflection changes them. It also switches blending off, and
                 // that stays: ranges behind a reflection are drawn without blending.
                 vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
                 vrkDepthFunc(VRK_LEQUAL);
                 writeAlpha(*this, range, material.transparency);
                 vrkSetTexture(material.firstTexture);
                 submit(*this, material, range, flags);
                 submitReflection(*this, material, range, flags);
                 vrkDepthFunc(VRK_LEQUAL);
             });
    return 0;
}

int Mesh::renderEffect(int flags, TList* list)
{
    if (!materialFaces)
        return 0;
    vrkEnable(VRK_BLEND);
    vrkDepthFunc(VRK_EQUAL);
    vrkDepthMask(VRK_FALSE);
    beginStyle(flags);
    playRanges(*this, list, displayList, flags,
               [&](const MaterialFaceRange& range, const Material& material)
               {
                   if (hasAlphaTexture(material))
                       return;
                   if (material.firstTexture)
                       vrkSetTexture(material.firstTexture);
                   submit(*this, material, range, flags);
               });
    endStyle(flags);
    vrkDisable(VRK_BLEND);
    vrkDepthFunc(VRK_LEQUAL);
    vrkDepthMask(VRK_TRUE);
    return 0;
}

// Direct3D draws a copy of the mesh, which is made here whether the mesh is shown or not. Queued transparent
// faces, special meshes and the effect pass are OpenGL's alone.
static int renderOnDirect3D(Mesh& mesh, int flags, TList* list)
{
    if (!mesh.d3dMesh)
    {
        mesh.d3dMesh = makeD3DMesh(mesh);
        if (!mesh.d3dMesh)
            return vrkPutToErrorLog("Fatal! DX has run out of memory!", 51);
    }
    int result = 0;
    if (mesh.visible && flags & VRK_RENDER_SOLID)
        result = mesh.d3dMesh->drawSolid(flags, list);
    if (mesh.visible && flags & VRK_RENDER_TRANSPARENT_NOW)
        result = mesh.d3dMesh->drawTransparent(flags, list);
    return result;
}

int Mesh::render(int flags, TList* list)
{
    if (selectedDirect3D())
        return renderOnDirect3D(*this, flags, list);
    if (vrkGetRasterizer() != 0)
        return 0;
    if (special && flags & VRK_RENDER_SPECIAL)
    {
        renderSpecial(flags, list); // instead of all other passes, and hidden as it is
        return 0;
    }
    if (!visible)
        return 0;
    int result = 0;
    if (flags & VRK_RENDER_SOLID)
        result = renderNonTransparent(flags, list);
    if (flags & VRK_RENDER_TRANSPARENT)
        result = renderTransparent(flags, list);
    if (flags & VRK_RENDER_TRANSPARENT_NOW)
        result = renderTransparentImmediately(flags, list);
    if (flags & VRK_RENDER_EFFECT)
        result = renderEffect(flags, list);
    return result;
}

int Mesh::createDisplayList()
{
    if (vrkGetRasterizer() != 0)
        return 0;
    for (uint32_t* list : {&displayList, &transparentDisplayList})
    {
        *list = static_cast<uint32_t>(vrkGenLists(1));
        if (*list == 0)
            return vrkPutToErrorLog(
                "Cannot create displaylists, displaylists are all used (possible OpenGL error)!", 43);
    }
    return 0;
}

void Mesh::destroyDisplayList()
{
    if (vrkGetRasterizer() != 0 || displayList == 0)
        return;
    vrkDeleteLists(static_cast<int>(displayList), 1);
    vrkDeleteLists(static_cast<int>(transparentDisplayList), 1);
    displayList = transparentDisplayList = 0;
}
