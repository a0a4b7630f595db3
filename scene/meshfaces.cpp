// Rearranging a mesh for drawing: faces sorted by material, vertices split along smoothing groups.

#include "vornik/scene/mesh.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <vector>

#include "core/memorylasts.h"
#include "scene/materialranges.h"

enum
{
    mostFacesOfVertex = 512,  // beyond it the split gives up on the mesh
    mostSplitVertices = 65536 // what the 16-bit indices of faces can name
};

// Throws before anything has changed.
static void sortFaces(Mesh* mesh)
{
    const int faceCount = mesh->faceCount;
    Facelist* faces = mesh->faces;
    Textlist* faceMaterials = mesh->faceMaterials;
    // Number each material by its first appearance and count its faces.
    std::unordered_map<int32_t, int> numberOf;
    std::vector<int> counts;
    std::vector<int> rangeOf(static_cast<size_t>(faceCount));
    for (int i = 0; i < faceCount; ++i)
    {
        const int next = static_cast<int>(counts.size());
        const int range = numberOf.try_emplace(faceMaterials[i].materialIndex, next).first->second;
        if (range == next)
            counts.push_back(0);
        ++counts[static_cast<size_t>(range)];
        rangeOf[static_cast<size_t>(i)] = range;
    }

    std::vector<int> next(counts.size());
    const std::vector<Facelist> oldFaces(faces, faces + faceCount);
    const std::vector<Textlist> oldMaterials(faceMaterials, faceMaterials + faceCount);
    MaterialFaceList* sorted = makeMaterialRanges(static_cast<int>(counts.size()));
    if (!sorted)
        return;
    releaseMaterialRanges(mesh);
    mesh->materialFaces = sorted;

    int first = 0;
    for (size_t range = 0; range < counts.size(); ++range)
    {
        next[range] = first;
        sorted->ranges[range] = {first, first + counts[range] - 1};
        first += counts[range];
    }
    for (size_t i = 0; i < oldFaces.size(); ++i)
    {
        const int place = next[static_cast<size_t>(rangeOf[i])]++;
        faces[place] = oldFaces[i];
        faceMaterials[place] = oldMaterials[i];
    }
}

void Mesh::sortFacesByMaterial()
{
    if (faceCount >= 0 && faces && faceMaterials)
        whileMemoryLasts([&] { sortFaces(this); });
}

// The faces around each vertex, in face order, each once.
class Adjacency
{
public:
    Adjacency(const Facelist* faces, int faceCount, int vertexCount)
        : begins(static_cast<size_t>(vertexCount) + 1)
    {
        forEachCorner(faces, faceCount, vertexCount,
                      [&](int vertex, int) { ++begins[static_cast<size_t>(vertex) + 1]; });
        for (size_t i = 1; i < begins.size(); ++i)
            begins[i] += begins[i - 1];
        members.resize(static_cast<size_t>(begins.back()));
        std::vector<int> next(begins.begin(), begins.end() - 1);
        forEachCorner(faces, faceCount, vertexCount,
                      [&](int vertex, int face)
                      { members[static_cast<size_t>(next[static_cast<size_t>(vertex)]++)] = face; });
    }

    int count(int vertex) const
    {
        return begins[static_cast<size_t>(vertex) + 1] - begins[static_cast<size_t>(vertex)];
    }
    const int* begin(int vertex) const { return members.data() + begins[static_cast<size_t>(vertex)]; }
    const int* end(int vertex) const { return members.data() + begins[static_cast<size_t>(vertex) + 1]; }

private:
    std::vector<int> begins;
    std::vector<int> members;

    // Calls use(vertex, face) once for each vertex of each face.
    template <typename Use>
    static void forEachCorner(const Facelist* faces, int faceCount, int vertexCount, Use use)
    {
        for (int i = 0; i < faceCount; ++i)
        {
            const int a = faces[i].a, b = faces[i].b, c = faces[i].c;
            if (a < vertexCount)
                use(a, i);
            if (b < vertexCount && b != a)
                use(b, i);
            if (c < vertexCount && c != a && c != b)
                use(c, i);
        }
    }
};

static void replaceCorner(Facelist* face, int from, int to)
{
    const uint16_t vertex = static_cast<uint16_t>(to);
    if (face->a == from)
        face->a = vertex;
    if (face->b == from)
        face->b = vertex;
    if (face->c == from)
        face->c = vertex;
}

// The distinct smoothing values around a vertex, in face order.
static void collectGroups(const Adjacency& around, int vertex, const uint32_t* smoothing,
                          std::vector<uint32_t>* groups)
{
    groups->clear();
    for (const int* face = around.begin(vertex); face != around.end(vertex); ++face)
        if (std::find(groups->begin(), groups->end(), smoothing[*face]) == groups->end())
            groups->push_back(smoothing[*face]);
}

static void splitVertices(Mesh* mesh)
{
    const int oldCount = mesh->vertexCount, faceCount = mesh->faceCount;
    const uint32_t* smoothingGroups = mesh->smoothingGroups;
    const Adjacency around(mesh->faces, faceCount, oldCount);
    std::vector<uint32_t> groups;

    // Room: one vertex for each further group. A vertex without faces takes one away.
    int64_t room = 0;
    for (int vertex = 0; vertex < oldCount; ++vertex)
    {
        if (around.count(vertex) > mostFacesOfVertex)
            return;
        collectGroups(around, vertex, smoothingGroups, &groups);
        room += static_cast<int64_t>(groups.size()) - 1;
    }
    mesh->expandObject(static_cast<int>(std::min<int64_t>(oldCount + room, mostSplitVertices)), faceCount);

    int next = oldCount;
    for (int vertex = 0; vertex < oldCount; ++vertex)
    {
        collectGroups(around, vertex, smoothingGroups, &groups);
        // The first group keeps the vertex.
        for (size_t group = 1; group < groups.size(); ++group)
        {
            if (next >= mesh->vertexCount)
                return;
            mesh->originalVertices[next] = mesh->originalVertices[vertex];
            mesh->textureCoords[next] = mesh->textureCoords[vertex];
            for (const int* face = around.begin(vertex); face != around.end(vertex); ++face)
                if (smoothingGroups[*face] == groups[group])
                    replaceCorner(&mesh->faces[*face], vertex, next);
            ++next;
        }
    }
}

void Mesh::prepareSmoothing()
{
    if (faces && smoothingGroups && originalVertices && textureCoords)
        whileMemoryLasts([&] { splitVertices(this); });
}
