// The normals of a mesh: of its vertices for drawing and light, of its faces' edges and corners for
// collision.
//
// Faces are taken in blocks, which shares the cost of their roots and divisions.

#include "vornik/scene/mesh.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "core/facecorners.h"
#include "core/memorylasts.h"
#include "scene/transformpoint.h"
#include "scene/vectorblock.h"

namespace
{

// The corners of some faces, each in a block of its own. Places that no face has taken are harmless.
struct Corners
{
    VectorBlock a{}, b{}, c{};

    void set(int i, const Vertex3D& cornerA, const Vertex3D& cornerB, const Vertex3D& cornerC)
    {
        a.set(i, cornerA);
        b.set(i, cornerB);
        c.set(i, cornerC);
    }
};

// What the faces around a vertex add up to.
struct NormalSum
{
    Vertex3D sum;
    int count;
};

} // namespace

// Faces are walked once and add to their corners in face order, so every sum has the terms of a scan of all
// faces for each vertex, in the same order.
static std::vector<NormalSum> sumNormals(const Mesh& mesh)
{
    const Vertex3D* vertices = mesh.originalVertices;
    std::vector<NormalSum> sums(static_cast<size_t>(mesh.vertexCount), NormalSum{{0.0f, 0.0f, 0.0f}, 0});
    const auto add = [&](uint16_t vertex, const Vertex3D& normal)
    {
        sums[vertex].sum += normal;
        ++sums[vertex].count;
    };

    Corners corners;
    Facelist taken[VectorBlock::size];
    for (int next = 0; next < mesh.faceCount;)
    {
        int count = 0;
        for (; next < mesh.faceCount && count < VectorBlock::size; ++next)
        {
            const Facelist& face = mesh.faces[next];
            if (!hasCorners(face, mesh.vertexCount))
                continue;
            corners.set(count, vertices[face.a], vertices[face.b], vertices[face.c]);
            taken[count++] = face;
        }
        VectorBlock normals = (corners.b - corners.a) ^ (corners.c - corners.a);
        normals.normalizeBySmallest();
        for (int i = 0; i < count; ++i)
        {
            const Facelist& face = taken[i];
            add(face.a, normals[i]);
            if (face.b != face.a)
                add(face.b, normals[i]);
            if (face.c != face.a && face.c != face.b)
                add(face.c, normals[i]);
        }
    }
    return sums;
}

static void averageNormals(Mesh* mesh)
{
    const std::vector<NormalSum> sums = sumNormals(*mesh);
    VectorBlock normals{};
    VectorBlock::Numbers counts;
    counts.fill(1.0f);
    int taken[VectorBlock::size];
    for (int next = 0; next < mesh->vertexCount;)
    {
        int count = 0;
        for (; next < mesh->vertexCount && count < VectorBlock::size; ++next)
        {
            const NormalSum& around = sums[static_cast<size_t>(next)];
            if (around.count == 0)
                continue;
            normals.set(count, around.sum);
            counts[static_cast<size_t>(count)] = static_cast<float>(around.count);
            taken[count++] = next;
        }
        normals /= counts;
        normals.normalizeBySmallest();
        for (int i = 0; i < count; ++i)
            mesh->originalNormals[taken[i]] = normals[i];
    }
}

void Mesh::calcNormals()
{
    if (faces && originalVertices && originalNormals)
        whileMemoryLasts([&] { averageNormals(this); });
}

static void computeEdgeNormals(const Corners& corners, int count, EdgeNormal* results)
{
    VectorBlock normal = (corners.c - corners.b) ^ (corners.a - corners.b);
    normal.normalize();
    VectorBlock edges[3] = {(corners.b - corners.a) ^ normal, (corners.c - corners.b) ^ normal,
                            (corners.a - corners.c) ^ normal};
    for (VectorBlock& edge : edges)
        edge.normalize();
    VectorBlock between[3] = {edges[0] + edges[1], edges[1] + edges[2], edges[2] + edges[0]};
    for (VectorBlock& corner : between)
        corner.normalize();
    for (int i = 0; i < count; ++i)
        results[i] = {{edges[0][i], edges[1][i], edges[2][i]}, {between[0][i], between[1][i], between[2][i]}};
}

// Every vertex of a mesh in world coordinates, and behind them the place that corners have which don't exist.
static std::vector<Vertex3D> worldPositions(const Vertex3D* vertices, int count, const double* matrix)
{
    std::vector<Vertex3D> world;
    world.reserve(static_cast<size_t>(count) + 1);
    std::transform(vertices, vertices + count, std::back_inserter(world),
                   [matrix](const Vertex3D& v) { return transformPoint(matrix, v); });
    world.push_back({0.0f, 0.0f, 0.0f});
    return world;
}

void Mesh::calcEdgeNormals()
{
    if (!faces || !edgeNormals || !calculatedVertices || faceCount <= 0)
        return;
    const auto compute = [this]
    {
        const auto world = worldPositions(calculatedVertices, std::max(vertexCount, 0), currentWorldMatrix());
        const auto at = [&](uint16_t vertex) { return world[std::min<size_t>(vertex, world.size() - 1)]; };
        Corners corners;
        for (int first = 0; first < faceCount; first += VectorBlock::size)
        {
            const int count = std::min<int>(VectorBlock::size, faceCount - first);
            for (int i = 0; i < count; ++i)
            {
                const Facelist& face = faces[first + i];
                corners.set(i, at(face.a), at(face.b), at(face.c));
            }
            computeEdgeNormals(corners, count, &edgeNormals[first]);
        }
    };
    whileMemoryLasts(compute);
}
