// Transparent faces: pushed while meshes are walked, sorted and drawn behind them.
//
// Every face keeps the matrix of its mesh and is drawn by itself: that is what a true order between meshes
// costs. Records stay where they were pushed; what is sorted is a small key for each.

#include "vornik/rasterizer/transparent.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>

#include "vornik/assets/texture.h"
#include "vornik/rasterizer/startup.h"
#include "vornik/rasterizer/state.h"
#include "vornik/rasterizer/texture.h"
#include "vornik/scene/material.h"
#include "vornik/scene/object.h"

struct SortKey
{
    float distance;
    uint32_t index; // of the record
};

static TransparentPlane* planes = nullptr; // null when there is no stack
static SortKey* keys = nullptr;
static size_t planeCount = 0;
static size_t planeRoom = 0;

template <class T>
static bool resize(T** block, size_t count)
{
    T* larger = static_cast<T*>(std::realloc(*block, count * sizeof(T)));
    if (!larger)
        return false;
    *block = larger;
    return true;
}

static bool makeRoom(size_t count)
{
    if (count <= planeRoom)
        return true;
    count = std::max(count, 2 * planeRoom);
    if (!resize(&planes, count) || !resize(&keys, count))
        return false;
    planeRoom = count;
    return true;
}

void vrkInitTransparentPlaneStack(int capacity)
{
    vrkUnInitTransparentPlaneStack();
    if (!makeRoom(static_cast<size_t>(std::max(capacity, 1))))
        vrkUnInitTransparentPlaneStack();
}

void vrkUnInitTransparentPlaneStack()
{
    std::free(planes);
    std::free(keys);
    planes = nullptr;
    keys = nullptr;
    planeCount = 0;
    planeRoom = 0;
}

void vrkAddTransparentFace(Color* colors, Vertex2D* coords, Vertex3D* vertices, Vertex3D* normals,
                           Facelist* faces, int first, int last, Material* material, Vertex3D* origin)
{
    TransparentPlane plane = {colors, coords, vertices, normals, nullptr, origin, 0.0f, material, {}};
    glGetFloatv(GL_MODELVIEW_MATRIX, plane.matrix);
    const bool drawable =
        colors && coords && vertices && normals && faces && material && origin && first >= 0;
    if (!planes || !drawable || first > last)
        return;
    const size_t count = static_cast<size_t>(int64_t(last) - first + 1);
    if (!makeRoom(planeCount + count))
        return;
    for (size_t i = 0; i < count; ++i)
    {
        plane.face = faces + first + i;
        planes[planeCount++] = plane;
    }
}

static float sortCoordinate(float a, float b, float c, float origin)
{
    return (c + b + a + origin * 3.0f) * 0.3333333432674408f;
}

// A distance that is no number counts as the farthest.
static float sortDistance(const TransparentPlane& plane, const Vertex3D& eye)
{
    const Vertex3D& a = plane.vertices[plane.face->a];
    const Vertex3D& b = plane.vertices[plane.face->b];
    const Vertex3D& c = plane.vertices[plane.face->c];
    const Vertex3D& o = *plane.origin;
    const Vertex3D point = {sortCoordinate(a.x, b.x, c.x, o.x), sortCoordinate(a.y, b.y, c.y, o.y),
                            sortCoordinate(a.z, b.z, c.z, o.z)};
    const float distance = vrkFakeDistance(&eye, &point);
    return std::isnan(distance) ? INFINITY : distance;
}

static void sortPlanes(const Vertex3D& eye)
{
    for (size_t i = 0; i < planeCount; ++i)
    {
        planes[i].distance = sortDistance(planes[i], eye);
        keys[i] = {planes[i].distance, static_cast<uint32_t>(i)};
    }
    std::sort(keys, keys + planeCount,
              [](const SortKey& a, const SortKey& b)
              { return a.distance != b.distance ? a.distance > b.distance : a.index < b.index; });
}

static void drawPlane(const TransparentPlane& plane)
{
    glLoadMatrixf(plane.matrix);
    vrkSetTexture(plane.material->firstTexture);
    glBegin(GL_TRIANGLES);
    for (const uint16_t v : {plane.face->a, plane.face->b, plane.face->c})
    {
        const Color& color = plane.colors[v];
        const Vertex3D& normal = plane.normals[v];
        const Vertex3D& vertex = plane.vertices[v];
        glColor4f(color.r, color.g, color.b, color.a);
        glNormal3f(normal.x, normal.y, normal.z);
        glTexCoord2f(plane.coords[v].x, plane.coords[v].y);
        glVertex3f(vertex.x, vertex.y, vertex.z);
    }
    glEnd();
}

void vrkDrawTransparentPlanes(Camera* camera)
{
    if (!planes)
        return;
    sortPlanes(camera ? camera->eye : Vertex3D{0.0f, 0.0f, 0.0f});
    vrkDisable(VRK_CULL_FACE);
    vrkEnable(VRK_BLEND);
    vrkBlendFunc(VRK_SRC_ALPHA, VRK_ONE_MINUS_SRC_ALPHA);
    if (vrkSelectedRasterizer == 0)
    {
        glMatrixMode(GL_MODELVIEW);
        for (size_t i = 0; i < planeCount; ++i)
            drawPlane(planes[keys[i].index]);
    }
    vrkEnable(VRK_CULL_FACE);
    planeCount = 0;
}
