// The arrays of a mesh: allocation, growth, copies.

#include "vornik/scene/mesh.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "rasterizer/d3d/d3dmesh.h"
#include "scene/materialranges.h"
#include "scene/sharedname.h"

Mesh::Mesh()
    : d3dMesh(nullptr), materialFaces(nullptr), displayList(0), transparentDisplayList(0), attachMark(1),
      billboard(0), vertexCount(0), faceCount(0), virtualVertexCount(0), virtualFaceCount(0),
      radius(0.0f), worldMatrix{}
{
    location = position = pivot = {0.0f, 0.0f, 0.0f};
    rotation = {0.0f, 0.0f, 0.0f, 0.0f};
    detachArrays();
}

Mesh::~Mesh()
{
    destroyVertices();
    destroyFaces();
    std::free(faceFlags);
    releaseMaterialRanges(this);
    destroyDisplayList();
    releaseD3DMesh(d3dMesh);
}

void Mesh::detachArrays()
{
    originalVertices = calculatedVertices = transformedVertices = nullptr;
    originalNormals = calculatedNormals = nullptr;
    textureCoords = nullptr;
    lightColors = vertexColors = nullptr;
    edgeNormals = nullptr;
    faces = nullptr;
    faceMaterials = nullptr;
    smoothingGroups = nullptr;
    faceFlags = nullptr;
    materialFaces = nullptr;
}

template <typename T>
static T* makeArray(int n)
{
    return static_cast<T*>(std::calloc(static_cast<size_t>(n > 0 ? n : 1), sizeof(T)));
}

template <typename T>
static void release(T*& array)
{
    std::free(array);
    array = nullptr;
}

// Changes the size of an array; entries beyond the old count are cleared. @return false without memory for it
template <typename T>
static bool resize(T*& array, int oldCount, int count)
{
    const size_t size = static_cast<size_t>(count > 0 ? count : 1) * sizeof(T);
    T* resized = static_cast<T*>(std::realloc(array, size));
    if (!resized)
        return false;
    const int kept = array ? oldCount : 0;
    array = resized;
    if (count > kept)
        std::memset(static_cast<void*>(array + kept), 0, static_cast<size_t>(count - kept) * sizeof(T));
    return true;
}

template <typename T>
static void copyArray(T* to, const T* from, int count)
{
    if (to && from && count > 0)
        std::memcpy(static_cast<void*>(to), from, static_cast<size_t>(count) * sizeof(T));
}

// Without memory for all of its arrays a mesh has no vertices.
void Mesh::createVertices(int n)
{
    destroyVertices();
    if (n < 0)
        n = 0;
    originalVertices = makeArray<Vertex3D>(n);
    calculatedVertices = makeArray<Vertex3D>(n);
    transformedVertices = makeArray<Vertex3D>(n);
    originalNormals = makeArray<Vertex3D>(n);
    calculatedNormals = makeArray<Vertex3D>(n);
    textureCoords = makeArray<Vertex2D>(n);
    lightColors = makeArray<Color>(n);
    vertexColors = makeArray<Color>(n);
    vertexCount = n;
    if (!originalVertices || !calculatedVertices || !transformedVertices || !originalNormals ||
        !calculatedNormals || !textureCoords || !lightColors || !vertexColors)
    {
        destroyVertices();
        vertexCount = 0;
    }
}

void Mesh::destroyVertices()
{
    release(originalVertices);
    release(calculatedVertices);
    release(transformedVertices);
    release(originalNormals);
    release(calculatedNormals);
    release(textureCoords);
    release(lightColors);
    release(vertexColors);
}

void Mesh::createFaces(int n)
{
    destroyFaces();
    release(faceFlags);
    if (n < 0)
        n = 0;
    faces = makeArray<Facelist>(n);
    faceMaterials = makeArray<Textlist>(n);
    edgeNormals = makeArray<EdgeNormal>(n);
    smoothingGroups = makeArray<uint32_t>(n);
    faceFlags = makeArray<uint8_t>(n);
    if (!faces || !faceMaterials || !edgeNormals || !smoothingGroups || !faceFlags)
    {
        destroyFaces();
        release(faceFlags);
        n = 0;
    }
    // A face that nobody gives a group smooths with nothing.
    for (int i = 0; smoothingGroups && i < n; ++i)
        smoothingGroups[i] = static_cast<uint32_t>(i);
    faceCount = n;
}

void Mesh::destroyFaces()
{
    release(faces);
    release(faceMaterials);
    release(smoothingGroups);
    release(edgeNormals);
}

// Arrays that have grown stay so where a later one can't; the counts don't rise then.
void Mesh::expandObject(int vertices, int newFaces)
{
    if (vertices > vertexCount && resize(originalVertices, vertexCount, vertices) &&
        resize(calculatedVertices, vertexCount, vertices) &&
        resize(transformedVertices, vertexCount, vertices) &&
        resize(originalNormals, vertexCount, vertices) && resize(calculatedNormals, vertexCount, vertices) &&
        resize(textureCoords, vertexCount, vertices) && resize(lightColors, vertexCount, vertices) &&
        resize(vertexColors, vertexCount, vertices))
        vertexCount = vertices;
    if (newFaces > faceCount && resize(faces, faceCount, newFaces) &&
        resize(faceMaterials, faceCount, newFaces) && resize(faceFlags, faceCount, newFaces) &&
        resize(smoothingGroups, faceCount, newFaces) && resize(edgeNormals, faceCount, newFaces))
        faceCount = newFaces;
}

void Mesh::minimizeVirtualTriangleCount()
{
    if (virtualVertexCount > vertexCount)
    {
        resize(originalVertices, vertexCount, vertexCount);
        resize(calculatedVertices, vertexCount, vertexCount);
        resize(originalNormals, vertexCount, vertexCount);
        resize(calculatedNormals, vertexCount, vertexCount);
        resize(textureCoords, vertexCount, vertexCount);
        resize(vertexColors, vertexCount, vertexCount);
        resize(lightColors, vertexCount, vertexCount);
        virtualVertexCount = vertexCount;
    }
    if (virtualFaceCount > faceCount)
    {
        resize(faces, faceCount, faceCount);
        resize(faceMaterials, faceCount, faceCount);
        resize(faceFlags, faceCount, faceCount);
        virtualFaceCount = faceCount;
    }
}

Object* Mesh::copyObject()
{
    Mesh* copy = new (std::nothrow) Mesh;
    if (!copy)
        return nullptr;
    std::memcpy(static_cast<void*>(copy), static_cast<const void*>(this), sizeof(Mesh));
    copy->name = shareName(name);
    // The arrays named by the copied record are the source's.
    copy->detachArrays();
    shareD3DMesh(d3dMesh);
    if (vertexCount > 0)
    {
        copy->createVertices(vertexCount);
        copyArray(copy->originalVertices, originalVertices, vertexCount);
        copyArray(copy->calculatedVertices, calculatedVertices, vertexCount);
        copyArray(copy->originalNormals, originalNormals, vertexCount);
        copyArray(copy->calculatedNormals, calculatedNormals, vertexCount);
        copyArray(copy->textureCoords, textureCoords, vertexCount);
        copyArray(copy->lightColors, lightColors, vertexCount);
        copyArray(copy->vertexColors, vertexColors, vertexCount);
    }
    if (faceCount > 0)
    {
        copy->createFaces(faceCount);
        copyArray(copy->faces, faces, faceCount);
        copyArray(copy->faceMaterials, faceMaterials, faceCount);
        copyArray(copy->faceFlags, faceFlags, faceCount);
    }
    copy->materialFaces = copyMaterialRanges(materialFaces);
    return copy;
}
