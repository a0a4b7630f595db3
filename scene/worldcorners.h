// The corners of many faces in the world: what Mesh::calculatedVertex gives, with the matrix of a mesh asked
// once for as long as its faces follow one another. No mesh may change meanwhile.
#pragma once

#include "scene/transformpoint.h"
#include "vornik/scene/mesh.h"

/// What the matrices live in, and change with; null while the rasterizer hasn't started.
const void* rasterizerContext();

class WorldCorners
{
public:
    /// @return false for a face that the mesh doesn't have. Corners that it doesn't have are at the origin
    bool get(Mesh* of, int face, Vertex3D* corners)
    {
        if (!of || !of->faces || face < 0 || face >= of->faceCount)
            return false;
        if (of != mesh)
        {
            mesh = of;
            matrix = of->calculatedVertices ? of->currentWorldMatrix() : nullptr;
        }
        const Facelist& f = of->faces[face];
        corners[0] = vertex(f.a);
        corners[1] = vertex(f.b);
        corners[2] = vertex(f.c);
        return true;
    }

    /// The matrix of a mesh, as it is now.
    static const double* matrixOf(Mesh* of) { return of->currentWorldMatrix(); }

private:
    Vertex3D vertex(int i) const
    {
        return matrix && i < mesh->vertexCount ? transformPoint(matrix, mesh->calculatedVertices[i])
                                               : Vertex3D{0.0f, 0.0f, 0.0f};
    }

    Mesh* mesh = nullptr;
    const double* matrix = nullptr;
};
