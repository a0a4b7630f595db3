// A mesh as rasterizer 1 draws it: a copy of the geometry in the device's own vertex format, with the faces
// of each material together. Only its colours change after fill().
#pragma once

#include <cstdint>
#include <memory>

#include "rasterizer/d3d/d3drasterizer.h"
#include "rasterizer/d3d/system.h"
#include "vornik/core/vectors.h"

class Material;
class Mesh;
class TList;

class D3DMesh
{
public:
    /// A vertex in window coordinates, 28 bytes.
    struct WindowVertex
    {
        float x, y, z;
        float reciprocalW;
        uint32_t color;
        float u, v;
    };
    /// Faces that follow one another in faces and have one material.
    struct Range
    {
        int32_t faceCount;
        int32_t materialIndex;
        int32_t unused; ///< 0
        Range* next;
    };

    uint8_t useVertexBuffer; ///< draws from vertexBuffer where there is one, else from vertices
    int32_t transformed;     ///< 0: vertices are D3DWorldVertex; 1: WindowVertex
    uint8_t* vertices;       ///< [vertexCount], owned
    int32_t vertexCount;
    Facelist* faces;        ///< [faceCount], owned; sorted by material
    int32_t* faceMaterials; ///< [faceCount], owned; of the sorted faces
    int32_t faceCount;
    Range* ranges;                                 ///< owned; in the order of the faces
    uint32_t sharers;                              ///< meshes besides the first that have this object
    std::unique_ptr<D3DVertexBuffer> vertexBuffer; ///< null unless somebody makes one

    D3DMesh();
    D3DMesh(const D3DMesh&) = delete;
    D3DMesh& operator=(const D3DMesh&) = delete;
    ~D3DMesh();

    /// Takes the geometry of a mesh, once. A face with an index outside the vertices becomes a face of no
    /// extent.
    /// @param colors  [vertexCount], limited to 0 to 1 in place; may be null
    /// @param extra   [vertexCount], fourth floats for vertices in window coordinates; null for the world's
    /// @param coords  [vertexCount], may be null
    /// @return 0, 2 without memory, or 51 without memory for a range, logged
    int fill(const Vertex3D* positions, Color* colors, const float* extra, const Vertex2D* coords,
             int vertexCount, const Facelist* faces, const Textlist* faceMaterials, int faceCount);

    /// Takes new colours. @param colors  [vertexCount], limited to 0 to 1 in place. @return 0
    int updateColors(Color* colors);
    /// Writes the alpha of all vertices, by the factor 255; their colours stay. @return 0
    int setAlpha(float alpha);

    // Both draw under the top of the matrix stack and leave culling on where a material has switched it off,
    // and smooth shading behind VRK_RENDER_FLAT. Transparent faces come in the order of the ranges. Result 0.
    int drawSolid(int flags, TList* list);
    int drawTransparent(int flags, TList* list);

private:
    uint32_t& colorWord(int vertex);
    void refill();
    bool sortFaces(const Facelist* faces, const Textlist* faceMaterials);
    void drawRange(const Range& range, int firstFace, bool wire);
    template <class Draw>
    void forEachRange(int flags, TList* list, Draw draw);
    void release();
};

/// The object of a mesh, filled from its calculated vertices. @return null without memory
D3DMesh* makeD3DMesh(Mesh& mesh);
/// Takes a mesh's hold on the object; the last one destroys it. mesh becomes null.
void releaseD3DMesh(D3DMesh*& mesh);
/// Gives a second mesh hold on the object. @param mesh  may be null
D3DMesh* shareD3DMesh(D3DMesh* mesh);
