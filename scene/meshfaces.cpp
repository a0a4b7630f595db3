// Rearranging a mesh for drawing: faces sorted by material, vertices split along smoothing groups.

#include "vornik/scene/mesh.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "core/memorylasts.h"
#include "scene/materialranges.h"

enum
{
    mostFacesOfVertex = 512,  // beyond it the split gives up on the mesh
    mostSplitVertices = 65536 // what the 16-bit indices of faces can name
};

namespace
{

// Numbers materials from 0 in the order in which they are asked for first. A list's materials count up from
// 0, so most are in the table.
class MaterialNumbers
{
public:
    MaterialNumbers() { table.fill(none); }

    size_t operator()(int32_t material)
    {
        const auto place = static_cast<uint32_t>(material);
        size_t& number =
            place < table.size() ? table[place] : others.try_emplace(material, none).first->second;
        if (number == none)
            number = known++;
        return number;
    }

private:
    static constexpr size_t none = SIZE_MAX;
    size_t known = 0;
    std::array<size_t, 256> table;
    std::unordered_map<int32_t, size_t> others;
};

} // namespace

// Throws before anything has changed.
static void sortFaces(Mesh* mesh)
{
    const int faceCount = mesh->faceCount;
    Facelist* faces = mesh->faces;
    Textlist* faceMaterials = mesh->faceMaterials;
    MaterialNumbers numberOf;
    std::vector<int> counts; // of faces, by range
    std::vector<size_t> rangeOf(static_cast<size_t>(faceCount));
    for (int i = 0; i < faceCount; ++i)
    {
        const size_t range = numberOf(faceMaterials[i].materialIndex);
        if (range == counts.size())
            counts.push_back(0);
        ++counts[range];
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
        const int place = next[rangeOf[i]]++;
        faces[place] = oldFaces[i];
        faceMaterials[place] = oldMaterials[i];
    }
}

void Mesh::sortFacesByMaterial()
{
    if (faceCount >= 0 && faces && faceMaterials)
        whileMemoryLasts([&] { sortFaces(this); });
}

// Calls use(vertex, face) once for each vertex of each face.
template <typename Use>
static void forEachCorner(const Mesh& mesh, Use use)
{
    const int vertexCount = mesh.vertexCount;
    for (int i = 0; i < mesh.faceCount; ++i)
    {
        const int a = mesh.faces[i].a, b = mesh.faces[i].b, c = mesh.faces[i].c;
        if (a < vertexCount)
            use(a, i);
        if (b < vertexCount && b != a)
            use(b, i);
        if (c < vertexCount && c != a && c != b)
            use(c, i);
    }
}

namespace
{

// What the faces around a vertex have in common.
struct Around
{
    uint32_t group; // of the first face
    int faces;
    bool onBorder; // others have other groups
};

// The vertices on borders of smoothing groups with the faces around each, in face order. Most vertices lie
// inside a group, and nothing is kept of those.
class Borders
{
public:
    Borders(const Mesh& mesh, const std::vector<Around>& around);

    int count() const { return static_cast<int>(vertices.size()); }
    int vertex(int place) const { return vertices[static_cast<size_t>(place)]; }
    const int* begin(int place) const { return members.data() + begins[static_cast<size_t>(place)]; }
    const int* end(int place) const { return members.data() + begins[static_cast<size_t>(place) + 1]; }

private:
    std::vector<int> vertices;
    std::vector<size_t> begins; // one more than vertices
    std::vector<int> members;
};

// One more vertex: for a smoothing group that came up around a vertex behind its first.
struct Split
{
    int place; // among the borders
    uint32_t group;
};

} // namespace

static std::vector<Around> lookAround(const Mesh& mesh)
{
    std::vector<Around> around(static_cast<size_t>(mesh.vertexCount), Around{0, 0, false});
    forEachCorner(mesh,
                  [&](int vertex, int face)
                  {
                      Around& here = around[static_cast<size_t>(vertex)];
                      const uint32_t group = mesh.smoothingGroups[face];
                      if (here.faces++ == 0)
                          here.group = group;
                      else if (here.group != group)
                          here.onBorder = true;
                  });
    return around;
}

Borders::Borders(const Mesh& mesh, const std::vector<Around>& around) : begins(1, 0)
{
    const size_t none = SIZE_MAX;
    std::vector<size_t> next(around.size(), none); // of members
    for (size_t i = 0; i < around.size(); ++i)
    {
        if (!around[i].onBorder)
            continue;
        next[i] = begins.back();
        vertices.push_back(static_cast<int>(i));
        begins.push_back(begins.back() + static_cast<size_t>(around[i].faces));
    }
    members.resize(begins.back());
    if (members.empty())
        return;
    forEachCorner(mesh,
                  [&](int vertex, int face)
                  {
                      size_t& place = next[static_cast<size_t>(vertex)];
                      if (place != none)
                          members[place++] = face;
                  });
}

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

// In the order of the vertices, and of the faces around each.
static std::vector<Split> findSplits(const Borders& borders, const uint32_t* smoothingGroups)
{
    std::vector<Split> splits;
    std::vector<uint32_t> groups; // around one vertex
    for (int place = 0; place < borders.count(); ++place)
    {
        groups.clear();
        for (const int* face = borders.begin(place); face != borders.end(place); ++face)
        {
            const uint32_t group = smoothingGroups[*face];
            if (std::find(groups.begin(), groups.end(), group) != groups.end())
                continue;
            // The first group keeps the vertex.
            if (!groups.empty())
                splits.push_back({place, group});
            groups.push_back(group);
        }
    }
    return splits;
}

static void splitVertices(Mesh* mesh)
{
    const int oldCount = mesh->vertexCount;
    const std::vector<Around> around = lookAround(*mesh);
    int64_t room = 0;
    for (const Around& vertex : around)
    {
        if (vertex.faces > mostFacesOfVertex)
            return;
        // A vertex without faces takes one away from the room of the others.
        if (vertex.faces == 0)
            --room;
    }
    const Borders borders(*mesh, around);
    const std::vector<Split> splits = findSplits(borders, mesh->smoothingGroups);
    room += static_cast<int64_t>(splits.size());
    mesh->expandObject(static_cast<int>(std::min<int64_t>(oldCount + room, mostSplitVertices)),
                       mesh->faceCount);

    int next = oldCount;
    for (const Split& split : splits)
    {
        if (next >= mesh->vertexCount)
            return;
        const int vertex = borders.vertex(split.place);
        mesh->originalVertices[next] = mesh->originalVertices[vertex];
        mesh->textureCoords[next] = mesh->textureCoords[vertex];
        for (const int* face = borders.begin(split.place); face != borders.end(split.place); ++face)
            if (mesh->smoothingGroups[*face] == split.group)
                replaceCorner(&mesh->faces[*face], vertex, next);
        ++next;
    }
}

void Mesh::prepareSmoothing()
{
    if (faces && smoothingGroups && originalVertices && textureCoords)
        whileMemoryLasts([&] { splitVertices(this); });
}
