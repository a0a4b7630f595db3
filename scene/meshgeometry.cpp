// What is derived from a mesh's vertices: place, normals, radius, world and window positions.

#include "vornik/scene/mesh.h"

#include <cfloat>
#include <cstring>
#include <vector>

#include <GL/gl.h>
#include <GL/glu.h>

#include "core/bits.h"
#include "core/facecorners.h"
#include "core/memorylasts.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "scene/statictransform.h"
#include "scene/transformpoint.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

void Mesh::center()
{
    if (!originalVertices)
        return;
    Vertex3D low = {9999999.0f, 9999999.0f, 9999999.0f};
    Vertex3D high = {-9999999.0f, -9999999.0f, -9999999.0f};
    for (int i = 0; i < vertexCount; ++i)
    {
        const Vertex3D& v = originalVertices[i];
        low = {v.x < low.x ? v.x : low.x, v.y < low.y ? v.y : low.y, v.z < low.z ? v.z : low.z};
        high = {v.x > high.x ? v.x : high.x, v.y > high.y ? v.y : high.y, v.z > high.z ? v.z : high.z};
    }
    Vertex3D middle = low + high;
    middle *= 0.5f;
    for (int i = 0; i < vertexCount; ++i)
        originalVertices[i] -= middle;
    position = middle;
}

void Mesh::restoreToWorldCoordinates()
{
    for (int i = 0; originalVertices && calculatedVertices && i < vertexCount; ++i)
    {
        originalVertices[i] += position;
        calculatedVertices[i] += position;
    }
    position = {0.0f, 0.0f, 0.0f};
}

// Divides by the length. A length of 0 counts as the smallest normal float, which leaves the zero vector as
// it is.
static void toUnitLength(Vertex3D* v)
{
    vrkNormalize(v);
}

// Faces are walked once and add to their corners in face order, so every sum has the terms of a scan of all
// faces for each vertex, in the same order.
static void averageNormals(Mesh* mesh)
{
    const size_t vertices = static_cast<size_t>(mesh->vertexCount);
    const Vertex3D* originalVertices = mesh->originalVertices;
    std::vector<Vertex3D> sums(vertices, Vertex3D{0.0f, 0.0f, 0.0f});
    std::vector<int> counts(vertices, 0);
    const auto add = [&](uint16_t vertex, const Vertex3D& normal)
    {
        sums[vertex] += normal;
        ++counts[vertex];
    };

    for (int i = 0; i < mesh->faceCount; ++i)
    {
        const Facelist& face = mesh->faces[i];
        if (!hasCorners(face, mesh->vertexCount))
            continue;
        const Vertex3D& a = originalVertices[face.a];
        Vertex3D normal = (originalVertices[face.b] - a) ^ (originalVertices[face.c] - a);
        toUnitLength(&normal);
        add(face.a, normal);
        if (face.b != face.a)
            add(face.b, normal);
        if (face.c != face.a && face.c != face.b)
            add(face.c, normal);
    }

    for (size_t i = 0; i < vertices; ++i)
    {
        if (counts[i] == 0)
            continue;
        Vertex3D normal = sums[i];
        normal /= static_cast<float>(counts[i]);
        toUnitLength(&normal);
        mesh->originalNormals[i] = normal;
    }
}

void Mesh::calcNormals()
{
    if (faces && originalVertices && originalNormals)
        whileMemoryLasts([&] { averageNormals(this); });
}

// Vertex3D::normalize in place: seven a face are worth it.
static void normalizeInline(Vertex3D* v)
{
    const float length = *v;
    if (length == 0.0f)
        *v = {0.0f, 0.0f, 0.0f};
    else
        *v /= length;
}

static void computeEdgeNormals(const Vertex3D& a, const Vertex3D& b, const Vertex3D& c, EdgeNormal* result)
{
    Vertex3D normal = (c - b) ^ (a - b);
    normalizeInline(&normal);
    result->edgeNormal[0] = (b - a) ^ normal;
    result->edgeNormal[1] = (c - b) ^ normal;
    result->edgeNormal[2] = (a - c) ^ normal;
    for (Vertex3D& edge : result->edgeNormal)
        normalizeInline(&edge);
    for (int corner = 0; corner < 3; ++corner)
    {
        result->cornerNormal[corner] = result->edgeNormal[corner] + result->edgeNormal[(corner + 1) % 3];
        normalizeInline(&result->cornerNormal[corner]);
    }
}

void Mesh::calcEdgeNormals()
{
    if (!faces || !edgeNormals || !calculatedVertices || faceCount <= 0)
        return;
    const double* matrix = currentWorldMatrix();
    const auto corner = [&](uint16_t vertex)
    {
        return vertex < vertexCount ? transformPoint(matrix, calculatedVertices[vertex])
                                    : Vertex3D{0.0f, 0.0f, 0.0f};
    };
    for (int i = 0; i < faceCount; ++i)
        computeEdgeNormals(corner(faces[i].a), corner(faces[i].b), corner(faces[i].c), &edgeNormals[i]);
}

void Mesh::calcRadius()
{
    const Vertex3D origin = {0.0f, 0.0f, 0.0f};
    radius = FLT_MIN;
    for (int i = 0; calculatedVertices && i < vertexCount; ++i)
    {
        const float distance = vrkDistance(&origin, &calculatedVertices[i]);
        if (distance > radius)
            radius = distance;
    }
}

void Mesh::originalToCalculated()
{
    if (!originalVertices || !calculatedVertices || !originalNormals || !calculatedNormals)
        return;
    const size_t bytes = sizeof(Vertex3D) * static_cast<size_t>(vertexCount);
    std::memcpy(static_cast<void*>(calculatedVertices), originalVertices, bytes);
    std::memcpy(static_cast<void*>(calculatedNormals), originalNormals, bytes);
}

void Mesh::calcWindowCoords()
{
    double modelView[16], projection[16];
    int viewport[4];
    if (vrkGetRasterizer() != 0 || !originalVertices || !calculatedVertices)
        return;
    vrkGetModelViewMatrix(modelView);
    vrkGetProjectionMatrix(projection);
    vrkGetViewportMatrix(viewport);
    for (int i = 0; i < vertexCount; ++i)
    {
        const Vertex3D& v = originalVertices[i];
        // A vertex level with the eye has no place, and stays off the window.
        double x = -1.0, y = -1.0, z = -1.0;
        gluProject(v.x, v.y, v.z, modelView, projection, viewport, &x, &y, &z);
        calculatedVertices[i] = {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    }
}

// What the matrices live in; null while the rasterizer hasn't started.
static const void* rasterizerContext()
{
    if (vrkSelectedRasterizer == 0)
        return VRK_hGLRC;
    const D3DRasterizer* d3d = selectedDirect3D();
    return d3d && d3d->matrixStack ? d3d : nullptr;
}

// The static transform as the rasterizer computes it. It is asked anew only when the mesh, the rasterizer or
// its context has changed; without a running rasterizer it is the identity.
const double* Mesh::currentWorldMatrix()
{
    WorldMatrix& kept = worldMatrix;
    const void* context = rasterizerContext();
    const bool same = kept.built && kept.rasterizer == vrkSelectedRasterizer && kept.context == context &&
                      sameBits(kept.position, position) && sameBits(kept.pivot, pivot) &&
                      sameBits(kept.rotation, rotation);
    if (same)
        return kept.elements;

    for (int i = 0; i < 16; ++i)
        kept.elements[i] = i % 5 == 0 ? 1.0 : 0.0;
    if (context)
    {
        vrkPushMatrix();
        vrkInitMatrix();
        applyStaticTransform(*this);
        vrkGetModelViewMatrix(kept.elements);
        vrkPopMatrix();
    }
    kept.position = position;
    kept.pivot = pivot;
    kept.rotation = rotation;
    kept.rasterizer = vrkSelectedRasterizer;
    kept.context = context;
    kept.built = true;
    return kept.elements;
}

Vertex3D Mesh::calculatedVertex(int i)
{
    if (i < 0 || i >= vertexCount || !calculatedVertices)
        return {0.0f, 0.0f, 0.0f};
    return transformPoint(currentWorldMatrix(), calculatedVertices[i]);
}

void Mesh::calculatedVertex(int i, Vertex3D* vertex, Vertex3D* normal)
{
    *vertex = calculatedVertex(i);
    *normal = {0.0f, 0.0f, 0.0f};
    if (i >= 0 && i < vertexCount && calculatedNormals)
        *normal = transformDirection(currentWorldMatrix(), calculatedNormals[i]);
}
