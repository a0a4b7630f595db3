#include "rasterizer/d3d/d3dmesh.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <unordered_map>
#include <vector>

#include "core/facecorners.h"
#include "rasterizer/alphatexture.h"
#include "rasterizer/d3d/constants.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/packedcolor.h"
#include "rasterizer/truncate.h"
#include "vornik/assets/texture.h"
#include "vornik/assets/tlist.h"
#include "vornik/core/errorlog.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/renderflags.h"

static_assert(sizeof(D3DWorldVertex) == 24 && sizeof(D3DMesh::WindowVertex) == 28);

// The most faces that one draw takes: 65,535 triangles, or the lines through as many indices as make whole
// ones.
static int facesOfADraw(bool wire)
{
    return wire ? 65535 * 2 / 3 : 65535;
}

D3DMesh::D3DMesh()
    : useVertexBuffer(0), transformed(0), vertices(nullptr), vertexCount(0), faces(nullptr),
      faceMaterials(nullptr), faceCount(0), ranges(nullptr), sharers(0)
{
}

D3DMesh::~D3DMesh()
{
    release();
}

void D3DMesh::release()
{
    delete[] vertices;
    delete[] faces;
    delete[] faceMaterials;
    vertices = nullptr;
    faces = nullptr;
    faceMaterials = nullptr;
    vertexCount = faceCount = 0;
    while (Range* range = ranges)
    {
        ranges = range->next;
        delete range;
    }
    vertexBuffer.reset();
}

uint32_t& D3DMesh::colorWord(int vertex)
{
    return transformed ? reinterpret_cast<WindowVertex*>(vertices)[vertex].color
                       : reinterpret_cast<D3DWorldVertex*>(vertices)[vertex].color;
}

void D3DMesh::refill()
{
    if (vertexBuffer)
        vertexBuffer->fill(vertices, static_cast<size_t>(vertexCount) *
                                         (transformed ? sizeof(WindowVertex) : sizeof(D3DWorldVertex)));
}

// Faces of each material together, in the order of the materials' first faces.
bool D3DMesh::sortFaces(const Facelist* from, const Textlist* materials)
{
    if (!from || !materials)
        return true;
    struct Group
    {
        int material;
        std::vector<int> members;
    };
    std::vector<Group> groups;
    std::unordered_map<int, size_t> groupOf;
    for (int i = 0; i < faceCount; ++i)
    {
        const int material = materials[i].materialIndex;
        const auto [found, isNew] = groupOf.try_emplace(material, groups.size());
        if (isNew)
            groups.push_back({material, {}});
        groups[found->second].members.push_back(i);
    }

    int next = 0;
    for (const Group& group : groups)
        for (const int member : group.members)
        {
            faces[next] = hasCorners(from[member], vertexCount) ? from[member] : Facelist{0, 0, 0};
            faceMaterials[next++] = group.material;
        }

    // From the last to the first, each at the head.
    for (size_t i = groups.size(); i-- > 0;)
    {
        Range* range = new (std::nothrow)
            Range{static_cast<int32_t>(groups[i].members.size()), groups[i].material, 0, ranges};
        if (!range)
            return false;
        ranges = range;
    }
    return true;
}

int D3DMesh::fill(const Vertex3D* positions, Color* colors, const float* extra, const Vertex2D* coords,
                  int newVertexCount, const Facelist* newFaces, const Textlist* newMaterials,
                  int newFaceCount)
try
{
    release();
    transformed = extra != nullptr;
    const int vertexTotal = positions ? std::max(newVertexCount, 0) : 0;
    const int faceTotal = newFaces && newMaterials ? std::max(newFaceCount, 0) : 0;
    vertices = new uint8_t[static_cast<size_t>(vertexTotal) *
                           (transformed ? sizeof(WindowVertex) : sizeof(D3DWorldVertex))];
    faces = new Facelist[static_cast<size_t>(faceTotal)];
    faceMaterials = new int32_t[static_cast<size_t>(faceTotal)];
    vertexCount = vertexTotal;
    faceCount = faceTotal;

    for (int i = 0; i < vertexCount; ++i)
    {
        const Vertex3D& p = positions[i];
        const Vertex2D t = coords ? coords[i] : Vertex2D{0.0f, 0.0f};
        if (transformed)
            reinterpret_cast<WindowVertex*>(vertices)[i] = {
                p.x, p.y, p.z, extra[i], colors ? packLimited(&colors[i]) : 0xFFFFFFFF, t.x, t.y};
        else
            reinterpret_cast<D3DWorldVertex*>(vertices)[i] = {
                p.x, p.y, p.z, colors ? packLimited(&colors[i]) : 0x0F0F7F0F, t.x, t.y};
    }
    if (!sortFaces(newFaces, newMaterials))
    {
        release();
        return vrkPutToErrorLog("Fatal! DX has run out of memory!", 51);
    }
    return 0;
}
catch (const std::bad_alloc&)
{
    release();
    return 2;
}

int D3DMesh::updateColors(Color* colors)
{
    for (int i = 0; colors && i < vertexCount; ++i)
        colorWord(i) = packLimited(&colors[i]);
    refill();
    return 0;
}

int D3DMesh::setAlpha(float alpha)
{
    const uint32_t high = (static_cast<uint32_t>(truncated(alpha * 255.0f)) & 255) << 24;
    for (int i = 0; i < vertexCount; ++i)
        colorWord(i) = (colorWord(i) & 0x00FFFFFF) | high;
    refill();
    return 0;
}

// Calls draw(range, first face, material) for each range whose material can be found, culled as it wants.
template <class Draw>
void D3DMesh::forEachRange(int flags, TList* list, Draw draw)
{
    int firstFace = 0;
    for (const Range* range = ranges; list && range; range = range->next)
    {
        if (const Material* material = list->getMaterial(range->materialIndex))
        {
            const bool bothSides = flags & VRK_RENDER_TWOSIDED || material->twoSided;
            if (bothSides)
                vrkDisable(VRK_CULL_FACE);
            draw(*range, firstFace, *material);
            if (bothSides)
                vrkEnable(VRK_CULL_FACE);
        }
        firstFace += range->faceCount;
    }
}

// Wire materials draw lines through the same indices, two by two.
void D3DMesh::drawRange(const Range& range, int firstFace, bool wire)
{
    D3DDevice* device = vrkDirect3D->device;
    const uint32_t primitive = wire ? d3d::lineList : d3d::triangleList;
    const uint32_t count = static_cast<uint32_t>(vertexCount);
    const int most = facesOfADraw(wire);
    for (int drawn = 0; vertexCount > 0 && drawn < range.faceCount; drawn += most)
    {
        const uint16_t* indices = &faces[firstFace + drawn].a;
        const uint32_t indexCount = static_cast<uint32_t>(std::min(range.faceCount - drawn, most)) * 3;
        if (useVertexBuffer && vertexBuffer)
            device->drawIndexed(primitive, *vertexBuffer, count, indices, indexCount);
        else
            device->drawIndexed(primitive, transformed ? d3d::fvfWindow : d3d::fvfWorld, vertices, count,
                                indices, indexCount);
    }
}

static bool canDraw()
{
    const D3DRasterizer* d3d = selectedDirect3D();
    return d3d && d3d->device;
}

int D3DMesh::drawSolid(int flags, TList* list)
{
    if (!canDraw())
        return 0;
    vrkDisable(VRK_BLEND);
    vrkDirect3D->disable(VRK_ALPHA_TEST);
    vrkDirect3D->setColorStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    vrkDirect3D->setAlphaStage(0, d3d::selectArg1, d3d::argTexture, d3d::argDiffuse);
    if (flags & VRK_RENDER_FLAT)
        vrkShadeModel(VRK_FLAT);
    vrkDirect3D->useWorldMatrix();
    forEachRange(flags, list,
                 [this](const Range& range, int firstFace, const Material& material)
                 {
                     if (material.transparency != 0.0f || hasAlphaTexture(material))
                         return;
                     vrkSetTexture(material.firstTexture); // null takes the texture away
                     drawRange(range, firstFace, material.wire);
                 });
    if (flags & VRK_RENDER_FLAT)
        vrkShadeModel(VRK_SMOOTH);
    return 0;
}

int D3DMesh::drawTransparent(int flags, TList* list)
{
    if (!canDraw())
        return 0;
    vrkEnable(VRK_BLEND);
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
    vrkDirect3D->enable(VRK_ALPHA_TEST);
    vrkDirect3D->setColorStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    vrkDirect3D->setAlphaStage(0, d3d::modulate, d3d::argTexture, d3d::argDiffuse);
    if (flags & VRK_RENDER_FLAT)
        vrkShadeModel(VRK_FLAT);
    if (flags & VRK_RENDER_NOTEXTURE)
        vrkDisable(VRK_TEXTURE_2D); // which textures stay through here: only VRK_TEXTURE takes them away
    vrkDirect3D->useWorldMatrix();
    forEachRange(flags, list,
                 [this](const Range& range, int firstFace, const Material& material)
                 {
                     if (material.transparency == 0.0f && !hasAlphaTexture(material))
                         return;
                     setAlpha(material.transparency);
                     vrkSetTexture(material.firstTexture);
                     drawRange(range, firstFace, material.wire);
                 });
    if (flags & VRK_RENDER_FLAT)
        vrkShadeModel(VRK_SMOOTH);
    return 0;
}

D3DMesh* makeD3DMesh(Mesh& mesh)
{
    D3DMesh* made = new (std::nothrow) D3DMesh;
    if (made)
        made->fill(mesh.calculatedVertices, mesh.vertexColors, nullptr, mesh.textureCoords, mesh.vertexCount,
                   mesh.faces, mesh.faceMaterials, mesh.faceCount);
    return made;
}

void releaseD3DMesh(D3DMesh*& mesh)
{
    if (mesh && mesh->sharers > 0)
        --mesh->sharers;
    else
        delete mesh;
    mesh = nullptr;
}

D3DMesh* shareD3DMesh(D3DMesh* mesh)
{
    if (mesh)
        ++mesh->sharers;
    return mesh;
}
