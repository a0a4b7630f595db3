// Welding of close vertices: OGroup::closeCombine.
//
// The result is defined by a plain walk: for each vertex s in index order, every vertex t with
// t - e < s < t + e on all three axes (floats, strict) takes the position of s, and later vertices see what
// earlier ones moved. That is vertices squared; this file gives the same bits in about linear time.
//
// Vertices with one position are one node. A node never moves: when a vertex of node P welds, the nodes in
// reach become part of P. No new position arises, so a node that has welded once has nothing left in reach,
// and each node welds once at most. Candidates come from a grid. Its lines are drawn with the very
// comparisons of the walk, so that rounding, huge coordinates and distances below their precision need no
// margins: each slab of an axis reaches from its first value up to the first value that doesn't weld with it,
// in either direction, and as the comparisons are monotonic, what welds lies in neighbouring slabs.

#include <math.h>
#include <string.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

#include "core/bits.h"
#include "core/memorylasts.h"
#include "vornik/scene/mesh.h"
#include "vornik/scene/ogroup.h"

// Does coordinate t take the value s?
static bool reaches(float s, float t, float e)
{
    return t - e < s && s < t + e;
}

static bool reaches(const Vertex3D& s, const Vertex3D& t, float e)
{
    return reaches(s.x, t.x, e) && reaches(s.y, t.y, e) && reaches(s.z, t.z, e);
}

namespace
{
class Welder
{
public:
    Welder(Vertex3D* meshVertices, int count, float distance)
        : vertices(meshVertices), e(distance), nodeOf(size_t(count), -1)
    {
        makeNodes();
        for (int axis = 0; axis < 3; axis++)
            makeSlabs(axis);
        sortIntoCells();
    }

    void weld()
    {
        for (int node : nodeOf)
            if (node >= 0)
                weldNode(root(node));
        for (size_t v = 0; v < nodeOf.size(); v++)
            if (nodeOf[v] >= 0)
                vertices[v] = nodes[size_t(root(nodeOf[v]))].position;
    }

private:
    using Cell = std::array<int, 3>;

    struct Node
    {
        Vertex3D position;
        Cell cell;
        int parent; // the node that it became part of; itself while it stands
        bool welded;
    };

    Vertex3D* vertices;
    float e;
    std::vector<int> nodeOf; // by vertex; -1 where a coordinate is no finite number, which never welds
    std::vector<Node> nodes;
    std::vector<int> byCell; // nodes in order of their cells

    // One node for each position. Told apart by bits, since 0 and -0 are different results.
    void makeNodes()
    {
        std::vector<int> order;
        for (int v = 0; v < int(nodeOf.size()); v++)
            if (isfinite(vertices[v].x) && isfinite(vertices[v].y) && isfinite(vertices[v].z))
                order.push_back(v);
        auto compare = [this](int a, int b) { return compareBits(vertices[a], vertices[b]); };
        std::sort(order.begin(), order.end(), [&](int a, int b) { return compare(a, b) < 0; });

        for (size_t i = 0; i < order.size(); i++)
        {
            if (i == 0 || compare(order[i - 1], order[i]) != 0)
                nodes.push_back({vertices[order[i]], {}, int(nodes.size()), false});
            nodeOf[size_t(order[i])] = int(nodes.size()) - 1;
        }
    }

    static float coordinate(const Vertex3D& v, int axis) { return axis == 0 ? v.x : axis == 1 ? v.y : v.z; }

    void makeSlabs(int axis)
    {
        std::vector<int> order(nodes.size());
        std::iota(order.begin(), order.end(), 0);
        auto at = [&](int node) { return coordinate(nodes[size_t(node)].position, axis); };
        std::sort(order.begin(), order.end(), [&](int a, int b) { return at(a) < at(b); });

        int slab = -1;
        float start = 0.0f;
        for (int node : order)
        {
            float value = at(node);
            bool inside = value == start || reaches(start, value, e) || reaches(value, start, e);
            if (slab < 0 || !inside)
            {
                slab++;
                start = value;
            }
            nodes[size_t(node)].cell[size_t(axis)] = slab;
        }
    }

    void sortIntoCells()
    {
        byCell.resize(nodes.size());
        std::iota(byCell.begin(), byCell.end(), 0);
        std::sort(byCell.begin(), byCell.end(),
                  [this](int a, int b) { return nodes[size_t(a)].cell < nodes[size_t(b)].cell; });
    }

    int root(int node)
    {
        while (nodes[size_t(node)].parent != node)
        {
            Node& n = nodes[size_t(node)];
            n.parent = nodes[size_t(n.parent)].parent;
            node = n.parent;
        }
        return node;
    }

    // Takes in all standing nodes within reach of a node.
    void weldNode(int source)
    {
        Node& node = nodes[size_t(source)];
        if (node.welded)
            return;
        node.welded = true;
        // Where e is lost in rounding a position doesn't even reach itself, and then reaches no other.
        if (!reaches(node.position, node.position, e))
            return;
        const Cell centre = node.cell;
        for (int x = centre[0] - 1; x <= centre[0] + 1; x++)
            for (int y = centre[1] - 1; y <= centre[1] + 1; y++)
                weldRow(source, {x, y, centre[2] - 1}, centre[2] + 1);
    }

    // The cells of a row follow one another in byCell.
    void weldRow(int source, const Cell& first, int lastZ)
    {
        auto at =
            std::lower_bound(byCell.begin(), byCell.end(), first,
                             [this](int node, const Cell& cell) { return nodes[size_t(node)].cell < cell; });
        const Cell last = {first[0], first[1], lastZ};
        for (; at != byCell.end() && nodes[size_t(*at)].cell <= last; ++at)
        {
            Node& target = nodes[size_t(*at)];
            if (target.parent == *at && reaches(nodes[size_t(source)].position, target.position, e))
                target.parent = source;
        }
    }
};
} // namespace

// Welding distance: percent of the longest side of the box around all meshes. Where no side is strictly the
// longest it is percent itself, unscaled.
static float weldDistance(const OGroup& group, float percent)
{
    Vertex3D low = {9999999.0f, 9999999.0f, 9999999.0f};
    Vertex3D high = {-9999999.0f, -9999999.0f, -9999999.0f};
    for (int i = 0; i < group.meshCount; i++)
    {
        const Mesh* mesh = group.meshes[i];
        for (int v = 0; mesh && mesh->originalVertices && v < mesh->vertexCount; v++)
        {
            const Vertex3D& p = mesh->originalVertices[v];
            low = {p.x < low.x ? p.x : low.x, p.y < low.y ? p.y : low.y, p.z < low.z ? p.z : low.z};
            high = {p.x > high.x ? p.x : high.x, p.y > high.y ? p.y : high.y, p.z > high.z ? p.z : high.z};
        }
    }

    Vertex3D size = high - low;
    if (size.y > size.x && size.y > size.z)
        return size.y * percent * 0.01f;
    if (size.z > size.x && size.z > size.y)
        return size.z * percent * 0.01f;
    if (size.x > size.y && size.x > size.z)
        return size.x * percent * 0.01f;
    return percent;
}

void OGroup::closeCombine(float percent)
{
    // Only the first mesh is welded, with itself, although the distance comes from all.
    if (meshCount < 1 || !meshes[0] || !meshes[0]->originalVertices || meshes[0]->vertexCount < 1)
        return;
    float e = weldDistance(*this, percent);
    // Nothing lies strictly within a distance of zero, a negative one or one that is no number.
    if (e > 0.0f)
        whileMemoryLasts([&] { Welder(meshes[0]->originalVertices, meshes[0]->vertexCount, e).weld(); });
}
