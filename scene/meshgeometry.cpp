// What is derived from a mesh's vertices: place, radius, world and window positions.

#include "vornik/scene/mesh.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>

#include <GL/gl.h>
#include <GL/glu.h>

#include "core/bits.h"
#include "rasterizer/d3d/d3drasterizer.h"
#include "scene/statictransform.h"
#include "scene/transformpoint.h"
#include "scene/worldcorners.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"

void Mesh::center()
{
    if (!originalVertices && vertexCount > 0)
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

void Mesh::calcRadius()
{
    // Squares, in the order in which vrkDistance adds them: roots don't change who is farthest.
    float farthest = 0.0f;
    for (int i = 0; calculatedVertices && i < vertexCount; ++i)
    {
        const Vertex3D& v = calculatedVertices[i];
        const float square = v.z * v.z + v.y * v.y + v.x * v.x;
        farthest = square > farthest ? square : farthest;
    }
    radius = std::max(FLT_MIN, std::sqrt(farthest));
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

const void* rasterizerContext()
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
